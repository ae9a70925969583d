// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/Connection.h"

#include <QRegularExpression>
#include <optional>

namespace jet {

namespace {

// A statement cache that grows without bound would hold every INSERT of a bulk run.
constexpr int kMaxCachedStatements = 400;

QString sqliteText(const unsigned char* text) { return text ? QString::fromUtf8(reinterpret_cast<const char*>(text)) : QString(); }

} // namespace

namespace {

int authorize(void*, int, const char*, const char*, const char*, const char* triggerOrView)
{
    if (!triggerOrView || qstrnicmp(triggerOrView, "tessorin_", 9) == 0)
        return SQLITE_OK;
    return SQLITE_DENY;
}

} // namespace

void refuseForeignCode(sqlite3* db) { sqlite3_set_authorizer(db, authorize, nullptr); }

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
    case SQLITE_AUTH:
        throw JetError(3000, QStringLiteral("The data file holds a trigger or view that Tessorin did not make; "
                                            "it was not run. Open the file in Tessorin to have it removed."));
    case SQLITE_INTERRUPT: throw JetError(3000, QStringLiteral("The statement was stopped before it ended."));
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

namespace {

// The statements of the program differ mostly in their text literals ("... WHERE name = 'Ash'").
// A data statement is cached by its shape, each literal standing as a numbered marker, and the
// literals are bound as parameters, so one translation and one prepared statement serve every name.
constexpr char16_t kMarker = u'\u0001';

struct Shape {
    QString text;
    QStringList literals;
};

bool isDataStatement(const QString& sql)
{
    qsizetype i = 0;
    while (i < sql.size() && sql[i].isSpace())
        ++i;
    const QStringView head = QStringView(sql).mid(i, 6);
    return head.compare(u"SELECT", Qt::CaseInsensitive) == 0 || head.compare(u"INSERT", Qt::CaseInsensitive) == 0 ||
           head.compare(u"UPDATE", Qt::CaseInsensitive) == 0 || head.compare(u"DELETE", Qt::CaseInsensitive) == 0;
}

std::optional<Shape> shapeOf(const QString& sql)
{
    if (!isDataStatement(sql) || sql.contains(QChar(kMarker)))
        return std::nullopt;
    Shape shape;
    shape.text.reserve(sql.size());
    const qsizetype n = sql.size();
    for (qsizetype i = 0; i < n;) {
        const QChar c = sql[i];
        if (c == QLatin1Char('[') || c == QLatin1Char('#') || c == QLatin1Char('"')) {
            // Names and dates pass as they are; an unclosed one is the translator's to refuse.
            const QChar close = c == QLatin1Char('[') ? QLatin1Char(']') : c;
            const qsizetype end = sql.indexOf(close, i + 1);
            if (end < 0)
                return std::nullopt;
            shape.text += QStringView(sql).mid(i, end + 1 - i);
            i = end + 1;
        } else if (c == QLatin1Char('\'')) {
            QString value;
            qsizetype j = i + 1;
            for (;; ++j) {
                if (j >= n)
                    return std::nullopt;
                if (sql[j] == QLatin1Char('\'')) {
                    if (j + 1 < n && sql[j + 1] == QLatin1Char('\'')) {
                        value += QLatin1Char('\'');
                        ++j;
                        continue;
                    }
                    break;
                }
                value += sql[j];
            }
            shape.literals << value;
            shape.text += QLatin1Char('\'') + QChar(kMarker) + QString::number(shape.literals.size()) + QLatin1Char('\'');
            i = j + 1;
        } else {
            shape.text += c;
            ++i;
        }
    }
    return shape;
}

// Puts "?N" where the translator left a marker literal; nothing when it did not keep each one whole.
std::optional<QString> withParameters(const QString& sql, int count)
{
    QString out;
    out.reserve(sql.size());
    int seen = 0;
    for (qsizetype i = 0; i < sql.size(); ++i) {
        if (sql[i] == QChar(kMarker)) {
            if (i == 0 || sql[i - 1] != QLatin1Char('\''))
                return std::nullopt;
            qsizetype j = i + 1;
            while (j < sql.size() && sql[j].isDigit())
                ++j;
            if (j >= sql.size() || sql[j] != QLatin1Char('\''))
                return std::nullopt;
            out.chop(1);
            out += QLatin1Char('?') + QStringView(sql).mid(i + 1, j - i - 1);
            i = j;
            ++seen;
        } else {
            out += sql[i];
        }
    }
    if (seen < count)
        return std::nullopt;
    return out;
}

} // namespace

PreparedStatement* Connection::acquire(const QString& jetSql)
{
    requireOpen();
    const std::optional<Shape> shape = shapeOf(jetSql);
    const QString& key = shape ? shape->text : jetSql;
    const QStringList literals = shape ? shape->literals : QStringList();

    auto bind = [&](PreparedStatement* p) {
        p->parameters = literals;
        const int declared = sqlite3_bind_parameter_count(p->stmt);
        for (int i = 0; i < p->parameters.size() && i < declared; ++i) {
            const QString& v = p->parameters[i];
            sqlite3_bind_text16(p->stmt, i + 1, v.utf16(), int(v.size() * sizeof(char16_t)), SQLITE_STATIC);
        }
        return p;
    };

    auto it = m_cache.find(key);
    if (it != m_cache.end() && !it.value()->inUse && it.value()->stmt) {
        it.value()->inUse = true;
        return bind(it.value());
    }

    const SchemaLookup lookup = [this](const QString& table) { return columns(table); };
    Translation t;
    bool parameterised = false;
    if (shape) {
        try {
            t = translate(shape->text, lookup);
            if (auto sql = withParameters(t.sql, int(literals.size()))) {
                t.sql = *sql;
                parameterised = true;
            }
        } catch (const JetError&) {
            // Said again below from the statement as written, so the error names its own text.
        }
    }
    if (!parameterised)
        t = translate(jetSql, lookup);

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

    auto* p = new PreparedStatement;
    p->translation = std::move(t);
    p->stmt = stmt;
    p->inUse = true;
    const QString cacheKey = parameterised ? key : jetSql;
    if (m_cache.contains(cacheKey)) {
        // The cached one is busy (a nested recordset on the same text): this one is used once.
        p->cached = false;
    } else {
        if (m_cache.size() >= kMaxCachedStatements)
            dropIdleStatements();
        m_cache.insert(cacheKey, p);
    }
    if (!parameterised)
        return p;
    return bind(p);
}

void Connection::describe(PreparedStatement* p)
{
    if (p->described)
        return;
    const int n = sqlite3_column_count(p->stmt);
    p->names.reserve(n);
    p->types.reserve(n);
    for (int i = 0; i < n; ++i) {
        const QString name = QString::fromUtf16(static_cast<const char16_t*>(sqlite3_column_name16(p->stmt, i)));
        p->names.push_back(name);
        const QString lower = name.toLower();
        if (!p->byName.contains(lower)) // Jet reaches the first of two equal names
            p->byName.insert(lower, i);
        const char* decl = sqlite3_column_decltype(p->stmt, i);
        p->types.push_back(decl ? jet::typeForDeclaration(QString::fromUtf8(decl)) : 0);
    }
    p->described = true;
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
    p->parameters.clear();
    if (p->cached) {
        p->inUse = false;
    } else {
        sqlite3_finalize(p->stmt);
        delete p;
    }
}

void Connection::dropIdleStatements()
{
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

DateOrder Connection::dateOrder()
{
    if (m_dateOrderKnown || !m_db)
        return m_dateOrder;
    m_dateOrderKnown = true;
    m_dateOrder = DateOrder::DayFirst; // also with no settings row, no table or no such column
    sqlite3_stmt* stmt = nullptr;
    if (sqlite3_prepare_v2(m_db, "SELECT fldCountry FROM cavyuser ORDER BY rowid LIMIT 1", -1, &stmt, nullptr) ==
            SQLITE_OK &&
        sqlite3_step(stmt) == SQLITE_ROW) {
        const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(stmt, 0));
        m_dateOrder = DateOrderForCountry(QString::fromUtf8(text ? text : ""));
    }
    sqlite3_finalize(stmt);
    return m_dateOrder;
}

void Connection::schemaChanged()
{
    m_dateOrderKnown = false; // the settings table may have come or gone
    m_schema.clear();
    dropIdleStatements();
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
