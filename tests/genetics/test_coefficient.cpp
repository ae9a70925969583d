// SPDX-License-Identifier: GPL-3.0-or-later
// The coefficient on small studs made for each case: the father-daughter and full-sibling matings,
// nobody in any spelling, letter case, the thresholds and ranges that are kept as the program had them,
// loops, what is stored and overwritten, the bulk run with its progress and its early ends.
#include "support/TestEnv.h"

#include "LiteralCoefficient.h"
#include "genetics/Calculator.h"
#include "genetics/Coefficient.h"
#include "session/OpenDataFile.h"
#include "session/globals.h"
#include "store/DataFile.h"

#include <QTimer>
#include <gtest/gtest.h>

namespace {

class Coefficient : public EnvTest {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(CreateDataFile(QStringLiteral("Coi.cav"), env.dataFolder()));
        ASSERT_TRUE(OpenDataFile(env.dataFolder() + QStringLiteral("Coi.cav")));
        gDatabase.Execute(QStringLiteral("UPDATE cavyuser SET fldMale = 'Boar', fldFemale = 'Sow', fldAnimal = 'Cavy'"));
        ReadUserSettings();
        env.ui().clear(); // what opening the file said
    }
    ~Coefficient() override { CloseDatabase(); }

    // name, PS, PD as stored ("" when not given); coi NULL when not given.
    static void add(const QString& name, const QString& ps, const QString& pd, const QString& coi = QString(),
                    const QString& sex = QStringLiteral("male"), int day = 0)
    {
        const auto text = [](const QString& t) -> QString {
            return QLatin1Char('\'') + QString(t).replace(QLatin1Char('\''), QStringLiteral("''")) + QLatin1Char('\'');
        };
        gDatabase.Execute(QStringLiteral("INSERT INTO tree (name, ps, pd, coi, sex, breed, dob, deceased, sold, owner) "
                                         "VALUES (%1, %2, %3, %4, '%5', 'Rex', #%6#, 0, 0, -1)")
                              .arg(text(name), text(ps), text(pd), coi.isNull() ? QStringLiteral("NULL") : text(coi), sex,
                                   QDate(2010, 1, 1).addDays(day).toString(QStringLiteral("MM/dd/yyyy"))));
    }
    static QVariant coi(const QString& name)
    {
        Recordset rs = gDatabase.OpenRecordset(QStringLiteral("SELECT coi FROM tree WHERE name = '") + name +
                                               QLatin1Char('\''));
        return rs.Eof() ? QVariant(QStringLiteral("<no row>")) : rs.Fields(0);
    }

    TestEnv& e() { return env; }
};

struct Report : CoefficientView {
    QStringList rows;
    QString generations = QStringLiteral("6");
    QStringList labels;
    void addAncestorRow(const AncestorRow& r) override
    {
        rows << r.name + QLatin1Char('|') + r.sireGeneration + QLatin1Char('|') + r.damGeneration + QLatin1Char('|') +
                    r.contribution;
    }
    QString generationsText() const override { return generations; }
    void setGenerationsText(const QString& text) override { generations = text; }
    void addRecordRow(const QString& name, const QString& breed, const QString& sex) override
    {
        rows << name + QLatin1Char('|') + breed + QLatin1Char('|') + sex + QLatin1Char('|');
    }
    void setRecordCoefficient(const QString& text) override { rows.last() += text; }
    void progress(double, const QString& label) override { labels << label; }
};

} // namespace

TEST(CoefficientNumbers, RoundingTiesToEvenAndPlainText)
{
    EXPECT_EQ(RoundEven(0.125, 2), 0.12);
    EXPECT_EQ(RoundEven(0.375, 2), 0.38);
    EXPECT_EQ(RoundEven(32.8125, 2), 32.81);
    EXPECT_EQ(RoundEven(1 / 2048.0, 10), 0.0004882812); // 4882812.5 goes to the even digit
    EXPECT_EQ(NumberText(RoundEven(0.3125 * 100, 2)), QStringLiteral("31.25"));
    EXPECT_EQ(NumberText(12.5), QStringLiteral("12.5"));
    EXPECT_EQ(NumberText(25), QStringLiteral("25"));
    EXPECT_EQ(NumberText(-0.0), QStringLiteral("0"));
    EXPECT_EQ(BulkCoefficientText(0.075), QStringLiteral("07.5%"));
    EXPECT_EQ(BulkCoefficientText(0), QStringLiteral("00%"));
    EXPECT_EQ(BulkCoefficientText(0.25), QStringLiteral("25%"));
    EXPECT_EQ(BulkCoefficientText(1.5), QStringLiteral("150%"));
    qint16 g = 0;
    EXPECT_TRUE(ToInteger16(QStringLiteral(" 6 "), &g));
    EXPECT_EQ(g, 6);
    EXPECT_TRUE(ToInteger16(QStringLiteral("6.5"), &g));
    EXPECT_EQ(g, 6);
    EXPECT_FALSE(ToInteger16(QString(), &g));
    EXPECT_FALSE(ToInteger16(QStringLiteral("six"), &g));
    EXPECT_FALSE(ToInteger16(QStringLiteral("40000"), &g));
}

TEST(CoefficientPositions, ThresholdsAndRangesAreKeptAsTheProgramHadThem)
{
    EXPECT_EQ(GenerationOfPosition(96), 5);
    EXPECT_EQ(GenerationOfPosition(97), 6); // by the tree 5 generations behind the mother
    EXPECT_EQ(GenerationOfPosition(126), 6);
    EXPECT_EQ(GenerationOfPosition(2016), 9);
    EXPECT_EQ(GenerationOfPosition(2017), 11);
    EXPECT_EQ(SideOfPosition(383), ArraySide::Sire); // the mother's by the tree
    EXPECT_EQ(SideOfPosition(384), ArraySide::Dam);
    EXPECT_EQ(SideOfPosition(1535), ArraySide::Sire);
    EXPECT_EQ(SideOfPosition(2046), ArraySide::Dam);
    EXPECT_EQ(SideOfPosition(2047), ArraySide::Neither);
    EXPECT_EQ(SideOfPosition(2048), ArraySide::Neither);
    for (int g : {1, 2, 3, 4})
        EXPECT_EQ(SearchSize(g), 32);
    EXPECT_EQ(SearchSize(6), 128);
    EXPECT_EQ(SearchSize(10), 2048);
    EXPECT_EQ(SearchSize(11), 2048);
}

TEST_F(Coefficient, FatherDaughterCountsTheFathersOwnAndOverwritesIt)
{
    add(QStringLiteral("Dad"), QString(), QString(), QStringLiteral("25"));
    add(QStringLiteral("Mum"), QString(), QString(), QStringLiteral("0"), QStringLiteral("female"));
    add(QStringLiteral("Daughter"), QStringLiteral("Dad"), QStringLiteral("Mum"), QString(), QStringLiteral("female"));
    add(QStringLiteral("Kit"), QStringLiteral("Dad"), QStringLiteral("Daughter"));
    Report report;
    EXPECT_DOUBLE_EQ(CalculateCoefficient(QStringLiteral("Kit"), QString(), QString(), 6, true, true, &report), 0.3125);
    EXPECT_EQ(report.rows, QStringList{QStringLiteral("Dad|1|2|31.25%")});
    EXPECT_EQ(coi(QStringLiteral("Dad")).toString(), QStringLiteral("31.25"));
    EXPECT_EQ(coi(QStringLiteral("Kit")).toString(), QStringLiteral("31.25"));
    // Shown again, it reads the father's value that it just wrote: 1/4 x 1.3125.
    EXPECT_EQ(CoefficientCaption(QStringLiteral("Kit")), QStringLiteral("COI: 32.81%"));
    EXPECT_EQ(coi(QStringLiteral("Dad")).toString(), QStringLiteral("32.81"));
    EXPECT_EQ(CoefficientCaption(QStringLiteral("Mum")), QStringLiteral("COI: 0%"));
    EXPECT_EQ(coi(QStringLiteral("Mum")).toString(), QStringLiteral("0"));
}

TEST_F(Coefficient, FullSiblingsGiveTwoRowsAndATestMatingStoresNothingOnThePartners)
{
    add(QStringLiteral("Grandsire"), QString(), QString(), QStringLiteral("0"));
    add(QStringLiteral("Granddam"), QString(), QString(), QStringLiteral("0"), QStringLiteral("female"));
    add(QStringLiteral("Brother"), QStringLiteral("Grandsire"), QStringLiteral("Granddam"), QStringLiteral("3"));
    add(QStringLiteral("Sister"), QStringLiteral("Grandsire"), QStringLiteral("Granddam"), QString(),
        QStringLiteral("female"));
    const std::optional<Calculator::Choice> choice =
        Calculator::ChooseCalculation(QStringLiteral("Brother"), QStringLiteral("Sister"));
    ASSERT_TRUE(choice);
    EXPECT_TRUE(choice->name.isEmpty());
    Report report;
    const double f = CalculateCoefficient(choice->name, choice->sire, choice->dam, 6, true, true, &report);
    EXPECT_DOUBLE_EQ(f, 0.25);
    EXPECT_EQ(Calculator::CoefficientText(f), QStringLiteral("25%"));
    EXPECT_EQ(report.rows, QStringList({QStringLiteral("Grandsire|2|2|12.5%"), QStringLiteral("Granddam|2|2|12.5%")}));
    EXPECT_EQ(coi(QStringLiteral("Grandsire")).toString(), QStringLiteral("12.5"));
    EXPECT_EQ(coi(QStringLiteral("Granddam")).toString(), QStringLiteral("12.5"));
    EXPECT_EQ(coi(QStringLiteral("Brother")).toString(), QStringLiteral("3"));
    EXPECT_TRUE(coi(QStringLiteral("Sister")).isNull());
}

TEST_F(Coefficient, NobodyInAnySpellingAndADifferentLetterCaseAreNoCommonAncestor)
{
    add(QStringLiteral("Grandsire"), QString(), QString(), QStringLiteral("0"));
    add(QStringLiteral("Brother"), QStringLiteral("Unknown"), QStringLiteral("unknown"));
    add(QStringLiteral("Sister"), QStringLiteral("UNKNOWN"), QStringLiteral("unKnown"), QString(), QStringLiteral("female"));
    add(QStringLiteral("Cousin"), QStringLiteral("Grandsire"), QString());
    add(QStringLiteral("Niece"), QStringLiteral("grandsire"), QString(), QString(), QStringLiteral("female"));
    Report report;
    EXPECT_EQ(CalculateCoefficient(QString(), QStringLiteral("Brother"), QStringLiteral("Sister"), 6, true, true, &report), 0);
    EXPECT_EQ(CalculateCoefficient(QString(), QStringLiteral("Unknown"), QStringLiteral("UNKNOWN"), 6, true, true, &report), 0);
    // Both look-ups find the one record, but the names in the array differ.
    EXPECT_EQ(CalculateCoefficient(QString(), QStringLiteral("Cousin"), QStringLiteral("Niece"), 6, true, true, &report), 0);
    EXPECT_TRUE(report.rows.isEmpty());
    gDatabase.Execute(QStringLiteral("UPDATE tree SET ps = 'Grandsire' WHERE name = 'Niece'"));
    EXPECT_DOUBLE_EQ(CalculateCoefficient(QString(), QStringLiteral("Cousin"), QStringLiteral("Niece"), 6, true, true, &report), 0.125);
    EXPECT_EQ(report.rows, QStringList{QStringLiteral("Grandsire|2|2|12.5%")});
    // Choosing "Unknown" on both sides calculates an animal called "Unknown": nobody's parents, 0%.
    const auto choice = Calculator::ChooseCalculation(QStringLiteral("Unknown"), QStringLiteral("Unknown"));
    ASSERT_TRUE(choice);
    EXPECT_EQ(choice->name, QStringLiteral("Unknown"));
    EXPECT_FALSE(Calculator::ChooseCalculation(QString(), QString()));
}

TEST_F(Coefficient, PositionNinetySevenCountsOneGenerationTooDeep)
{
    // X is the sire, and at position 97 behind the dam: 2 -> 5 -> 11 -> 23 -> 48 -> 97.
    add(QStringLiteral("X"), QString(), QString(), QStringLiteral("0"));
    add(QStringLiteral("P48"), QStringLiteral("X"), QString(), QString(), QStringLiteral("female"));
    add(QStringLiteral("P23"), QString(), QStringLiteral("P48"));
    add(QStringLiteral("P11"), QStringLiteral("P23"), QString());
    add(QStringLiteral("P5"), QStringLiteral("P11"), QString());
    add(QStringLiteral("Dam"), QStringLiteral("P5"), QString(), QString(), QStringLiteral("female"));
    add(QStringLiteral("Kit"), QStringLiteral("X"), QStringLiteral("Dam"));
    qint16 size = 0;
    DatabaseParents parents;
    EXPECT_EQ(CoefficientTree(QStringLiteral("Kit"), QString(), QString(), 6, parents, nullptr, &size).at(97),
              QStringLiteral("X"));
    Report report;
    // n = 0 + 6 + 1, where the tree's count would give 1/64.
    EXPECT_DOUBLE_EQ(CalculateCoefficient(QStringLiteral("Kit"), QString(), QString(), 6, true, true, &report), 1 / 128.0);
    EXPECT_EQ(report.rows, QStringList{QStringLiteral("X|1|7|0.78%")});
    report.rows.clear();
    EXPECT_EQ(CalculateCoefficient(QStringLiteral("Kit"), QString(), QString(), 5, true, true, &report), 0);
}

TEST_F(Coefficient, TheMothersPositionsThreeEightyThreeAndFourAreComparedAsTwoSides)
{
    // The dam's line of fathers to position 191, whose parents (383 and 384) are one animal.
    add(QStringLiteral("X"), QString(), QString(), QStringLiteral("0"));
    add(QStringLiteral("F191"), QStringLiteral("X"), QStringLiteral("X"));
    QString child = QStringLiteral("F191");
    for (const char* n : {"F95", "F47", "F23", "F11", "F5"}) {
        add(QLatin1String(n), child, QString());
        child = QLatin1String(n);
    }
    add(QStringLiteral("Dam"), child, QString(), QString(), QStringLiteral("female"));
    add(QStringLiteral("Kit"), QString(), QStringLiteral("Dam"));
    Report report;
    const double f = CalculateCoefficient(QStringLiteral("Kit"), QString(), QString(), 8, true, true, &report);
    EXPECT_DOUBLE_EQ(f, 0.0000305176); // 1/2^15 to 10 places
    EXPECT_EQ(report.rows, QStringList{QStringLiteral("X|8|8|0.009% or less")});
    EXPECT_EQ(coi(QStringLiteral("Kit")).toString(), QStringLiteral("0"));
    EXPECT_EQ(CalculateCoefficient(QStringLiteral("Kit"), QString(), QString(), 7, true, true, &report), 0);
}

TEST_F(Coefficient, PositionsTwoThousandFortySevenAndEightAreFilledButNotCompared)
{
    // Ten fathers from the subject's sire to position 1023, whose parents Y and Z sit at 2047 and 2048.
    add(QStringLiteral("S10"), QStringLiteral("Y"), QStringLiteral("Z"));
    QString child = QStringLiteral("S10");
    for (int i = 9; i >= 1; --i) {
        add(QStringLiteral("S%1").arg(i), child, QString());
        child = QStringLiteral("S%1").arg(i);
    }
    add(QStringLiteral("Y"), QString(), QString(), QStringLiteral("0"), QStringLiteral("female"));
    add(QStringLiteral("Kit"), QStringLiteral("S1"), QStringLiteral("Y"));
    add(QStringLiteral("Kit2"), QStringLiteral("S1"), QStringLiteral("S10"));
    qint16 size = 0;
    DatabaseParents parents;
    const QStringList tree = CoefficientTree(QStringLiteral("Kit"), QString(), QString(), 10, parents, nullptr, &size);
    EXPECT_EQ(size, 2048);
    EXPECT_EQ(tree.at(1023), QStringLiteral("S10"));
    EXPECT_EQ(tree.at(2047), QStringLiteral("Y"));
    EXPECT_EQ(tree.at(2048), QStringLiteral("Z"));
    Report report;
    EXPECT_EQ(CalculateCoefficient(QStringLiteral("Kit"), QString(), QString(), 10, true, true, &report), 0);
    EXPECT_TRUE(report.rows.isEmpty());
    // Position 1023 itself takes part: nine generations from the sire by the thresholds.
    EXPECT_DOUBLE_EQ(CalculateCoefficient(QStringLiteral("Kit2"), QString(), QString(), 10, true, true, &report),
                     0.0009765625);
    EXPECT_EQ(report.rows, QStringList{QStringLiteral("S10|10|1|0.1%")});
}

TEST_F(Coefficient, ALoopInTheDataEndsAndAnOverflowStoresNothing)
{
    add(QStringLiteral("Loop"), QStringLiteral("Loop"), QStringLiteral("Loop"), QStringLiteral("0"));
    const double fast = CalculateCoefficient(QStringLiteral("Loop"), QString(), QString(), 6, true, false);
    const QString stored = coi(QStringLiteral("Loop")).toString();
    gDatabase.Execute(QStringLiteral("UPDATE tree SET coi = '0'"));
    EXPECT_EQ(literal::Calculate(QStringLiteral("Loop"), QString(), QString(), 6), fast);
    EXPECT_EQ(coi(QStringLiteral("Loop")).toString(), stored);
    EXPECT_GT(fast, 0);

    // At ten generations the path mark passes its 16 bits: the calculation ends with nothing stored.
    gDatabase.Execute(QStringLiteral("UPDATE tree SET coi = '7'"));
    EXPECT_EQ(CalculateCoefficient(QStringLiteral("Loop"), QString(), QString(), 10, true, false), 0);
    EXPECT_EQ(coi(QStringLiteral("Loop")).toString(), QStringLiteral("7"));
}

TEST_F(Coefficient, MoreThanTenGenerationsSaysSoAndSearchesTen)
{
    add(QStringLiteral("Dad"), QString(), QString(), QStringLiteral("0"));
    add(QStringLiteral("Kit"), QStringLiteral("Dad"), QStringLiteral("Dad"));
    Report report;
    report.generations = QStringLiteral("12");
    EXPECT_DOUBLE_EQ(CalculateCoefficient(QStringLiteral("Kit"), QString(), QString(), 12, true, true, &report), 0.5);
    EXPECT_EQ(report.generations, QStringLiteral("10"));
    ASSERT_EQ(e().ui().calls().size(), 1);
    EXPECT_EQ(e().ui().calls().at(0).text, QStringLiteral("Maximum search is 10 generations."));
    EXPECT_EQ(e().ui().calls().at(0).title, QStringLiteral("Error"));
}

TEST_F(Coefficient, AStoreThatFailsSaysSoAndTheCalculationGoesOn)
{
    // A parent column holding an apostrophe breaks the statements that name it.
    add(QStringLiteral("O$Hara"), QString(), QString(), QStringLiteral("50"));
    add(QStringLiteral("Brother"), QStringLiteral("O'Hara"), QString());
    add(QStringLiteral("Sister"), QStringLiteral("O'Hara"), QString(), QString(), QStringLiteral("female"));
    const double f = CalculateCoefficient(QString(), QStringLiteral("Brother"), QStringLiteral("Sister"), 6, true, false);
    EXPECT_DOUBLE_EQ(f, 0.125); // its own value could not be read either
    ASSERT_EQ(e().ui().messages().size(), 1);
    EXPECT_TRUE(e().ui().messages().at(0).startsWith(QStringLiteral("Save COI Error ")));
    EXPECT_EQ(coi(QStringLiteral("O$Hara")).toString(), QStringLiteral("50"));
}

TEST_F(Coefficient, TheBulkRunClearsEverythingAndStoresInOrderOfBirth)
{
    add(QStringLiteral("Dad"), QString(), QString(), QStringLiteral("25"), QStringLiteral("male"), 0);
    add(QStringLiteral("Mum"), QString(), QString(), QStringLiteral("4"), QStringLiteral("female"), 1);
    add(QStringLiteral("Daughter"), QStringLiteral("Dad"), QStringLiteral("Mum"), QString(), QStringLiteral("female"), 2);
    add(QStringLiteral("Kit"), QStringLiteral("Dad"), QStringLiteral("Daughter"), QString(), QStringLiteral("undefined"), 3);
    add(QStringLiteral("Sold"), QString(), QString(), QStringLiteral("9"), QStringLiteral("male"), 4);
    gDatabase.Execute(QStringLiteral("UPDATE tree SET sold = -1 WHERE name = 'Sold'"));

    Report report;
    int rowsWhenTheTimerRan = -1;
    QTimer::singleShot(0, [&] { rowsWhenTheTimerRan = int(report.rows.size()); });
    EXPECT_TRUE(UpdateCoefficients(Calculator::BulkQuery(true), report));
    // Dad's own value was cleared first, so the daughter's mating counts him as 0; Kit's calculation then
    // overwrote it with his contribution.
    EXPECT_EQ(report.rows, QStringList({QStringLiteral("Dad|Rex|Boar|00%"), QStringLiteral("Mum|Rex|Sow|00%"),
                                        QStringLiteral("Daughter|Rex|Sow|00%"), QStringLiteral("Kit|Rex|Undefined|25%")}));
    EXPECT_EQ(report.labels, QStringList({QStringLiteral("25% completed"), QStringLiteral("50% completed"),
                                          QStringLiteral("75% completed"), QStringLiteral("100% completed"),
                                          QStringLiteral("Operation completed")}));
    EXPECT_EQ(rowsWhenTheTimerRan, 1); // the run yielded after the first record
    EXPECT_EQ(coi(QStringLiteral("Dad")).toString(), QStringLiteral("25"));
    EXPECT_EQ(coi(QStringLiteral("Kit")).toString(), QStringLiteral("25"));
    EXPECT_EQ(coi(QStringLiteral("Sold")).toString(), QString()); // outside the stock, still cleared
}

TEST_F(Coefficient, AnInterruptedBulkRunEndsSilentlyAtANullParent)
{
    add(QStringLiteral("First"), QString(), QString(), QStringLiteral("1"), QStringLiteral("male"), 0);
    add(QStringLiteral("Broken"), QString(), QString(), QStringLiteral("2"), QStringLiteral("female"), 1);
    add(QStringLiteral("Last"), QStringLiteral("First"), QStringLiteral("First"), QStringLiteral("3"),
        QStringLiteral("male"), 2);
    gDatabase.Execute(QStringLiteral("UPDATE tree SET ps = NULL WHERE name = 'Broken'"));
    Report report;
    EXPECT_FALSE(UpdateCoefficients(Calculator::BulkQuery(false), report));
    EXPECT_EQ(report.rows, QStringList({QStringLiteral("First|Rex|Boar|00%"), QStringLiteral("Broken|Rex|Sow|")}));
    EXPECT_FALSE(report.labels.contains(QStringLiteral("Operation completed")));
    EXPECT_TRUE(e().ui().calls().isEmpty());
    EXPECT_EQ(coi(QStringLiteral("First")).toString(), QStringLiteral("0"));
    EXPECT_EQ(coi(QStringLiteral("Broken")).toString(), QString());
    EXPECT_EQ(coi(QStringLiteral("Last")).toString(), QString());
    // The list of stored values shows such an empty value as a bare "%".
    QString description;
    const QVector<Calculator::StoredRow> rows = Calculator::StoredCoefficients(QStringLiteral("Show All"), &description);
    ASSERT_EQ(rows.size(), 3);
    EXPECT_EQ(rows.at(2).coefficient, QStringLiteral("%"));
}

TEST_F(Coefficient, AFileOfMoreThan32767RecordsIsCalculatedToTheEnd)
{
    {
        Transaction t(gDatabase);
        for (int i = 0; i < 32768; ++i)
            gDatabase.Execute(QStringLiteral("INSERT INTO tree (name, ps, pd, coi) VALUES ('A%1', '', '', '5')").arg(i));
        t.commit();
    }
    Report report;
    QString stopped;
    EXPECT_TRUE(UpdateCoefficients(Calculator::BulkQuery(false), report, &stopped)) << stopped.toStdString();
    EXPECT_EQ(report.rows.size(), 32768);
    Recordset rs = gDatabase.OpenRecordset(QStringLiteral("SELECT Count(*) FROM tree WHERE coi = '0'"));
    EXPECT_EQ(rs.Fields(0).toInt(), 32768);
}
