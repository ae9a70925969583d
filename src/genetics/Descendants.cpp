// SPDX-License-Identifier: GPL-3.0-or-later
#include "genetics/Descendants.h"

#include "genetics/FamilyTree.h"
#include "base/Log.h"
#include "session/globals.h"
#include "store/DataFile.h"
#include "store/JetError.h"

namespace {

QString entryText(const QString& decodedName) { return QStringLiteral("  ") + decodedName; }

bool isMale(const QString& sex) { return sex.compare(QLatin1String("male"), Qt::CaseInsensitive) == 0; }

} // namespace

void DescendantList::clear()
{
    entries.clear();
    sex.clear();
    parent.clear();
}

void DescendantList::add(const QString& decodedName, const QString& storedSex, const QString& parentName)
{
    entries << entryText(decodedName);
    sex << storedSex;
    parent << parentName;
}

QString DescendantEntryName(const QString& entry)
{
    QString name = entry.mid(2);
    const qsizetype mark = name.indexOf(QLatin1Char('>'));
    if (mark >= 0)
        name.truncate(qMax<qsizetype>(0, mark - 2));
    return name;
}

QString OffspringStatement(const QString& name, const QString& sex)
{
    // Only the two columns the lists keep: the same look-up through the parent's index, without reading
    // every memo of every child.
    const QString column = isMale(sex) ? QStringLiteral("ps") : QStringLiteral("pd");
    return QStringLiteral("SELECT name, sex FROM tree WHERE ") + column + QStringLiteral(" = '") + EncodeText(name) +
           QLatin1Char('\'');
}

void Descendants::ClearDescendantLists()
{
    for (DescendantList& l : lists)
        l.clear();
    queries = 0;
}

void Descendants::LoadDescendants(const QString& name, const QString& sex)
{
    ClearDescendantLists();
    // Nobody's offspring would be every animal with a blank or "Unknown" parent.
    if (IsNobody(name))
        return;
    try {
        ++queries;
        Recordset rs = gDatabase.OpenRecordset(OffspringStatement(name, sex));
        while (!rs.Eof()) {
            list(1).add(DecodeText(rs.Fields(QStringLiteral("name")).toString()),
                        rs.Fields(QStringLiteral("sex")).toString(), name);
            rs.MoveNext();
        }
        for (qint16 source = 1; source <= kDescendantGenerations; ++source)
            findDescendants(source, source < kDescendantGenerations ? qint16(source + 1) : qint16(-1));
    } catch (const JetError& e) {
        LogError(QStringLiteral("Descendants Error ") + QString::number(e.number()) + QStringLiteral(" - ") +
                 e.description());
    }
}

void Descendants::findDescendants(qint16 source, qint16 target)
{
    DescendantList& from = list(source);
    DescendantList* to = target == -1 ? nullptr : &list(target);
    for (qsizetype i = 0; i < from.entries.size(); ++i) {
        const QString name = DescendantEntryName(from.entries.at(i));
        bool any = false;
        if (!IsNobody(name)) {
            ++queries;
            Recordset rs = gDatabase.OpenRecordset(OffspringStatement(name, from.sex.at(i)));
            any = !rs.Eof();
            for (; to && !rs.Eof(); rs.MoveNext())
                to->add(DecodeText(rs.Fields(QStringLiteral("name")).toString()),
                        rs.Fields(QStringLiteral("sex")).toString(), name);
        }
        from.entries[i] += any ? kBloodlineContinues : kBloodlineEnds;
    }
}

QStringList Descendants::refreshDescendantTitles() const
{
    QStringList titles;
    for (int g = 1; g <= kDescendantGenerations; ++g)
        titles << DescendantTitle(g, list(g).count());
    return titles;
}

QList<int> Descendants::AncestralLine(int generation, int row) const
{
    QList<int> line(qMax(0, generation - 1), -1);
    if (generation < 1 || generation > kDescendantGenerations || row < 0 || row >= list(generation).count())
        return line;
    QString parent = list(generation).parent.at(row);
    for (int g = generation - 1; g >= 1; --g) {
        const DescendantList& l = list(g);
        int found = -1;
        for (int j = 0; j < l.count() && found < 0; ++j) {
            if (DescendantEntryName(l.entries.at(j)) == parent)
                found = j;
        }
        if (found < 0)
            break;
        line[g - 1] = found;
        parent = l.parent.at(found);
    }
    return line;
}

QString DescendantTitle(int generation, int count)
{
    QString title = QStringLiteral("Generation ") + QString::number(generation);
    if (count > 0)
        title += QStringLiteral("     (") + QString::number(count) + QStringLiteral(" descendants)");
    return title;
}

QString DescendantHelpText(const QString& term)
{
    return QStringLiteral("Click on later generation ") + term + QStringLiteral("s") +
           QStringLiteral(" to highlight ancestral line");
}

QString DescendantLegendText() { return QStringLiteral(">>  Bloodline continues\n>|   End of bloodline"); }

QString DisplayParentsText(const QString& name, const QString& storedFather, const QString& storedMother,
                           const QString& fatherTerm, const QString& motherTerm)
{
    return name + QStringLiteral("        [ ") + fatherTerm + QStringLiteral(": ") + DecodeText(storedFather) +
           QStringLiteral("   x   ") + motherTerm + QStringLiteral(": ") + DecodeText(storedMother) +
           QStringLiteral(" ]");
}

QString DisplayParentsText(const QString& entryName)
{
    try {
        Recordset rs = gDatabase.OpenRecordset(QStringLiteral("SELECT * FROM tree WHERE name = '") +
                                               EncodeText(entryName) + QLatin1Char('\''));
        if (!rs.Eof())
            return DisplayParentsText(entryName, rs.Fields(QStringLiteral("PS")).toString(),
                                      rs.Fields(QStringLiteral("PD")).toString(), gUser.Father, gUser.Mother);
    } catch (const JetError& e) {
        LogError(QStringLiteral("Descendants Error ") + QString::number(e.number()) + QStringLiteral(" - ") +
                 e.description());
    }
    return entryName;
}
