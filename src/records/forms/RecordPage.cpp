// SPDX-License-Identifier: GPL-3.0-or-later
#include "records/forms/RecordPage.h"

#include "records/Pictures.h"
#include "base/Ui.h"
#include "session/globals.h"

#include <QAction>
#include <QContextMenuEvent>
#include <QCursor>
#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QImageReader>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QStyle>
#include <QTabWidget>
#include <QVBoxLayout>

namespace {

const QSize kThumbSize(64, 64);

} // namespace

QString BoldTitle(const Animal& animal)
{
    if (animal.name.isEmpty())
        return {};
    if (animal.callName.size() > 1)
        return animal.fullName + QStringLiteral(" (") + animal.callName + QLatin1Char(')');
    return animal.fullName;
}

QString DisplayLines(const QString& text)
{
    QString lines = text;
    lines.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    lines.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    return lines;
}

// --- PictureBox ----------------------------------------------------------------------------------

PictureBox::PictureBox(QWidget* parent) : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setCursor(Qt::PointingHandCursor);
}

void PictureBox::setPicture(const QString& path)
{
    picturePath = path;
    pixmap = QPixmap();
    scaled = QPixmap();
    if (!path.isEmpty()) {
        QImageReader reader(path);
        reader.setAutoTransform(true);
        const QSize full = reader.size();
        if (full.isValid())
            reader.setScaledSize(resizePicture(full, loadLimit));
        const QImage image = reader.read();
        if (!image.isNull())
            pixmap = QPixmap::fromImage(image);
    }
    update();
}

QSize PictureBox::drawnSize() const
{
    return resizePicture(pixmap.size(), contentsRect().adjusted(2, 2, -2, -2).size());
}

void PictureBox::setPlaceholder(const QString& text)
{
    placeholder = text;
    update();
}

void PictureBox::setSelected(bool on)
{
    if (selected == on)
        return;
    selected = on;
    update();
}

QSize PictureBox::sizeHint() const
{
    return pixmap.isNull() ? QSize(160, 120) : resizePicture(pixmap.size(), QSize(480, 360));
}

void PictureBox::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const QRect area = contentsRect().adjusted(2, 2, -2, -2);
    if (pixmap.isNull()) {
        QPen pen(palette().color(QPalette::Mid), 1, Qt::DashLine);
        painter.setPen(pen);
        painter.drawRoundedRect(QRectF(area).adjusted(0.5, 0.5, -0.5, -0.5), 4, 4);
        if (!placeholder.isEmpty()) {
            painter.setPen(palette().color(QPalette::PlaceholderText));
            painter.drawText(area, Qt::AlignCenter | Qt::TextWordWrap, placeholder);
        }
    } else {
        const QSize size = drawnSize();
        if (scaled.size() != size)
            scaled = pixmap.scaled(size, Qt::KeepAspectRatio, Qt::SmoothTransformation);
        const QRect target(area.x() + (area.width() - size.width()) / 2, area.y() + (area.height() - size.height()) / 2,
                           size.width(), size.height());
        painter.drawPixmap(target, scaled);
    }
    if (selected) {
        painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), 4, 4);
    }
}

void PictureBox::mousePressEvent(QMouseEvent* event)
{
    pressed = event->button() == Qt::LeftButton;
    QWidget::mousePressEvent(event);
}

void PictureBox::mouseReleaseEvent(QMouseEvent* event)
{
    const bool click = pressed && event->button() == Qt::LeftButton && rect().contains(event->position().toPoint());
    pressed = false;
    if (click)
        emit clicked();
    QWidget::mouseReleaseEvent(event);
}

void PictureBox::contextMenuEvent(QContextMenuEvent* event)
{
    emit menuRequested(event->globalPos());
}

// --- RecordPage ----------------------------------------------------------------------------------

RecordPage::RecordPage(QWidget* parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("RecordPage"));

    imgCavy = new PictureBox(this);
    imgCavy->setObjectName(QStringLiteral("imgCavy"));
    imgCavy->setMinimumSize(160, 120);
    imgCavy->setPlaceholder(QStringLiteral("No picture"));
    imgCavy->setToolTip(QStringLiteral("Click to view the picture large, right-click for picture options"));
    connect(imgCavy, &PictureBox::clicked, this, [this] { pictureClicked(0); });
    connect(imgCavy, &PictureBox::menuRequested, this, [this](const QPoint& pos) { pictureMenuRequested(0, pos); });

    lblBoldTitle = new QLabel(this);
    lblBoldTitle->setObjectName(QStringLiteral("lblBoldTitle"));
    QFont titleFont = lblBoldTitle->font();
    titleFont.setBold(true);
    titleFont.setPointSizeF(titleFont.pointSizeF() * 1.5);
    lblBoldTitle->setFont(titleFont);
    lblBoldTitle->setWordWrap(true);
    lblBoldTitle->setTextInteractionFlags(Qt::TextSelectableByMouse);

    lblDetails = new QLabel(this);
    lblDetails->setObjectName(QStringLiteral("lblDetails"));
    lblDetails->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    lblDetails->setTextInteractionFlags(Qt::TextSelectableByMouse);
    lblDetails->setWordWrap(true);

    cmdAddNotes = new QPushButton(QStringLiteral("Notes && Awards"), this);
    cmdAddNotes->setObjectName(QStringLiteral("cmdAddNotes"));
    cmdAddNotes->setEnabled(false);
    cmdAddNotes->setToolTip(Ui::kNotAvailableYet);

    auto* details = new QVBoxLayout;
    details->addWidget(lblBoldTitle);
    details->addSpacing(6);
    details->addWidget(lblDetails, 1);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(cmdAddNotes);
    buttons->addStretch(1);
    details->addLayout(buttons);

    auto* top = new QHBoxLayout;
    top->addWidget(imgCavy, 1);
    top->addSpacing(12);
    top->addLayout(details, 1);

    lblNotes = new QLabel;
    lblNotes->setObjectName(QStringLiteral("lblNotes"));
    lblNotes->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    lblNotes->setTextInteractionFlags(Qt::TextSelectableByMouse);
    lblNotes->setWordWrap(true);
    lblNotes->setMargin(4);
    scrNotes = new QScrollArea(this);
    scrNotes->setObjectName(QStringLiteral("scrNotes"));
    scrNotes->setWidget(lblNotes);
    scrNotes->setWidgetResizable(true);
    scrNotes->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scrNotes->setMinimumHeight(60);
    scrNotes->installEventFilter(this);
    scrNotes->viewport()->setBackgroundRole(QPalette::Base);
    lblNotes->setBackgroundRole(QPalette::Base);

    auto* strip = new QGridLayout;
    strip->setHorizontalSpacing(4);
    strip->setContentsMargins(0, 4, 0, 0);
    strip->setVerticalSpacing(2);
    for (int n = 0; n < kPictureSlots; ++n) {
        auto* thumb = new PictureBox(this);
        thumb->setObjectName(QStringLiteral("imgThumb(") + QString::number(n) + QLatin1Char(')'));
        thumb->setFixedSize(kThumbSize);
        thumb->setLoadLimit(kThumbSize * 3);
        thumb->setPlaceholder(QStringLiteral("+"));
        thumb->setToolTip(QStringLiteral("Click to view, right-click for picture options"));
        connect(thumb, &PictureBox::clicked, this, [this, n] { pictureClicked(n); });
        connect(thumb, &PictureBox::menuRequested, this,
                [this, n](const QPoint& pos) { pictureMenuRequested(n, pos); });
        auto* caption = new QLabel(n == 0 ? QStringLiteral("Main") : QString::number(n), this);
        caption->setObjectName(QStringLiteral("lblThumb(") + QString::number(n) + QLatin1Char(')'));
        caption->setAlignment(Qt::AlignCenter);
        caption->setFixedWidth(kThumbSize.width());
        imgThumb[n] = thumb;
        lblThumb[n] = caption;
        strip->addWidget(thumb, 0, n);
        strip->addWidget(caption, 1, n);
    }
    strip->setColumnStretch(kPictureSlots, 1);
    auto* stripHolder = new QWidget;
    stripHolder->setLayout(strip);
    auto* stripScroll = new QScrollArea(this);
    stripScroll->setObjectName(QStringLiteral("scrThumbs"));
    stripScroll->setWidget(stripHolder);
    stripScroll->setWidgetResizable(true);
    stripScroll->setFrameShape(QFrame::NoFrame);
    stripScroll->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    stripScroll->viewport()->setAutoFillBackground(false);
    stripHolder->setAutoFillBackground(false);
    stripScroll->setFixedHeight(stripHolder->sizeHint().height() +
                                stripScroll->style()->pixelMetric(QStyle::PM_ScrollBarExtent) + 4);

    txtPicture = new QLineEdit(this);
    txtPicture->setObjectName(QStringLiteral("txtPicture"));
    txtPicture->setReadOnly(true);
    txtPicture->setFrame(false);
    txtPicture->setPlaceholderText(QStringLiteral("No picture in this slot"));

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(top, 3);
    layout->addWidget(scrNotes, 2);
    layout->addWidget(stripScroll);
    layout->addWidget(txtPicture);

    buildMenu();
    chooseSlot(0);
    loadnotes();
}

void RecordPage::buildMenu()
{
    mnuPicOptions = new QMenu(QStringLiteral("Picture Options"), this);
    mnuPicOptions->setObjectName(QStringLiteral("mnuPicOptions"));
    mnuAddPic = mnuPicOptions->addAction(QStringLiteral("Add / Change"));
    mnuAddPic->setObjectName(QStringLiteral("mnuAddPic"));
    mnuDeletePic = mnuPicOptions->addAction(QStringLiteral("Delete"));
    mnuDeletePic->setObjectName(QStringLiteral("mnuDeletePic"));
    mnuPicSwap = mnuPicOptions->addAction(QStringLiteral("Swap with pedigree picture"));
    mnuPicSwap->setObjectName(QStringLiteral("mnuPicSwap"));
    connect(mnuAddPic, &QAction::triggered, this, &RecordPage::mnuAddPic_Click);
    connect(mnuDeletePic, &QAction::triggered, this, &RecordPage::mnuDeletePic_Click);
    connect(mnuPicSwap, &QAction::triggered, this, &RecordPage::swapPictures_Click);
}

void RecordPage::ShowNotes()
{
    // The page may sit some levels below the tab strip's own page widget.
    for (QWidget* w = this; w && w->parentWidget(); w = w->parentWidget()) {
        for (QWidget* up = w->parentWidget(); up; up = up->parentWidget()) {
            if (auto* tabs = qobject_cast<QTabWidget*>(up)) {
                const int index = tabs->indexOf(w);
                if (index >= 0)
                    tabs->setCurrentIndex(index);
                break;
            }
        }
    }
    loadnotes();
}

void RecordPage::loadnotes()
{
    const bool any = !gAnimal.name.isEmpty();
    QString details = any ? DisplayLines(gAnimal.Get_Awards(false)) : QString();
    if (any && coefficientCaption)
        details += QLatin1Char('\n') + coefficientCaption(gAnimal.storedName);
    lblDetails->setText(details);
    imgCavy->setPicture(any ? gAnimal.picture[0] : QString());
    notesText = any ? gAnimal.notes : QString();
    wrapNotes();
    lblBoldTitle->setText(BoldTitle(gAnimal));
    for (int n = 0; n < kPictureSlots; ++n) {
        const QString path = any ? gAnimal.picture[n] : QString();
        imgThumb[n]->setPicture(path);
        const QString label = any ? gAnimal.pictureLabel[n] : QString();
        lblThumb[n]->setToolTip(label);
        imgThumb[n]->setToolTip(path.isEmpty() ? QStringLiteral("Right-click to add a picture")
                                               : (label.isEmpty() ? QString() : label + QLatin1Char('\n')) +
                                                     QStringLiteral("Click to view, right-click for picture options"));
    }
    imgCavy->setCursor(imgCavy->hasPicture() ? Qt::PointingHandCursor : Qt::ArrowCursor);
    updateCommands();
}

void RecordPage::wrapNotes()
{
    // Pixels are not the width of the old twips: a line holds the label's width over the mean advance of
    // the notes' own letters (the font's average letter is narrower than real text), with a little to
    // spare. The scroll bar's room is kept back so that its coming and going does not wrap anew.
    const QFontMetricsF metrics(lblNotes->font());
    const int room = scrNotes->width() - 2 * scrNotes->frameWidth() - 2 * lblNotes->margin() -
                     scrNotes->style()->pixelMetric(QStyle::PM_ScrollBarExtent) - 4;
    qreal letter = metrics.averageCharWidth();
    if (!notesText.isEmpty())
        letter = qMax(letter, metrics.horizontalAdvance(notesText) / notesText.size());
    const int width = qMax(10, int(room / (letter * 1.05)));
    lblNotes->setText(DisplayLines(WrapText(notesText, width)));
}

bool RecordPage::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == scrNotes && event->type() == QEvent::Resize)
        wrapNotes();
    return QWidget::eventFilter(watched, event);
}

void RecordPage::chooseSlot(int n)
{
    if (n < 0 || n >= kPictureSlots)
        return;
    slot = n;
    for (int i = 0; i < kPictureSlots; ++i)
        imgThumb[i]->setSelected(i == n);
    updateCommands();
}

void RecordPage::updateCommands()
{
    const bool any = !gAnimal.name.isEmpty();
    const QString path = any ? gAnimal.picture[slot] : QString();
    txtPicture->setText(path);
    // The menu keeps its own words; the slot it works on is the one marked in the strip.
    const bool writable = !gDatabase.isReadOnly();
    mnuAddPic->setEnabled(any && writable);
    mnuDeletePic->setEnabled(!path.isEmpty() && writable);
    mnuPicSwap->setEnabled(slot > 0 && !path.isEmpty() && writable);
}

bool RecordPage::needsAnimal()
{
    if (!gAnimal.name.isEmpty())
        return true;
    Ui::message(QStringLiteral("Please select a record from the Search list to edit."), Ui::Buttons::Ok,
                Ui::Icon::Exclamation, QStringLiteral("Error"));
    return false;
}

void RecordPage::afterPictureCommand(bool changed)
{
    // Even a failed command may have changed the folder part way; the page shows what exists.
    QString name = gAnimal.name;
    gAnimal.SetCurrentAnimal(name);
    loadnotes();
    if (changed)
        emit picturesChanged();
}

void RecordPage::mnuAddPic_Click()
{
    if (gDatabase.isReadOnly() || !needsAnimal())
        return;
    afterPictureCommand(AddPicture(gAnimal.name, slot));
}

void RecordPage::mnuDeletePic_Click()
{
    if (gDatabase.isReadOnly() || !needsAnimal())
        return;
    afterPictureCommand(RemovePicture(gAnimal.name, slot));
}

void RecordPage::swapPictures_Click()
{
    if (gDatabase.isReadOnly() || !needsAnimal())
        return;
    afterPictureCommand(swapPictures(gAnimal.name, slot));
}

void RecordPage::pictureClicked(int n)
{
    chooseSlot(n);
    if (gAnimal.name.isEmpty())
        return;
    if (gAnimal.picture[n].isEmpty())
        mnuPicOptions->popup(QCursor::pos());
    else
        ViewPicture(gAnimal.picture[n]);
}

void RecordPage::pictureMenuRequested(int n, const QPoint& globalPos)
{
    chooseSlot(n);
    if (!gAnimal.name.isEmpty())
        mnuPicOptions->popup(globalPos);
}
