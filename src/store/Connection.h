// SPDX-License-Identifier: GPL-3.0-or-later
// Internals of the engine shared by Database, Recordset and TableDef.
#pragma once

#include "store/Database.h"
#include "store/JetTranslator.h"

#include <QHash>
#include <sqlite3.h>
#include <optional>

namespace jet {

struct PreparedStatement {
    Translation translation;
    sqlite3_stmt* stmt = nullptr;
    QStringList parameters; // the text literals of this use, bound as ?1, ?2 ...
    // The result columns, worked out once per prepared statement.
    bool described = false;
    QVector<QString> names;
    QVector<int> types;
    QHash<QString, int> byName;
    bool inUse = false;
    bool cached = true; // false for a one-off copy made while the cached one was busy
};

// One definition of a column as the engine rebuilds a table from it.
struct ColumnDef {
    QString name;
    int type = dbText;
    bool autoIncrement = false; // the table's INTEGER PRIMARY KEY AUTOINCREMENT
    bool primaryKey = false;    // a primary key without auto numbering
    QString defaultSql;         // SQL of the DEFAULT clause, empty for none
    QString copyFrom;           // the old column whose values it takes; empty for a new column
};

class Connection {
public:
    Connection(sqlite3* db, QString path);
    ~Connection();
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    sqlite3* db() const { return m_db; }
    const QString& path() const { return m_path; }
    bool isOpen() const { return m_db != nullptr; }
    void close();
    void requireOpen() const;

    // A prepared statement for a Jet text, from the cache when it is idle there. The caller gives it
    // back with release().
    PreparedStatement* acquire(const QString& jetSql);
    void describe(PreparedStatement* p);
    void release(PreparedStatement* p);

    // Runs SQLite text directly (internal statements: pragmas, rebuilds). Throws JetError.
    void exec(const QString& sqliteSql, StatementKind kind = StatementKind::Other);
    [[noreturn]] void fail(int rc, StatementKind kind, const QString& statement) const;

    std::optional<QVector<ColumnInfo>> columns(const QString& table);
    QString actualTableName(const QString& table); // "" when there is no such table
    QVector<ColumnDef> columnDefs(const QString& table);
    QStringList indexSql(const QString& table);    // CREATE INDEX texts of the table's own indexes
    void rebuildTable(const QString& table, const QVector<ColumnDef>& columns);
    void schemaChanged();
    void dropIdleStatements();
    void countSchemaCall() { ++m_schemaCalls; }
    qint64 schemaCalls() const { return m_schemaCalls; }

    // The regional order of the file's dates, from the country of its settings row; read again after
    // anything writes that row.
    DateOrder dateOrder();
    void settingsRowChanged() { m_dateOrderKnown = false; }

    int recordsAffected = 0;
    int transactionDepth = 0;

private:
    sqlite3* m_db = nullptr;
    QString m_path;
    QHash<QString, PreparedStatement*> m_cache;
    DateOrder m_dateOrder = DateOrder::DayFirst;
    bool m_dateOrderKnown = false;
    QHash<QString, std::optional<QVector<ColumnInfo>>> m_schema;
    qint64 m_schemaCalls = 0;
};

// Lets no trigger or view run that Tessorin did not make: a file may carry code of its own, and it
// must not run behind a page that only shows a record. A statement that would run one fails instead.
void refuseForeignCode(sqlite3* db);

QString quoteName(const QString& name);
QString columnDeclaration(const ColumnDef& c);

} // namespace jet
