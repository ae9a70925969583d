// SPDX-License-Identifier: GPL-3.0-or-later
// Copies what a list filler wrote into a Lists::ListSink onto the widget that shows it.
#pragma once

#include "records/Lists.h"

class QComboBox;
class QListWidget;

namespace ListWidgets {

// Replaces the items; the edit text of an editable box becomes sink.text when that is set, and is kept
// otherwise.
void show(const Lists::ListSink& sink, QComboBox* box);
// Replaces the rows and paints the background the filler chose (button face for an empty result).
void show(const Lists::ListSink& sink, QListWidget* list);
// The widget's items as a sink, for fillers that read what a list already holds.
Lists::ListSink read(const QComboBox* box);
Lists::ListSink read(const QListWidget* list);

// Fills a combo box through one filler, keeping the text the user typed or chose.
template <typename Filler>
void refill(QComboBox* box, Filler&& filler)
{
    Lists::ListSink sink;
    filler(sink);
    show(sink, box);
}

} // namespace ListWidgets
