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

int NaturalCompare(const QString& a, const QString& b)
{
    qsizetype i = 0, j = 0;
    while (i < a.size() && j < b.size()) {
        if (a.at(i).isDigit() && b.at(j).isDigit()) {
            const qsizetype si = i, sj = j;
            while (i < a.size() && a.at(i).isDigit())
                ++i;
            while (j < b.size() && b.at(j).isDigit())
                ++j;
            // Leading zeros aside, the longer number is the larger; of equal length, the first different digit.
            QStringView x = QStringView(a).mid(si, i - si), y = QStringView(b).mid(sj, j - sj);
            while (x.size() > 1 && x.front() == u'0')
                x = x.mid(1);
            while (y.size() > 1 && y.front() == u'0')
                y = y.mid(1);
            if (x.size() != y.size())
                return x.size() < y.size() ? -1 : 1;
            if (const int c = x.compare(y); c != 0)
                return c;
            continue;
        }
        const QChar x = a.at(i).toCaseFolded(), y = b.at(j).toCaseFolded();
        if (x != y)
            return x < y ? -1 : 1;
        ++i;
        ++j;
    }
    return (a.size() - i > 0) - (b.size() - j > 0);
}
