// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/frmNewUser.h"

#include "session/OpenDataFile.h"
#include "base/Ui.h"
#include "shell/Shell.h"
#include "shell/frmTree.h"
#include "session/globals.h"
#include "store/DataFile.h"
#include "store/IntegrityCheck.h"
#include "store/SpeciesPresets.h"

#include <QCheckBox>
#include <QComboBox>
#include <QCloseEvent>
#include <QCoreApplication>
#include <QEvent>
#include <QFormLayout>
#include <QGroupBox>
#include <QHash>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QStackedWidget>
#include <QTimer>
#include <QVBoxLayout>
#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString kClearChoice = u"[Clear previous choice]"_s;
const QString kNotListed = u"[Animal not listed]"_s;
const QColor kYellow(0xFF, 0xFF, 0x00);

// The exact word of the table, as the list gives it; only surrounding blanks are not part of a word.
const SpeciesPreset* presetFor(const QString& animal)
{
    const QString word = animal.trimmed();
    for (const SpeciesPreset& p : SpeciesPresets()) {
        if (word == p.animal)
            return &p;
    }
    return nullptr;
}

QString days(const std::optional<short>& value) { return value ? QString::number(*value) : QString(); }

void setIfEmpty(QString& box, const QString& value)
{
    if (box.isEmpty())
        box = value;
}

struct DayBox {
    QString WizardBoxes::*box;
    short User::*property;
    const char* name;
    const char* caption;
};
// The captions without their colons, for the message about a box that holds no number.
constexpr DayBox kDayBoxes[] = {
    {&WizardBoxes::gestation, &User::Gestation, "txtGestation", "Gestation Period"},
    {&WizardBoxes::nestBox, &User::NestBox, "txtNestBox", "Prepare bed / nest"},
    {&WizardBoxes::rebreed, &User::Rebreed, "txtRebreed", "Mother can be rebred"},
    {&WizardBoxes::wean, &User::Wean, "txtWean", "Wean offspring"},
    {&WizardBoxes::tag, &User::Tag, "txtTag", "Band / Tag"},
};

QPointer<frmNewUser>& wizardInstance()
{
    static QPointer<frmNewUser> wizard;
    return wizard;
}

} // namespace

WizardBoxes BoxesFromUser(const User& user)
{
    WizardBoxes b;
    b.breeder = DecodeText(user.BreederName);
    b.stud = DecodeText(user.Stud);
    b.studNum = DecodeText(user.StudNum);
    b.phoneNum = DecodeText(user.PhoneNum);
    b.email = DecodeText(user.Email);
    b.country = DecodeText(user.Country);
    b.organisation = DecodeText(user.Organisation);
    b.customDetail = DecodeText(user.CustomDetail);
    b.animal = DecodeText(user.Animal);
    b.male = DecodeText(user.Male);
    b.female = DecodeText(user.Female);
    b.father = DecodeText(user.Father);
    b.mother = DecodeText(user.Mother);
    // A new file's row holds 0 days of gestation; until the wizard has saved once (the breeder and the
    // weight measure are required, so a saved row has them), the box is left for the default of 71.
    const bool neverSaved = user.BreederName.isEmpty() && user.WeightMeasure.isEmpty();
    b.gestation = (neverSaved && user.Gestation == 0) ? QString() : QString::number(user.Gestation);
    b.nestBox = QString::number(user.NestBox);
    b.rebreed = QString::number(user.Rebreed);
    b.wean = QString::number(user.Wean);
    b.tag = QString::number(user.Tag);
    b.weightMeasure = DecodeText(user.WeightMeasure);
    for (size_t i = 0; i < 12; ++i)
        b.customName[i] = DecodeText(user.CustomName[i]);
    b.autoUpdate = user.AutoUpdate != 0;
    return b;
}

void ResetAnimalPage(WizardBoxes& b)
{
    setIfEmpty(b.animal, u"Animal"_s);
    setIfEmpty(b.male, u"male"_s);
    setIfEmpty(b.female, u"female"_s);
    setIfEmpty(b.father, u"Father"_s);
    setIfEmpty(b.mother, u"Mother"_s);
    // 71 although a new file's row says 0: the wizard suggests a rabbit-sized calendar to start from.
    setIfEmpty(b.gestation, u"71"_s);
    setIfEmpty(b.nestBox, u"0"_s);
    setIfEmpty(b.rebreed, u"0"_s);
    setIfEmpty(b.wean, u"0"_s);
    setIfEmpty(b.tag, u"0"_s);
}

PresetOutcome AssignAnimalPreset(const QString& animal, WizardBoxes& b, const QString& storedTag)
{
    if (animal.trimmed() == kNotListed)
        return PresetOutcome::NotListed;
    const SpeciesPreset* row = presetFor(animal);
    if (!row) {
        b.male = u"male"_s;
        b.female = u"female"_s;
        b.father = u"Father"_s;
        b.mother = u"Mother"_s;
        b.gestation.clear();
        b.nestBox.clear();
        b.rebreed.clear();
        b.wean.clear();
        return PresetOutcome::Unknown;
    }
    if (!row->hasValues)
        return PresetOutcome::NoValues;
    b.male = row->male;
    b.female = row->female;
    b.father = row->father;
    b.mother = row->mother;
    b.gestation = days(row->gestation);
    b.nestBox = days(row->nestBox);
    b.rebreed = days(row->rebreed);
    b.wean = days(row->wean);
    b.tag = storedTag;
    for (size_t i = 0; i < 12; ++i)
        b.customName[i] = row->customNames[i];
    if (row->animal == kClearChoice)
        b.animal.clear();
    return PresetOutcome::Filled;
}

QString SuggestSettingsQuestion(const QString& animal)
{
    return u"Would you like the program to suggest settings for "_s + animal + u"s?\n"_s +
           u"You can still edit them before saving."_s;
}

std::optional<User> UserFromBoxes(const WizardBoxes& b, const User& base, QString* error, QString* badBox)
{
    User u = base;
    for (const DayBox& d : kDayBoxes) {
        const QString text = (b.*d.box).trimmed();
        if (text.isEmpty()) {
            u.*d.property = 0;
            continue;
        }
        bool ok = false;
        const int value = text.toInt(&ok);
        if (!ok || value < 0 || value > 32767) {
            if (error)
                *error = QString::fromLatin1(d.caption) + u" must be a whole number of days, not \""_s + text +
                         u"\"."_s;
            if (badBox)
                *badBox = QString::fromLatin1(d.name);
            return std::nullopt;
        }
        u.*d.property = short(value);
    }
    u.BreederName = b.breeder.trimmed();
    u.Stud = b.stud.trimmed();
    u.StudNum = b.studNum.trimmed();
    u.PhoneNum = b.phoneNum.trimmed();
    u.Email = b.email.trimmed();
    u.Country = b.country.trimmed();
    u.Organisation = b.organisation.trimmed();
    u.CustomDetail = b.customDetail;
    u.Animal = b.animal.trimmed();
    u.Male = b.male.trimmed();
    u.Female = b.female.trimmed();
    u.Father = b.father.trimmed();
    u.Mother = b.mother.trimmed();
    u.WeightMeasure = b.weightMeasure.trimmed();
    for (size_t i = 0; i < 12; ++i)
        u.CustomName[i] = b.customName[i].trimmed();
    // -1 and 1 both mean on; an existing -1 stays as it is.
    u.AutoUpdate = b.autoUpdate ? (base.AutoUpdate != 0 ? base.AutoUpdate : short(1)) : short(0);
    return u;
}

QString SetupCompletedMessage(const QString& animal)
{
    return u"You can now start adding your data.\n"_s + u"Click on the ADD button to add a new "_s + animal +
           u".\n"_s + u"When you save the record the name will appear on the Search Results List on the right.\n"_s +
           u"Choose a name from the Search List and view or add various details by clicking on the tabs above."_s;
}

QString WizardIntroText(const QString& personaliseWord)
{
    return u"Let's enter some information to "_s + personaliseWord + u" this database file for your needs.\n"_s +
           u"Each file can have it's own seperate setup to suit the animal of choice. You can create as many files "
           u"as you like for any species of animal and open them when required with the Tessorin program.\n\n"_s +
           u"When you click the NEXT button below you may find that some details do not appy to your animal or "
           u"aren't necessary. Just leave these boxes blank. "_s +
           u"The minimum information required for the program to run is the five boxes with red labels.\n\n"_s +
           u"Click the NEXT button to continue."_s;
}

WizardTip WizardTipFor(const QString& name)
{
    const QString leaveAtZero = u"\nIf this doesn't really apply to your animal just leave it at 0."_s;
    static const QHash<QString, WizardTip> tips = {
        {u"txtBreeder"_s,
         {u"Breeder's Name"_s, u"Enter the name of the person who is in charge of the breeding establishment. This "
                               u"name will appear on printouts."_s}},
        {u"txtStud"_s,
         {u"Stud Name"_s, u"Enter your Stud name or Breeding establishment name here. \nIf you don't want to "
                          u"display a Stud name on your pedigree just leave this box blank. The program will use "
                          u"the Animal name as the main title on pedigrees."_s}},
        {u"txtStudNum"_s,
         {u"Stud Number"_s, u"If you have a Stud number enter it here. The Stud number can be a combination of "
                            u"letters and numbers."_s}},
        {u"txtPhoneNum"_s,
         {u"Phone Number"_s, u"Enter your full phone number here or leave it blank if you don't want it to appear "
                             u"on your printouts."_s}},
        {u"txtEmail"_s,
         {u"E-mail Address"_s, u"If you want your email address to appear on your pedigrees and printouts enter it "
                               u"here."_s}},
        {u"txtOrganisation"_s,
         {u"Registration Association"_s,
          u"If your animals are registered with an association you may enter the name of the association here.\n"
          u"The association name will appear on your pedigrees and printouts."_s}},
        {u"txtCustomDetail"_s,
         {QString(), u"Enter your details here so they can appear on your pedigree. You can click the default "
                     u"button to use information you have already supplied or edit it with your own information "
                     u"such as your home address or website."_s}},
        {u"cboCountry"_s,
         {u"Country"_s, u"It is very important to set the country correctly. This setting adjusts spelling and "
                        u"date formats. If your country is not listed, choose one which has the same date format "
                        u"as yours. \n\nExamples of date format - \nDay/Month/Year (UK, Australia)\n"
                        u"Month/Day/Year (USA)"_s}},
        {u"cboAnimal"_s,
         {u"Animal"_s, u"Choose your animal from the list. Listed animals will display species specific "
                       u"information throughout the program. \nIf your animal isn't there just type it in. You "
                       u"can manually enter details about your species in the boxes below."_s}},
        {u"txtMale"_s,
         {u"Male"_s, u"What is the name of the male of the species eg. Boar, Dog, Buck?\nIf there is no special "
                     u"name just leave it as 'Male'."_s}},
        {u"txtFemale"_s,
         {u"Female"_s, u"What is the name of the female of the species eg. Sow, Bitch, Doe?\nIf there is no "
                       u"special name just leave it as 'Female'."_s}},
        {u"txtFather"_s,
         {u"Father"_s, u"Is there a special name for the father in the species eg. Sire?\nIf there is no special "
                       u"name just leave it as 'Father'."_s}},
        {u"txtMother"_s,
         {u"Mother"_s, u"Is there a special name for the mother in the species eg. Dam?\nIf there is no special "
                       u"name just leave it as 'Mother'."_s}},
        {u"txtGestation"_s, {u"Gestation Period"_s, u"How many days between mating (conception) and birth?"_s}},
        {u"txtNestBox"_s,
         {u"Nestling"_s,
          u"How long after a successful mating should you prepare a nesting box for the mother?"_s + leaveAtZero}},
        {u"txtRebreed"_s,
         {u"Rebreed Mother"_s, u"How long after a successful mating can you rebreed the mother?"_s + leaveAtZero}},
        {u"txtWean"_s,
         {u"Wean Offspring"_s,
          u"How old do offspring need to be before they are weaned off their mother?"_s + leaveAtZero}},
        {u"txtTag"_s,
         {u"Band/Tag Offspring"_s,
          u"How long after birth do you need to band, tag or register your babies?"_s + leaveAtZero}},
        {u"cboWeightMeasure"_s,
         {u"Weight Measure"_s,
          u"The program can store your animal's weight on the Health page. Choose your measure of weight from "
          u"the list or type one in.\n\nNote: You will be allowed decimal places for metric weight types. For "
          u"example: If you choose 'kilograms' you can still enter 2.34 (kg)."_s}},
    };
    return tips.value(name);
}

QStringList WizardAnimals()
{
    return {kClearChoice, u"Rabbit"_s,  u"Guinea Pig"_s, u"Dog"_s,  u"Cat"_s,     u"Mouse"_s,  u"Rat"_s,
            u"Chinchilla"_s, u"Horse"_s, u"Goat"_s,       u"Sheep"_s, u"Hamster"_s, u"Gerbil"_s, u"Pig"_s};
}

QStringList WizardWeightMeasures()
{
    return {u"kilograms"_s, u"grams"_s, u"stones"_s, u"pounds & ounces"_s, u"ounces"_s};
}

QStringList WizardCountries()
{
    return {u"Australia"_s,    u"Belize"_s,   u"Canada"_s,         u"Carribean"_s,      u"Ireland"_s,
            u"Jamacia"_s,      u"New Zealand"_s, u"Phillipeans"_s, u"South Africa"_s,   u"Trinidad"_s,
            u"United Kingdom"_s, u"United States"_s, u"Zimbabwe"_s};
}

// ---------------------------------------------------------------------------------------------------

namespace {

QLabel* caption(const QString& text, const QString& boxName, bool required = false)
{
    auto* label = new QLabel(text);
    label->setObjectName(u"lbl"_s + boxName.mid(3));
    if (required) {
        QPalette p = label->palette();
        p.setColor(QPalette::WindowText, Qt::red);
        label->setPalette(p);
    }
    return label;
}

QLineEdit* lineEdit(const QString& name)
{
    auto* box = new QLineEdit;
    box->setObjectName(name);
    return box;
}

QComboBox* comboBox(const QString& name, bool editable)
{
    auto* box = new QComboBox;
    box->setObjectName(name);
    box->setEditable(editable);
    if (editable) {
        box->setInsertPolicy(QComboBox::NoInsert);
        box->lineEdit()->setObjectName(name + u"Text"_s);
    }
    return box;
}

// A day-count box with its unit beside it.
QWidget* withUnit(QLineEdit* box, const QString& unit)
{
    auto* row = new QWidget;
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    box->setMaximumWidth(70);
    layout->addWidget(box);
    layout->addWidget(new QLabel(unit));
    layout->addStretch();
    return row;
}

QGroupBox* frame(const QString& name, const QString& title)
{
    auto* box = new QGroupBox(title);
    box->setObjectName(name);
    return box;
}

} // namespace

frmNewUser::frmNewUser(QWidget* parent)
    : QWidget(parent, Qt::Window)
{
    setObjectName(u"frmNewUser"_s);
    setWindowTitle(u"Program Setup Wizard"_s);
    setAttribute(Qt::WA_DeleteOnClose);

    frames = new QStackedWidget;
    frames->setObjectName(u"fraPages"_s);
    buildIntro();
    buildPersonal();
    buildAnimal();
    buildCustom();
    buildSave();

    auto* help = frame(u"fraHelp"_s, QString());
    help->setFixedWidth(250);
    auto* helpLayout = new QVBoxLayout(help);
    lblHelpTitle = new QLabel;
    lblHelpTitle->setObjectName(u"lblHelpTitle"_s);
    QFont bold = lblHelpTitle->font();
    bold.setBold(true);
    bold.setPointSizeF(bold.pointSizeF() * 1.15);
    lblHelpTitle->setFont(bold);
    lblHelpTitle->setWordWrap(true);
    lblHelp = new QLabel;
    lblHelp->setObjectName(u"lblHelp"_s);
    lblHelp->setWordWrap(true);
    lblHelp->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    helpLayout->addWidget(lblHelpTitle);
    helpLayout->addWidget(lblHelp, 1);

    auto* top = new QHBoxLayout;
    top->addWidget(frames, 1);
    top->addWidget(help);

    lblPage = new QLabel;
    lblPage->setObjectName(u"lblPage"_s);
    lblRed = new QLabel(u"* Red fields must be filled in"_s);
    lblRed->setObjectName(u"lblRed"_s);
    QPalette red = lblRed->palette();
    red.setColor(QPalette::WindowText, Qt::red);
    lblRed->setPalette(red);
    cmdStartOver = new QPushButton(u"< Start"_s);
    cmdStartOver->setObjectName(u"cmdStartOver"_s);
    cmdNext = new QPushButton(u"Next  >"_s);
    cmdNext->setObjectName(u"cmdNext"_s);
    cmdNext->setDefault(true);
    auto* bottom = new QHBoxLayout;
    bottom->addWidget(lblPage);
    bottom->addSpacing(20);
    bottom->addWidget(lblRed);
    bottom->addStretch();
    bottom->addWidget(cmdStartOver);
    bottom->addWidget(cmdNext);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(top, 1);
    layout->addLayout(bottom);

    connect(cmdNext, &QPushButton::clicked, this, &frmNewUser::cmdNext_Click);
    connect(cmdStartOver, &QPushButton::clicked, this, &frmNewUser::cmdStartOver_Click);
    connect(cmdSave, &QPushButton::clicked, this, &frmNewUser::cmdSave_Click);
    connect(cboAnimal, &QComboBox::activated, this, &frmNewUser::cboAnimal_Click);
    connect(cboAnimal->lineEdit(), &QLineEdit::editingFinished, this, &frmNewUser::cboAnimal_LostFocus);

    Form_Load();
    resize(800, 560);
}

void frmNewUser::buildIntro()
{
    auto* box = frame(u"fraIntro"_s, u"Program Setup"_s);
    auto* layout = new QVBoxLayout(box);
    lblIntro = new QLabel;
    lblIntro->setObjectName(u"lblIntro"_s);
    lblIntro->setWordWrap(true);
    lblIntro->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    QFont f = lblIntro->font();
    f.setPointSizeF(f.pointSizeF() * 1.1);
    lblIntro->setFont(f);
    layout->addWidget(lblIntro, 1);
    frames->addWidget(box);
}

void frmNewUser::buildPersonal()
{
    auto* box = frame(u"fraPersonal"_s, u"Personal Details"_s);
    auto* form = new QFormLayout(box);
    txtBreeder = lineEdit(u"txtBreeder"_s);
    txtStud = lineEdit(u"txtStud"_s);
    txtStudNum = lineEdit(u"txtStudNum"_s);
    txtPhoneNum = lineEdit(u"txtPhoneNum"_s);
    txtEmail = lineEdit(u"txtEmail"_s);
    cboCountry = comboBox(u"cboCountry"_s, false);
    txtOrganisation = lineEdit(u"txtOrganisation"_s);
    txtCustomDetail = new QPlainTextEdit;
    txtCustomDetail->setObjectName(u"txtCustomDetail"_s);
    txtCustomDetail->setTabChangesFocus(true);
    txtCustomDetail->setMinimumHeight(80);
    txtCustomDetail->setMaximumHeight(110);

    form->addRow(caption(u"Owner / Breeder's Name:"_s, u"txtBreeder"_s, true), txtBreeder);
    form->addRow(caption(u"Business / Farm Name:"_s, u"txtStud"_s), txtStud);
    form->addRow(caption(u"Stud / Farm Number:"_s, u"txtStudNum"_s), txtStudNum);
    form->addRow(caption(u"Phone Number:"_s, u"txtPhoneNum"_s), txtPhoneNum);
    form->addRow(caption(u"E-mail Address:"_s, u"txtEmail"_s), txtEmail);
    form->addRow(caption(u"Country:"_s, u"cboCountry"_s), cboCountry);
    form->addRow(caption(u"Registration Association:"_s, u"txtOrganisation"_s), txtOrganisation);

    auto* detail = new QWidget;
    auto* detailLayout = new QVBoxLayout(detail);
    detailLayout->setContentsMargins(0, 0, 0, 0);
    detailLayout->addWidget(txtCustomDetail);
    auto* cmdUseDefault = new QPushButton(u"Use Default"_s);
    cmdUseDefault->setObjectName(u"cmdUseDefault"_s);
    connect(cmdUseDefault, &QPushButton::clicked, this, &frmNewUser::cmdUseDefault_Click);
    detailLayout->addWidget(cmdUseDefault, 0, Qt::AlignLeft);
    detail->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Maximum);
    form->addRow(caption(u"Pedigree Details:"_s, u"txtCustomDetail"_s), detail);

    for (QWidget* w : {static_cast<QWidget*>(txtBreeder), static_cast<QWidget*>(txtStud),
                       static_cast<QWidget*>(txtStudNum), static_cast<QWidget*>(txtPhoneNum),
                       static_cast<QWidget*>(txtEmail), static_cast<QWidget*>(cboCountry),
                       static_cast<QWidget*>(txtOrganisation), static_cast<QWidget*>(txtCustomDetail)})
        watchForTips(w);
    frames->addWidget(box);
}

void frmNewUser::buildAnimal()
{
    auto* box = frame(u"fraAnimal"_s, u"Animal Details"_s);
    auto* form = new QFormLayout(box);
    cboAnimal = comboBox(u"cboAnimal"_s, true);
    txtMale = lineEdit(u"txtMale"_s);
    txtFemale = lineEdit(u"txtFemale"_s);
    txtFather = lineEdit(u"txtFather"_s);
    txtMother = lineEdit(u"txtMother"_s);
    txtGestation = lineEdit(u"txtGestation"_s);
    txtNestBox = lineEdit(u"txtNestBox"_s);
    txtRebreed = lineEdit(u"txtRebreed"_s);
    txtWean = lineEdit(u"txtWean"_s);
    txtTag = lineEdit(u"txtTag"_s);
    cboWeightMeasure = comboBox(u"cboWeightMeasure"_s, true);

    form->addRow(caption(u"Animal Type:"_s, u"cboAnimal"_s, true), cboAnimal);
    form->addRow(caption(u"Male of species:"_s, u"txtMale"_s, true), txtMale);
    form->addRow(caption(u"Female of species:"_s, u"txtFemale"_s, true), txtFemale);
    form->addRow(caption(u"Male parent:"_s, u"txtFather"_s), txtFather);
    form->addRow(caption(u"Female parent:"_s, u"txtMother"_s), txtMother);
    form->addRow(caption(u"Gestation Period:"_s, u"txtGestation"_s), withUnit(txtGestation, u"days"_s));
    form->addRow(caption(u"Prepare bed / nest:"_s, u"txtNestBox"_s), withUnit(txtNestBox, u"days after mating"_s));
    form->addRow(caption(u"Mother can be rebred:"_s, u"txtRebreed"_s), withUnit(txtRebreed, u"days after birth"_s));
    form->addRow(caption(u"Wean offspring:"_s, u"txtWean"_s), withUnit(txtWean, u"days after birth"_s));
    form->addRow(caption(u"Band / Tag:"_s, u"txtTag"_s), withUnit(txtTag, u"days after birth"_s));
    form->addRow(caption(u"I measure my animal's weight in"_s, u"cboWeightMeasure"_s, true), cboWeightMeasure);

    for (QWidget* w : {static_cast<QWidget*>(cboAnimal), static_cast<QWidget*>(txtMale),
                       static_cast<QWidget*>(txtFemale), static_cast<QWidget*>(txtFather),
                       static_cast<QWidget*>(txtMother), static_cast<QWidget*>(txtGestation),
                       static_cast<QWidget*>(txtNestBox), static_cast<QWidget*>(txtRebreed),
                       static_cast<QWidget*>(txtWean), static_cast<QWidget*>(txtTag),
                       static_cast<QWidget*>(cboWeightMeasure)})
        watchForTips(w);
    frames->addWidget(box);
}

void frmNewUser::buildCustom()
{
    auto* box = frame(u"fraCustom"_s, u"Custom Fields"_s);
    auto* layout = new QVBoxLayout(box);
    auto* grid = new QGridLayout;
    for (int i = 0; i < 12; ++i) {
        const QString name = u"txtCustomName"_s + QString::number(i + 1);
        txtCustomName[size_t(i)] = lineEdit(name);
        auto* label = new QLabel(u"Field "_s + QString::number(i + 1) + u":"_s);
        label->setObjectName(u"lblCustomName"_s + QString::number(i + 1));
        const int column = i < 6 ? 0 : 2;
        grid->addWidget(label, i % 6, column);
        grid->addWidget(txtCustomName[size_t(i)], i % 6, column + 1);
    }
    grid->setColumnStretch(1, 1);
    grid->setColumnStretch(3, 1);
    grid->setColumnMinimumWidth(2, 60);
    layout->addLayout(grid);
    auto* note = new QLabel(u"Fields 7 to 12 do not appear on pedigrees."_s);
    note->setObjectName(u"lblCustomNote"_s);
    layout->addWidget(note);
    layout->addSpacing(12);
    auto* cmdClearCustom = new QPushButton(u"Clear Custom Fields"_s);
    cmdClearCustom->setObjectName(u"cmdClearCustom"_s);
    connect(cmdClearCustom, &QPushButton::clicked, this, &frmNewUser::cmdClearCustom_Click);
    if (gDatabase.isReadOnly()) {
        cmdClearCustom->setEnabled(false);
        cmdClearCustom->setToolTip(u"The data file is open read-only."_s);
    }
    layout->addWidget(cmdClearCustom, 0, Qt::AlignLeft);
    layout->addStretch();
    frames->addWidget(box);
}

void frmNewUser::buildSave()
{
    auto* box = frame(u"fraSave"_s, u"Save"_s);
    auto* layout = new QVBoxLayout(box);
    chkAutoUpdate = new QCheckBox(u"Notify me automatically when free updates available."_s);
    chkAutoUpdate->setObjectName(u"chkAutoUpdate"_s);
    lblNetWarning = new QLabel(
        u"Automatic update checks will only activate when there is an Internet connection. Use it to keep your "
        u"program running smoothly.\n\nIf a firewall asks whether Tessorin may connect to the Internet, allow it; "
        u"otherwise the check cannot run. On a slow or missing connection the check can delay the start of the "
        u"program by a few seconds."_s);
    lblNetWarning->setObjectName(u"lblNetWarning"_s);
    lblNetWarning->setWordWrap(true);
    cmdSave = new QPushButton(u"Save"_s);
    cmdSave->setObjectName(u"cmdSave"_s);
    cmdSave->setMinimumWidth(120);
    if (gDatabase.isReadOnly()) {
        cmdSave->setEnabled(false);
        cmdSave->setToolTip(u"The data file is open read-only: its settings cannot be saved."_s);
    }
    layout->addWidget(chkAutoUpdate);
    layout->addWidget(lblNetWarning);
    layout->addSpacing(24);
    layout->addWidget(cmdSave, 0, Qt::AlignHCenter);
    layout->addStretch();
    frames->addWidget(box);
}

void frmNewUser::watchForTips(QWidget* box)
{
    box->installEventFilter(this);
    box->setProperty("tipFor", box->objectName());
    if (auto* combo = qobject_cast<QComboBox*>(box); combo && combo->lineEdit()) {
        combo->lineEdit()->installEventFilter(this);
        combo->lineEdit()->setProperty("tipFor", box->objectName());
    }
    if (auto* text = qobject_cast<QPlainTextEdit*>(box)) {
        text->viewport()->installEventFilter(this);
        text->viewport()->setProperty("tipFor", box->objectName());
    }
}

bool frmNewUser::eventFilter(QObject* watched, QEvent* event)
{
    switch (event->type()) {
    case QEvent::Enter:
    case QEvent::FocusIn:
    case QEvent::MouseButtonPress: {
        const QString name = watched->property("tipFor").toString();
        if (!name.isEmpty())
            showTip(name);
        break;
    }
    default:
        break;
    }
    return QWidget::eventFilter(watched, event);
}

void frmNewUser::closeEvent(QCloseEvent* event)
{
    // A wizard asked for while this one is going away must be a new one.
    if (wizardInstance() == this)
        wizardInstance().clear();
    QWidget::closeEvent(event);
}

void frmNewUser::showTip(const QString& controlName)
{
    const WizardTip tip = WizardTipFor(controlName);
    if (tip.text.isEmpty())
        return;
    lblHelpTitle->setText(tip.title);
    lblHelpTitle->setVisible(!tip.title.isEmpty());
    lblHelp->setText(tip.text);
}

void frmNewUser::showHelpStart()
{
    lblHelpTitle->setText(u"Help?"_s);
    lblHelpTitle->setVisible(true);
    lblHelp->setText(u"When you move your mouse over input boxes or click on lists you will see tips here to help "
                     u"you set up your program correctly."_s);
}

void frmNewUser::Form_Load()
{
    LoadAnimals();
    LoadWeightMeasures();
    LoadCountries();
    WizardBoxes b = BoxesFromUser(gUser);
    ::ResetAnimalPage(b);
    setBoxes(b);
    storedTag = b.tag;
    assignedAnimal = b.animal.trimmed();
    lblIntro->setText(WizardIntroText(GetLocaleWord(u"personalise"_s)));
    showPage(0);
}

void frmNewUser::LoadAnimals()
{
    cboAnimal->clear();
    cboAnimal->addItems(WizardAnimals());
}

void frmNewUser::LoadWeightMeasures()
{
    cboWeightMeasure->clear();
    cboWeightMeasure->addItems(WizardWeightMeasures());
}

void frmNewUser::LoadCountries()
{
    cboCountry->clear();
    cboCountry->addItems(WizardCountries());
}

WizardBoxes frmNewUser::boxes() const
{
    WizardBoxes b;
    b.breeder = txtBreeder->text();
    b.stud = txtStud->text();
    b.studNum = txtStudNum->text();
    b.phoneNum = txtPhoneNum->text();
    b.email = txtEmail->text();
    b.country = cboCountry->currentText();
    b.organisation = txtOrganisation->text();
    b.customDetail = txtCustomDetail->toPlainText();
    b.animal = cboAnimal->currentText();
    b.male = txtMale->text();
    b.female = txtFemale->text();
    b.father = txtFather->text();
    b.mother = txtMother->text();
    b.gestation = txtGestation->text();
    b.nestBox = txtNestBox->text();
    b.rebreed = txtRebreed->text();
    b.wean = txtWean->text();
    b.tag = txtTag->text();
    b.weightMeasure = cboWeightMeasure->currentText();
    for (size_t i = 0; i < 12; ++i)
        b.customName[i] = txtCustomName[i]->text();
    b.autoUpdate = chkAutoUpdate->isChecked();
    return b;
}

void frmNewUser::setBoxes(const WizardBoxes& b)
{
    txtBreeder->setText(b.breeder);
    txtStud->setText(b.stud);
    txtStudNum->setText(b.studNum);
    txtPhoneNum->setText(b.phoneNum);
    txtEmail->setText(b.email);
    // Not a typed list: a country the list lacks shows as no choice, and Next asks for one.
    cboCountry->setCurrentIndex(cboCountry->findText(b.country));
    txtOrganisation->setText(b.organisation);
    txtCustomDetail->setPlainText(b.customDetail);
    cboAnimal->setEditText(b.animal);
    txtMale->setText(b.male);
    txtFemale->setText(b.female);
    txtFather->setText(b.father);
    txtMother->setText(b.mother);
    txtGestation->setText(b.gestation);
    txtNestBox->setText(b.nestBox);
    txtRebreed->setText(b.rebreed);
    txtWean->setText(b.wean);
    txtTag->setText(b.tag);
    cboWeightMeasure->setEditText(b.weightMeasure);
    for (size_t i = 0; i < 12; ++i)
        txtCustomName[i]->setText(b.customName[i]);
    chkAutoUpdate->setChecked(b.autoUpdate);
}

void frmNewUser::markYellow(const QStringList& names)
{
    for (const QString& name : names) {
        auto* box = findChild<QWidget*>(name);
        if (!box)
            continue;
        QPalette p = box->palette();
        p.setColor(QPalette::Base, kYellow);
        box->setPalette(p);
        if (auto* combo = qobject_cast<QComboBox*>(box); combo && combo->lineEdit())
            combo->lineEdit()->setPalette(p);
    }
}

void frmNewUser::HideFrames()
{
    for (int i = 0; i < frames->count(); ++i)
        frames->widget(i)->hide();
}

void frmNewUser::showPage(int number)
{
    HideFrames();
    currentPage = number;
    frames->setCurrentIndex(number);
    frames->currentWidget()->show();
    lblPage->setText(u"Page "_s + QString::number(number) + u" of 4"_s);
    lblPage->setVisible(number > 0);
    lblRed->setVisible(number == 1 || number == 2);
    cmdNext->setVisible(number < 4);
    cmdStartOver->setEnabled(number > 1);
    showHelpStart();
}

void frmNewUser::cmdNext_Click()
{
    if (currentPage == 1 && cboCountry->currentText().isEmpty()) {
        Ui::message(u"Please choose a country"_s, Ui::Buttons::Ok, Ui::Icon::Exclamation, u"Error"_s);
        cboCountry->setFocus();
        return;
    }
    if (currentPage < 4)
        showPage(currentPage + 1);
}

void frmNewUser::cmdStartOver_Click() { showPage(1); }

void frmNewUser::ResetAnimalPage()
{
    WizardBoxes b = boxes();
    ::ResetAnimalPage(b);
    setBoxes(b);
}

void frmNewUser::cboAnimal_Click() { AssignAnimal(); }

void frmNewUser::cboAnimal_LostFocus() { AssignAnimal(); }

void frmNewUser::AssignAnimal()
{
    if (assigning)
        return;
    const QString word = cboAnimal->currentText().trimmed();
    if (word == assignedAnimal || word.isEmpty())
        return;
    assignedAnimal = word;
    assigning = true;
    if (word != kClearChoice &&
        Ui::message(SuggestSettingsQuestion(word), Ui::Buttons::YesNo, Ui::Icon::Question, u"Settings"_s) !=
            Ui::Answer::Yes) {
        assigning = false;
        return;
    }
    WizardBoxes b = boxes();
    const auto before = b.customName;
    const PresetOutcome outcome = AssignAnimalPreset(word, b, storedTag);
    if (outcome == PresetOutcome::Filled) {
        // New titles over titles the file already uses would put the old fields' values under new
        // names, so they only replace them once the old fields are gone.
        const bool savedTitles =
            std::any_of(gUser.CustomName.begin(), gUser.CustomName.end(), [](const QString& t) { return !t.isEmpty(); });
        if (savedTitles && b.customName != gUser.CustomName && !ClearCustomFields())
            b.customName = before;
    }
    setBoxes(b);
    assignedAnimal = b.animal.trimmed();
    assigning = false;
}

bool frmNewUser::ClearCustomFields()
{
    // Clearing remakes columns of the file at once, before any save.
    if (gDatabase.isReadOnly())
        return false;
    const QString animal = gUser.Animal.isEmpty() ? cboAnimal->currentText() : gUser.Animal;
    if (Ui::message(u"Are you sure you want to clear custom field names for "_s + animal +
                        u" that you have saved previously?"_s,
                    Ui::Buttons::YesNo, Ui::Icon::Question, u"Clear Custom Fields"_s) != Ui::Answer::Yes)
        return false;
    if (Ui::message(u"This action will remove your custom field names and also permanently delete all previous "
                    u"custom field information for all records in this database. \n"
                    u"Are you sure you want to proceed?"_s,
                    Ui::Buttons::YesNo, Ui::Icon::Exclamation, u"Clear Custom Fields"_s) != Ui::Answer::Yes)
        return false;
    ResetCustomFields(gDatabase, u"all"_s);
    for (size_t i = 0; i < 12; ++i) {
        gUser.CustomName[i].clear();
        txtCustomName[i]->clear();
    }
    return true;
}

void frmNewUser::cmdClearCustom_Click() { ClearCustomFields(); }

void frmNewUser::cmdUseDefault_Click()
{
    txtCustomDetail->setPlainText(GetPedigreeLabel(txtPhoneNum->text(), txtStudNum->text(), txtEmail->text()));
}

void frmNewUser::cmdSave_Click()
{
    if (gDatabase.isReadOnly())
        return;
    QString error, badBox;
    const std::optional<User> user = UserFromBoxes(boxes(), gUser, &error, &badBox);
    if (!user) {
        Ui::message(error, Ui::Buttons::Ok, Ui::Icon::Exclamation, u"Error"_s);
        showPage(2);
        if (auto* box = findChild<QWidget*>(badBox))
            box->setFocus();
        return;
    }
    if (!SaveSettingsToFile(gDatabase, *user)) {
        Ui::message(u"The settings could not be saved to "_s + gDatabaseFile +
                        u". Nothing was changed; check that the file can be written and save again."_s,
                    Ui::Buttons::Ok, Ui::Icon::Critical, u"Error"_s);
        return;
    }
    QCoreApplication::processEvents();
    hide();
    ReadUserSettings();
    if (frmTree* window = MainWindow())
        window->UserSettingsChanged();
    Ui::message(SetupCompletedMessage(gUser.Animal), Ui::Buttons::Ok, Ui::Icon::Information, u"Setup Completed"_s);
    close();
}

// ---------------------------------------------------------------------------------------------------

frmNewUser* OpenSetupWizard(const QStringList& yellowBoxes)
{
    QPointer<frmNewUser>& wizard = wizardInstance();
    if (!wizard) {
        // Its own window, kept in front of the main window that waits for it (a new main window for the
        // file takes it over).
        wizard = new frmNewUser(MainWindow());
        // The file is unusable until its settings are in, so the wizard stands before every other window.
        wizard->setWindowModality(Qt::ApplicationModal);
    }
    wizard->markYellow(yellowBoxes);
    wizard->show();
    wizard->raise();
    wizard->activateWindow();
    // Opening a file shows the main window after the wizard; once that is done, the wizard comes forward.
    QTimer::singleShot(0, wizard, [w = wizard.data()] {
        w->raise();
        w->activateWindow();
    });
    return wizard;
}

frmNewUser* SetupWizardWindow() { return wizardInstance().data(); }

void InstallSetupWizard()
{
    SetSetupWizardHook([](const QStringList& yellowBoxes) { OpenSetupWizard(yellowBoxes); });
}

void ShowSetupWizard(const QStringList& yellowBoxes) { OpenSetupWizard(yellowBoxes); }
