// SPDX-License-Identifier: GPL-3.0-or-later
// The add form's rules without its window: names that look like numbers or hold characters a file name
// cannot, the date boxes, the estimated date of birth with its 16-bit day count, and the messages of a
// refused save.
#include "support/TestEnv.h"

#include "records/RecordForm.h"
#include "base/Clock.h"
#include "session/globals.h"

namespace {

using namespace RecordForm;

class RecordFormRules : public EnvTest {
protected:
    void SetUp() override
    {
        gUser.Animal = QStringLiteral("Rabbit");
        gUser.Male = QStringLiteral("Buck");
        gUser.Female = QStringLiteral("Doe");
        gUser.Country = QStringLiteral("Australia");
    }
    void TearDown() override { gUser = User(); }

    // An entry of edit mode, so that no data file is needed for the "already exists" look-up.
    static SaveEntry entry(const QString& name, const QString& sex = QStringLiteral("Doe"))
    {
        SaveEntry e;
        e.addMode = false;
        e.name = name;
        e.sex = sex;
        return e;
    }
};

TEST_F(RecordFormRules, NumericByThePlatformRule)
{
    for (const char* text : {"1234", "-5", "+5", "2.5", ".5", "1.", "1e5", "1E-3", "3D2", " 12 ", "- 7", "&H1F",
                             "&o17"})
        EXPECT_TRUE(IsNumeric(QString::fromLatin1(text))) << text;
    for (const char* text : {"", " ", "#1234", "12a", "1e", "e5", "1.2.3", "&H", "&O8", "inf", "nan", "1 2"})
        EXPECT_FALSE(IsNumeric(QString::fromLatin1(text))) << text;
}

TEST_F(RecordFormRules, IllegalCharactersAreNamedInTheirOrder)
{
    EXPECT_EQ(checkIllegalChr(QStringLiteral("1234")), QStringLiteral("set of characters comprised only of numbers"));
    EXPECT_EQ(checkIllegalChr(QStringLiteral("1e5")), QStringLiteral("set of characters comprised only of numbers"));
    EXPECT_EQ(checkIllegalChr(QStringLiteral("#1234")), QString());
    EXPECT_EQ(checkIllegalChr(QStringLiteral("Fred/2")), QStringLiteral("/"));
    // Backslash is tried first, the double quote last, whatever their place in the name.
    EXPECT_EQ(checkIllegalChr(QStringLiteral("a|b\\c")), QStringLiteral("\\"));
    EXPECT_EQ(checkIllegalChr(QStringLiteral("\"Q\" : one")), QStringLiteral(":"));
    EXPECT_EQ(checkIllegalChr(QStringLiteral("Say \"hi\"")), QStringLiteral("\""));
    EXPECT_EQ(checkIllegalChr(QStringLiteral("O'Neil's * best")), QString());
}

TEST_F(RecordFormRules, DateBoxesTakeTheUnknownDate)
{
    QString text;
    EXPECT_TRUE(ValidateDateText(text));
    EXPECT_EQ(text, QStringLiteral("01/01/1925"));
    text = QStringLiteral("Unknown");
    EXPECT_TRUE(ValidateDateText(text));
    EXPECT_EQ(text, QStringLiteral("01/01/1925"));
    text = QStringLiteral("31/12/2024");
    EXPECT_TRUE(ValidateDateText(text));
    EXPECT_EQ(text, QStringLiteral("31/12/2024"));
    text = QStringLiteral("12/31/2024"); // month first, in a day-first file
    EXPECT_FALSE(ValidateDateText(text));
    text = QStringLiteral("unknown");
    EXPECT_FALSE(ValidateDateText(text));
}

TEST_F(RecordFormRules, DateOfBirthFromAnAge)
{
    const QDate today = TestEnv::kToday;
    EXPECT_EQ(CalcDOB(0, 0, 0), today);
    EXPECT_EQ(CalcDOB(1, 2, 3), today.addDays(-(365 + 60 + 21)));
    EXPECT_EQ(CalcDOB(89, 0, 0), today.addDays(-32485));
    EXPECT_EQ(CalcDOB(0, 0, -2), today.addDays(14));
    // The day count is a 16-bit number: past 32767 days there is no date at all.
    EXPECT_EQ(CalcDOB(90, 0, 0), std::nullopt);
    EXPECT_EQ(CalcDOB(89, 9, 0), today.addDays(-32755));
    EXPECT_EQ(CalcDOB(89, 10, 0), std::nullopt);
    EXPECT_EQ(CalcDOB(89, 0, 41), std::nullopt);
    EXPECT_EQ(CalcDOB(0, 0, 4681), today.addDays(-32767));
    EXPECT_EQ(CalcDOB(0, 0, 4682), std::nullopt);

    EXPECT_EQ(CalcDOB(QString(), QString(), QString()), today);
    EXPECT_EQ(CalcDOB(QStringLiteral("1"), QStringLiteral(""), QStringLiteral(" 2 ")), today.addDays(-379));
    EXPECT_EQ(CalcDOB(QStringLiteral("2.5"), QStringLiteral("0"), QStringLiteral("0")), today.addDays(-730));
    EXPECT_EQ(CalcDOB(QStringLiteral("3.5"), QStringLiteral("0"), QStringLiteral("0")), today.addDays(-1460));
    EXPECT_EQ(CalcDOB(QStringLiteral("two"), QStringLiteral("0"), QStringLiteral("0")), std::nullopt);
    EXPECT_EQ(CalcDOB(QStringLiteral("90"), QStringLiteral("0"), QStringLiteral("0")), std::nullopt);
    EXPECT_EQ(CalcDOB(QStringLiteral("70000"), QStringLiteral("0"), QStringLiteral("0")), std::nullopt);
}

TEST_F(RecordFormRules, SexWordsBecomeKeywords)
{
    EXPECT_EQ(StoredSex(QStringLiteral("Buck")), QStringLiteral("male"));
    EXPECT_EQ(StoredSex(QStringLiteral("Doe")), QStringLiteral("female"));
    EXPECT_EQ(StoredSex(QStringLiteral("undefined")), QStringLiteral("undefined"));
    EXPECT_EQ(StoredSex(QStringLiteral("buck")), QString());
    EXPECT_EQ(StoredSex(QStringLiteral("male")), QString());
    EXPECT_EQ(StoredSex(QString()), QString());
}

TEST_F(RecordFormRules, MessagesOfARefusedSave)
{
    SaveEntry good = entry(QStringLiteral("Bramble"));
    EXPECT_EQ(SaveMessages(good), QString());
    EXPECT_EQ(good.dob, QStringLiteral("01/01/1925"));

    SaveEntry twoFaults = entry(QString());
    twoFaults.dob = QStringLiteral("last spring");
    EXPECT_EQ(SaveMessages(twoFaults),
              QStringLiteral("You must give your new Rabbit a name.\n"
                             "You must enter the date of birth in date format  - ( dd/mm/yyyy ) or leave it blank"));

    SaveEntry dates = entry(QStringLiteral("Bramble"));
    dates.sold = true;
    dates.dateSold = QStringLiteral("soon");
    dates.deceased = true;
    dates.dateDeceased = QStringLiteral("32/01/2020");
    EXPECT_EQ(SaveMessages(dates),
              QStringLiteral("Please enter Date sold in a date format  - ( dd/mm/yyyy )  or leave it blank.\n"
                             "Please enter Date deceased in a date format  - ( dd/mm/yyyy )  or leave it blank."));

    // A date box whose status is not ticked is not looked at.
    SaveEntry unticked = entry(QStringLiteral("Bramble"));
    unticked.dateSold = QStringLiteral("soon");
    EXPECT_EQ(SaveMessages(unticked), QString());

    SaveEntry noSex = entry(QString(), QString());
    noSex.dob = QStringLiteral("last spring");
    EXPECT_EQ(SaveMessages(noSex), QStringLiteral("Please choose your animal's sex."));

    gUser.Country = QStringLiteral("United States");
    SetRegionalDateOrder(DateOrder::MonthFirst);
    SaveEntry american = entry(QStringLiteral("Bramble"));
    american.dob = QStringLiteral("31/12/2024");
    EXPECT_EQ(SaveMessages(american),
              QStringLiteral("You must enter the date of birth in date format  - ( mm/dd/yyyy ) or leave it blank"));
}

} // namespace
