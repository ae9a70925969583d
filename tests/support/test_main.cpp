// SPDX-License-Identifier: GPL-3.0-or-later
// The main of every test program: a core application (a widget one for the window tests), and a home of its own so that no test can reach
// the user's real folders or settings.
#include <QByteArray>
#include <QCoreApplication>
#ifdef TESSORIN_TEST_GUI
#include <QApplication>
#endif
#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <cstdio>
#include <gtest/gtest.h>

int main(int argc, char** argv)
{
    ::testing::InitGoogleTest(&argc, argv);

    QTemporaryDir home(QDir::tempPath() + QStringLiteral("/tessorin-test-home-XXXXXX"));
    if (!home.isValid()) {
        fprintf(stderr, "cannot make a temporary home: %s\n", qPrintable(home.errorString()));
        return 1;
    }
    const QByteArray h = QFile::encodeName(home.path());
    qputenv("HOME", h);
    qputenv("XDG_CONFIG_HOME", h + "/.config");
    qputenv("XDG_DATA_HOME", h + "/.local/share");
    qputenv("XDG_CACHE_HOME", h + "/.cache");
    qputenv("XDG_STATE_HOME", h + "/.local/state");
    qputenv("XDG_DOCUMENTS_DIR", h + "/Documents");
    QDir(home.path()).mkpath(QStringLiteral("Documents"));

#ifdef TESSORIN_TEST_GUI
    // Window tests run on the offscreen platform unless told otherwise.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
#else
    QCoreApplication app(argc, argv);
#endif
    QCoreApplication::setOrganizationName(QString());
    QCoreApplication::setApplicationName(QStringLiteral("tessorin"));
    QStandardPaths::setTestModeEnabled(true);

    return RUN_ALL_TESTS();
}
