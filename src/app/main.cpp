// SPDX-License-Identifier: GPL-3.0-or-later
// The window program: tessorin [PATH]. A double click on a data file starts it with the file's path.
#include "base/Folders.h"
#include "session/OpenDataFile.h"
#include "base/Platform.h"
#include "base/Ui.h"
#include "shell/Main.h"
#include "shell/QtUi.h"
#include "shell/Shell.h"

#include <QApplication>
#include <QGuiApplication>
#include <QIcon>
#include <QScreen>
#include <memory>

namespace {

QString primaryScreenSize()
{
    const QScreen* screen = QGuiApplication::primaryScreen();
    if (!screen)
        return QString();
    const QSize size = screen->size();
    return QString::number(size.width()) + QStringLiteral(" x ") + QString::number(size.height());
}

} // namespace

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("tessorin"));
    QGuiApplication::setDesktopFileName(QStringLiteral("tessorin"));

    // The lock lives in the settings folder, so the folders are made before anything else.
    MakeUserFolders();
    QApplication::setWindowIcon(QIcon(InstallFolder() + QStringLiteral("icons/tessorin.svg")));
    Ui::install(std::make_unique<QtUi>());
    SetScreenSizeProvider(&primaryScreenSize);
    SetSetupWizardHook([](const QStringList& yellowBoxes) { ShowSetupWizard(yellowBoxes); });

    if (!Main(QApplication::arguments(), InstanceLockPath()))
        return 0;
    const int result = QApplication::exec();
    ReleaseInstanceLock();
    return result;
}
