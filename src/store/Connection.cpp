#include "store/Connection.h"

#include <QRegularExpression>

namespace jet {

namespace {

// A statement cache that grows without bound would hold every INSERT of a bulk run.
constexpr int kMaxCachedStatements = 400;

QString sqliteText(const unsigned char* text) { return text ? QString::fromUtf8(reinterpret_cast<const char*>(text)) : QString(); }

} // namespace

QString quoteName(const QString& name)
{
    QString n = name;
    n.replace(QLatin1Char('"'), QLatin1String("\"\""));
    return QLatin1Char('"') + n + QLatin1Char('"');
}

QString columnDeclaration(const ColumnDef& c)
{
    QString decl = quoteName(c.name) + QLatin1Char(' ');
    if (c.autoIncrement)
        decl += declarationForType(dbLong, true);
    else {
        decl += declarationForType(c.type);
        if (c.primaryKey)
            decl += QLatin1String(" PRIMARY KEY");
    }
    if (!c.defaultSql.isEmpty())
        decl += QLatin1String(" DEFAULT ") + c.defaultSql;
    return decl;
}

Connection::Connection(sqlite3* db, QString path) : m_db(db), m_path(std::move(path)) {}

Connection::~Connection() { close(); }

void Connection::close()
{
    if (!m_db)
        return;
    for (PreparedStatement* p : std::as_const(m_cache)) {
        sqlite3_finalize(p->stmt);
        if (!p->inUse)
            delete p;
        else
            p->stmt = nullptr; // its recordset frees it
    }
    m_cache.clear();
    m_schema.clear();
    // close_v2 waits for statements still held by open recordsets instead of failing.
    sqlite3_close_v2(m_db);
    m_db = nullptr;
}

void Connection::requireOpen() const
{
    if (!m_db)
        throw JetError::objectClosed();
}

[[noreturn]] void Connection::fail(int rc, StatementKind kind, const QString& statement) const
{
    const QString msg = m_db ? QString::fromUtf8(sqlite3_errmsg(m_db)) : QString();
    const int primary = rc & 0xff;
    static const QRegularExpression noTable(QStringLiteral("^no such table: (?:main\\.)?(.+)$"));
    static const QRegularExpression noColumn(QStringLiteral("^no such column: (.+)$"));
    static const QRegularExpression tableExists(QStringLiteral("^table \"?([^\" ]+)\"? already exists$"));
    static const QRegularExpression noFunction(QStringLiteral("^no such function: (.+)$"));

    switch (primary) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED: throw JetError::locked();
    case SQLITE_FULL: throw JetError::diskFull();
    case SQLITE_READONLY: throw JetError::readOnly();
    case SQLITE_NOTADB:
    case SQLITE_CORRUPT: throw JetError::unrecognizedFormat(m_path);
    case SQLITE_MISMATCH: throw JetError::typeMismatch();
    case SQLITE_CONSTRAINT: throw JetError::duplicateValues();
    case SQLITE_CANTOPEN: throw JetError::cannotOpen(m_path);
    default: break;
    }
    if (auto m = noTable.match(msg); m.hasMatch())
        throw JetError::noSuchTable(m.captured(1));
    if (auto m = noColumn.match(msg); m.hasMatch()) {
        if (kind == StatementKind::Insert)
            throw JetError::unknownInsertField(m.captured(1));
        throw JetError::tooFewParameters(1);
    }
    if (auto m = tableExists.match(msg); m.hasMatch())
        throw JetError::tableExists(m.captured(1));
    if (msg.startsWith(QLatin1String("duplicate column name")))
        throw JetError::fieldExists();
    if (auto m = noFunction.match(msg); m.hasMatch())
        throw JetError(3085, QStringLiteral("Undefined function '%1' in expression.").arg(m.captured(1)));
    if (msg.contains(QLatin1String("syntax error")) || msg.startsWith(QLatin1String("near ")) ||
        msg.startsWith(QLatin1String("incomplete input")) || msg.startsWith(QLatin1String("unrecognized token"))) {
        switch (kind) {
        case StatementKind::Insert: throw JetError::syntaxInInsert();
        case StatementKind::Update: throw JetError::syntaxInUpdate();
        case StatementKind::CreateTable: throw JetError::syntaxInCreateTable();
        default: throw JetError::syntaxInExpression(statement);
        }
    }
    throw JetError(3000, msg.isEmpty() ? QStringLiteral("The database engine failed: code %1.").arg(rc) : msg);
}

void Connection::exec(const QString& sqliteSql, StatementKind kind)
{
    requireOpen();
    char* err = nullptr;
    const QByteArray utf8 = sqliteSql.toUtf8();
    const int rc = sqlite3_exec(m_db, utf8.constData(), nullptr, nullptr, &err);
    sqlite3_free(err);
    if (rc != SQLITE_OK)
        fail(rc, kind, sqliteSql);
}

PreparedStatement* Connection::acquire(const QString& jetSql)
{
    requireOpen();
    auto it = m_cache.find(jetSql);
    if (it != m_cache.end() && !it.value()->inUse && it.value()->stmt) {
        it.value()->inUse = true;
        return it.value();
    }

    Translation t = translate(jetSql, [this](const QString& table) { return columns(table); });
    sqlite3_stmt* stmt = nullptr;
    const char16_t* tail = nullptr;
    const QString& sql = t.sql;
    const int rc = sqlite3_prepare16_v3(m_db, sql.utf16(), int(sql.size() * sizeof(char16_t)), SQLITE_PREPARE_PERSISTENT,
                                        &stmt, reinterpret_cast<const void**>(&tail));
    if (rc != SQLITE_OK) {
        sqlite3_finalize(stmt);
        fail(rc, t.kind, jetSql);
    }
    if (!stmt) // an empty statement
        throw JetError::invalidStatement();
    // The translator already refuses a second statement; this keeps that true whatever it emits.
    if (tail) {
        const QString rest = QString::fromUtf16(tail, sql.utf16() + sql.size() - reinterpret_cast<const ushort*>(tail));
        if (!rest.trimmed().isEmpty() && rest.trimmed() != QLatin1String(";")) {
            sqlite3_finalize(stmt);
            throw JetError::charactersAfterEnd();
        }
    }

    auto* p = new PreparedStatement{std::move(t), stmt, true};
    if (it == m_cache.end()) {
        if (m_cache.size() >= kMaxCachedStatements) {
            for (auto c = m_cache.begin(); c != m_cache.end();) {
                if (!c.value()->inUse) {
                    sqlite3_finalize(c.value()->stmt);
                    delete c.value();
                    c = m_cache.erase(c);
                } else
                    ++c;
            }
        }
        m_cache.insert(jetSql, p);
    } else {
        // The cached one is busy (a nested recordset on the same text): this one is used once.
        p->cached = false;
    }
    return p;
}

void Connection::release(PreparedStatement* p)
{
    if (!p)
        return;
    if (!p->stmt) { // the connection closed while it was in use
        delete p;
        return;
    }
    sqlite3_reset(p->stmt);
    sqlite3_clear_bindings(p->stmt);
    if (p->cached) {
        p->inUse = false;
    } else {
        sqlite3_finalize(p->stmt);
        delete p;
    }
}

void Connection::schemaChanged()
{
    m_schema.clear();
    for (auto c = m_cache.begin(); c != m_cache.end();) {
        if (!c.value()->inUse) {
            sqlite3_finalize(c.value()->stmt);
            delete c.value();
            c = m_cache.erase(c);
        } else {
            ++c;
        }
    }
}

QString Connection::actualTableName(const QString& table)
{
    requireOpen();
    sqlite3_stmt* stmt = nullptr;
    sqlite3_prepare_v2(m_db, "SELECT name FROM sqlite_master WHERE type = 'table' AND name = ?1 COLLATE NOCASE", -1,
                       &stmt, nullptr);
    const QByteArray name = table.toUtf8();
    sqlite3_bind_text(stmt, 1, name.constData(), int(name.size()), SQLITE_TRANSIENT);
    QString result;
    if (sqlite3_step(stmt) == SQLITE_ROW)
        result = sqliteText(sqlite3_column_text(stmt, 0));
    sqlite3_finalize(stmt);
    return result;
}

std::optional<QVector<ColumnInfo>> Connection::columns(const QString& table)
{
    const QString key = table.toLower();
    auto it = m_schema.constFind(key);
    if (it != m_schema.constEnd())
        return it.value();
    std::optional<QVector<ColumnInfo>> result;
    const QVector<ColumnDef> defs = columnDefs(table);
    if (!defs.isEmpty()) {
        QVector<ColumnInfo> cols;
        cols.reserve(defs.size());
        for (const ColumnDef& d : defs)
            cols.push_back({d.name, d.type});
        result = cols;
    }
    m_schema.insert(key, result);
    return result;
}

QVector<ColumnDef> Connection::columnDefs(const QString& table)
{
    requireOpen();
    QVector<ColumnDef> defs;
    const QString actual = actualTableName(table);
    if (actual.isEmpty())
        return defs;

    bool autoIncrement = false;
    {
        sqlite3_stmt* stmt = nullptr;
        sqlite3_prepare_v2(m_db, "SELECT sql FROM sqlite_master WHERE type = 'table' AND name = ?1", -1, &stmt, nullptr);
        const QByteArray name = actual.toUtf8();
        sqlite3_bind_text(stmt, 1, name.constData(), int(name.size()), SQLITE_TRANSIENT);
        if (sqlite3_step(stmt) == SQLITE_ROW)
            autoIncrement = sqliteText(sqlite3_column_text(stmt, 0)).contains(QLatin1String("AUTOINCREMENT"), Qt::CaseInsensitive);
        sqlite3_finalize(stmt);
    }

    sqlite3_stmt* stmt = nullptr;
    const QByteArray pragma = QStringLiteral("PRAGMA table_info(%1)").arg(quoteName(actual)).toUtf8();
    sqlite3_prepare_v2(m_db, pragma.constData(), -1, &stmt, nullptr);
    int pkCount = 0;
    while (sqlite3_step(stmt) == SQLITE_ROW) {
        ColumnDef d;
        d.name = sqliteText(sqlite3_column_text(stmt, 1));
        const QString declared = sqliteText(sqlite3_column_text(stmt, 2));
        d.type = typeForDeclaration(declared);
        if (sqlite3_column_type(stmt, 4) != SQLITE_NULL)
            d.defaultSql = sqliteText(sqlite3_column_text(stmt, 4));
        const int pk = sqlite3_column_int(stmt, 5);
        if (pk > 0) {
            ++pkCount;
            const bool integerKey = declared.compare(QLatin1String("INTEGER"), Qt::CaseInsensitive) == 0;
            d.primaryKey = true;
            if (integerKey && autoIncrement) {
                d.autoIncrement = true;
                d.type = dbLong;
            }
        }
        d.copyFrom = d.name;
        defs.push_back(d);
    }
    sqlite3_finalize(stmt);
    if (pkCount > 1) // a composite key: keep the columns, the rebuild keeps no such key
        for (ColumnDef& d : defs)
            d.primaryKey = false;
    return defs;
}

QStringList Connection::indexSql(const QString& table)
{
    QStringList result;
    sqlite3_stmt* stmt = nullptr;
    sqlite3_prepare_v2(m_db,
                       "SELECT sql FROM sqlite_master WHERE type = 'index' AND tbl_name = ?1 COLLATE NOCASE AND sql IS NOT NULL",
                       -1, &stmt, nullptr);
    const QByteArray name = table.toUtf8();
    sqlite3_bind_text(stmt, 1, name.constData(), int(name.size()), SQLITE_TRANSIENT);
    while (sqlite3_step(stmt) == SQLITE_ROW)
        result << sqliteText(sqlite3_column_text(stmt, 0));
    sqlite3_finalize(stmt);
    return result;
}

// SQLite cannot change a column's key or default in place: the table is made again under a scratch
// name, the rows copied, and the old one replaced, all in one savepoint so a failure leaves it as it was.
void Connection::rebuildTable(const QString& table, const QVector<ColumnDef>& columns)
{
    requireOpen();
    const QString actual = actualTableName(table);
    if (actual.isEmpty())
        throw JetError::itemNotFound();
    schemaChanged();

    QStringList decls, targets, sources;
    for (const ColumnDef& c : columns) {
        decls << columnDeclaration(c);
        if (!c.copyFrom.isEmpty()) {
            targets << quoteName(c.name);
            sources << quoteName(c.copyFrom);
        }
    }
    const QStringList indexes = indexSql(actual);
    const QString scratch = QStringLiteral("tessorin_rebuild");

    exec(QStringLiteral("SAVEPOINT tessorin_rebuild"));
    try {
        exec(QStringLiteral("DROP TABLE IF EXISTS %1").arg(scratch));
        exec(QStringLiteral("CREATE TABLE %1 (%2)").arg(scratch, decls.join(QLatin1String(", "))));
        if (!targets.isEmpty())
            exec(QStringLiteral("INSERT INTO %1 (%2) SELECT %3 FROM %4")
                     .arg(scratch, targets.join(QLatin1String(", ")), sources.join(QLatin1String(", ")), quoteName(actual)));
        exec(QStringLiteral("DROP TABLE %1").arg(quoteName(actual)));
        exec(QStringLiteral("ALTER TABLE %1 RENAME TO %2").arg(scratch, quoteName(actual)));
        for (const QString& sql : indexes) {
            try {
                exec(sql); // an index on a column that is gone is dropped with it
            } catch (const JetError&) {
            }
        }
        exec(QStringLiteral("RELEASE tessorin_rebuild"));
    } catch (...) {
        sqlite3_exec(m_db, "ROLLBACK TO tessorin_rebuild; RELEASE tessorin_rebuild", nullptr, nullptr, nullptr);
        schemaChanged();
        throw;
    }
    schemaChanged();
}

} // namespace jet
