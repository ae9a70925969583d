// SPDX-License-Identifier: GPL-3.0-or-later
#include "records/Titles.h"

QStringList SplitTitles(const QString& prefixList)
{
    QString list = prefixList;
    if (!list.endsWith(QLatin1Char(',')))
        list += QLatin1Char(',');
    QStringList titles = list.split(QLatin1Char(','));
    // Neighbour swaps until a pass swaps nothing: titles of equal length keep their order.
    for (bool swapped = true; swapped;) {
        swapped = false;
        for (qsizetype i = 0; i + 1 < titles.size(); ++i) {
            if (titles[i].size() < titles[i + 1].size()) {
                titles.swapItemsAt(i, i + 1);
                swapped = true;
            }
        }
    }
    return titles;
}

QString MatchTitle(const QStringList& titles, const QString& name)
{
    const QString lowered = name.toLower();
    for (const QString& t : titles) {
        if (!t.isEmpty() && lowered.startsWith(t.toLower() + QLatin1Char(' ')))
            return t.trimmed();
    }
    return {};
}
