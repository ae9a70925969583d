// SPDX-License-Identifier: GPL-3.0-or-later
// The case-blind text order of our data files, for every letter and not for A-Z only.
#pragma once

#include <QStringView>

struct sqlite3;

namespace jet {

// PRAGMA user_version of a file whose indexes are sorted in this order.
inline constexpr int kSortOrderMark = 2;

// Texts are equal when they are equal after Unicode case folding. They sort by the folded text with
// its accents taken off (so "Åsa" stands among the A's), and texts that differ only by accents then
// by the folded text, which keeps the order total and consistent with equality. ASCII texts compare
// exactly as SQLite's own NOCASE compares them.
int compareNoCase(QStringView a, QStringView b);
int compareNoCaseUtf8(const char* a, int aLength, const char* b, int bLength);
// The text as the order sees it for equality: two texts are equal exactly when these are. For tables
// held in memory that must answer as "WHERE name = ..." does.
QString foldCase(QStringView text);

// Registers that order under the name NOCASE, in place of SQLite's ASCII-only one, so that the
// declared COLLATE NOCASE of every text column, its indexes, =, ORDER BY and DISTINCT follow it
// without any change to the file; other SQLite tools still read the file with their own NOCASE.
void registerCollation(sqlite3* db);

} // namespace jet
