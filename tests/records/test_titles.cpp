// SPDX-License-Identifier: GPL-3.0-or-later
// The title list of a data file and the title at the start of a name.
#include "records/Titles.h"

#include <gtest/gtest.h>

TEST(Titles, LongestFirstAndTiesKeepTheirOrder)
{
    EXPECT_EQ(SplitTitles(QStringLiteral("CH,Grand Champion,GC,Champion")),
              QStringList({QStringLiteral("Grand Champion"), QStringLiteral("Champion"), QStringLiteral("CH"),
                           QStringLiteral("GC"), QString()}));
    EXPECT_EQ(SplitTitles(QStringLiteral("CH,")), QStringList({QStringLiteral("CH"), QString()}));
}

TEST(Titles, ANameStartingWithATitleAndABlankHasIt)
{
    const QStringList titles = SplitTitles(QStringLiteral("Champion,Grand Champion,CH"));
    EXPECT_EQ(MatchTitle(titles, QStringLiteral("grand champion Rosie")), QStringLiteral("Grand Champion"));
    EXPECT_EQ(MatchTitle(titles, QStringLiteral("Champion Rosie")), QStringLiteral("Champion"));
    EXPECT_EQ(MatchTitle(titles, QStringLiteral("CHESTNUT Rosie")), QString());
    EXPECT_EQ(MatchTitle(titles, QStringLiteral("CH")), QString());
    EXPECT_EQ(MatchTitle(SplitTitles(QString()), QStringLiteral("CH Rosie")), QString());
}
