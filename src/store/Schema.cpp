// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/Schema.h"

namespace Schema {

const QList<TableStatement>& Tables()
{
    static const QList<TableStatement> tables = {
        {QStringLiteral("tree"),
         QStringLiteral("CREATE TABLE tree (id COUNTER PRIMARY KEY, name STRING, colour STRING, breed STRING, sex STRING, dob DATE, notes MEMO, ps STRING, pd STRING, fatherId STRING, motherId STRING, cage STRING, tag STRING, picture STRING, deceased NUMBER, dateDeceased STRING, customField1 STRING, customField2 STRING, customField3 STRING, customfield4 STRING, customField5 STRING, customField6 STRING, customField7 STRING, customField8 STRING, customField9 STRING, customField10 STRING, customField11 STRING, customField12 STRING, health MEMO, journal MEMO, callname STRING, sold NUMBER, datesold DATE, breeder NUMBER, owner NUMBER, leased NUMBER, prefix STRING, suffix STRING, coi STRING, oldId String)")},
        {QStringLiteral("cavyuser"),
         QStringLiteral("CREATE TABLE cavyuser (ID COUNTER PRIMARY KEY, fldEmail STRING, fldBreederName STRING, fldStudNum STRING, fldPhoneNum STRING, fldStud STRING, fldAnimal STRING, fldMale STRING, fldFemale STRING, fldGestation LONG, fldCountry STRING, fldCustomDetail STRING, fldCustomName1 STRING, fldCustomName2 STRING, fldCustomName3 STRING, fldCustomName4 STRING, fldCustomName5 STRING, fldCustomName6 STRING, fldCustomName7 STRING, fldCustomName8 STRING, fldCustomName9 STRING, fldCustomName10 STRING, fldCustomName11 STRING, fldCustomName12 STRING, fldOrganisation STRING, fldReminders MEMO, fldFather STRING, fldMother STRING, fldPrefix STRING, fldNestBox Long, fldWean Long, fldRebreed Long, fldTag Long, fldWeightMeasure STRING, fldVersion String, fldAutoUpdate Long)")},
        {QStringLiteral("soldstock"),
         QStringLiteral("CREATE TABLE soldstock (ID COUNTER PRIMARY KEY, Dam STRING,  Offspring STRING, DOB STRING, Breed STRING, Colour STRING, DateSold STRING, SoldTo STRING, Sire STRING, Address STRING)")},
        {QStringLiteral("Breeding"),
         QStringLiteral("CREATE TABLE Breeding (ID COUNTER PRIMARY KEY, Breed STRING, Boar STRING, Sow STRING, Due DATE, Mated DATE, Born DATE, numBoars STRING, NumSows STRING, Colour MEMO, Sold STRING, Unsuccessful NUMBER, Stillborn String, numUndefined NUMBER)")},
        {QStringLiteral("weights"),
         QStringLiteral("CREATE TABLE weights (id COUNTER PRIMARY KEY, weightDate DATE, weightTime STRING, name STRING, weight STRING)")},
        {QStringLiteral("print"),
         QStringLiteral("CREATE TABLE print (id COUNTER PRIMARY KEY, Orientation NUMBER, Margin NUMBER, FontSize NUMBER, FontName STRING, FontColour STRING, FontBold NUMBER,FontItalic NUMBER, SubjectFontSize NUMBER, SubjectFontName STRING, SubjectFontColour STRING, SubjectFontBold NUMBER,SubjectFontItalic NUMBER, TitleFontSize NUMBER, TitleFontName STRING, TitleFontColour STRING,TitleFontBold NUMBER,TitleFontItalic NUMBER, ShowBorder NUMBER, WhichGraphic NUMBER, ShowShadow NUMBER, PicSize NUMBER, LineColour STRING, Generationchoice NUMBER, FieldChoices STRING, picLeft NUMBER, picTop NUMBER, objectPositions MEMO, name String, background String, logo String, highlightChampions NUMBER, championColour STRING, logoSize NUMBER, fieldOrder STRING)")},
        {QStringLiteral("contacts"),
         QStringLiteral("CREATE TABLE contacts (ID COUNTER PRIMARY KEY,name STRING, address STRING, city STRING, state STRING, country STRING, postcode STRING, phone STRING, email STRING, category STRING, notes MEMO)")},
        {QStringLiteral("vaccinations"),
         QStringLiteral("CREATE TABLE vaccinations (id COUNTER PRIMARY KEY, duedate DATE, name STRING, vaccination STRING, done char(1))")},
        {QStringLiteral("reminders"),
         QStringLiteral("CREATE TABLE reminders (id COUNTER PRIMARY KEY, duedate DATE, reminder STRING, done char(1))")},
        {QStringLiteral("expenditure"),
         QStringLiteral("CREATE TABLE expenditure (id COUNTER PRIMARY KEY, name STRING, expense_date DATE, details STRING, amount Currency, income Currency, category STRING)")},
        {QStringLiteral("shows"),
         QStringLiteral("CREATE TABLE shows (id COUNTER PRIMARY KEY, name STRING, show STRING, showDate DATE, class STRING, competitorNum String, place STRING, awards STRING, judge STRING, Points STRING)")},
        {QStringLiteral("journal"),
         QStringLiteral("CREATE TABLE journal (id COUNTER PRIMARY KEY, nameId STRING, journalDate DATE, journalNote Memo)")},
    };
    return tables;
}

QString CreateStatement(const QString& table)
{
    for (const TableStatement& t : Tables())
        if (t.table.compare(table, Qt::CaseInsensitive) == 0)
            return t.createStatement;
    return {};
}

QList<ColumnText> Columns(const QString& table)
{
    const QString create = CreateStatement(table);
    const qsizetype open = create.indexOf(QLatin1Char('('));
    QList<ColumnText> columns;
    if (open < 0)
        return columns;
    // No type of these statements has a comma inside its parentheses.
    for (const QString& part : create.mid(open + 1).chopped(1).split(QLatin1Char(','))) {
        const QString definition = part.simplified();
        const qsizetype space = definition.indexOf(QLatin1Char(' '));
        columns.append({definition.left(space), definition.mid(space + 1)});
    }
    return columns;
}

const QString kSettingsRowInsert = QStringLiteral(
    "INSERT INTO cavyuser (fldAnimal,fldMale,fldFemale,fldGestation,fldFather,fldMother,fldNestBox,fldWean,fldRebreed,fldTag,fldAutoUpdate) VALUES ('Animal','Male','Female',0,'Father','Mother',0,0,0,0,1)");

} // namespace Schema
