// SPDX-License-Identifier: GPL-3.0-or-later
// The geometry of the pedigree surface, in twips of the surface itself: where each box, connector and
// column heading of the 4- and 7-generation forms stands. A printout measures from the same numbers;
// the screen converts them at its logical resolution.
#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>
#include <array>

inline constexpr int kPedigreeBoxes = 255;   // lblCavy(0..254): 0 the subject, k position k of the ancestors
inline constexpr int kPedigreeBrackets = 127; // bracket(k) joins box k to boxes 2k+1 and 2k+2
inline constexpr int kPedigreeHeadings = 7;   // lblAnimal(0..6)
inline constexpr int kTwipsPerInch = 1440;

// The left edge of each generation column.
std::array<int, 7> setGenLefts();

// A step of a column: the quotient made a 16-bit integer, halves going to the even neighbour.
qint16 ColumnStep(double quotient);

struct PedigreeGeometry {
    int generations = 0; // 4 or 7
    int numPedBoxes = 0; // the last box the form places: 30 or 254
    int indexLimit = 0;  // how far the ancestor array is filled: 62 or 254
    std::array<int, 7> genLefts{};
    std::array<QRect, kPedigreeBoxes> boxes;       // a null rect: the form has no place for the box
    std::array<QRect, kPedigreeBrackets> brackets; // a null rect: no connector in this form
    std::array<QRect, kPedigreeHeadings> headings;
    QRect picture; // imgPopup, the subject's picture
    QRect explore; // imgExplore, the 7-generation form only
    QSize surface;
};

PedigreeGeometry makeFourGen();
PedigreeGeometry makeSevenGen();
// makeFourGen for 4, makeSevenGen for anything else.
PedigreeGeometry PedigreeForm(int generations);

// The connector that CheckBrackets shows for a box: both parents of a pair give the same one. -1 for
// box 0, which has no connector of its own.
int BracketOfBox(int boxNum);
// The column heading that CheckBrackets shows for a box. Boxes 7 and 8 count with the grandparents,
// and box 254 falls through every threshold to heading 0.
int HeadingOfBox(int boxNum);
// The generation of a box: 0 the subject, 1 the parents, ...
int GenerationOfBox(int boxNum);

int TwipsToPixels(int twips, double dotsPerInch);
QRect TwipsToPixels(const QRect& twips, double dotsPerInch);

// Where the hover pop-up goes: gap pixels right of and below the cursor, or left of and above it on the
// side where it would leave the screen; never beyond the screen's top left.
QPoint PopupPosition(const QPoint& cursor, const QSize& popup, const QRect& screen, int gap);
