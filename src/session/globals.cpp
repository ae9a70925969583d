// SPDX-License-Identifier: GPL-3.0-or-later
#include "session/globals.h"

Database gDatabase;
QString gDatabaseFile;
QString gDatabasePassword;
User gUser;
bool gAutoOpened = false;
bool gFormsLoaded = false;
bool EditMode = false;
