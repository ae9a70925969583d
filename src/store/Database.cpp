// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/Database.h"

#include "base/Dates.h"
#include "store/Collation.h"
#include "store/Connection.h"

#include <QFileInfo>
#include <algorithm>
#include <vector>

using jet::ColumnDef;
using jet::Connection;
using jet::PreparedStatement;
using jet::quoteName;

namespace jet {

// Dates are stored as "yyyy-MM-dd" or "yyyy-MM-dd HH:mm:ss"; read on every row, so parsed by hand.
static std::optional<QDateTime> storedDate(const QString& s)
{
    if (s.size() != 10 && s.size() != 19)
        return std::nullopt;
    auto num = [&](int from, int len, int& out) {
        out = 0;
        for (int k = from; k < from + len; ++k) {
            const QChar ch = s[k];
            if (!ch.isDigit())
                return false;
            out = out * 10 + ch.digitValue();
        }
        return true;
    };
    int y, m, d, hh = 0, mm = 0, ss = 0;
    if (s[4] != QLatin1Char('-') || s[7] != QLatin1Char('-') || !num(0, 4, y) || !num(5, 2, m) || !num(8, 2, d))
        return std::nullopt;
    if (s.size() == 19 && (s[10] != QLatin1Char(' ') || s[13] != QLatin1Char(':') || s[16] != QLatin1Char(':') ||
                           !num(11, 2, hh) || !num(14, 2, mm) || !num(17, 2, ss)))
        return std::nullopt;
    const QDate date(y, m, d);
    const QTime time(hh, mm, ss);
    if (!date.isValid() || !time.isValid())
        return std::nullopt;
    return QDateTime(date, time);
}

// A fetched row kept compact: its texts in one buffer, values made only when a field is read, so a
// walk over a whole table does not build a value for every column of every row.
struct StoredRow {
    struct Cell {
        int type = SQLITE_NULL;
        int offset = 0;
        int length = 0;
        union {
            qint64 integer;
            double real;
        };
        Cell() : integer(0) {}
    };
    QByteArray bytes;
    QVector<Cell> cells;
};

struct Cursor {
    std::shared_ptr<Connection> connection;
    PreparedStatement* statement = nullptr;
    QVector<QString> names;
    QHash<QString, int> byName; // lower-case name -> column
    QVector<int> types;         // Jet type by declaration, 0 when the column is an expression
    std::vector<StoredRow> rows;
    bool exhausted = false;
    qsizetype position = 0; // -1 before the first row, rows.size() after the last

    ~Cursor() { finish(); }

    void finish()
    {
        if (statement && connection)
            connection->release(statement);
        statement = nullptr;
        exhausted = true;
    }

    StoredRow read(sqlite3_stmt* stmt) const
    {
        StoredRow row;
        const int n = int(names.size());
        row.cells.resize(n);
        for (int i = 0; i < n; ++i) {
            StoredRow::Cell& cell = row.cells[i];
            cell.type = sqlite3_column_type(stmt, i);
            switch (cell.type) {
            case SQLITE_INTEGER: cell.integer = sqlite3_column_int64(stmt, i); break;
            case SQLITE_FLOAT: cell.real = sqlite3_column_double(stmt, i); break;
            case SQLITE_NULL: break;
            default: {
                const void* data = cell.type == SQLITE_BLOB ? sqlite3_column_blob(stmt, i)
                                                            : static_cast<const void*>(sqlite3_column_text(stmt, i));
                cell.length = sqlite3_column_bytes(stmt, i);
                cell.offset = int(row.bytes.size());
                row.bytes.append(static_cast<const char*>(data), cell.length);
            }
            }
        }
        return row;
    }

    QVariant value(const StoredRow& row, int i) const
    {
        const StoredRow::Cell& cell = row.cells[i];
        switch (cell.type) {
        case SQLITE_NULL: return {};
        case SQLITE_INTEGER: return QVariant(cell.integer);
        case SQLITE_FLOAT: return QVariant(cell.real);
        case SQLITE_BLOB: return row.bytes.mid(cell.offset, cell.length);
        default: {
            QString s = QString::fromUtf8(row.bytes.constData() + cell.offset, cell.length);
            if (types[i] == dbDate) {
                if (auto d = storedDate(s))
                    return *d;
                if (auto d = ParseDateText(s, DateOrder::MonthFirst))
                    return *d;
            }
            return s;
        }
        }
    }

    // Fetches rows until index `wanted` exists or the statement is done.
    void fetchTo(qsizetype wanted)
    {
        while (!exhausted && qsizetype(rows.size()) <= wanted) {
            sqlite3_stmt* stmt = statement->stmt;
            if (!stmt) {
                finish();
                throw JetError::objectClosed();
            }
            const int rc = sqlite3_step(stmt);
            if (rc == SQLITE_ROW) {
                rows.push_back(read(stmt));
            } else if (rc == SQLITE_DONE) {
                finish();
            } else {
                const auto kind = statement->translation.kind;
                const QString text = statement->translation.sql;
                std::shared_ptr<Connection> c = connection;
                finish();
                c->fail(rc, kind, text);
            }
        }
    }

    const StoredRow& current() const
    {
        if (position < 0 || position >= qsizetype(rows.size()))
            throw JetError::noCurrentRecord();
        return rows[size_t(position)];
    }
};

} // namespace jet

// ---------------------------------------------------------------------------------------------
// Recordset

Recordset::Recordset() = default;
Recordset::~Recordset() = default;
Recordset::Recordset(Recordset&&) noexcept = default;
Recordset& Recordset::operator=(Recordset&&) noexcept = default;
Recordset::Recordset(std::unique_ptr<jet::Cursor> cursor) : m_cursor(std::move(cursor)) {}

static jet::Cursor& requireCursor(const std::unique_ptr<jet::Cursor>& c)
{
    if (!c)
        throw JetError::objectClosed();
    return *c;
}

bool Recordset::isOpen() const { return m_cursor != nullptr; }

bool Recordset::Eof() const
{
    auto& c = requireCursor(m_cursor);
    c.fetchTo(c.position);
    return c.position >= qsizetype(c.rows.size());
}

bool Recordset::Bof() const
{
    auto& c = requireCursor(m_cursor);
    c.fetchTo(0);
    return c.position < 0 || c.rows.empty();
}

void Recordset::MoveNext()
{
    auto& c = requireCursor(m_cursor);
    if (Eof())
        throw JetError::noCurrentRecord();
    ++c.position;
    c.fetchTo(c.position);
}

void Recordset::MovePrevious()
{
    auto& c = requireCursor(m_cursor);
    if (c.position < 0)
        throw JetError::noCurrentRecord();
    --c.position;
}

void Recordset::MoveFirst()
{
    auto& c = requireCursor(m_cursor);
    c.fetchTo(0);
    if (c.rows.empty())
        throw JetError::noCurrentRecord();
    c.position = 0;
}

void Recordset::MoveLast()
{
    auto& c = requireCursor(m_cursor);
    c.fetchTo(std::numeric_limits<qsizetype>::max());
    if (c.rows.empty())
        throw JetError::noCurrentRecord();
    c.position = qsizetype(c.rows.size()) - 1;
}

int Recordset::RecordCount() const
{
    auto& c = requireCursor(m_cursor);
    c.fetchTo(0);
    return int(c.rows.size());
}

int Recordset::FieldIndex(const QString& name) const
{
    auto& c = requireCursor(m_cursor);
    return c.byName.value(name.toLower(), -1);
}

QVariant Recordset::Fields(const QString& name) const
{
    const int i = FieldIndex(name);
    if (i < 0)
        throw JetError::itemNotFound();
    return Fields(i);
}

QVariant Recordset::Fields(int index) const
{
    auto& c = requireCursor(m_cursor);
    if (index < 0 || index >= c.names.size())
        throw JetError::itemNotFound();
    c.fetchTo(c.position);
    return c.value(c.current(), index);
}

int Recordset::FieldCount() const { return int(requireCursor(m_cursor).names.size()); }

QString Recordset::FieldName(int index) const
{
    auto& c = requireCursor(m_cursor);
    if (index < 0 || index >= c.names.size())
        throw JetError::itemNotFound();
    return c.names[index];
}

int Recordset::FieldType(int index) const
{
    auto& c = requireCursor(m_cursor);
    if (index < 0 || index >= c.names.size())
        throw JetError::itemNotFound();
    if (c.types[index] != 0)
        return c.types[index];
    c.fetchTo(c.position);
    if (c.position >= 0 && c.position < qsizetype(c.rows.size())) {
        const QVariant v = c.value(c.rows[size_t(c.position)], index);
        if (v.typeId() == QMetaType::LongLong)
            return jet::dbLong;
        if (v.typeId() == QMetaType::Double)
            return jet::dbDouble;
        if (v.typeId() == QMetaType::QDateTime)
            return jet::dbDate;
    }
    return jet::dbText;
}

void Recordset::Close() { m_cursor.reset(); }

// ---------------------------------------------------------------------------------------------
// Field

Field::Field(QString name, int type, int attributes) : m_name(std::move(name)), m_type(type), m_attributes(attributes)
{
    if (jet::isTextType(type))
        m_default = QVariant();
}

static bool attachedColumn(const std::shared_ptr<Connection>& c, const QString& table, const QString& name,
                           QVector<ColumnDef>& defs, int& index)
{
    defs = c->columnDefs(table);
    for (index = 0; index < defs.size(); ++index)
        if (defs[index].name.compare(name, Qt::CaseInsensitive) == 0)
            return true;
    return false;
}

void Field::setName(const QString& name)
{
    if (m_connection) {
        m_connection->countSchemaCall();
        QVector<ColumnDef> defs;
        int i = 0;
        if (!attachedColumn(m_connection, m_table, m_name, defs, i))
            throw JetError::itemNotFound();
        for (const ColumnDef& d : defs)
            if (d.name.compare(name, Qt::CaseInsensitive) == 0 && d.name.compare(m_name, Qt::CaseInsensitive) != 0)
                throw JetError::fieldExists();
        m_connection->schemaChanged();
        m_connection->exec(QStringLiteral("ALTER TABLE %1 RENAME COLUMN %2 TO %3")
                               .arg(quoteName(m_table), quoteName(defs[i].name), quoteName(name)));
        m_connection->schemaChanged();
    }
    m_name = name;
}

void Field::setAttributes(int attributes)
{
    if (m_connection) // Jet fixes a column's attributes once it is in its table
        throw JetError::invalidOperation();
    m_attributes = attributes;
}

// The DEFAULT clause for a Jet default value: Jet writes `""` for the empty text.
static QString defaultSqlFor(const QVariant& v)
{
    if (!v.isValid() || v.isNull())
        return {};
    if (v.typeId() == QMetaType::QString) {
        QString s = v.toString().trimmed();
        if (s.size() >= 2 && ((s.startsWith(QLatin1Char('"')) && s.endsWith(QLatin1Char('"'))) ||
                              (s.startsWith(QLatin1Char('\'')) && s.endsWith(QLatin1Char('\'')))))
            s = s.mid(1, s.size() - 2);
        bool isNumber = false;
        s.toDouble(&isNumber);
        if (isNumber)
            return s;
        s.replace(QLatin1Char('\''), QLatin1String("''"));
        return QLatin1Char('\'') + s + QLatin1Char('\'');
    }
    if (v.typeId() == QMetaType::Bool)
        return v.toBool() ? QStringLiteral("-1") : QStringLiteral("0");
    return v.toString();
}

void Field::setDefaultValue(const QVariant& value)
{
    if (m_connection) {
        m_connection->countSchemaCall();
        QVector<ColumnDef> defs;
        int i = 0;
        if (!attachedColumn(m_connection, m_table, m_name, defs, i))
            throw JetError::itemNotFound();
        defs[i].defaultSql = defaultSqlFor(value);
        m_connection->rebuildTable(m_table, defs);
    }
    m_default = value;
}

// Our files accept a zero-length string in every text column; Jet's flag is answered as true for text
// and refused for other types, as Jet refuses it.
bool Field::AllowZeroLength() const { return jet::isTextType(m_type); }

void Field::setAllowZeroLength(bool)
{
    if (!jet::isTextType(m_type))
        throw JetError::invalidOperation();
}

// ---------------------------------------------------------------------------------------------
// TableFields

static int jetAttributes(const ColumnDef& d)
{
    int a = jet::isTextType(d.type) ? jet::dbVariableField : jet::dbFixedField;
    if (d.autoIncrement)
        a |= jet::dbAutoIncrField;
    return a;
}

int TableFields::Count() const
{
    m_connection->countSchemaCall();
    return int(m_connection->columnDefs(m_table).size());
}

Field TableFields::operator[](int index) const
{
    m_connection->countSchemaCall();
    const QVector<ColumnDef> defs = m_connection->columnDefs(m_table);
    if (index < 0 || index >= defs.size())
        throw JetError::itemNotFound();
    const ColumnDef& d = defs[index];
    Field f(d.name, d.type, jetAttributes(d));
    if (!d.defaultSql.isEmpty())
        f.m_default = d.defaultSql == QLatin1String("''") ? QStringLiteral("\"\"") : d.defaultSql;
    f.m_connection = m_connection;
    f.m_table = m_table;
    return f;
}

Field TableFields::operator()(const QString& name) const
{
    m_connection->countSchemaCall();
    const QVector<ColumnDef> defs = m_connection->columnDefs(m_table);
    for (int i = 0; i < defs.size(); ++i)
        if (defs[i].name.compare(name, Qt::CaseInsensitive) == 0)
            return (*this)[i];
    throw JetError::itemNotFound();
}

bool TableFields::contains(const QString& name) const
{
    m_connection->countSchemaCall();
    for (const ColumnDef& d : m_connection->columnDefs(m_table))
        if (d.name.compare(name, Qt::CaseInsensitive) == 0)
            return true;
    return false;
}

void TableFields::Append(const Field& field)
{
    m_connection->countSchemaCall();
    QVector<ColumnDef> defs = m_connection->columnDefs(m_table);
    if (defs.isEmpty())
        throw JetError::itemNotFound();
    for (const ColumnDef& d : defs)
        if (d.name.compare(field.Name(), Qt::CaseInsensitive) == 0)
            throw JetError::fieldExists();

    ColumnDef c;
    c.name = field.Name();
    c.type = field.Type();
    c.defaultSql = defaultSqlFor(field.DefaultValue());
    if (field.Attributes() & jet::dbAutoIncrField) {
        for (const ColumnDef& d : defs)
            if (d.primaryKey)
                throw JetError::invalidOperation();
        // SQLite adds no key column in place: the table is made again, and the rows are numbered afresh.
        c.autoIncrement = true;
        c.type = jet::dbLong;
        c.defaultSql.clear();
        defs.push_back(c);
        m_connection->rebuildTable(m_table, defs);
        return;
    }
    m_connection->schemaChanged();
    m_connection->exec(QStringLiteral("ALTER TABLE %1 ADD COLUMN %2").arg(quoteName(m_table), jet::columnDeclaration(c)));
    m_connection->schemaChanged();
}

void TableFields::Delete(const QString& name)
{
    m_connection->countSchemaCall();
    QVector<ColumnDef> defs = m_connection->columnDefs(m_table);
    int i = 0;
    for (; i < defs.size(); ++i)
        if (defs[i].name.compare(name, Qt::CaseInsensitive) == 0)
            break;
    if (i == defs.size())
        throw JetError::itemNotFound();
    if (defs.size() == 1) // Jet keeps at least one column in a table
        throw JetError::invalidOperation();
    const QString actual = defs[i].name;
    m_connection->schemaChanged();
    try {
        m_connection->exec(QStringLiteral("ALTER TABLE %1 DROP COLUMN %2").arg(quoteName(m_table), quoteName(actual)));
    } catch (const JetError&) {
        // A key or indexed column cannot be dropped in place.
        defs.removeAt(i);
        m_connection->rebuildTable(m_table, defs);
    }
    m_connection->schemaChanged();
}

// ---------------------------------------------------------------------------------------------
// TableIndexes

static const QString kPrimaryKeyName = QStringLiteral("PrimaryKey");

QVector<Index> TableIndexes::list() const
{
    m_connection->countSchemaCall();
    QVector<Index> result;
    for (const ColumnDef& d : m_connection->columnDefs(m_table)) {
        if (d.primaryKey) {
            Index pk;
            pk.Name = kPrimaryKeyName;
            pk.Primary = true;
            pk.Unique = true;
            pk.Fields << d.name;
            result.push_back(pk);
        }
    }
    sqlite3* db = m_connection->db();
    sqlite3_stmt* stmt = nullptr;
    const QByteArray sql = QStringLiteral("PRAGMA index_list(%1)").arg(quoteName(m_table)).toUtf8();
    sqlite3_prepare_v2(db, sql.constData(), -1, &stmt, nullptr);
    while (stmt && sqlite3_step(stmt) == SQLITE_ROW) {
        Index ix;
        ix.Name = QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(stmt, 1)));
        ix.Unique = sqlite3_column_int(stmt, 2) != 0;
        if (ix.Name.startsWith(QLatin1String("sqlite_autoindex")))
            continue;
        sqlite3_stmt* info = nullptr;
        const QByteArray isql = QStringLiteral("PRAGMA index_info(%1)").arg(quoteName(ix.Name)).toUtf8();
        sqlite3_prepare_v2(db, isql.constData(), -1, &info, nullptr);
        while (info && sqlite3_step(info) == SQLITE_ROW)
            ix.Fields << QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(info, 2)));
        sqlite3_finalize(info);
        result.push_back(ix);
    }
    sqlite3_finalize(stmt);
    return result;
}

int TableIndexes::Count() const { return int(list().size()); }

Index TableIndexes::operator[](int index) const
{
    const QVector<Index> l = list();
    if (index < 0 || index >= l.size())
        throw JetError::itemNotFound();
    return l[index];
}

bool TableIndexes::contains(const QString& name) const
{
    for (const Index& i : list())
        if (i.Name.compare(name, Qt::CaseInsensitive) == 0)
            return true;
    return false;
}

void TableIndexes::Append(const Index& index)
{
    m_connection->countSchemaCall();
    if (index.Fields.isEmpty())
        throw JetError::invalidOperation();
    QVector<ColumnDef> defs = m_connection->columnDefs(m_table);
    // An auto-numbered column is the table's key already and answers to "PrimaryKey".
    const bool alreadyKey = index.Primary && index.Fields.size() == 1 &&
                            std::any_of(defs.begin(), defs.end(), [&](const ColumnDef& d) {
                                return d.primaryKey && d.name.compare(index.Fields[0], Qt::CaseInsensitive) == 0;
                            });
    if (alreadyKey)
        return;
    if (contains(index.Name))
        throw JetError(3284, QStringLiteral("Index already exists."));
    if (index.Primary) {
        if (index.Fields.size() != 1)
            throw JetError::invalidOperation();
        int keyColumn = -1;
        for (int i = 0; i < defs.size(); ++i) {
            if (defs[i].primaryKey && defs[i].name.compare(index.Fields[0], Qt::CaseInsensitive) != 0)
                throw JetError(3283, QStringLiteral("Primary key already exists."));
            if (defs[i].name.compare(index.Fields[0], Qt::CaseInsensitive) == 0)
                keyColumn = i;
        }
        if (keyColumn < 0)
            throw JetError::itemNotFound();
        defs[keyColumn].primaryKey = true;
        if (defs[keyColumn].type == jet::dbLong)
            defs[keyColumn].autoIncrement = true;
        m_connection->rebuildTable(m_table, defs);
        return;
    }
    QStringList cols;
    for (const QString& f : index.Fields)
        cols << quoteName(f);
    m_connection->schemaChanged();
    m_connection->exec(QStringLiteral("CREATE %1INDEX %2 ON %3 (%4)")
                           .arg(index.Unique ? QStringLiteral("UNIQUE ") : QString(), quoteName(index.Name),
                                quoteName(m_table), cols.join(QLatin1String(", "))));
}

void TableIndexes::Delete(const QString& name)
{
    m_connection->countSchemaCall();
    for (const Index& i : list()) {
        if (i.Name.compare(name, Qt::CaseInsensitive) != 0)
            continue;
        if (i.Primary) {
            QVector<ColumnDef> defs = m_connection->columnDefs(m_table);
            for (ColumnDef& d : defs) {
                d.primaryKey = false;
                d.autoIncrement = false;
            }
            m_connection->rebuildTable(m_table, defs);
        } else {
            m_connection->schemaChanged();
            m_connection->exec(QStringLiteral("DROP INDEX %1").arg(quoteName(i.Name)));
        }
        return;
    }
    throw JetError::itemNotFound();
}

// ---------------------------------------------------------------------------------------------
// TableDef

void TableDef::setName(const QString& name)
{
    m_connection->countSchemaCall();
    m_connection->schemaChanged();
    m_connection->exec(QStringLiteral("ALTER TABLE %1 RENAME TO %2").arg(quoteName(m_name), quoteName(name)));
    m_connection->schemaChanged();
    m_name = name;
}

// ---------------------------------------------------------------------------------------------
// Database

Database::Database() = default;

static std::shared_ptr<Connection> openConnection(const QString& path, int flags)
{
    sqlite3* db = nullptr;
    const QByteArray p = QFileInfo(path).absoluteFilePath().toUtf8();
    const int rc = sqlite3_open_v2(p.constData(), &db, flags | SQLITE_OPEN_NOMUTEX, nullptr);
    auto c = std::make_shared<Connection>(db, path);
    if (rc != SQLITE_OK)
        throw JetError::cannotOpen(path);
    sqlite3_extended_result_codes(db, 0);
    sqlite3_busy_timeout(db, 2000);
    jet::registerFunctions(db, [conn = c.get()] { return conn->dateOrder(); });
    // The settings row holds the country, which decides how the file's dates read.
    sqlite3_update_hook(
        db,
        [](void* conn, int, const char*, const char* table, sqlite3_int64) {
            if (sqlite3_stricmp(table, "cavyuser") == 0)
                static_cast<Connection*>(conn)->settingsRowChanged();
        },
        c.get());
    jet::registerCollation(db);
    jet::refuseForeignCode(db);
    return c;
}

Database Database::CreateDatabase(const QString& path, const QString& /*locale*/)
{
    if (QFileInfo::exists(path))
        throw JetError::databaseExists();
    auto c = openConnection(path, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
    // Writing the header makes the file a database at once, so an empty file opens as one.
    c->exec(QStringLiteral("PRAGMA journal_mode=DELETE"));
    c->exec(QStringLiteral("PRAGMA synchronous=FULL"));
    c->exec(QStringLiteral("PRAGMA user_version=%1").arg(jet::kSortOrderMark));
    return Database(c);
}

Database Database::OpenDatabase(const QString& path, bool exclusive, bool readOnly, const QString& /*connect*/)
{
    if (!QFileInfo(path).isFile())
        throw JetError::fileNotFound(path);
    auto c = openConnection(path, readOnly ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE);
    // Reading the schema is where SQLite finds out that a file is no database.
    c->exec(QStringLiteral("SELECT count(*) FROM sqlite_master"));
    if (!readOnly) {
        // One complete file after every commit, with no -wal beside it: breeders copy the .cav alone.
        try {
            c->exec(QStringLiteral("PRAGMA journal_mode=DELETE"));
        } catch (const JetError&) {
        }
    }
    c->exec(QStringLiteral("PRAGMA synchronous=FULL"));
    if (exclusive)
        c->exec(QStringLiteral("PRAGMA locking_mode=EXCLUSIVE"));
    return Database(c);
}

bool Database::isOpen() const { return m_connection && m_connection->isOpen(); }
QString Database::path() const { return m_connection ? m_connection->path() : QString(); }

bool Database::isReadOnly() const
{
    return isOpen() && sqlite3_db_readonly(m_connection->db(), "main") == 1;
}

DateOrder Database::dateOrder() const
{
    return isOpen() ? m_connection->dateOrder() : DateOrder::DayFirst;
}

void Database::Close()
{
    if (m_connection)
        m_connection->close();
    m_connection.reset();
}

void Database::NewPassword(const QString&, const QString&)
{
    if (!isOpen())
        throw JetError::objectClosed();
}

static bool isSchemaStatement(jet::StatementKind k)
{
    using K = jet::StatementKind;
    return k == K::CreateTable || k == K::AlterTable || k == K::DropTable || k == K::CreateIndex || k == K::DropIndex;
}

int Database::Execute(const QString& sql)
{
    if (!m_connection)
        throw JetError::objectClosed();
    Connection& c = *m_connection;
    PreparedStatement* p = c.acquire(sql);
    const jet::StatementKind kind = p->translation.kind;
    if (kind == jet::StatementKind::Select) {
        c.release(p);
        throw JetError(3065, QStringLiteral("Cannot execute a select query."));
    }
    if (isSchemaStatement(kind)) {
        c.countSchemaCall();
        c.release(p);
        // Finalise idle statements first: SQLite refuses to drop a table that a statement holds.
        c.schemaChanged();
        p = c.acquire(sql);
    }
    const int rc = sqlite3_step(p->stmt);
    if (rc != SQLITE_DONE && rc != SQLITE_ROW) {
        const QString text = p->translation.sql;
        c.release(p);
        if (isSchemaStatement(kind))
            c.schemaChanged();
        c.fail(rc, kind, sql);
    }
    c.recordsAffected = (kind == jet::StatementKind::Insert || kind == jet::StatementKind::Update ||
                         kind == jet::StatementKind::Delete)
                            ? sqlite3_changes(c.db())
                            : 0;
    // SQLite empties a table without telling the update hook.
    if (kind == jet::StatementKind::Delete &&
        p->translation.table.compare(QLatin1String("cavyuser"), Qt::CaseInsensitive) == 0)
        c.settingsRowChanged();
    c.release(p);
    if (isSchemaStatement(kind))
        c.schemaChanged();
    return c.recordsAffected;
}

int Database::RecordsAffected() const { return m_connection ? m_connection->recordsAffected : 0; }

Recordset Database::OpenRecordset(const QString& sql)
{
    if (!m_connection)
        throw JetError::objectClosed();
    PreparedStatement* p = m_connection->acquire(sql);
    if (p->translation.kind != jet::StatementKind::Select) {
        m_connection->release(p);
        throw JetError::invalidOperation();
    }
    auto cursor = std::make_unique<jet::Cursor>();
    cursor->connection = m_connection;
    cursor->statement = p;
    m_connection->describe(p);
    cursor->names = p->names;
    cursor->types = p->types;
    cursor->byName = p->byName;
    cursor->fetchTo(0);
    return Recordset(std::move(cursor));
}

QStringList Database::TableDefs() const
{
    if (!isOpen())
        throw JetError::objectClosed();
    m_connection->countSchemaCall();
    QStringList names;
    sqlite3_stmt* stmt = nullptr;
    sqlite3_prepare_v2(m_connection->db(),
                       "SELECT name FROM sqlite_master WHERE type = 'table' AND name NOT LIKE 'sqlite_%' ORDER BY rowid", -1,
                       &stmt, nullptr);
    while (sqlite3_step(stmt) == SQLITE_ROW)
        names << QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(stmt, 0)));
    sqlite3_finalize(stmt);
    return names;
}

TableDef Database::TableDefs(const QString& name) const
{
    if (!isOpen())
        throw JetError::objectClosed();
    m_connection->countSchemaCall();
    const QString actual = m_connection->actualTableName(name);
    if (actual.isEmpty())
        throw JetError::itemNotFound();
    return TableDef(m_connection, actual);
}

bool Database::hasTable(const QString& name) const
{
    if (!isOpen())
        return false;
    m_connection->countSchemaCall();
    return !m_connection->actualTableName(name).isEmpty();
}

void Database::BeginTrans()
{
    if (!isOpen())
        throw JetError::objectClosed();
    Connection& c = *m_connection;
    c.exec(c.transactionDepth == 0 ? QStringLiteral("BEGIN") : QStringLiteral("SAVEPOINT t%1").arg(c.transactionDepth));
    ++c.transactionDepth;
}

void Database::CommitTrans()
{
    if (!isOpen())
        throw JetError::objectClosed();
    Connection& c = *m_connection;
    if (c.transactionDepth == 0)
        throw JetError(3034, QStringLiteral("You tried to commit or rollback a transaction without first beginning a transaction."));
    --c.transactionDepth;
    c.exec(c.transactionDepth == 0 ? QStringLiteral("COMMIT") : QStringLiteral("RELEASE t%1").arg(c.transactionDepth));
}

void Database::Rollback()
{
    if (!isOpen())
        throw JetError::objectClosed();
    Connection& c = *m_connection;
    if (c.transactionDepth == 0)
        throw JetError(3034, QStringLiteral("You tried to commit or rollback a transaction without first beginning a transaction."));
    --c.transactionDepth;
    if (c.transactionDepth == 0)
        c.exec(QStringLiteral("ROLLBACK"));
    else
        c.exec(QStringLiteral("ROLLBACK TO t%1; RELEASE t%1").arg(c.transactionDepth));
    c.schemaChanged();
}

int Database::applicationId() const
{
    if (!isOpen())
        throw JetError::objectClosed();
    sqlite3_stmt* stmt = nullptr;
    sqlite3_prepare_v2(m_connection->db(), "PRAGMA application_id", -1, &stmt, nullptr);
    int id = 0;
    if (sqlite3_step(stmt) == SQLITE_ROW)
        id = sqlite3_column_int(stmt, 0);
    sqlite3_finalize(stmt);
    return id;
}

void Database::setApplicationId(int id)
{
    if (!isOpen())
        throw JetError::objectClosed();
    m_connection->exec(QStringLiteral("PRAGMA application_id = %1").arg(id));
}

qint64 Database::schemaCallCount() const { return m_connection ? m_connection->schemaCalls() : 0; }

// ---------------------------------------------------------------------------------------------
// Transaction

Transaction::Transaction(Database& db) : m_db(db) { m_db.BeginTrans(); }

Transaction::~Transaction()
{
    if (!m_done) {
        try {
            m_db.Rollback();
        } catch (const JetError&) {
        }
    }
}

void Transaction::commit()
{
    m_db.CommitTrans();
    m_done = true;
}
