// SPDX-License-Identifier: GPL-3.0-or-later
// tessorin-cli: the batch and scripting tool. It opens, checks, queries and generates data files with
// the same store and rules as the window program, and prints plain tab-separated text.
#include "cli/Commands.h"
#include "base/Folders.h"

#include <QCoreApplication>
#include <cstdio>

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("tessorin"));
    // The same per-user folders as the program, so that the integrity check logs where it always does.
    MakeUserFolders();
    QTextStream out(stdout);
    QTextStream err(stderr);
    QStringList arguments = QCoreApplication::arguments();
    arguments.removeFirst();
    const int code = RunCli(arguments, out, err);
    out.flush();
    err.flush();
    return code;
}
