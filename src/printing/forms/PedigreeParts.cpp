// SPDX-License-Identifier: GPL-3.0-or-later
#include "printing/forms/PedigreeParts.h"

#include <QEnterEvent>
#include <QFontMetrics>
#include <QHash>
#include <QMouseEvent>
#include <QPainter>
#include <QSvgRenderer>

namespace {

constexpr qreal kSmallestPointSize = 6;
constexpr int kTextFlags = Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap;

} // namespace

PedigreeBox::PedigreeBox(int index, QWidget* parent) : QLabel(parent), boxIndex(index)
{
    setObjectName(QStringLiteral("lblCavy(") + QString::number(index) + QLatin1Char(')'));
    setMouseTracking(true);
    setAlignment(Qt::AlignLeft | Qt::AlignTop);
    setWordWrap(true);
    base = font();
}

void PedigreeBox::setCaptionColour(const QColor& colour)
{
    QPalette p = palette();
    p.setColor(QPalette::WindowText, colour);
    setPalette(p);
}

void PedigreeBox::setBaseFont(const QFont& font)
{
    base = font;
    setFont(font);
}

void PedigreeBox::setColumnPointSize(qreal points)
{
    columnPoints = points;
    update();
}

qreal PedigreeBox::fittingPointSize() const
{
    QFont f = base;
    qreal points = base.pointSizeF() > 0 ? base.pointSizeF() : 9;
    for (;;) {
        f.setPointSizeF(points);
        const QRect needed = QFontMetrics(f).boundingRect(QRect(0, 0, width(), 1 << 20), kTextFlags, text());
        if ((needed.height() <= height() && needed.width() <= width()) || points <= kSmallestPointSize)
            return points;
        points -= 0.5;
    }
}

QFont PedigreeBox::fittedFont() const
{
    QFont f = base;
    f.setPointSizeF(columnPoints > 0 ? columnPoints : fittingPointSize());
    return f;
}

int PedigreeBox::firstLineCentre() const
{
    return qMin(QFontMetrics(fittedFont()).height(), height()) / 2;
}

void PedigreeBox::paintEvent(QPaintEvent*)
{
    QPainter p(this);
    if (underMouse && !text().trimmed().isEmpty()) {
        // Shows which box a double-click would open.
        QColor wash = palette().color(QPalette::Highlight);
        wash.setAlpha(36);
        p.setRenderHint(QPainter::Antialiasing);
        p.setPen(Qt::NoPen);
        p.setBrush(wash);
        p.drawRoundedRect(QRectF(rect()).adjusted(-2, 0, 2, 0), 3, 3);
    }
    p.setFont(fittedFont());
    p.setPen(palette().color(QPalette::WindowText));
    p.drawText(rect(), kTextFlags, text());
}

void PedigreeBox::mouseMoveEvent(QMouseEvent* event)
{
    // Taken here: passed on, it would reach the background, which closes the pop-up.
    event->accept();
    emit hovered(boxIndex);
}

void PedigreeBox::mouseDoubleClickEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton)
        emit doubleClicked(boxIndex);
}

void PedigreeBox::enterEvent(QEnterEvent* event)
{
    underMouse = true;
    update();
    QLabel::enterEvent(event);
}

void PedigreeBox::leaveEvent(QEvent* event)
{
    underMouse = false;
    update();
    QLabel::leaveEvent(event);
}

std::shared_ptr<ConnectorPicture> ConnectorPicture::load(const QString& style)
{
    // One renderer per style for the whole program: a surface has 127 connectors.
    static QHash<QString, std::shared_ptr<ConnectorPicture>> loaded;
    if (auto found = loaded.value(style))
        return found;
    auto picture = std::make_shared<ConnectorPicture>();
    picture->renderer = std::make_shared<QSvgRenderer>(QStringLiteral(":/connectors/") + style +
                                                       QStringLiteral(".svg"));
    if (!picture->isValid()) {
        if (style != QLatin1String("Straight Space"))
            return load(QStringLiteral("Straight Space"));
        return picture;
    }
    loaded.insert(style, picture);
    return picture;
}

bool ConnectorPicture::isValid() const
{
    return renderer && renderer->isValid() && renderer->elementExists(QStringLiteral("stem"));
}

QPair<double, double> ConnectorPicture::extent(const QString& part) const
{
    if (!isValid() || !renderer->elementExists(part))
        return {0.5, 0.5};
    const QRectF box = renderer->viewBoxF();
    const QRectF bounds = renderer->boundsOnElement(part);
    if (box.width() <= 0)
        return {0.5, 0.5};
    return {(bounds.left() - box.left()) / box.width(), (bounds.right() - box.left()) / box.width()};
}

void ConnectorPicture::render(QPainter* painter, const QString& part, const QRectF& bounds) const
{
    if (isValid() && renderer->elementExists(part))
        renderer->render(painter, part, bounds);
}

PedigreeConnector::PedigreeConnector(int index, QWidget* parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("bracket(") + QString::number(index) + QLatin1Char(')'));
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

void PedigreeConnector::setPicture(std::shared_ptr<ConnectorPicture> p)
{
    picture = std::move(p);
    update();
}

void PedigreeConnector::setLineColour(const QColor& colour)
{
    lineColour = colour;
    update();
}

void PedigreeConnector::setTargets(int father, int mother, int child, bool fatherShown, bool motherShown)
{
    fatherY = father;
    motherY = mother;
    childY = child;
    toFather = fatherShown;
    toMother = motherShown;
    update();
}

void PedigreeConnector::paintEvent(QPaintEvent*)
{
    if (!picture || !picture->isValid())
        return;
    // The parts are drawn black, then take the line colour of the template.
    const qreal ratio = devicePixelRatioF();
    QPixmap canvas(size() * ratio);
    canvas.setDevicePixelRatio(ratio);
    canvas.fill(Qt::transparent);
    {
        QPainter p(&canvas);
        const qreal thickness = qMax<qreal>(1.0, logicalDpiY() / 96.0);
        const auto across = [&](const QString& part) {
            const auto [from, to] = picture->extent(part);
            return QPair<qreal, qreal>(from * width(), (to - from) * width());
        };
        const auto line = [&](const QString& part, int y) {
            const auto [x, w] = across(part);
            picture->render(&p, part, QRectF(x, y - thickness / 2, w, thickness));
        };
        if (toFather)
            line(QStringLiteral("father"), fatherY);
        if (toMother)
            line(QStringLiteral("mother"), motherY);
        line(QStringLiteral("child"), childY);
        const int top = toFather ? fatherY : childY;
        const int bottom = toMother ? motherY : childY;
        const auto [x, w] = across(QStringLiteral("stem"));
        picture->render(&p, QStringLiteral("stem"),
                        QRectF(x, top - thickness / 2, qMax<qreal>(w, thickness), bottom - top + thickness));
        p.setCompositionMode(QPainter::CompositionMode_SourceIn);
        p.fillRect(QRectF(QPointF(0, 0), QSizeF(size())), lineColour);
    }
    QPainter(this).drawPixmap(0, 0, canvas);
}

PedigreeSurface::PedigreeSurface(QWidget* parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("imgBackground"));
    setMouseTracking(true);
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::Base);
}

void PedigreeSurface::setPicture(const QPixmap& p)
{
    picture = p;
    update();
}

void PedigreeSurface::paintEvent(QPaintEvent*)
{
    if (picture.isNull())
        return;
    QPainter p(this);
    p.drawPixmap(rect(), picture);
}

void PedigreeSurface::mouseMoveEvent(QMouseEvent* event)
{
    emit mouseMoved();
    QWidget::mouseMoveEvent(event);
}
