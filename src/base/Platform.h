// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLocale>
#include <QString>

QString GetPlatformName(); // the distribution's pretty name on Linux
QString GetCountryName();  // the machine locale's country in English ("United States")
QString GetScreenSize();   // "width x height" of the primary screen, empty without one

// PRETTY_NAME of an os-release text, unquoted; "" when it has none.
QString OsReleasePrettyName(const QString& osReleaseText);
// The country of a locale in English; "" for a locale without one (the C locale).
QString CountryNameOf(const QLocale& locale);

// The screen belongs to the GUI library, which this one does not link: the window program installs a
// provider at start-up. Without one GetScreenSize() gives "". nullptr removes it.
using ScreenSizeProvider = QString (*)();
void SetScreenSizeProvider(ScreenSizeProvider provider);
