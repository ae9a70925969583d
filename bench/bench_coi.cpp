// SPDX-License-Identifier: GPL-3.0-or-later
// The inbreeding coefficient on studs made by tessorin-cli: one animal of the youngest generation at 10
// generations (target under 20 ms), "Update All" at 6 generations over 30,000 animals (target under
// 30 s), and the same bulk run by the literal loops (one query per look-up, every sire row against every
// dam row, one statement per stored value) on the same stud, for the factor between them; on a smaller
// stud also without a transaction, as the program always ran it.
#include "genetics/Calculator.h"
#include "genetics/Coefficient.h"
#include "session/OpenDataFile.h"
#include "session/globals.h"
#include "store/DataFile.h"

#include "../tests/genetics/LiteralCoefficient.h"
#include "BenchStud.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <benchmark/benchmark.h>
#include <cstdio>

namespace {

const int kAnimals = 30000;
const int kSmallAnimals = 1000;
const QString kFile = QDir::tempPath() + QStringLiteral("/tessorin-bench-coi-30k.cav");
const QString kSmallFile = QDir::tempPath() + QStringLiteral("/tessorin-bench-coi-1k.cav");

class CountingView : public CoefficientView {
public:
    qint64 rows = 0;
    qint64 updates = 0;
    QString label;
    void addAncestorRow(const AncestorRow&) override { ++rows; }
    QString generationsText() const override { return QStringLiteral("6"); }
    void addRecordRow(const QString&, const QString&, const QString&) override { ++rows; }
    void progress(double, const QString& text) override
    {
        ++updates;
        label = text;
    }
};

QStringList youngest(int count)
{
    QStringList names;
    Recordset rs = gDatabase.OpenRecordset(QStringLiteral("SELECT name FROM tree ORDER BY dob DESC"));
    for (; !rs.Eof() && names.size() < count; rs.MoveNext())
        names << rs.Fields(0).toString();
    return names;
}

void BM_CoefficientTenGenerations(benchmark::State& state)
{
    if (!OpenDataFile(kFile)) {
        state.SkipWithError("cannot open the stud");
        return;
    }
    const QStringList names = youngest(50);
    qsizetype i = 0;
    CountingView view;
    for (auto _ : state) {
        benchmark::DoNotOptimize(CalculateCoefficient(names.at(i), QString(), QString(), 10, true, true, &view));
        i = (i + 1) % names.size();
    }
    state.counters["ancestor_rows"] = benchmark::Counter(double(view.rows), benchmark::Counter::kAvgIterations);
    CloseDatabase();
}
BENCHMARK(BM_CoefficientTenGenerations)->Unit(benchmark::kMillisecond);

// The literal run either in one transaction, so that only the work differs, or statement by
// statement as the program always ran it.
enum class Run { Fast, Literal, LiteralEachStatement };

void bulk(benchmark::State& state, const QString& file, Run run)
{
    if (!OpenDataFile(file)) {
        state.SkipWithError("cannot open the stud");
        return;
    }
    qint64 records = 0;
    for (auto _ : state) {
        CountingView view;
        bool done = false;
        if (run == Run::Literal) {
            QStringList rows;
            Transaction t(gDatabase);
            done = literal::Update(Calculator::BulkQuery(false), 6, &rows);
            t.commit();
            records = rows.size();
        } else if (run == Run::LiteralEachStatement) {
            QStringList rows;
            done = literal::Update(Calculator::BulkQuery(false), 6, &rows);
            records = rows.size();
        } else {
            done = UpdateCoefficients(Calculator::BulkQuery(false), view);
            records = view.rows;
            state.counters["progress_updates"] = double(view.updates);
        }
        if (!done)
            state.SkipWithError("the run ended early");
    }
    state.counters["records"] = double(records);
    CloseDatabase();
}

void BM_UpdateAll30000(benchmark::State& state) { bulk(state, kFile, Run::Fast); }
BENCHMARK(BM_UpdateAll30000)->Unit(benchmark::kSecond)->Iterations(3);

void BM_UpdateAll30000Literal(benchmark::State& state) { bulk(state, kFile, Run::Literal); }
BENCHMARK(BM_UpdateAll30000Literal)->Unit(benchmark::kSecond)->Iterations(1);

void BM_UpdateAll1000(benchmark::State& state) { bulk(state, kSmallFile, Run::Fast); }
BENCHMARK(BM_UpdateAll1000)->Unit(benchmark::kMillisecond)->Iterations(3);

void BM_UpdateAll1000Literal(benchmark::State& state) { bulk(state, kSmallFile, Run::Literal); }
BENCHMARK(BM_UpdateAll1000Literal)->Unit(benchmark::kMillisecond)->Iterations(1);

void BM_UpdateAll1000LiteralEachStatement(benchmark::State& state)
{
    bulk(state, kSmallFile, Run::LiteralEachStatement);
}
BENCHMARK(BM_UpdateAll1000LiteralEachStatement)->Unit(benchmark::kSecond)->Iterations(1);

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    BenchFolders folders;

    benchmark::Initialize(&argc, argv);
    if (!GenerateBenchStud(kFile, kAnimals) || !GenerateBenchStud(kSmallFile, kSmallAnimals))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    QFile::remove(kFile);
    QFile::remove(kSmallFile);
    return 0;
}
