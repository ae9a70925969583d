// SPDX-License-Identifier: GPL-3.0-or-later
#include "session/OpenDataFile.h"

#include "base/Dates.h"
#include "base/Folders.h"
#include "base/Log.h"
#include "base/Platform.h"
#include "session/RecentList.h"
#include "base/Ui.h"
#include "session/globals.h"
#include "store/DataFile.h"
#include "store/IntegrityCheck.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace {
std::function<void(const QStringList&)> gSetupWizard;

void readUserSettingsFrom(Database& database)
{
    gUser = User();
    gImagesFolder = InstallFolder() + QStringLiteral("images/");
    gUser.read(database);
    // The window reads and shows dates as the store does for this file.
    SetRegionalDateOrder(database.dateOrder());
}
} // namespace

void SetSetupWizardHook(std::function<void(const QStringList&)> wizard) { gSetupWizard = std::move(wizard); }

namespace {

// Another program's SQLite file becomes a data file only when the user says so: the tables Tessorin
// adds may stop the other program from reading it.
bool askToAdopt(const QString& path)
{
    const QString name = QFileInfo(path).fileName();
    const Ui::Answer answer = Ui::message(
        name + QStringLiteral(" is a SQLite database of another program, not a Tessorin data file.\n"
                              "Tessorin can turn it into a data file: it adds its own tables and settings to the "
                              "file, and the other program may then no longer read it.\n\n"
                              "Turn ") +
            name + QStringLiteral(" into a Tessorin data file?"),
        Ui::Buttons::YesNo, Ui::Icon::Question, QStringLiteral("Not a Tessorin Data File"));
    if (answer != Ui::Answer::Yes)
        return false;
    AdoptForeignDataFile(path);
    return true;
}

bool hasTables(Database& database)
{
    return database.hasTable(QStringLiteral("tree")) && database.hasTable(QStringLiteral("cavyuser"));
}

} // namespace

bool OpenDataFile(const QString& path, Database& database)
{
    if (path.isEmpty() || path == QLatin1String("1"))
        return false;
    bool opened = false;
    try {
        if (IsAdoptableForeignFile(path) && !askToAdopt(path))
            return false;
        database = OpenWithPassword(path);
        opened = true;
        gDatabasePassword = kDatabasePassword;
        gDatabaseFile = path;
        if (database.isReadOnly()) {
            // Nothing may be written: no check, no upgrade, no wizard; the user is told once why.
            const QString why = QStringLiteral("The data file ") + QFileInfo(path).fileName() +
                                QStringLiteral(" can only be read: ") + WhyReadOnly(path) + QStringLiteral(".\n");
            const bool current = GetVersionText(database) == ProgramVersionText();
            if (!current && !hasTables(database)) {
                Ui::message(why + QStringLiteral("It has not been set up yet, which needs writing, so it cannot be "
                                                 "opened."),
                            Ui::Buttons::Ok, Ui::Icon::Exclamation, QStringLiteral("Read-Only Data File"));
                database.Close();
                return false;
            }
            QString text = why + QStringLiteral("You can look at its records, but nothing you change can be saved. "
                                                "To work in it, copy it into your Documents folder or ask for write "
                                                "access.");
            if (!current)
                text += QStringLiteral("\nIt was saved by another version of Tessorin and will be brought up to "
                                       "date the first time it is opened with write access; until then some "
                                       "pages may show less.");
            Ui::message(text, Ui::Buttons::Ok, Ui::Icon::Information, QStringLiteral("Read-Only Data File"));
        } else {
            // Before anything is written: a trigger stored in the file would run with the first write.
            const QStringList dropped = DropForeignTriggersAndViews(database);
            if (!dropped.isEmpty()) {
                LogError(QStringLiteral("Removed from ") + path + QStringLiteral(": ") +
                         dropped.join(QStringLiteral(", ")));
                Ui::message(QStringLiteral("The data file ") + QFileInfo(path).fileName() +
                                QStringLiteral(" held program code that Tessorin did not put there (") +
                                dropped.join(QStringLiteral(", ")) +
                                QStringLiteral("). It could change or delete records behind your back, so it "
                                               "has been removed. Your records are untouched."),
                            Ui::Buttons::Ok, Ui::Icon::Exclamation, QStringLiteral("Data File Cleaned"));
            }
            CheckDatabase(database, false, false);
        }
        readUserSettingsFrom(database);
        LoadRecentFile();
        ShowRecentList();
        if (database.isReadOnly()) {
            if (gUser.Country.isEmpty())
                gUser.Country = GetCountryName();
        } else {
            CheckRequiredSettings();
        }
        return true;
    } catch (const JetError& e) {
        // The caller says what it wants; the log keeps the reason for whoever looks.
        LogError(QStringLiteral("Open data file error ") + QString::number(e.number()) + QStringLiteral(" - ") +
                 e.description());
        if (e.number() == 3049)
            Ui::message(QStringLiteral("The data file ") + QFileInfo(path).fileName() +
                            QStringLiteral(" is damaged and has not been opened, so that nothing more of it is "
                                           "lost. Restore it from a backup.\n\n") +
                            e.description(),
                        Ui::Buttons::Ok, Ui::Icon::Critical, QStringLiteral("Damaged Data File"));
        if (opened)
            database.Close();
        return false;
    }
}

bool OpenDataFile(const QString& path) { return OpenDataFile(path, gDatabase); }

void CloseDatabase()
{
    try {
        gDatabase.Close();
    } catch (const JetError&) {
    }
    gDatabase = Database();
    // Lock files that the Windows engine left beside copied data files; ours never makes them.
    if (!gDataFolder.isEmpty()) {
        const QDir folder(gDataFolder);
        for (const QString& name : folder.entryList({QStringLiteral("*.ldb")}, QDir::Files))
            QFile::remove(folder.filePath(name));
    }
}

QStringList CheckRequiredSettings()
{
    // Only the wizard's suggestion: the file's dates keep reading day first until the country is saved.
    if (gUser.Country.isEmpty())
        gUser.Country = GetCountryName();
    QStringList yellow;
    if (gUser.BreederName.isEmpty())
        yellow << QStringLiteral("txtBreeder");
    if (gUser.Male.isEmpty())
        yellow << QStringLiteral("txtMale");
    if (gUser.Female.isEmpty())
        yellow << QStringLiteral("txtFemale");
    if (gUser.Animal.isEmpty())
        yellow << QStringLiteral("cboAnimal");
    if (gUser.WeightMeasure.isEmpty())
        yellow << QStringLiteral("cboWeightMeasure");
    if (!yellow.isEmpty()) {
        if (gSetupWizard)
            gSetupWizard(yellow);
        Ui::message(QStringLiteral("Tessorin needs some information to function properly.\n"
                                   "Fill in all the yellow boxes on the Program Setup Wizard and save."),
                    Ui::Buttons::Ok, Ui::Icon::Exclamation, QStringLiteral("Error"));
    }
    return yellow;
}

void ReadUserSettings() { readUserSettingsFrom(gDatabase); }

QString TranslateSex(const QString& sex)
{
    const QString s = sex.toLower();
    if (s == QLatin1String("male"))
        return gUser.Male;
    if (s == QLatin1String("female"))
        return gUser.Female;
    return QStringLiteral("undefined");
}

QString GetLocaleWord(const QString& key)
{
    const bool us = gUser.Country == QLatin1String("United States");
    const bool uk = gUser.Country == QLatin1String("United Kingdom");
    if (key == QLatin1String("Colour"))
        return us ? QStringLiteral("Color") : QStringLiteral("Colour");
    if (key == QLatin1String("DateFormat"))
        return us ? QStringLiteral("mm/dd/yyyy") : QStringLiteral("dd/mm/yyyy");
    if (key == QLatin1String("WeightFormat"))
        return uk ? QStringLiteral("lbs") : QStringLiteral("kg");
    if (key == QLatin1String("personalise"))
        return us ? QStringLiteral("personalize") : QStringLiteral("personalise");
    return {};
}

QString GetPedigreeLabel(const QString& phone, const QString& studNumber, const QString& email)
{
    return QStringLiteral("Phone: ") + phone + QLatin1Char('\n') + QStringLiteral("Stud Number: ") + studNumber +
           QLatin1Char('\n') + QStringLiteral("Email: ") + email;
}

QString GetAnimalName(const QVariant& id)
{
    try {
        Recordset rs = gDatabase.OpenRecordset(QStringLiteral("Select name FROM tree WHERE ID = ") + id.toString());
        if (rs.Eof())
            return {};
        return DecodeText(rs.Fields(QStringLiteral("name")).toString());
    } catch (const JetError&) {
        return {};
    }
}
