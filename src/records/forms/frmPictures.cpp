// SPDX-License-Identifier: GPL-3.0-or-later
#include "records/forms/frmPictures.h"

#include "records/Pictures.h"
#include "records/forms/RecordPage.h"

#include <QButtonGroup>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

frmPictures::frmPictures(const QString& animalName, QWidget* parent) : QDialog(parent), name(animalName)
{
    setObjectName(QStringLiteral("frmPictures"));
    setWindowTitle(name.isEmpty() ? QStringLiteral("Pictures") : name + QStringLiteral(" - Pictures"));

    group = new QButtonGroup(this);
    auto* slotColumn = new QVBoxLayout;
    for (int n = 0; n < kPictureSlots; ++n) {
        auto* option = new QRadioButton(this);
        option->setObjectName(QStringLiteral("optPicture(") + QString::number(n) + QLatin1Char(')'));
        group->addButton(option, n);
        optPicture[n] = option;
        slotColumn->addWidget(option);
    }
    slotColumn->addStretch(1);
    connect(group, &QButtonGroup::idClicked, this, &frmPictures::optPicture_Click);

    imgPreview = new PictureBox(this);
    imgPreview->setObjectName(QStringLiteral("imgPreview"));
    imgPreview->setMinimumSize(320, 240);
    imgPreview->setPlaceholder(QStringLiteral("No picture"));
    connect(imgPreview, &PictureBox::clicked, this, [this] { ViewPicture(files[slot]); });

    txtPicture = new QLineEdit(this);
    txtPicture->setObjectName(QStringLiteral("txtPicture"));
    txtPicture->setReadOnly(true);
    txtPicture->setPlaceholderText(QStringLiteral("No picture in this slot"));

    auto* preview = new QVBoxLayout;
    preview->addWidget(imgPreview, 1);
    preview->addWidget(txtPicture);

    auto* top = new QHBoxLayout;
    top->addLayout(slotColumn);
    top->addLayout(preview, 1);

    cmdAddPic = new QPushButton(this);
    cmdAddPic->setObjectName(QStringLiteral("cmdAddPic"));
    cmdDeletePic = new QPushButton(this);
    cmdDeletePic->setObjectName(QStringLiteral("cmdDeletePic"));
    cmdSwap = new QPushButton(this);
    cmdSwap->setObjectName(QStringLiteral("cmdSwap"));
    cmdClose = new QPushButton(QStringLiteral("Close"), this);
    cmdClose->setObjectName(QStringLiteral("cmdClose"));
    connect(cmdAddPic, &QPushButton::clicked, this, &frmPictures::cmdAddPic_Click);
    connect(cmdDeletePic, &QPushButton::clicked, this, &frmPictures::cmdDeletePic_Click);
    connect(cmdSwap, &QPushButton::clicked, this, &frmPictures::cmdSwap_Click);
    connect(cmdClose, &QPushButton::clicked, this, &QDialog::accept);

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(cmdAddPic);
    buttons->addWidget(cmdDeletePic);
    buttons->addWidget(cmdSwap);
    buttons->addStretch(1);
    buttons->addWidget(cmdClose);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(top, 1);
    layout->addLayout(buttons);

    refresh();
}

void frmPictures::refresh()
{
    for (int n = 0; n < kPictureSlots; ++n) {
        files[n] = PictureFile(name, n);
        const QString label = Animal::getPictureLabel(files[n]);
        QString text = n == 0 ? QStringLiteral("Main picture") : QStringLiteral("Picture ") + QString::number(n);
        if (!label.isEmpty())
            text += QStringLiteral(" - ") + label;
        else if (files[n].isEmpty())
            text += QStringLiteral(" (none)");
        optPicture[n]->setText(text);
    }
    chooseSlot(slot);
}

void frmPictures::chooseSlot(int n)
{
    if (n < 0 || n >= kPictureSlots)
        return;
    slot = n;
    optPicture[n]->setChecked(true);
    imgPreview->setPicture(files[n]);
    txtPicture->setText(files[n]);
    updateCommands();
}

void frmPictures::updateCommands()
{
    const bool any = !name.isEmpty();
    const bool has = !files[slot].isEmpty();
    cmdAddPic->setText(ChangePictureCaption(slot));
    cmdDeletePic->setText(RemovePictureCaption(slot));
    cmdSwap->setText(SwapPictureCaption(slot));
    cmdSwap->setVisible(slot > 0);
    cmdAddPic->setEnabled(any);
    cmdDeletePic->setEnabled(has);
    cmdSwap->setEnabled(slot > 0 && has);
}

void frmPictures::optPicture_Click(int n) { chooseSlot(n); }

void frmPictures::cmdAddPic_Click()
{
    AddPicture(name, slot);
    refresh();
}

void frmPictures::cmdDeletePic_Click()
{
    RemovePicture(name, slot);
    refresh();
}

void frmPictures::cmdSwap_Click()
{
    swapPictures(name, slot);
    refresh();
}
