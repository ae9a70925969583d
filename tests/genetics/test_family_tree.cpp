// SPDX-License-Identifier: GPL-3.0-or-later
// The ancestor walk on a small stud with the awkward cases: one known parent, a parent without a record,
// "Unknown", an apostrophe, a test mating and a loop.
#include "support/TestEnv.h"

#include "genetics/FamilyTree.h"
#include "session/OpenDataFile.h"
#include "session/globals.h"
#include "store/DataFile.h"

#include <gtest/gtest.h>

namespace {

class FamilyTreeTest : public EnvTest {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(CreateDataFile(QStringLiteral("Tree.cav"), env.dataFolder()));
        ASSERT_TRUE(OpenDataFile(env.dataFolder() + QStringLiteral("Tree.cav")));
        // name, PS, PD (stored forms)
        const char* rows[][3] = {
            {"Kit", "Buck", "Doe"},        {"Buck", "Grandsire", "unknown"}, {"Doe", "", "Granny"},
            {"Granny", "Ghost", "O$Hara"}, {"O$Hara", "", ""},               {"Loop", "Loop", "Loop"},
        };
        for (const auto& r : rows)
            gDatabase.Execute(QStringLiteral("INSERT INTO tree (name, ps, pd, sex) VALUES ('%1', '%2', '%3', 'male')")
                                  .arg(QLatin1String(r[0]), QLatin1String(r[1]), QLatin1String(r[2])));
    }
    ~FamilyTreeTest() override { CloseDatabase(); }
};

} // namespace

TEST_F(FamilyTreeTest, TheWalkFillsHeapOrderWithBlanksBehindNobody)
{
    QStringList tree;
    FillFamilyTree(QStringLiteral("Kit"), tree, 14);
    ASSERT_GE(tree.size(), 15);
    EXPECT_EQ(tree.mid(0, 15), QStringList({"Kit", "Buck", "Doe", "Grandsire", "unknown", "", "Granny", "", "", "", "",
                                            "", "", "Ghost", "O$Hara"}));
    // A parent without a record of its own and "Unknown" have blank parents.
    EXPECT_TRUE(IsNobody(tree[4]));
    EXPECT_EQ(GetFather(QStringLiteral("Ghost")), QString());
    // A plain name with an apostrophe finds the stored one.
    EXPECT_EQ(GetFather(QStringLiteral("O'Hara")), QString());
    EXPECT_EQ(GetMother(QStringLiteral("Granny")), QStringLiteral("O$Hara"));
}

TEST_F(FamilyTreeTest, ATestMatingLeavesTheSubjectBlankAndWalksBothPartners)
{
    QStringList tree;
    FillFamilyTree(QString(), tree, 6, QStringLiteral("Buck"), QStringLiteral("Doe"));
    EXPECT_EQ(tree.mid(0, 7), QStringList({"", "Buck", "Doe", "Grandsire", "unknown", "", "Granny"}));
}

TEST_F(FamilyTreeTest, ALoopInTheDataEndsAtTheLimit)
{
    QStringList tree;
    FillFamilyTree(QStringLiteral("Loop"), tree, 62);
    EXPECT_EQ(tree.size(), 64);
    for (int i = 0; i <= 62; ++i)
        EXPECT_EQ(tree[i], QStringLiteral("Loop")) << i;
    EXPECT_EQ(tree[63], QString());
}

TEST_F(FamilyTreeTest, NoParentsStopsAtOnce)
{
    QStringList tree = {QString(), QString(), QString(), QStringLiteral("stale")};
    FillFamilyTree(QStringLiteral("O$Hara"), tree, 2);
    EXPECT_EQ(tree[0], QStringLiteral("O$Hara"));
    EXPECT_EQ(tree[3], QStringLiteral("stale"));
}
