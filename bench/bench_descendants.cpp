// SPDX-License-Identifier: GPL-3.0-or-later
// The descendants of animals of a 50,000-animal stud made by tessorin-cli: the founders, whose nine
// generations hold the most entries, and animals from the middle of the stud.
#include "genetics/Descendants.h"
#include "session/OpenDataFile.h"
#include "session/globals.h"
#include "store/DataFile.h"

#include "BenchStud.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <benchmark/benchmark.h>
#include <vector>

namespace {

const int kAnimals = 50000;
const QString kFile = QDir::tempPath() + QStringLiteral("/tessorin-bench-descendants-50k.cav");

struct Subject {
    QString name; // decoded
    QString sex;
};

// Every seventh animal in the order of entry from the first'th on.
std::vector<Subject> sample(int first, int count)
{
    std::vector<Subject> subjects;
    Recordset rs = gDatabase.OpenRecordset(QStringLiteral("SELECT name, sex FROM tree ORDER BY id"));
    for (int i = 0; !rs.Eof() && int(subjects.size()) < count; ++i, rs.MoveNext()) {
        if (i >= first && (i - first) % 7 == 0)
            subjects.push_back({DecodeText(rs.Fields(0).toString()), rs.Fields(1).toString()});
    }
    return subjects;
}

void run(benchmark::State& state, const std::vector<Subject>& subjects)
{
    size_t i = 0;
    qint64 entries = 0;
    for (auto _ : state) {
        Descendants d;
        d.LoadDescendants(subjects[i].name, subjects[i].sex);
        state.PauseTiming();
        entries += d.queryCount();
        i = (i + 1) % subjects.size();
        state.ResumeTiming();
    }
    state.counters["lookups"] = benchmark::Counter(double(entries), benchmark::Counter::kAvgIterations);
}

std::vector<Subject> gFounders;
std::vector<Subject> gMiddle;

void BM_DescendantsOfFounders(benchmark::State& state) { run(state, gFounders); }
BENCHMARK(BM_DescendantsOfFounders)->Unit(benchmark::kMillisecond);

void BM_DescendantsMidStud(benchmark::State& state) { run(state, gMiddle); }
BENCHMARK(BM_DescendantsMidStud)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    BenchFolders folders;

    benchmark::Initialize(&argc, argv);
    if (!GenerateBenchStud(kFile, kAnimals) || !OpenDataFile(kFile))
        return 1;
    gFounders = sample(0, 20);
    gMiddle = sample(kAnimals / 2, 200);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    CloseDatabase();
    QFile::remove(kFile);
    return 0;
}
