// SPDX-License-Identifier: GPL-3.0-or-later
// The setup wizard on a new data file: the species presets, moving between pages, the yellow boxes,
// saving the settings row, and the custom fields.
#include "support/TestEnv.h"
#include "session/OpenDataFile.h"
#include "shell/frmNewUser.h"
#include "session/globals.h"
#include "store/DataFile.h"

#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>

using namespace Qt::Literals::StringLiterals;

namespace {

const QStringList kGeneral = {u"Ears"_s,   u"Head"_s, u"Legs"_s, u"Eye Colour"_s, u"Under Colour"_s,
                              u"Weight"_s, u"Line"_s, u"Nutritional Problems"_s};

QStringList titles(const WizardBoxes& b)
{
    QStringList t;
    for (const QString& name : b.customName)
        t << name;
    while (!t.isEmpty() && t.last().isEmpty())
        t.removeLast();
    return t;
}

User storedRow()
{
    User u;
    u.read(gDatabase);
    return u;
}

class Wizard : public ::testing::Test {
protected:
    void SetUp() override
    {
        InstallSetupWizard();
        ASSERT_TRUE(CreateDataFile(u"Wizard.cav"_s, env.dataFolder()));
        ASSERT_TRUE(OpenDataFile(env.dataFolder() + u"Wizard.cav"_s));
        wizard = SetupWizardWindow();
        ASSERT_NE(wizard, nullptr);
    }
    void TearDown() override
    {
        delete SetupWizardWindow();
        SetSetupWizardHook(nullptr);
        CloseDatabase();
        gUser = User();
    }

    template <class T = QWidget> T* box(const QString& name) const
    {
        T* w = wizard->findChild<T*>(name);
        EXPECT_NE(w, nullptr) << name.toStdString();
        return w;
    }
    QString text(const QString& name) const { return box<QLineEdit>(name)->text(); }
    // Types a word into the animal box and leaves it.
    void typeAnimal(const QString& word)
    {
        box<QComboBox>(u"cboAnimal"_s)->setEditText(word);
        wizard->cboAnimal_LostFocus();
    }
    void pickAnimal(const QString& word)
    {
        auto* combo = box<QComboBox>(u"cboAnimal"_s);
        const int index = combo->findText(word);
        ASSERT_GE(index, 0) << word.toStdString();
        combo->setCurrentIndex(index);
        emit combo->activated(index);
    }
    void fillRequired()
    {
        box<QLineEdit>(u"txtBreeder"_s)->setText(u"Ann O'Brien"_s);
        box<QComboBox>(u"cboCountry"_s)->setCurrentText(u"Ireland"_s);
        box<QComboBox>(u"cboWeightMeasure"_s)->setEditText(u"kilograms"_s);
    }

    TestEnv env;
    QPointer<frmNewUser> wizard;
};

TEST_F(Wizard, ANewFileOpensItWithTheMissingBoxesYellowAndTheDefaults)
{
    EXPECT_TRUE(wizard->isVisible());
    EXPECT_EQ(wizard->windowTitle(), u"Program Setup Wizard"_s);
    EXPECT_EQ(wizard->page(), 0);
    EXPECT_TRUE(box<QLabel>(u"lblIntro"_s)->text().startsWith(u"Let's enter some information to "_s));
    EXPECT_EQ(env.ui().messages().last(), u"Tessorin needs some information to function properly.\n"
                                          u"Fill in all the yellow boxes on the Program Setup Wizard and save."_s);

    const QColor yellow(u"#FFFF00"_s);
    EXPECT_EQ(box(u"txtBreeder"_s)->palette().color(QPalette::Base), yellow);
    EXPECT_EQ(box(u"cboWeightMeasure"_s)->palette().color(QPalette::Base), yellow);
    EXPECT_NE(box(u"txtMale"_s)->palette().color(QPalette::Base), yellow);
    wizard->markYellow({u"txtMale"_s, u"txtFemale"_s, u"cboAnimal"_s});
    for (const QString& name : {u"txtMale"_s, u"txtFemale"_s, u"cboAnimal"_s})
        EXPECT_EQ(box(name)->palette().color(QPalette::Base), yellow) << name.toStdString();

    // The new file's words, and 71 days where its row says 0.
    EXPECT_EQ(box<QComboBox>(u"cboAnimal"_s)->currentText(), u"Animal"_s);
    EXPECT_EQ(text(u"txtMale"_s), u"Male"_s);
    EXPECT_EQ(text(u"txtFather"_s), u"Father"_s);
    EXPECT_EQ(text(u"txtGestation"_s), u"71"_s);
    EXPECT_EQ(text(u"txtNestBox"_s), u"0"_s);
    EXPECT_EQ(text(u"txtTag"_s), u"0"_s);
}

TEST_F(Wizard, TheListsHoldTheirRowsInOrder)
{
    auto items = [&](const QString& name) {
        QStringList l;
        auto* c = box<QComboBox>(name);
        for (int i = 0; i < c->count(); ++i)
            l << c->itemText(i);
        return l;
    };
    EXPECT_EQ(items(u"cboAnimal"_s),
              QStringList({u"[Clear previous choice]"_s, u"Rabbit"_s, u"Guinea Pig"_s, u"Dog"_s, u"Cat"_s, u"Mouse"_s,
                           u"Rat"_s, u"Chinchilla"_s, u"Horse"_s, u"Goat"_s, u"Sheep"_s, u"Hamster"_s, u"Gerbil"_s,
                           u"Pig"_s}));
    EXPECT_EQ(items(u"cboWeightMeasure"_s),
              QStringList({u"kilograms"_s, u"grams"_s, u"stones"_s, u"pounds & ounces"_s, u"ounces"_s}));
    EXPECT_EQ(items(u"cboCountry"_s).join(u'|'), u"Australia|Belize|Canada|Carribean|Ireland|Jamacia|New Zealand|"
                                                 u"Phillipeans|South Africa|Trinidad|United Kingdom|United States|"
                                                 u"Zimbabwe"_s);
    EXPECT_TRUE(box<QComboBox>(u"cboAnimal"_s)->isEditable());
    EXPECT_TRUE(box<QComboBox>(u"cboWeightMeasure"_s)->isEditable());
}

TEST_F(Wizard, AnAnimalWordAsksAndFillsItsRowOrNothing)
{
    const struct {
        const char* word;
        bool picked; // from the list, not typed
        Ui::Answer answer;
        const char* question; // nullptr: none asked; "": one asked
        const char* male;     // nullptr: the boxes stay as they were
        const char* gestation;
        QStringList titles;
    } cases[] = {
        {"Cow", false, Ui::Answer::Yes, "Would you like the program to suggest settings for Cows?\nYou can still edit "
         "them before saving.", "bull", "285", kGeneral},
        {"Rabbit", true, Ui::Answer::Yes, "", "buck", "31", {}},
        {"Hedgehog", false, Ui::Answer::Yes, "Would you like the program to suggest settings for Hedgehogs?\nYou can "
         "still edit them before saving.", nullptr},
        {"Dog", false, Ui::Answer::No, "", nullptr},
        {"[Animal not listed]", false, Ui::Answer::Yes, "", nullptr},
        // A word the table lacks, the lower-case "cow" too, gets the plain terms and blank days.
        {"Axolotl", false, Ui::Answer::Yes, "", "male", "", {"Ring"}},
        {"cow", false, Ui::Answer::Yes, "", "male", "", {"Ring"}},
        {"[Clear previous choice]", true, Ui::Answer::Yes, nullptr, "male", "", {}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.word);
        delete wizard;
        wizard = OpenSetupWizard();
        box<QLineEdit>(u"txtCustomName1"_s)->setText(u"Ring"_s);
        box<QLineEdit>(u"txtMale"_s)->setText(u"something"_s);
        const WizardBoxes before = wizard->boxes();
        env.ui().clear();
        env.ui().queueAnswer(c.answer);
        if (c.picked)
            pickAnimal(QString::fromUtf8(c.word));
        else
            typeAnimal(QString::fromUtf8(c.word));
        EXPECT_EQ(env.ui().calls().size(), c.question ? 1 : 0);
        if (c.question && *c.question) {
            EXPECT_EQ(env.ui().calls().value(0).text, QString::fromUtf8(c.question));
            EXPECT_EQ(env.ui().calls().value(0).title, u"Settings"_s);
            EXPECT_EQ(env.ui().calls().value(0).buttons, Ui::Buttons::YesNo);
        }
        WizardBoxes b = wizard->boxes();
        if (!c.male) {
            b.animal = before.animal;
            EXPECT_EQ(b, before);
            continue;
        }
        EXPECT_EQ(b.male, c.male);
        EXPECT_EQ(b.gestation, c.gestation);
        if (QString::fromUtf8(c.word) == u"Rabbit"_s)
            EXPECT_EQ(b.customName[11], u"Best Opposite In Show"_s);
        else
            EXPECT_EQ(titles(b), c.titles);
    }
    // Cow's whole row; leaving the box again with the same word asks nothing more.
    typeAnimal(u"Cow"_s);
    const WizardBoxes b = wizard->boxes();
    EXPECT_EQ(QStringList({b.male, b.female, b.father, b.mother, b.gestation, b.nestBox, b.rebreed, b.wean, b.tag}),
              QStringList({u"bull"_s, u"cow"_s, u"Sire"_s, u"Dam"_s, u"285"_s, u"271"_s, u"168"_s, u"84"_s, u"0"_s}));
    env.ui().clear();
    wizard->cboAnimal_LostFocus();
    EXPECT_TRUE(env.ui().calls().isEmpty());
}

TEST_F(Wizard, NextStartAndThePageLabels)
{
    EXPECT_TRUE(box(u"lblPage"_s)->isHidden());
    wizard->cmdNext_Click();
    EXPECT_EQ(wizard->page(), 1);
    EXPECT_EQ(box<QLabel>(u"lblPage"_s)->text(), u"Page 1 of 4"_s);
    EXPECT_EQ(box<QLabel>(u"lblRed"_s)->text(), u"* Red fields must be filled in"_s);
    EXPECT_FALSE(box(u"lblRed"_s)->isHidden());
    EXPECT_EQ(box<QPushButton>(u"cmdNext"_s)->text(), u"Next  >"_s);
    EXPECT_EQ(box<QPushButton>(u"cmdStartOver"_s)->text(), u"< Start"_s);

    // No country: the page stays.
    box<QComboBox>(u"cboCountry"_s)->setCurrentIndex(-1);
    env.ui().clear();
    wizard->cmdNext_Click();
    EXPECT_EQ(wizard->page(), 1);
    ASSERT_EQ(env.ui().calls().size(), 1);
    EXPECT_EQ(env.ui().calls()[0].text, u"Please choose a country"_s);
    EXPECT_EQ(env.ui().calls()[0].title, u"Error"_s);

    fillRequired();
    box<QLineEdit>(u"txtStud"_s)->setText(u"Hilltop"_s);
    wizard->cmdNext_Click();
    box<QLineEdit>(u"txtMale"_s)->setText(u"buck"_s);
    wizard->cmdNext_Click();
    EXPECT_EQ(box<QLabel>(u"lblPage"_s)->text(), u"Page 3 of 4"_s);
    EXPECT_TRUE(box(u"lblRed"_s)->isHidden());
    wizard->cmdNext_Click();
    EXPECT_EQ(wizard->page(), 4);
    EXPECT_TRUE(box(u"cmdNext"_s)->isHidden());
    EXPECT_FALSE(box(u"fraSave"_s)->isHidden());
    EXPECT_TRUE(box(u"fraAnimal"_s)->isHidden());

    wizard->cmdStartOver_Click();
    EXPECT_EQ(wizard->page(), 1);
    EXPECT_EQ(box<QLabel>(u"lblPage"_s)->text(), u"Page 1 of 4"_s);
    EXPECT_EQ(text(u"txtBreeder"_s), u"Ann O'Brien"_s);
    EXPECT_EQ(text(u"txtStud"_s), u"Hilltop"_s);
    EXPECT_EQ(text(u"txtMale"_s), u"buck"_s);
    EXPECT_EQ(box<QComboBox>(u"cboCountry"_s)->currentText(), u"Ireland"_s);
}

TEST_F(Wizard, TipsShowInTheHelpArea)
{
    EXPECT_EQ(box<QLabel>(u"lblHelpTitle"_s)->text(), u"Help?"_s);
    QEvent enter(QEvent::Enter);
    QCoreApplication::sendEvent(box(u"txtStud"_s), &enter);
    EXPECT_EQ(box<QLabel>(u"lblHelpTitle"_s)->text(), u"Stud Name"_s);
    EXPECT_EQ(box<QLabel>(u"lblHelp"_s)->text(),
              u"Enter your Stud name or Breeding establishment name here. \nIf you don't want to display a Stud name "
              u"on your pedigree just leave this box blank. The program will use the Animal name as the main title "
              u"on pedigrees."_s);
    QEvent focus(QEvent::FocusIn);
    QCoreApplication::sendEvent(box<QComboBox>(u"cboAnimal"_s)->lineEdit(), &focus);
    EXPECT_EQ(box<QLabel>(u"lblHelpTitle"_s)->text(), u"Animal"_s);
    wizard->showTip(u"txtTag"_s);
    EXPECT_EQ(box<QLabel>(u"lblHelp"_s)->text(),
              u"How long after birth do you need to band, tag or register your babies?\n"
              u"If this doesn't really apply to your animal just leave it at 0."_s);
}

TEST_F(Wizard, UseDefaultWritesThePedigreeLabel)
{
    box<QLineEdit>(u"txtPhoneNum"_s)->setText(u"021 555 0100"_s);
    box<QLineEdit>(u"txtStudNum"_s)->setText(u"NZ-114"_s);
    box<QLineEdit>(u"txtEmail"_s)->setText(u"ann@example.org"_s);
    box<QPushButton>(u"cmdUseDefault"_s)->click();
    EXPECT_EQ(box<QPlainTextEdit>(u"txtCustomDetail"_s)->toPlainText(),
              u"Phone: 021 555 0100\nStud Number: NZ-114\nEmail: ann@example.org"_s);
}

TEST_F(Wizard, SaveWritesTheRowKeepsThePrefixesAndSaysSetupCompleted)
{
    gUser.Prefix = u"Ch.;Gr Ch."_s;
    gUser.savePrefixes(gDatabase);
    fillRequired();
    typeAnimal(u"Cow"_s);
    box<QCheckBox>(u"chkAutoUpdate"_s)->setChecked(false);
    env.ui().clear();

    box<QPushButton>(u"cmdSave"_s)->click();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(wizard.isNull());
    ASSERT_EQ(env.ui().calls().size(), 1);
    EXPECT_EQ(env.ui().calls()[0].title, u"Setup Completed"_s);
    EXPECT_EQ(env.ui().calls()[0].text,
              u"You can now start adding your data.\nClick on the ADD button to add a new Cow.\n"
              u"When you save the record the name will appear on the Search Results List on the right.\n"
              u"Choose a name from the Search List and view or add various details by clicking on the tabs above."_s);

    const User row = storedRow();
    EXPECT_EQ(DecodeText(row.BreederName), u"Ann O'Brien"_s);
    EXPECT_EQ(row.Animal, u"Cow"_s);
    EXPECT_EQ(row.Male, u"bull"_s);
    EXPECT_EQ(row.Gestation, 285);
    EXPECT_EQ(row.Wean, 84);
    EXPECT_EQ(row.Tag, 0);
    EXPECT_EQ(row.Country, u"Ireland"_s);
    EXPECT_EQ(row.WeightMeasure, u"kilograms"_s);
    EXPECT_EQ(row.CustomName[7], u"Nutritional Problems"_s);
    EXPECT_EQ(row.AutoUpdate, 0);
    EXPECT_EQ(row.Prefix, u"Ch.;Gr Ch."_s);
    // Read back into gUser, so the next open asks for nothing.
    EXPECT_EQ(gUser.Animal, u"Cow"_s);
    EXPECT_TRUE(CheckRequiredSettings().isEmpty());

    // Opened again, the wizard shows the saved values, the apostrophe as typed.
    frmNewUser* again = OpenSetupWizard();
    EXPECT_EQ(again->findChild<QLineEdit*>(u"txtBreeder"_s)->text(), u"Ann O'Brien"_s);
    EXPECT_EQ(again->findChild<QLineEdit*>(u"txtGestation"_s)->text(), u"285"_s);
}

TEST_F(Wizard, ADayCountThatIsNoNumberIsRefusedAndNothingIsSaved)
{
    fillRequired();
    box<QLineEdit>(u"txtWean"_s)->setText(u"six weeks"_s);
    env.ui().clear();
    wizard->cmdSave_Click();
    ASSERT_FALSE(wizard.isNull());
    EXPECT_EQ(wizard->page(), 2);
    EXPECT_EQ(env.ui().messages(), QStringList({u"Wean offspring must be a whole number of days, not \"six weeks\"."_s}));
    EXPECT_EQ(storedRow().BreederName, u""_s);
    EXPECT_EQ(text(u"txtWean"_s), u"six weeks"_s);
}

TEST_F(Wizard, ANewSpeciesOverSavedTitlesGoesThroughClearCustomFields)
{
    fillRequired();
    typeAnimal(u"Rabbit"_s);
    wizard->cmdSave_Click();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    gDatabase.Execute(u"INSERT INTO tree (name, customField1) VALUES ('Bess', 'R-1001')"_s);

    wizard = OpenSetupWizard();
    env.ui().clear();
    env.ui().queueAnswer(Ui::Answer::Yes); // suggest settings
    env.ui().queueAnswer(Ui::Answer::No);  // clear the saved titles
    typeAnimal(u"Cow"_s);
    EXPECT_EQ(env.ui().messages().value(1),
              u"Are you sure you want to clear custom field names for Rabbit that you have saved previously?"_s);
    EXPECT_EQ(wizard->boxes().customName[0], u"Registry Number"_s);
    EXPECT_EQ(wizard->boxes().male, u"bull"_s);

    env.ui().clear();
    typeAnimal(u"Goat"_s);
    ASSERT_EQ(env.ui().messages().size(), 3);
    EXPECT_EQ(env.ui().messages()[2],
              u"This action will remove your custom field names and also permanently delete all previous custom "
              u"field information for all records in this database. \nAre you sure you want to proceed?"_s);
    EXPECT_EQ(titles(wizard->boxes()), QStringList({u"Ears"_s, u"Head"_s, u"Legs"_s, u"Under Colour"_s, u"Weight"_s,
                                                     u"Line"_s, u"Nutritional Problems"_s}));
    EXPECT_TRUE(storedRow().CustomName[0].isEmpty());
    Recordset rs = gDatabase.OpenRecordset(u"SELECT customField1 FROM tree WHERE name = 'Bess'"_s);
    ASSERT_FALSE(rs.Eof());
    EXPECT_TRUE(rs.Fields(0).isNull());
}

TEST(WizardPresets, EveryListedSpeciesHasARowAndTheClearRowEmptiesTheTitles)
{
    for (const QString& animal : WizardAnimals()) {
        WizardBoxes b;
        EXPECT_EQ(AssignAnimalPreset(animal, b, u"7"_s), PresetOutcome::Filled) << animal.toStdString();
        EXPECT_EQ(b.tag, u"7"_s);
    }
    WizardBoxes b;
    b.customName[0] = u"Ring"_s;
    b.animal = u"[Clear previous choice]"_s;
    AssignAnimalPreset(b.animal, b, u"0"_s);
    EXPECT_TRUE(titles(b).isEmpty());
    EXPECT_EQ(b.animal, u""_s);
}

TEST(WizardPresets, ResetAnimalPageFillsOnlyTheEmptyBoxes)
{
    WizardBoxes b;
    b.male = u"buck"_s;
    ResetAnimalPage(b);
    EXPECT_EQ(QStringList({b.animal, b.male, b.female, b.father, b.mother, b.gestation, b.nestBox, b.rebreed, b.wean,
                           b.tag}),
              QStringList({u"Animal"_s, u"buck"_s, u"female"_s, u"Father"_s, u"Mother"_s, u"71"_s, u"0"_s, u"0"_s,
                           u"0"_s, u"0"_s}));
}

} // namespace
