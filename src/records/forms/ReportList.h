// SPDX-License-Identifier: GPL-3.0-or-later
// The list of every page: a report list with a hidden "ID" column and hidden sort columns, rows banded
// in the button colour, a header click that sorts (a second click reverses; a "Date" sorts by its hidden
// "yyyy-mm-dd" column), and the selected row and scroll position kept when the page refills it.
#pragma once

#include "records/ReportRows.h"

#include <QTreeView>

class ReportModel;

class ReportList : public QTreeView {
    Q_OBJECT
public:
    explicit ReportList(QWidget* parent = nullptr);

    // Shows these rows in place of the old ones, in the order last chosen by a header click.
    void fill(ReportRows rows);
    const ReportRows& rows() const;

    // As a click on header `column` does: by that column's text, or by the one it names; the same
    // column twice reverses the order.
    void sortByColumn(int column);

    int count() const;
    QString idOf(int row) const; // in display order; "" when out of range
    QString keyOf(int row) const { return ReportKey(idOf(row)); }
    QString selectedId() const;  // "" when none
    bool selectId(const QString& id);

    // What a printout takes: the shown columns in the order the user left them, with their widths.
    QStringList visibleCaptions() const;
    QList<int> visibleWidths() const;
    QList<QStringList> visibleRows() const;

signals:
    void activated(const QString& id);                          // double click
    void contextRequested(const QString& id, const QPoint& at); // right click, at a global position

private:
    QList<int> visibleColumns() const;
    ReportModel* m_model;
};
