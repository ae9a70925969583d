// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/OpenDataFile.h"

#include "shell/Dates.h"
#include "shell/Folders.h"
#include "shell/Log.h"
#include "shell/Platform.h"
#include "shell/RecentList.h"
#include "shell/Ui.h"
#include "shell/globals.h"
#include "store/DataFile.h"
#include "store/IntegrityCheck.h"

#include <QDir>
#include <QFile>

namespace {
std::function<void(const QStringList&)> gSetupWizard;

void readUserSettingsFrom(Database& database)
{
    gUser = User();
    gImagesFolder = InstallFolder() + QStringLiteral("images/");
    gUser.read(database);
    SetRegionalDateOrder(DateOrderForCountry(gUser.Country));
}
} // namespace

void SetSetupWizardHook(std::function<void(const QStringList&)> wizard) { gSetupWizard = std::move(wizard); }

bool OpenDataFile(const QString& path, Database& database)
{
    if (path.isEmpty() || path == QLatin1String("1"))
        return false;
    try {
        database = OpenWithPassword(path);
        gDatabasePassword = kDatabasePassword;
        gDatabaseFile = path;
        CheckDatabase(database, false, false);
        readUserSettingsFrom(database);
        LoadRecentFile();
        ShowRecentList();
        CheckRequiredSettings();
        return true;
    } catch (const JetError& e) {
        // The caller says what it wants; the log keeps the reason for whoever looks.
        LogError(QStringLiteral("Open data file error ") + QString::number(e.number()) + QStringLiteral(" - ") +
                 e.description());
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
    if (gUser.Country.isEmpty()) {
        gUser.Country = GetCountryName();
        SetRegionalDateOrder(DateOrderForCountry(gUser.Country));
    }
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
