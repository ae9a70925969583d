// SPDX-License-Identifier: GPL-3.0-or-later
// The program-wide state. Routines that can take what they need as an argument do so; these are for
// the forms and for the steps that run on "the open file".
#pragma once

#include "base/Folders.h"
#include "store/Database.h"
#include "store/User.h"

extern Database gDatabase;       // the one open data file
extern QString gDatabaseFile;    // its path
extern QString gDatabasePassword;
extern User gUser;               // its settings row
extern bool gAutoOpened;         // opened from the command line or as the default data file
extern bool gFormsLoaded;        // true while the main window is up
extern bool EditMode;            // true while a record form works on an existing row
