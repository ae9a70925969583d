// SPDX-License-Identifier: GPL-3.0-or-later
#include "records/Lists.h"

#include "records/Titles.h"
#include "base/Clock.h"
#include "base/Dates.h"
#include "base/Log.h"
#include "session/OpenDataFile.h"
#include "base/Ui.h"
#include "session/globals.h"
#include "store/DataFile.h"

Recordset SearchResults;

namespace Lists {

QStringList Titles;

namespace {

const QString kCurrentStock = QStringLiteral(" AND deceased <> -1 AND sold <> -1 AND owner = -1");

bool isFlagSet(const QVariant& v)
{
    return v.isValid() && !v.isNull() && v.toLongLong() != 0;
}

// A column value as the lists show it: dates in the short form of the file, the rest as text.
QString valueText(const QVariant& v)
{
    if (!v.isValid() || v.isNull())
        return {};
    if (v.typeId() == QMetaType::QDateTime || v.typeId() == QMetaType::QDate)
        return FormatShortDate(v.toDate());
    return v.toString();
}

// The right side of "column = ...": a date typed or picked in the short form of the file is compared as
// the date it stands for, since the column holds dates, not their text; any other value as text.
QString equalsValue(const QString& column, const QString& value)
{
    if (column.compare(QLatin1String("DOB"), Qt::CaseInsensitive) == 0) {
        if (const std::optional<QDateTime> date = ParseDateText(value))
            return QLatin1Char('#') + FormatSqlDate(date->date()) + QLatin1Char('#');
    }
    return QLatin1Char('\'') + EncodeText(value) + QLatin1Char('\'');
}

QString customTitle(int i)
{
    QString t = gUser.CustomName[size_t(i)];
    return t.remove(QLatin1Char(':'));
}

} // namespace

QStringList StatusNames()
{
    return {QStringLiteral("My Current Stock"), QStringLiteral("All Records"),    QStringLiteral("I Am The Breeder"),
            QStringLiteral("Born In Last 12 Months"), QStringLiteral("Sold Stock"), QStringLiteral("Not My Stock"),
            QStringLiteral("Leased"), QStringLiteral("Deceased Stock")};
}

QStringList SearchCriteria(bool withStatus)
{
    QStringList c;
    if (withStatus)
        c << QStringLiteral("Status");
    c << QStringLiteral("Name") << QStringLiteral("Sex") << QStringLiteral("Breed") << GetLocaleWord(QStringLiteral("Colour"))
      << QStringLiteral("Registration") << QStringLiteral("Cage") << QStringLiteral("Call Name")
      << QStringLiteral("Notes / Awards") << QStringLiteral("Prefix") << QStringLiteral("Suffix") << QStringLiteral("DOB");
    for (int i = 0; i < 12; ++i) {
        if (!gUser.CustomName[size_t(i)].isEmpty())
            c << customTitle(i);
    }
    return c;
}

QStringList FinanceCategories()
{
    return {QStringLiteral("Feed"),          QStringLiteral("Stock Purchase"),   QStringLiteral("Vet"),
            QStringLiteral("Equipment"),     QStringLiteral("Building"),         QStringLiteral("Advertising"),
            QStringLiteral("Travel"),        QStringLiteral("Rent Paid"),        QStringLiteral("Miscellaneous"),
            QStringLiteral("Boarding Paid"), QStringLiteral("Animal Sale"),      QStringLiteral("Product Sale"),
            QStringLiteral("Shows & Displays"), QStringLiteral("Boarding Received"), QStringLiteral("Rent Received")};
}

QStringList ColourChoices()
{
    return {QStringLiteral("buttonface"), QStringLiteral("grey"), QStringLiteral("blue"), QStringLiteral("green"),
            QStringLiteral("orange"),     QStringLiteral("pink"), QStringLiteral("yellow")};
}

QString SearchStatement(const QString& field1, const QString& value1, const QString& field2, const QString& value2,
                        bool currentOnly, bool contains)
{
    QString where;
    QString andText = kCurrentStock;
    // The value is taken as a status word whatever field1 says.
    if (value1 == QLatin1String("All Records")) {
        andText.clear();
    } else if (value1 == QLatin1String("My Current Stock")) {
        where = QStringLiteral("WHERE deceased <> -1 AND sold <> -1 AND owner = -1");
        andText.clear();
    } else if (value1 == QLatin1String("Sold Stock")) {
        where = QStringLiteral("WHERE sold = -1");
    } else if (value1 == QLatin1String("Not My Stock")) {
        where = QStringLiteral("WHERE owner <> -1");
    } else if (value1 == QLatin1String("I Am The Breeder")) {
        where = QStringLiteral("WHERE breeder = -1");
    } else if (value1 == QLatin1String("Leased")) {
        where = QStringLiteral("WHERE leased = -1");
    } else if (value1 == QLatin1String("Born In Last 12 Months")) {
        where = QStringLiteral("WHERE dob > #") + Today().addYears(-1).toString(QStringLiteral("MM dd yyyy")) +
                QLatin1Char('#');
    } else if (value1 == QLatin1String("Deceased Stock")) {
        where = QStringLiteral("WHERE deceased = true");
    } else if (!value1.isEmpty()) {
        const QString column = GetColumnName(field1);
        where = QStringLiteral("WHERE ") + column + QStringLiteral(" = ") + equalsValue(column, value1);
    } else {
        where = QStringLiteral("ORDER BY name");
    }

    if (!value2.isEmpty()) {
        const QString column = GetColumnName(field2);
        // The two blanks behind LIKE are part of the statement as it has always been built.
        const QString test = contains ? QString(column + QStringLiteral(" LIKE  '*") + EncodeText(value2) + QStringLiteral("*'"))
                                      : QString(column + QStringLiteral(" = ") + equalsValue(column, value2));
        where = where.isEmpty() ? QString(QStringLiteral(" WHERE ") + test) : QString(where + QStringLiteral(" AND ") + test);
    }
    if (!currentOnly)
        andText.clear();
    return QStringLiteral("SELECT * FROM tree ") + where + andText + QStringLiteral(" ORDER BY name");
}

bool FillSearchList(ListSink& searchList, const QString& field1, const QString& value1, const QString& field2,
                    const QString& value2, bool currentOnly, bool contains)
{
    try {
        Recordset rs = gDatabase.OpenRecordset(
            SearchStatement(field1, value1, field2, value2, currentOnly, contains));
        // Only a criterion caption spelled as the column ("callname") shows the call name; "Call Name"
        // has a blank and does not.
        const bool withCallName = field1.contains(QLatin1String("callname"), Qt::CaseInsensitive);
        const int nameColumn = rs.FieldIndex(QStringLiteral("name"));
        const int callNameColumn = rs.FieldIndex(QStringLiteral("callname"));
        QStringList items;
        for (; !rs.Eof(); rs.MoveNext()) {
            const QString name = DecodeText(rs.Fields(nameColumn).toString());
            if (name == QLatin1String("Unknown"))
                continue;
            if (withCallName)
                items << name + QStringLiteral("    [") + DecodeText(rs.Fields(callNameColumn).toString()) +
                             QLatin1Char(']');
            else
                items << name;
        }
        SearchResults = std::move(rs);
        searchList.items = std::move(items);
        searchList.backColour = searchList.items.isEmpty() ? ListSink::BackColour::ButtonFace
                                                           : ListSink::BackColour::White;
        return true;
    } catch (const JetError& e) {
        LogError(QStringLiteral("Search Error ") + QString::number(e.number()) + QStringLiteral(" - ") +
                 e.description());
        return false;
    }
}

QString GetColumnName(const QString& caption)
{
    // Custom titles first: a custom field titled "Breed" hides the real column.
    for (int i = 0; i < 12; ++i) {
        const QString title = customTitle(i);
        if (!title.isEmpty() && caption.compare(title, Qt::CaseInsensitive) == 0)
            return QStringLiteral("CustomField") + QString::number(i + 1);
    }
    auto is = [&](const QString& s) { return !s.isEmpty() && caption.compare(s, Qt::CaseInsensitive) == 0; };
    if (is(QStringLiteral("Animal Records")))
        return QStringLiteral("tree");
    if (is(gUser.Father))
        return QStringLiteral("ps");
    if (is(gUser.Mother))
        return QStringLiteral("pd");
    if (is(QStringLiteral("Notes / Awards")))
        return QStringLiteral("Notes");
    if (is(QStringLiteral("Finance")))
        return QStringLiteral("Expenditure");
    if (is(QStringLiteral("Call Name")))
        return QStringLiteral("Callname");
    if (is(QStringLiteral("Sold Stock")))
        return QStringLiteral("SoldStock");
    if (is(QStringLiteral("I am the breeder")) || is(QStringLiteral("I am not the breeder")))
        return QStringLiteral("Breeder");
    if (is(QStringLiteral("I am the owner")) || is(QStringLiteral("I am not the owner")))
        return QStringLiteral("Owner");
    if (is(QStringLiteral("Sold")) || is(QStringLiteral("Not sold")))
        return QStringLiteral("Sold");
    if (is(QStringLiteral("Deceased")) || is(QStringLiteral("Not deceased")))
        return QStringLiteral("Deceased");
    if (is(QStringLiteral("Registration")))
        return QStringLiteral("Tag");
    if (is(QStringLiteral("DOB")))
        return QStringLiteral("DOB");
    if (is(QStringLiteral("Colour")) || is(QStringLiteral("Color")) || is(GetLocaleWord(QStringLiteral("Colour"))))
        return QStringLiteral("Colour");
    return caption;
}

void FillValueList(ListSink& list, const QString& criterion, bool currentOnly)
{
    const QString c = criterion.toLower();
    if (c == QLatin1String("status")) {
        list.items << StatusNames();
        return;
    }
    if (c == QLatin1String("title")) {
        for (const QString& t : std::as_const(Titles)) {
            if (!t.isEmpty())
                list.addItem(t);
        }
        return;
    }
    static const QList<QPair<QString, QString>> columns = {
        {QStringLiteral("name"), QStringLiteral("Name")},
        {QStringLiteral("sex"), QStringLiteral("Sex")},
        {QStringLiteral("breed"), QStringLiteral("Breed")},
        {QStringLiteral("colour"), QStringLiteral("Colour")},
        {QStringLiteral("color"), QStringLiteral("Colour")},
        {QStringLiteral("registration"), QStringLiteral("Tag")},
        {QStringLiteral("cage"), QStringLiteral("Cage")},
        {QStringLiteral("call name"), QStringLiteral("CallName")},
        {QStringLiteral("notes / awards"), QStringLiteral("Notes")},
        {QStringLiteral("prefix"), QStringLiteral("Prefix")},
        {QStringLiteral("suffix"), QStringLiteral("Suffix")},
        {QStringLiteral("dob"), QStringLiteral("DOB")},
    };
    QString column;
    for (const auto& [caption, name] : columns) {
        if (c == caption)
            column = name;
    }
    for (int i = 0; i < 12; ++i) {
        const QString title = customTitle(i).toLower();
        if (!title.isEmpty() && c == title)
            column = QStringLiteral("CustomField") + QString::number(i + 1);
    }
    FillFieldList(list, column, QStringLiteral("tree"), currentOnly);
}

void FillFieldList(ListSink& list, const QString& column, const QString& table, bool currentOnly)
{
    QString sql = QStringLiteral("SELECT * FROM ") + table;
    if (!column.isEmpty()) {
        if (currentOnly)
            sql += QStringLiteral(" WHERE deceased <> -1 AND sold <> -1 AND owner = -1");
        sql += QStringLiteral(" ORDER BY ") + column;
    }
    Recordset rs = gDatabase.OpenRecordset(sql);

    static const QStringList known = [] {
        QStringList k = {"name",  "sex",  "breed", "ps",    "pd",     "colour", "tag",    "cage",
                         "notes", "callname", "vaccination", "show", "class", "judge", "prefix", "suffix",
                         "dob",   "category"};
        for (int i = 1; i <= 12; ++i)
            k << QStringLiteral("customfield") + QString::number(i);
        return k;
    }();
    const int index = known.contains(column.toLower()) ? rs.FieldIndex(column) : -1;
    if (index < 0)
        return; // nothing to take from the rows

    QString previous;
    bool first = true;
    for (; !rs.Eof(); rs.MoveNext()) {
        const QString value = valueText(rs.Fields(index));
        const QString trimmed = value.trimmed();
        // The set is ordered, so skipping a neighbour's double removes every double.
        if (!first && trimmed.compare(previous, Qt::CaseInsensitive) == 0)
            continue;
        first = false;
        previous = trimmed;
        if (!value.isEmpty() && value != QLatin1String(" ") && value.compare(QLatin1String("unknown"), Qt::CaseInsensitive) != 0)
            list.addItem(DecodeText(value));
    }
}

void FillParentList(ListSink& list, const QString& extraCondition, const QString& sex)
{
    Recordset rs = gDatabase.OpenRecordset(QStringLiteral("SELECT * FROM tree ") + QStringLiteral("WHERE sex = '") +
                                           sex + QLatin1Char('\'') + extraCondition + QStringLiteral(" ORDER BY Name"));
    list.clear();
    list.addItem(QStringLiteral("Unknown"));
    const int nameColumn = rs.FieldIndex(QStringLiteral("name"));
    for (; !rs.Eof(); rs.MoveNext())
        list.addItem(DecodeText(rs.Fields(nameColumn).toString()));
}

void FillAllNames(ListSink& list, const QString& firstItem)
{
    Recordset rs = gDatabase.OpenRecordset(QStringLiteral("SELECT * FROM tree") + QStringLiteral(" ORDER BY Name"));
    list.clear();
    if (!firstItem.isEmpty())
        list.addItem(firstItem);
    const int nameColumn = rs.FieldIndex(QStringLiteral("name"));
    for (; !rs.Eof(); rs.MoveNext()) {
        const QString name = DecodeText(rs.Fields(nameColumn).toString());
        if (name != QLatin1String("Unknown"))
            list.addItem(name);
    }
}

void FillContactList(ListSink& list)
{
    Recordset rs = gDatabase.OpenRecordset(QStringLiteral("SELECT * FROM contacts") + QStringLiteral(" ORDER BY ID"));
    list.clear();
    const int nameColumn = rs.FieldIndex(QStringLiteral("name"));
    for (; !rs.Eof(); rs.MoveNext()) {
        const QString name = DecodeText(rs.Fields(nameColumn).toString());
        if (name != QLatin1String("Unknown"))
            list.addItem(name);
    }
}

void FillTitleList(ListSink& list)
{
    list.clear();
    FillValueList(list, QStringLiteral("title"), false);
}

bool RecordExists(const QString& name, const QString& table)
{
    if (name.isEmpty())
        return false;
    const QString wanted = name.toLower();
    // A scan of the one column, compared here rather than by the engine: the same rows answer as a
    // walk over every column, without reading the rest of each row.
    Recordset rs = gDatabase.OpenRecordset(QStringLiteral("SELECT name from ") + table);
    for (; !rs.Eof(); rs.MoveNext()) {
        const QVariant v = rs.Fields(0);
        if (v.isNull())
            continue;
        const QString stored = v.toString();
        if (stored.toLower() == wanted)
            return true;
    }
    return false;
}

void LoadTitles(const QString& prefixList)
{
    Titles = SplitTitles(prefixList);
}

QString RemoveTitle(const QString& name)
{
    for (const QString& t : std::as_const(Titles)) {
        const QString start = t + QLatin1Char(' ');
        if (name.startsWith(start, Qt::CaseInsensitive))
            return name.mid(start.size());
    }
    return name;
}

QString GetPrefixOf(const QString& name)
{
    Recordset rs = gDatabase.OpenRecordset(QStringLiteral("SELECT * FROM tree where name = '") + name + QLatin1Char('\''));
    return rs.Eof() ? QString() : DecodeText(rs.Fields(QStringLiteral("Prefix")).toString());
}

QString GetSuffixOf(const QString& name)
{
    Recordset rs = gDatabase.OpenRecordset(QStringLiteral("SELECT suffix FROM tree where name = '") + name + QLatin1Char('\''));
    return rs.Eof() ? QString() : rs.Fields(QStringLiteral("Suffix")).toString();
}

QString GetFullName(const QString& name)
{
    const QString full = GetPrefixOf(name) + QLatin1Char(' ') + name + QLatin1Char(' ') + GetSuffixOf(name);
    return full.trimmed();
}

bool NameInTree(const QString& name)
{
    try {
        return !gDatabase.OpenRecordset(QStringLiteral("SELECT ID FROM tree WHERE name = '") + EncodeText(name) +
                                        QLatin1Char('\''))
                    .Eof();
    } catch (const JetError&) {
        return false;
    }
}

bool GetIsSold(const QString& name)
{
    Recordset rs = gDatabase.OpenRecordset(QStringLiteral("SELECT sold FROM tree WHERE name = '") + name + QLatin1Char('\''));
    return !rs.Eof() && isFlagSet(rs.Fields(0));
}

bool GetIsDeceased(const QString& name)
{
    Recordset rs = gDatabase.OpenRecordset(QStringLiteral("SELECT deceased FROM tree WHERE name = '") + name + QLatin1Char('\''));
    return !rs.Eof() && isFlagSet(rs.Fields(0));
}

QString GetNameById(const QString& id)
{
    Recordset rs = gDatabase.OpenRecordset(QStringLiteral("Select name FROM tree WHERE ID = ") + id);
    return rs.Eof() ? QString() : DecodeText(rs.Fields(QStringLiteral("name")).toString());
}

QString GetFieldById(const QString& field, const QString& table, const QString& id)
{
    Recordset rs = gDatabase.OpenRecordset(QStringLiteral("SELECT ") + field + QStringLiteral(" FROM ") + table +
                                           QStringLiteral(" where id = ") + id);
    if (rs.Eof())
        return {};
    static const QStringList readable = {QStringLiteral("name"), QStringLiteral("offspring"), QStringLiteral("sire"),
                                         QStringLiteral("dam")};
    const QString f = field.trimmed().toLower();
    return readable.contains(f) ? rs.Fields(f).toString() : QString();
}

QString SexWordOf(const QString& sex)
{
    return sex.compare(QLatin1String("male"), Qt::CaseInsensitive) == 0 ? gUser.Male : gUser.Female;
}

QString ResultsCountText(int count, const QString& value1)
{
    const QString tail = QStringLiteral(" Click to view.") + QLatin1Char('\n') +
                         QStringLiteral("Double click to edit. Right click for options.");
    if (count == 1)
        return QStringLiteral("1 result.") + tail;
    if (count > 1)
        return QString::number(count) + QStringLiteral(" results.") + tail;
    if (value1 == QLatin1String("My Current Stock"))
        return QStringLiteral("No Results found. Try searching by Status is All Records.") + QLatin1Char('\n') +
               QStringLiteral("Only records checked \"I am the owner\" can appear under My Current Stock.");
    return QStringLiteral("No results found.");
}

QString SubjectText(int count, const QString& field1, const QString& value1, const QString& field2,
                    const QString& value2, bool contains, bool currentStockShown, bool currentStock)
{
    QString ending;
    if (currentStockShown)
        ending = currentStock ? QStringLiteral(" (list my current stock)") : QStringLiteral(" (list all records)");
    QString s = QStringLiteral("Search Result: ") + QString::number(count) + QStringLiteral(" records found where ") +
                field1 + QStringLiteral(" is \"") + value1 + QLatin1Char('"') + ending;
    if (!field2.isEmpty())
        s += QStringLiteral(" and ") + field2 + (contains ? QStringLiteral(" contains \"") : QStringLiteral(" is \"")) +
             value2 + QLatin1Char('"');
    return s;
}

void SearchPanel::GetBreedChoices(const QString& criterion, ListSink& valueList) const
{
    valueList.clear();
    valueList.text = criterion == QLatin1String("Status") ? QStringLiteral("My Current Stock")
                                                          : QStringLiteral("Click to select  > >");
    if (!criterion.isEmpty())
        FillValueList(valueList, criterion, optCurrentStock);
}

void SearchPanel::cboBreed_Click()
{
    const bool allStock = cboBreed == QLatin1String("My Current Stock") || cboBreed == QLatin1String("All Records");
    currentStockShown = !allStock;
    // These statuses never meet the current-stock condition.
    if (cboBreed == QLatin1String("Leased") || cboBreed == QLatin1String("Not My Stock") ||
        cboBreed == QLatin1String("Sold Stock"))
        optCurrentStock = false;
    if (cboSearch == QLatin1String("Title")) {
        FillTitleList(searchList);
    } else if (!FillSearchList(searchList, cboSearch, cboBreed, cboSearch2, cboBreed2, optCurrentStock,
                               optContains1)) {
        // The list stays as it was, and so do the count and the sentence that describe it.
        return;
    }
    ShowResultsCount();
}

void SearchPanel::ShowResultsCount()
{
    lblResultsFound = ResultsCountText(searchList.count(), cboBreed);
    lblSubjectAnimal = SubjectText(searchList.count(), cboSearch, cboBreed, cboSearch2, cboBreed2, optContains1,
                                   currentStockShown, optCurrentStock);
}

void SearchPanel::AdvancedSearch()
{
    if (cboBreed2.isEmpty()) {
        Ui::message(QStringLiteral("Fill all four lists for advanced search or click Reset and just use just the top two lists."),
                    Ui::Buttons::Ok, Ui::Icon::Exclamation, QStringLiteral("Missing search criteria"));
        return;
    }
    searchList.clear();
    FillSearchList(searchList, cboSearch, cboBreed, cboSearch2, cboBreed2, optCurrentStock, optContains1);
    ShowResultsCount();
}

void SearchPanel::cmdReset_Click()
{
    cboSearch = QStringLiteral("Status");
    cboBreed = QStringLiteral("My Current Stock");
    cboSearch2.clear();
    cboBreed2.clear();
    optContains1 = false;
    cboBreed_Click();
}

void SearchPanel::lblLetter_Click(const QString& letter)
{
    cboBreed_Click();
    qsizetype first = 0;
    while (first < searchList.items.size() && searchList.items.at(first).left(1).toUpper() != letter)
        ++first;
    searchList.items.remove(0, first);
    if (searchList.items.isEmpty()) {
        // "#" never matches a name, so it brings the full list back.
        cboBreed_Click();
        if (letter != QLatin1String("#"))
            lblResultsFound = QStringLiteral("No name starts with ") + letter + QLatin1Char('.');
    } else {
        lblResultsFound = QStringLiteral("Displaying from ") + letter + QStringLiteral(" onwards.") + QLatin1Char('\n') +
                          QStringLiteral("Click # to view full list");
    }
}

} // namespace Lists
