// SPDX-License-Identifier: GPL-3.0-or-later
// The date rules: what counts as a date in either regional order, how dates are shown, stored and
// put in SQL, and the split of decimal weights.
#include "support/TestEnv.h"

#include "base/Dates.h"

namespace {

struct ParseCase {
    const char* text;
    DateOrder order;
    const char* expected; // "yyyy-MM-dd HH:mm:ss", or "" for no date
};

void PrintTo(const ParseCase& c, std::ostream* os)
{
    *os << '"' << c.text << "\" " << (c.order == DateOrder::DayFirst ? "day first" : "month first");
}

class DateParsing : public ::testing::TestWithParam<ParseCase> {};

TEST_P(DateParsing, GivesTheDateAndTimeOrNothing)
{
    const ParseCase& c = GetParam();
    const auto parsed = ParseDateText(QString::fromUtf8(c.text), c.order);
    const QString got = parsed ? parsed->toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")) : QString();
    EXPECT_EQ(got, QString::fromUtf8(c.expected));
}

constexpr auto D = DateOrder::DayFirst;
constexpr auto M = DateOrder::MonthFirst;

INSTANTIATE_TEST_SUITE_P(RegionalForms, DateParsing, ::testing::Values(
    ParseCase{"23/11/2026", D, "2026-11-23 00:00:00"},
    ParseCase{"11/23/2026", M, "2026-11-23 00:00:00"},
    ParseCase{"11/23/2026", D, ""},
    ParseCase{"23/11/2026", M, ""},
    ParseCase{"3/4/2020", D, "2020-04-03 00:00:00"},
    ParseCase{"3/4/2020", M, "2020-03-04 00:00:00"},
    ParseCase{"03-04-2020", D, "2020-04-03 00:00:00"},
    ParseCase{"03.04.2020", M, "2020-03-04 00:00:00"},
    ParseCase{"  7/8/2021  ", D, "2021-08-07 00:00:00"},
    ParseCase{"03/04-2020", D, ""},
    ParseCase{"03.04/2020", D, ""},
    ParseCase{"03 04 2020", D, ""},
    ParseCase{"003/04/2020", D, ""}));

INSTANTIATE_TEST_SUITE_P(TwoDigitYears, DateParsing, ::testing::Values(
    ParseCase{"1/2/00", D, "2000-02-01 00:00:00"},
    ParseCase{"1/2/29", D, "2029-02-01 00:00:00"},
    ParseCase{"1/2/30", D, "1930-02-01 00:00:00"},
    ParseCase{"1/2/99", M, "1999-01-02 00:00:00"},
    ParseCase{"1/2/123", D, ""},
    ParseCase{"1/2/0025", D, ""}));

INSTANTIATE_TEST_SUITE_P(CalendarChecks, DateParsing, ::testing::Values(
    ParseCase{"31/02/2020", D, ""},
    ParseCase{"02/31/2020", M, ""},
    ParseCase{"29/02/2020", D, "2020-02-29 00:00:00"},
    ParseCase{"29/02/2021", D, ""},
    ParseCase{"0/1/2020", D, ""},
    ParseCase{"13/13/2020", D, ""},
    ParseCase{"31/04/2020", D, ""}));

INSTANTIATE_TEST_SUITE_P(Iso, DateParsing, ::testing::Values(
    ParseCase{"2020-05-03", D, "2020-05-03 00:00:00"},
    ParseCase{"2020-05-03", M, "2020-05-03 00:00:00"},
    ParseCase{"2020-13-01", D, ""},
    ParseCase{"2020-02-30", M, ""}));

INSTANTIATE_TEST_SUITE_P(WithTimes, DateParsing, ::testing::Values(
    ParseCase{"23/11/2026 14:05", D, "2026-11-23 14:05:00"},
    ParseCase{"23/11/2026 14:05:09", D, "2026-11-23 14:05:09"},
    ParseCase{"11/23/2026 2:05 PM", M, "2026-11-23 14:05:00"},
    ParseCase{"11/23/2026 2:05pm", M, "2026-11-23 14:05:00"},
    ParseCase{"23/11/2026 12:00 AM", D, "2026-11-23 00:00:00"},
    ParseCase{"23/11/2026 12:30 PM", D, "2026-11-23 12:30:00"},
    ParseCase{"23/11/2026 9:15:30 AM", D, "2026-11-23 09:15:30"},
    ParseCase{"2020-05-03 10:11:12", D, "2020-05-03 10:11:12"},
    ParseCase{"2020-05-03T10:11:12", D, "2020-05-03 10:11:12"},
    ParseCase{"23/11/2026 24:00", D, ""},
    ParseCase{"23/11/2026 13:00 PM", D, ""},
    ParseCase{"23/11/2026 10:60", D, ""},
    ParseCase{"23/11/2026 10", D, ""}));

INSTANTIATE_TEST_SUITE_P(NoDates, DateParsing, ::testing::Values(
    ParseCase{"", D, ""},
    ParseCase{"Unknown", D, ""},
    ParseCase{"yesterday", M, ""},
    ParseCase{"23/11", D, ""},
    ParseCase{"2020", D, ""},
    ParseCase{"23/11/2026 and the rest", D, ""},
    ParseCase{"'; DROP TABLE tree; --", D, ""}));

TEST(Dates, TheRegionalOrderDecidesWhenNoneIsGiven)
{
    TestEnv env;
    EXPECT_EQ(RegionalDateOrder(), DateOrder::DayFirst);
    EXPECT_EQ(ParseDateText(QStringLiteral("3/4/2020"))->date(), QDate(2020, 4, 3));
    SetRegionalDateOrder(DateOrderForCountry(QStringLiteral("United States")));
    EXPECT_EQ(ParseDateText(QStringLiteral("3/4/2020"))->date(), QDate(2020, 3, 4));
    EXPECT_TRUE(IsDate(QStringLiteral("12/31/2020")));
    EXPECT_FALSE(IsDate(QStringLiteral("31/12/2020")));
}

TEST(Dates, OnlyTheUnitedStatesPutsTheMonthFirst)
{
    EXPECT_EQ(DateOrderForCountry(QStringLiteral("United States")), DateOrder::MonthFirst);
    EXPECT_EQ(DateOrderForCountry(QStringLiteral("United Kingdom")), DateOrder::DayFirst);
    EXPECT_EQ(DateOrderForCountry(QStringLiteral("Canada")), DateOrder::DayFirst);
    EXPECT_EQ(DateOrderForCountry(QString()), DateOrder::DayFirst);
}

TEST(Dates, DateValuesAndAcceptedTextsAreDatesNumbersAreNot)
{
    TestEnv env;
    EXPECT_TRUE(IsDate(QDate(2020, 5, 3)));
    EXPECT_TRUE(IsDate(QDateTime(QDate(2020, 5, 3), QTime(8, 0))));
    EXPECT_TRUE(IsDate(QStringLiteral("03/05/2020")));
    EXPECT_TRUE(IsDate(QByteArray("2020-05-03")));
    EXPECT_FALSE(IsDate(QDate()));
    EXPECT_FALSE(IsDate(QVariant()));
    EXPECT_FALSE(IsDate(20200503));
    EXPECT_FALSE(IsDate(3.5));
    EXPECT_FALSE(IsDate(QString()));
}

TEST(Dates, ShowDateGivesUnknownForNullAndAnything1925)
{
    TestEnv env;
    const QString unknown = QStringLiteral("Unknown");
    EXPECT_EQ(ShowDate(QVariant()), unknown);
    EXPECT_EQ(ShowDate(QVariant::fromValue(nullptr)), unknown);
    EXPECT_EQ(ShowDate(kUnknownDate), unknown);
    EXPECT_EQ(ShowDate(QStringLiteral("1925-01-01")), unknown);
    EXPECT_EQ(ShowDate(QStringLiteral("born about 1925")), unknown);
    EXPECT_EQ(ShowDate(QDate(1925, 6, 30)), unknown);
    EXPECT_EQ(ShowDate(QDateTime(QDate(1925, 1, 1), QTime(0, 0))), unknown);
    EXPECT_EQ(DateOrUnknown(QVariant()), unknown);
    EXPECT_EQ(DateOrUnknown(QDate(1925, 12, 31)), unknown);
}

TEST(Dates, ShowDateWritesOtherDatesInTheRegionalForm)
{
    TestEnv env;
    EXPECT_EQ(ShowDate(QDate(2020, 5, 3)), QStringLiteral("03/05/2020"));
    EXPECT_EQ(ShowDate(QDateTime(QDate(2020, 5, 3), QTime(17, 30))), QStringLiteral("03/05/2020"));
    EXPECT_EQ(ShowDate(QStringLiteral("2020-05-03")), QStringLiteral("03/05/2020"));
    EXPECT_EQ(ShowDate(QStringLiteral("3.5.20")), QStringLiteral("03/05/2020"));
    EXPECT_EQ(DateOrUnknown(QDate(2026, 11, 23)), QStringLiteral("23/11/2026"));

    SetRegionalDateOrder(DateOrder::MonthFirst);
    EXPECT_EQ(ShowDate(QDate(2020, 5, 3)), QStringLiteral("05/03/2020"));
    EXPECT_EQ(ShowDate(QStringLiteral("2020-05-03 10:00:00")), QStringLiteral("05/03/2020"));
    EXPECT_EQ(DateOrUnknown(QStringLiteral("5/3/2020")), QStringLiteral("05/03/2020"));
}

TEST(Dates, ShowDateLeavesATextThatIsNoDateAsItStands)
{
    TestEnv env;
    EXPECT_EQ(ShowDate(QString()), QString());
    EXPECT_EQ(ShowDate(QStringLiteral("spring")), QStringLiteral("spring"));
    EXPECT_EQ(ShowDate(QStringLiteral("Unknown")), QStringLiteral("Unknown"));
    EXPECT_EQ(ShowDate(QStringLiteral("12/31/2020")), QStringLiteral("12/31/2020")); // no date day first
    EXPECT_EQ(ShowDate(42), QStringLiteral("42"));
}

TEST(Dates, IsoDatesForSortingAndExport)
{
    TestEnv env;
    EXPECT_EQ(ToIsoDate(QDate(2020, 5, 3)), QStringLiteral("2020-05-03"));
    EXPECT_EQ(ToIsoDate(QDateTime(QDate(2020, 5, 3), QTime(23, 59))), QStringLiteral("2020-05-03"));
    EXPECT_EQ(ToIsoDate(QStringLiteral("3/5/2020")), QStringLiteral("2020-05-03"));
    EXPECT_EQ(ToIsoDate(kUnknownDate), QStringLiteral("1925-01-01"));
    EXPECT_EQ(ToIsoDate(QStringLiteral("Unknown")), QString());
    EXPECT_EQ(ToIsoDate(QVariant()), QString());
    EXPECT_EQ(ToIsoDate(31), QString());
    SetRegionalDateOrder(DateOrder::MonthFirst);
    EXPECT_EQ(ToIsoDate(QStringLiteral("3/5/2020")), QStringLiteral("2020-03-05"));
}

TEST(Dates, SqlStorageAndShortForms)
{
    TestEnv env;
    const QDate day(2021, 1, 9);
    EXPECT_EQ(FormatSqlDate(day), QStringLiteral("01/09/2021"));
    EXPECT_EQ(FormatShortDate(day), QStringLiteral("09/01/2021"));
    SetRegionalDateOrder(DateOrder::MonthFirst);
    EXPECT_EQ(FormatSqlDate(day), QStringLiteral("01/09/2021"));
    EXPECT_EQ(FormatShortDate(day), QStringLiteral("01/09/2021"));
    EXPECT_EQ(FormatShortDate(QDate()), QString());

    EXPECT_EQ(StorageDateText(QDateTime(day, QTime(0, 0))), QStringLiteral("2021-01-09"));
    EXPECT_EQ(StorageDateText(QDateTime(day, QTime(0, 0, 1))), QStringLiteral("2021-01-09 00:00:01"));
    EXPECT_EQ(StorageDateText(QDateTime(day, QTime(18, 4, 5))), QStringLiteral("2021-01-09 18:04:05"));
    EXPECT_EQ(StorageDateText(QDateTime()), QString());
    // Stored texts sort as dates do.
    EXPECT_LT(StorageDateText(QDateTime(QDate(2020, 12, 31), QTime(0, 0))),
              StorageDateText(QDateTime(QDate(2021, 1, 1), QTime(0, 0))));
}

struct SplitCase {
    const char* text;
    short whole;
    const char* fraction;
};

void PrintTo(const SplitCase& c, std::ostream* os)
{
    *os << '"' << c.text << '"';
}

class DecimalSplit : public ::testing::TestWithParam<SplitCase> {};

TEST_P(DecimalSplit, SplitsAtTheFirstPoint)
{
    const SplitCase& c = GetParam();
    EXPECT_EQ(WholePart(QString::fromUtf8(c.text)), c.whole);
    EXPECT_EQ(FractionPart(QString::fromUtf8(c.text)), QString::fromUtf8(c.fraction));
}

INSTANTIATE_TEST_SUITE_P(Weights, DecimalSplit, ::testing::Values(
    SplitCase{"12.75", 12, "75"},
    SplitCase{"12", 12, ""},
    SplitCase{" 3.5 ", 3, "5"},
    SplitCase{"0.250", 0, "250"},
    SplitCase{".5", 0, "5"},
    SplitCase{"1.2.3", 1, "2.3"},
    SplitCase{"12kg", 12, ""},
    SplitCase{"-4.5", -4, "5"},
    SplitCase{"", 0, ""},
    SplitCase{"heavy", 0, ""},
    SplitCase{"32767.9", 32767, "9"},
    SplitCase{"32768.1", 0, "1"},
    SplitCase{"-32768", -32768, ""},
    SplitCase{"99999999999999999999.5", 0, "5"}));

} // namespace
