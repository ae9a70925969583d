// SPDX-License-Identifier: GPL-3.0-or-later
// Making and opening data files, and the text helpers through which every statement is built.
#pragma once

#include "store/Database.h"

#include <QString>

// The fixed application id of a Tessorin data file, stored in the SQLite header at offset 68 so that
// the desktop's MIME magic and OpenDataFile can tell our files from other SQLite databases ("Tsrn").
inline constexpr int kTessorinApplicationId = 0x5473726e;

// The locale string a new data file is created with.
inline const QString kDataFileLocale = QStringLiteral(";LANGID=0x0409;CP=1252;COUNTRY=0");
// The format's fixed password text. SQLite files have none; it is kept so the connect string is as the
// format defines it.
inline const QString kDatabasePassword = QStringLiteral("uk7demvqa");

// Creates an empty data file at folder + name (an empty folder means gDataFolder) and stamps it with
// the application id. No tables: the integrity check makes them on the first open. False when the file
// exists or cannot be made.
bool CreateDataFile(const QString& name, const QString& folder);

// The files SQLite keeps beside a data file while it writes: path + "-journal", "-wal", "-shm".
// A journal left by a crash is rolled back into the file of that name on its next open, so these go
// and move with their file, and ones without a file are removed.
QStringList CompanionFiles(const QString& path);
// Removes a data file, then its companions; false, with nothing removed, when the file stays.
bool RemoveDataFile(const QString& path);
// Renames a data file with its companions; false when `to` exists or the rename fails.
bool RenameDataFile(const QString& from, const QString& to);
// True when a journal lies beside the file: the last change was cut short and is undone on the next
// open for writing.
bool NeedsRecovery(const QString& path);

enum class DataFileKind { Missing, Tessorin, ForeignSqlite, Jet, Other };
// What stands at path: our SQLite file, a SQLite file of another program (with or without a `tree`
// table), a Jet file ("Standard Jet DB"/"Standard ACE DB"), or something else.
DataFileKind ClassifyDataFile(const QString& path);

// Opens a data file for use: not exclusive, with the fixed password's connect string, and never writes
// to it. Refuses what is no data file (throws JetError 3343), a Jet file and another program's SQLite
// file with messages of their own, and a damaged file (3049, with SQLite's reason). When the file or
// its folder cannot be written, it is opened read-only (Database::isReadOnly()).
Database OpenWithPassword(const QString& path);

// Why the data file cannot be written, in words for the user; "" when it can. Its folder counts too:
// SQLite keeps its journal beside the file while it saves.
QString WhyReadOnly(const QString& path);

// A SQLite file of another program that holds a `tree` table can be made a data file; the window asks
// first, the command line never does it.
bool IsAdoptableForeignFile(const QString& path);
// Stamps such a file with our application id, the one step that makes it ours. Throws JetError.
void AdoptForeignDataFile(const QString& path);

// "" when SQLite finds the file sound; else the first lines of its report. `full` runs the whole
// integrity_check (every index against its table), else quick_check.
QString DamageReport(Database& database, bool full);

// Drops the triggers and views that Tessorin did not make (ours would be named "tessorin_..."), so that
// no code stored in a file runs while it is used. Returns their names; nothing on a read-only file.
QStringList DropForeignTriggersAndViews(Database& database);

QString EncodeText(const QString& text);
QString DecodeText(const QString& text);

QString GetVersionText(Database& database);
bool HasSettingsRow(Database& database);
bool DeleteColumn(const TableDef& tableDef, const QString& name);

// "major.minor.revision" with minor and revision padded to two digits: 7.4.2 reads "7.04.02".
QString ProgramVersionText();
QString ProgramVersionText(int major, int minor, int revision);
