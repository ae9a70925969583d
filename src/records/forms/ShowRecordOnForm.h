// SPDX-License-Identifier: GPL-3.0-or-later
// Copies an animal's record onto any form that carries some of the add form's controls, found by their
// object names; the controls a form does not have are passed over.
#pragma once

class Animal;
class QWidget;

// Fills searchList (the name), cboPrefix, cboSuffix, txtCallName, cboColour, cboBreed, cboSex (the
// file's word for the sex), cboFather, cboMother, cboCustomField1..12, txtNotes, txtCage, txtTag,
// txtPicture, txtID, the thumbnail imgThumbnail, txtDOB, txtDateDeceased, txtDateSold and the status
// boxes. The date boxes of death and sale, with their labels, show only when their box is ticked.
void ShowRecordOnForm(QWidget* form, const Animal& animal);
