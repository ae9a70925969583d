// SPDX-License-Identifier: GPL-3.0-or-later
// Brings a data file of any older shape up to the present format, and stamps it.
#pragma once

#include "store/Database.h"

#include <QString>

// One transaction: false when a step failed (each failure is in the error log) and the rest was kept;
// throws JetError when the file cannot be changed at all (read-only, locked, full disk), and then
// nothing of the check is kept.
bool CheckDatabase(Database& database, bool force, bool showMessage);
void AllowZeroLength(Database& database, const QString& table);
void ChangeColumnType(Database& database, const QString& tableName, const QString& column, int type);
void SwapColumns(Database& database, const QString& tableName, const QString& first, const QString& second, int type);
bool NeedsStatusUpgrade(Database& database, bool force);
void MoveJournalEntries(Database& database);
// which = "all" drops every custom field column of tree and cavyuser; otherwise the one column `first`
// of tree and `second` of cavyuser. Then a forced check makes them again, empty.
void ResetCustomFields(Database& database, const QString& which, const QString& first = QString(),
                       const QString& second = QString());
