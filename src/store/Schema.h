// SPDX-License-Identifier: GPL-3.0-or-later
// The tables of a data file: the statements that make them, in the order the integrity check runs them.
#pragma once

#include <QString>
#include <QStringList>

namespace Schema {

struct TableStatement {
    QString table;
    QString createStatement;
};

// tree, cavyuser, soldstock, Breeding, weights, print, contacts, vaccinations, reminders,
// expenditure, shows, journal.
const QList<TableStatement>& Tables();
QString CreateStatement(const QString& table); // any letter case; "" when unknown

struct ColumnText {
    QString name;
    QString type; // as the statement declares it: "STRING", "COUNTER PRIMARY KEY", "char(1)" ...
};
// The columns of a table's CREATE statement, in order; none for an unknown table.
QList<ColumnText> Columns(const QString& table);
extern const QString kSettingsRowInsert;      // the INSERT that makes row 1 of cavyuser

} // namespace Schema
