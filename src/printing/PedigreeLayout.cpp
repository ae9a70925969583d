// SPDX-License-Identifier: GPL-3.0-or-later
#include "printing/PedigreeLayout.h"

#include <QtMath>
#include <cmath>

namespace {

constexpr int kBoxIndent = 300;          // a box stands this far right of its column's left edge
constexpr int kSevenGenBoxWidth = 2600;
constexpr int kFourGenBoxWidth = 2750;   // the shorter form has the room for wider boxes
constexpr int kMaxBoxHeight = 2400;      // ten lines; a taller step only spaces the boxes out
constexpr int kBracketOverhang = 50;     // a connector reaches this far past both parents' tops
constexpr int kHeadingHeight = 330;
constexpr int kMargin = 300;

struct Column {
    int firstBox, lastBox, column;
};

// Places one column from its first top down by a fixed step; the tops run on as floating point.
void placeColumn(PedigreeGeometry& g, std::array<double, kPedigreeBoxes>& tops, const Column& c, double firstTop,
                 int step, int width)
{
    double top = firstTop;
    for (int k = c.firstBox; k <= c.lastBox; ++k) {
        tops[k] = top;
        g.boxes[k] = QRect(g.genLefts[c.column] + kBoxIndent, qRound(top), width, qMin(step, kMaxBoxHeight));
        top += step;
    }
}

// An inner column whose first top is not given starts midway between the first two boxes of the
// column outside it, so that its first box faces its connector.
double continuedTop(const std::array<double, kPedigreeBoxes>& tops, int firstBox)
{
    return (tops[2 * firstBox + 1] + tops[2 * firstBox + 2]) / 2;
}

// The connectors between the boxes placed: from the child's right edge to its parents' left edge,
// from the father's top to the mother's, reaching past both.
void sizeBrackets(PedigreeGeometry& g)
{
    for (int k = 0; k < kPedigreeBrackets; ++k) {
        const QRect& child = g.boxes[k];
        const QRect& father = g.boxes[2 * k + 1];
        const QRect& mother = g.boxes[2 * k + 2];
        if (child.isNull() || father.isNull() || mother.isNull() || father.left() <= child.right())
            continue;
        const int left = child.left() + child.width();
        g.brackets[k] = QRect(left, father.top() - kBracketOverhang, father.left() - left,
                              mother.top() - father.top() + 2 * kBracketOverhang);
    }
}

void finish(PedigreeGeometry& g)
{
    QRect all;
    for (const QRect& r : g.boxes)
        all |= r;
    all |= g.picture;
    g.surface = QSize(all.left() + all.width() + kMargin, all.top() + all.height() + kMargin);
}

} // namespace

std::array<int, 7> setGenLefts() { return {0, 3045, 6315, 9450, 12550, 15750, 18915}; }

qint16 ColumnStep(double quotient) { return qint16(std::nearbyint(quotient)); }

PedigreeGeometry makeSevenGen()
{
    PedigreeGeometry g;
    g.generations = 7;
    g.numPedBoxes = 254;
    g.indexLimit = 254;
    g.genLefts = setGenLefts();
    std::array<double, kPedigreeBoxes> tops{};
    const int w = kSevenGenBoxWidth;
    placeColumn(g, tops, {127, 254, 6}, 795, ColumnStep(26135.0 / 127), w);
    placeColumn(g, tops, {63, 126, 5}, 915, ColumnStep((26810.0 - 915) / 63), w);
    placeColumn(g, tops, {31, 62, 4}, 1050, ColumnStep((26555.0 - 1050) / 31), w);
    placeColumn(g, tops, {15, 30, 3}, 1395, ColumnStep((26000.0 - 1395) / 15), w);
    placeColumn(g, tops, {7, 14, 2}, continuedTop(tops, 7), ColumnStep(22905.0 / 7), w);
    const qint16 step1 = ColumnStep(19635.0 / 3);
    placeColumn(g, tops, {3, 6, 1}, continuedTop(tops, 3), step1, w);
    placeColumn(g, tops, {1, 2, 0}, continuedTop(tops, 1), 2 * step1, w);
    // The subject stands above its parents in the first column, its picture over it; no connector
    // joins them.
    g.picture = QRect(kBoxIndent, 795, w, 2700);
    const int subjectTop = g.picture.bottom() + 100;
    g.boxes[0] = QRect(kBoxIndent, subjectTop, w, g.boxes[1].top() - 100 - subjectTop);
    for (int h = 0; h < kPedigreeHeadings; ++h)
        g.headings[h] = QRect(g.genLefts[h] + kBoxIndent, 330, w, kHeadingHeight);
    g.explore = QRect(g.genLefts[1] + kBoxIndent, 900, 2400, 2400);
    sizeBrackets(g);
    finish(g);
    return g;
}

PedigreeGeometry makeFourGen()
{
    PedigreeGeometry g;
    g.generations = 4;
    g.numPedBoxes = 30;
    g.indexLimit = 62;
    g.genLefts = setGenLefts();
    std::array<double, kPedigreeBoxes> tops{};
    const int w = kFourGenBoxWidth;
    placeColumn(g, tops, {15, 30, 4}, 950, ColumnStep(6050.0 / 16), w);
    placeColumn(g, tops, {7, 14, 3}, 1100, ColumnStep(6150.0 / 8), w);
    const qint16 step2 = ColumnStep(6530.0 / 4);
    placeColumn(g, tops, {3, 6, 2}, 1320, step2, w);
    placeColumn(g, tops, {1, 2, 1}, 2500, 2 * step2, w);
    // The subject faces the middle of its parents' connector, its picture above it.
    const int subjectTop = qRound((tops[1] + tops[2]) / 2);
    g.boxes[0] = QRect(kBoxIndent, subjectTop, w, 3500);
    g.picture = QRect(kBoxIndent, 950, w, subjectTop - 150 - 950);
    for (int h = 0; h < 4; ++h)
        g.headings[h] = QRect(g.genLefts[h + 1] + kBoxIndent, 450, w, kHeadingHeight);
    sizeBrackets(g);
    finish(g);
    return g;
}

PedigreeGeometry PedigreeForm(int generations) { return generations == 4 ? makeFourGen() : makeSevenGen(); }

int BracketOfBox(int boxNum)
{
    if (boxNum <= 0)
        return -1;
    const int even = boxNum % 2 ? boxNum + 1 : boxNum;
    return even / 2 - 1;
}

int HeadingOfBox(int boxNum)
{
    static const int thresholds[] = {3, 9, 15, 31, 63, 127, 254};
    for (int h = 0; h < kPedigreeHeadings; ++h) {
        if (boxNum < thresholds[h])
            return h;
    }
    return 0;
}

int GenerationOfBox(int boxNum)
{
    int g = 0;
    for (int n = boxNum + 1; n > 1; n >>= 1)
        ++g;
    return g;
}

int TwipsToPixels(int twips, double dotsPerInch) { return qRound(twips * dotsPerInch / kTwipsPerInch); }

QRect TwipsToPixels(const QRect& twips, double dotsPerInch)
{
    if (twips.isNull())
        return {};
    // Edges, not sizes, are converted, so that boxes that touch in twips touch on the screen.
    const int left = TwipsToPixels(twips.left(), dotsPerInch);
    const int top = TwipsToPixels(twips.top(), dotsPerInch);
    const int right = TwipsToPixels(twips.left() + twips.width(), dotsPerInch);
    const int bottom = TwipsToPixels(twips.top() + twips.height(), dotsPerInch);
    return QRect(left, top, qMax(1, right - left), qMax(1, bottom - top));
}

QPoint PopupPosition(const QPoint& cursor, const QSize& popup, const QRect& screen, int gap)
{
    int x = cursor.x() + gap;
    if (x + popup.width() > screen.left() + screen.width())
        x = cursor.x() - gap - popup.width();
    int y = cursor.y() + gap;
    if (y + popup.height() > screen.top() + screen.height())
        y = cursor.y() - gap - popup.height();
    return QPoint(qMax(x, screen.left()), qMax(y, screen.top()));
}
