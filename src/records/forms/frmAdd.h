// SPDX-License-Identifier: GPL-3.0-or-later
// The add and edit form of an animal record: made, changed, renamed (the rename carried through every
// table and the picture files), copied as a similar record, and deleted. Modal; it returns to the main
// window through a RecordHost.
#pragma once

#include "records/Animal.h"

#include <QDialog>
#include <QString>
#include <array>

class QCheckBox;
class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class RecordHost;

class frmAdd : public QDialog {
    Q_OBJECT
public:
    // Opens in edit mode on gAnimal when EditMode is set, else in add mode. callerTab is the key of the
    // main window's page that opened the form. host may be nullptr: the closing steps that concern the
    // main window are then left out.
    frmAdd(RecordHost* host, const QString& callerTab, QWidget* parent = nullptr);

    // Checks, renames and saves. askAnother offers "add another" after a new record. True when saved.
    bool SaveRecord(bool askAnother);
    // Shows the named record as if the user had picked it in searchList.
    void ShowAnimal(const QString& name);

    void ShowCustomFieldInfo();
    // "Save Record" question when the record is not saved yet; OK saves.
    void checkSaved();
    void clearForm(); // empties the boxes that "add another" starts afresh
    // Fills a list box as when its list is dropped down.
    void DropDown(QComboBox* box);

    QString currentOldName() const { return oldName; }
    QString nameToSelect() const { return savedName; }
    bool recordSaved() const { return isSaved; }
    bool editing() const { return isEdit; }

public slots:
    void cmdSave_Click();
    void cmdDelete_Click();
    void cmdEstimate_Click();
    void cmdMakeFather_Click();
    void cmdMakeMother_Click();
    void OptUpdate_Click(int index);
    void searchList_Click();
    void chkDeceased_Click();
    void chkSold_Click();
    void txtAge_Change(int index);
    void lnkNotes_Click();
    void lnkHealth_Click();
    void lnkTreatments_Click();
    void lnkWeight_Click();
    void lnkJournal_Click();
    void lnkExpenditure_Click();
    void lnkPhotos_Click();
    void reject() override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void buildForm();
    void Form_Load();
    void watchForChanges();
    void markChanged();
    void MakeParent(const QString& kind);
    void quickLink(const QString& kind);
    void showDateBox(QLineEdit* box, QLabel* label, bool shown);
    void Form_Unload(int result);

    RecordHost* host = nullptr;
    Animal record; // the record the form works on; gAnimal stays the main window's
    QString oldName;
    bool isEdit = false;
    QString savedName;
    QString callerTab;
    bool isSaved = true;
    bool loading = false; // boxes filled by the form itself, not changed by the user
    bool unloaded = false;
    QString deletedName;

    QLabel* lblTitle = nullptr;
    QRadioButton* OptUpdate0 = nullptr;
    QRadioButton* OptUpdate1 = nullptr;
    QComboBox* searchList = nullptr;
    QLineEdit* txtName = nullptr;
    QCheckBox* optNameCStock = nullptr;
    QComboBox* cboPrefix = nullptr;
    QComboBox* cboSuffix = nullptr;
    QLineEdit* txtCallName = nullptr;
    QLineEdit* txtCage = nullptr;
    QLineEdit* txtTag = nullptr;
    QLabel* lblColour = nullptr;
    QComboBox* cboColour = nullptr;
    QComboBox* cboBreed = nullptr;
    QComboBox* cboSex = nullptr;
    QLabel* lblFather = nullptr;
    QComboBox* cboFather = nullptr;
    QCheckBox* optFatherCStock = nullptr;
    QLabel* lblMother = nullptr;
    QComboBox* cboMother = nullptr;
    QCheckBox* optMotherCStock = nullptr;
    QLineEdit* txtDOB = nullptr;
    QGroupBox* fmeEstimate = nullptr;
    std::array<QLineEdit*, 3> txtAge{};
    QCheckBox* chkDeceased = nullptr;
    QLabel* lblDateDeceased = nullptr;
    QLineEdit* txtDateDeceased = nullptr;
    QCheckBox* chkSold = nullptr;
    QLabel* lblDateSold = nullptr;
    QLineEdit* txtDateSold = nullptr;
    QCheckBox* chkBreeder = nullptr;
    QCheckBox* chkOwner = nullptr;
    QCheckBox* chkLeased = nullptr;
    std::array<QComboBox*, 12> cboCustomField{};
    std::array<QLabel*, 12> lblCustomName{};
    std::array<QLabel*, 2> lblCustomFieldInfo{};
    std::array<QGroupBox*, 2> fmeCustom{};
    QLineEdit* txtID = nullptr;
    QPushButton* cmdSave = nullptr;
    QPushButton* cmdDelete = nullptr;
};
