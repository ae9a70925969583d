// SPDX-License-Identifier: GPL-3.0-or-later
// The small frameless window that shows another animal's details beside the current one, as the
// family tree does when the mouse rests on a box. It reads the animal into an Animal of its own.
#pragma once

#include "records/Animal.h"

#include <QString>
#include <QWidget>

class PictureBox;
class QFrame;
class QLabel;

class frmPopup : public QWidget {
    Q_OBJECT
public:
    explicit frmPopup(QWidget* parent = nullptr);

    // Loads the animal by name and shows its title, details and main picture; gAnimal stays as it is.
    void SetPopupAnimal(const QString& name);
    const Animal& popupAnimal() const { return animal; }

protected:
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    Animal animal;
    QFrame* popBorder = nullptr;
    QLabel* lblNotesBold = nullptr;
    QLabel* lblNotes = nullptr;
    PictureBox* imgPopup = nullptr;
};
