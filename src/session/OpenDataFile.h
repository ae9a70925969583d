// SPDX-License-Identifier: GPL-3.0-or-later
// Opening and closing the data file of the session, and the settings words read through gUser.
#pragma once

#include "store/Database.h"

#include <QString>
#include <functional>

// Steps 1 to 8 of opening: refuses "" and "1", opens, checks, reads settings, loads the recent lists
// and checks the required settings. False on any failure, with no message.
bool OpenDataFile(const QString& path, Database& database);
bool OpenDataFile(const QString& path);
void CloseDatabase();

// The setup wizard, installed by the window program; a batch run has none.
void SetSetupWizardHook(std::function<void(const QStringList& yellowBoxes)> wizard);

// Fills fldCountry from the machine when empty, marks the empty required settings and, when any is
// empty, opens the setup wizard and says so. Returns the names of the boxes marked yellow.
QStringList CheckRequiredSettings();

void ReadUserSettings();
QString TranslateSex(const QString& sex);
QString GetLocaleWord(const QString& key);
QString GetPedigreeLabel(const QString& phone, const QString& studNumber, const QString& email);
QString GetAnimalName(const QVariant& id);
