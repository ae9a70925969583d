// The pictures of an animal: files named after it in the one pictures folder that every data file of
// the user shares, "<name>(<slot>)[ [<label>]].jpg", slot 0 being the main picture.
#pragma once

#include <QString>

// Carries an animal's pictures to its new name: every file of the pictures folder that begins with the
// old name (letter case ignored) is copied to the name with the old name replaced, and the old file is
// removed. The first file that cannot be moved ends the walk, as does an empty old name.
void renamePictures(const QString& oldName, const QString& newName);
