// SPDX-License-Identifier: GPL-3.0-or-later
// The data file engine: a SQLite database that answers the operations and the SQL dialect of Jet,
// since the rest of the program builds Jet statements and walks recordsets as the Jet engine offers them.
#pragma once

#include "base/Dates.h"
#include "store/JetError.h"
#include "store/JetTypes.h"

#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>
#include <memory>

namespace jet {
class Connection;
struct Cursor;
} // namespace jet

// A forward-only stepped, backward-scrollable view of a SELECT. Rows are fetched as the caller moves
// and kept, so MovePrevious and MoveFirst work; RecordCount, as in Jet, counts the rows reached so far
// and is exact only after MoveLast.
//
// Jet's EOF and BOF properties are spelled Eof() and Bof(): EOF is a macro of the C library.
class Recordset {
public:
    Recordset();
    ~Recordset();
    Recordset(Recordset&&) noexcept;
    Recordset& operator=(Recordset&&) noexcept;

    bool Eof() const;
    bool Bof() const;
    void MoveNext();
    void MovePrevious();
    void MoveFirst();
    void MoveLast();
    int RecordCount() const;

    // The value of the current row's column, reached by name in any letter case. Null is an invalid
    // QVariant and distinct from "". Dates come as QDateTime, flags and whole numbers as qint64,
    // other numbers as double, text as QString.
    QVariant Fields(const QString& name) const;
    QVariant Fields(int index) const;
    int FieldCount() const;
    QString FieldName(int index) const;
    int FieldType(int index) const; // Jet type number of the column the value came from
    int FieldIndex(const QString& name) const; // -1 when there is no such column

    void Close();
    bool isOpen() const;

private:
    friend class Database;
    explicit Recordset(std::unique_ptr<jet::Cursor> cursor);
    std::unique_ptr<jet::Cursor> m_cursor;
};

// A column definition. Made free by TableDef::CreateField and appended, or reached attached through
// TableDef::Fields(); setting a property of an attached field changes the table.
class Field {
public:
    Field() = default;
    Field(QString name, int type, int attributes = 0);

    QString Name() const { return m_name; }
    void setName(const QString& name); // an attached field is renamed in its table
    int Type() const { return m_type; }
    int Attributes() const { return m_attributes; }
    void setAttributes(int attributes);
    QVariant DefaultValue() const { return m_default; }
    void setDefaultValue(const QVariant& value);
    bool AllowZeroLength() const;
    void setAllowZeroLength(bool allow);
    bool isAttached() const { return m_connection != nullptr; }

private:
    friend class TableDef;
    friend class TableFields;
    QString m_name;
    int m_type = jet::dbText;
    int m_attributes = 0;
    QVariant m_default;
    std::shared_ptr<jet::Connection> m_connection;
    QString m_table;
};

struct Index {
    QString Name;
    bool Primary = false;
    bool Unique = false;
    QStringList Fields;
};

class TableFields {
public:
    int Count() const;
    Field operator[](int index) const;           // throws 3265 when out of range
    Field operator()(const QString& name) const; // throws 3265 when missing
    bool contains(const QString& name) const;
    void Append(const Field& field);             // throws 3191 when the column exists
    void Delete(const QString& name);            // throws 3265 when missing
    void Refresh() {}

private:
    friend class TableDef;
    TableFields(std::shared_ptr<jet::Connection> c, QString table) : m_connection(std::move(c)), m_table(std::move(table)) {}
    std::shared_ptr<jet::Connection> m_connection;
    QString m_table;
};

class TableIndexes {
public:
    int Count() const;
    Index operator[](int index) const;
    bool contains(const QString& name) const;
    void Append(const Index& index);   // a primary index makes its column the auto-numbered key
    void Delete(const QString& name);  // throws 3265 when missing
    void Refresh() {}

private:
    friend class TableDef;
    TableIndexes(std::shared_ptr<jet::Connection> c, QString table) : m_connection(std::move(c)), m_table(std::move(table)) {}
    QVector<Index> list() const;
    std::shared_ptr<jet::Connection> m_connection;
    QString m_table;
};

class TableDef {
public:
    QString Name() const { return m_name; }
    void setName(const QString& name); // renames the table
    Field CreateField(const QString& name, int type) const { return Field(name, type); }
    Index CreateIndex(const QString& name) const { Index i; i.Name = name; return i; }
    TableFields Fields() const { return TableFields(m_connection, m_name); }
    TableIndexes Indexes() const { return TableIndexes(m_connection, m_name); }

private:
    friend class Database;
    TableDef(std::shared_ptr<jet::Connection> c, QString name) : m_connection(std::move(c)), m_name(std::move(name)) {}
    std::shared_ptr<jet::Connection> m_connection;
    QString m_name;
};

class Database {
public:
    Database();

    // Creating over an existing file raises 3204. The locale string is accepted and has no effect:
    // text comparison in our files is always case-blind.
    static Database CreateDatabase(const QString& path, const QString& locale = QString());

    // SQLite files carry no password, so the connect string is never tested and any connect string
    // opens the file; this keeps every data file readable by the user's own SQLite tools.
    static Database OpenDatabase(const QString& path, bool exclusive = false, bool readOnly = false,
                                 const QString& connect = QString());

    bool isOpen() const;
    // True when the file was opened read-only, or SQLite could not open it for writing.
    bool isReadOnly() const;
    // How the file's dates read: month first when its settings row says "United States", else day first.
    DateOrder dateOrder() const;
    QString path() const;
    void Close();
    // No password to change: succeeds and leaves the file as it is (see OpenDatabase).
    void NewPassword(const QString& oldPassword, const QString& newPassword);

    // Runs one INSERT, UPDATE, DELETE or DDL statement of Jet's dialect; returns the rows affected.
    int Execute(const QString& sql);
    int RecordsAffected() const;
    Recordset OpenRecordset(const QString& sql);

    QStringList TableDefs() const;
    TableDef TableDefs(const QString& name) const; // any letter case; throws 3265 when missing
    bool hasTable(const QString& name) const;

    void BeginTrans();
    void CommitTrans();
    void Rollback();

    int applicationId() const;
    void setApplicationId(int id);

    // Statements that read or change the schema, counted so that a test can tell a normal open
    // made none.
    qint64 schemaCallCount() const;

    std::shared_ptr<jet::Connection> connection() const { return m_connection; }

private:
    explicit Database(std::shared_ptr<jet::Connection> c) : m_connection(std::move(c)) {}
    std::shared_ptr<jet::Connection> m_connection;
};

// Groups writes into one transaction; rolls back unless commit() was called.
class Transaction {
public:
    explicit Transaction(Database& db);
    ~Transaction();
    void commit();
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;

private:
    Database& m_db;
    bool m_done = false;
};
