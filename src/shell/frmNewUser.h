// SPDX-License-Identifier: GPL-3.0-or-later
// The setup wizard: an intro and four pages that fill the settings row of the open data file. One
// choice of species fills the file's words, breeding calendar and custom field titles from the
// species table.
#pragma once

#include "store/User.h"

#include <QString>
#include <QStringList>
#include <QWidget>
#include <array>
#include <optional>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;
class QStackedWidget;

// The wizard's boxes as the user sees them: text, as typed.
struct WizardBoxes {
    // page 1
    QString breeder, stud, studNum, phoneNum, email, country, organisation, customDetail;
    // page 2
    QString animal, male, female, father, mother, gestation, nestBox, rebreed, wean, tag, weightMeasure;
    // page 3
    std::array<QString, 12> customName;
    // page 4
    bool autoUpdate = true;

    bool operator==(const WizardBoxes&) const = default;
};

// The boxes as the form shows a settings row on opening, before ResetAnimalPage fills the gaps.
WizardBoxes BoxesFromUser(const User& user);
// Fills the empty boxes of the animal page with a new file's defaults.
void ResetAnimalPage(WizardBoxes& boxes);

enum class PresetOutcome {
    Filled,    // a row of the table, or "[Clear previous choice]", was written to the boxes
    NoValues,  // a species the table knows without values (Hedgehog): nothing changed
    NotListed, // "[Animal not listed]": nothing changed
    Unknown,   // a word the table does not hold: the plain terms, the day counts blanked
};
// Steps 2 to 6 of AssignAnimal on the boxes, for the word as typed; storedTag is the tag days the
// form loaded, which every filled row keeps since the table has none.
PresetOutcome AssignAnimalPreset(const QString& animal, WizardBoxes& boxes, const QString& storedTag);
// The question before a suggestion: "Would you like the program to suggest settings for Cows?..."
QString SuggestSettingsQuestion(const QString& animal);

// The settings row to save: base (the open file's) with the boxes written over it. Nothing when a
// day count is not a whole number of days; then error says which, and badBox names its box.
std::optional<User> UserFromBoxes(const WizardBoxes& boxes, const User& base, QString* error = nullptr,
                                  QString* badBox = nullptr);

QString SetupCompletedMessage(const QString& animal);
QString WizardIntroText(const QString& personaliseWord);

struct WizardTip {
    QString title, text;
};
// The tip of a box for the help area; empty for a control without one.
WizardTip WizardTipFor(const QString& controlName);

QStringList WizardAnimals();        // LoadAnimals
QStringList WizardWeightMeasures(); // LoadWeightMeasures
QStringList WizardCountries();      // LoadCountries

class frmNewUser : public QWidget {
    Q_OBJECT
public:
    explicit frmNewUser(QWidget* parent = nullptr);

    // 0 is the intro, 1 to 4 the numbered pages.
    int page() const { return currentPage; }
    WizardBoxes boxes() const;
    void setBoxes(const WizardBoxes& boxes);
    // Colours the named boxes yellow, as CheckRequiredSettings asks.
    void markYellow(const QStringList& names);
    // Puts the tip of the named box in the help area.
    void showTip(const QString& controlName);

    void LoadAnimals();
    void LoadWeightMeasures();
    void LoadCountries();
    void ResetAnimalPage();
    void AssignAnimal();
    // The two questions and, on Yes to both, the reset of every custom field of the file. True
    // when the fields were cleared.
    bool ClearCustomFields();

public slots:
    void cmdNext_Click();
    void cmdStartOver_Click();
    void cmdSave_Click();
    void cmdUseDefault_Click();
    void cmdClearCustom_Click();
    void cboAnimal_Click();
    void cboAnimal_LostFocus();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    void buildIntro();
    void buildPersonal();
    void buildAnimal();
    void buildCustom();
    void buildSave();
    void HideFrames();
    void showPage(int number);
    void showHelpStart();
    void watchForTips(QWidget* box);
    void Form_Load();

    QStackedWidget* frames = nullptr;
    QLabel* lblIntro = nullptr;
    QLabel* lblPage = nullptr;
    QLabel* lblRed = nullptr;
    QLabel* lblHelpTitle = nullptr;
    QLabel* lblHelp = nullptr;
    QPushButton* cmdNext = nullptr;
    QPushButton* cmdStartOver = nullptr;
    QPushButton* cmdSave = nullptr;

    QLineEdit *txtBreeder = nullptr, *txtStud = nullptr, *txtStudNum = nullptr, *txtPhoneNum = nullptr,
              *txtEmail = nullptr, *txtOrganisation = nullptr;
    QPlainTextEdit* txtCustomDetail = nullptr;
    QComboBox *cboCountry = nullptr, *cboAnimal = nullptr, *cboWeightMeasure = nullptr;
    QLineEdit *txtMale = nullptr, *txtFemale = nullptr, *txtFather = nullptr, *txtMother = nullptr,
              *txtGestation = nullptr, *txtNestBox = nullptr, *txtRebreed = nullptr, *txtWean = nullptr,
              *txtTag = nullptr;
    std::array<QLineEdit*, 12> txtCustomName{};
    QCheckBox* chkAutoUpdate = nullptr;
    QLabel* lblNetWarning = nullptr;

    int currentPage = 0;
    QString storedTag;      // the tag days of the file as loaded
    QString assignedAnimal; // the word AssignAnimal last ran for, so a pick and the leaving do not ask twice
    bool assigning = false;
};

// Shows the wizard (one at a time) for the open data file, with the named boxes yellow.
// ShowSetupWizard of Shell.h does the same.
frmNewUser* OpenSetupWizard(const QStringList& yellowBoxes = QStringList());
// The wizard on screen, nullptr when none is.
frmNewUser* SetupWizardWindow();
// Makes the wizard the one that opening a data file brings up when settings are missing.
void InstallSetupWizard();
