// SPDX-License-Identifier: GPL-3.0-or-later
// The indexed search against the literal loops: on random arrays, on random pedigrees with repeats,
// loops, "Unknown" in any case and names that differ only in letter case, and on whole bulk runs over a
// generated data file, where the stored values show every overwrite and second read. Also the parent
// table of the bulk run against the per-name query.
#include "support/TestEnv.h"

#include "LiteralCoefficient.h"
#include "genetics/Coefficient.h"
#include "genetics/FamilyTree.h"
#include "session/OpenDataFile.h"
#include "session/globals.h"
#include "store/DataFile.h"

#include <QFile>
#include <QHash>
#include <QRandomGenerator>
#include <gtest/gtest.h>

namespace {

bool sameAncestors(const QVector<CommonAncestor>& a, const QVector<CommonAncestor>& b, QString* why)
{
    if (a.size() != b.size()) {
        *why = QStringLiteral("%1 finds against %2").arg(a.size()).arg(b.size());
        return false;
    }
    for (qsizetype i = 0; i < a.size(); ++i) {
        if (a[i].name != b[i].name || a[i].sireGeneration != b[i].sireGeneration ||
            a[i].damGeneration != b[i].damGeneration) {
            *why = QStringLiteral("find %1: %2 %3/%4 against %5 %6/%7")
                       .arg(i)
                       .arg(a[i].name)
                       .arg(a[i].sireGeneration)
                       .arg(a[i].damGeneration)
                       .arg(b[i].name)
                       .arg(b[i].sireGeneration)
                       .arg(b[i].damGeneration);
            return false;
        }
    }
    return true;
}

// Both searches on one array; true when they agree, overflow included.
::testing::AssertionResult agree(const QStringList& tree, qint16 size, int* finds = nullptr)
{
    QVector<CommonAncestor> fast, slow;
    bool fastOverflow = false, slowOverflow = false;
    try {
        fast = CompareAncestorArrays(tree, size);
    } catch (const CoefficientOverflow&) {
        fastOverflow = true;
    }
    try {
        slow = literal::Compare(tree, size);
    } catch (const CoefficientOverflow&) {
        slowOverflow = true;
    }
    if (fastOverflow != slowOverflow)
        return ::testing::AssertionFailure() << "overflow " << fastOverflow << " against " << slowOverflow;
    QString why;
    if (!sameAncestors(fast, slow, &why))
        return ::testing::AssertionFailure() << why.toStdString();
    if (finds)
        *finds = fastOverflow ? 32767 : int(fast.size());
    return ::testing::AssertionSuccess();
}

QString variantOf(const QString& name, QRandomGenerator& rng)
{
    switch (rng.bounded(12)) {
    case 0: return name.toUpper();
    case 1: return name.toLower();
    default: return name;
    }
}

const QStringList kNobody = {QString(), QStringLiteral("Unknown"), QStringLiteral("unknown"), QStringLiteral("UNKNOWN"),
                             QStringLiteral("unKnowN")};

// Parents held in memory, by exact name: enough to build pedigree-shaped arrays.
class MemoryParents : public ParentLookup {
public:
    QHash<QString, QPair<QString, QString>> rows;
    QString father(const QString& name) override { return rows.value(name).first; }
    QString mother(const QString& name) override { return rows.value(name).second; }
};

} // namespace

TEST(CoefficientSearch, AgreesWithTheLiteralLoopsOnRandomArrays)
{
    QRandomGenerator rng(7);
    int cases = 0, withFinds = 0;
    for (int g = 1; g <= 10; ++g) {
        const qint16 size = SearchSize(g);
        const int runs = g >= 9 ? 5 : 80;
        for (int run = 0; run < runs; ++run) {
            // A small pool repeats names a lot; a large one rarely.
            // Past 6 generations a small pool makes tens of thousands of finds, which the literal loops mark
            // slowly; the loop case below covers those.
            const int pool = g >= 9 ? 60 + int(rng.bounded(400)) : g >= 7 ? 30 + int(rng.bounded(60)) : 2 + int(rng.bounded(40));
            QStringList names;
            for (int i = 0; i < pool; ++i)
                names << QStringLiteral("Cavy%1").arg(i);
            QStringList tree;
            tree.append(QString());
            for (int p = 1; p <= size + 1; ++p) {
                const quint32 roll = rng.bounded(100);
                if (roll < 15)
                    tree.append(kNobody.at(int(rng.bounded(kNobody.size()))));
                else
                    tree.append(variantOf(names.at(int(rng.bounded(pool))), rng));
            }
            int finds = 0;
            ASSERT_TRUE(agree(tree, size, &finds)) << "generations " << g << ", run " << run;
            ++cases;
            withFinds += finds > 0;
        }
    }
    EXPECT_GT(withFinds, cases / 2);
}

TEST(CoefficientSearch, AgreesWithTheLiteralLoopsOnRandomPedigrees)
{
    QRandomGenerator rng(11);
    int cases = 0;
    for (int population = 0; population < 12; ++population) {
        // Animals whose parents are mostly older animals, sometimes younger ones or themselves (loops),
        // sometimes nobody, and sometimes a name in another letter case.
        MemoryParents parents;
        const int count = 20 + int(rng.bounded(300));
        QStringList names;
        for (int i = 0; i < count; ++i)
            names << QStringLiteral("Ped%1-%2").arg(population).arg(i);
        const auto pick = [&](int i) -> QString {
            const quint32 roll = rng.bounded(100);
            if (roll < 8 || i == 0)
                return kNobody.at(int(rng.bounded(kNobody.size())));
            if (roll < 11)
                return names.at(int(rng.bounded(count))); // any animal: loops
            if (roll < 13)
                return names.at(i);
            return variantOf(names.at(int(rng.bounded(quint32(i)))), rng);
        };
        for (int i = 0; i < count; ++i)
            parents.rows.insert(names.at(i), {pick(i), pick(i)});
        for (int g : {4, 5, 6, 7, 8, 10}) {
            const qint16 size = SearchSize(g);
            const int subjects = g >= 8 ? 3 : 25;
            for (int k = 0; k < subjects; ++k) {
                QStringList tree;
                for (int i = 0; i <= size; ++i)
                    tree.append(QString());
                if (rng.bounded(5) == 0)
                    FillFamilyTree(QString(), tree, size, names.at(int(rng.bounded(count))),
                                   names.at(int(rng.bounded(count))), parents);
                else
                    FillFamilyTree(names.at(int(rng.bounded(count))), tree, size, QString(), QString(), parents);
                ASSERT_TRUE(agree(tree, size)) << "population " << population << ", generations " << g;
                ++cases;
            }
        }
    }
    EXPECT_GT(cases, 1000);
}

TEST(CoefficientSearch, ALoopThatOverflowsThePathMarkFailsInBoth)
{
    QStringList tree;
    for (int i = 0; i <= 2049; ++i)
        tree.append(QStringLiteral("Loop"));
    int finds = 0;
    ASSERT_TRUE(agree(tree, 6, &finds));
    ASSERT_TRUE(agree(tree, SearchSize(6), &finds));
    EXPECT_GT(finds, 100);
    ASSERT_TRUE(agree(tree, SearchSize(10), &finds));
    EXPECT_EQ(finds, 32767); // both gave up where the 16-bit mark passes its limit
}

// ---------------------------------------------------------------------------------------------------
// On a data file

namespace {

class CoefficientFile : public EnvTest {
protected:
    ~CoefficientFile() override { CloseDatabase(); }

    QString path(const QString& name) const { return env.dataFolder() + name; }

    void create(const QString& name)
    {
        ASSERT_TRUE(CreateDataFile(name, env.dataFolder()));
        ASSERT_TRUE(OpenDataFile(path(name)));
        gDatabase.Execute(QStringLiteral("UPDATE cavyuser SET fldMale = 'Boar', fldFemale = 'Sow'"));
        ReadUserSettings();
    }

    void reopen(const QString& name)
    {
        CloseDatabase();
        ASSERT_TRUE(OpenDataFile(path(name)));
    }

    void copyTo(const QString& from, const QString& to)
    {
        CloseDatabase();
        QFile::remove(path(to));
        ASSERT_TRUE(QFile::copy(path(from), path(to)));
    }

    static QStringList storedValues()
    {
        QStringList values;
        Recordset rs = gDatabase.OpenRecordset(QStringLiteral("SELECT id, coi FROM tree ORDER BY id"));
        for (; !rs.Eof(); rs.MoveNext())
            values << rs.Fields(0).toString() + QLatin1Char('=') +
                          (rs.Fields(1).isNull() ? QStringLiteral("<null>") : rs.Fields(1).toString());
        return values;
    }

    // A stud in order of birth: parents mostly older animals, some nobody in any spelling, some named
    // in another letter case, a few loops, names with apostrophes, COI values already stored.
    static void generate(int count, quint32 seed)
    {
        QRandomGenerator rng(seed);
        QStringList names;
        Transaction t(gDatabase);
        for (int i = 0; i < count; ++i) {
            const bool male = rng.bounded(2) == 0;
            QString name = QStringLiteral("An%1").arg(i);
            if (i % 17 == 5)
                name = QStringLiteral("O$Neill %1").arg(i);
            names << name;
            const auto parent = [&]() -> QString {
                const quint32 roll = rng.bounded(100);
                if (i < 6 || roll < 6)
                    return kNobody.at(int(rng.bounded(kNobody.size())));
                if (roll < 7)
                    return QStringLiteral("Stray%1").arg(rng.bounded(4)); // a parent without a record
                if (roll < 8)
                    return QStringLiteral("An%1").arg(rng.bounded(quint32(count))); // a loop, through a younger one
                // Mostly the last few dozen, so that lines close in on themselves.
                const int from = qMax(0, i - 40);
                const QString p = names.at(from + int(rng.bounded(quint32(i - from))));
                if (roll < 11)
                    return p.toUpper();
                // Now and then a name with its apostrophe as typed, which no statement can quote.
                if (roll < 60 && p.contains(QLatin1Char('$')))
                    return QString(p).replace(QLatin1Char('$'), QStringLiteral("''"));
                return p;
            };
            const QString coi = rng.bounded(4) == 0 ? QStringLiteral("NULL")
                                                    : QStringLiteral("'%1'").arg(rng.bounded(3000) / 100.0);
            gDatabase.Execute(QStringLiteral("INSERT INTO tree (name, ps, pd, sex, breed, dob, coi, deceased, sold, owner) "
                                             "VALUES ('%1', '%2', '%3', '%4', 'Rex', #%5#, %6, 0, 0, %7)")
                                  .arg(name, parent(), parent(), male ? QStringLiteral("male") : QStringLiteral("female"),
                                       QDate(2000, 1, 1).addDays(i * 3).toString(QStringLiteral("MM/dd/yyyy")), coi,
                                       i % 3 ? QStringLiteral("-1") : QStringLiteral("0")));
        }
        t.commit();
    }
};

// The bulk run's rows as the literal run writes them down.
class RowsView : public CoefficientView {
public:
    explicit RowsView(QString generations) : generations(std::move(generations)) {}
    QStringList rows;
    QString label;
    QString generations;
    QString generationsText() const override { return generations; }
    void setGenerationsText(const QString& text) override { generations = text; }
    void addRecordRow(const QString& name, const QString& breed, const QString& sex) override
    {
        rows << name + QLatin1Char('|') + breed + QLatin1Char('|') + sex + QLatin1Char('|');
    }
    void setRecordCoefficient(const QString& text) override { rows.last() += text; }
    void progress(double, const QString& text) override { label = text; }
};

} // namespace

TEST_F(CoefficientFile, BulkRunsAndSingleCalculationsStoreWhatTheLiteralLoopsStore)
{
    create(QStringLiteral("stud.cav"));
    generate(260, 3);
    copyTo(QStringLiteral("stud.cav"), QStringLiteral("literal.cav"));
    copyTo(QStringLiteral("stud.cav"), QStringLiteral("fast.cav"));

    for (const QString& generations : {QStringLiteral("6"), QStringLiteral("8")}) {
        for (const bool mine : {false, true}) {
            const QString sql = mine ? QStringLiteral("Select * From tree  WHERE deceased <> -1 AND sold <> -1 AND "
                                                      "owner = -1 ORDER by DOB")
                                     : QStringLiteral("Select * From tree ORDER by DOB");
            reopen(QStringLiteral("literal.cav"));
            QStringList literalRows;
            {
                Transaction t(gDatabase); // only to spare the disk; the statements are the literal ones
                EXPECT_TRUE(literal::Update(sql, qint16(generations.toInt()), &literalRows));
                t.commit();
            }
            const QStringList literalValues = storedValues();

            reopen(QStringLiteral("fast.cav"));
            RowsView view(generations);
            EXPECT_TRUE(UpdateCoefficients(sql, view));
            EXPECT_EQ(view.label, QStringLiteral("Operation completed"));
            EXPECT_EQ(view.rows, literalRows) << "generations " << generations.toStdString();
            EXPECT_EQ(storedValues(), literalValues) << "generations " << generations.toStdString();
        }
    }

    // Single calculations one after the other, each reading what the ones before overwrote.
    QRandomGenerator rng(5);
    QStringList subjects;
    for (int i = 0; i < 40; ++i)
        subjects << QStringLiteral("An%1").arg(100 + int(rng.bounded(160)));
    const auto runAll = [&](bool fast) {
        QStringList out;
        for (int i = 0; i < subjects.size(); ++i) {
            const qint16 g = qint16(4 + i % 7);
            QVector<AncestorRow> rows;
            double f = 0;
            const bool mating = i % 4 == 3;
            const QString name = mating ? QString() : subjects.at(i);
            const QString sire = mating ? subjects.at(i) : QString();
            const QString dam = mating ? subjects.at(i - 1) : QString();
            if (fast) {
                struct Collect : CoefficientView {
                    QVector<AncestorRow>* rows;
                    void addAncestorRow(const AncestorRow& r) override { rows->append(r); }
                } view;
                view.rows = &rows;
                f = CalculateCoefficient(name, sire, dam, g, true, true, &view);
            } else {
                f = literal::Calculate(name, sire, dam, g, &rows);
            }
            QString line = QString::number(f, 'g', 17);
            for (const AncestorRow& r : rows)
                line += QLatin1Char(' ') + r.name + QLatin1Char('/') + r.sireGeneration + QLatin1Char('/') +
                        r.damGeneration + QLatin1Char('/') + r.contribution;
            out << line;
        }
        out << storedValues();
        return out;
    };
    reopen(QStringLiteral("literal.cav"));
    Transaction t(gDatabase);
    const QStringList slow = runAll(false);
    t.commit();
    reopen(QStringLiteral("fast.cav"));
    EXPECT_EQ(runAll(true), slow);
}

TEST_F(CoefficientFile, TheParentTableAnswersAsThePerNameQuery)
{
    create(QStringLiteral("parents.cav"));
    generate(400, 9);
    // Names the engine takes for one, in rows out of order, a Null parent, a row without a name.
    gDatabase.Execute(QStringLiteral("INSERT INTO tree (id, name, ps, pd) VALUES (5000, 'Twin', 'First', 'FirstDam')"));
    gDatabase.Execute(QStringLiteral("INSERT INTO tree (id, name, ps, pd) VALUES (4000, 'TWIN', 'Second', 'SecondDam')"));
    gDatabase.Execute(QStringLiteral("INSERT INTO tree (id, name, ps, pd) VALUES (6000, 'twin', 'Third', 'ThirdDam')"));
    gDatabase.Execute(QStringLiteral("INSERT INTO tree (name, ps, pd) VALUES ('NullSire', NULL, 'Dam')"));
    gDatabase.Execute(QStringLiteral("INSERT INTO tree (name, ps, pd) VALUES (NULL, 'Ghost', 'Ghost')"));
    gDatabase.Execute(QStringLiteral("INSERT INTO tree (name, ps, pd) VALUES ('', 'BlankSire', 'BlankDam')"));
    gDatabase.Execute(QStringLiteral("INSERT INTO tree (name, ps, pd) VALUES ('\u00c9lan', 'Accent', 'Accent')"));
    // A stored apostrophe is never found, since the name asked for is encoded first.
    gDatabase.Execute(QStringLiteral("INSERT INTO tree (name, ps, pd) VALUES ('Mc''Coy', 'Typed', 'Typed')"));
    gDatabase.Execute(QStringLiteral("INSERT INTO tree (name, ps, pd) VALUES ('Mc$Coy', 'Stored', 'Stored')"));

    ParentTable table;
    table.load();
    DatabaseParents query;
    QStringList asked = {QStringLiteral("Twin"), QStringLiteral("twin"), QStringLiteral("tWiN"),
                         QStringLiteral("NullSire"), QString(), QStringLiteral("Nobody"),
                         QStringLiteral("O'Neill 5"), QStringLiteral("o$neill 22"), QStringLiteral("\u00e9lan"),
                         QStringLiteral("\u00c9LAN"), QStringLiteral("Unknown"),
                         QStringLiteral("Mc'Coy"), QStringLiteral("MC$COY")};
    Recordset rs = gDatabase.OpenRecordset(QStringLiteral("SELECT name FROM tree"));
    for (; !rs.Eof(); rs.MoveNext()) {
        const QString name = rs.Fields(0).toString();
        asked << name << name.toUpper() << name.toLower() << name + QLatin1Char(' ');
    }
    for (const QString& name : asked) {
        EXPECT_EQ(table.father(name), query.father(name)) << name.toStdString();
        EXPECT_EQ(table.mother(name), query.mother(name)) << name.toStdString();
    }
    EXPECT_EQ(table.father(QStringLiteral("twin")), QStringLiteral("Second"));
    EXPECT_EQ(table.father(QStringLiteral("Mc'Coy")), QStringLiteral("Stored"));
}

TEST_F(CoefficientFile, ACalculationMadeWhileTheRunYieldsSeesWhatTheRunStored)
{
    create(QStringLiteral("stud.cav"));
    generate(200, 21);
    copyTo(QStringLiteral("stud.cav"), QStringLiteral("literal.cav"));
    copyTo(QStringLiteral("stud.cav"), QStringLiteral("fast.cav"));
    const QString sql = QStringLiteral("Select * From tree ORDER by DOB");
    // The record page's calculation of some animal, every 20 records.
    const auto subject = [](int record) { return QStringLiteral("An%1").arg((record * 7) % 200); };

    reopen(QStringLiteral("literal.cav"));
    env.ui().clear();
    QStringList literalRows, literalBetween;
    {
        Transaction t(gDatabase);
        EXPECT_TRUE(literal::Update(sql, 6, &literalRows, [&](int record) {
            if (record % 20 == 0)
                literalBetween << QString::number(literal::Calculate(subject(record), QString(), QString(), 6), 'g', 17);
        }));
        t.commit();
    }
    const QStringList literalValues = storedValues();
    const QStringList literalMessages = env.ui().messages();

    reopen(QStringLiteral("fast.cav"));
    env.ui().clear();
    struct BetweenView : RowsView {
        using RowsView::RowsView;
        std::function<void()> between;
        void progress(double f, const QString& text) override
        {
            RowsView::progress(f, text);
            if (rows.size() % 20 == 0 && text != QLatin1String("Operation completed"))
                between();
        }
    } view(QStringLiteral("6"));
    QStringList fastBetween;
    view.between = [&] {
        fastBetween << QString::number(CalculateCoefficient(subject(int(view.rows.size())), QString(), QString(), 6,
                                                            true, false),
                                       'g', 17);
    };
    EXPECT_TRUE(UpdateCoefficients(sql, view));
    EXPECT_EQ(view.rows, literalRows);
    EXPECT_EQ(fastBetween, literalBetween);
    EXPECT_EQ(storedValues(), literalValues);
    EXPECT_EQ(env.ui().messages(), literalMessages);
    EXPECT_FALSE(literalMessages.isEmpty()); // the names typed with an apostrophe
}
