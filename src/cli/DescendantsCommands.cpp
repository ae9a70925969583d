// SPDX-License-Identifier: GPL-3.0-or-later
// tessorin-cli descendants: the nine generations of the descendants page as text.
#include "cli/CliSupport.h"

#include "genetics/Descendants.h"
#include "records/Animal.h"
#include "session/OpenDataFile.h"
#include "session/globals.h"

#include <QFileInfo>

int cmdDescendants(const CommandLine& cl, QTextStream& out)
{
    cl.expect({QStringLiteral("PATH"), QStringLiteral("NAME")});
    Descendants descendants;
    {
        const OpenedDataFile file(cl.at(0));
        // The page starts from the current animal's record: its decoded name and its sex.
        Animal animal;
        QString name = cl.at(1);
        animal.SetCurrentAnimal(name);
        if (animal.storedName.isEmpty())
            fail(QStringLiteral("No animal named \"%1\" in %2").arg(cl.at(1), cl.at(0)));
        descendants.LoadDescendants(animal.name, animal.sex);
    }
    const QStringList titles = descendants.refreshDescendantTitles();
    for (int g = 1; g <= kDescendantGenerations; ++g) {
        out << titles.at(g - 1) << '\n';
        for (const QString& entry : descendants.list(g).entries)
            out << EscapeField(entry) << '\n';
    }
    return kExitOk;
}
