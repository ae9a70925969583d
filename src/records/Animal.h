// SPDX-License-Identifier: GPL-3.0-or-later
// One row of `tree` in memory, with what is worked out from it: the display name, the words for sex
// and age, the title, the ten picture slots and a text summary.
#pragma once

#include <QString>
#include <QStringList>
#include <array>

inline constexpr int kPictureSlots = 10;

class Animal {
public:
    QString name;       // decoded
    QString storedName; // as stored, for the WHERE of updateField
    QString colour, breed, sex, sexTerm, dob;
    QString notes, ps, pd, cage, tag;
    bool deceased = false;
    QString dateDeceased;
    bool sold = false;
    std::array<QString, 12> customField; // customField1 .. customField12
    QString health, journal, callName;
    qint32 id = 0;
    QString age, title;
    bool breeder = false, owner = false, leased = false;
    QString prefix, suffix, coi, dateSold, fullName;
    std::array<QString, kPictureSlots> picture;      // full paths; slot 0 is the main picture
    std::array<QString, kPictureSlots> pictureLabel; // the text between the brackets of each path
    // The date of sale as loaded: a save leaves the sale's own date alone unless the user changed it.
    QString loadedDateSold;

    // Loads the row of that name; name comes back as the decoded stored name. An empty name, or one
    // with no row, leaves every field as it was.
    void SetCurrentAnimal(QString& name);
    // Empties the record's own fields; leased, age, title, fullName and the pictures stay.
    void clearFields();
    QString getPictureFileName(const QString& pattern) const;
    static QString getPictureLabel(const QString& path);
    // Writes the instance to `tree`, keeps soldstock and the recent list in step. Every text is encoded
    // here; fields hold the decoded texts (encoding twice changes nothing).
    bool save(bool isEdit, const QString& oldName, bool showMessage);
    // Points the parent columns of other rows at the new name; nothing unless IsRealRename.
    void RenameAnimal(const QString& oldName);
    void SaveHealthOrJournal(const QString& field, const QString& value);
    void Delete();
    QString Get_Awards(bool withoutParents);
    static QString GetTitle(const QString& name);
    void DeletePictures();
    void updateField(const QString& field, const QString& value);

    // The age text of a date of birth and the flags, as the record shows it; "" when it cannot be
    // worked out.
    static QString AgeText(const QString& dob, bool deceased, const QString& dateDeceased, bool sold,
                           const QString& dateSold);
    static QString CageText(const QString& cage);

private:
    void fillDefaults();
    bool saveStatement(bool isEdit, const QString& oldName, bool showMessage);
    void updateSoldStock();
    void loadPictures();
};

extern Animal gAnimal;

// The folder of every animal's pictures, shared by all data files: gDataFolder + "my pics/".
QString PicturesFolder();

// A save renames an animal only when it had a name of its own before and now has another. A new
// record's old name is "", and "Unknown" stands for nobody: carrying either over the other tables would
// make the record the parent of every animal whose parent is not known.
bool IsRealRename(const QString& oldName, const QString& newName);

// Points one column of one table from the old name to the new. Names come decoded. Throws JetError.
void ReplaceRecordName(const QString& table, const QString& field, const QString& oldName, const QString& newName);
// Carries a real rename into every table that names an animal by a column (the row's own name is
// written by save), in one transaction. False, with the error logged and nothing changed, when a
// statement fails.
bool RenameInAllTables(const QString& oldName, const QString& newName);
