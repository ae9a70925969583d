// SPDX-License-Identifier: GPL-3.0-or-later
#include "genetics/forms/DescendantsPage.h"

#include "records/Animal.h"
#include "session/globals.h"

#include <QApplication>
#include <QFontMetrics>
#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QSignalBlocker>
#include <QVBoxLayout>
#include <utility>

namespace {

QString arrayName(const char* name, int index)
{
    return QLatin1String(name) + QLatin1Char('(') + QString::number(index) + QLatin1Char(')');
}

// The line back to the subject runs through lists that don't have the focus: their selection must not
// fade to the inactive colour.
void keepSelectionColour(QListWidget* list)
{
    QPalette p = list->palette();
    p.setColor(QPalette::Inactive, QPalette::Highlight, p.color(QPalette::Active, QPalette::Highlight));
    p.setColor(QPalette::Inactive, QPalette::HighlightedText, p.color(QPalette::Active, QPalette::HighlightedText));
    list->setPalette(p);
}

void fill(QListWidget* list, const QStringList& items)
{
    list->setUpdatesEnabled(false);
    list->clear();
    list->addItems(items);
    list->setUpdatesEnabled(true);
}

// A generation without entries is greyed like an empty search result, so the end of the lines shows.
void shade(QListWidget* list)
{
    QPalette p = list->palette();
    const QPalette normal = list->parentWidget()->palette();
    p.setColor(QPalette::Base, list->count() ? normal.color(QPalette::Base) : normal.color(QPalette::Button));
    list->setPalette(p);
}

void bringIntoView(QListWidget* list, int row)
{
    QListWidgetItem* item = list->item(row);
    if (!list->viewport()->rect().contains(list->visualItemRect(item)))
        list->scrollToItem(item, QAbstractItemView::PositionAtCenter);
}

} // namespace

DescendantsPage::DescendantsPage(QWidget* parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("DescendantsPage"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(6, 6, 6, 6);
    layout->setSpacing(6);

    auto* top = new QHBoxLayout;
    lblDescendantHelp = new QLabel(this);
    lblDescendantHelp->setObjectName(QStringLiteral("lblDescendantHelp"));
    lblDescendantHelp->setForegroundRole(QPalette::PlaceholderText);
    top->addWidget(lblDescendantHelp, 1, Qt::AlignVCenter);
    lblDescendantLegend = new QLabel(this);
    lblDescendantLegend->setObjectName(QStringLiteral("lblDescendantLegend"));
    lblDescendantLegend->setFrameShape(QFrame::StyledPanel);
    lblDescendantLegend->setMargin(4);
    lblDescendantLegend->setTextFormat(Qt::PlainText);
    top->addWidget(lblDescendantLegend, 0, Qt::AlignTop);
    layout->addLayout(top);

    // The whole width, so that a name with both parents' names fits on one line.
    lblDisplayParents = new QLabel(this);
    lblDisplayParents->setObjectName(QStringLiteral("lblDisplayParents"));
    lblDisplayParents->setTextFormat(Qt::PlainText);
    lblDisplayParents->setTextInteractionFlags(Qt::TextSelectableByMouse);
    lblDisplayParents->setWordWrap(true);
    QFont bold = lblDisplayParents->font();
    bold.setBold(true);
    lblDisplayParents->setFont(bold);
    lblDisplayParents->setMinimumHeight(QFontMetrics(bold).lineSpacing());
    layout->addWidget(lblDisplayParents);

    // Three rows of three: every generation in view at once, so the highlighted line can be followed.
    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(8);
    grid->setVerticalSpacing(6);
    for (int g = 1; g <= kDescendantGenerations; ++g) {
        auto* cell = new QVBoxLayout;
        cell->setSpacing(2);
        auto* title = new QLabel(this);
        title->setObjectName(arrayName("lblDescendantTitle", g));
        title->setFont(bold);
        cell->addWidget(title);
        auto* list = new QListWidget(this);
        list->setObjectName(arrayName("lstDescendants", g));
        list->setSelectionMode(QAbstractItemView::SingleSelection);
        list->setUniformItemSizes(true);
        list->setAlternatingRowColors(true);
        keepSelectionColour(list);
        cell->addWidget(list, 1);
        grid->addLayout(cell, (g - 1) / 3, (g - 1) % 3);
        connect(list, &QListWidget::itemSelectionChanged, this, [this, g] { lstDescendants_Click(g); });
        lblDescendantTitle << title;
        lstDescendants << list;

        for (auto [name, hidden] : {std::pair{"lstDescendants_sex", &lstDescendants_sex},
                                    std::pair{"lstDescendants_Parent", &lstDescendants_Parent}}) {
            auto* h = new QListWidget(this);
            h->setObjectName(arrayName(name, g));
            h->hide();
            *hidden << h;
        }
    }
    for (int i = 0; i < 3; ++i) {
        grid->setColumnStretch(i, 1);
        grid->setRowStretch(i, 1);
    }
    layout->addLayout(grid, 1);
    ClearDescendantLists();
    refreshDescendantTitles();
}

void DescendantsPage::ShowDescendants() { LoadDescendants(); }

void DescendantsPage::LoadDescendants()
{
    lblDescendantHelp->setText(DescendantHelpText(gUser.Animal));
    lblDescendantLegend->setText(DescendantLegendText());
    ClearDescendantLists();
    lblDisplayParents->clear();
    QApplication::setOverrideCursor(Qt::WaitCursor);
    model.LoadDescendants(gAnimal.name, gAnimal.sex);
    for (int g = 1; g <= kDescendantGenerations; ++g) {
        const DescendantList& l = model.list(g);
        const QSignalBlocker block(lstDescendants.at(g - 1));
        fill(lstDescendants.at(g - 1), l.entries);
        shade(lstDescendants.at(g - 1));
        fill(lstDescendants_sex.at(g - 1), l.sex);
        fill(lstDescendants_Parent.at(g - 1), l.parent);
    }
    QApplication::restoreOverrideCursor();
    refreshDescendantTitles();
}

void DescendantsPage::ClearDescendantLists()
{
    model.ClearDescendantLists();
    for (QList<QListWidget*>* lists : {&lstDescendants, &lstDescendants_sex, &lstDescendants_Parent}) {
        for (QListWidget* list : std::as_const(*lists)) {
            const QSignalBlocker block(list);
            list->clear();
        }
    }
    for (QListWidget* list : std::as_const(lstDescendants))
        shade(list);
}

void DescendantsPage::refreshDescendantTitles()
{
    const QStringList titles = model.refreshDescendantTitles();
    for (int g = 1; g <= kDescendantGenerations; ++g)
        lblDescendantTitle.at(g - 1)->setText(titles.at(g - 1));
}

void DescendantsPage::lstDescendants_Click(int generation)
{
    QListWidget* clicked = lstDescendants.at(generation - 1);
    const int row = clicked->currentRow();
    if (row < 0 || !clicked->currentItem()->isSelected())
        return;
    lblDisplayParents->setText(DisplayParentsText(DescendantEntryName(clicked->currentItem()->text())));

    const QList<int> line = model.AncestralLine(generation, row);
    for (int g = 1; g <= kDescendantGenerations; ++g) {
        if (g == generation)
            continue;
        QListWidget* list = lstDescendants.at(g - 1);
        const QSignalBlocker block(list);
        const int found = g < generation ? line.at(g - 1) : -1;
        if (found < 0) {
            list->clearSelection();
            continue;
        }
        bringIntoView(list, found);
        list->setCurrentRow(found, QItemSelectionModel::ClearAndSelect);
    }
}
