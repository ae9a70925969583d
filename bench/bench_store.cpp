// SPDX-License-Identifier: GPL-3.0-or-later
// The store on a 50,000-animal stud made by tessorin-cli: how long the generator takes, how long a
// normal open takes (targets: under 15 s and under 100 ms, the open making no schema call), how long
// its test for damage takes (under 60 ms), and how long a search by name takes (target: under 30
// microseconds).
#include "base/Folders.h"
#include "store/DataFile.h"
#include "store/IntegrityCheck.h"
#include "store/User.h"

#include "BenchStud.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>
#include <cstdio>

namespace {

const int kAnimals = 50000;
const QString kFile = QDir::tempPath() + QStringLiteral("/tessorin-bench-50k.cav");

double gGenerateSeconds = -1;
QStringList gNames; // a sample of stored names, spread over the file

bool generateFile() { return GenerateBenchStud(kFile, kAnimals, &gGenerateSeconds); }

bool sampleNames()
{
    try {
        Database db = OpenWithPassword(kFile);
        Recordset rs = db.OpenRecordset(QStringLiteral("SELECT name FROM tree ORDER BY id"));
        for (int i = 0; !rs.Eof(); ++i, rs.MoveNext()) {
            if (i % 97 == 0)
                gNames << rs.Fields(0).toString(); // stored form, as a statement carries it
        }
        db.Close();
    } catch (const JetError& e) {
        fprintf(stderr, "reading names failed: %d %s\n", e.number(), qPrintable(e.description()));
        return false;
    }
    return !gNames.isEmpty();
}

// What the program does on every open of a file with the current stamp.
void BM_OpenCurrentFile(benchmark::State& state)
{
    qint64 schemaCalls = 0;
    for (auto _ : state) {
        Database db = OpenWithPassword(kFile);
        CheckDatabase(db, false, false);
        User user;
        user.read(db);
        schemaCalls += db.schemaCallCount();
        benchmark::DoNotOptimize(user.Animal);
        db.Close();
    }
    state.counters["schema_calls"] = double(schemaCalls);
}
BENCHMARK(BM_OpenCurrentFile)->Unit(benchmark::kMillisecond);

// The test for damage that every open makes (target: under 60 ms on this file).
void BM_QuickCheck(benchmark::State& state)
{
    Database db = Database::OpenDatabase(kFile);
    for (auto _ : state)
        benchmark::DoNotOptimize(DamageReport(db, false));
    db.Close();
}
BENCHMARK(BM_QuickCheck)->Unit(benchmark::kMillisecond);

// A search by name as the record lists run it, a different name each time (no cached translation).
void BM_FindByName(benchmark::State& state)
{
    Database db = OpenWithPassword(kFile);
    qsizetype i = 0;
    qint64 found = 0;
    for (auto _ : state) {
        Recordset rs = db.OpenRecordset(QStringLiteral("SELECT * FROM tree WHERE name = '") + gNames.at(i) +
                                        QLatin1Char('\''));
        if (!rs.Eof())
            found += rs.Fields(QStringLiteral("dob")).isValid();
        i = (i + 1) % gNames.size();
    }
    state.counters["found"] = benchmark::Counter(double(found), benchmark::Counter::kAvgIterations);
    db.Close();
}
BENCHMARK(BM_FindByName)->Unit(benchmark::kMicrosecond);

// The same search repeated with one text, as a page refill does: the translation comes from the cache.
void BM_FindByNameRepeated(benchmark::State& state)
{
    Database db = OpenWithPassword(kFile);
    const QString sql = QStringLiteral("SELECT * FROM tree WHERE name = '") + gNames.at(gNames.size() / 2) +
                        QLatin1Char('\'');
    for (auto _ : state) {
        Recordset rs = db.OpenRecordset(sql);
        benchmark::DoNotOptimize(rs.Fields(QStringLiteral("dob")));
    }
    db.Close();
}
BENCHMARK(BM_FindByNameRepeated)->Unit(benchmark::kMicrosecond);

// The repeated search inside one transaction: the difference to the one above is what SQLite's
// taking and dropping of the file lock around each statement costs.
void BM_FindByNameRepeatedInTransaction(benchmark::State& state)
{
    Database db = OpenWithPassword(kFile);
    const QString sql = QStringLiteral("SELECT * FROM tree WHERE name = '") + gNames.at(gNames.size() / 2) +
                        QLatin1Char('\'');
    {
        Transaction transaction(db);
        for (auto _ : state) {
            Recordset rs = db.OpenRecordset(sql);
            benchmark::DoNotOptimize(rs.Fields(QStringLiteral("dob")));
        }
    }
    db.Close();
}
BENCHMARK(BM_FindByNameRepeatedInTransaction)->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    // The check logs to the settings folder; keep that out of the user's own.
    QTemporaryDir settings;
    gSettingsFolder = settings.path() + QLatin1Char('/');
    gDataFolder = settings.path() + QLatin1Char('/');

    benchmark::Initialize(&argc, argv);
    if (!generateFile() || !sampleNames())
        return 1;
    printf("generate %d animals: %.2f s (target under 15 s)\n", kAnimals, gGenerateSeconds);
    fflush(stdout);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    QFile::remove(kFile);
    return 0;
}
