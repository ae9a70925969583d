// SPDX-License-Identifier: GPL-3.0-or-later
// What the database chooser decides, kept apart from its window: which data files it lists and how,
// the order in which the start-up tries to open a file, and the tip of the day.
#pragma once

#include <QDateTime>
#include <QString>
#include <QStringList>
#include <QVector>

namespace Chooser {

// One icon per species group, by the number getIcon gives.
enum SpeciesIcon : int {
    IconGeneral = 0,
    IconCat,
    IconCavy,
    IconChicken,
    IconChinchilla,
    IconCow,
    IconDog,
    IconDonkey,
    IconFerret,
    IconGoat,
    IconHedgehog,
    IconHorse,
    IconMouse,
    IconParrot,
    IconPig,
    IconPigeon,
    IconRabbit,
    IconSheep,
    IconUnreadable,
    IconCount
};

// A shown name is cut from this length on, and then ends in "...".
inline constexpr int kNameCutLength = 31;

struct FileRow {
    QString path;
    QString fileName;
    QString shownName;
    QDateTime modified; // invalid when the file system would not say
    int records = 0;
    int icon = IconGeneral;
    bool systemFile = false; // found in the install folder
    bool open = false;       // the data file of the session: its row reads "FILE OPENED"
    bool needsRecovery = false; // cut short by a crash and not readable here; opening it recovers it
};

// The icon of an animal word from the settings row; any word not in the groups gets the general one.
int IconForAnimal(const QString& animal);
// The SVG of an icon, under the install folder's icons/species/.
QString IconFileName(int icon);
QString IconPath(int icon);

QString ShownName(const QString& fileName);

// The count of animals in a data file; 0 when it cannot be read.
int getRecordNumber(const QString& path);
// The icon of a data file by the animal of its settings row; IconUnreadable when it cannot be read.
int getIcon(const QString& path);
// The rows for every "*.cav" of one folder, by name.
QVector<FileRow> findFilenames(const QString& folder, const QString& pattern, bool systemFolder);

// The folders the chooser looks in: the data folder and the install folder. The Windows program also
// looked in the system's per-user shadow copy of the install folder; Linux has no such copy.
QString UserFilesFolder();
QString SystemFilesFolder();

// True when the path lies directly in one of the chooser's folders.
bool InProgramFolder(const QString& path);
// True when path is the data file open in this session.
bool IsOpenDataFile(const QString& path);

// The "Default Database" value of the program's settings; "1" stands for none.
QString DefaultDatabase();
void SetDefaultDatabase(const QString& path);
void RemoveDefault();

// The start-up's load order, before the chooser shows its list: the command line, then the default
// data file. True when one opened (gAutoOpened is then set); false when the list is to be shown.
bool RunLoadOrder(const QString& commandLine);
// The load order belongs to the start: once it has run, the chooser shown again (the main window's
// "Open") always shows its list.
bool LoadOrderPending();
void SetLoadOrderPending(bool pending);

// The name a new data file gets from the user's answer: blanks become underscores.
QString NewDataFileName(const QString& answer);

// The recent list kept for a data file: gSettingsFolder + its file name + ".txt".
QString RecentListFile(const QString& dataFile);
// The path a listed file is renamed to from the user's answer, in its own folder: blanks become
// underscores as for a new file, and ".cav" ends it. "" when the answer names no file there.
QString RenamedPath(const QString& path, const QString& answer);
// Deletes a listed data file with its journal and its recent list; false when the file stays.
bool DeleteListedFile(const QString& path);
// Renames a listed data file with its journal and moves its recent list; false when it cannot.
bool RenameListedFile(const QString& path, const QString& target);

// Where a file picked outside the program's folders is copied: the data folder, as a ".cav".
QString CopyTargetFor(const QString& picked);
// The name of the copy a restore writes beside the open data file, which it must not replace.
QString SharedCopyName(const QString& path);

// The tips of TIPOFDAY.TXT with the file's words put in; one tip telling of the missing file when
// it cannot be read.
QStringList LoadTips(const QString& tipsFile, const QString& colourWord, const QString& animalsWord);
QString TipsFile();
// The plural of the open file's animal word, "animals" without one.
QString AnimalsWord(const QString& animal);

// The information lines: the program's version, the platform and the user logged in.
QString getMainInfo();

} // namespace Chooser

#include <functional>

namespace Chooser {

// Copies source over target without ever leaving a half-written target: the copy is made beside it
// and then put in its place. False, with target untouched, when it fails.
bool CopyDataFile(const QString& source, const QString& target);

// Where the chooser hands over once it is done. Unset members mean the shell's own: the main window,
// the setup wizard, and the end of the program. Tests set them to see what would happen.
struct HandOvers {
    std::function<void()> mainWindow;
    std::function<void()> setupWizard;
    std::function<void()> endProgram;
};
void SetHandOvers(HandOvers handOvers);
const HandOvers& CurrentHandOvers();

} // namespace Chooser
