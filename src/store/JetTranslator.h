// SPDX-License-Identifier: GPL-3.0-or-later
// Translates one statement of Jet's SQL dialect into SQLite's, with Jet's meaning.
#pragma once

#include "base/Dates.h"

#include <QString>
#include <QVector>
#include <functional>
#include <optional>

struct sqlite3;

namespace jet {

struct ColumnInfo {
    QString name;
    int type = 10; // Jet field type number
};

// The columns of a table in their order, or nothing when there is no such table. Any letter case.
using SchemaLookup = std::function<std::optional<QVector<ColumnInfo>>(const QString& table)>;

enum class StatementKind { Select, Insert, Update, Delete, CreateTable, AlterTable, DropTable, CreateIndex, DropIndex, Other };

struct Translation {
    QString sql;
    StatementKind kind = StatementKind::Other;
    QString table; // the table written to, or the first table read from; as spelled in the statement
};

// Throws JetError for what Jet refuses before running (text after the statement, an unknown INSERT
// field, a malformed date literal ...). Errors that only SQLite finds are mapped by the engine.
Translation translate(const QString& jetSql, const SchemaLookup& schema);

// Registers the functions the translated SQL calls (jet_year, jet_assign ..., Jet's LIKE) on a connection.
// Their dates follow orderOfFile: the regional order of the file the connection has open.
void registerFunctions(sqlite3* db, std::function<DateOrder()> orderOfFile = RegionalDateOrder);

} // namespace jet
