// SPDX-License-Identifier: GPL-3.0-or-later
#include "records/forms/ReportList.h"

#include <QAbstractTableModel>
#include <QHeaderView>
#include <QScrollBar>
#include <algorithm>
#include <numeric>

// The rows in display order: sorting moves an index, not the texts, so 50,000 rows sort at once.
class ReportModel : public QAbstractTableModel {
public:
    using QAbstractTableModel::QAbstractTableModel;

    ReportRows data_;
    QList<int> order; // display row -> row of data_
    int sortColumn = -1;
    bool descending = false;
    QColor band;

    // Every change of rows or order goes through here, so the view always hears of it.
    template <typename F> void change(F&& f)
    {
        beginResetModel();
        f();
        endResetModel();
    }

    int rowCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : int(order.size()); }
    int columnCount(const QModelIndex& parent = {}) const override
    {
        return parent.isValid() ? 0 : int(data_.columns.size());
    }
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override
    {
        if (orientation == Qt::Horizontal && role == Qt::DisplayRole && section < data_.columns.size())
            return data_.columns.at(section).caption;
        return {};
    }
    QVariant data(const QModelIndex& index, int role) const override
    {
        if (!index.isValid())
            return {};
        if (role == Qt::DisplayRole || role == Qt::ToolTipRole)
            return text(index.row(), index.column());
        if (role == Qt::BackgroundRole && index.row() % 2 == 1)
            return band;
        return {};
    }
    QString text(int displayRow, int column) const
    {
        const QStringList& row = data_.rows.at(order.at(displayRow));
        return column < row.size() ? row.at(column) : QString();
    }
    void reorder()
    {
        order.resize(data_.rows.size());
        std::iota(order.begin(), order.end(), 0);
        if (sortColumn < 0 || sortColumn >= data_.columns.size())
            return;
        const int by = data_.columns.at(sortColumn).sortBy >= 0 ? data_.columns.at(sortColumn).sortBy : sortColumn;
        // Folded once, so that 50,000 rows compare as plain texts.
        QList<QString> keys;
        keys.reserve(data_.rows.size());
        for (const QStringList& row : std::as_const(data_.rows))
            keys << (by < row.size() ? row.at(by).toCaseFolded() : QString());
        std::stable_sort(order.begin(), order.end(),
                         [&](int a, int b) { return descending ? keys.at(b) < keys.at(a) : keys.at(a) < keys.at(b); });
    }
};

ReportList::ReportList(QWidget* parent) : QTreeView(parent), m_model(new ReportModel(this))
{
    setModel(m_model);
    setRootIsDecorated(false);
    setUniformRowHeights(true);
    setAllColumnsShowFocus(true);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setContextMenuPolicy(Qt::CustomContextMenu);
    header()->setSectionsClickable(true);
    header()->setSortIndicatorShown(true);
    m_model->band = palette().color(QPalette::Button); // the "buttonface" of the lists
    connect(header(), &QHeaderView::sectionClicked, this, &ReportList::sortByColumn);
    connect(this, &QTreeView::doubleClicked, this, [this](const QModelIndex& index) {
        if (index.isValid())
            emit activated(idOf(index.row()));
    });
    connect(this, &QWidget::customContextMenuRequested, this, [this](const QPoint& at) {
        const QModelIndex index = indexAt(at);
        if (index.isValid()) {
            setCurrentIndex(index);
            emit contextRequested(idOf(index.row()), viewport()->mapToGlobal(at));
        }
    });
}

void ReportList::fill(ReportRows rows)
{
    const QString selected = selectedId();
    const int scroll = verticalScrollBar()->value();
    const bool sameColumns = rows.columns.size() == m_model->data_.columns.size();
    m_model->change([&] {
        m_model->data_ = std::move(rows);
        if (!sameColumns) {
            m_model->sortColumn = -1;
            m_model->descending = false;
        }
        m_model->reorder();
    });
    for (int c = 0; c < m_model->data_.columns.size(); ++c) {
        const int width = m_model->data_.columns.at(c).width;
        setColumnHidden(c, width <= 0);
        if (width > 0 && !sameColumns)
            setColumnWidth(c, width);
    }
    if (!selected.isEmpty())
        selectId(selected);
    verticalScrollBar()->setValue(scroll);
}

const ReportRows& ReportList::rows() const { return m_model->data_; }

void ReportList::sortByColumn(int column)
{
    if (column < 0 || column >= m_model->data_.columns.size())
        return;
    const QString selected = selectedId();
    m_model->descending = column == m_model->sortColumn ? !m_model->descending : false;
    m_model->sortColumn = column;
    m_model->change([&] { m_model->reorder(); });
    header()->setSortIndicator(column, m_model->descending ? Qt::DescendingOrder : Qt::AscendingOrder);
    if (!selected.isEmpty())
        selectId(selected);
}

int ReportList::count() const { return m_model->rowCount(); }

QString ReportList::idOf(int row) const
{
    return row >= 0 && row < count() ? m_model->text(row, 0) : QString();
}

QString ReportList::selectedId() const
{
    const QModelIndex current = currentIndex();
    return current.isValid() && selectionModel()->isSelected(current) ? idOf(current.row()) : QString();
}

bool ReportList::selectId(const QString& id)
{
    for (int row = 0; row < count(); ++row) {
        if (m_model->text(row, 0) == id) {
            setCurrentIndex(m_model->index(row, 0));
            return true;
        }
    }
    return false;
}

QList<int> ReportList::visibleColumns() const
{
    QList<int> columns;
    for (int visual = 0; visual < header()->count(); ++visual) {
        const int logical = header()->logicalIndex(visual);
        if (!isColumnHidden(logical))
            columns << logical;
    }
    return columns;
}

QStringList ReportList::visibleCaptions() const
{
    QStringList captions;
    for (int c : visibleColumns())
        captions << m_model->data_.columns.at(c).caption;
    return captions;
}

QList<int> ReportList::visibleWidths() const
{
    QList<int> widths;
    for (int c : visibleColumns())
        widths << columnWidth(c);
    return widths;
}

QList<QStringList> ReportList::visibleRows() const
{
    const QList<int> columns = visibleColumns();
    QList<QStringList> out;
    out.reserve(count());
    for (int row = 0; row < count(); ++row) {
        QStringList cells;
        for (int c : columns)
            cells << m_model->text(row, c);
        out << cells;
    }
    return out;
}
