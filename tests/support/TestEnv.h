// SPDX-License-Identifier: GPL-3.0-or-later
// What every test stands on: its own folders in a temporary directory, a scripted dialog service, a
// fixed day (23 November 2026) and the day-first date order. All is put back when it goes.
#pragma once

#include "ScriptedUi.h"
#include "base/Dates.h"

#include <QDate>
#include <QString>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <memory>
#include <ostream>

class TestEnv {
public:
    static inline const QDate kToday = QDate(2026, 11, 23);

    TestEnv();
    ~TestEnv();
    TestEnv(const TestEnv&) = delete;
    TestEnv& operator=(const TestEnv&) = delete;

    ScriptedUi& ui() { return *scripted; }
    QString root() const;           // the temporary directory, with a trailing slash
    QString dataFolder() const;     // gDataFolder as set for the test
    QString settingsFolder() const; // gSettingsFolder as set for the test

    // A file's whole text, "" when it cannot be read.
    static QString readText(const QString& path);
    static bool writeText(const QString& path, const QString& text);
    // The source tree's root, for the sample files under tests/data.
    static QString sourceDir();

private:
    QTemporaryDir dir;
    ScriptedUi* scripted = nullptr; // owned by the installed service
    std::unique_ptr<Ui::Service> previousUi;
    QString previousData;
    QString previousSettings;
    QString previousImages;
    QDate previousFixedDay;
    DateOrder previousOrder = DateOrder::DayFirst;
};

// A fixture for tests that need nothing more than the environment.
class EnvTest : public ::testing::Test {
protected:
    TestEnv env;
};

// Lets GoogleTest print texts in its failure messages.
inline void PrintTo(const QString& text, std::ostream* os)
{
    *os << '"' << text.toStdString() << '"';
}
