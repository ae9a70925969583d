#include "cli/CliSupport.h"
int cmdSearch(const CommandLine&, QTextStream&) { fail(QStringLiteral("not yet")); }
int cmdTitle(const CommandLine&, QTextStream&) { fail(QStringLiteral("not yet")); }
