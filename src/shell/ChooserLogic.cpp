// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ChooserLogic.h"

#include "base/Folders.h"
#include "base/Log.h"
#include "session/OpenDataFile.h"
#include "base/Platform.h"
#include "base/ProgramSettings.h"
#include "base/Ui.h"
#include "session/globals.h"
#include "store/DataFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTextStream>
#include <array>
#include <filesystem>
#include <fcntl.h>
#include <pwd.h>
#include <unistd.h>

namespace Chooser {

namespace {

const QString kDefaultKey = QStringLiteral("Default Database");

struct AnimalGroup {
    const char* word;
    int icon;
};

constexpr std::array<AnimalGroup, 21> kGroups{{
    {"cat", IconCat},
    {"cavy", IconCavy},
    {"guinea pig", IconCavy},
    {"chicken", IconChicken},
    {"chinchilla", IconChinchilla},
    {"gerbil", IconChinchilla},
    {"cow", IconCow},
    {"dog", IconDog},
    {"donkey", IconDonkey},
    {"ferret", IconFerret},
    {"weasel", IconFerret},
    {"goat", IconGoat},
    {"hedgehog", IconHedgehog},
    {"horse", IconHorse},
    {"mouse", IconMouse},
    {"rat", IconMouse},
    {"parrot", IconParrot},
    {"pig", IconPig},
    {"pigeon", IconPigeon},
    {"rabbit", IconRabbit},
    {"sheep", IconSheep},
}};

constexpr std::array<const char*, IconCount> kIconFiles{
    "general.svg", "cat.svg",      "cavy.svg",  "chicken.svg", "chinchilla.svg", "cow.svg",
    "dog.svg",     "donkey.svg",   "ferret.svg", "goat.svg",   "hedgehog.svg",   "horse.svg",
    "mouse.svg",   "parrot.svg",   "pig.svg",   "pigeon.svg",  "rabbit.svg",     "sheep.svg",
    "unreadable.svg"};

// Our own files are opened as OpenDataFile opens them, so that a journal left by a crash is rolled
// back before counting, as it would be on any open; listing never stamps or changes them otherwise.
// Another program's file, or one that cannot be written, is only read.
Database openForReading(const QString& path)
{
    const DataFileKind kind = ClassifyDataFile(path);
    if (kind == DataFileKind::Missing)
        throw JetError::fileNotFound(path);
    if (kind != DataFileKind::Tessorin && kind != DataFileKind::ForeignSqlite)
        throw JetError::unrecognizedFormat(path);
    const bool readOnly = kind == DataFileKind::ForeignSqlite || !WhyReadOnly(path).isEmpty();
    return Database::OpenDatabase(path, false, readOnly, QStringLiteral(";pwd=") + kDatabasePassword);
}

QString samePath(const QString& path) { return QDir::cleanPath(QFileInfo(path).absoluteFilePath()); }

QString loginName()
{
    if (const passwd* pw = getpwuid(getuid()); pw && pw->pw_name)
        return QString::fromLocal8Bit(pw->pw_name);
    return qEnvironmentVariable("USER");
}

} // namespace

int IconForAnimal(const QString& animal)
{
    const QString word = animal.trimmed().toLower();
    for (const AnimalGroup& g : kGroups)
        if (word == QLatin1String(g.word))
            return g.icon;
    return IconGeneral;
}

QString IconFileName(int icon)
{
    if (icon < 0 || icon >= IconCount)
        icon = IconGeneral;
    return QString::fromLatin1(kIconFiles[size_t(icon)]);
}

QString IconPath(int icon) { return InstallFolder() + QStringLiteral("icons/species/") + IconFileName(icon); }

QString ShownName(const QString& fileName)
{
    if (fileName.size() < kNameCutLength)
        return fileName;
    // Cut so that the shown text with its dots is no longer than the longest name shown whole.
    return fileName.left(kNameCutLength - 4) + QStringLiteral("...");
}

int getRecordNumber(const QString& path)
{
    int count = 0;
    try {
        Database db = openForReading(path);
        // Count(*) gives what MoveLast and RecordCount would, without fetching every row of a large file.
        Recordset rs = db.OpenRecordset(QStringLiteral("SELECT Count(*) FROM tree"));
        if (!rs.Eof())
            count = rs.Fields(0).toInt();
        rs.Close();
        db.Close();
    } catch (const JetError&) {
    }
    return count;
}

int getIcon(const QString& path)
{
    try {
        Database db = openForReading(path);
        Recordset rs = db.OpenRecordset(QStringLiteral("SELECT fldAnimal FROM cavyuser"));
        const QString animal = rs.Eof() ? QString() : rs.Fields(QStringLiteral("fldAnimal")).toString();
        rs.Close();
        db.Close();
        return IconForAnimal(animal);
    } catch (const JetError& e) {
        LogError(QStringLiteral("Open icon error ") + QString::number(e.number()) + QStringLiteral(" - ") +
                 e.description());
        return IconUnreadable;
    }
}

QVector<FileRow> findFilenames(const QString& folder, const QString& pattern, bool systemFolder)
{
    QVector<FileRow> rows;
    if (folder.isEmpty())
        return rows;
    const QDir dir(folder);
    // Only regular files: a folder that happens to end in ".cav" is no data file. A file that is no
    // data file stays listed by its name, with the unreadable icon and no records, so the user can
    // still rename or delete it here.
    const QFileInfoList found = dir.entryInfoList({pattern}, QDir::Files, QDir::Name | QDir::IgnoreCase);
    for (const QFileInfo& info : found) {
        FileRow row;
        row.path = info.absoluteFilePath();
        row.fileName = info.fileName();
        row.shownName = ShownName(row.fileName);
        row.modified = info.lastModified();
        row.systemFile = systemFolder;
        row.open = IsOpenDataFile(row.path);
        row.icon = getIcon(row.path);
        row.records = row.icon == IconUnreadable ? 0 : getRecordNumber(row.path);
        row.needsRecovery = row.icon == IconUnreadable && NeedsRecovery(row.path);
        rows.append(row);
    }
    return rows;
}

QString UserFilesFolder() { return gDataFolder; }

QString SystemFilesFolder()
{
    const QString install = InstallFolder();
    // Run from the build tree the install folder may be the data folder's parent or the same folder;
    // a file must not be listed twice.
    if (install.isEmpty() || samePath(install) == samePath(gDataFolder))
        return {};
    return install;
}

bool InProgramFolder(const QString& path)
{
    const QString folder = samePath(QFileInfo(path).absolutePath());
    for (const QString& f : {UserFilesFolder(), SystemFilesFolder()})
        if (!f.isEmpty() && samePath(f) == folder)
            return true;
    return false;
}

bool IsOpenDataFile(const QString& path)
{
    return gDatabase.isOpen() && !gDatabaseFile.isEmpty() && samePath(gDatabaseFile) == samePath(path);
}

QString DefaultDatabase() { return GetSetting(QStringLiteral("Options"), kDefaultKey, QStringLiteral("1")); }

void SetDefaultDatabase(const QString& path) { SaveSetting(QStringLiteral("Options"), kDefaultKey, path); }

void RemoveDefault() { DeleteSetting(QStringLiteral("Options"), kDefaultKey); }

bool RunLoadOrder(const QString& commandLine)
{
    if (!commandLine.isEmpty()) {
        // A desktop launcher passes the path bare; a path typed in a shell may keep its quotes.
        QString path = commandLine;
        if (path.size() >= 2 && path.startsWith(QLatin1Char('"')) && path.endsWith(QLatin1Char('"')))
            path = path.mid(1, path.size() - 2);
        gDatabaseFile = path;
        if (OpenDataFile(path)) {
            gAutoOpened = true;
            return true;
        }
        Ui::message(QStringLiteral("Error launching ") + path, Ui::Buttons::Ok, Ui::Icon::Exclamation,
                    QStringLiteral("Error"));
    }
    if (!gAutoOpened) {
        const QString path = DefaultDatabase();
        if (OpenDataFile(path)) {
            gAutoOpened = true;
            return true;
        }
        // A stale path is tried once only.
        RemoveDefault();
    }
    return false;
}

namespace {
bool gLoadOrderPending = true;
}

bool LoadOrderPending() { return gLoadOrderPending; }

void SetLoadOrderPending(bool pending) { gLoadOrderPending = pending; }

QString NewDataFileName(const QString& answer)
{
    QString name = answer;
    name.replace(QLatin1Char(' '), QLatin1Char('_'));
    return name;
}

QString RecentListFile(const QString& dataFile)
{
    return gSettingsFolder + QFileInfo(dataFile).fileName() + QStringLiteral(".txt");
}

QString RenamedPath(const QString& path, const QString& answer)
{
    QString name = NewDataFileName(answer.trimmed());
    if (name.endsWith(QLatin1String(".cav"), Qt::CaseInsensitive))
        name.chop(4);
    if (name.isEmpty() || name.contains(QLatin1Char('/')) || name == QLatin1String(".") || name == QLatin1String(".."))
        return {};
    return QFileInfo(path).absolutePath() + QLatin1Char('/') + name + QStringLiteral(".cav");
}

bool DeleteListedFile(const QString& path)
{
    if (!RemoveDataFile(path))
        return false;
    QFile::remove(RecentListFile(path));
    return true;
}

bool RenameListedFile(const QString& path, const QString& target)
{
    if (target.isEmpty() || !RenameDataFile(path, target))
        return false;
    const QString list = RecentListFile(path);
    if (QFileInfo::exists(list)) {
        QFile::remove(RecentListFile(target)); // a list left by a deleted file of the new name
        QFile::rename(list, RecentListFile(target));
    }
    return true;
}

QString CopyTargetFor(const QString& picked)
{
    const QFileInfo info(picked);
    return gDataFolder + info.completeBaseName() + QStringLiteral(".cav");
}

QString SharedCopyName(const QString& path)
{
    const QFileInfo info(path);
    return info.absolutePath() + QLatin1Char('/') + info.completeBaseName() + QStringLiteral("(shared).cav");
}

QString TipsFile() { return InstallFolder() + QStringLiteral("TIPOFDAY.TXT"); }

QString AnimalsWord(const QString& animal)
{
    const QString word = animal.trimmed().toLower();
    if (word.isEmpty())
        return QStringLiteral("animals");
    if (word == QLatin1String("sheep") || word == QLatin1String("guinea pig") || word.endsWith(QLatin1Char('s')))
        return word == QLatin1String("guinea pig") ? QStringLiteral("guinea pigs") : word;
    if (word == QLatin1String("mouse"))
        return QStringLiteral("mice");
    if (word == QLatin1String("cavy"))
        return QStringLiteral("cavies");
    if (word.endsWith(QLatin1String("sh")) || word.endsWith(QLatin1String("ch")) || word.endsWith(QLatin1Char('x')))
        return word + QStringLiteral("es");
    return word + QLatin1Char('s');
}

QStringList LoadTips(const QString& tipsFile, const QString& colourWord, const QString& animalsWord)
{
    QFile file(tipsFile);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return {QStringLiteral("That the ") + QFileInfo(tipsFile).fileName() + QStringLiteral(" file was not found?")};
    QStringList tips;
    QTextStream in(&file);
    while (!in.atEnd()) {
        QString tip = in.readLine().trimmed();
        if (tip.isEmpty())
            continue;
        // The tips are written with the British word and a placeholder for the species, so that each
        // reads in the open file's own words.
        tip.replace(QLatin1String("Colour"), colourWord);
        tip.replace(QLatin1String("colour"), colourWord.toLower());
        tip.replace(QLatin1String("{animals}"), animalsWord);
        tips << tip;
    }
    if (tips.isEmpty())
        tips << QStringLiteral("That the ") + QFileInfo(tipsFile).fileName() + QStringLiteral(" file was not found?");
    return tips;
}

QString getMainInfo()
{
    return QStringLiteral("Program Version: ") + ProgramVersionText() + QLatin1Char('\n') + QStringLiteral("Platform: ") +
           GetPlatformName() + QStringLiteral(" (Logged in: ") + loginName() + QLatin1Char(')');
}

} // namespace Chooser

namespace Chooser {

bool CopyDataFile(const QString& source, const QString& target)
{
    if (samePath(source) == samePath(target))
        return true;
    const QString part = target + QStringLiteral(".part");
    QFile::remove(part);
    if (!QFile::copy(source, part))
        return false;
    // A copy of a read-only file (from a disc or the install folder) must still take the user's records.
    QFile(part).setPermissions(QFile(part).permissions() | QFileDevice::WriteOwner);
    // On the disk before it takes the name: a crash must not leave a named file with no contents.
    {
        QFile written(part);
        if (!written.open(QIODevice::ReadWrite) || ::fsync(written.handle()) != 0) {
            QFile::remove(part);
            return false;
        }
    }
    // A journal of the file being replaced would be rolled back into the copy on its next open.
    for (const QString& companion : CompanionFiles(target))
        QFile::remove(companion);
    std::error_code error;
    std::filesystem::rename(QFile::encodeName(part).toStdString(), QFile::encodeName(target).toStdString(), error);
    if (error) {
        QFile::remove(part);
        return false;
    }
    const QByteArray folder = QFile::encodeName(QFileInfo(target).absolutePath());
    if (const int fd = ::open(folder.constData(), O_RDONLY | O_DIRECTORY); fd >= 0) {
        ::fsync(fd); // the new name itself
        ::close(fd);
    }
    return true;
}

namespace {
HandOvers gHandOvers;
}

void SetHandOvers(HandOvers handOvers) { gHandOvers = std::move(handOvers); }

const HandOvers& CurrentHandOvers() { return gHandOvers; }

} // namespace Chooser
