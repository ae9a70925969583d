// SPDX-License-Identifier: GPL-3.0-or-later
// The search of the main window and the list fillers that every form uses. Each filler writes into a
// ListSink, so that the logic runs without a window: a form copies the sink into its QComboBox or
// QListWidget, a test reads it as it is.
#pragma once

#include "store/Database.h"

#include <QString>
#include <QStringList>
#include <functional>

// The record set of the last search, kept for the list printout and the result count.
extern Recordset SearchResults;

namespace Lists {

// What a list control holds as far as the fillers are concerned.
struct ListSink {
    enum class BackColour { White, ButtonFace };

    QStringList items;
    QString text; // a combo box's edit text
    BackColour backColour = BackColour::White;

    void clear() { items.clear(); }
    void addItem(const QString& item) { items << item; }
    int count() const { return int(items.size()); }
};

// The title words of the open file, longest first; filled by LoadTitles.
extern QStringList Titles;

QStringList StatusNames();
// The criteria of cboSearch (withStatus) and cboSearch2, by the settings in gUser.
QStringList SearchCriteria(bool withStatus);
QStringList FinanceCategories();
QStringList ColourChoices();

// The statement FillSearchList runs for these arguments.
QString SearchStatement(const QString& field1, const QString& value1, const QString& field2, const QString& value2,
                        bool currentOnly, bool contains);
// Runs the search on gDatabase into searchList and keeps the record set as SearchResults. A database
// error is logged as "Search Error " and leaves searchList as it was; false then.
bool FillSearchList(ListSink& searchList, const QString& field1, const QString& value1, const QString& field2,
                    const QString& value2, bool currentOnly, bool contains);

QString GetColumnName(const QString& caption);

// These fillers append to the list; the callers empty it first where they mean to. Database errors
// go to the caller.
void FillValueList(ListSink& list, const QString& criterion, bool currentOnly);
void FillFieldList(ListSink& list, const QString& column, const QString& table, bool currentOnly);
// These start the list afresh.
void FillParentList(ListSink& list, const QString& extraCondition, const QString& sex);
void FillAllNames(ListSink& list, const QString& firstItem);
void FillContactList(ListSink& list);
void FillTitleList(ListSink& list);

// name is in stored form, as the table holds it; letter case does not matter.
bool RecordExists(const QString& name, const QString& table);

void LoadTitles(const QString& prefixList);
QString RemoveTitle(const QString& name);

// A picked name still has its row: through the name index, where RecordExists walks the table.
// name is decoded.
bool NameInTree(const QString& name);

QString GetPrefixOf(const QString& name);
QString GetSuffixOf(const QString& name);
QString GetFullName(const QString& name);
bool GetIsSold(const QString& name);
bool GetIsDeceased(const QString& name);
QString GetNameById(const QString& id);
QString GetFieldById(const QString& field, const QString& table, const QString& id);
QString SexWordOf(const QString& sex);

// The text of lblResultsFound for a result of count lines, value1 being the first criterion's value.
QString ResultsCountText(int count, const QString& value1);
// The text of lblSubjectAnimal.
QString SubjectText(int count, const QString& field1, const QString& value1, const QString& field2,
                    const QString& value2, bool contains, bool currentStockShown, bool currentStock);

// The search panel of the main window without its widgets: a form mirrors its controls into these
// fields, calls the handler and shows the outcome.
struct SearchPanel {
    QString cboSearch = QStringLiteral("Status");
    QString cboBreed = QStringLiteral("My Current Stock");
    QString cboSearch2;
    QString cboBreed2;
    bool optContains1 = false; // optContains(1): "contains (enter text)"
    bool optCurrentStock = false;
    bool currentStockShown = false; // optCurrentStock, lblFilterTitle and lblFilter
    ListSink searchList;
    QString lblResultsFound;
    QString lblSubjectAnimal;

    // A criterion was chosen: its value list is emptied, given its prompt and filled.
    void GetBreedChoices(const QString& criterion, ListSink& valueList) const;
    void cboBreed_Click(); // a value was picked in cboBreed
    void ShowResultsCount();
    void AdvancedSearch();
    void cmdReset_Click();
    void lblLetter_Click(const QString& letter);
};

} // namespace Lists
