// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/Folders.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

QString gDataFolder;
QString gSettingsFolder;
QString gImagesFolder;

namespace {

const QString kProductFolder = QStringLiteral("tessorin/");

// Without a standard location the name starts at the product word, relative to the working folder.
QString userFolder(QStandardPaths::StandardLocation location)
{
    const QString base = QStandardPaths::writableLocation(location);
    return base.isEmpty() ? kProductFolder : base + QLatin1Char('/') + kProductFolder;
}

QString withSlash(const QString& path)
{
    return path.endsWith(QLatin1Char('/')) ? path : path + QLatin1Char('/');
}

} // namespace

void MakeUserFolders()
{
    gDataFolder = userFolder(QStandardPaths::DocumentsLocation);
    // The generic location, so that the folder is tessorin/ whatever name the running program gave
    // QCoreApplication (the tests, tessorin-cli).
    gSettingsFolder = userFolder(QStandardPaths::GenericDataLocation);
    // Parents are made too: on a fresh account ~/.local/share or ~/Documents may not exist yet, and
    // the XDG rules ask a program to make its data location's parents when they are missing.
    QDir().mkpath(gDataFolder);
    QDir().mkpath(gSettingsFolder);
}

QString InstallFolder()
{
    QString programFolder;
    if (QCoreApplication::instance())
        programFolder = QCoreApplication::applicationDirPath();
    if (!programFolder.isEmpty()) {
        const QString installed = QDir::cleanPath(programFolder + QStringLiteral("/../share/tessorin"));
        if (QFileInfo(installed).isDir())
            return withSlash(installed);
    }
#ifdef TESSORIN_SOURCE_DIR
    // Run from the build tree: the pictures and icons are still in the sources.
    const QString resources = QStringLiteral(TESSORIN_SOURCE_DIR "/resources");
    if (QFileInfo(resources).isDir())
        return withSlash(resources);
#endif
    return programFolder.isEmpty() ? QString() : withSlash(programFolder);
}
