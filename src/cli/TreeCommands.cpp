// SPDX-License-Identifier: GPL-3.0-or-later
// tessorin-cli tree: the ancestor array as the pedigree pages read it.
#include "cli/CliSupport.h"
#include "cli/Commands.h"
#include "genetics/FamilyTree.h"
#include "session/OpenDataFile.h"
#include "session/globals.h"

int cmdTree(const CommandLine& cl, QTextStream& out)
{
    cl.expect({QStringLiteral("PATH"), QStringLiteral("NAME")});
    const qint16 limit = qint16(cl.number(QStringLiteral("limit"), 62, 2, 32766));
    gDatabase = openExisting(cl.at(0));
    QStringList tree;
    FillFamilyTree(cl.at(1), tree, limit);
    CloseDatabase();
    for (int i = 0; i <= limit; ++i)
        out << i << '\t' << EscapeField(tree.value(i)) << '\n';
    return kExitOk;
}
