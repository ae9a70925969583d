// SPDX-License-Identifier: GPL-3.0-or-later
// Pictures for the demonstration stud, drawn here so that the record page has something to show.
#pragma once

#include <QStringList>

// Draws a main picture, "<name>(0).jpg", for each name into the pictures folder, unless one is there.
// Each is written under a scratch name and put in place whole. False when one could not be written.
bool DrawDemoPictures(const QStringList& names);
