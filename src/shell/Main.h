// SPDX-License-Identifier: GPL-3.0-or-later
// The program's entry steps, kept apart from main() so that a test can run them without an event loop.
#pragma once

#include <QString>
#include <QStringList>

// The lock that keeps a second copy from starting. A copy that crashed leaves its lock file behind; the
// next start finds the process gone and takes the lock over.
QString InstanceLockPath(); // gSettingsFolder + "tessorin.lock"
bool TakeInstanceLock(const QString& lockPath);
void ReleaseInstanceLock();

// The data file given on the command line: the first argument, without the double quotes that a
// Windows shortcut puts around it. "" when there is none.
QString CommandLinePath(const QStringList& arguments);

// The desktop's default application for the data file type, asked of xdg-mime; "" when it has none or
// the tool is missing. Only the extension "cav" has a type of ours.
QString GetAssociation(const QString& extension);

// The warning for a screen too small for the forms, "" for any other size.
QString ScreenResolutionMessage(const QString& resolution);
inline const QString kScreenResolutionTitle = QStringLiteral("Check Screen Resolution");
// Shows the warning for the primary screen's size (the provider of shell/Platform.h).
void CheckScreenResolution();

// Main: false when another copy runs (the caller ends at once, with no message and no window).
// Otherwise the splash is up and the event loop takes over.
bool Main(const QStringList& arguments, const QString& lockPath);
