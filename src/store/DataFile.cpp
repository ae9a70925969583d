// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/DataFile.h"

#include "base/Folders.h"
#include "store/Connection.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace {

// Left behind when a file of that name went without them: they must not be rolled into a new one.
void removeOrphanCompanions(const QString& path)
{
    if (QFileInfo::exists(path))
        return;
    for (const QString& companion : CompanionFiles(path))
        QFile::remove(companion);
}

bool writable(const QString& path, int mode, int& error)
{
    const QByteArray name = QFile::encodeName(path);
    if (faccessat(AT_FDCWD, name.constData(), mode, AT_EACCESS) == 0)
        return true;
    error = errno;
    return false;
}

} // namespace

QStringList CompanionFiles(const QString& path)
{
    return {path + QStringLiteral("-journal"), path + QStringLiteral("-wal"), path + QStringLiteral("-shm")};
}

bool RemoveDataFile(const QString& path)
{
    if (QFileInfo::exists(path) && !QFile::remove(path))
        return false;
    removeOrphanCompanions(path);
    return true;
}

bool RenameDataFile(const QString& from, const QString& to)
{
    if (QFileInfo::exists(to) || !QFileInfo::exists(from))
        return false;
    removeOrphanCompanions(to);
    if (!QFile::rename(from, to))
        return false;
    const QStringList old = CompanionFiles(from);
    const QStringList moved = CompanionFiles(to);
    for (qsizetype i = 0; i < old.size(); ++i)
        if (QFileInfo::exists(old[i]))
            QFile::rename(old[i], moved[i]);
    return true;
}

bool NeedsRecovery(const QString& path)
{
    const QFileInfo journal(path + QStringLiteral("-journal"));
    return journal.exists() && journal.size() > 0;
}

bool CreateDataFile(const QString& name, const QString& folder)
{
    const QString path = (folder.isEmpty() ? gDataFolder : folder) + name;
    removeOrphanCompanions(path);
    const bool existed = QFileInfo::exists(path);
    try {
        Database db = Database::CreateDatabase(path, kDataFileLocale);
        db.setApplicationId(kTessorinApplicationId);
        // The format joins its password with the file's creation date; SQLite keeps no password, so the
        // call changes nothing and is made only to keep the steps of creation whole.
        const QString created = QLocale().toString(QFileInfo(path).birthTime().date(), QLocale::ShortFormat);
        db.NewPassword(QString(), kDatabasePassword + created);
        db.Close();
        return true;
    } catch (const JetError&) {
        if (!existed) // half made, on a full disk: nothing of it stays
            RemoveDataFile(path);
        return false;
    }
}

DataFileKind ClassifyDataFile(const QString& path)
{
    QFile f(path);
    if (!QFileInfo(path).isFile())
        return DataFileKind::Missing;
    if (!f.open(QIODevice::ReadOnly))
        return DataFileKind::Other;
    const QByteArray head = f.read(100);
    if (head.startsWith(QByteArrayLiteral("SQLite format 3\0")) && head.size() >= 72) {
        const auto* b = reinterpret_cast<const unsigned char*>(head.constData());
        const int id = int((quint32(b[68]) << 24) | (quint32(b[69]) << 16) | (quint32(b[70]) << 8) | quint32(b[71]));
        return id == kTessorinApplicationId ? DataFileKind::Tessorin : DataFileKind::ForeignSqlite;
    }
    const QByteArray signature = head.mid(4, 15);
    if (signature == QByteArrayLiteral("Standard Jet DB") || signature == QByteArrayLiteral("Standard ACE DB"))
        return DataFileKind::Jet;
    return DataFileKind::Other;
}

QString WhyReadOnly(const QString& path)
{
    const QFileInfo info(path);
    int error = 0;
    if (!writable(info.absoluteFilePath(), W_OK, error))
        return error == EROFS ? QStringLiteral("it lies on a disk or share that can only be read")
                              : QStringLiteral("the file is write-protected");
    if (!writable(info.absolutePath(), W_OK | X_OK, error))
        return error == EROFS ? QStringLiteral("it lies on a disk or share that can only be read")
                              : QStringLiteral("its folder %1 cannot be written, and saving needs room beside the "
                                               "file for a journal")
                                    .arg(QDir::toNativeSeparators(info.absolutePath()));
    return {};
}

Database OpenWithPassword(const QString& path)
{
    const QString connect = QStringLiteral(";pwd=") + kDatabasePassword;
    switch (ClassifyDataFile(path)) {
    case DataFileKind::Missing: throw JetError::fileNotFound(path);
    case DataFileKind::Other: throw JetError::unrecognizedFormat(path);
    case DataFileKind::Jet:
        throw JetError(3343, QStringLiteral("'%1' is a data file of the older Windows program (a Jet database). "
                                            "This version cannot open it yet.").arg(path));
    case DataFileKind::ForeignSqlite:
        throw JetError(3343, QStringLiteral("'%1' is a SQLite database of another program, not a Tessorin data "
                                            "file.").arg(path));
    case DataFileKind::Tessorin: break;
    }
    // A file that cannot be written is opened for reading on purpose, rather than failing at its first save.
    Database db = Database::OpenDatabase(path, false, !WhyReadOnly(path).isEmpty(), connect);
    QString damage;
    try {
        damage = DamageReport(db, false);
    } catch (const JetError&) {
        db.Close();
        throw;
    }
    if (!damage.isEmpty()) {
        db.Close();
        throw JetError(3049, QStringLiteral("'%1' is damaged and cannot be opened: %2").arg(path, damage));
    }
    return db;
}

bool IsAdoptableForeignFile(const QString& path)
{
    if (ClassifyDataFile(path) != DataFileKind::ForeignSqlite)
        return false;
    try {
        Database db = Database::OpenDatabase(path, false, true);
        const bool tree = db.hasTable(QStringLiteral("tree"));
        db.Close();
        return tree;
    } catch (const JetError&) {
        return false;
    }
}

void AdoptForeignDataFile(const QString& path)
{
    if (!IsAdoptableForeignFile(path))
        throw JetError::unrecognizedFormat(path);
    Database db = Database::OpenDatabase(path);
    if (db.isReadOnly()) {
        db.Close();
        throw JetError::readOnly();
    }
    db.setApplicationId(kTessorinApplicationId);
    // Its indexes were sorted by other programs: the next check sorts them in ours.
    db.connection()->exec(QStringLiteral("PRAGMA user_version = 0"));
    db.Close();
}

QString DamageReport(Database& database, bool full)
{
    if (!database.isOpen())
        throw JetError::objectClosed();
    sqlite3* handle = database.connection()->db();
    sqlite3_stmt* stmt = nullptr;
    const char* sql = full ? "PRAGMA integrity_check(20)" : "PRAGMA quick_check(20)";
    int rc = sqlite3_prepare_v2(handle, sql, -1, &stmt, nullptr);
    QStringList lines;
    if (rc == SQLITE_OK)
        while ((rc = sqlite3_step(stmt)) == SQLITE_ROW)
            lines << QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(stmt, 0)));
    sqlite3_finalize(stmt);
    if (rc == SQLITE_CORRUPT || rc == SQLITE_NOTADB)
        return QString::fromUtf8(sqlite3_errstr(rc));
    if (rc != SQLITE_DONE && rc != SQLITE_OK)
        database.connection()->fail(rc, jet::StatementKind::Other, QString::fromLatin1(sql));
    if (lines.size() == 1 && lines.front() == QLatin1String("ok"))
        return {};
    if (lines.size() > 3)
        lines = lines.mid(0, 3) << QStringLiteral("...");
    return lines.join(QStringLiteral("; "));
}

QStringList DropForeignTriggersAndViews(Database& database)
{
    if (!database.isOpen() || database.isReadOnly())
        return {};
    sqlite3* handle = database.connection()->db();
    QStringList found;
    sqlite3_stmt* stmt = nullptr;
    sqlite3_prepare_v2(handle,
                       "SELECT type, name FROM sqlite_master WHERE type IN ('trigger', 'view') "
                       "AND substr(lower(name), 1, 9) <> 'tessorin_' ORDER BY type, name",
                       -1, &stmt, nullptr);
    while (stmt && sqlite3_step(stmt) == SQLITE_ROW)
        found << QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(stmt, 0))) + QLatin1Char(' ') +
                     QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(stmt, 1)));
    sqlite3_finalize(stmt);
    if (found.isEmpty())
        return found;
    jet::Connection& c = *database.connection();
    c.schemaChanged();
    c.exec(QStringLiteral("SAVEPOINT tessorin_drop"));
    try {
        for (const QString& item : std::as_const(found)) {
            const qsizetype blank = item.indexOf(QLatin1Char(' '));
            c.exec(QStringLiteral("DROP %1 IF EXISTS %2").arg(item.left(blank).toUpper(), jet::quoteName(item.mid(blank + 1))));
        }
        c.exec(QStringLiteral("RELEASE tessorin_drop"));
    } catch (...) {
        sqlite3_exec(handle, "ROLLBACK TO tessorin_drop; RELEASE tessorin_drop", nullptr, nullptr, nullptr);
        c.schemaChanged();
        throw;
    }
    c.schemaChanged();
    return found;
}

QString EncodeText(const QString& text)
{
    QString s = text;
    s.replace(QLatin1Char('\''), QLatin1Char('$'));
    return s;
}

QString DecodeText(const QString& text)
{
    if (!text.contains(QLatin1Char('$')))
        return text;
    QString s = text;
    for (qsizetype i = 0; i < s.size(); ++i) {
        if (s[i] == QLatin1Char('$') && !(i + 1 < s.size() && s[i + 1].isDigit()))
            s[i] = QLatin1Char('\'');
    }
    return s;
}

QString GetVersionText(Database& database)
{
    try {
        Recordset rs = database.OpenRecordset(QStringLiteral("Select * FROM cavyuser WHERE id = 1"));
        if (rs.Eof())
            return {};
        return rs.Fields(QStringLiteral("fldVersion")).toString();
    } catch (const JetError&) {
        return {};
    }
}

bool HasSettingsRow(Database& database)
{
    Recordset rs = database.OpenRecordset(QStringLiteral("Select * FROM cavyuser WHERE id = 1"));
    return rs.RecordCount() == 1;
}

bool DeleteColumn(const TableDef& tableDef, const QString& name)
{
    try {
        tableDef.Fields().Delete(name);
        return true;
    } catch (const JetError&) {
        return false;
    }
}

QString ProgramVersionText(int major, int minor, int revision)
{
    return QStringLiteral("%1.%2.%3").arg(major).arg(minor, 2, 10, QLatin1Char('0')).arg(revision, 2, 10, QLatin1Char('0'));
}

QString ProgramVersionText()
{
    return ProgramVersionText(TESSORIN_VERSION_MAJOR, TESSORIN_VERSION_MINOR, TESSORIN_VERSION_PATCH);
}
