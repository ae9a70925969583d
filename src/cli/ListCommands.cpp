// SPDX-License-Identifier: GPL-3.0-or-later
// search, title and cages: the record lists of the main window as a script reads them.
#include "cli/CliSupport.h"

#include "records/CageList.h"
#include "records/Lists.h"
#include "records/Titles.h"
#include "base/Log.h"
#include "session/OpenDataFile.h"
#include "session/globals.h"

namespace {

void openForList(const QString& path)
{
    if (!OpenDataFile(path))
        fail(QStringLiteral("Cannot open the data file %1").arg(path));
}

} // namespace

int cmdSearch(const CommandLine& cl, QTextStream& out)
{
    cl.expect({QStringLiteral("PATH"), QStringLiteral("VALUE1")});
    if (cl.has(QStringLiteral("value2")) != cl.has(QStringLiteral("field2")))
        usage(QStringLiteral("search needs --field2 and --value2 together"));
    const QString field1 = cl.has(QStringLiteral("field1")) ? cl.value(QStringLiteral("field1")) : QStringLiteral("Status");
    const QString value1 = cl.at(1);
    openForList(cl.at(0));
    Lists::ListSink searchList;
    // A failed search leaves the list empty and is in the error log; the count line still tells, and
    // the exit status says it failed.
    const bool searched = Lists::FillSearchList(searchList, field1, value1, cl.value(QStringLiteral("field2")),
                                                cl.value(QStringLiteral("value2")), cl.flag(QStringLiteral("current")),
                                                cl.flag(QStringLiteral("contains")));
    SearchResults.Close();
    CloseDatabase();
    for (const QString& item : std::as_const(searchList.items))
        out << EscapeField(item) << '\n';
    out << EscapeField(Lists::ResultsCountText(searchList.count(), value1)) << '\n';
    if (!searched)
        fail(QStringLiteral("The search failed; its error is the last line of ") + ErrorLogPath());
    return kExitOk;
}

int cmdTitle(const CommandLine& cl, QTextStream& out)
{
    cl.expect({QStringLiteral("PATH"), QStringLiteral("NAME")});
    openForList(cl.at(0));
    const QString name = cl.at(1);
    const QStringList titles = SplitTitles(gUser.Prefix);
    Lists::LoadTitles(gUser.Prefix);
    CloseDatabase();
    out << EscapeField(MatchTitle(titles, name)) << '\n';
    out << EscapeField(Lists::RemoveTitle(name)) << '\n';
    return kExitOk;
}

int cmdCages(const CommandLine& cl, QTextStream& out)
{
    cl.expect({QStringLiteral("PATH")});
    const OpenedDataFile file(cl.at(0));
    Lists::LoadTitles(gUser.Prefix);
    const ReportRows cages = CageRows(gDatabase);
    for (const QStringList& row : cages.rows) {
        QStringList fields;
        for (const QString& cell : row.mid(1)) // the ID stays hidden, as in the window
            fields << EscapeField(cell);
        out << fields.join(QLatin1Char('\t')) << '\n';
    }
    return kExitOk;
}
