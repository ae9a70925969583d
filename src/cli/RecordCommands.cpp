// SPDX-License-Identifier: GPL-3.0-or-later
// `add` and `edit`: a record made or changed with the add form's checks and its save, for scripts and
// for the tests of what a save leaves in the tables.
#include "cli/CliSupport.h"

#include "records/Animal.h"
#include "records/RecordForm.h"
#include "session/globals.h"


namespace {

const QStringList kFlagColumns = {QStringLiteral("owner"), QStringLiteral("breeder"), QStringLiteral("leased"),
                                  QStringLiteral("sold"), QStringLiteral("deceased")};

bool flagValue(const QString& option, const QString& text)
{
    const QString t = text.trimmed().toLower();
    if (QStringList{QStringLiteral("yes"), QStringLiteral("true"), QStringLiteral("-1"), QStringLiteral("1")}.contains(t))
        return true;
    if (QStringList{QStringLiteral("no"), QStringLiteral("false"), QStringLiteral("0")}.contains(t))
        return false;
    usage(QStringLiteral("--%1 takes yes or no, not \"%2\"").arg(option, text));
}

// The text the sex box would hold: the file's own word for "male" and "female".
QString sexBoxText(const QString& value)
{
    if (value.compare(QLatin1String("male"), Qt::CaseInsensitive) == 0)
        return gUser.Male;
    if (value.compare(QLatin1String("female"), Qt::CaseInsensitive) == 0)
        return gUser.Female;
    return value;
}

// Copies the options given onto the record, as the form's boxes would hold them.
void applyOptions(const CommandLine& cl, Animal& a, QString& sexText)
{
    const auto text = [&](const char* option, QString& field) {
        if (cl.has(QLatin1String(option)))
            field = cl.value(QLatin1String(option));
    };
    text("sex", sexText);
    text("sire", a.ps);
    text("dam", a.pd);
    text("breed", a.breed);
    text("colour", a.colour);
    text("cage", a.cage);
    text("tag", a.tag);
    text("dob", a.dob);
    text("callname", a.callName);
    text("prefix", a.prefix);
    text("suffix", a.suffix);
    text("datesold", a.dateSold);
    text("datedeceased", a.dateDeceased);
    for (int i = 0; i < 12; ++i)
        text(QByteArray("customfield" + QByteArray::number(i + 1)).constData(), a.customField[i]);
    bool* flags[] = {&a.owner, &a.breeder, &a.leased, &a.sold, &a.deceased};
    for (int i = 0; i < kFlagColumns.size(); ++i)
        if (cl.has(kFlagColumns[i]))
            *flags[i] = flagValue(kFlagColumns[i], cl.value(kFlagColumns[i]));
}

// Checks and saves as frmAdd's SaveRecord does: its messages on stderr and nothing written when refused.
int saveRecord(const CommandLine& cl, QTextStream& out, Animal record, bool isEdit, const QString& oldName,
               QString sexText)
{
    applyOptions(cl, record, sexText);
    RecordForm::SaveEntry entry;
    entry.addMode = !isEdit;
    entry.name = record.name;
    entry.dob = record.dob;
    entry.sold = record.sold;
    entry.dateSold = record.dateSold;
    entry.deceased = record.deceased;
    entry.dateDeceased = record.dateDeceased;
    entry.sex = sexBoxText(sexText);
    const QString messages = RecordForm::SaveMessages(entry);
    if (!messages.isEmpty())
        fail(messages);
    record.dob = entry.dob;
    record.dateSold = entry.sold ? entry.dateSold : record.dateSold;
    record.dateDeceased = entry.deceased ? entry.dateDeceased : record.dateDeceased;
    if (record.sold)
        record.owner = cl.has(QStringLiteral("owner")) && record.owner; // ticking sold clears "owner"
    record.sex = RecordForm::StoredSex(entry.sex);
    if (!RecordForm::SaveAnimalRecord(record, isEdit, oldName))
        fail(QStringLiteral("The record of %1 was not saved").arg(record.name));
    PrintRecord(record.name, out);
    return kExitOk;
}

} // namespace

QStringList RecordOptions()
{
    QStringList options = {QStringLiteral("name"),     QStringLiteral("sex"),          QStringLiteral("sire"),
                           QStringLiteral("dam"),      QStringLiteral("breed"),        QStringLiteral("colour"),
                           QStringLiteral("cage"),     QStringLiteral("tag"),          QStringLiteral("dob"),
                           QStringLiteral("callname"), QStringLiteral("prefix"),       QStringLiteral("suffix"),
                           QStringLiteral("datesold"), QStringLiteral("datedeceased")};
    options << kFlagColumns;
    for (int i = 1; i <= 12; ++i)
        options << QStringLiteral("customfield") + QString::number(i);
    return options;
}

int cmdAdd(const CommandLine& cl, QTextStream& out)
{
    cl.expect({QStringLiteral("PATH")});
    if (!cl.has(QStringLiteral("name")))
        usage(QStringLiteral("add needs --name"));
    const OpenedDataFile file(cl.at(0));
    Animal record;
    record.name = cl.value(QStringLiteral("name"));
    return saveRecord(cl, out, record, false, QString(), QString());
}

int cmdEdit(const CommandLine& cl, QTextStream& out)
{
    cl.expect({QStringLiteral("PATH"), QStringLiteral("NAME")});
    if (cl.has(QStringLiteral("name")))
        usage(QStringLiteral("edit takes --rename NEW for a new name"));
    if (cl.has(QStringLiteral("rename")) && cl.has(QStringLiteral("similar")))
        usage(QStringLiteral("edit takes --rename or --similar, not both"));
    const OpenedDataFile file(cl.at(0));
    Animal record;
    QString name = cl.at(1);
    record.SetCurrentAnimal(name);
    if (record.name.isEmpty())
        fail(QStringLiteral("No animal named %1 in the data file").arg(cl.at(1)));
    const QString oldName = record.name;
    // The form holds the dates as they are shown; the unknown date goes back as typed.
    for (QString* date : {&record.dob, &record.dateSold, &record.dateDeceased})
        if (*date == QLatin1String("Unknown"))
            date->clear();
    if (cl.has(QStringLiteral("similar"))) {
        record.name = cl.value(QStringLiteral("similar"));
        record.id = 0;
        return saveRecord(cl, out, record, false, oldName, record.sexTerm);
    }
    if (cl.has(QStringLiteral("rename")))
        record.name = cl.value(QStringLiteral("rename"));
    return saveRecord(cl, out, record, true, oldName, record.sexTerm);
}
