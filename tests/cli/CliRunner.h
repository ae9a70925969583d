// SPDX-License-Identifier: GPL-3.0-or-later
// Runs the built tessorin-cli as a user would, on the tests' fixed day.
#pragma once

#include <QProcess>
#include <QProcessEnvironment>
#include <QStringList>
#include <gtest/gtest.h>

struct CliResult {
    int code = -1;
    QString out;
    QString err;
};

// With a home folder given, the tool's HOME and XDG folders lie in it, so that its pictures folder and
// logs are the test's own.
inline CliResult RunTool(const QStringList& arguments, const QString& home = QString())
{
    QProcess p;
    if (!home.isEmpty()) {
        QProcessEnvironment e = QProcessEnvironment::systemEnvironment();
        e.insert(QStringLiteral("HOME"), home);
        e.insert(QStringLiteral("XDG_CONFIG_HOME"), home + QStringLiteral("/.config"));
        e.insert(QStringLiteral("XDG_DATA_HOME"), home + QStringLiteral("/.local/share"));
        p.setProcessEnvironment(e);
    }
    p.start(QStringLiteral(TESSORIN_CLI_PATH), QStringList{QStringLiteral("--today"), QStringLiteral("2026-11-23")} + arguments);
    CliResult r;
    if (!p.waitForFinished(180000) || p.exitStatus() != QProcess::NormalExit) {
        ADD_FAILURE() << "tessorin-cli did not finish: " << arguments.join(QLatin1Char(' ')).toStdString();
        p.kill();
        p.waitForFinished();
        return r;
    }
    r.code = p.exitCode();
    r.out = QString::fromUtf8(p.readAllStandardOutput());
    r.err = QString::fromUtf8(p.readAllStandardError());
    return r;
}
