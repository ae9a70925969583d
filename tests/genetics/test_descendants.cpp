// SPDX-License-Identifier: GPL-3.0-or-later
// The descendants walk on a small stud: three generations with a grandson reached by two routes, an
// animal of undefined sex, "Unknown" parents, an apostrophe, animals without offspring and loops.
#include "support/TestEnv.h"

#include "genetics/Descendants.h"
#include "session/OpenDataFile.h"
#include "session/globals.h"
#include "store/DataFile.h"

#include <gtest/gtest.h>

namespace {

class DescendantsTest : public EnvTest {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(CreateDataFile(QStringLiteral("Desc.cav"), env.dataFolder()));
        ASSERT_TRUE(OpenDataFile(env.dataFolder() + QStringLiteral("Desc.cav")));
        gUser.Father = QStringLiteral("Boar");
        gUser.Mother = QStringLiteral("Sow");
        // name, sex, PS, PD (stored forms), in the order of their ids
        const char* rows[][4] = {
            {"Sire", "male", "Unknown", "Unknown"}, {"Dam", "female", "", ""},
            {"Kit A", "female", "Sire", "Dam"},     {"O$Brien", "male", "SIRE", "Dam"},
            {"Solo", "undefined", "Sire", "Unknown"}, {"Grand", "male", "O$Brien", "Kit A"},
            {"Soloist", "female", "unknown", "Solo"}, {"Great", "female", "Grand", "Other"},
            {"Ping", "male", "Pong", ""},           {"Pong", "male", "Ping", ""},
        };
        for (const auto& r : rows)
            gDatabase.Execute(QStringLiteral("INSERT INTO tree (name, sex, ps, pd) VALUES ('%1', '%2', '%3', '%4')")
                                  .arg(QLatin1String(r[0]), QLatin1String(r[1]), QLatin1String(r[2]),
                                       QLatin1String(r[3])));
    }
    void TearDown() override
    {
        CloseDatabase();
        gUser = User();
    }
};

} // namespace

TEST_F(DescendantsTest, ThreeGenerationsWithMarksHiddenListsAndCounts)
{
    Descendants d;
    d.LoadDescendants(QStringLiteral("Sire"), QStringLiteral("male"));

    // Sons are found by PS in any letter case; the undefined Solo is a mother and her son is found by PD.
    EXPECT_EQ(d.list(1).entries, QStringList({"  Kit A  >>", "  O'Brien  >>", "  Solo  >>"}));
    EXPECT_EQ(d.list(1).sex, QStringList({"female", "male", "undefined"}));
    EXPECT_EQ(d.list(1).parent, QStringList({"Sire", "Sire", "Sire"}));
    // Grand has two routes, through his dam and his sire, and stands once for each.
    EXPECT_EQ(d.list(2).entries, QStringList({"  Grand  >>", "  Grand  >>", "  Soloist  >|"}));
    EXPECT_EQ(d.list(2).parent, QStringList({"Kit A", "O'Brien", "Solo"}));
    EXPECT_EQ(d.list(3).entries, QStringList({"  Great  >|", "  Great  >|"}));
    EXPECT_EQ(d.list(3).parent, QStringList({"Grand", "Grand"}));
    for (int g = 4; g <= kDescendantGenerations; ++g)
        EXPECT_EQ(d.list(g).count(), 0) << g;
    // One look-up for the subject and one for each entry.
    EXPECT_EQ(d.queryCount(), 1 + 3 + 3 + 2);

    EXPECT_EQ(d.refreshDescendantTitles(),
              QStringList({"Generation 1     (3 descendants)", "Generation 2     (3 descendants)",
                           "Generation 3     (2 descendants)", "Generation 4", "Generation 5", "Generation 6",
                           "Generation 7", "Generation 8", "Generation 9"}));
}

TEST_F(DescendantsTest, AnApostropheNameFindsItsOffspringByTheStoredForm)
{
    Descendants d;
    d.LoadDescendants(QStringLiteral("O'Brien"), QStringLiteral("male"));
    EXPECT_EQ(d.list(1).entries, QStringList({"  Grand  >>"}));
    EXPECT_EQ(d.list(1).parent, QStringList({"O'Brien"}));
    EXPECT_EQ(d.list(2).entries, QStringList({"  Great  >|"}));
}

TEST_F(DescendantsTest, AnAnimalWithoutOffspringLeavesEmptyListsAndPlainTitles)
{
    Descendants d;
    d.LoadDescendants(QStringLiteral("Great"), QStringLiteral("female"));
    for (int g = 1; g <= kDescendantGenerations; ++g) {
        EXPECT_EQ(d.list(g).count(), 0);
        EXPECT_EQ(d.refreshDescendantTitles().at(g - 1), QStringLiteral("Generation ") + QString::number(g));
    }
    EXPECT_EQ(d.queryCount(), 1);

    // A fresh load forgets the animal before.
    d.LoadDescendants(QStringLiteral("Sire"), QStringLiteral("male"));
    d.LoadDescendants(QStringLiteral("Soloist"), QStringLiteral("female"));
    EXPECT_EQ(d.list(1).count(), 0);
    EXPECT_EQ(d.list(2).count(), 0);
}

TEST_F(DescendantsTest, NobodyHasNoOffspring)
{
    // Every founder has a blank or "Unknown" parent; none of them is anybody's descendant.
    Descendants d;
    for (const QString& nobody : {QString(), QStringLiteral("Unknown"), QStringLiteral("UNKNOWN")}) {
        d.LoadDescendants(nobody, QStringLiteral("male"));
        d.LoadDescendants(nobody, QStringLiteral("female"));
        EXPECT_EQ(d.list(1).count(), 0);
        EXPECT_EQ(d.queryCount(), 0);
    }
}

TEST_F(DescendantsTest, ALoopEndsAtTheNinthListWhoseEntriesStillGetTheirMark)
{
    Descendants d;
    d.LoadDescendants(QStringLiteral("Ping"), QStringLiteral("male"));
    for (int g = 1; g <= kDescendantGenerations; ++g)
        EXPECT_EQ(d.list(g).entries, QStringList({g % 2 ? "  Pong  >>" : "  Ping  >>"})) << g;
    EXPECT_EQ(d.queryCount(), 1 + kDescendantGenerations);
}

TEST_F(DescendantsTest, TheClickedLineIsTracedBackThroughTheFirstEntryOfEachParent)
{
    Descendants d;
    d.LoadDescendants(QStringLiteral("Sire"), QStringLiteral("male"));
    // Grand through O'Brien: O'Brien in list 1.
    EXPECT_EQ(d.AncestralLine(2, 1), QList<int>({1}));
    // Either Great goes back through the first Grand, the one found through Kit A.
    EXPECT_EQ(d.AncestralLine(3, 1), QList<int>({0, 0}));
    EXPECT_EQ(d.AncestralLine(3, 0), QList<int>({0, 0}));
    EXPECT_EQ(d.AncestralLine(2, 2), QList<int>({2}));
    EXPECT_EQ(d.AncestralLine(1, 0), QList<int>());
    // Past the end of the list: nothing to trace.
    EXPECT_EQ(d.AncestralLine(3, 2), QList<int>({-1, -1}));
}

TEST_F(DescendantsTest, TheParentsLineShowsTheRecordsParentsDecodedUnderTheFilesTerms)
{
    EXPECT_EQ(DisplayParentsText(QStringLiteral("Grand")),
              QStringLiteral("Grand        [ Boar: O'Brien   x   Sow: Kit A ]"));
    EXPECT_EQ(DisplayParentsText(QStringLiteral("Soloist")),
              QStringLiteral("Soloist        [ Boar: unknown   x   Sow: Solo ]"));
    EXPECT_EQ(DisplayParentsText(QStringLiteral("O'Brien")),
              QStringLiteral("O'Brien        [ Boar: SIRE   x   Sow: Dam ]"));
    EXPECT_EQ(DisplayParentsText(QStringLiteral("Dam")), QStringLiteral("Dam        [ Boar:    x   Sow:  ]"));
    // No record: the name alone.
    EXPECT_EQ(DisplayParentsText(QStringLiteral("Other")), QStringLiteral("Other"));
}

TEST(DescendantEntry, TheNameIsReadWithoutBlanksAndMark)
{
    EXPECT_EQ(DescendantEntryName(QStringLiteral("  Bob  >>")), QStringLiteral("Bob"));
    EXPECT_EQ(DescendantEntryName(QStringLiteral("  Bob  >|")), QStringLiteral("Bob"));
    EXPECT_EQ(DescendantEntryName(QStringLiteral("  Bob")), QStringLiteral("Bob"));
    EXPECT_EQ(DescendantEntryName(QStringLiteral("  O'Brien  >>")), QStringLiteral("O'Brien"));
    // A ">" of the name itself is taken for the mark's, unguarded.
    EXPECT_EQ(DescendantEntryName(QStringLiteral("  Arrow>  >>")), QStringLiteral("Arr"));
}

TEST(DescendantTexts, HelpLegendAndStatements)
{
    EXPECT_EQ(DescendantHelpText(QStringLiteral("Cavy")),
              QStringLiteral("Click on later generation Cavys to highlight ancestral line"));
    EXPECT_EQ(DescendantLegendText(), QStringLiteral(">>  Bloodline continues\n>|   End of bloodline"));
    EXPECT_EQ(OffspringStatement(QStringLiteral("O'Brien"), QStringLiteral("male")),
              QStringLiteral("SELECT name, sex FROM tree WHERE ps = 'O$Brien'"));
    EXPECT_EQ(OffspringStatement(QStringLiteral("Solo"), QStringLiteral("undefined")),
              QStringLiteral("SELECT name, sex FROM tree WHERE pd = 'Solo'"));
}
