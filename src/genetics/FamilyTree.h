// SPDX-License-Identifier: GPL-3.0-or-later
// The ancestor walk. A pedigree is never stored: it is rebuilt from the PS and PD columns of `tree`
// whenever it is needed, into an array in heap order (0 the subject, 2k+1 the father and 2k+2 the
// mother of k). Every reader of a pedigree goes through FillFamilyTree.
#pragma once

#include <QString>
#include <QStringList>

// Where the walk reads an animal's parents: the data file, or a table read into memory once for a
// bulk run. Names come and go in their stored form; "" means no such animal or no parent.
class ParentLookup {
public:
    virtual ~ParentLookup() = default;
    virtual QString father(const QString& name) = 0;
    virtual QString mother(const QString& name) = 0;
};

// One query per call on the open data file.
class DatabaseParents : public ParentLookup {
public:
    QString father(const QString& name) override;
    QString mother(const QString& name) override;
};

// The parents of one animal on the open data file; "" when it has no record, the column is Null or the
// look-up fails. name may be stored or plain: it is encoded again, which leaves a stored name as it is.
QString GetFather(const QString& name);
QString GetMother(const QString& name);

// Fills tree[0..limit] for name, or for a test mating of sire and dam when name is blank. The list is
// grown to hold limit + 2 entries (an odd limit writes one place beyond itself); positions the walk
// does not reach stay as they were, so callers pass a fresh list. A loop in the data is harmless: the
// walk stops at limit alone.
void FillFamilyTree(const QString& name, QStringList& tree, qint16 limit, const QString& sire = QString(),
                    const QString& dam = QString());
void FillFamilyTree(const QString& name, QStringList& tree, qint16 limit, const QString& sire, const QString& dam,
                    ParentLookup& parents);

// "" and "Unknown" in any letter case stand for nobody.
bool IsNobody(const QString& name);
