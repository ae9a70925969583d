// SPDX-License-Identifier: GPL-3.0-or-later
// The forward view of a pedigree: an animal's offspring, their offspring and so on down nine generations,
// one list a generation, each entry marked by whether its line goes on. The lists are plain text lists,
// so that the descendants page only copies them onto its widgets and a test reads them as they are.
#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <array>

inline constexpr int kDescendantGenerations = 9;
inline const QString kBloodlineContinues = QStringLiteral("  >>");
inline const QString kBloodlineEnds = QStringLiteral("  >|");

// One generation: the visible entries and, entry for entry, the two hidden lists behind them.
struct DescendantList {
    QStringList entries; // two blanks, the decoded name, then the mark once the entry has been looked at
    QStringList sex;     // the sex as stored
    QStringList parent;  // the name, as its entry reads, of the parent through which the entry was found

    int count() const { return int(entries.size()); }
    void clear();
    void add(const QString& decodedName, const QString& storedSex, const QString& parentName);
};

class Descendants {
public:
    // Generation 1 to 9.
    DescendantList& list(int generation) { return lists[generation - 1]; }
    const DescendantList& list(int generation) const { return lists[generation - 1]; }

    void ClearDescendantLists();
    // Fills the nine lists for an animal (decoded name, stored sex) from the open data file. Blank and
    // "Unknown" are nobody and have no offspring. A failing query ends the walk, logged, with the lists
    // as far as they were filled.
    void LoadDescendants(const QString& name, const QString& sex);
    // Looks up the offspring of every entry of list source, marks the entry and, unless target is -1,
    // adds the offspring to list target. Throws JetError.
    void findDescendants(qint16 source, qint16 target);
    // The nine titles, with the count of entries where a list has any.
    QStringList refreshDescendantTitles() const;

    // The rows selected in lists 1 to generation - 1 when row of list generation is clicked: each list is
    // searched from the top for the name the entry below was found through, and the search goes on with
    // that entry's own parent. -1 where the name is not found; the lists before it are then -1 too.
    QList<int> AncestralLine(int generation, int row) const;

    // The look-ups made by the last LoadDescendants, one for the subject and one for each entry.
    int queryCount() const { return queries; }

private:
    std::array<DescendantList, kDescendantGenerations> lists;
    int queries = 0;
};

// The name of an entry: without its two leading blanks and, where it holds the ">" of a mark, cut two
// characters before the first ">". A name that itself holds a ">" is cut there too.
QString DescendantEntryName(const QString& entry);
// The look-up of the offspring of an animal of that sex (an undefined sex counts as a mother); name is
// decoded.
QString OffspringStatement(const QString& name, const QString& sex);

QString DescendantTitle(int generation, int count);
// lblDescendantHelp for the species word, and lblDescendantLegend.
QString DescendantHelpText(const QString& term);
QString DescendantLegendText();

// lblDisplayParents for an entry's name: the animal with its parents under the file's father and mother
// terms, as read from its record; the name alone when it has no record.
QString DisplayParentsText(const QString& entryName);
QString DisplayParentsText(const QString& name, const QString& storedFather, const QString& storedMother,
                           const QString& fatherTerm, const QString& motherTerm);
