// SPDX-License-Identifier: GPL-3.0-or-later
// The value rules under the SQL functions: numbers as text and text as numbers, dates written in
// every form Jet reads, serial dates, LIKE patterns and number formats.
#include "store/JetFunctions.h"
#include "support/TestEnv.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using jet::Moment;

QString literal(const char* text)
{
    const auto m = jet::parseDateLiteral(QString::fromUtf8(text));
    return m ? jet::storageText(*m) : QStringLiteral("none");
}

TEST(JetValues, NumbersReadAsCStrWritesThem)
{
    EXPECT_EQ(jet::numberText(12.5), QStringLiteral("12.5"));
    EXPECT_EQ(jet::numberText(-1), QStringLiteral("-1"));
    EXPECT_EQ(jet::numberText(-0.0), QStringLiteral("0"));
    EXPECT_EQ(jet::numberText(0.1 + 0.2), QStringLiteral("0.3"));
    EXPECT_EQ(jet::numberText(1e20), QStringLiteral("1E+20"));
    EXPECT_EQ(jet::numberText(0.00001), QStringLiteral("1E-05"));
    EXPECT_EQ(jet::numberText(0.0001), QStringLiteral("0.0001"));
    EXPECT_EQ(jet::numberText(123456789012345.0), QStringLiteral("123456789012345"));
    EXPECT_EQ(jet::numberText(1234567890123456789.0), QStringLiteral("1.23456789012346E+18"));
}

TEST(JetValues, TextsReadAsNumbersAsCDblReadsThem)
{
    struct Case {
        const char* text;
        std::optional<double> number;
    };
    const Case cases[] = {
        {" -1.5e3 ", -1500},  {"12", 12},          {"+.5", 0.5},          {"1,234,567.25", 1234567.25},
        {"1.5D2", 150},       {"&HFF", 255},       {"&O17", 15},          {"TRUE", -1},
        {"false", 0},         {"12abc", {}},       {"", {}},              {"   ", {}},
        {"1e", {}},           {"1.2.3", {}},       {",5", {}},            {"- 1", {}},
        {"1e999", {}},        {"Yes", {}},
    };
    for (const Case& c : cases) {
        const auto got = jet::parseNumberText(QString::fromUtf8(c.text));
        EXPECT_EQ(got.has_value(), c.number.has_value()) << c.text;
        if (got && c.number) {
            EXPECT_DOUBLE_EQ(*got, *c.number) << c.text;
        }
    }
}

TEST(JetValues, ValTakesTheNumberAtTheStart)
{
    EXPECT_EQ(jet::valOf(u"12abc"), 12);
    EXPECT_EQ(jet::valOf(u"  1 2 3"), 123);
    EXPECT_EQ(jet::valOf(u"-1.5kg"), -1.5);
    EXPECT_EQ(jet::valOf(u"2.5e2 grams"), 250);
    EXPECT_EQ(jet::valOf(u"3 e"), 3);
    EXPECT_EQ(jet::valOf(u"1.2.3"), 1.2);
    EXPECT_EQ(jet::valOf(u"&H10"), 16);
    EXPECT_EQ(jet::valOf(u"abc"), 0);
    EXPECT_EQ(jet::valOf(u""), 0);
}

TEST(JetValues, DateLiteralsAreMonthFirstInEveryForm)
{
    EXPECT_EQ(literal("03/04/2021"), QStringLiteral("2021-03-04"));
    EXPECT_EQ(literal(" 3-4-2021 "), QStringLiteral("2021-03-04"));
    EXPECT_EQ(literal("03.04.21"), QStringLiteral("2021-03-04"));
    EXPECT_EQ(literal("03 04 1999"), QStringLiteral("1999-03-04"));
    EXPECT_EQ(literal("2021-03-04 23:59:59"), QStringLiteral("2021-03-04 23:59:59"));
    EXPECT_EQ(literal("3/4/2021 12:00 AM"), QStringLiteral("2021-03-04"));
    EXPECT_EQ(literal("3/4/2021 12:30 pm"), QStringLiteral("2021-03-04 12:30:00"));
    EXPECT_EQ(literal("March 4, 2021"), QStringLiteral("2021-03-04"));
    EXPECT_EQ(literal("4 Mar 2021"), QStringLiteral("2021-03-04"));
    EXPECT_EQ(literal("10:30"), QStringLiteral("1899-12-30 10:30:00"));
    EXPECT_EQ(literal("1/2029"), QStringLiteral("2029-01-01"));
    EXPECT_EQ(literal("25/12/2020"), QStringLiteral("2020-12-25"));
    for (const char* bad : {"", "2/30/2020", "13/13/2020", "3/4/2021 25:00", "3/4/2021 13:00 PM", "Smarch 4 2021",
                            "1/2/3/4", "3/4/2021 x", "3/4/0099"})
        EXPECT_EQ(literal(bad), QStringLiteral("none")) << bad;
}

TEST(JetValues, TextDatesFollowTheRegionUnlessTheyNameTheMonth)
{
    TestEnv env; // day first
    auto read = [](const char* text) {
        const auto m = jet::parseDateValue(QString::fromUtf8(text));
        return m ? jet::storageText(*m) : QStringLiteral("none");
    };
    EXPECT_EQ(read("03/04/2021"), QStringLiteral("2021-04-03"));
    EXPECT_EQ(read("15/06/2020 10:30"), QStringLiteral("2020-06-15 10:30:00"));
    EXPECT_EQ(read("2020-06-15"), QStringLiteral("2020-06-15"));
    EXPECT_EQ(read("June 15 2020"), QStringLiteral("2020-06-15"));
    EXPECT_EQ(read("03 04 2021"), QStringLiteral("none")); // bare numbers are the region's business
    SetRegionalDateOrder(DateOrder::MonthFirst);
    EXPECT_EQ(read("03/04/2021"), QStringLiteral("2021-03-04"));
    EXPECT_EQ(read("15/06/2020"), QStringLiteral("none"));
}

TEST(JetValues, SerialDatesCountFromTheEndOf1899)
{
    Moment m;
    m.date = QDate(2020, 1, 1);
    EXPECT_EQ(jet::serialOf(m), 43831);
    m.hour = 18;
    EXPECT_DOUBLE_EQ(jet::serialOf(m), 43831.75);
    const auto back = jet::momentOfSerial(43831.75);
    ASSERT_TRUE(back);
    EXPECT_EQ(jet::storageText(*back), QStringLiteral("2020-01-01 18:00:00"));
    // Before the zero day the fraction still counts forward within the day.
    const auto early = jet::momentOfSerial(-1.5);
    ASSERT_TRUE(early);
    EXPECT_EQ(jet::storageText(*early), QStringLiteral("1899-12-29 12:00:00"));
    EXPECT_DOUBLE_EQ(jet::serialOf(*early), -1.5);
    EXPECT_FALSE(jet::momentOfSerial(3e6));
    EXPECT_FALSE(jet::momentOfSerial(std::nan("")));
}

TEST(JetValues, RegionalDateTextsAreCStrsDates)
{
    TestEnv env;
    Moment m;
    m.date = QDate(2020, 1, 2);
    EXPECT_EQ(jet::regionalDateText(m), QStringLiteral("02/01/2020"));
    m.hour = 13;
    m.minute = 5;
    EXPECT_EQ(jet::regionalDateText(m), QStringLiteral("02/01/2020 13:05:00"));
    SetRegionalDateOrder(DateOrder::MonthFirst);
    EXPECT_EQ(jet::regionalDateText(m), QStringLiteral("01/02/2020 1:05:00 PM"));
    m.date = QDate(1899, 12, 30);
    EXPECT_EQ(jet::regionalDateText(m), QStringLiteral("1:05:00 PM"));
}

TEST(JetValues, LikePatterns)
{
    struct Case {
        const char16_t* value;
        const char16_t* pattern;
        bool match;
    };
    const Case cases[] = {
        {u"", u"*", true},           {u"", u"?", false},          {u"abc", u"a*c", true},
        {u"abc", u"a*b", false},     {u"aXbXc", u"*x*x*", true},  {u"a1", u"a#", true},
        {u"ab", u"a#", false},       {u"b", u"[a-c]", true},      {u"B", u"[a-c]", true},
        {u"d", u"[a-c]", false},     {u"d", u"[!a-c]", true},     {u"-", u"[a-]", true},
        {u"*", u"[*]", true},        {u"x", u"[*]", false},       {u"[", u"[", true},
        {u"a%b", u"a%b", true},      {u"axb", u"a%b", false},     {u"ß", u"ß", true},
        {u"Ärger", u"ä*", true},     {u"mississippi", u"*sip*", true},
    };
    for (const Case& c : cases)
        EXPECT_EQ(jet::likeMatch(QStringView(c.value), QStringView(c.pattern)), c.match)
            << QString::fromUtf16(c.value).toStdString() << " LIKE " << QString::fromUtf16(c.pattern).toStdString();
}

TEST(JetValues, NumberFormatsWithSections)
{
    const char* const f = "0.00;(0.00);\"zero\"";
    EXPECT_EQ(jet::formatNumber(1.5, QString::fromLatin1(f)), QStringLiteral("1.50"));
    EXPECT_EQ(jet::formatNumber(-1.5, QString::fromLatin1(f)), QStringLiteral("(1.50)"));
    EXPECT_EQ(jet::formatNumber(0, QString::fromLatin1(f)), QStringLiteral("zero"));
    EXPECT_EQ(jet::formatNumber(0.5, QStringLiteral("#.00")), QStringLiteral(".50"));
    EXPECT_EQ(jet::formatNumber(1, QStringLiteral("#.##")), QStringLiteral("1."));
    EXPECT_EQ(jet::formatNumber(2.5, QStringLiteral("0")), QStringLiteral("3"));
    EXPECT_EQ(jet::formatNumber(1.005, QStringLiteral("0.00")), QStringLiteral("1.01"));
    EXPECT_EQ(jet::formatNumber(999.996, QStringLiteral("#,##0.00")), QStringLiteral("1,000.00"));
    EXPECT_EQ(jet::formatNumber(12, QStringLiteral("\"No. \"0")), QStringLiteral("No. 12"));
    EXPECT_EQ(jet::formatNumber(0.000123, QStringLiteral("0.0E-0")), QStringLiteral("1.2E-4"));
    EXPECT_EQ(jet::formatNumber(99999, QStringLiteral("0.0E+00")), QStringLiteral("1.0E+05"));
    EXPECT_EQ(jet::formatNumber(0.25, QStringLiteral("Percent")), QStringLiteral("25.00%"));
    EXPECT_EQ(jet::formatNumber(-1234.5, QStringLiteral("Fixed")), QStringLiteral("-1234.50"));
    EXPECT_TRUE(jet::isNumberFormat(QStringLiteral("#,##0")));
    EXPECT_FALSE(jet::isNumberFormat(QStringLiteral("dd mmm yyyy")));
    EXPECT_TRUE(jet::isDateFormat(QStringLiteral("hh:nn AM/PM")));
    EXPECT_FALSE(jet::isDateFormat(QStringLiteral("\"day \"0")));
}

} // namespace
