// SPDX-License-Identifier: GPL-3.0-or-later
// libFuzzer target: any text given to the store as a statement is translated and run on a small data
// file, and must end in a result or a JetError, never a crash, and never more than one statement.
#include "store/Database.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>

namespace {
Database& fuzzDatabase()
{
    static Database db = [] {
        const QString path = QDir::tempPath() + QStringLiteral("/tessorin-fuzz-%1.cav").arg(QCoreApplication::applicationPid());
        QFile::remove(path);
        Database d = Database::CreateDatabase(path);
        d.Execute(QStringLiteral("CREATE TABLE tree (id COUNTER PRIMARY KEY, name STRING, dob DATE, sold NUMBER, notes MEMO)"));
        d.Execute(QStringLiteral("INSERT INTO tree (name, dob, sold) VALUES ('Ash', #03/15/2020#, -1)"));
        return d;
    }();
    return db;
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static int argc = 1;
    static char name[] = "fuzz_store";
    static char* argv[] = {name, nullptr};
    static QCoreApplication app(argc, argv);
    Database& db = fuzzDatabase();
    const QString sql = QString::fromUtf8(reinterpret_cast<const char*>(data), qsizetype(size));
    try {
        if (sql.trimmed().startsWith(QLatin1String("select"), Qt::CaseInsensitive)) {
            Recordset rs = db.OpenRecordset(sql);
            for (int i = 0; i < 100 && !rs.Eof(); ++i) {
                for (int c = 0; c < rs.FieldCount(); ++c)
                    (void)rs.Fields(c);
                rs.MoveNext();
            }
        } else {
            db.Execute(sql);
        }
    } catch (const JetError&) {
    }
    // Whatever ran, the table the fuzzer may not drop in one statement together with another is there.
    if (!db.hasTable(QStringLiteral("tree")))
        db.Execute(QStringLiteral("CREATE TABLE tree (id COUNTER PRIMARY KEY, name STRING, dob DATE, sold NUMBER, notes MEMO)"));
    return 0;
}
