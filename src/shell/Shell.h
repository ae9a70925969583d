// SPDX-License-Identifier: GPL-3.0-or-later
// The hand-overs between the shell's windows: each form is shown through one of these, so that a form
// never needs another form's class, and a test can drive the whole start-up.
#pragma once

#include <QString>
#include <QStringList>

// Shows the main window frmTree afresh (an existing one is closed first, so its pages reload).
void ShowMainWindow();
// Shows the chooser frmOpenFile in front of the main window; it decides what opens (command line,
// default data file, or the user's pick).
void ShowChooser(const QString& commandLinePath = QString());
// Shows the setup wizard frmNewUser with the given boxes marked yellow.
void ShowSetupWizard(const QStringList& yellowBoxes = QStringList());
// The "new data file" command of the chooser and the main menu.
void CreateNewDatabase();
