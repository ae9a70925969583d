// SPDX-License-Identifier: GPL-3.0-or-later
#include "genetics/FamilyTree.h"

#include "session/globals.h"
#include "store/DataFile.h"
#include "store/JetError.h"

namespace {

QString parentOf(const QString& name, const char* column)
{
    try {
        Recordset rs = gDatabase.OpenRecordset(QStringLiteral("SELECT name,") + QLatin1String(column) +
                                               QStringLiteral(" FROM tree WHERE name = '") + EncodeText(name) +
                                               QStringLiteral("' "));
        if (rs.Eof())
            return QString();
        return rs.Fields(QLatin1String(column)).toString();
    } catch (const JetError&) {
        return QString();
    }
}

} // namespace

QString GetFather(const QString& name) { return parentOf(name, "PS"); }
QString GetMother(const QString& name) { return parentOf(name, "PD"); }

QString DatabaseParents::father(const QString& name) { return GetFather(name); }
QString DatabaseParents::mother(const QString& name) { return GetMother(name); }

bool IsNobody(const QString& name)
{
    return name.isEmpty() || name.compare(QLatin1String("Unknown"), Qt::CaseInsensitive) == 0;
}

void FillFamilyTree(const QString& name, QStringList& tree, qint16 limit, const QString& sire, const QString& dam)
{
    DatabaseParents parents;
    FillFamilyTree(name, tree, limit, sire, dam, parents);
}

void FillFamilyTree(const QString& name, QStringList& tree, qint16 limit, const QString& sire, const QString& dam,
                    ParentLookup& parents)
{
    const qsizetype size = qMax<qsizetype>(3, qsizetype(limit) + 2);
    while (tree.size() < size)
        tree.append(QString());
    tree[0] = name;
    if (name.isEmpty()) {
        tree[1] = sire;
        tree[2] = dam;
    } else {
        tree[1] = parents.father(name);
        tree[2] = parents.mother(name);
    }
    if (tree[1].isEmpty() && tree[2].isEmpty())
        return;
    // Breadth first: "Unknown" is not blank here and costs its two fruitless look-ups.
    for (qsizetype i = 1, j = 3; j <= limit; ++i, j += 2) {
        if (!tree[i].isEmpty()) {
            tree[j] = parents.father(tree[i]);
            tree[j + 1] = parents.mother(tree[i]);
        } else {
            tree[j].clear();
            tree[j + 1].clear();
        }
    }
}
