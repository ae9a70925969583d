// SPDX-License-Identifier: GPL-3.0-or-later
#include "records/CageList.h"

#include "records/Lists.h"
#include "store/DataFile.h"
#include "store/Database.h"

#include <algorithm>

ReportRows CageRows(Database& database)
{
    ReportRows out;
    out.addColumn(QStringLiteral("ID"), 0);
    const int cage = out.addColumn(QStringLiteral("Cage"), 90);
    const int nameColumn = out.addColumn(QStringLiteral("Name"), 220);
    out.addColumn(QStringLiteral("Tag"), 100);
    out.addColumn(QStringLiteral("Sex"), 80);
    out.addColumn(QStringLiteral("Breed"), 160);
    Recordset rs = database.OpenRecordset(Lists::SearchStatement(QStringLiteral("Status"),
                                                                 QStringLiteral("My Current Stock"), QString(),
                                                                 QString(), false, false));
    const auto text = [&rs](const char* field) { return DecodeText(rs.Fields(QLatin1String(field)).toString()); };
    for (; !rs.Eof(); rs.MoveNext()) {
        const QString name = text("name");
        if (name == QLatin1String("Unknown")) // the stand-in parent, as in the search list
            continue;
        out.rows.append({rs.Fields(QStringLiteral("id")).toString(), text("cage"), Lists::RemoveTitle(name),
                         text("tag"), Lists::SexWordOf(rs.Fields(QStringLiteral("sex")).toString()), text("breed")});
    }
    // "Hutch A3" before "Hutch A10", as a breeder walks the shed.
    std::stable_sort(out.rows.begin(), out.rows.end(), [&](const QStringList& a, const QStringList& b) {
        const int byCage = NaturalCompare(a.at(cage), b.at(cage));
        return byCage != 0 ? byCage < 0 : QString::compare(a.at(nameColumn), b.at(nameColumn), Qt::CaseInsensitive) < 0;
    });
    return out;
}
