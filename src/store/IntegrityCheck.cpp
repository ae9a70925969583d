// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/IntegrityCheck.h"

#include "base/Clock.h"
#include "base/Dates.h"
#include "base/Log.h"
#include "base/Ui.h"
#include "store/Collation.h"
#include "store/Connection.h"
#include "store/DataFile.h"
#include "store/Schema.h"

// The check asks for the whole format again on every run. Jet answers what already exists with an
// error, which the old check logged and passed over; SQLite raises none, so each step tests first and
// only a real failure reaches the error log. The end state and the order of the steps are the same.

namespace {

using namespace jet;

struct NewColumn {
    const char* name;
    int type;
};

// The check of one file runs at a time; its connection and its count of failed steps.
sqlite3* gCheckHandle = nullptr;
int gFailedSteps = 0;

void logFailure(const JetError& e, const QString& title = QStringLiteral("Error Number: "))
{
    ++gFailedSteps;
    LogError(title + QString::number(e.number()) + QStringLiteral("  ") + e.description());
}

// SQLite ends a transaction by itself on a full disk or an I/O error. Going on would write the
// remaining steps, and the stamp, one by one; the check stops instead and nothing of it is kept.
void requireTransaction()
{
    if (gCheckHandle && sqlite3_get_autocommit(gCheckHandle))
        throw JetError(3026, QStringLiteral("Not enough space on disk, or the disk failed: the integrity check "
                                            "was stopped and the file is left as it was."));
}

bool isFatal(const JetError& e) { return e.number() == JetError::diskFull().number(); }

// Runs one step; a failure is logged and the check goes on, as the error rule says.
template <typename F>
void step(F&& f)
{
    try {
        f();
    } catch (const JetError& e) {
        if (isFatal(e))
            throw;
        logFailure(e);
    }
    requireTransaction();
}

void createTable(Database& db, const QString& table)
{
    step([&] {
        if (!db.hasTable(table))
            db.Execute(Schema::CreateStatement(table));
    });
}

void addColumns(Database& db, const QString& table, std::initializer_list<NewColumn> columns)
{
    step([&] {
        TableDef td = db.TableDefs(table);
        TableFields fields = td.Fields();
        for (const NewColumn& c : columns) {
            const QString name = QString::fromLatin1(c.name);
            if (!fields.contains(name))
                step([&] { fields.Append(td.CreateField(name, c.type)); });
        }
    });
}

void addNumberedColumns(Database& db, const QString& table, const QString& stem, int type)
{
    step([&] {
        TableDef td = db.TableDefs(table);
        TableFields fields = td.Fields();
        for (int i = 1; i <= 12; ++i) {
            const QString name = stem + QString::number(i);
            if (!fields.contains(name))
                step([&] { fields.Append(td.CreateField(name, type)); });
        }
    });
}

// Deletes an old column and any index named after it.
void dropColumn(Database& db, const QString& table, const QString& column)
{
    step([&] {
        TableDef td = db.TableDefs(table);
        TableIndexes indexes = td.Indexes();
        if (indexes.contains(column))
            indexes.Delete(column);
        if (td.Fields().contains(column))
            td.Fields().Delete(column);
    });
}

// Columns that older versions had and this one removes; Breeding's Sold is still in its CREATE text.
struct OldColumn {
    const char* table;
    const char* column;
};
constexpr OldColumn kDroppedColumns[] = {{"tree", "title"},         {"cavyuser", "fldStartNews"},
                                         {"cavyuser", "fldfldBackground"}, {"cavyuser", "fldfldLogo"},
                                         {"Breeding", "Sold"},      {"print", "PrintWhat"}};

bool isDropped(const QString& table, const QString& column)
{
    for (const OldColumn& c : kDroppedColumns) {
        if (table.compare(QLatin1String(c.table), Qt::CaseInsensitive) == 0 &&
            column.compare(QLatin1String(c.column), Qt::CaseInsensitive) == 0)
            return true;
    }
    return false;
}

void dropOldColumns(Database& db, const QString& table)
{
    for (const OldColumn& c : kDroppedColumns) {
        if (table == QLatin1String(c.table))
            dropColumn(db, table, QString::fromLatin1(c.column));
    }
}

// Whatever the steps above name, a file ends with every column of the current CREATE statements:
// the program's statements name them all, and an older file may lack any of them.
void addMissingColumns(Database& db)
{
    for (const Schema::TableStatement& t : Schema::Tables()) {
        bool added = false;
        step([&] {
            if (!db.hasTable(t.table))
                return;
            TableFields fields = db.TableDefs(t.table).Fields();
            for (const Schema::ColumnText& c : Schema::Columns(t.table)) {
                // A key column is made with its table; an old table without one keeps its rows as they are.
                if (c.type.contains(QLatin1String("COUNTER"), Qt::CaseInsensitive) || fields.contains(c.name) ||
                    isDropped(t.table, c.name))
                    continue;
                step([&] {
                    db.Execute(QStringLiteral("ALTER TABLE ") + t.table + QStringLiteral(" ADD COLUMN ") + c.name +
                               QLatin1Char(' ') + c.type);
                    added = true;
                });
            }
        });
        if (added)
            AllowZeroLength(db, t.table);
    }
}

int columnType(Database& db, const QString& table, const QString& column)
{
    TableFields fields = db.TableDefs(table).Fields();
    return fields.contains(column) ? fields(column).Type() : 0;
}

void ensureType(Database& db, const QString& table, const QString& column, int type)
{
    step([&] {
        const int current = columnType(db, table, column);
        if (current != 0 && current != type)
            ChangeColumnType(db, table, column, type);
    });
}

void runLogged(Database& db, const QString& sql, const QString& title)
{
    try {
        db.Execute(sql);
    } catch (const JetError& e) {
        if (isFatal(e))
            throw;
        logFailure(e, title);
    }
    requireTransaction();
}

int userVersion(Database& db)
{
    sqlite3_stmt* stmt = nullptr;
    sqlite3_prepare_v2(db.connection()->db(), "PRAGMA user_version", -1, &stmt, nullptr);
    int v = 0;
    if (stmt && sqlite3_step(stmt) == SQLITE_ROW)
        v = sqlite3_column_int(stmt, 0);
    sqlite3_finalize(stmt);
    return v;
}

// Indexes on text columns follow the collation registered on the connection; files whose indexes were
// built in SQLite's ASCII-only order are sorted again once, and marked.
void resortIndexes(Database& db)
{
    if (userVersion(db) == jet::kSortOrderMark)
        return;
    jet::Connection& c = *db.connection();
    c.exec(QStringLiteral("REINDEX NOCASE"));
    c.exec(QStringLiteral("PRAGMA user_version = %1").arg(jet::kSortOrderMark));
    requireTransaction();
}

// The whole check is one transaction, taken for writing at once, so that a second program opening the
// same old file waits here, then finds the stamp and does nothing; a check cut short leaves nothing.
class CheckTransaction {
public:
    explicit CheckTransaction(Database& db) : m_db(db), m_connection(*db.connection())
    {
        if (db.isReadOnly())
            throw JetError::readOnly();
        m_outer = m_connection.transactionDepth == 0;
        if (!m_outer) {
            m_db.BeginTrans();
        } else {
            // A large upgrade in another program can take longer than the usual wait for a lock.
            sqlite3_busy_timeout(m_connection.db(), 60000);
            try {
                m_connection.exec(QStringLiteral("BEGIN IMMEDIATE"));
            } catch (...) {
                sqlite3_busy_timeout(m_connection.db(), 2000);
                throw;
            }
            sqlite3_busy_timeout(m_connection.db(), 2000);
            ++m_connection.transactionDepth;
        }
        m_previousHandle = gCheckHandle;
        m_previousFailures = gFailedSteps;
        gCheckHandle = m_outer ? m_connection.db() : nullptr;
        gFailedSteps = 0;
    }
    ~CheckTransaction()
    {
        if (!m_done) {
            if (m_outer && sqlite3_get_autocommit(m_connection.db())) {
                m_connection.transactionDepth = 0; // SQLite already rolled it back
                m_connection.schemaChanged();
            } else {
                try {
                    m_db.Rollback();
                } catch (const JetError&) {
                }
            }
        }
        gCheckHandle = m_previousHandle;
        gFailedSteps = m_previousFailures;
    }
    int failures() const { return gFailedSteps; }
    void commit()
    {
        requireTransaction();
        m_db.CommitTrans();
        m_done = true;
    }
    CheckTransaction(const CheckTransaction&) = delete;
    CheckTransaction& operator=(const CheckTransaction&) = delete;

private:
    Database& m_db;
    jet::Connection& m_connection;
    bool m_outer = true;
    bool m_done = false;
    sqlite3* m_previousHandle = nullptr;
    int m_previousFailures = 0;
};

void repairContactsKey(Database& db)
{
    step([&] {
        TableDef td = db.TableDefs(QStringLiteral("contacts"));
        const bool hasId = td.Fields().contains(QStringLiteral("id"));
        if (hasId) {
            const int attributes = td.Fields()(QStringLiteral("id")).Attributes();
            if (attributes == 16 || attributes == 17)
                return;
        }
        Transaction t(db);
        if (td.Indexes().contains(QStringLiteral("PrimaryKey")))
            td.Indexes().Delete(QStringLiteral("PrimaryKey"));
        if (hasId)
            td.Fields().Delete(QStringLiteral("id"));
        Field id = td.CreateField(QStringLiteral("ID"), dbLong);
        id.setAttributes(id.Attributes() + dbAutoIncrField);
        td.Fields().Append(id);
        Index pk = td.CreateIndex(QStringLiteral("PrimaryKey"));
        pk.Primary = true;
        pk.Fields << QStringLiteral("ID");
        td.Indexes().Append(pk);
        t.commit();
    });
}

// Indexes that change no result, for the look-ups by name that every page makes.
void addLookupIndexes(Database& db)
{
    static const char* const indexes[][3] = {
        {"tessorin_tree_name", "tree", "name"},        {"tessorin_tree_ps", "tree", "ps"},
        {"tessorin_tree_pd", "tree", "pd"},            {"tessorin_breeding_boar", "Breeding", "Boar"},
        {"tessorin_breeding_sow", "Breeding", "Sow"},  {"tessorin_weights_name", "weights", "name"},
        {"tessorin_vaccinations_name", "vaccinations", "name"}, {"tessorin_shows_name", "shows", "name"},
        {"tessorin_soldstock_offspring", "soldstock", "Offspring"},
    };
    for (const auto& ix : indexes) {
        step([&] {
            TableDef td = db.TableDefs(QString::fromLatin1(ix[1]));
            const QString column = QString::fromLatin1(ix[2]);
            if (td.Indexes().contains(QString::fromLatin1(ix[0])) || !td.Fields().contains(column))
                return;
            Index i = td.CreateIndex(QString::fromLatin1(ix[0]));
            i.Fields << column;
            td.Indexes().Append(i);
        });
    }
}

} // namespace

void AllowZeroLength(Database& database, const QString& table)
{
    step([&] {
        TableFields fields = database.TableDefs(table).Fields();
        const int n = fields.Count();
        for (int i = 0; i < n; ++i) {
            Field f = fields[i];
            // Jet refuses the flag on a column that is not text; there is nothing to say about it.
            if (isTextType(f.Type()))
                f.setAllowZeroLength(true);
        }
    });
}

static void prepareTempField(Field& f, int type)
{
    if (type == dbLong)
        f.setDefaultValue(0);
    else if (type != dbDate) {
        f.setDefaultValue(QStringLiteral("\"\""));
        f.setAllowZeroLength(true);
    }
}

// The whole change runs in one transaction: if the copy fails, the old column stays as it was rather
// than being dropped with its values.
void ChangeColumnType(Database& database, const QString& tableName, const QString& column, int type)
{
    try {
        Transaction t(database);
        TableDef td = database.TableDefs(tableName);
        TableFields fields = td.Fields();
        if (fields.contains(QStringLiteral("temp")))
            fields.Delete(QStringLiteral("temp"));
        Field temp = td.CreateField(QStringLiteral("temp"), type);
        prepareTempField(temp, type);
        fields.Append(temp);
        database.Execute(QStringLiteral("Update ") + tableName + QStringLiteral(" set temp = ") + column + QStringLiteral(" "));
        fields.Delete(column);
        fields(QStringLiteral("temp")).setName(column);
        t.commit();
    } catch (const JetError&) {
    }
}

void SwapColumns(Database& database, const QString& tableName, const QString& first, const QString& second, int type)
{
    try {
        Transaction t(database);
        TableDef td = database.TableDefs(tableName);
        TableFields fields = td.Fields();
        for (const QString& name : {QStringLiteral("temp1"), QStringLiteral("temp2")}) {
            if (fields.contains(name))
                fields.Delete(name);
            Field f = td.CreateField(name, type);
            prepareTempField(f, type);
            fields.Append(f);
        }
        database.Execute(QStringLiteral("Update ") + tableName + QStringLiteral(" set temp1 = ") + second);
        database.Execute(QStringLiteral("Update ") + tableName + QStringLiteral(" set temp2 = ") + first);
        fields.Delete(first);
        fields.Delete(second);
        fields(QStringLiteral("temp1")).setName(first);
        fields(QStringLiteral("temp2")).setName(second);
        t.commit();
    } catch (const JetError&) {
    }
}

bool NeedsStatusUpgrade(Database& database, bool force)
{
    if (force)
        return true;
    const QString digits = GetVersionText(database).remove(QLatin1Char('.')).left(3);
    bool ok = false;
    const int number = digits.toInt(&ok);
    return !ok || number < 448;
}

void MoveJournalEntries(Database& database)
{
    step([&] {
        Recordset rs = database.OpenRecordset(QStringLiteral("Select id,journal FROM tree"));
        if (rs.RecordCount() == 0)
            return;
        const QString today = FormatShortDate(Today());
        while (!rs.Eof()) {
            const QVariant journal = rs.Fields(QStringLiteral("journal"));
            if (!journal.isNull() && !journal.toString().isEmpty()) {
                // The text is stored converted already; encoding again only guards a stray apostrophe
                // from a file written by another tool.
                runLogged(database,
                          QStringLiteral("Insert into Journal(nameId, journalDate,journalNote) Values ('") +
                              rs.Fields(QStringLiteral("ID")).toString() + QStringLiteral("','") + today +
                              QStringLiteral("','") + EncodeText(journal.toString()) + QStringLiteral("')"),
                          QStringLiteral("Error Number: "));
            }
            rs.MoveNext();
        }
    });
}

void ResetCustomFields(Database& database, const QString& which, const QString& first, const QString& second)
{
    try {
        TableDef tree = database.TableDefs(QStringLiteral("tree"));
        TableDef user = database.TableDefs(QStringLiteral("cavyuser"));
        if (which == QLatin1String("all")) {
            for (int i = 1; i <= 12; ++i)
                DeleteColumn(tree, QStringLiteral("customField") + QString::number(i));
            for (int i = 1; i <= 12; ++i)
                DeleteColumn(user, QStringLiteral("fldCustomName") + QString::number(i));
        } else {
            DeleteColumn(tree, first);
            DeleteColumn(user, second);
        }
    } catch (const JetError& e) {
        logFailure(e);
    }
    try {
        CheckDatabase(database, true, false);
    } catch (const JetError& e) {
        logFailure(e);
    }
}

bool CheckDatabase(Database& database, bool force, bool showMessage)
{
    if (!database.isOpen())
        throw JetError::objectClosed();
    if (!force) {
        if (GetVersionText(database) == ProgramVersionText() && userVersion(database) == jet::kSortOrderMark)
            return true;
    } else if (showMessage) {
        Ui::message(QStringLiteral("Database Updated."), Ui::Buttons::Ok, Ui::Icon::Information, QString());
    }

    CheckTransaction transaction(database);
    // Tested again now that no other program can write: it may have done the work while this one waited.
    if (!force && GetVersionText(database) == ProgramVersionText()) {
        resortIndexes(database);
        transaction.commit();
        return true;
    }

    Ui::status(QStringLiteral("Checking database integrity ..."));
    struct ClearStatus {
        ~ClearStatus() { Ui::status(QString()); }
    } clearStatus;

    // 1. tree
    createTable(database, QStringLiteral("tree"));
    addColumns(database, QStringLiteral("tree"),
               {{"colour", dbText}, {"cage", dbText}, {"tag", dbText}, {"picture", dbText}, {"deceased", dbBoolean},
                {"dateDeceased", dbText}});
    addNumberedColumns(database, QStringLiteral("tree"), QStringLiteral("customField"), dbText);
    addColumns(database, QStringLiteral("tree"),
               {{"sold", dbBoolean}, {"health", dbMemo}, {"journal", dbMemo}, {"callname", dbText},
                {"datesold", dbDate}, {"notes", dbText}, {"breeder", dbBoolean}, {"owner", dbBoolean},
                {"leased", dbBoolean}, {"prefix", dbText}, {"suffix", dbText}, {"coi", dbText}, {"oldId", dbText},
                {"motherId", dbText}, {"fatherId", dbText}});
    dropOldColumns(database, QStringLiteral("tree"));
    AllowZeroLength(database, QStringLiteral("tree"));

    // 2. cavyuser
    createTable(database, QStringLiteral("cavyuser"));
    addColumns(database, QStringLiteral("cavyuser"),
               {{"fldBreederName", dbText}, {"fldStud", dbText}, {"fldLogo", dbText}, {"fldBackground", dbText},
                {"fldAnimal", dbText}, {"fldMale", dbText}, {"fldFemale", dbText}, {"fldGestation", dbLong},
                {"fldCountry", dbText}, {"fldCustomDetail", dbText}});
    addNumberedColumns(database, QStringLiteral("cavyuser"), QStringLiteral("fldCustomName"), dbText);
    addColumns(database, QStringLiteral("cavyuser"),
               {{"fldOrganisation", dbText}, {"fldReminders", dbMemo}, {"fldFather", dbText}, {"fldMother", dbText},
                {"fldPrefix", dbText}, {"fldNestBox", dbLong}, {"fldVersion", dbText}, {"fldRebreed", dbLong},
                {"fldWean", dbLong}, {"fldTag", dbLong}, {"fldWeightMeasure", dbText}, {"fldAutoUpdate", dbLong}});
    dropOldColumns(database, QStringLiteral("cavyuser"));
    for (const char* days : {"fldGestation", "fldWean", "fldNestBox", "fldRebreed"})
        ensureType(database, QStringLiteral("cavyuser"), QString::fromLatin1(days), dbLong);
    AllowZeroLength(database, QStringLiteral("cavyuser"));
    step([&] {
        if (!HasSettingsRow(database))
            database.Execute(Schema::kSettingsRowInsert);
    });

    // 3. soldstock
    createTable(database, QStringLiteral("soldstock"));
    addColumns(database, QStringLiteral("soldstock"), {{"Sire", dbText}, {"Address", dbText}});
    AllowZeroLength(database, QStringLiteral("soldstock"));

    // 4. breeding
    createTable(database, QStringLiteral("Breeding"));
    dropOldColumns(database, QStringLiteral("Breeding"));
    addColumns(database, QStringLiteral("Breeding"),
               {{"Unsuccessful", dbInteger}, {"Stillborn", dbText}, {"numUndefined", dbInteger}});
    ensureType(database, QStringLiteral("Breeding"), QStringLiteral("Colour"), dbMemo);
    ensureType(database, QStringLiteral("Breeding"), QStringLiteral("Born"), dbDate);
    AllowZeroLength(database, QStringLiteral("Breeding"));

    // 5. weights
    createTable(database, QStringLiteral("weights"));
    ensureType(database, QStringLiteral("weights"), QStringLiteral("weightDate"), dbDate);
    AllowZeroLength(database, QStringLiteral("weights"));

    // 6. print
    createTable(database, QStringLiteral("print"));
    addColumns(database, QStringLiteral("print"),
               {{"Orientation", dbInteger}, {"Margin", dbInteger}, {"FontSize", dbInteger}, {"FontName", dbText},
                {"FontColour", dbText}, {"FontBold", dbInteger}, {"FontItalic", dbInteger},
                {"SubjectFontSize", dbInteger}, {"SubjectFontName", dbText}, {"SubjectFontColour", dbText},
                {"SubjectFontBold", dbInteger}, {"SubjectFontItalic", dbInteger}, {"TitleFontSize", dbInteger},
                {"TitleFontName", dbText}, {"TitleFontColour", dbText}, {"TitleFontBold", dbInteger},
                {"TitleFontItalic", dbInteger}, {"ShowBorder", dbInteger}, {"WhichGraphic", dbInteger},
                {"ShowShadow", dbInteger}, {"PicSize", dbInteger}, {"LineColour", dbText},
                {"Generationchoice", dbInteger}, {"FieldChoices", dbText}, {"picLeft", dbInteger},
                {"picTop", dbInteger}, {"objectPositions", dbMemo}, {"name", dbText}, {"background", dbText},
                {"logo", dbText}, {"highlightChampions", dbInteger}, {"championColour", dbText},
                {"logoSize", dbInteger}, {"fieldOrder", dbText}});
    dropOldColumns(database, QStringLiteral("print"));
    AllowZeroLength(database, QStringLiteral("print"));

    // 7. contacts
    createTable(database, QStringLiteral("contacts"));
    addColumns(database, QStringLiteral("contacts"),
               {{"city", dbText}, {"state", dbText}, {"country", dbText}, {"postcode", dbText}, {"category", dbText}});
    repairContactsKey(database);
    AllowZeroLength(database, QStringLiteral("contacts"));
    ensureType(database, QStringLiteral("contacts"), QStringLiteral("notes"), dbMemo);
    AllowZeroLength(database, QStringLiteral("contacts"));

    // 8. vaccinations
    createTable(database, QStringLiteral("vaccinations"));
    ensureType(database, QStringLiteral("vaccinations"), QStringLiteral("duedate"), dbDate);
    AllowZeroLength(database, QStringLiteral("vaccinations"));

    // 9. reminders
    createTable(database, QStringLiteral("reminders"));
    AllowZeroLength(database, QStringLiteral("reminders"));

    // 10. expenditure
    createTable(database, QStringLiteral("expenditure"));
    addColumns(database, QStringLiteral("expenditure"), {{"income", dbCurrency}, {"category", dbMemo}});
    ensureType(database, QStringLiteral("expenditure"), QStringLiteral("expense_date"), dbDate);
    AllowZeroLength(database, QStringLiteral("expenditure"));

    // 11. shows
    createTable(database, QStringLiteral("shows"));
    addColumns(database, QStringLiteral("shows"), {{"judge", dbText}, {"points", dbText}});
    AllowZeroLength(database, QStringLiteral("shows"));

    // 12. journal
    createTable(database, QStringLiteral("journal"));
    addColumns(database, QStringLiteral("journal"), {{"nameId", dbText}, {"journalDate", dbDate}, {"journalNote", dbMemo}});
    AllowZeroLength(database, QStringLiteral("journal"));
    ensureType(database, QStringLiteral("journal"), QStringLiteral("journalNote"), dbMemo);

    addMissingColumns(database);
    addLookupIndexes(database);

    // 13. flags of the old status column, only where a file still has it
    if (NeedsStatusUpgrade(database, force)) {
        bool hasAncestor = false;
        step([&] { hasAncestor = database.TableDefs(QStringLiteral("tree")).Fields().contains(QStringLiteral("ancestor")); });
        if (hasAncestor) {
            runLogged(database, QStringLiteral("UPDATE tree SET breeder = -1 where ancestor = 0"), QStringLiteral("Update Status Error: "));
            runLogged(database, QStringLiteral("UPDATE tree SET owner = -1 where ancestor = 1"), QStringLiteral("Update Status Error: "));
        }
    }
    // 14.
    runLogged(database, QStringLiteral("UPDATE tree SET sold = -1 where sold = 1"), QStringLiteral("Update Sold Error: "));
    // 15.
    runLogged(database, QStringLiteral("UPDATE print SET name = 'Custom' where id = 1"), QStringLiteral("Error Number: "));
    // 16.
    MoveJournalEntries(database);
    resortIndexes(database);
    // 17.
    runLogged(database,
              QStringLiteral("UPDATE cavyuser ") + QStringLiteral("SET fldVersion = '") + ProgramVersionText() +
                  QStringLiteral("' WHERE ID = 1"),
              QStringLiteral("Error Number: "));
    const int failures = transaction.failures();
    transaction.commit();
    return failures == 0;
}
