// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/Clock.h"

namespace {

QDate fixedDay; // invalid while the real clock runs

} // namespace

QDate Today()
{
    return fixedDay.isValid() ? fixedDay : QDate::currentDate();
}

QDateTime Now()
{
    const QDateTime now = QDateTime::currentDateTime();
    if (!fixedDay.isValid())
        return now;
    QDateTime fixed(fixedDay, now.time());
    // The fixed day may have no such local time (a daylight-saving gap); the wall time is what counts.
    if (!fixed.isValid())
        fixed = QDateTime(fixedDay, now.time(), Qt::UTC);
    return fixed;
}

void SetFixedToday(const QDate& day)
{
    fixedDay = day;
}

QDate FixedToday()
{
    return fixedDay;
}
