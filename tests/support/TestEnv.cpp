// SPDX-License-Identifier: GPL-3.0-or-later
#include "TestEnv.h"

#include "base/Clock.h"
#include "base/Folders.h"

#include <QDir>
#include <QFile>

TestEnv::TestEnv()
    : previousData(gDataFolder)
    , previousSettings(gSettingsFolder)
    , previousImages(gImagesFolder)
    , previousFixedDay(FixedToday())
    , previousOrder(RegionalDateOrder())
{
    EXPECT_TRUE(dir.isValid()) << dir.errorString().toStdString();
    QDir(dir.path()).mkpath(QStringLiteral("data"));
    QDir(dir.path()).mkpath(QStringLiteral("settings"));
    gDataFolder = root() + QStringLiteral("data/");
    gSettingsFolder = root() + QStringLiteral("settings/");

    auto ui = std::make_unique<ScriptedUi>();
    scripted = ui.get();
    previousUi = Ui::replace(std::move(ui));

    SetFixedToday(kToday);
    SetRegionalDateOrder(DateOrder::DayFirst);
}

TestEnv::~TestEnv()
{
    Ui::replace(std::move(previousUi));
    SetFixedToday(previousFixedDay);
    SetRegionalDateOrder(previousOrder);
    gDataFolder = previousData;
    gSettingsFolder = previousSettings;
    gImagesFolder = previousImages;
}

QString TestEnv::root() const
{
    return dir.path() + QLatin1Char('/');
}

QString TestEnv::dataFolder() const
{
    return root() + QStringLiteral("data/");
}

QString TestEnv::settingsFolder() const
{
    return root() + QStringLiteral("settings/");
}

QString TestEnv::readText(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

bool TestEnv::writeText(const QString& path, const QString& text)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return false;
    return file.write(text.toUtf8()) >= 0;
}

QString TestEnv::sourceDir()
{
#ifdef TESSORIN_SOURCE_DIR
    return QStringLiteral(TESSORIN_SOURCE_DIR "/");
#else
    return QString();
#endif
}
