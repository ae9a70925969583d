// SPDX-License-Identifier: GPL-3.0-or-later
// The page list with 50,000 rows, offscreen: filled from its row model (target under 250 ms) and sorted
// by its "Date" header through the hidden "yyyy-mm-dd" column (target under 100 ms).
#include "base/Dates.h"
#include "records/forms/ReportList.h"

#include <QApplication>
#include <benchmark/benchmark.h>

namespace {

ReportRows fiftyThousand()
{
    ReportRows r;
    r.addColumn(QStringLiteral("ID"), 0);
    r.addColumn(QStringLiteral("Date"), 80, 4);
    r.addColumn(QStringLiteral("Reminder"), 200);
    r.addColumn(QStringLiteral("Done"), 50);
    r.addColumn(QStringLiteral("SQL Date"), 0);
    quint32 seed = 7;
    for (int i = 0; i < 50000; ++i) {
        seed = seed * 1664525u + 1013904223u;
        const QDate day = QDate(2000, 1, 1).addDays(seed % 9000);
        r.rows << QStringList{QString::number(i + 1), FormatShortDate(day), QStringLiteral("Worm hutch %1").arg(seed % 977),
                              DoneFlag(seed % 3 ? QStringLiteral("y") : QStringLiteral("n")), ToIsoDate(day)};
    }
    return r;
}

void BM_FillFiftyThousand(benchmark::State& state)
{
    const ReportRows rows = fiftyThousand();
    ReportList list;
    list.resize(800, 600);
    list.show();
    for (auto _ : state) {
        list.fill(rows);
        QApplication::processEvents();
    }
    state.counters["rows"] = list.count();
}
BENCHMARK(BM_FillFiftyThousand)->Unit(benchmark::kMillisecond);

void BM_SortFiftyThousandByDate(benchmark::State& state)
{
    ReportList list;
    list.resize(800, 600);
    list.fill(fiftyThousand());
    list.show();
    for (auto _ : state) {
        list.sortByColumn(1);
        QApplication::processEvents();
    }
}
BENCHMARK(BM_SortFiftyThousandByDate)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
