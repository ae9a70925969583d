// SPDX-License-Identifier: GPL-3.0-or-later
// The program's own settings, outside any data file: ~/.config/tessorin/tessorin.conf. A section
// groups keys as the program's registry key did ("Options", ...); an empty section is the top level.
// "Default Database" of an earlier version, kept at the top level, moves into "Options" when first used there.
#pragma once

#include <QString>

QString GetSetting(const QString& section, const QString& key, const QString& defaultValue = QString());
void SaveSetting(const QString& section, const QString& key, const QString& value);
void DeleteSetting(const QString& section, const QString& key);
