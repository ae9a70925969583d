// SPDX-License-Identifier: GPL-3.0-or-later
// The rules of the add and edit form without its window: which names and dates it takes, the messages
// of a refused save, the date of birth estimated from an age, and the quick creation of a parent.
#pragma once

#include <QDate>
#include <QString>
#include <functional>
#include <optional>

class Animal;

namespace RecordForm {

// The platform's numeric test on a text: blanks around it, a sign, whole or decimal digits and an
// exponent ("1e5", "-2.5", " 12 ", ".5", "1.", "3D2"), and the "&H1F" / "&O17" forms.
bool IsNumeric(const QString& text);

// What makes a name unfit for the record (and for the picture files named after it): the text
// "set of characters comprised only of numbers", or the first of \ / : ? < > | " found. "" when fit.
QString checkIllegalChr(const QString& name);

// A date box's rule: "" or "Unknown" becomes the unknown date 01/01/1925 and passes; any other text
// passes when it is a date.
bool ValidateDateText(QString& text);

// "mm/dd/yyyy" or "dd/mm/yyyy", by the open file's country.
QString DateFormatText();

// Today less years * 365 + months * 30 + weeks * 7 days. The count is a 16-bit number, as it always
// was: an age past its range (about 90 years) gives nothing.
std::optional<QDate> CalcDOB(int years, int months, int weeks);
// The same from the three age boxes: "" counts as 0; a text that is no whole 16-bit number gives nothing.
std::optional<QDate> CalcDOB(const QString& years, const QString& months, const QString& weeks);

// "male", "female" or "undefined" for the sex words of the file; "" for anything else.
QString StoredSex(const QString& sexText);

// What a save checks, as the form's boxes hold it.
struct SaveEntry {
    bool addMode = true;
    QString name; // as typed
    QString dob;  // txtDOB; the unknown date is written back
    bool sold = false;
    QString dateSold;
    bool deceased = false;
    QString dateDeceased;
    QString sex; // cboSex's text
};

// The text of the "Incomplete record" box for an entry, one message a line; "" when the record may be
// saved. Looks the name up in `tree` in add mode (a database error is the caller's). The date boxes
// that pass are rewritten as ValidateDateText does.
QString SaveMessages(SaveEntry& entry);

// Writes a record that passed SaveMessages. In edit mode a real rename carries the old name through
// every table in the same transaction as the row itself, so a save that fails changes nothing; the
// pictures follow once that has committed. A record made "similar to" another (add mode with the
// other's name as oldName) starts with none of the other's rows. False when nothing was written; the
// failure has been logged and, with showMessage, shown.
bool SaveAnimalRecord(Animal& record, bool isEdit, const QString& oldName, bool showMessage = true);

enum class ParentOutcome { Cancelled, Duplicate, Failed, Created };
struct ParentResult {
    ParentOutcome outcome = ParentOutcome::Cancelled;
    QString name; // decoded, as the user typed it
};

// Quick-creates a father ("Father") or mother ("Mother") record: asks for its name, refuses a name
// that exists ("Found Duplicate") and saves a record with the sex alone. refillList runs before the
// check, as on dropping the list down.
ParentResult MakeParent(const QString& kind, const std::function<void()>& refillList);

} // namespace RecordForm
