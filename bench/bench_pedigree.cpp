// SPDX-License-Identifier: GPL-3.0-or-later
// The family tree page in the 7-generation form, filled for animals of a 50,000-animal stud made by
// tessorin-cli (target under 50 ms a page): the ancestor walk, a look-up per box, the captions, the
// litter mates and the layout. Also the same with the page painted, as the user sees it.
#include "printing/forms/FamilyTreePage.h"
#include "printing/forms/pedigree.h"
#include "records/Animal.h"
#include "session/OpenDataFile.h"
#include "session/globals.h"
#include "store/DataFile.h"

#include "BenchStud.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QRadioButton>
#include <benchmark/benchmark.h>
#include <cstdio>
#include <vector>

namespace {

const int kAnimals = 50000;
const QString kFile = QDir::tempPath() + QStringLiteral("/tessorin-bench-pedigree-50k.cav");

std::vector<Animal> gSubjects; // animals of the youngest generations, with the deepest pedigrees

bool openAndSample()
{
    if (!OpenDataFile(kFile))
        return false;
    Recordset rs = gDatabase.OpenRecordset(QStringLiteral("SELECT name FROM tree ORDER BY id DESC"));
    for (int i = 0; !rs.Eof() && gSubjects.size() < 200; ++i, rs.MoveNext()) {
        if (i % 23)
            continue;
        Animal a;
        QString name = DecodeText(rs.Fields(0).toString());
        a.SetCurrentAnimal(name);
        gSubjects.push_back(a);
    }
    return !gSubjects.empty();
}

int shownBoxes(const FamilyTreePage& page)
{
    int shown = 0;
    for (int i = 1; i < 255; ++i)
        shown += page.findChild<QLabel*>(QStringLiteral("lblCavy(%1)").arg(i))->isVisibleTo(&page);
    return shown;
}

void run(benchmark::State& state, bool paint)
{
    FamilyTreePage page(nullptr);
    page.resize(800, 640);
    page.findChild<QRadioButton*>(QStringLiteral("optGen(7)"))->setChecked(true);
    if (paint)
        page.show();
    size_t i = 0;
    qint64 boxes = 0;
    for (auto _ : state) {
        gAnimal = gSubjects[i];
        page.LoadTree();
        if (paint)
            benchmark::DoNotOptimize(page.grab());
        state.PauseTiming();
        boxes += shownBoxes(page);
        i = (i + 1) % gSubjects.size();
        state.ResumeTiming();
    }
    state.counters["boxes"] = benchmark::Counter(double(boxes), benchmark::Counter::kAvgIterations);
}

void BM_LoadTreeSevenGenerations(benchmark::State& state) { run(state, false); }
BENCHMARK(BM_LoadTreeSevenGenerations)->Unit(benchmark::kMillisecond);

void BM_LoadTreeSevenGenerationsPainted(benchmark::State& state) { run(state, true); }
BENCHMARK(BM_LoadTreeSevenGenerationsPainted)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    BenchFolders folders;

    benchmark::Initialize(&argc, argv);
    if (!GenerateBenchStud(kFile, kAnimals) || !openAndSample())
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    gAnimal = Animal();
    gSubjects.clear();
    CloseDatabase();
    QFile::remove(kFile);
    return 0;
}
