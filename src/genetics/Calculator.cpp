// SPDX-License-Identifier: GPL-3.0-or-later
#include "genetics/Calculator.h"

#include "session/globals.h"
#include "store/DataFile.h"

#include <cmath>

namespace Calculator {

QString BulkQuery(bool currentStockOnly)
{
    return currentStockOnly
               ? QStringLiteral("Select * From tree  WHERE deceased <> -1 AND sold <> -1 AND owner = -1 ORDER by DOB")
               : QStringLiteral("Select * From tree ORDER by DOB");
}

QString HelpText()
{
    const QString species = gUser.Animal;
    return QStringLiteral("To calculate the inbreeding coefficient of offspring resulting from a test mating between "
                          "two of your ") +
           species + QStringLiteral("s ") +
           QStringLiteral("choose a breeding partner from both lists. Click Calculate to begin.") +
           QLatin1Char('\n') + QStringLiteral("To calculate the inbreeding coefficient of one ") + species +
           QStringLiteral(" leave the other blank or choose 'Unknown'. ") + QLatin1Char('\n') +
           QStringLiteral("Show All - Display all previously saved coefficients.") + QLatin1Char('\n') +
           QStringLiteral("Show Mine - Display all previously saved coefficients for your stock only.") +
           QLatin1Char('\n') + QStringLiteral("Update All - Re-calculate all coefficients and save to database.");
}

QString UpdateConfirmationText(bool currentStockOnly)
{
    const QString word = currentStockOnly ? QStringLiteral("current stock") : QStringLiteral("records");
    const QString species = gUser.Animal;
    return QStringLiteral("This operation will calculate all inbreeding coefficients for all your ") + word +
           QStringLiteral(" and update your database with the results. ") +
           QStringLiteral("It could take a considerable time if you have a lot of ") + species + QStringLiteral("s.") +
           QStringLiteral("\n\n") + QStringLiteral("You only need to run this if - ") + QLatin1Char('\n') +
           QStringLiteral("  * this is the first time you have calculated coefficents for this database.") +
           QLatin1Char('\n') + QStringLiteral("  * you have added new ") + species +
           QStringLiteral("s since the last time it ran it.") + QLatin1Char('\n') +
           QStringLiteral("  * you want to change the generations searched.") + QLatin1Char('\n') +
           QStringLiteral("Do you want to continue?");
}

QVector<Column> AncestorColumns()
{
    return {{QStringLiteral("id"), 0},
            {QStringLiteral("Common Ancestor"), 0.25},
            {QStringLiteral("Gen. from ") + gUser.Male, 0.11},
            {QStringLiteral("Gen. from ") + gUser.Female, 0.11},
            {QStringLiteral("Contribution %"), 0.1},
            // Three times the list: the column always needs the scroll bar, and nothing fills it.
            {QStringLiteral("Common Ancestor's own Inbreeding"), 3}};
}

QVector<Column> RecordColumns()
{
    return {{QStringLiteral("Name"), 0.3},
            {QStringLiteral("Breed"), 0.2},
            {QStringLiteral("Sex"), 0.1},
            {QStringLiteral("Inbreeding Coefficient"), 0.4}};
}

QVector<Column> StoredColumns() { return QVector<Column>{{QStringLiteral("ID"), 0}} + RecordColumns(); }

void FillNameList(Lists::ListSink& list, bool male, bool currentStockOnly)
{
    Lists::FillParentList(list, currentStockOnly ? kCurrentStockFilter : QString(),
                          male ? QStringLiteral("male") : QStringLiteral("female"));
}

std::optional<Choice> ChooseCalculation(const QString& male, const QString& female)
{
    if (male.isEmpty() && female.isEmpty())
        return std::nullopt;
    const auto nobody = [](const QString& text) { return text.isEmpty() || text == QLatin1String("Unknown"); };
    if (nobody(male))
        return Choice{EncodeText(female), QString(), QString()};
    if (nobody(female))
        return Choice{EncodeText(male), QString(), QString()};
    return Choice{QString(), EncodeText(male), EncodeText(female)};
}

bool GaugeIsRed(double coefficient) { return coefficient >= 0.25; }

int GaugeWidth(int backgroundWidth, double coefficient)
{
    const double w = backgroundWidth * coefficient;
    return std::isfinite(w) ? int(std::lround(qBound(0.0, w, 1e6))) : 0;
}

QString CoefficientText(double coefficient) { return NumberText(RoundEven(coefficient * 100, 2)) + QLatin1Char('%'); }

QVector<StoredRow> StoredCoefficients(const QString& mode, QString* description)
{
    QString filter;
    if (mode == QLatin1String("Show Mine")) {
        filter = QStringLiteral(" WHERE deceased <> -1 AND sold <> -1 AND owner = -1");
        *description = QStringLiteral("List of coefficients saved for my stock.");
    } else {
        *description = QStringLiteral("List of all coefficient saved.");
    }
    QVector<StoredRow> rows;
    Recordset rs = gDatabase.OpenRecordset(QStringLiteral("Select * From tree") + filter);
    const int idColumn = rs.FieldIndex(QStringLiteral("ID"));
    const int nameColumn = rs.FieldIndex(QStringLiteral("name"));
    const int breedColumn = rs.FieldIndex(QStringLiteral("Breed"));
    const int sexColumn = rs.FieldIndex(QStringLiteral("Sex"));
    const int coiColumn = rs.FieldIndex(QStringLiteral("COI"));
    for (; !rs.Eof(); rs.MoveNext()) {
        StoredRow row;
        row.id = rs.Fields(idColumn).toString();
        row.name = DecodeText(rs.Fields(nameColumn).toString());
        row.breed = rs.Fields(breedColumn).toString();
        row.sex = SexWordOrUndefined(rs.Fields(sexColumn).toString());
        row.coefficient = StoredCoefficientText(rs.Fields(coiColumn));
        rows << row;
    }
    return rows;
}

QString StoredCoefficientText(const QVariant& coi)
{
    if (!coi.isValid() || coi.isNull())
        return QStringLiteral("Click Update All to calculate");
    const QString text = coi.toString() + QLatin1Char('%');
    const qsizetype dot = text.indexOf(QLatin1Char('.'));
    if (dot == 0)
        return QStringLiteral("00") + text;
    if (dot == 1)
        return QLatin1Char('0') + text;
    return text;
}

} // namespace Calculator
