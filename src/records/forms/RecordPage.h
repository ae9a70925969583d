// SPDX-License-Identifier: GPL-3.0-or-later
// The "Individual" page of the main window: the current animal's main picture, bold title, details,
// notes and the strip of its ten picture slots with their pop-up menu. Also the picture box that the
// page, frmPictures and frmPopup draw pictures with.
#pragma once

#include <functional>

#include "records/Animal.h"

#include <QPixmap>
#include <QString>
#include <QWidget>
#include <array>

class QAction;
class QLabel;
class QLineEdit;
class QMenu;
class QPushButton;
class QScrollArea;

// The title line of a record: the full name, with the call name in brackets when it has more than one
// character. "" for an empty record.
QString BoldTitle(const Animal& animal);
// A record's multi-line text with its carriage returns as line feeds, as a label breaks lines.
QString DisplayLines(const QString& text);

// A picture drawn within its box with its proportions kept, centred; never enlarged past its own size.
class PictureBox : public QWidget {
    Q_OBJECT
public:
    explicit PictureBox(QWidget* parent = nullptr);

    // Loads the file ("" or a file that is no picture clears the box).
    void setPicture(const QString& path);
    QString path() const { return picturePath; }
    bool hasPicture() const { return !pixmap.isNull(); }
    // The picture as loaded, at most the load limit in size.
    QPixmap picture() const { return pixmap; }
    // The size the picture is drawn at in the box as it is now.
    QSize drawnSize() const;
    // Pictures larger than this are read shrunk, to keep big photos cheap.
    void setLoadLimit(const QSize& limit) { loadLimit = limit; }
    void setPlaceholder(const QString& text);
    void setSelected(bool selected);
    QSize sizeHint() const override;

signals:
    void clicked();
    void menuRequested(const QPoint& globalPos);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    QString picturePath;
    QPixmap pixmap;
    QPixmap scaled; // pixmap at the drawn size, redone when the box changes
    QSize loadLimit{1600, 1600};
    QString placeholder;
    bool selected = false;
    bool pressed = false;
};

class RecordPage : public QWidget {
    Q_OBJECT
public:
    explicit RecordPage(QWidget* parent = nullptr);

    // Brings the page to the front of the tab strip it sits in, then fills it.
    void ShowNotes();
    // Fills the page from gAnimal.
    void loadnotes();
    // The picture slot the commands work on; slot 0 is the main picture.
    int chosenSlot() const { return slot; }
    void chooseSlot(int n);

    QMenu* pictureMenu() const { return mnuPicOptions; }

    // The coefficient line under the details, worked out by the genetics above this library; given the
    // stored name. Without one the line is absent.
    void setCoefficientCaption(std::function<QString(const QString&)> caption) { coefficientCaption = std::move(caption); }

public slots:
    void mnuAddPic_Click();
    void mnuDeletePic_Click();
    void swapPictures_Click();

signals:
    // A picture command changed the current animal's pictures; the page has already been refilled.
    void picturesChanged();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    std::function<QString(const QString&)> coefficientCaption;
    void buildMenu();
    void wrapNotes();
    void updateCommands();
    bool needsAnimal();
    void afterPictureCommand(bool changed);
    void pictureClicked(int n);
    void pictureMenuRequested(int n, const QPoint& globalPos);

    PictureBox* imgCavy = nullptr;
    QLabel* lblBoldTitle = nullptr;
    QLabel* lblDetails = nullptr;
    QLabel* lblNotes = nullptr;
    QScrollArea* scrNotes = nullptr;
    QPushButton* cmdAddNotes = nullptr;
    std::array<PictureBox*, kPictureSlots> imgThumb{};
    std::array<QLabel*, kPictureSlots> lblThumb{};
    QLineEdit* txtPicture = nullptr;
    QMenu* mnuPicOptions = nullptr;
    QAction* mnuAddPic = nullptr;
    QAction* mnuDeletePic = nullptr;
    QAction* mnuPicSwap = nullptr;
    QString notesText; // gAnimal.notes as loaded, wrapped again when the label's width changes
    int slot = 0;
};
