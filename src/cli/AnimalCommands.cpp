#include "cli/CliSupport.h"
int cmdAnimal(const CommandLine&, QTextStream&) { fail(QStringLiteral("not yet")); }
