// SPDX-License-Identifier: GPL-3.0-or-later
// Runs the built tessorin-cli as a user would, on the tests' fixed day.
#pragma once

#include "support/TestEnv.h"

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
// logs are the test's own. Without --today when `today` is false, for the command line's own mistakes.
inline CliResult RunTool(const QStringList& arguments, const QString& home = QString(), bool today = true)
{
    QProcess p;
    if (!home.isEmpty()) {
        QProcessEnvironment e = QProcessEnvironment::systemEnvironment();
        e.insert(QStringLiteral("HOME"), home);
        e.insert(QStringLiteral("XDG_CONFIG_HOME"), home + QStringLiteral("/.config"));
        e.insert(QStringLiteral("XDG_DATA_HOME"), home + QStringLiteral("/.local/share"));
        p.setProcessEnvironment(e);
    }
    const QStringList day = today ? QStringList{QStringLiteral("--today"), QStringLiteral("2026-11-23")} : QStringList();
    p.start(QStringLiteral(TESSORIN_CLI_PATH), day + arguments);
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

// The tool with its home in the test's folder, and the few things every command-line test does.
class CliTest : public ::testing::Test {
protected:
    CliResult run(const QStringList& arguments) { return RunTool(arguments, home()); }
    QString home() const { return env.root() + QStringLiteral("home"); }
    QString path(const QString& name) const { return env.root() + name; }
    CliResult sql(const QString& file, const QString& statement) { return run({QStringLiteral("sql"), file, statement}); }

    // A new file with the statements run on it.
    QString newFile(const QStringList& statements = {}, const QString& name = QStringLiteral("stud.cav"))
    {
        const QString file = path(name);
        const CliResult r = run({QStringLiteral("new"), file});
        EXPECT_EQ(r.code, 0) << r.err.toStdString();
        for (const QString& s : statements) {
            const CliResult done = sql(file, s);
            EXPECT_EQ(done.code, 0) << s.toStdString() << ": " << done.err.toStdString();
        }
        return file;
    }
    // The rows of a SELECT without its header line.
    QStringList rows(const QString& file, const QString& statement)
    {
        const CliResult r = sql(file, statement);
        EXPECT_EQ(r.code, 0) << r.err.toStdString();
        return r.out.split(QLatin1Char('\n'), Qt::SkipEmptyParts).mid(1);
    }
    QString scalar(const QString& file, const QString& statement)
    {
        const QStringList r = rows(file, statement);
        return r.size() == 1 ? r.at(0) : QStringLiteral("<%1 rows>").arg(r.size());
    }
    // One field of the "field<TAB>value" lines that animal, add and edit print.
    static QString value(const QString& out, const QString& field)
    {
        for (const QString& line : out.split(QLatin1Char('\n')))
            if (line.section(QLatin1Char('\t'), 0, 0) == field)
                return line.section(QLatin1Char('\t'), 1);
        return QStringLiteral("<missing>");
    }

    TestEnv env;
};
