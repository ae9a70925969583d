// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/DemoPictures.h"

#include "records/Animal.h"

#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QSaveFile>

namespace {

// A sitting rabbit in profile on a meadow; fur and sky vary by the name.
QImage drawRabbit(const QString& name)
{
    const size_t hash = qHash(name);
    static const QColor furs[] = {QColor(120, 86, 60), QColor(230, 225, 215), QColor(70, 70, 75),
                                  QColor(190, 140, 90), QColor(160, 160, 150), QColor(95, 60, 40)};
    const QColor fur = furs[hash % std::size(furs)];
    QImage image(480, 360, QImage::Format_RGB32);
    QPainter p(&image);
    p.setRenderHint(QPainter::Antialiasing);
    QLinearGradient sky(0, 0, 0, 240);
    sky.setColorAt(0, QColor(150 + int(hash % 40), 195, 235));
    sky.setColorAt(1, QColor(225, 238, 245));
    p.fillRect(image.rect(), sky);
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(96, 160, 70));
    p.drawEllipse(QRectF(-120, 230, 720, 260));

    p.setBrush(fur);
    p.drawEllipse(QRectF(150, 150, 200, 150));                 // body
    p.drawEllipse(QRectF(300, 110, 110, 95));                  // head
    p.drawEllipse(QRectF(130, 190, 50, 50));                   // tail
    p.drawEllipse(QRectF(215, 270, 110, 40));                  // hind foot
    p.save();
    p.translate(335, 120);
    p.rotate(-20 - double(hash % 15));
    p.drawEllipse(QRectF(-18, -120, 36, 125));                 // ear
    p.setBrush(QColor(230, 170, 170));
    p.drawEllipse(QRectF(-9, -108, 18, 100));
    p.restore();
    p.setBrush(Qt::black);
    p.drawEllipse(QRectF(368, 140, 12, 12));                   // eye
    p.setBrush(QColor(220, 120, 130));
    p.drawEllipse(QRectF(402, 165, 9, 8));                     // nose
    return image;
}

} // namespace

bool DrawDemoPictures(const QStringList& names)
{
    const QString folder = PicturesFolder();
    if (!QDir().mkpath(folder))
        return false;
    for (const QString& name : names) {
        const QString path = folder + name + QStringLiteral("(0).jpg");
        if (QFileInfo::exists(path))
            continue;
        // A picture cut off half-way would stand as the animal's picture for good.
        QSaveFile file(path);
        if (!file.open(QIODevice::WriteOnly) || !drawRabbit(name).save(&file, "JPG", 85) || !file.commit())
            return false;
    }
    return true;
}
