// SPDX-License-Identifier: GPL-3.0-or-later
#include "records/forms/ShowRecordOnForm.h"

#include "records/Animal.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPixmap>
#include <QPlainTextEdit>
#include <QTextEdit>

namespace {

void setText(QWidget* form, const QString& name, const QString& text)
{
    QWidget* w = form->findChild<QWidget*>(name);
    if (!w)
        return;
    if (auto* edit = qobject_cast<QLineEdit*>(w)) {
        edit->setText(text);
    } else if (auto* box = qobject_cast<QComboBox*>(w)) {
        if (box->isEditable()) {
            box->setEditText(text);
        } else {
            box->setCurrentIndex(box->findText(text));
        }
    } else if (auto* label = qobject_cast<QLabel*>(w)) {
        label->setText(text);
    } else if (auto* plain = qobject_cast<QPlainTextEdit*>(w)) {
        plain->setPlainText(text);
    } else if (auto* rich = qobject_cast<QTextEdit*>(w)) {
        rich->setPlainText(text);
    } else if (auto* list = qobject_cast<QListWidget*>(w)) {
        const QList<QListWidgetItem*> found = list->findItems(text, Qt::MatchExactly);
        list->setCurrentItem(found.isEmpty() ? nullptr : found.first());
    }
}

void setChecked(QWidget* form, const QString& name, bool checked)
{
    if (auto* box = form->findChild<QAbstractButton*>(name))
        box->setChecked(checked);
}

void setShown(QWidget* form, const QString& name, bool shown)
{
    if (auto* w = form->findChild<QWidget*>(name))
        w->setVisible(shown);
}

void showThumbnail(QWidget* form, const QString& path)
{
    auto* image = form->findChild<QLabel*>(QStringLiteral("imgThumbnail"));
    if (!image)
        return;
    const QPixmap picture(path);
    if (path.isEmpty() || picture.isNull()) {
        image->clear();
        return;
    }
    image->setPixmap(picture.scaled(image->size(), Qt::KeepAspectRatio, Qt::SmoothTransformation));
}

} // namespace

void ShowRecordOnForm(QWidget* form, const Animal& animal)
{
    if (!form)
        return;
    setText(form, QStringLiteral("searchList"), animal.name);
    setText(form, QStringLiteral("cboPrefix"), animal.prefix);
    setText(form, QStringLiteral("cboSuffix"), animal.suffix);
    setText(form, QStringLiteral("txtCallName"), animal.callName);
    setText(form, QStringLiteral("cboColour"), animal.colour);
    setText(form, QStringLiteral("cboBreed"), animal.breed);
    setText(form, QStringLiteral("cboSex"), animal.sexTerm);
    setText(form, QStringLiteral("cboMother"), animal.pd);
    setText(form, QStringLiteral("cboFather"), animal.ps);
    for (int i = 0; i < 12; ++i)
        setText(form, QStringLiteral("cboCustomField") + QString::number(i + 1), animal.customField[i]);
    setText(form, QStringLiteral("txtNotes"), animal.notes);
    setText(form, QStringLiteral("txtCage"), animal.cage);
    setText(form, QStringLiteral("txtTag"), animal.tag);
    setText(form, QStringLiteral("txtPicture"), animal.picture[0]);
    setText(form, QStringLiteral("txtID"), QString::number(animal.id));
    showThumbnail(form, animal.picture[0]);
    setText(form, QStringLiteral("txtDateDeceased"), animal.dateDeceased);
    setText(form, QStringLiteral("txtDateSold"), animal.dateSold);
    setText(form, QStringLiteral("txtDOB"), animal.dob);

    // Sold before owner: a form that clears "owner" on ticking "sold" must not undo the stored flag.
    setChecked(form, QStringLiteral("chkDeceased"), animal.deceased);
    setChecked(form, QStringLiteral("chkSold"), animal.sold);
    setChecked(form, QStringLiteral("chkBreeder"), animal.breeder);
    setChecked(form, QStringLiteral("chkOwner"), animal.owner);
    setChecked(form, QStringLiteral("chkLeased"), animal.leased);

    setShown(form, QStringLiteral("txtDateDeceased"), animal.deceased);
    setShown(form, QStringLiteral("lblDateDeceased"), animal.deceased);
    setShown(form, QStringLiteral("txtDateSold"), animal.sold);
    setShown(form, QStringLiteral("lblDateSold"), animal.sold);
}
