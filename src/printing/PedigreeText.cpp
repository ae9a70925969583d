// SPDX-License-Identifier: GPL-3.0-or-later
#include "printing/PedigreeText.h"

#include "genetics/FamilyTree.h"
#include "records/Animal.h"
#include "records/Pictures.h"
#include "records/Titles.h"
#include "session/OpenDataFile.h"
#include "session/globals.h"
#include "store/DataFile.h"
#include "store/JetError.h"

namespace {

const QChar kLineEnd = QLatin1Char('\n');

// The nine line texts of a box in row order; "" for a row that shows nothing.
using FieldLines = std::array<QString, kFieldRows>;

QString joinInOrder(const FieldLines& lines, const PrintSettings& settings)
{
    QString joined;
    for (int row : settings.fieldOrderRows()) {
        if (row >= 0)
            joined += lines[row];
    }
    return joined;
}

QString fieldValue(const BoxFields& f, int row)
{
    switch (row) {
    case 0:
        return f.breed;
    case 1:
        return f.colour;
    case 2:
        return f.registration;
    default:
        return f.custom[row - 3];
    }
}

} // namespace

BoxWords CurrentBoxWords()
{
    BoxWords w;
    w.colourWord = GetLocaleWord(QStringLiteral("Colour"));
    for (int i = 0; i < 6; ++i)
        w.customNames[i] = gUser.CustomName[i];
    w.titles = SplitTitles(gUser.Prefix);
    return w;
}

int FieldColumnOfBox(int boxNum)
{
    if (boxNum < 3)
        return 1;
    if (boxNum < 7)
        return 2;
    if (boxNum < 15)
        return 3;
    if (boxNum < 31)
        return 4;
    return 0;
}

int BoxWrapWidth(PedigreeParent parent, const PrintSettings& settings)
{
    return parent == PedigreeParent::Certificate ? settings.wrapLength : 45;
}

QString DecoratedName(const QString& prefix, const QString& name, const QString& suffix)
{
    QString text = name.trimmed();
    if (!prefix.trimmed().isEmpty())
        text = prefix.trimmed() + QLatin1Char(' ') + text;
    if (!suffix.trimmed().isEmpty())
        text += QLatin1Char(' ') + suffix.trimmed();
    return text;
}

BoxCaption FillLabels(int boxNum, const BoxFields& fields, const PrintSettings& settings, const BoxWords& words,
                      PedigreeParent parent, bool showPedigreeDetails)
{
    const int width = BoxWrapWidth(parent, settings);
    BoxCaption caption;
    caption.shown = !IsNobody(fields.name) && fields.name.size() >= 2;
    caption.champion = !fields.prefix.trimmed().isEmpty() || !MatchTitle(words.titles, fields.name).isEmpty();
    const QString name = DecoratedName(fields.prefix, fields.name, fields.suffix);

    if (parent == PedigreeParent::FamilyTree && !showPedigreeDetails) {
        caption.text = WrapText(name, width) + QLatin1Char(' ');
        return caption;
    }
    const int column = FieldColumnOfBox(boxNum);
    if (column == 0) {
        caption.text = WrapText(name, width);
        return caption;
    }
    const bool hidden = settings.titlesHidden(column);
    FieldLines lines;
    for (int row = 0; row < kFieldRows; ++row) {
        if (!settings.fieldChosen(row, column))
            continue;
        const QString value = fieldValue(fields, row);
        if (row == 2 && value.size() <= 1)
            continue;
        if (row > 2 && value.isEmpty())
            continue;
        if (hidden) {
            lines[row] = QLatin1Char('[') + value + QStringLiteral("] ");
        } else if (row == 0) {
            lines[row] = QStringLiteral("Breed: ") + value + kLineEnd;
        } else if (row == 1) {
            lines[row] = words.colourWord + QStringLiteral(": ") + value + kLineEnd;
        } else if (row == 2) {
            lines[row] = QStringLiteral("Registration: ") + value + kLineEnd;
        } else {
            lines[row] = words.customNames[row - 3] + QStringLiteral(": ") + value + kLineEnd;
        }
    }
    QString joined = joinInOrder(lines, settings);
    if (hidden)
        joined.replace(kLineEnd, QLatin1Char(' '));
    caption.text = WrapText(name + kLineEnd + joined, width);
    return caption;
}

QString FirstBoxText(const Animal& subject, const PrintSettings& settings, const BoxWords& words,
                     PedigreeParent parent)
{
    FieldLines lines;
    if (settings.fieldChosen(0, 0))
        lines[0] = QStringLiteral("Breed:  ") + subject.breed + kLineEnd;
    if (settings.fieldChosen(1, 0))
        lines[1] = words.colourWord + QStringLiteral(":   ") + subject.colour + kLineEnd;
    if (settings.fieldChosen(2, 0) && subject.tag.size() > 1)
        lines[2] = QStringLiteral("Reg: ") + subject.tag + kLineEnd;
    for (int row = 3; row < kFieldRows; ++row) {
        const QString& value = subject.customField[row - 3];
        if (settings.fieldChosen(row, 0) && !value.isEmpty())
            lines[row] = words.customNames[row - 3] + QLatin1Char(' ') + value + kLineEnd;
    }
    const QString text = subject.fullName + kLineEnd + QStringLiteral("Sex:     ") + subject.sexTerm + kLineEnd +
                         QStringLiteral("DOB:    ") + subject.dob + kLineEnd + joinInOrder(lines, settings);
    return WrapText(text, BoxWrapWidth(parent, settings));
}

QString FamilyText(const QStringList& mates)
{
    if (mates.isEmpty())
        return {};
    return QStringLiteral("Same Family Tree:") + kLineEnd + mates.join(kLineEnd);
}

std::optional<BoxFields> ReadBoxFields(const QString& name, const PrintSettings& settings, int column)
{
    if (name.isEmpty())
        return std::nullopt;
    try {
        Recordset rs = gDatabase.OpenRecordset(QStringLiteral("SELECT * FROM tree WHERE name = '") +
                                               EncodeText(name) + QStringLiteral("' "));
        if (rs.Eof())
            return std::nullopt;
        const auto text = [&](const QString& field) { return DecodeText(rs.Fields(field).toString()); };
        BoxFields f;
        f.prefix = text(QStringLiteral("Prefix"));
        f.name = text(QStringLiteral("name"));
        f.suffix = text(QStringLiteral("Suffix"));
        if (column > 0) {
            if (settings.fieldChosen(0, column))
                f.breed = text(QStringLiteral("Breed"));
            if (settings.fieldChosen(1, column))
                f.colour = text(QStringLiteral("Colour"));
            if (settings.fieldChosen(2, column))
                f.registration = text(QStringLiteral("Tag"));
            for (int i = 0; i < 6; ++i) {
                if (settings.fieldChosen(3 + i, column))
                    f.custom[i] = text(QStringLiteral("CustomField") + QString::number(i + 1));
            }
        }
        return f;
    } catch (const JetError&) {
        return std::nullopt;
    }
}

QStringList LitterMates(const QString& subject, const QString& father, const QString& mother)
{
    // Animals whose parents are both nobody are no family of each other.
    if (IsNobody(father) && IsNobody(mother))
        return {};
    QStringList mates;
    try {
        Recordset rs = gDatabase.OpenRecordset(QStringLiteral("SELECT * FROM tree WHERE pd = '") + EncodeText(mother) +
                                               QStringLiteral("'  AND ps = '") + EncodeText(father) +
                                               QStringLiteral("' "));
        const QString self = EncodeText(subject);
        for (; !rs.Eof(); rs.MoveNext()) {
            const QString stored = rs.Fields(QStringLiteral("name")).toString();
            if (stored.compare(self, Qt::CaseInsensitive) == 0)
                continue;
            mates << DecoratedName(DecodeText(rs.Fields(QStringLiteral("Prefix")).toString()), DecodeText(stored),
                                   DecodeText(rs.Fields(QStringLiteral("Suffix")).toString())) +
                         QStringLiteral(" (") + TranslateSex(rs.Fields(QStringLiteral("Sex")).toString()) +
                         QLatin1Char(')');
        }
    } catch (const JetError&) {
        return {};
    }
    return mates;
}
