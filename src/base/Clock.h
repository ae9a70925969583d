// SPDX-License-Identifier: GPL-3.0-or-later
// The one clock of the program, so that tests and `tessorin-cli --today` can fix the day.
#pragma once

#include <QDate>
#include <QDateTime>

QDate Today();
QDateTime Now();
void SetFixedToday(const QDate& day); // an invalid date returns to the real clock
QDate FixedToday();                   // the fixed day, invalid while the real clock runs
