// SPDX-License-Identifier: GPL-3.0-or-later
// The program's start: one copy only, the screen warning, the command line, the file type's query and
// the splash.
#include "support/TestEnv.h"
#include "base/Folders.h"
#include "base/Platform.h"
#include "shell/Main.h"
#include "shell/frmSplash.h"
#include "store/DataFile.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QLabel>
#include <QLockFile>
#include <QSet>
#include <gtest/gtest.h>

namespace {

class StartupTest : public EnvTest {
protected:
    ~StartupTest() override
    {
        ReleaseInstanceLock();
        SetScreenSizeProvider(nullptr);
    }
    QString lockPath() const { return env.settingsFolder() + QStringLiteral("tessorin.lock"); }
};

QList<QWidget*> splashes()
{
    QList<QWidget*> found;
    for (QWidget* w : QApplication::topLevelWidgets()) {
        if (w->objectName() == QLatin1String("frmSplash"))
            found << w;
    }
    return found;
}

} // namespace

TEST_F(StartupTest, ASecondStartEndsSilentlyWithNoWindow)
{
    ASSERT_TRUE(TakeInstanceLock(lockPath()));
    const qsizetype windowsBefore = QApplication::topLevelWidgets().size();

    EXPECT_FALSE(Main({QStringLiteral("tessorin"), QStringLiteral("/somewhere/Rabbits.cav")}, lockPath()));
    EXPECT_FALSE(TakeInstanceLock(lockPath()));

    EXPECT_TRUE(env.ui().calls().isEmpty());
    EXPECT_EQ(QApplication::topLevelWidgets().size(), windowsBefore);
    EXPECT_TRUE(splashes().isEmpty());

    // Once the first copy has ended, the next start gets the lock.
    ReleaseInstanceLock();
    EXPECT_FALSE(QFileInfo::exists(lockPath()));
    EXPECT_TRUE(TakeInstanceLock(lockPath()));
}

TEST_F(StartupTest, ALockLeftByACrashedCopyIsTakenOver)
{
    // A lock file as a copy writes it, but naming a process that is gone.
    QString content;
    {
        QLockFile probe(lockPath());
        ASSERT_TRUE(probe.tryLock(0));
        QFile file(lockPath());
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        content = QString::fromUtf8(file.readAll());
        probe.unlock();
    }
    qint64 deadPid = 4194000;
    while (QFileInfo::exists(QStringLiteral("/proc/") + QString::number(deadPid)))
        --deadPid;
    QStringList lines = content.split(QLatin1Char('\n'));
    ASSERT_GE(lines.size(), 2);
    lines[0] = QString::number(deadPid);
    ASSERT_TRUE(TestEnv::writeText(lockPath(), lines.join(QLatin1Char('\n'))));

    EXPECT_TRUE(TakeInstanceLock(lockPath()));
    EXPECT_TRUE(env.ui().calls().isEmpty());
}

TEST_F(StartupTest, TheCommandLinePathLosesItsQuotes)
{
    EXPECT_EQ(CommandLinePath({QStringLiteral("tessorin")}), QString());
    EXPECT_EQ(CommandLinePath({QStringLiteral("tessorin"), QStringLiteral("/home/ann/My Rabbits.cav")}),
              QStringLiteral("/home/ann/My Rabbits.cav"));
    EXPECT_EQ(CommandLinePath({QStringLiteral("tessorin"), QStringLiteral("\"/home/ann/My Rabbits.cav\"")}),
              QStringLiteral("/home/ann/My Rabbits.cav"));
    // A lone quote is a name, not a pair of quotes.
    EXPECT_EQ(CommandLinePath({QStringLiteral("tessorin"), QStringLiteral("\"")}), QStringLiteral("\""));
}

TEST_F(StartupTest, OnlyTheTwoSmallScreensAreWarnedOf)
{
    for (const ScreenSizeProvider size :
         {+[] { return QStringLiteral("1024 x 600"); }, +[] { return QStringLiteral("1024 x 768"); },
          +[] { return QStringLiteral("800 x 480"); }, +[] { return QString(); }}) {
        SetScreenSizeProvider(size);
        CheckScreenResolution();
    }
    EXPECT_TRUE(env.ui().calls().isEmpty());

    SetScreenSizeProvider([] { return QStringLiteral("800 x 600"); });
    CheckScreenResolution();
    SetScreenSizeProvider([] { return QStringLiteral("640 x 480"); });
    CheckScreenResolution();

    const auto& calls = env.ui().calls();
    ASSERT_EQ(calls.size(), 2);
    EXPECT_EQ(calls[0].title, QStringLiteral("Check Screen Resolution"));
    EXPECT_EQ(calls[0].icon, Ui::Icon::Exclamation);
    EXPECT_EQ(calls[0].buttons, Ui::Buttons::Ok);
    EXPECT_EQ(calls[0].text,
              QStringLiteral("This program requires a minimum screen resolution of 1024 x 768\n"
                             "Some parts of the forms will not be visible and printouts won't display all "
                             "details at 800 x 600 resolution."));
    EXPECT_TRUE(calls[1].text.endsWith(QStringLiteral(" at 640 x 480 resolution.")));
}

TEST_F(StartupTest, TheAssociationIsAskedOfXdgMime)
{
    const QByteArray oldPath = qgetenv("PATH");
    const QString bin = env.root() + QStringLiteral("bin/");
    QDir().mkpath(bin);
    const QString tool = bin + QStringLiteral("xdg-mime");
    ASSERT_TRUE(TestEnv::writeText(tool, QStringLiteral("#!/bin/sh\n"
                                                        "[ \"$*\" = \"query default application/x-tessorin-data\" ] "
                                                        "&& echo tessorin.desktop\n")));
    QFile::setPermissions(tool, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);

    qputenv("PATH", QFile::encodeName(bin) + ":/usr/bin:/bin");
    EXPECT_EQ(GetAssociation(QStringLiteral("cav")), QStringLiteral("tessorin.desktop"));
    EXPECT_EQ(GetAssociation(QStringLiteral("txt")), QString());

    // Without the tool the answer is empty, and nothing is shown.
    QFile::remove(tool);
    qputenv("PATH", QFile::encodeName(bin));
    EXPECT_EQ(GetAssociation(QStringLiteral("cav")), QString());
    qputenv("PATH", oldPath);
    EXPECT_TRUE(env.ui().calls().isEmpty());
}

TEST_F(StartupTest, TheSplashShowsOneOfTheUsersPicturesAndTheVersion)
{
    const QString pics = env.root() + QStringLiteral("pics/");
    EXPECT_EQ(frmSplash::PickSplashPicture(pics), QString()); // no folder at all
    QDir().mkpath(pics);
    TestEnv::writeText(pics + QStringLiteral("notes.txt"), QStringLiteral("x"));
    EXPECT_EQ(frmSplash::PickSplashPicture(pics), QString());

    QImage image(40, 30, QImage::Format_RGB32);
    image.fill(Qt::darkGreen);
    ASSERT_TRUE(image.save(pics + QStringLiteral("Flopsy(1).jpg"), "JPG"));
    ASSERT_TRUE(image.save(pics + QStringLiteral("BUCK.JPG"), "JPG"));
    ASSERT_TRUE(image.save(pics + QStringLiteral("doe.png"), "PNG"));
    QSet<QString> picked;
    for (int i = 0; i < 60; ++i)
        picked << QFileInfo(frmSplash::PickSplashPicture(pics)).fileName();
    EXPECT_EQ(picked, (QSet<QString>{QStringLiteral("Flopsy(1).jpg"), QStringLiteral("BUCK.JPG")}));

    // The splash itself takes its picture from "my pics" of the data folder it makes.
    frmSplash splash{QString()};
    const QString myPics = gDataFolder + QStringLiteral("my pics/");
    EXPECT_TRUE(QFileInfo(gSettingsFolder).isDir());
    auto* lblVersion = splash.findChild<QLabel*>(QStringLiteral("lblVersion"));
    ASSERT_NE(lblVersion, nullptr);
    EXPECT_EQ(lblVersion->text(), QStringLiteral("v ") + ProgramVersionText());
    auto* imgSplash = splash.findChild<QLabel*>(QStringLiteral("imgSplash"));
    ASSERT_NE(imgSplash, nullptr);
    EXPECT_FALSE(imgSplash->pixmap().isNull()); // the built-in picture
    EXPECT_EQ(splash.picturePath(), QString());

    QDir().mkpath(myPics);
    ASSERT_TRUE(image.save(myPics + QStringLiteral("Clover.jpg"), "JPG"));
    frmSplash withPicture{QString()};
    EXPECT_EQ(withPicture.picturePath(), myPics + QStringLiteral("Clover.jpg"));
    QFile::remove(myPics + QStringLiteral("Clover.jpg"));
}
