// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/DataFile.h"

#include "shell/Folders.h"

#include <QFile>
#include <QFileInfo>
#include <QLocale>

bool CreateDataFile(const QString& name, const QString& folder)
{
    const QString path = (folder.isEmpty() ? gDataFolder : folder) + name;
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

Database OpenWithPassword(const QString& path)
{
    const QString connect = QStringLiteral(";pwd=") + kDatabasePassword;
    switch (ClassifyDataFile(path)) {
    case DataFileKind::Missing: throw JetError::fileNotFound(path);
    case DataFileKind::Other: throw JetError::unrecognizedFormat(path);
    case DataFileKind::Jet:
        throw JetError(3343, QStringLiteral("'%1' is a data file of the older Windows program (a Jet database). "
                                            "This version cannot open it yet.").arg(path));
    case DataFileKind::Tessorin: return Database::OpenDatabase(path, false, false, connect);
    case DataFileKind::ForeignSqlite: break;
    }
    Database db = Database::OpenDatabase(path, false, false, connect);
    if (!db.hasTable(QStringLiteral("tree"))) {
        db.Close();
        throw JetError::unrecognizedFormat(path);
    }
    try {
        db.setApplicationId(kTessorinApplicationId);
    } catch (const JetError&) {
        // A read-only file opens unstamped.
    }
    return db;
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
