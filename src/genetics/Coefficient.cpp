// SPDX-License-Identifier: GPL-3.0-or-later
#include "genetics/Coefficient.h"

#include "base/Log.h"
#include "session/OpenDataFile.h"
#include "base/Ui.h"
#include "session/globals.h"
#include "store/DataFile.h"
#include "store/JetError.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <vector>

namespace {

// The working copies have rows 0 to 3000; marks behind a find never reach past them.
constexpr int kLastRow = 3000;
constexpr int kMaxPathMark = 32767;

// A name that takes part in the comparison: not blank, not "Unknown" in any letter case.
bool isCompared(const QString& name)
{
    // Lower-casing never shortens a text, and what it lengthens gains a mark that "unknown" lacks.
    return !name.isEmpty() && !(name.size() == 7 && name.toLower() == QLatin1String("unknown"));
}

bool isNull(const QVariant& v) { return !v.isValid() || v.isNull(); }

// The highest path mark written behind any proper ancestor position of row in heap order: what the
// row's mark column would hold after every MarkAncestorPositions so far, since marks only rise.
int markOf(const std::array<qint16, kLastRow + 1>& lastFind, int row)
{
    int mark = 0;
    for (int q = (row - 1) / 2; q > 0; q = (q - 1) / 2)
        mark = qMax<int>(mark, lastFind[size_t(q)]);
    return mark;
}

// The values of a bulk run. It starts from a cleared column, so every value is known without reading
// the file; writes are kept and go to the file together, the last value of each name once. A name
// holding an apostrophe cannot stand in the statements' quotes; such names take the file's way.
class BulkCoefficients {
public:
    explicit BulkCoefficients(const ParentTable& rows) : m_rows(rows) {}

    static bool takesFilesWay(const QString& name) { return name.contains(QLatin1Char('\'')); }

    double read(const QString& name) const
    {
        const auto it = m_values.find(name);
        return it == m_values.end() ? 0 : it->second.number;
    }

    // percentage: the value already rounded as it is stored.
    void save(const QString& name, double percentage)
    {
        if (!m_rows.hasRow(name))
            return; // the statement would change no row
        Value& v = m_values.try_emplace(name).first->second;
        v.name = name;
        // Its text reads back as this very number: the nearest double to a number of two decimals.
        v.number = percentage;
        if (!v.dirty) {
            v.dirty = true;
            m_dirty.push_back(&v);
        }
    }

    void flush();

private:
    struct Value {
        QString name; // the last spelling written, which finds the same rows as any other
        double number = 0;
        bool dirty = false;
    };
    const ParentTable& m_rows;
    std::unordered_map<QString, Value, EngineNameHash, EngineNameEqual> m_values;
    std::vector<Value*> m_dirty;
};

BulkCoefficients* gBulk = nullptr;

void writeCoefficient(const QString& name, const QString& text)
{
    try {
        gDatabase.Execute(QStringLiteral("UPDATE tree SET COI = '") + text + QStringLiteral("' WHERE name = '") + name +
                          QLatin1Char('\''));
    } catch (const JetError& e) {
        LogError(QStringLiteral("Save COI Error ") + QString::number(e.number()) + QStringLiteral(" - ") +
                 e.description());
        Ui::message(QStringLiteral("Save COI Error ") + e.description(), Ui::Buttons::Ok, Ui::Icon::Critical);
    }
}

void BulkCoefficients::flush()
{
    // Names of one value go in one statement; no two names find the same rows, so the order of the
    // statements does not matter.
    QHash<QString, QStringList> byValue;
    for (Value* v : m_dirty) {
        byValue[NumberText(v->number)].append(v->name);
        v->dirty = false;
    }
    m_dirty.clear();
    constexpr qsizetype kNamesPerStatement = 200;
    for (auto it = byValue.cbegin(); it != byValue.cend(); ++it) {
        const QStringList& names = it.value();
        for (qsizetype from = 0; from < names.size(); from += kNamesPerStatement) {
            const QStringList part = names.mid(from, kNamesPerStatement);
            try {
                gDatabase.Execute(QStringLiteral("UPDATE tree SET COI = '") + it.key() +
                                  QStringLiteral("' WHERE name IN ('") + part.join(QStringLiteral("', '")) +
                                  QStringLiteral("')"));
            } catch (const JetError&) {
                // One by one, so that each failing name says so as its own statement would.
                for (const QString& name : part)
                    writeCoefficient(name, it.key());
            }
        }
    }
}

} // namespace

// ---------------------------------------------------------------------------------------------------
// Numbers

double RoundEven(double value, int places)
{
    const double scale = std::pow(10.0, places);
    return std::nearbyint(value * scale) / scale;
}

QString NumberText(double value)
{
    if (value == 0)
        return QStringLiteral("0");
    QString s = QString::number(value, 'f', 10);
    if (s.contains(QLatin1Char('.'))) {
        while (s.endsWith(QLatin1Char('0')))
            s.chop(1);
        if (s.endsWith(QLatin1Char('.')))
            s.chop(1);
    }
    return s;
}

bool ToInteger16(const QString& text, qint16* value)
{
    bool ok = false;
    const double d = text.trimmed().toDouble(&ok);
    if (!ok || !std::isfinite(d))
        return false;
    const double r = std::nearbyint(d);
    if (r < -32768 || r > 32767)
        return false;
    *value = qint16(r);
    return true;
}

QString SexWordOrUndefined(const QString& sex)
{
    if (sex == QLatin1String("male"))
        return gUser.Male;
    if (sex == QLatin1String("female"))
        return gUser.Female;
    return QStringLiteral("Undefined");
}

QString BulkCoefficientText(double coefficient)
{
    const QString text = NumberText(RoundEven(coefficient * 100, 2)) + QLatin1Char('%');
    return coefficient * 100 < 10 ? QLatin1Char('0') + text : text;
}

// ---------------------------------------------------------------------------------------------------
// Positions

qint16 SearchSize(int generations)
{
    if (generations < 5)
        return 32;
    if (generations >= 10)
        return 2048;
    return qint16(1 << (generations + 1));
}

qint16 GenerationOfPosition(qint16 position)
{
    // Past 63 these are not the generation boundaries, and the top jumps from 9 to 11: kept as they are.
    static const int thresholds[][2] = {{3, 0}, {7, 1}, {15, 2}, {31, 3}, {63, 4}, {97, 5}, {225, 6}, {481, 7},
                                        {993, 8}, {2017, 9}};
    for (const auto& t : thresholds) {
        if (position < t[0])
            return qint16(t[1]);
    }
    return 11;
}

ArraySide SideOfPosition(int position)
{
    // From 8 generations on the sire's ranges end one position past the middle; kept as they are.
    static const int sire[][2] = {{1, 1},     {3, 4},     {7, 10},    {15, 22},    {31, 46},
                                  {63, 94},   {127, 190}, {255, 383}, {511, 767},  {1023, 1535}};
    static const int dam[][2] = {{2, 2},     {5, 6},     {11, 14},   {23, 30},   {47, 62},
                                 {95, 126},  {191, 254}, {384, 510}, {768, 1022}, {1536, 2046}};
    for (const auto& r : sire) {
        if (position >= r[0] && position <= r[1])
            return ArraySide::Sire;
    }
    for (const auto& r : dam) {
        if (position >= r[0] && position <= r[1])
            return ArraySide::Dam;
    }
    return ArraySide::Neither;
}

// ---------------------------------------------------------------------------------------------------
// Parents

namespace {

// One letter as the engine's NOCASE sees it (it folds case for every letter, one letter for one), with
// the apostrophe in its stored form.
inline char32_t engineFold(char16_t c)
{
    if (c < 0x80) {
        if (c >= u'A' && c <= u'Z')
            return char16_t(c + (u'a' - u'A'));
        return c == u'\'' ? u'$' : c;
    }
    return QChar::toCaseFolded(char32_t(c));
}

} // namespace

size_t EngineNameHash::operator()(const QString& name) const noexcept
{
    size_t h = 14695981039346656037ULL;
    for (const QChar c : name)
        h = (h ^ engineFold(c.unicode())) * 1099511628211ULL;
    return h;
}

bool EngineNameEqual::operator()(const QString& a, const QString& b) const noexcept
{
    if (a.size() != b.size())
        return false;
    for (qsizetype i = 0; i < a.size(); ++i) {
        if (engineFold(a.at(i).unicode()) != engineFold(b.at(i).unicode()))
            return false;
    }
    return true;
}

void ParentTable::load()
{
    m_parents.clear();
    m_lastName = QString();
    m_last = nullptr;
    // In the order of the rows, so that of the names the engine takes for one, the first row stays, as
    // the per-name query finds it first.
    Recordset rs = gDatabase.OpenRecordset(QStringLiteral("SELECT name, PS, PD FROM tree ORDER BY id"));
    for (; !rs.Eof(); rs.MoveNext()) {
        const QVariant name = rs.Fields(0);
        // A stored apostrophe is never found: the query asks for the encoded name.
        if (isNull(name) || name.toString().contains(QLatin1Char('\'')))
            continue;
        m_parents.try_emplace(name.toString(), Parents{rs.Fields(1).toString(), rs.Fields(2).toString()});
    }
}

const ParentTable::Parents* ParentTable::lookup(const QString& name)
{
    // The walk asks for the father and then the mother of the same text.
    if (name.constData() != m_lastName.constData() || name.size() != m_lastName.size()) {
        m_lastName = name;
        const auto it = m_parents.find(name);
        m_last = it == m_parents.end() ? nullptr : &it->second;
    }
    return m_last;
}

QString ParentTable::father(const QString& name)
{
    const Parents* p = lookup(name);
    return p ? p->father : QString();
}

QString ParentTable::mother(const QString& name)
{
    const Parents* p = lookup(name);
    return p ? p->mother : QString();
}

const RememberingParents::Parents& RememberingParents::lookup(const QString& name)
{
    auto it = m_known.find(name);
    if (it != m_known.end())
        return *it;
    Parents p;
    try {
        Recordset rs = gDatabase.OpenRecordset(QStringLiteral("SELECT name,PS,PD FROM tree WHERE name = '") +
                                               EncodeText(name) + QStringLiteral("' "));
        if (!rs.Eof()) {
            p.father = rs.Fields(1).toString();
            p.mother = rs.Fields(2).toString();
        }
    } catch (const JetError&) {
    }
    return *m_known.insert(name, p);
}

QString RememberingParents::father(const QString& name) { return lookup(name).father; }
QString RememberingParents::mother(const QString& name) { return lookup(name).mother; }

// ---------------------------------------------------------------------------------------------------
// The stored values

double DatabaseCoefficients::read(const QString& name) { return ReadStoredCoefficient(name); }
void DatabaseCoefficients::save(const QString& name, double value) { SaveCoefficient(name, value); }

double ReadStoredCoefficient(const QString& name)
{
    if (gBulk && !BulkCoefficients::takesFilesWay(name))
        return gBulk->read(name);
    try {
        Recordset rs =
            gDatabase.OpenRecordset(QStringLiteral("SELECT coi FROM tree where name = '") + name + QLatin1Char('\''));
        if (rs.Eof())
            return 0;
        bool ok = false;
        const double value = rs.Fields(0).toString().trimmed().toDouble(&ok);
        return ok ? value : 0;
    } catch (const JetError&) {
        return 0;
    }
}

void SaveCoefficient(const QString& name, double value)
{
    const double percentage = RoundEven(value * 100, 2);
    if (gBulk && !BulkCoefficients::takesFilesWay(name))
        gBulk->save(name, percentage);
    else if (!gDatabase.isReadOnly()) // a file opened for reading shows the value and keeps its own
        writeCoefficient(name, NumberText(percentage));
}

void ClearCoefficients() { gDatabase.Execute(QStringLiteral("UPDATE tree SET COI = ''")); }

// ---------------------------------------------------------------------------------------------------
// The search

QStringList CoefficientTree(const QString& name, QString sire, QString dam, qint16 generations, ParentLookup& parents,
                            CoefficientView* view, qint16* searchSize)
{
    if (generations > 10) {
        Ui::message(QStringLiteral("Maximum search is 10 generations."), Ui::Buttons::Ok, Ui::Icon::Exclamation,
                    QStringLiteral("Error"));
        if (view)
            view->setGenerationsText(QStringLiteral("10"));
    }
    *searchSize = SearchSize(generations);
    if (sire.isEmpty())
        sire = parents.father(name);
    if (dam.isEmpty())
        dam = parents.mother(name);
    QStringList tree;
    tree.reserve(*searchSize + 2);
    for (int i = 0; i <= *searchSize; ++i)
        tree.append(QString());
    if (!name.isEmpty())
        FillFamilyTree(name, tree, *searchSize, QString(), QString(), parents);
    else
        FillFamilyTree(QString(), tree, *searchSize, sire, dam, parents);
    return tree;
}

QVector<CommonAncestor> CompareAncestorArrays(const QStringList& tree, qint16 searchSize)
{
    const int last = qMin<int>(qMin<int>(searchSize, kLastRow), int(tree.size()) - 1);
    // The dam rows by name, each name's rows in rising order: the only rows that the sire rows of that
    // name can meet.
    struct DamRow {
        const QString* name;
        qint16 position;
    };
    static thread_local std::vector<DamRow> damRows;
    damRows.clear();
    for (int p = 1; p <= last; ++p) {
        if (SideOfPosition(p) == ArraySide::Dam && isCompared(tree.at(p)))
            damRows.push_back({&tree.at(p), qint16(p)});
    }
    QVector<CommonAncestor> found;
    if (damRows.empty())
        return found;
    const auto byName = [](const DamRow& a, const DamRow& b) { return *a.name < *b.name; };
    std::stable_sort(damRows.begin(), damRows.end(), byName);

    // The path mark of the last find at each row. A find marks every row behind it; the mark a row holds
    // is therefore the latest, and so highest, mark of the finds at the rows in front of it.
    std::array<qint16, kLastRow + 1> lastSireFind{};
    std::array<qint16, kLastRow + 1> lastDamFind{};
    int pathMark = 1;
    for (int s = 1; s <= last; ++s) {
        if (SideOfPosition(s) != ArraySide::Sire || !isCompared(tree.at(s)))
            continue;
        const auto [first, end] = std::equal_range(damRows.begin(), damRows.end(), DamRow{&tree.at(s), 0}, byName);
        if (first == end)
            continue;
        // Finds at s mark only the rows behind s, so its own mark holds through the dam rows.
        const int sireMark = markOf(lastSireFind, s);
        for (auto row = first; row != end; ++row) {
            const qint16 d = row->position;
            const int damMark = markOf(lastDamFind, d);
            if (sireMark == damMark && sireMark != 0)
                continue;
            found.append(CommonAncestor{tree.at(s), GenerationOfPosition(d), GenerationOfPosition(qint16(s))});
            lastSireFind[size_t(s)] = qint16(pathMark);
            lastDamFind[size_t(d)] = qint16(pathMark);
            if (pathMark == kMaxPathMark)
                throw CoefficientOverflow{};
            ++pathMark;
        }
    }
    return found;
}

QVector<CommonAncestor> FindCommonAncestors(const QString& name, const QString& sire, const QString& dam,
                                            qint16 generations, ParentLookup& parents, CoefficientView* view)
{
    qint16 searchSize = 0;
    const QStringList tree = CoefficientTree(name, sire, dam, generations, parents, view, &searchSize);
    return CompareAncestorArrays(tree, searchSize);
}

// ---------------------------------------------------------------------------------------------------
// The coefficient

double CalculateCoefficient(const QString& name, const QString& sire, const QString& dam, qint16 generations,
                            bool reserved, bool showReport, ParentLookup& parents, CoefficientStore& store,
                            CoefficientView* view)
{
    Q_UNUSED(reserved)
    double total = 0;
    QVector<CommonAncestor> ancestors;
    try {
        ancestors = FindCommonAncestors(name, sire, dam, generations, parents, view);
    } catch (const CoefficientOverflow&) {
        return total;
    }
    for (const CommonAncestor& a : ancestors) {
        const int n = a.sireGeneration + a.damGeneration + 1;
        const double own = store.read(a.name);
        const double c = RoundEven((1 / std::pow(2.0, n)) * (own / 100 + 1), 10);
        // Over the ancestor's own value, which the next occurrence or the next animal reads: the program's
        // way, kept.
        store.save(a.name, c);
        total += c;
        if (showReport && view) {
            AncestorRow row;
            row.name = DecodeText(a.name);
            row.sireGeneration = QString::number(a.sireGeneration + 1);
            row.damGeneration = QString::number(a.damGeneration + 1);
            row.contribution = NumberText(RoundEven(c * 100, 2)) + QLatin1Char('%');
            if (row.contribution == QLatin1String("0%"))
                row.contribution = QStringLiteral("0.009% or less");
            view->addAncestorRow(row);
        }
    }
    if (!name.isEmpty())
        store.save(EncodeText(name), total);
    return total;
}

double CalculateCoefficient(const QString& name, const QString& sire, const QString& dam, qint16 generations,
                            bool reserved, bool showReport, CoefficientView* view)
{
    RememberingParents parents;
    DatabaseCoefficients store;
    // The writes of one calculation land together; inside a bulk run this is a savepoint of its run.
    std::optional<Transaction> transaction;
    try {
        transaction.emplace(gDatabase);
    } catch (const JetError&) {
    }
    const double f = CalculateCoefficient(name, sire, dam, generations, reserved, showReport, parents, store, view);
    if (transaction) {
        try {
            transaction->commit();
        } catch (const JetError&) {
        }
    }
    return f;
}

QString CoefficientCaption(const QString& name)
{
    const double f = CalculateCoefficient(name, GetFather(name), GetMother(name), 6, true, false);
    return QStringLiteral("COI: ") + NumberText(RoundEven(f * 100, 2)) + QLatin1Char('%');
}

// ---------------------------------------------------------------------------------------------------
// The bulk run

namespace {

// Installs the run's values for ReadStoredCoefficient and SaveCoefficient, and writes them out when
// the run ends in any way.
class ActiveBulk {
public:
    explicit ActiveBulk(const ParentTable& rows) : m_values(rows) { gBulk = &m_values; }
    ~ActiveBulk()
    {
        gBulk = nullptr;
        if (gDatabase.isOpen())
            m_values.flush();
    }
    void flush() { m_values.flush(); }

private:
    BulkCoefficients m_values;
};

// How long others may see the file behind the run's values, while it yields.
constexpr qint64 kFlushMilliseconds = 250;

// Why the run ended before its last record; "" when it completed.
QString runUpdate(const QString& sql, CoefficientView& view)
{
    ClearCoefficients();
    ParentTable parents;
    parents.load();
    ActiveBulk active(parents);
    DatabaseCoefficients store;
    QElapsedTimer sinceFlush;
    sinceFlush.start();

    Recordset rs = gDatabase.OpenRecordset(sql);
    if (rs.Eof())
        return QStringLiteral("There are no records to calculate.");
    rs.MoveLast();
    const qint64 count = rs.RecordCount();
    rs.MoveFirst();
    const int nameColumn = rs.FieldIndex(QStringLiteral("name"));
    const int fatherColumn = rs.FieldIndex(QStringLiteral("PS"));
    const int motherColumn = rs.FieldIndex(QStringLiteral("PD"));
    const int breedColumn = rs.FieldIndex(QStringLiteral("Breed"));
    const int sexColumn = rs.FieldIndex(QStringLiteral("Sex"));
    if (nameColumn < 0 || fatherColumn < 0 || motherColumn < 0 || breedColumn < 0 || sexColumn < 0)
        return QStringLiteral("The records lack a name, parent, breed or sex column.");

    qint64 done = 0;
    for (; !rs.Eof(); rs.MoveNext()) {
        const QVariant name = rs.Fields(nameColumn);
        if (isNull(name))
            return QStringLiteral("A record has no name.");
        view.addRecordRow(DecodeText(name.toString()), rs.Fields(breedColumn).toString(),
                          SexWordOrUndefined(rs.Fields(sexColumn).toString()));
        const QVariant father = rs.Fields(fatherColumn);
        const QVariant mother = rs.Fields(motherColumn);
        if (isNull(father) || isNull(mother))
            return DecodeText(name.toString()) + QStringLiteral(" has no ") +
                   (isNull(father) ? gUser.Father : gUser.Mother) + QStringLiteral(" field (it is Null).");
        qint16 generations = 0;
        if (!ToInteger16(view.generationsText(), &generations))
            return QStringLiteral("The number of generations is not a whole number.");
        const double f = CalculateCoefficient(name.toString(), father.toString(), mother.toString(), generations, true,
                                              false, parents, store, &view);
        view.setRecordCoefficient(BulkCoefficientText(f));
        ++done;
        view.progress(double(done) / count, QString::number(done * 100 / count) + QStringLiteral("% completed"));
        if (sinceFlush.elapsed() >= kFlushMilliseconds) {
            active.flush();
            sinceFlush.restart();
        }
        QCoreApplication::processEvents();
        if (!gDatabase.isOpen())
            return QStringLiteral("The data file was closed.");
    }
    view.progress(1.0, QStringLiteral("Operation completed"));
    return {};
}

} // namespace

bool UpdateCoefficients(const QString& sql, CoefficientView& view, QString* stopped)
{
    QString why;
    if (gDatabase.isReadOnly()) {
        why = QStringLiteral("The data file can only be read: no coefficient was stored.");
    } else {
        try {
            Transaction transaction(gDatabase);
            try {
                why = runUpdate(sql, view);
            } catch (const JetError& e) {
                why = QString::number(e.number()) + QStringLiteral(" - ") + e.description();
            }
            // What was done stays, also when the run ended early.
            transaction.commit();
        } catch (const JetError& e) {
            why = QString::number(e.number()) + QStringLiteral(" - ") + e.description();
        }
    }
    if (!why.isEmpty())
        LogError(QStringLiteral("Update All stopped: ") + why);
    if (stopped)
        *stopped = why;
    return why.isEmpty();
}
