// SPDX-License-Identifier: GPL-3.0-or-later
// The title words of a data file (champion marks and the like, its fldPrefix list).
#pragma once

#include <QString>
#include <QStringList>

// Splits a comma-separated title list and orders it longest first, keeping the order of titles of
// one length, so that "Grand Champion" is tried before "Champion".
QStringList SplitTitles(const QString& prefixList);

// The first title, longest first, that the name starts with followed by one blank (letter case
// ignored), trimmed; "" when none.
QString MatchTitle(const QStringList& titles, const QString& name);
