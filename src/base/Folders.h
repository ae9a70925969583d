// SPDX-License-Identifier: GPL-3.0-or-later
// The per-user folders, with a trailing slash.
#pragma once

#include <QString>

extern QString gDataFolder;     // documents folder + "tessorin/": data files, backups, temp/, my pics/
extern QString gSettingsFolder; // application data folder: Save.txt, Errors.txt, recent lists
extern QString gImagesFolder;   // the install folder's images/

// Works out and makes gDataFolder and gSettingsFolder from the platform's standard locations.
void MakeUserFolders();
// The installed data folder (images, icons, tips), found relative to the executable, with the source
// tree's resources/ as fallback.
QString InstallFolder();
