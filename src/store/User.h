// SPDX-License-Identifier: GPL-3.0-or-later
// The settings row of a data file (cavyuser, ID = 1) in memory.
#pragma once

#include "store/Database.h"

#include <QString>
#include <array>

class User {
public:
    // Properties in the order of the class's interface; the names are the columns without "fld".
    QString Stud, BreederName, Email, PhoneNum, StudNum;
    QString Animal, Male, Female, Father, Mother;
    short Gestation = 0, NestBox = 0, Rebreed = 0, Wean = 0, Tag = 0;
    QString Country, CustomDetail;
    std::array<QString, 12> CustomName; // CustomName1 .. CustomName12, trimmed on reading
    QString Organisation, Reminders, Prefix, WeightMeasure, Version;
    short AutoUpdate = 0;

    // Copies each column of row 1 to its property; a Null, missing or out-of-range column is skipped.
    void read(Database& database);
    // Runs "UPDATE cavyuser SET fldPrefix = ..."; on failure shows "Add new prefix to collection failed".
    void savePrefixes(Database& database) const;

    // (property name, value as text) in the order of the interface, CustomName1..12 spelled out.
    QList<QPair<QString, QString>> properties() const;
};

// The wizard's save: one UPDATE of every column but fldPrefix, in the settings row's column order.
QString SaveSettingsStatement(const User& user);
bool SaveSettingsToFile(Database& database, const User& user);
