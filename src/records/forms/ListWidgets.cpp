// SPDX-License-Identifier: GPL-3.0-or-later
#include "records/forms/ListWidgets.h"

#include <QComboBox>
#include <QListWidget>
#include <QPalette>
#include <QSignalBlocker>
#include <QStyle>

namespace ListWidgets {

void show(const Lists::ListSink& sink, QComboBox* box)
{
    const QSignalBlocker block(box);
    const QString typed = box->currentText();
    box->clear();
    box->addItems(sink.items);
    if (box->isEditable())
        box->setEditText(sink.text.isEmpty() ? typed : sink.text);
    else
        box->setCurrentIndex(int(sink.items.indexOf(sink.text.isEmpty() ? typed : sink.text)));
}

void show(const Lists::ListSink& sink, QListWidget* list)
{
    list->clear();
    list->addItems(sink.items);
    QPalette palette = list->palette();
    palette.setColor(QPalette::Base, sink.backColour == Lists::ListSink::BackColour::ButtonFace
                                         ? list->style()->standardPalette().color(QPalette::Button)
                                         : QColor(Qt::white));
    list->setPalette(palette);
}

Lists::ListSink read(const QComboBox* box)
{
    Lists::ListSink sink;
    for (int i = 0; i < box->count(); ++i)
        sink.items << box->itemText(i);
    sink.text = box->currentText();
    return sink;
}

Lists::ListSink read(const QListWidget* list)
{
    Lists::ListSink sink;
    for (int i = 0; i < list->count(); ++i)
        sink.items << list->item(i)->text();
    return sink;
}

} // namespace ListWidgets
