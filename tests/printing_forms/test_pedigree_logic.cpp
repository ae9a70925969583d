// SPDX-License-Identifier: GPL-3.0-or-later
// The pedigree's logic without a window: the geometry of both forms in twips, the connector and
// heading of each box, the pop-up's placement, and the caption of a box from record and template.
#include "support/TestEnv.h"

#include "printing/PedigreeLayout.h"
#include "printing/PedigreeText.h"
#include "printing/PrintSettings.h"
#include "records/Animal.h"

#include <gtest/gtest.h>

namespace {

BoxFields fields(const QString& name, const QString& prefix = QString())
{
    BoxFields f;
    f.name = name;
    f.prefix = prefix;
    f.breed = QStringLiteral("Rex");
    f.colour = QStringLiteral("Agouti");
    f.registration = QStringLiteral("AB12");
    return f;
}

BoxWords words()
{
    BoxWords w;
    w.colourWord = QStringLiteral("Colour");
    w.customNames = {QStringLiteral("Ears"), QStringLiteral("Line"), QString(), QString(), QString(), QString()};
    w.titles = QStringList{QStringLiteral("Grand Ch"), QStringLiteral("Ch")};
    return w;
}

BoxCaption detailed(int box, const BoxFields& f, const PrintSettings& s = DefaultPrintSettings())
{
    return FillLabels(box, f, s, words(), PedigreeParent::FamilyTree, true);
}

} // namespace

TEST(PedigreeGeometry, SevenGenerationsStepFromTheOutsideInAndEndAtBox254)
{
    EXPECT_EQ(setGenLefts(), (std::array<int, 7>{0, 3045, 6315, 9450, 12550, 15750, 18915}));
    const PedigreeGeometry g = makeSevenGen();
    EXPECT_EQ(g.numPedBoxes, 254);
    EXPECT_EQ(g.indexLimit, 254);
    // 26135 / 127 is 205.8, a step of 206; boxes stand 300 right of their column.
    EXPECT_EQ(g.boxes[127].topLeft(), QPoint(18915 + 300, 795));
    EXPECT_EQ(g.boxes[128].top(), 795 + 206);
    EXPECT_EQ(g.boxes[254].top(), 795 + 127 * 206);
    EXPECT_EQ(g.boxes[63].topLeft(), QPoint(15750 + 300, 915));
    EXPECT_EQ(g.boxes[64].top(), 915 + 411);
    EXPECT_EQ(g.boxes[31].topLeft(), QPoint(12550 + 300, 1050));
    EXPECT_EQ(g.boxes[32].top(), 1050 + 823);
    EXPECT_EQ(g.boxes[15].topLeft(), QPoint(9450 + 300, 1395));
    EXPECT_EQ(g.boxes[16].top(), 1395 + 1640);
    // The inner columns go on from the column outside: box 7 faces the middle of boxes 15 and 16.
    EXPECT_EQ(g.boxes[7].top(), (1395 + 1395 + 1640) / 2);
    EXPECT_EQ(g.boxes[8].top() - g.boxes[7].top(), 3272);
    EXPECT_EQ(g.boxes[4].top() - g.boxes[3].top(), 6545);
    EXPECT_EQ(g.boxes[1].left(), 300);
    // bracket(k) reaches 50 past the tops of boxes 2k+1 and 2k+2; the last one is bracket(126).
    for (int k : {1, 14, 62, 126}) {
        EXPECT_EQ(g.brackets[k].top(), g.boxes[2 * k + 1].top() - 50) << k;
        EXPECT_EQ(g.brackets[k].height(), g.boxes[2 * k + 2].top() - g.boxes[2 * k + 1].top() + 100) << k;
        EXPECT_EQ(g.brackets[k].left(), g.boxes[k].left() + g.boxes[k].width()) << k;
        EXPECT_EQ(g.brackets[k].left() + g.brackets[k].width(), g.boxes[2 * k + 1].left()) << k;
    }
    // The subject stands above its parents in this form: nothing joins it to them.
    EXPECT_TRUE(g.brackets[0].isNull());
    EXPECT_LT(g.boxes[0].bottom(), g.boxes[1].top());
    EXPECT_FALSE(g.explore.isNull());
    for (int h = 0; h < kPedigreeHeadings; ++h)
        EXPECT_EQ(g.headings[h].left(), setGenLefts()[h] + 300);
}

TEST(PedigreeGeometry, FourGenerationsPlaceOnlyThirtyBoxesWiderWithTheSubjectInFront)
{
    const PedigreeGeometry g = makeFourGen();
    EXPECT_EQ(g.numPedBoxes, 30);
    EXPECT_EQ(g.indexLimit, 62);
    EXPECT_EQ(g.boxes[15].topLeft(), QPoint(12550 + 300, 950));
    EXPECT_EQ(g.boxes[16].top(), 950 + 378);  // 6050 / 16 = 378.1
    EXPECT_EQ(g.boxes[7].topLeft(), QPoint(9450 + 300, 1100));
    EXPECT_EQ(g.boxes[8].top(), 1100 + 769);  // 6150 / 8 = 768.75
    EXPECT_EQ(g.boxes[3].topLeft(), QPoint(6315 + 300, 1320));
    EXPECT_EQ(g.boxes[4].top(), 1320 + 1632); // 6530 / 4 = 1632.5, the half to the even neighbour
    EXPECT_EQ(g.boxes[1].topLeft(), QPoint(3045 + 300, 2500));
    EXPECT_EQ(g.boxes[0].left(), 300);
    EXPECT_GT(g.boxes[1].width(), makeSevenGen().boxes[1].width());
    for (int i = 31; i < kPedigreeBoxes; ++i)
        ASSERT_TRUE(g.boxes[i].isNull()) << i;
    for (int k = 15; k < kPedigreeBrackets; ++k)
        ASSERT_TRUE(g.brackets[k].isNull()) << k;
    EXPECT_FALSE(g.brackets[0].isNull());
    EXPECT_EQ(g.headings[0].left(), 3045 + 300);
    EXPECT_TRUE(g.headings[4].isNull());
    EXPECT_TRUE(g.explore.isNull());
    EXPECT_EQ(ColumnStep(2.5), 2);
    EXPECT_EQ(ColumnStep(3.5), 4);
}

TEST(PedigreeGeometry, ConnectorsAndHeadingsOfEachBox)
{
    EXPECT_EQ(BracketOfBox(0), -1);
    EXPECT_EQ(BracketOfBox(1), 0);
    EXPECT_EQ(BracketOfBox(2), 0);
    EXPECT_EQ(BracketOfBox(3), 1);
    EXPECT_EQ(BracketOfBox(4), 1);
    EXPECT_EQ(BracketOfBox(253), 126);
    EXPECT_EQ(BracketOfBox(254), 126);
    const std::pair<int, int> headings[] = {{1, 0}, {2, 0}, {3, 1}, {6, 1}, {7, 1}, {8, 1}, {9, 2},
                                            {14, 2}, {15, 3}, {30, 3}, {31, 4}, {62, 4}, {63, 5}, {126, 5},
                                            {127, 6}, {253, 6}, {254, 0}};
    for (const auto& [box, heading] : headings)
        EXPECT_EQ(HeadingOfBox(box), heading) << box;
    EXPECT_EQ(GenerationOfBox(0), 0);
    EXPECT_EQ(GenerationOfBox(2), 1);
    EXPECT_EQ(GenerationOfBox(127), 7);
    EXPECT_EQ(GenerationOfBox(254), 7);
}

TEST(PedigreeGeometry, TwipsAndThePopupsPlace)
{
    EXPECT_EQ(TwipsToPixels(1440, 96), 96);
    EXPECT_EQ(TwipsToPixels(200, 96), 13);
    EXPECT_EQ(TwipsToPixels(1440, 144), 144);
    // Boxes that touch in twips touch in pixels.
    const QRect a = TwipsToPixels(QRect(0, 795, 100, 206), 96);
    const QRect b = TwipsToPixels(QRect(0, 1001, 100, 206), 96);
    EXPECT_EQ(a.bottom() + 1, b.top());

    const QRect screen(0, 0, 1000, 800);
    const QSize popup(300, 200);
    EXPECT_EQ(PopupPosition(QPoint(100, 100), popup, screen, 13), QPoint(113, 113));
    // Near the right and bottom edges it goes to the other side of the cursor.
    EXPECT_EQ(PopupPosition(QPoint(900, 100), popup, screen, 13), QPoint(900 - 13 - 300, 113));
    EXPECT_EQ(PopupPosition(QPoint(100, 700), popup, screen, 13), QPoint(113, 700 - 13 - 200));
    EXPECT_EQ(PopupPosition(QPoint(950, 750), popup, screen, 13), QPoint(637, 537));
    // A pop-up larger than the room on either side keeps to the screen's top left.
    EXPECT_EQ(PopupPosition(QPoint(50, 50), QSize(990, 790), screen, 13), QPoint(0, 0));
}

TEST(PrintTemplate, TheDefaultLayoutsValues)
{
    const PrintSettings s = DefaultPrintSettings();
    EXPECT_EQ(s.FieldChoices, QStringLiteral("10000111111111100000000000000000000000000000011"));
    EXPECT_EQ(s.FieldChoices.size(), kFieldChoiceCount);
    EXPECT_EQ(s.fieldOrder, QStringLiteral("123456789"));
    EXPECT_EQ(s.FontName, QStringLiteral("Arial"));
    EXPECT_EQ(s.FontSize, 9);
    EXPECT_EQ(s.SubjectFontSize, 9);
    EXPECT_EQ(s.TitleFontSize, 18);
    EXPECT_EQ(s.LineColour, QStringLiteral("&H80000012"));
    EXPECT_EQ(s.ChampionColour, QStringLiteral("255"));
    EXPECT_EQ(s.generationChoice, 1);
    EXPECT_EQ(s.wrapLength, 40);
    EXPECT_EQ(s.strConnectors, QStringLiteral("Straight Space"));
    EXPECT_TRUE(s.fieldChosen(0, 0));
    EXPECT_FALSE(s.fieldChosen(0, 1));
    EXPECT_TRUE(s.fieldChosen(1, 4));
    EXPECT_TRUE(s.fieldChosen(2, 4));
    EXPECT_FALSE(s.fieldChosen(3, 0));
    EXPECT_FALSE(s.titlesHidden(2));
    EXPECT_TRUE(s.titlesHidden(3));
    EXPECT_TRUE(s.titlesHidden(4));

    const auto scheme = ParseTemplateColour(QStringLiteral("&H80000012"));
    ASSERT_TRUE(scheme);
    EXPECT_TRUE(scheme->system);
    EXPECT_EQ(scheme->index, 0x12);
    const auto red = ParseTemplateColour(QStringLiteral("255"));
    ASSERT_TRUE(red);
    EXPECT_EQ(std::tie(red->system, red->red, red->green, red->blue), std::make_tuple(false, 255, 0, 0));
    const auto maroon = ParseTemplateColour(QStringLiteral("128"));
    EXPECT_EQ(maroon->red, 128);
    EXPECT_EQ(ParseTemplateColour(QStringLiteral("&HFF0000"))->blue, 255);
    EXPECT_FALSE(ParseTemplateColour(QStringLiteral("red")));
}

TEST(BoxCaptions, OnTheFamilyTreePageABoxHoldsTheDecoratedNameAndABlank)
{
    const BoxWords w = words();
    const PrintSettings s = DefaultPrintSettings();
    BoxFields f = fields(QStringLiteral("Pepper"), QStringLiteral("Rosebank"));
    f.suffix = QStringLiteral("II");
    const BoxCaption c = FillLabels(3, f, s, w, PedigreeParent::FamilyTree, false);
    EXPECT_TRUE(c.shown);
    EXPECT_EQ(c.text, QStringLiteral("Rosebank Pepper II "));
    // A long name wraps at 45 characters.
    const BoxCaption longName = FillLabels(
        1, fields(QStringLiteral("Meadowsweet Hollow Thunderbolt Of The Northern Hills")), s, w,
        PedigreeParent::FamilyTree, false);
    EXPECT_EQ(longName.text, QStringLiteral("Meadowsweet Hollow Thunderbolt Of The\nNorthern Hills "));
}

TEST(BoxCaptions, NobodyShowsNothing)
{
    const PrintSettings s = DefaultPrintSettings();
    for (const char* name : {"", "Unknown", "UNKNOWN", "unknown", "X"}) {
        const BoxCaption c = FillLabels(5, fields(QString::fromLatin1(name)), s, words(), PedigreeParent::FamilyTree,
                                        false);
        EXPECT_FALSE(c.shown) << name;
    }
    EXPECT_TRUE(FillLabels(5, fields(QStringLiteral("Xy")), s, words(), PedigreeParent::FamilyTree, false).shown);
}

TEST(BoxCaptions, ChampionsByPrefixOrTitle)
{
    const PrintSettings s = DefaultPrintSettings();
    const auto champion = [&](const QString& name, const QString& prefix) {
        return FillLabels(1, fields(name, prefix), s, words(), PedigreeParent::FamilyTree, false).champion;
    };
    EXPECT_TRUE(champion(QStringLiteral("Pepper"), QStringLiteral("Rosebank")));
    EXPECT_TRUE(champion(QStringLiteral("Grand Ch Pepper"), QString()));
    EXPECT_TRUE(champion(QStringLiteral("ch Pepper"), QString()));
    EXPECT_FALSE(champion(QStringLiteral("Chester"), QString()));
    EXPECT_FALSE(champion(QStringLiteral("Pepper"), QStringLiteral("  ")));
}

TEST(BoxCaptions, DetailsFollowTheTemplatesColumnsRowsAndOrder)
{
    const BoxFields f = fields(QStringLiteral("Pepper"));
    // The parents and grandparents: colour and registration with their titles, in table order.
    EXPECT_EQ(detailed(1, f).text, QStringLiteral("Pepper\nColour: Agouti\nRegistration: AB12"));
    EXPECT_EQ(detailed(6, f).text, QStringLiteral("Pepper\nColour: Agouti\nRegistration: AB12"));
    // Columns 3 and 4 hide the titles: bracketed values on one line under the name.
    EXPECT_EQ(detailed(7, f).text, QStringLiteral("Pepper\n[Agouti] [AB12]"));
    EXPECT_EQ(detailed(30, f).text, QStringLiteral("Pepper\n[Agouti] [AB12]"));
    // From box 31 on the name stands alone.
    EXPECT_EQ(detailed(31, f).text, QStringLiteral("Pepper"));

    PrintSettings s = DefaultPrintSettings();
    s.fieldOrder = QStringLiteral("312456789");
    s.FieldChoices[0 * 5 + 3] = QLatin1Char('1'); // breed in column 3
    s.FieldChoices[45] = QLatin1Char('0');
    EXPECT_EQ(detailed(2, f, s).text, QStringLiteral("Pepper\nRegistration: AB12\nColour: Agouti"));
    EXPECT_EQ(detailed(9, f, s).text, QStringLiteral("Pepper\nRegistration: AB12\nBreed: Rex\nColour: Agouti"));
    s.FieldChoices[45] = QLatin1Char('1');
    EXPECT_EQ(detailed(9, f, s).text, QStringLiteral("Pepper\n[AB12] [Rex] [Agouti]"));

    // A registration of one character and an empty custom field give no line, even when ticked; the
    // breed and colour rows show as the template ticks them.
    s = DefaultPrintSettings();
    s.FieldChoices[3 * 5 + 1] = QLatin1Char('1'); // custom field 1 for the parents
    s.FieldChoices[4 * 5 + 1] = QLatin1Char('1'); // custom field 2
    BoxFields g = fields(QStringLiteral("Pepper"));
    g.registration = QStringLiteral("A");
    g.colour.clear();
    g.custom[1] = QStringLiteral("Hillside");
    EXPECT_EQ(detailed(1, g, s).text, QStringLiteral("Pepper\nColour: \nLine: Hillside"));

    BoxWords us = words();
    us.colourWord = QStringLiteral("Color");
    EXPECT_EQ(FillLabels(1, f, DefaultPrintSettings(), us, PedigreeParent::PrintPreview, false).text,
              QStringLiteral("Pepper\nColor: Agouti\nRegistration: AB12"));
}

TEST(BoxCaptions, TheCertificateWrapsAtTheTemplatesLength)
{
    PrintSettings s = DefaultPrintSettings();
    s.wrapLength = 12;
    EXPECT_EQ(BoxWrapWidth(PedigreeParent::FamilyTree, s), 45);
    EXPECT_EQ(BoxWrapWidth(PedigreeParent::PrintPreview, s), 45);
    EXPECT_EQ(BoxWrapWidth(PedigreeParent::Certificate, s), 12);
    EXPECT_EQ(FillLabels(40, fields(QStringLiteral("Silver Birch Pepper")), s, words(), PedigreeParent::Certificate,
                         false)
                  .text,
              QStringLiteral("Silver Birch\nPepper"));
}

TEST(BoxCaptions, TheSubjectsBoxAndItsLitterMates)
{
    Animal a;
    a.fullName = QStringLiteral("Rosebank Pepper");
    a.sexTerm = QStringLiteral("Boar");
    a.dob = QStringLiteral("01/02/2025");
    a.breed = QStringLiteral("Rex");
    a.colour = QStringLiteral("Agouti");
    a.tag = QStringLiteral("AB12");
    a.customField[0] = QStringLiteral("Upright");
    PrintSettings s = DefaultPrintSettings();
    EXPECT_EQ(FirstBoxText(a, s, words(), PedigreeParent::FamilyTree),
              QStringLiteral("Rosebank Pepper\nSex:     Boar\nDOB:    01/02/2025\nBreed:  Rex\nColour:   Agouti\n"
                             "Reg: AB12"));
    s.FieldChoices[15] = QLatin1Char('1');
    a.tag = QStringLiteral("A");
    EXPECT_EQ(FirstBoxText(a, s, words(), PedigreeParent::FamilyTree),
              QStringLiteral("Rosebank Pepper\nSex:     Boar\nDOB:    01/02/2025\nBreed:  Rex\nColour:   Agouti\n"
                             "Ears Upright"));
    EXPECT_EQ(FamilyText({}), QString());
    EXPECT_EQ(FamilyText({QStringLiteral("Salt (Sow)"), QStringLiteral("Ch Cumin (Boar)")}),
              QStringLiteral("Same Family Tree:\nSalt (Sow)\nCh Cumin (Boar)"));
}
