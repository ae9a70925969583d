// SPDX-License-Identifier: GPL-3.0-or-later
// Loading one animal of a 50,000-animal stud made by tessorin-cli, as the main window does on every
// change of current animal: with an empty pictures folder (target under 1 ms) and with 2,000 picture
// files in it (target under 5 ms).
#include "records/Animal.h"
#include "base/Folders.h"
#include "session/OpenDataFile.h"
#include "session/globals.h"
#include "store/DataFile.h"

#include "BenchStud.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>
#include <cstdio>

namespace {

const int kAnimals = 50000;
const int kPictures = 2000;
const QString kFile = QDir::tempPath() + QStringLiteral("/tessorin-bench-animal-50k.cav");

QStringList gNames; // decoded names spread over the file

bool generateFile() { return GenerateBenchStud(kFile, kAnimals); }

bool openAndSample()
{
    if (!OpenDataFile(kFile))
        return false;
    Recordset rs = gDatabase.OpenRecordset(QStringLiteral("SELECT name FROM tree ORDER BY id"));
    for (int i = 0; !rs.Eof(); ++i, rs.MoveNext()) {
        if (i % 97 == 0)
            gNames << DecodeText(rs.Fields(0).toString());
    }
    return !gNames.isEmpty();
}

// Pictures of other animals, and ten of one sampled animal, so that the folder is as large as a keen
// breeder's and the loaded animal has its slots filled.
void fillPictures()
{
    QDir().mkpath(PicturesFolder());
    for (int i = 0; i < kPictures - kPictureSlots; ++i) {
        QFile f(PicturesFolder() + gNames.at(i % gNames.size()) + QStringLiteral(" other%1(0).jpg").arg(i));
        f.open(QIODevice::WriteOnly);
    }
    for (int n = 0; n < kPictureSlots; ++n) {
        QFile f(PicturesFolder() + gNames.at(gNames.size() / 2) + QStringLiteral("(%1)[label %1].jpg").arg(n));
        f.open(QIODevice::WriteOnly);
    }
}

void load(benchmark::State& state)
{
    qsizetype i = 0;
    qint64 pictures = 0;
    Animal animal;
    for (auto _ : state) {
        QString name = gNames.at(i);
        animal.SetCurrentAnimal(name);
        for (const QString& p : animal.picture)
            pictures += !p.isEmpty();
        i = (i + 1) % gNames.size();
    }
    state.counters["pictures"] = benchmark::Counter(double(pictures), benchmark::Counter::kAvgIterations);
}

void BM_SetCurrentAnimalNoPictures(benchmark::State& state)
{
    QDir(PicturesFolder()).removeRecursively();
    load(state);
}
BENCHMARK(BM_SetCurrentAnimalNoPictures)->Unit(benchmark::kMicrosecond);

void BM_SetCurrentAnimal2000Pictures(benchmark::State& state)
{
    QDir(PicturesFolder()).removeRecursively();
    fillPictures();
    load(state);
    QDir(PicturesFolder()).removeRecursively();
}
BENCHMARK(BM_SetCurrentAnimal2000Pictures)->Unit(benchmark::kMicrosecond);

// The animal whose ten slots are all filled, loaded again and again.
void BM_SetCurrentAnimalTenPictures(benchmark::State& state)
{
    QDir(PicturesFolder()).removeRecursively();
    fillPictures();
    Animal animal;
    const QString subject = gNames.at(gNames.size() / 2);
    for (auto _ : state) {
        QString name = subject;
        animal.SetCurrentAnimal(name);
        benchmark::DoNotOptimize(animal.picture[9]);
    }
    state.counters["slot9_filled"] = double(!animal.picture[9].isEmpty());
    QDir(PicturesFolder()).removeRecursively();
}
BENCHMARK(BM_SetCurrentAnimalTenPictures)->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    BenchFolders folders;

    benchmark::Initialize(&argc, argv);
    if (!generateFile() || !openAndSample())
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    CloseDatabase();
    QFile::remove(kFile);
    return 0;
}
