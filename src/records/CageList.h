// SPDX-License-Identifier: GPL-3.0-or-later
// The cage and tag numbers of the current stock, for the cage window and `tessorin-cli cages`.
#pragma once

#include "records/ReportRows.h"

class Database;

// Columns "ID" (hidden), "Cage", "Name" (without its title), "Tag", "Sex" (in the file's words) and
// "Breed", for the animals of "My Current Stock", by cage (numbers by value) and then name, case-blind.
ReportRows CageRows(Database& database);
