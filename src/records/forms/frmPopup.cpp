// SPDX-License-Identifier: GPL-3.0-or-later
#include "records/forms/frmPopup.h"

#include "records/Pictures.h"
#include "records/forms/RecordPage.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QMouseEvent>
#include <QVBoxLayout>

frmPopup::frmPopup(QWidget* parent) : QWidget(parent, Qt::Tool | Qt::FramelessWindowHint)
{
    setObjectName(QStringLiteral("frmPopup"));
    setAttribute(Qt::WA_ShowWithoutActivating);

    popBorder = new QFrame(this);
    popBorder->setObjectName(QStringLiteral("popBorder"));
    popBorder->setFrameShape(QFrame::Box);
    popBorder->setFrameShadow(QFrame::Plain);
    popBorder->setAutoFillBackground(true);
    popBorder->setBackgroundRole(QPalette::ToolTipBase);

    imgPopup = new PictureBox(popBorder);
    imgPopup->setObjectName(QStringLiteral("imgPopup"));
    imgPopup->setFixedSize(160, 120);
    imgPopup->setLoadLimit(QSize(480, 360));
    imgPopup->setCursor(Qt::ArrowCursor);

    lblNotesBold = new QLabel(popBorder);
    lblNotesBold->setObjectName(QStringLiteral("lblNotesBold"));
    QFont bold = lblNotesBold->font();
    bold.setBold(true);
    lblNotesBold->setFont(bold);
    lblNotesBold->setForegroundRole(QPalette::ToolTipText);

    lblNotes = new QLabel(popBorder);
    lblNotes->setObjectName(QStringLiteral("lblNotes"));
    lblNotes->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    lblNotes->setForegroundRole(QPalette::ToolTipText);

    auto* text = new QVBoxLayout;
    text->addWidget(lblNotesBold);
    text->addWidget(lblNotes, 1);
    auto* inner = new QHBoxLayout(popBorder);
    inner->addWidget(imgPopup, 0, Qt::AlignTop);
    inner->addLayout(text, 1);

    auto* outer = new QVBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, 0);
    outer->addWidget(popBorder);
}

void frmPopup::SetPopupAnimal(const QString& name)
{
    // A fresh record each time: a name not found then shows the notice, not the animal before.
    animal = Animal();
    QString requested = name;
    animal.SetCurrentAnimal(requested);
    // The pop-up is narrow: the full name alone, wrapped at 26 characters.
    lblNotesBold->setText(animal.name.isEmpty() ? QString() : DisplayLines(WrapText(animal.fullName, 26)));
    lblNotes->setText(DisplayLines(animal.Get_Awards(false)));
    imgPopup->setPicture(animal.picture[0]);
    imgPopup->setVisible(imgPopup->hasPicture());
    adjustSize();
}

void frmPopup::mouseReleaseEvent(QMouseEvent* event)
{
    hide();
    QWidget::mouseReleaseEvent(event);
}
