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

enum class DataFileKind { Missing, Tessorin, ForeignSqlite, Jet, Other };
// What stands at path: our SQLite file, a SQLite file of another program (with or without a `tree`
// table), a Jet file ("Standard Jet DB"/"Standard ACE DB"), or something else.
DataFileKind ClassifyDataFile(const QString& path);

// Opens a data file for use: not exclusive, not read-only, with the fixed password's connect string.
// Refuses what is no data file (throws JetError 3343), and a Jet file with a message of its own.
// A SQLite file without our application id is opened only if it holds the table `tree`, and stamped.
Database OpenWithPassword(const QString& path);

QString EncodeText(const QString& text);
QString DecodeText(const QString& text);

QString GetVersionText(Database& database);
bool HasSettingsRow(Database& database);
bool DeleteColumn(const TableDef& tableDef, const QString& name);

// "major.minor.revision" with minor and revision padded to two digits: 7.4.2 reads "7.04.02".
QString ProgramVersionText();
QString ProgramVersionText(int major, int minor, int revision);
