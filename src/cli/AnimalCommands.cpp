// SPDX-License-Identifier: GPL-3.0-or-later
// `animal PATH NAME`: the record as the program holds it in memory, one field a line.
#include "cli/CliSupport.h"

#include "records/Animal.h"
#include "session/OpenDataFile.h"
#include "session/globals.h"

#include <QFileInfo>

namespace {

QString flagText(bool flag) { return flag ? QStringLiteral("True") : QStringLiteral("False"); }

void printAnimal(const Animal& a, QTextStream& out)
{
    const auto line = [&out](const QString& field, const QString& value) {
        out << field << '\t' << EscapeField(value) << '\n';
    };
    line(QStringLiteral("name"), a.name);
    line(QStringLiteral("storedName"), a.storedName);
    line(QStringLiteral("colour"), a.colour);
    line(QStringLiteral("breed"), a.breed);
    line(QStringLiteral("sex"), a.sex);
    line(QStringLiteral("sexTerm"), a.sexTerm);
    line(QStringLiteral("dob"), a.dob);
    line(QStringLiteral("notes"), a.notes);
    line(QStringLiteral("ps"), a.ps);
    line(QStringLiteral("pd"), a.pd);
    line(QStringLiteral("cage"), a.cage);
    line(QStringLiteral("tag"), a.tag);
    line(QStringLiteral("deceased"), flagText(a.deceased));
    line(QStringLiteral("dateDeceased"), a.dateDeceased);
    line(QStringLiteral("sold"), flagText(a.sold));
    for (int i = 0; i < 12; ++i)
        line(QStringLiteral("customField") + QString::number(i + 1), a.customField[i]);
    line(QStringLiteral("health"), a.health);
    line(QStringLiteral("journal"), a.journal);
    line(QStringLiteral("callName"), a.callName);
    out << "id\t" << FormatField(QVariant(qint64(a.id))) << '\n';
    line(QStringLiteral("age"), a.age);
    line(QStringLiteral("title"), a.title);
    line(QStringLiteral("breeder"), flagText(a.breeder));
    line(QStringLiteral("owner"), flagText(a.owner));
    line(QStringLiteral("leased"), flagText(a.leased));
    line(QStringLiteral("prefix"), a.prefix);
    line(QStringLiteral("suffix"), a.suffix);
    line(QStringLiteral("coi"), a.coi);
    line(QStringLiteral("dateSold"), a.dateSold);
    line(QStringLiteral("fullName"), a.fullName);
    for (int i = 0; i < kPictureSlots; ++i)
        line(QStringLiteral("picture") + QString::number(i), a.picture[i]);
    for (int i = 0; i < kPictureSlots; ++i)
        line(QStringLiteral("pictureLabel") + QString::number(i), a.pictureLabel[i]);
}

} // namespace

void PrintRecord(const QString& requested, QTextStream& out)
{
    Animal animal;
    QString name = requested;
    animal.SetCurrentAnimal(name);
    if (animal.name.isEmpty())
        fail(QStringLiteral("No animal named %1 in the data file").arg(requested));
    printAnimal(animal, out);
    out << "awards\n" << EscapeField(animal.Get_Awards(false)) << '\n';
}

int cmdAnimal(const CommandLine& cl, QTextStream& out)
{
    cl.expect({QStringLiteral("PATH"), QStringLiteral("NAME")});
    const OpenedDataFile file(cl.at(0));
    PrintRecord(cl.at(1), out);
    return kExitOk;
}
