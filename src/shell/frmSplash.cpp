// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/frmSplash.h"

#include "base/Folders.h"
#include "shell/Shell.h"
#include "session/globals.h"
#include "store/DataFile.h"

#include <QCloseEvent>
#include <QDir>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QLinearGradient>
#include <QPainter>
#include <QRandomGenerator>
#include <QScreen>
#include <QGuiApplication>
#include <QSvgRenderer>
#include <QTimer>
#include <QVBoxLayout>

namespace {

const QSize kPictureSize(560, 340);

// Fills size with the picture, cut to its middle rather than stretched.
QPixmap filled(const QPixmap& source, const QSize& size)
{
    const QPixmap scaled = source.scaled(size, Qt::KeepAspectRatioByExpanding, Qt::SmoothTransformation);
    const QRect middle((scaled.width() - size.width()) / 2, (scaled.height() - size.height()) / 2, size.width(),
                       size.height());
    return scaled.copy(middle);
}

} // namespace

frmSplash::frmSplash(const QString& commandLinePath, QWidget* parent)
    : QWidget(parent, Qt::SplashScreen | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint),
      commandLine(commandLinePath)
{
    setObjectName(QStringLiteral("frmSplash"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(QStringLiteral("Tessorin"));

    MakeUserFolders();
    gUser = User();

    imgSplash = new QLabel(this);
    imgSplash->setObjectName(QStringLiteral("imgSplash"));
    imgSplash->setFixedSize(kPictureSize);
    picture = PickSplashPicture(gDataFolder + QStringLiteral("my pics/"));
    QPixmap shown;
    if (!picture.isEmpty())
        shown.load(picture);
    // A picture that will not load (a broken file named .jpg) leaves the built-in one.
    imgSplash->setPixmap(shown.isNull() ? BuiltInPicture(kPictureSize) : filled(shown, kPictureSize));
    if (shown.isNull())
        picture.clear();

    imgLogo = new QLabel(this);
    imgLogo->setObjectName(QStringLiteral("imgLogo"));
    imgLogo->setPixmap(QIcon(InstallFolder() + QStringLiteral("icons/tessorin.svg")).pixmap(40, 40));
    imgLogo->setFixedSize(40, 40);

    auto* lblProduct = new QLabel(QStringLiteral("Tessorin"), this);
    lblProduct->setObjectName(QStringLiteral("lblProduct"));
    QFont productFont = lblProduct->font();
    productFont.setPointSizeF(productFont.pointSizeF() * 1.5);
    productFont.setBold(true);
    lblProduct->setFont(productFont);

    lblVersion = new QLabel(QStringLiteral("v ") + ProgramVersionText(), this);
    lblVersion->setObjectName(QStringLiteral("lblVersion"));

    auto* strip = new QHBoxLayout;
    strip->setContentsMargins(12, 8, 12, 8);
    strip->addWidget(imgLogo);
    strip->addWidget(lblProduct);
    strip->addStretch();
    strip->addWidget(lblVersion);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(imgSplash);
    layout->addLayout(strip);
    setStyleSheet(QStringLiteral("frmSplash { background: #ffffff; border: 1px solid #6b7f8e; }"));

    imgSplash->installEventFilter(this);
    imgLogo->installEventFilter(this);

    tmrSplash = new QTimer(this);
    tmrSplash->setObjectName(QStringLiteral("tmrSplash"));
    tmrSplash->setSingleShot(true);
    tmrSplash->setInterval(kShowMilliseconds);
    connect(tmrSplash, &QTimer::timeout, this, &frmSplash::tmrSplash_Timer);
    tmrSplash->start();

    adjustSize();
    if (const QScreen* screen = QGuiApplication::primaryScreen())
        move(screen->availableGeometry().center() - rect().center());
}

QString frmSplash::PickSplashPicture(const QString& folder)
{
    // Name filters of QDir are case-blind unless asked otherwise, so "PHOTO.JPG" counts too.
    const QDir dir(folder);
    const QStringList names = dir.entryList({QStringLiteral("*.jpg")}, QDir::Files | QDir::Readable);
    if (names.isEmpty())
        return QString();
    return dir.filePath(names.at(QRandomGenerator::global()->bounded(int(names.size()))));
}

QPixmap frmSplash::BuiltInPicture(const QSize& size)
{
    QPixmap pixmap(size);
    QSvgRenderer svg(InstallFolder() + QStringLiteral("splash.svg"));
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    if (svg.isValid()) {
        pixmap.fill(Qt::white);
        svg.render(&painter, QRectF(QPointF(0, 0), QSizeF(size)));
        return pixmap;
    }
    // Without the installed drawing: a plain sky, so the splash never shows an empty box.
    QLinearGradient sky(0, 0, 0, size.height());
    sky.setColorAt(0, QColor(0xcf, 0xe8, 0xf7));
    sky.setColorAt(1, QColor(0x8c, 0xc6, 0x6d));
    painter.fillRect(pixmap.rect(), sky);
    QFont font = painter.font();
    font.setPixelSize(size.height() / 6);
    font.setBold(true);
    painter.setFont(font);
    painter.setPen(QColor(0x2f, 0x4a, 0x3a));
    painter.drawText(pixmap.rect(), Qt::AlignCenter, QStringLiteral("Tessorin"));
    return pixmap;
}

void frmSplash::tmrSplash_Timer() { finish(); }
void frmSplash::imgSplash_Click() { finish(); }
void frmSplash::imgLogo_Click() { finish(); }

void frmSplash::finish()
{
    if (finished)
        return;
    finished = true;
    tmrSplash->stop();
    const QString path = commandLine;
    close();
    // Nothing of this object is touched from here on: the close has scheduled its deletion.
    ShowChooser(path);
}

void frmSplash::closeEvent(QCloseEvent* event)
{
    tmrSplash->stop();
    // The main window comes up behind the chooser, still without a data file.
    ShowMainWindow();
    event->accept();
    if (!finished) {
        // Closed some other way than by the timer or a click: the chooser must come all the same.
        finished = true;
        QTimer::singleShot(0, [path = commandLine] { ShowChooser(path); });
    }
}

void frmSplash::mousePressEvent(QMouseEvent* event)
{
    QWidget::mousePressEvent(event);
    finish();
}

bool frmSplash::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::MouseButtonPress) {
        if (watched == imgSplash) {
            imgSplash_Click();
            return true;
        }
        if (watched == imgLogo) {
            imgLogo_Click();
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}
