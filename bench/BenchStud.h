// SPDX-License-Identifier: GPL-3.0-or-later
// The generated stud every benchmark runs on, made by tessorin-cli as a user would make it.
#pragma once

#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include "base/Folders.h"
#include <cstdio>

// Makes a new stud of `animals` animals at path (seed 2024); false, with the reason on stderr, when the
// tool fails. `seconds` receives how long the generation took.
inline bool GenerateBenchStud(const QString& path, int animals, double* seconds = nullptr)
{
    QFile::remove(path);
    QProcess p;
    QElapsedTimer timer;
    timer.start();
    p.start(QStringLiteral(TESSORIN_CLI_PATH), {QStringLiteral("generate"), path, QStringLiteral("--animals"),
                                                 QString::number(animals), QStringLiteral("--seed"),
                                                 QStringLiteral("2024")});
    if (!p.waitForFinished(600000) || p.exitCode() != 0) {
        fprintf(stderr, "generate failed: %s\n", p.readAllStandardError().constData());
        return false;
    }
    if (seconds)
        *seconds = double(timer.nsecsElapsed()) / 1e9;
    return true;
}

// Points the program's data and settings folders at a scratch folder for the run of a benchmark.
class BenchFolders {
public:
    BenchFolders()
    {
        gSettingsFolder = m_folder.path() + QLatin1Char('/');
        gDataFolder = m_folder.path() + QLatin1Char('/');
    }

private:
    QTemporaryDir m_folder;
};
