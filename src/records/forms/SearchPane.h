// SPDX-License-Identifier: GPL-3.0-or-later
// The search pane of the main window: two criteria with their values, the result list with its letter
// bar, and in its place on demand the recent list. The search itself is Lists::SearchPanel; this class
// mirrors its widgets into the panel, runs the handler and shows the outcome.
#pragma once

#include "records/Lists.h"

#include <QList>
#include <QWidget>

class QComboBox;
class QLabel;
class QListWidget;
class QListWidgetItem;
class QPushButton;
class QRadioButton;
class QCheckBox;
class QToolButton;
class QStackedWidget;

class SearchPane : public QWidget {
    Q_OBJECT
public:
    explicit SearchPane(QWidget* parent = nullptr);
    ~SearchPane() override;

    // The criteria of the open file and the first search, "My Current Stock"; the recent list and the
    // saved choice between it and the search list.
    void load();

    // The search again with the criteria the pane shows.
    void refillSearchList();
    // Every line equal to name leaves the result list, and name goes first, selected.
    void putFirstInSearchList(const QString& name);
    // Selects a row of the result list (clamped to its length) as a click would; false on an empty list.
    bool pickRow(int row);
    int currentRow() const;
    int rowCount() const;
    QString firstName() const;
    // The row of name in the result list, -1 when it is not there.
    int rowOf(const QString& name) const;
    // The criteria again from the settings of the open file (custom field titles may have changed), the
    // choices made kept where they still exist.
    void reloadCriteria();
    // Marks the line of name as the current one without picking it.
    void selectName(const QString& name);

    bool showingRecent() const { return recentShown; }
    void showRecent(bool recent);
    bool pinned() const { return isPinned; }
    void setPinned(bool pinned);

    // "Search Preference" and the pin, in the program's settings under "Options".
    static bool GetUserSearchPreference(); // true for "Recent"
    static void WriteUserSearchPreference(bool recent);
    static bool GetUserPinPreference();
    static void WriteUserPinPreference(bool pinned);

    const Lists::SearchPanel& panel() const { return search; }

signals:
    // A name was clicked or reached with the cursor keys; fromRecent tells which list.
    void animalPicked(const QString& name, bool fromRecent);
    void editRequested();
    // A right click on a row, after the row was picked; name is the row's animal.
    void optionsRequested(const QPoint& globalPos, bool fromRecent, const QString& name);
    void pinToggled(bool pinned);

public slots:
    void cboSearch_Click();
    void cboBreed_Click();
    void cboSearch2_Click();
    void AdvancedSearch();
    void cmdReset_Click();
    void lblLetter_Click(int index);
    void lblRecent_Click();
    void imgPin_Click();
    // Brings the search controls up in place of the recent list; fromReset leaves the focus where it is.
    void ShowSearchOptions(bool fromReset);
    void resetLetterColour();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void GetBreedChoices(QComboBox* criterionList, QComboBox* valueList);
    void GetBreed2List();
    void readWidgets();
    void showOutcome();
    void showRecentNames(const QStringList& names, const QString& tip);
    void rowChosen(QListWidget* list, bool fromRecent);

    Lists::SearchPanel search;
    bool recentShown = false;
    bool isPinned = true;

    QComboBox* cboSearch = nullptr;
    QComboBox* cboBreed = nullptr;
    QComboBox* cboSearch2 = nullptr;
    QComboBox* cboBreed2 = nullptr;
    QRadioButton* optContains0 = nullptr;
    QRadioButton* optContains1 = nullptr;
    QCheckBox* optCurrentStock = nullptr;
    QLabel* lblFilterTitle = nullptr;
    QLabel* lblFilter = nullptr;
    QPushButton* cmdReset = nullptr;
    QPushButton* cmdAdvanced = nullptr;
    QListWidget* searchList = nullptr;
    QList<QLabel*> lblLetter;
    QLabel* lblResultsFound = nullptr;
    QLabel* lblSubjectAnimal = nullptr;
    QListWidget* lstRecent = nullptr;
    QLabel* lblRecent = nullptr;
    QLabel* lblSearch = nullptr;
    QToolButton* imgPin = nullptr;
    QStackedWidget* views = nullptr;
};
