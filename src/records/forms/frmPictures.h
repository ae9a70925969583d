// SPDX-License-Identifier: GPL-3.0-or-later
// The pictures of one animal name as a dialog of its own: the ten slots to choose from, a preview and
// the commands on the chosen slot. The record form opens it for the name it holds.
#pragma once

#include "records/Animal.h"

#include <QDialog>
#include <QString>
#include <array>

class PictureBox;
class QButtonGroup;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;

class frmPictures : public QDialog {
    Q_OBJECT
public:
    explicit frmPictures(const QString& animalName, QWidget* parent = nullptr);

    QString animalName() const { return name; }
    int chosenSlot() const { return slot; }
    void chooseSlot(int n);
    // Reads the slots from the folder again.
    void refresh();

public slots:
    void cmdAddPic_Click();
    void cmdDeletePic_Click();
    void cmdSwap_Click();
    void optPicture_Click(int n);

private:
    void updateCommands();

    QString name;
    int slot = 0;
    std::array<QString, kPictureSlots> files;
    std::array<QRadioButton*, kPictureSlots> optPicture{};
    QButtonGroup* group = nullptr;
    PictureBox* imgPreview = nullptr;
    QLineEdit* txtPicture = nullptr;
    QPushButton* cmdAddPic = nullptr;
    QPushButton* cmdDeletePic = nullptr;
    QPushButton* cmdSwap = nullptr;
    QPushButton* cmdClose = nullptr;
};
