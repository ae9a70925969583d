// SPDX-License-Identifier: GPL-3.0-or-later
// The pictures of an animal: files named after it in the one pictures folder that every data file of
// the user shares, "<name>(<slot>)[ [<label>]].jpg", slot 0 being the main picture. Also the small
// text and size rules of the record page that shows them.
#pragma once

#include <QSize>
#include <QString>

// Carries an animal's pictures to its new name: every file of the pictures folder that begins with the
// old name and "(" (letter case ignored) is renamed with the new name in its place. All or none: when
// one cannot be moved (or a file of the new name is in the way) the others are put back, the error is
// logged and the result is false.
bool renamePictures(const QString& oldName, const QString& newName);

inline const QString kChoosePictureTitle = QStringLiteral("Choose picture");
inline const QString kPictureFilter = QStringLiteral("Compatable picture files|*.jpg");
inline const QString kPictureLabelTitle = QStringLiteral("Enter label");
extern const QString kPictureLabelPrompt;

// The file name a picture of slot n takes: name + "(n)", " [label]" when there is a label, and the
// last four characters of the source (its extension, as a rule ".jpg").
QString PictureTargetName(const QString& name, int slot, const QString& label, const QString& sourcePath);
// The full path of the picture in slot n of an animal, "" when there is none.
QString PictureFile(const QString& name, int slot);

// The commands on one slot of an animal name. Each returns true when it changed the folder; a file error
// ends the command, logged, leaving what exists.
// Asks for a file and a label, copies the new one in and then removes the slot's old file. Cancel in
// the file dialog changes nothing; a label that a file name cannot hold is asked for again.
bool AddPicture(const QString& name, int slot);
// The first character of a label that a picture's file name cannot hold, "" when it is fit.
QString PictureLabelFault(const QString& label);
bool RemovePicture(const QString& name, int slot);
// Exchanges slot n (1 to 9) with the main picture, each keeping its label; with no main picture the
// slot's file becomes the main picture.
bool swapPictures(const QString& name, int slot);
// Shows a picture large in the desktop's viewer.
void ViewPicture(const QString& path);

// The captions of the commands, following the chosen slot. Slot 0 has no swap: "".
QString ChangePictureCaption(int slot);
QString RemovePictureCaption(int slot);
QString SwapPictureCaption(int slot);

// Wraps text at blanks into lines of at most width characters; line ends the text holds restart the
// count, and a word longer than the width stands alone on its line, uncut.
QString WrapText(const QString& text, int width);

// The size a picture is drawn at within a box: its own size when it fits, else shrunk with its
// proportions kept. Empty for an empty picture or box.
QSize resizePicture(const QSize& picture, const QSize& box);
