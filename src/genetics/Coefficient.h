// SPDX-License-Identifier: GPL-3.0-or-later
// The coefficient of inbreeding by Wright's path method, worked out on names: the common ancestors of
// the two halves of an ancestor array, their contributions, the COI column they are stored in, the bulk
// run that stores one for every animal, and the record page's caption.
#pragma once

#include "genetics/FamilyTree.h"

#include <QHash>
#include <QString>
#include <QStringList>
#include <QVector>
#include <unordered_map>

struct CommonAncestor {
    QString name; // stored form
    qint16 damGeneration = 0;
    qint16 sireGeneration = 0;
};

// One row of lstCoefficient after Calculate: sub-items 1 to 4. The fifth column is never filled.
struct AncestorRow {
    QString name; // decoded for display
    QString sireGeneration;
    QString damGeneration;
    QString contribution; // "12.5%", or "0.009% or less"
};

// What a calculation shows on the calculator, and the calculator's setting it reads. The defaults
// show nothing, for callers without a window.
class CoefficientView {
public:
    virtual ~CoefficientView() = default;
    virtual void addAncestorRow(const AncestorRow&) {}
    // cboGenerations. A bulk run reads it before every record; it becomes "10" after the message that
    // refuses more.
    virtual QString generationsText() const { return QStringLiteral("6"); }
    virtual void setGenerationsText(const QString&) {}
    // The bulk run's rows: one added per record, its coefficient text set once it is known.
    virtual void addRecordRow(const QString& name, const QString& breed, const QString& sex)
    {
        Q_UNUSED(name) Q_UNUSED(breed) Q_UNUSED(sex)
    }
    virtual void setRecordCoefficient(const QString&) {}
    // fraction of the records done; label "45% completed", or "Operation completed" at the end.
    virtual void progress(double fraction, const QString& label) { Q_UNUSED(fraction) Q_UNUSED(label) }
};

// Where a calculation reads an ancestor's own inbreeding and writes its results: the COI column.
class CoefficientStore {
public:
    virtual ~CoefficientStore() = default;
    // ReadStoredCoefficient: a percentage; 0 when there is no record or the value is no number.
    virtual double read(const QString& name) = 0;
    // SaveCoefficient: a fraction, stored as percentage text.
    virtual void save(const QString& name, double value) = 0;
};

// One statement per call on the open data file.
class DatabaseCoefficients : public CoefficientStore {
public:
    double read(const QString& name) override;
    void save(const QString& name, double value) override;
};

// Names as the data file's engine compares them in "WHERE name = '...'": the letter case of A to Z
// does not count. A name asked for is encoded first, so an apostrophe counts as "$".
struct EngineNameHash {
    size_t operator()(const QString& name) const noexcept;
};
struct EngineNameEqual {
    bool operator()(const QString& a, const QString& b) const noexcept;
};

// name, PS and PD of every row of `tree`, read once for a bulk run. Answers as GetFather and GetMother
// do: the first row that the per-name query would return, "" for a Null or a name without a row.
class ParentTable : public ParentLookup {
public:
    ParentTable() = default;
    // Reads the open data file; throws JetError when it cannot.
    void load();
    QString father(const QString& name) override;
    QString mother(const QString& name) override;
    qsizetype size() const { return qsizetype(m_parents.size()); }
    // Some row has a name that "WHERE name = 'name'" finds; name holds no apostrophe.
    bool hasRow(const QString& name) const { return m_parents.find(name) != m_parents.end(); }

private:
    struct Parents {
        QString father, mother;
    };
    const Parents* lookup(const QString& name);
    std::unordered_map<QString, Parents, EngineNameHash, EngineNameEqual> m_parents;
    QString m_lastName; // holds the text, so that its address stays its own
    const Parents* m_last = nullptr;
};

// The per-name query, both parents at once and each name asked once: for single calculations, where
// reading the whole table would cost more than it saves. Valid while nothing writes PS or PD.
class RememberingParents : public ParentLookup {
public:
    QString father(const QString& name) override;
    QString mother(const QString& name) override;

private:
    struct Parents {
        QString father, mother;
    };
    const Parents& lookup(const QString& name);
    QHash<QString, Parents> m_known;
};

// Round(x, k) of the program's run time: k decimal places, ties to the even digit.
double RoundEven(double value, int places);
// A number in its shortest plain form: 12.5, 0, 31.25.
QString NumberText(double value);
// CInt of a text: a whole number of 16 bits, rounded ties to even; false when the text is no number or
// out of range.
bool ToInteger16(const QString& text, qint16* value);

// The array size a search of so many generations uses: 32 up to 4, then 64 ... 2048 for 10 and more.
qint16 SearchSize(int generations);
qint16 GenerationOfPosition(qint16 position);
// The working copy a position of the array is compared in; positions 2047 and 2048 are in neither.
enum class ArraySide { Sire, Dam, Neither };
ArraySide SideOfPosition(int position);

// The run-time errors that end a calculation: the 16-bit path mark passing 32767.
struct CoefficientOverflow {};

// Steps 1 to 3 of the search: the array for name, or for a test mating of sire and dam when name is
// blank. More than 10 generations shows the message and sets view's generations to "10".
QStringList CoefficientTree(const QString& name, QString sire, QString dam, qint16 generations, ParentLookup& parents,
                            CoefficientView* view, qint16* searchSize);
// The comparison of the two working copies. Finds the same records, in the same order, as comparing
// every sire row with every dam row and marking the positions behind each find. Throws
// CoefficientOverflow past 32767 finds.
QVector<CommonAncestor> CompareAncestorArrays(const QStringList& tree, qint16 searchSize);
QVector<CommonAncestor> FindCommonAncestors(const QString& name, const QString& sire, const QString& dam,
                                            qint16 generations, ParentLookup& parents, CoefficientView* view = nullptr);

// Returns the coefficient as a fraction. A blank name is a test mating of sire and dam, whose total is
// not stored; a named animal's parents come from its record. Every common ancestor's COI is overwritten
// with its contribution, as the program has always done. A run-time error ends it silently with the
// total so far and nothing stored for the subject. `reserved` is read by nobody.
double CalculateCoefficient(const QString& name, const QString& sire, const QString& dam, qint16 generations,
                            bool reserved, bool showReport, CoefficientView* view = nullptr);
double CalculateCoefficient(const QString& name, const QString& sire, const QString& dam, qint16 generations,
                            bool reserved, bool showReport, ParentLookup& parents, CoefficientStore& store,
                            CoefficientView* view);

// While a bulk run works, these read and write the run's values in memory, which reach the file before
// the run ends; so a calculation made meanwhile (the record page's) sees what the run has stored.
double ReadStoredCoefficient(const QString& name);
void SaveCoefficient(const QString& name, double value);
// Throws JetError.
void ClearCoefficients();

// The bulk run over the records that sql selects, in its order: clears every COI first, then works out
// and stores each record's coefficient with the generations the view reads, yielding to the event loop
// after each record. Ends at a record whose name, PS or PD is Null, on an error of the file, and at once
// on a file opened for reading; stopped then says why (it is also logged). Returns true when it
// reached "Operation completed". The run is one transaction: a process killed during it leaves the
// file as it was before. Parents are read once at the start: the run expects no edits while it works.
bool UpdateCoefficients(const QString& sql, CoefficientView& view, QString* stopped = nullptr);

// "COI: 12.5%" for the record page; works out (and stores) the coefficient over 6 generations.
QString CoefficientCaption(const QString& name);

// The settings' word for a male or a female, "Undefined" for any other sex.
QString SexWordOrUndefined(const QString& sex);

// The bulk run's text of a coefficient: "12.5%", and "07.5%" below 10 so that the column sorts as text.
QString BulkCoefficientText(double coefficient);
