// SPDX-License-Identifier: GPL-3.0-or-later
// The "Descendants" page of the main window: the current animal's descendants in nine lists, one a
// generation, with the hidden sex and parent lists behind them. A click on an entry shows its parents
// and highlights its line back to the subject.
#pragma once

#include "genetics/Descendants.h"

#include <QList>
#include <QWidget>

class QLabel;
class QListWidget;

class DescendantsPage : public QWidget {
    Q_OBJECT
public:
    explicit DescendantsPage(QWidget* parent = nullptr);

    // Fills the page for gAnimal.
    void ShowDescendants();

    // Generation 1 to 9.
    QListWidget* descendantsList(int generation) const { return lstDescendants.at(generation - 1); }
    const Descendants& descendants() const { return model; }

public slots:
    void lstDescendants_Click(int generation);

private:
    void LoadDescendants();
    void ClearDescendantLists();
    void refreshDescendantTitles();

    Descendants model;
    QList<QListWidget*> lstDescendants;
    QList<QListWidget*> lstDescendants_sex;
    QList<QListWidget*> lstDescendants_Parent;
    QList<QLabel*> lblDescendantTitle;
    QLabel* lblDescendantHelp = nullptr;
    QLabel* lblDescendantLegend = nullptr;
    QLabel* lblDisplayParents = nullptr;
};
