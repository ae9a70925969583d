// SPDX-License-Identifier: GPL-3.0-or-later
// The pieces a pedigree surface is drawn with: a box (one lblCavy), a connector (one bracket) drawn
// from a connector picture, and the background that carries them.
#pragma once

#include <QColor>
#include <QFont>
#include <QLabel>
#include <QPixmap>
#include <QString>
#include <QWidget>
#include <memory>

class QPainter;
class QSvgRenderer;

// One box: its caption, drawn top-left and made smaller where it would not fit the box, and the
// stored name of the animal it stands for.
class PedigreeBox : public QLabel {
    Q_OBJECT
public:
    PedigreeBox(int index, QWidget* parent);

    int index() const { return boxIndex; }
    QString animalName() const { return storedName; }
    void setAnimalName(const QString& name) { storedName = name; }
    void setCaptionColour(const QColor& colour);
    // The font the caption is drawn with at most; it shrinks to fit the box.
    void setBaseFont(const QFont& font);
    QFont baseFont() const { return base; }
    // The size all boxes of a column are drawn at, so that a column reads evenly; 0 lets the box fit
    // its caption on its own.
    void setColumnPointSize(qreal points);
    // The largest size, down to 6 points, at which the caption fits the box.
    qreal fittingPointSize() const;
    // The middle of the caption's first line, from the box's top, in pixels.
    int firstLineCentre() const;
    // The font the caption is drawn with as the box stands now.
    QFont fittedFont() const;

signals:
    void hovered(int index);
    void doubleClicked(int index);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    int boxIndex;
    QString storedName;
    QFont base;
    qreal columnPoints = 0;
    bool underMouse = false;
};

// A connector picture: an SVG with the parts "child", "stem", "father" and "mother", whose horizontal
// extents the picture gives and whose heights the boxes give.
class ConnectorPicture {
public:
    // From the program's own pictures by style name ("Straight Space"); an unknown name gives the first.
    static std::shared_ptr<ConnectorPicture> load(const QString& style);
    bool isValid() const;
    // The part's left and right as a share of the connector's width.
    QPair<double, double> extent(const QString& part) const;
    void render(QPainter* painter, const QString& part, const QRectF& bounds) const;

private:
    std::shared_ptr<QSvgRenderer> renderer;
};

// One bracket: joins the child's first line to the first lines of both parents.
class PedigreeConnector : public QWidget {
    Q_OBJECT
public:
    PedigreeConnector(int index, QWidget* parent);

    void setPicture(std::shared_ptr<ConnectorPicture> picture);
    bool hasPicture() const { return picture != nullptr; }
    void setLineColour(const QColor& colour);
    // Where the lines meet the boxes, in the connector's own pixels; a parent that isn't shown gets no
    // line, so that a missing parent leaves a gap.
    void setTargets(int father, int mother, int child, bool fatherShown, bool motherShown);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    std::shared_ptr<ConnectorPicture> picture;
    QColor lineColour = Qt::black;
    int fatherY = 0, motherY = 0, childY = 0;
    bool toFather = true, toMother = true;
};

// imgBackground: the surface under the boxes, with the template's background picture if it has one.
class PedigreeSurface : public QWidget {
    Q_OBJECT
public:
    explicit PedigreeSurface(QWidget* parent);
    void setPicture(const QPixmap& picture);

signals:
    void mouseMoved();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;

private:
    QPixmap picture;
};
