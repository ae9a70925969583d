// SPDX-License-Identifier: GPL-3.0-or-later
// What a pedigree box says: the composition of each box's caption from the record and the template
// (FillLabels), the subject's box, its litter mates, and the look-ups that read them from the open file.
#pragma once

#include "printing/PrintSettings.h"

#include <QString>
#include <QStringList>
#include <array>
#include <optional>

class Animal;

// Which form the pedigree is drawn on: box texts differ between the family tree page, the print
// preview and the certificate.
enum class PedigreeParent { FamilyTree, PrintPreview, Certificate };

// The words of the open file that the captions use.
struct BoxWords {
    QString colourWord = QStringLiteral("Colour");
    std::array<QString, 6> customNames; // the titles of custom fields 1 to 6
    QStringList titles;                 // the file's title words, longest first
};
BoxWords CurrentBoxWords(); // from gUser

// One ancestor's record as a box shows it, every text decoded; fields the template doesn't ask for
// stay empty.
struct BoxFields {
    QString name, prefix, suffix;
    QString breed, colour, registration;
    std::array<QString, 6> custom;
};

struct BoxCaption {
    bool shown = false;    // an animal: not blank, not "Unknown", at least two characters
    bool champion = false; // red: it has a prefix, or its name starts with a title
    QString text;
};

// The field column of FieldChoices that a box reads: 1 the parents, 2 the grandparents, 3 and 4 the
// next two generations; 0 from box 31 on, where a box holds the name alone.
int FieldColumnOfBox(int boxNum);
// Wrap width of a box caption.
int BoxWrapWidth(PedigreeParent parent, const PrintSettings& settings);
// Prefix, name and suffix between single blanks.
QString DecoratedName(const QString& prefix, const QString& name, const QString& suffix);

BoxCaption FillLabels(int boxNum, const BoxFields& fields, const PrintSettings& settings, const BoxWords& words,
                      PedigreeParent parent, bool showPedigreeDetails);

// The subject's box: full name, sex, date of birth and the fields of column 0 in the template's order.
QString FirstBoxText(const Animal& subject, const PrintSettings& settings, const BoxWords& words,
                     PedigreeParent parent);
// The subject's litter mates, appended under its box: "Same Family Tree:" and one line for each, or ""
// when there are none.
QString FamilyText(const QStringList& mates);

// FillparentBox's look-up: the record of name (stored form) with the fields that column asks for;
// nullopt when there is no such record or the look-up fails.
std::optional<BoxFields> ReadBoxFields(const QString& name, const PrintSettings& settings, int column);
// FillPedFamily's look-up: every other animal with the same father and mother, as "prefix name
// suffix (sex word)"; nothing unless the father is known or the mother isn't blank.
QStringList LitterMates(const QString& subject, const QString& father, const QString& mother);
