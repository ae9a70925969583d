// SPDX-License-Identifier: GPL-3.0-or-later
// What the inbreeding calculator does without its window: its texts, its lists' columns, the choice
// between one animal and a test mating, the bulk runs over all records or the current stock, and the
// list of stored coefficients.
#pragma once

#include "genetics/Coefficient.h"
#include "records/Lists.h"

#include <QString>
#include <QVector>
#include <optional>

namespace Calculator {

// The filter of the current stock, and the queries of the bulk runs.
inline const QString kCurrentStockFilter = QStringLiteral(" AND deceased <> -1 AND sold <> -1 AND owner = -1");
QString BulkQuery(bool currentStockOnly);

// The help shown on opening, with the species word of the open file.
QString HelpText();
// The question before a bulk run, titled "Update Database".
QString UpdateConfirmationText(bool currentStockOnly);

// A column of lstCoefficient: its heading and its width as a share of the list's width.
struct Column {
    QString title;
    double widthShare = 0;
};
QVector<Column> AncestorColumns(); // Calculate's report, "id" first
QVector<Column> RecordColumns();   // the bulk run's rows
QVector<Column> StoredColumns();   // listStored: "ID" and the bulk run's columns

// The name lists: males or females, all or the current stock only, "Unknown" first.
void FillNameList(Lists::ListSink& list, bool male, bool currentStockOnly);

// What Calculate works out for the two names of the lists (as shown, decoded).
struct Choice {
    QString name, sire, dam; // stored forms; name blank for a test mating
};
// Nothing when both are blank. With one side blank or "Unknown" the other is the subject.
std::optional<Choice> ChooseCalculation(const QString& male, const QString& female);

// The gauge after Calculate.
bool GaugeIsRed(double coefficient);
int GaugeWidth(int backgroundWidth, double coefficient);
// lblDescription after Calculate: "12.5%".
QString CoefficientText(double coefficient);

// One row of listStored.
struct StoredRow {
    QString id, name, breed, sex, coefficient;
};
// mode "Show Mine" lists the current stock, anything else every record. description receives the
// text that says which.
QVector<StoredRow> StoredCoefficients(const QString& mode, QString* description);
// The coefficient column of listStored for a COI value: "Click Update All to calculate" for Null, and
// "07.5%" or "00.5%" so that the column sorts as text.
QString StoredCoefficientText(const QVariant& coi);

} // namespace Calculator
