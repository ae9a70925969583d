// SPDX-License-Identifier: GPL-3.0-or-later
#include "records/ReportRows.h"

int ReportRows::columnOf(const QString& caption) const
{
    for (int i = 0; i < columns.size(); ++i) {
        if (columns.at(i).caption == caption)
            return i;
    }
    return -1;
}

QString DoneFlag(const QVariant& value, const QString& no)
{
    return value.toString().compare(QLatin1String("y"), Qt::CaseInsensitive) == 0 ? QStringLiteral("/") : no;
}
