// SPDX-License-Identifier: GPL-3.0-or-later
// The add and edit form on a real data file, driven through its widgets: what a save writes, what it
// refuses and with which words, renames carried into every table and the pictures folder, quick-made
// parents, "add another", the close question and what the form asks of the main window.
#include "support/TestEnv.h"

#include "records/Animal.h"
#include "records/forms/RecordHost.h"
#include "records/forms/frmAdd.h"
#include "session/OpenDataFile.h"
#include "session/RecentList.h"
#include "session/globals.h"
#include "store/Connection.h"
#include "store/DataFile.h"

#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFocusEvent>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSet>
#include <memory>

namespace {

class FakeHost : public RecordHost {
public:
    QStringList calls;
    QString page = QStringLiteral("Individual");
    QSet<QString> available;

    void refillSearchList() override { calls << QStringLiteral("refill"); }
    void putFirstInSearchList(const QString& name) override { calls << QStringLiteral("first:") + name; }
    QString shownPageKey() const override { return page; }
    void SelectTab(const QString& key) override { calls << QStringLiteral("tab:") + key; }
    void RunTabProcess() override { calls << QStringLiteral("run"); }
    bool quickLinkAvailable(const QString& kind) const override { return available.contains(kind); }
    void quickLink(const QString& kind) override { calls << QStringLiteral("link:") + kind; }
};

class AddForm : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(CreateDataFile(QStringLiteral("Rabbits.cav"), QString()));
        ASSERT_TRUE(OpenDataFile(env.dataFolder() + QStringLiteral("Rabbits.cav")));
        gUser.Animal = QStringLiteral("Rabbit");
        gUser.Male = QStringLiteral("Buck");
        gUser.Female = QStringLiteral("Doe");
        gUser.Father = QStringLiteral("Sire");
        gUser.Mother = QStringLiteral("Dam");
        gUser.Country = QStringLiteral("Australia");
        gUser.CustomName = {};
        gUser.CustomName[0] = QStringLiteral("Ears");
        gUser.CustomName[7] = QStringLiteral("Line");
        gRecentNames.fill(QString());
        gAnimal = Animal();
        EditMode = false;
        env.ui().clear();
    }
    void TearDown() override
    {
        form.reset();
        CloseDatabase();
        gAnimal = Animal();
        gUser = User();
        gRecentNames.fill(QString());
        EditMode = false;
    }

    void open(bool edit, const QString& callerTab = QStringLiteral("Individual"))
    {
        EditMode = edit;
        form = std::make_unique<frmAdd>(&host, callerTab);
    }
    // Opens the edit form on a record, as the main window does for its current animal.
    void openOn(const QString& name)
    {
        QString n = name;
        gAnimal.SetCurrentAnimal(n);
        open(true);
    }

    template <class T = QWidget> T* w(const QString& name) const
    {
        T* widget = form->findChild<T*>(name);
        EXPECT_NE(widget, nullptr) << name.toStdString();
        return widget;
    }
    void type(const QString& name, const QString& text)
    {
        if (auto* box = form->findChild<QComboBox*>(name))
            box->setEditText(text);
        else
            w<QLineEdit>(name)->setText(text);
    }
    QString text(const QString& name) const
    {
        if (auto* box = form->findChild<QComboBox*>(name))
            return box->currentText();
        return w<QLineEdit>(name)->text();
    }
    void tick(const QString& name, bool on = true) { w<QCheckBox>(name)->setChecked(on); }
    // The least a new record needs.
    void fillNew(const QString& name, const QString& sex = QStringLiteral("Doe"))
    {
        type(QStringLiteral("txtName"), name);
        type(QStringLiteral("cboSex"), sex);
    }
    bool hidden(const QString& name) const { return w(name)->isHidden(); }

    static void exec(const QString& sql) { gDatabase.Execute(sql); }
    static QStringList rows(const QString& sql)
    {
        QStringList values;
        Recordset rs = gDatabase.OpenRecordset(sql);
        for (; !rs.Eof(); rs.MoveNext())
            values << (rs.Fields(0).isValid() ? rs.Fields(0).toString() : QStringLiteral("<null>"));
        return values;
    }
    QString picsFolder() const { return env.dataFolder() + QStringLiteral("my pics/"); }

    TestEnv env;
    FakeHost host;
    std::unique_ptr<frmAdd> form;
};

const QString kNumericMessage =
    QStringLiteral("Sorry you have a set of characters comprised only of numbers in the name.\n"
                   "You cannot have any of the characters   \\ / : ? < > | \" or a numeric value for the Rabbit's "
                   "name.\n"
                   "If you want to use just a number add the character  #  in front to make it non-numeric eg.  #1234");

// --- opening ---------------------------------------------------------------------------------------

TEST_F(AddForm, AddModeOpensBlankWithTheFilesWords)
{
    host.available = {QStringLiteral("Notes"), QStringLiteral("Photos")};
    open(false);
    EXPECT_EQ(form->windowTitle(), QStringLiteral("Add New Record"));
    EXPECT_TRUE(w<QRadioButton>(QStringLiteral("OptUpdate(0)"))->isChecked());
    EXPECT_TRUE(hidden(QStringLiteral("searchList")));
    EXPECT_FALSE(hidden(QStringLiteral("txtName")));
    EXPECT_TRUE(hidden(QStringLiteral("cmdDelete")));
    EXPECT_EQ(w<QLabel>(QStringLiteral("lblFather"))->text(), QStringLiteral("Sire:"));
    EXPECT_EQ(w<QLabel>(QStringLiteral("lblMother"))->text(), QStringLiteral("Dam:"));
    EXPECT_EQ(w<QLabel>(QStringLiteral("lblColour"))->text(), QStringLiteral("Colour:"));
    for (const char* box : {"cboColour", "cboBreed", "cboFather", "cboMother", "txtDOB"})
        EXPECT_EQ(text(QLatin1String(box)), QStringLiteral("Unknown")) << box;
    auto* sex = w<QComboBox>(QStringLiteral("cboSex"));
    EXPECT_EQ(sex->currentText(), QString());
    EXPECT_EQ(sex->count(), 3);
    EXPECT_EQ(sex->itemText(0), QStringLiteral("Buck"));
    EXPECT_EQ(sex->itemText(2), QStringLiteral("undefined"));

    // Titled custom fields show; the others, and the hint about them, do not.
    EXPECT_EQ(w<QLabel>(QStringLiteral("lblCustomName1"))->text(), QStringLiteral("Ears"));
    EXPECT_FALSE(hidden(QStringLiteral("cboCustomField1")));
    EXPECT_TRUE(hidden(QStringLiteral("cboCustomField2")));
    EXPECT_FALSE(hidden(QStringLiteral("cboCustomField8")));
    EXPECT_TRUE(hidden(QStringLiteral("lblCustomFieldInfo(0)")));
    EXPECT_TRUE(hidden(QStringLiteral("lblCustomFieldInfo(1)")));
    EXPECT_TRUE(hidden(QStringLiteral("txtDateSold")));
    EXPECT_TRUE(hidden(QStringLiteral("fmeEstimate")));

    EXPECT_TRUE(w<QPushButton>(QStringLiteral("lnkNotes"))->isEnabled());
    EXPECT_TRUE(w<QPushButton>(QStringLiteral("lnkPhotos"))->isEnabled());
    auto* weights = w<QPushButton>(QStringLiteral("lnkWeight"));
    EXPECT_FALSE(weights->isEnabled());
    EXPECT_EQ(weights->toolTip(), QStringLiteral("Not available yet"));
}

TEST_F(AddForm, HintAboutCustomFieldsWhenNoneIsTitled)
{
    gUser.CustomName = {};
    gUser.CustomName[2] = QStringLiteral("Weight");
    open(false);
    const QString hint = QStringLiteral("Did you know you can store more aspects of your Rabbit using fields of your "
                                        "own choice.\nGo to MY SETTINGS and enter up to twelve custom field names. "
                                        "You can then add information here.");
    EXPECT_FALSE(hidden(QStringLiteral("lblCustomFieldInfo(0)")));
    EXPECT_EQ(w<QLabel>(QStringLiteral("lblCustomFieldInfo(1)"))->text(), hint);
    EXPECT_FALSE(hidden(QStringLiteral("cboCustomField3")));
}

TEST_F(AddForm, EditModeShowsTheCurrentRecord)
{
    exec("INSERT INTO tree (name,sex,colour,breed,dob,ps,pd,tag,cage,sold,datesold,owner,breeder,leased,"
         "customField1,Prefix,callname) VALUES ('Clover','female','Grey','Rex',#03/15/2024#,'Oak','Fern','T7','4',"
         "-1,#06/01/2025#,-1,-1,0,'Lop','Ch','Clo')");
    openOn(QStringLiteral("Clover"));
    EXPECT_EQ(form->windowTitle(), QStringLiteral("Edit Record"));
    EXPECT_TRUE(w<QRadioButton>(QStringLiteral("OptUpdate(1)"))->isChecked());
    EXPECT_FALSE(hidden(QStringLiteral("searchList")));
    EXPECT_TRUE(hidden(QStringLiteral("txtName")));
    EXPECT_FALSE(hidden(QStringLiteral("cmdDelete")));
    EXPECT_EQ(form->currentOldName(), QStringLiteral("Clover"));
    EXPECT_EQ(text(QStringLiteral("searchList")), QStringLiteral("Clover"));
    EXPECT_EQ(text(QStringLiteral("cboSex")), QStringLiteral("Doe"));
    EXPECT_EQ(text(QStringLiteral("cboFather")), QStringLiteral("Oak"));
    EXPECT_EQ(text(QStringLiteral("txtDOB")), QStringLiteral("15/03/2024"));
    EXPECT_EQ(text(QStringLiteral("txtCage")), QStringLiteral("04"));
    EXPECT_EQ(text(QStringLiteral("cboCustomField1")), QStringLiteral("Lop"));
    EXPECT_EQ(text(QStringLiteral("txtDateSold")), QStringLiteral("01/06/2025"));
    // Sold and still marked as owned in the file: the form shows the file, not its own coupling.
    EXPECT_TRUE(w<QCheckBox>(QStringLiteral("chkSold"))->isChecked());
    EXPECT_TRUE(w<QCheckBox>(QStringLiteral("chkOwner"))->isChecked());
    EXPECT_FALSE(hidden(QStringLiteral("txtDateSold")));
    EXPECT_TRUE(hidden(QStringLiteral("txtDateDeceased")));
    EXPECT_FALSE(w<QLineEdit>(QStringLiteral("txtID"))->text().isEmpty());
    EXPECT_TRUE(form->recordSaved());

    // Nothing changed, nothing asked.
    form->reject();
    EXPECT_TRUE(env.ui().calls().isEmpty());
    EXPECT_EQ(host.calls, QStringList({"refill", "first:Clover"}));
    EXPECT_FALSE(EditMode);
}

// --- saving a new record -----------------------------------------------------------------------------

TEST_F(AddForm, NewRecordIsWritten)
{
    open(false);
    fillNew(QStringLiteral("Bramble"));
    type(QStringLiteral("cboColour"), QStringLiteral("Agouti"));
    type(QStringLiteral("cboBreed"), QStringLiteral("Rex"));
    type(QStringLiteral("txtDOB"), QStringLiteral("01/02/2025"));
    type(QStringLiteral("txtTag"), QStringLiteral("T1"));
    type(QStringLiteral("cboCustomField1"), QStringLiteral("Upright"));
    type(QStringLiteral("cboPrefix"), QStringLiteral("Ch"));
    tick(QStringLiteral("chkBreeder"));
    tick(QStringLiteral("chkOwner"));
    env.ui().queueAnswer(Ui::Answer::No);
    EXPECT_TRUE(form->SaveRecord(true));

    EXPECT_EQ(rows("SELECT name & '|' & sex & '|' & colour & '|' & breed & '|' & ps & '|' & tag & '|' & "
                   "customField1 & '|' & prefix FROM tree"),
              QStringList{"Bramble|female|Agouti|Rex|Unknown|T1|Upright|Ch"});
    EXPECT_EQ(rows("SELECT Year(dob) & '-' & Month(dob) & '-' & Day(dob) FROM tree"), QStringList{"2025-2-1"});
    EXPECT_EQ(rows("SELECT breeder & '|' & owner & '|' & sold FROM tree"), QStringList{"-1|-1|0"});
    ASSERT_EQ(env.ui().calls().size(), 1);
    EXPECT_EQ(env.ui().calls()[0].title, QStringLiteral("Add Record"));
    EXPECT_EQ(env.ui().calls()[0].text, QStringLiteral("Do you want to add another record with similar details?"));
    EXPECT_EQ(host.calls, QStringList({"refill", "refill", "first:Bramble"}));
    EXPECT_EQ(form->result(), QDialog::Accepted);
    EXPECT_EQ(gRecentNames[0], QStringLiteral("Bramble"));
}

TEST_F(AddForm, DigitsAloneAreRefusedAndAHashMakesThemAName)
{
    open(false);
    fillNew(QStringLiteral("1234"));
    EXPECT_FALSE(form->SaveRecord(true));
    ASSERT_EQ(env.ui().calls().size(), 1);
    EXPECT_EQ(env.ui().calls()[0].title, QStringLiteral("Incomplete record"));
    EXPECT_EQ(env.ui().calls()[0].icon, Ui::Icon::Exclamation);
    EXPECT_EQ(env.ui().calls()[0].text, kNumericMessage);
    EXPECT_TRUE(rows("SELECT name FROM tree").isEmpty());
    EXPECT_TRUE(host.calls.isEmpty()); // still open

    type(QStringLiteral("txtName"), QStringLiteral("#1234"));
    env.ui().queueAnswer(Ui::Answer::No);
    EXPECT_TRUE(form->SaveRecord(true));
    EXPECT_EQ(rows("SELECT name FROM tree"), QStringList{"#1234"});
}

TEST_F(AddForm, RefusalsNameTheirFault)
{
    open(false);
    fillNew(QStringLiteral("Fred/2"));
    form->SaveRecord(true);
    EXPECT_TRUE(env.ui().messages().last().startsWith(QStringLiteral("Sorry you have a / in the name.\n")));

    // Two faults at once give both messages, in order.
    type(QStringLiteral("txtName"), QString());
    type(QStringLiteral("txtDOB"), QStringLiteral("31/31/2020"));
    form->SaveRecord(true);
    EXPECT_EQ(env.ui().messages().last(),
              QStringLiteral("You must give your new Rabbit a name.\n"
                             "You must enter the date of birth in date format  - ( dd/mm/yyyy ) or leave it blank"));

    // Without a sex only that is said.
    type(QStringLiteral("cboSex"), QString());
    form->SaveRecord(true);
    EXPECT_EQ(env.ui().messages().last(), QStringLiteral("Please choose your animal's sex."));
    type(QStringLiteral("cboSex"), QStringLiteral("Female"));
    form->SaveRecord(true);
    EXPECT_EQ(env.ui().messages().last(), QStringLiteral("Please choose your animal's sex."));

    exec("INSERT INTO tree (name,sex) VALUES ('Clover','female')");
    type(QStringLiteral("txtName"), QStringLiteral("clover"));
    type(QStringLiteral("txtDOB"), QString());
    type(QStringLiteral("cboSex"), QStringLiteral("Doe"));
    form->SaveRecord(true);
    EXPECT_EQ(env.ui().messages().last(), QStringLiteral("A record already exists for this Rabbit"));
    EXPECT_EQ(rows("SELECT name FROM tree"), QStringList{"Clover"});
    EXPECT_TRUE(host.calls.isEmpty());
}

TEST_F(AddForm, UnknownDatesAreStoredAs1925)
{
    open(false);
    fillNew(QStringLiteral("Bramble"));
    tick(QStringLiteral("chkSold"));
    EXPECT_FALSE(hidden(QStringLiteral("txtDateSold")));
    type(QStringLiteral("txtDateSold"), QStringLiteral("Unknown"));
    env.ui().queueAnswer(Ui::Answer::No);
    ASSERT_TRUE(form->SaveRecord(true));
    EXPECT_EQ(rows("SELECT Year(dob) & '|' & Year(datesold) FROM tree"), QStringList{"1925|1925"});
    EXPECT_EQ(rows("SELECT Offspring FROM soldstock"), QStringList{"Bramble"});
}

TEST_F(AddForm, AddAnotherKeepsTheLikeness)
{
    open(false);
    fillNew(QStringLiteral("Kit One"), QStringLiteral("Buck"));
    type(QStringLiteral("cboBreed"), QStringLiteral("Rex"));
    type(QStringLiteral("cboColour"), QStringLiteral("Castor"));
    type(QStringLiteral("cboFather"), QStringLiteral("Oak"));
    type(QStringLiteral("cboMother"), QStringLiteral("Fern"));
    type(QStringLiteral("cboCustomField1"), QStringLiteral("Upright"));
    type(QStringLiteral("cboSuffix"), QStringLiteral("GC"));
    type(QStringLiteral("txtCallName"), QStringLiteral("One"));
    type(QStringLiteral("txtTag"), QStringLiteral("T1"));
    type(QStringLiteral("txtCage"), QStringLiteral("12"));
    type(QStringLiteral("txtDOB"), QStringLiteral("01/10/2026"));
    tick(QStringLiteral("chkBreeder"));
    env.ui().queueAnswer(Ui::Answer::Yes);
    ASSERT_TRUE(form->SaveRecord(true));

    for (const char* cleared : {"txtName", "txtCallName", "txtTag", "txtCage", "txtDOB", "searchList"})
        EXPECT_EQ(text(QLatin1String(cleared)), QString()) << cleared;
    EXPECT_EQ(text(QStringLiteral("cboBreed")), QStringLiteral("Rex"));
    EXPECT_EQ(text(QStringLiteral("cboColour")), QStringLiteral("Castor"));
    EXPECT_EQ(text(QStringLiteral("cboSex")), QStringLiteral("Buck"));
    EXPECT_EQ(text(QStringLiteral("cboFather")), QStringLiteral("Oak"));
    EXPECT_EQ(text(QStringLiteral("cboMother")), QStringLiteral("Fern"));
    EXPECT_EQ(text(QStringLiteral("cboCustomField1")), QStringLiteral("Upright"));
    EXPECT_EQ(text(QStringLiteral("cboSuffix")), QStringLiteral("GC"));
    EXPECT_TRUE(w<QCheckBox>(QStringLiteral("chkBreeder"))->isChecked());
    EXPECT_TRUE(form->recordSaved());
    EXPECT_EQ(host.calls, QStringList{"refill"}); // still open

    type(QStringLiteral("txtName"), QStringLiteral("Kit Two"));
    env.ui().queueAnswer(Ui::Answer::No);
    ASSERT_TRUE(form->SaveRecord(true));
    EXPECT_EQ(rows("SELECT name & '|' & breed & '|' & ps & '|' & pd & '|' & sex & '|' & suffix & '|' & "
                   "Year(dob) FROM tree ORDER BY name"),
              QStringList({"Kit One|Rex|Oak|Fern|male|GC|2026", "Kit Two|Rex|Oak|Fern|male|GC|1925"}));
    EXPECT_EQ(host.calls.last(), QStringLiteral("first:Kit Two"));
}

// --- renames -----------------------------------------------------------------------------------------

class RenameForm : public AddForm {
protected:
    void SetUp() override
    {
        AddForm::SetUp();
        exec("INSERT INTO tree (name,sex,breed) VALUES ('Old','male','Rex')");
        exec("INSERT INTO tree (name,sex,ps,pd) VALUES ('Kid','female','Old','Unknown')");
        exec("INSERT INTO weights (name,weight) VALUES ('Old','2')");
        exec("INSERT INTO Breeding (Boar,Sow) VALUES ('Old','Fern')");
        exec("INSERT INTO vaccinations (duedate,name,vaccination,done) VALUES (#12/25/2026#,'Old','RHD','N')");
        QDir().mkpath(picsFolder());
        QFile picture(picsFolder() + QStringLiteral("Old(0) [Best side].jpg"));
        ASSERT_TRUE(picture.open(QIODevice::WriteOnly));
        picture.write("jpeg");
    }
};

TEST_F(RenameForm, ARenameReachesEveryTableAndThePictures)
{
    openOn(QStringLiteral("Old"));
    type(QStringLiteral("searchList"), QStringLiteral("New"));
    env.ui().queueAnswer(Ui::Answer::Ok);
    ASSERT_TRUE(form->SaveRecord(true));

    ASSERT_EQ(env.ui().calls().size(), 1); // no "add another" in edit mode
    EXPECT_EQ(env.ui().calls()[0].title, QStringLiteral("Replace Record?"));
    EXPECT_EQ(env.ui().calls()[0].text, QStringLiteral("Are you sure you want to rename Old to New?"));
    EXPECT_EQ(rows("SELECT name FROM tree ORDER BY name"), QStringList({"Kid", "New"}));
    EXPECT_EQ(rows("SELECT breed FROM tree WHERE name = 'New'"), QStringList{"Rex"});
    EXPECT_EQ(rows("SELECT ps FROM tree WHERE name = 'Kid'"), QStringList{"New"});
    EXPECT_TRUE(QFile::exists(picsFolder() + QStringLiteral("New(0) [Best side].jpg")));
    EXPECT_FALSE(QFile::exists(picsFolder() + QStringLiteral("Old(0) [Best side].jpg")));
    EXPECT_EQ(host.calls, QStringList({"refill", "refill", "first:New"}));
    EXPECT_FALSE(EditMode);
}

TEST_F(RenameForm, CancelledRenameWritesNothing)
{
    openOn(QStringLiteral("Old"));
    type(QStringLiteral("searchList"), QStringLiteral("New"));
    env.ui().queueAnswer(Ui::Answer::Cancel);
    EXPECT_FALSE(form->SaveRecord(true));
    EXPECT_EQ(rows("SELECT name FROM tree ORDER BY name"), QStringList({"Kid", "Old"}));
    EXPECT_TRUE(host.calls.isEmpty());
}

TEST_F(RenameForm, RenamingOntoAnExistingNameMakesTwoRows)
{
    openOn(QStringLiteral("Old"));
    type(QStringLiteral("searchList"), QStringLiteral("Kid"));
    env.ui().queueAnswer(Ui::Answer::Ok);
    ASSERT_TRUE(form->SaveRecord(true));
    EXPECT_EQ(rows("SELECT name FROM tree ORDER BY name"), QStringList({"Kid", "Kid"}));
}

TEST_F(RenameForm, ASimilarRecordStartsWithNoneOfTheSourcesRows)
{
    openOn(QStringLiteral("Old"));
    form->OptUpdate_Click(0);
    EXPECT_EQ(form->windowTitle(), QStringLiteral("Add New Record"));
    EXPECT_FALSE(EditMode);
    EXPECT_TRUE(hidden(QStringLiteral("searchList")));
    EXPECT_EQ(text(QStringLiteral("txtName")), QString());
    EXPECT_EQ(text(QStringLiteral("cboBreed")), QStringLiteral("Rex")); // "similar to this one"

    type(QStringLiteral("txtName"), QStringLiteral("Copy"));
    env.ui().queueAnswer(Ui::Answer::No);
    ASSERT_TRUE(form->SaveRecord(true));
    EXPECT_EQ(rows("SELECT name FROM tree ORDER BY name"), QStringList({"Copy", "Kid", "Old"}));
    EXPECT_EQ(rows("SELECT breed FROM tree WHERE name = 'Copy'"), QStringList{"Rex"});
    EXPECT_EQ(rows("SELECT name FROM weights"), QStringList{"Old"});
    EXPECT_TRUE(QFile::exists(picsFolder() + QStringLiteral("Old(0) [Best side].jpg")));
}

TEST_F(RenameForm, ARenameThatFailsChangesNoRowAndNoPicture)
{
    // The row's own UPDATE fails after the other tables could have been renamed.
    sqlite3_exec(gDatabase.connection()->db(),
                 "CREATE TRIGGER tessorin_refuse BEFORE UPDATE OF name ON tree BEGIN SELECT RAISE(ABORT, 'disk gone'); END",
                 nullptr, nullptr, nullptr);
    openOn(QStringLiteral("Old"));
    type(QStringLiteral("searchList"), QStringLiteral("New"));
    env.ui().queueAnswer(Ui::Answer::Ok);
    EXPECT_FALSE(form->SaveRecord(true));
    EXPECT_EQ(env.ui().calls().last().title, QStringLiteral("Error creating record."));
    EXPECT_EQ(rows("SELECT name FROM tree ORDER BY name"), QStringList({"Kid", "Old"}));
    EXPECT_EQ(rows("SELECT ps FROM tree WHERE name = 'Kid'"), QStringList{"Old"});
    EXPECT_EQ(rows("SELECT name FROM weights"), QStringList{"Old"});
    EXPECT_EQ(rows("SELECT Boar FROM Breeding"), QStringList{"Old"});
    EXPECT_TRUE(QFile::exists(picsFolder() + QStringLiteral("Old(0) [Best side].jpg")));
}

TEST_F(RenameForm, SwitchingBackToEditShowsAllNames)
{
    openOn(QStringLiteral("Old"));
    form->OptUpdate_Click(0);
    form->OptUpdate_Click(1);
    EXPECT_TRUE(EditMode);
    EXPECT_EQ(form->windowTitle(), QStringLiteral("Edit Record"));
    auto* list = w<QComboBox>(QStringLiteral("searchList"));
    EXPECT_FALSE(list->isHidden());
    EXPECT_EQ(list->count(), 2);
    EXPECT_EQ(list->currentText(), QStringLiteral("Old"));
    EXPECT_EQ(w<QLabel>(QStringLiteral("lblTitle"))->text(), QStringLiteral("Old"));
}

// --- parents, lists and guards -------------------------------------------------------------------------

TEST_F(AddForm, QuickCreatedParentAndItsDuplicate)
{
    open(false);
    env.ui().queueInput(QStringLiteral("Thumper"));
    form->cmdMakeFather_Click();
    ASSERT_EQ(env.ui().calls().size(), 1);
    EXPECT_EQ(env.ui().calls()[0].title, QStringLiteral("Quick Create - Sire"));
    EXPECT_EQ(env.ui().calls()[0].text, QStringLiteral("You can create a Sire's record and fill in the details "
                                                       "later. \nPlease enter the Sire's name:"));
    EXPECT_EQ(rows("SELECT name & '|' & sex & '|' & colour & '|' & ps & '|' & pd FROM tree"),
              QStringList{"Thumper|male|Unknown|Unknown|Unknown"});
    EXPECT_EQ(rows("SELECT dob FROM tree"), QStringList{"<null>"});
    auto* father = w<QComboBox>(QStringLiteral("cboFather"));
    EXPECT_EQ(father->currentText(), QStringLiteral("Thumper"));
    EXPECT_NE(father->findText(QStringLiteral("Thumper")), -1);

    env.ui().queueInput(QStringLiteral("thumper"));
    form->cmdMakeMother_Click();
    EXPECT_EQ(env.ui().calls().last().title, QStringLiteral("Found Duplicate"));
    EXPECT_EQ(env.ui().calls().last().text,
              QStringLiteral("A record already exists for thumper, please choose it from the list."));
    EXPECT_EQ(rows("SELECT name FROM tree"), QStringList{"Thumper"});

    env.ui().clear();
    form->cmdMakeMother_Click(); // Cancel in the input box
    EXPECT_EQ(env.ui().calls().size(), 1);
    EXPECT_EQ(rows("SELECT name FROM tree"), QStringList{"Thumper"});
}

TEST_F(AddForm, ListsFillWhenDroppedDown)
{
    exec("INSERT INTO tree (name,sex,breed,owner,sold,deceased) VALUES ('Oak','male','Rex',-1,0,0)");
    exec("INSERT INTO tree (name,sex,breed,owner,sold,deceased) VALUES ('Ash','male','Lop',-1,-1,0)");
    exec("INSERT INTO tree (name,sex,breed,owner,sold,deceased) VALUES ('Fern','female','rex',-1,0,0)");
    open(false);
    auto* father = w<QComboBox>(QStringLiteral("cboFather"));
    EXPECT_EQ(father->count(), 0);
    form->DropDown(father);
    EXPECT_EQ(father->count(), 3);
    EXPECT_EQ(father->itemText(0), QStringLiteral("Unknown"));
    EXPECT_EQ(father->currentText(), QStringLiteral("Unknown"));
    tick(QStringLiteral("optFatherCStock"));
    form->DropDown(father);
    EXPECT_EQ(father->count(), 2);
    EXPECT_EQ(father->itemText(1), QStringLiteral("Oak"));

    auto* breed = w<QComboBox>(QStringLiteral("cboBreed"));
    form->DropDown(breed);
    EXPECT_EQ(breed->count(), 2); // "Rex" and "rex" are one
    EXPECT_EQ(breed->itemText(0), QStringLiteral("Lop"));
    EXPECT_TRUE(form->recordSaved());
}

TEST_F(AddForm, ParentAndSexBoxesRefuseTyping)
{
    open(false);
    auto* father = w<QComboBox>(QStringLiteral("cboFather"));
    QKeyEvent letter(QEvent::KeyPress, Qt::Key_B, Qt::NoModifier, QStringLiteral("b"));
    QCoreApplication::sendEvent(father, &letter);
    ASSERT_EQ(env.ui().calls().size(), 1);
    EXPECT_EQ(env.ui().calls()[0].title, QStringLiteral("Warning"));
    EXPECT_EQ(env.ui().calls()[0].text, QStringLiteral("You must not type names in this box - If a name isn't on "
                                                       "the list then create a parent record first"));
    EXPECT_EQ(father->currentText(), QStringLiteral("Unknown"));

    QKeyEvent backspace(QEvent::KeyPress, Qt::Key_Backspace, Qt::NoModifier);
    QCoreApplication::sendEvent(father, &backspace);
    QKeyEvent down(QEvent::KeyPress, Qt::Key_Down, Qt::NoModifier);
    QCoreApplication::sendEvent(w(QStringLiteral("cboMother")), &down);
    EXPECT_EQ(env.ui().calls().size(), 1);

    QKeyEvent m(QEvent::KeyPress, Qt::Key_M, Qt::NoModifier, QStringLiteral("m"));
    QCoreApplication::sendEvent(w(QStringLiteral("cboSex")), &m);
    EXPECT_EQ(env.ui().messages().last(),
              QStringLiteral("You must not type the sex in this box - choose a sex from the list"));
}

TEST_F(AddForm, DateBoxesStatusAndEstimate)
{
    open(false);
    QFocusEvent focus(QEvent::FocusIn);
    QCoreApplication::sendEvent(w(QStringLiteral("txtDOB")), &focus);
    EXPECT_EQ(text(QStringLiteral("txtDOB")), QString());
    EXPECT_TRUE(form->recordSaved());

    tick(QStringLiteral("chkOwner"));
    tick(QStringLiteral("chkSold"));
    EXPECT_FALSE(w<QCheckBox>(QStringLiteral("chkOwner"))->isChecked());
    EXPECT_FALSE(hidden(QStringLiteral("lblDateSold")));
    tick(QStringLiteral("chkSold"), false);
    EXPECT_FALSE(w<QCheckBox>(QStringLiteral("chkOwner"))->isChecked());
    EXPECT_TRUE(hidden(QStringLiteral("txtDateSold")));
    tick(QStringLiteral("chkDeceased"));
    EXPECT_FALSE(hidden(QStringLiteral("txtDateDeceased")));

    form->cmdEstimate_Click();
    EXPECT_FALSE(hidden(QStringLiteral("fmeEstimate")));
    type(QStringLiteral("txtAge(0)"), QStringLiteral("1"));
    EXPECT_EQ(text(QStringLiteral("txtDOB")), QStringLiteral("23/11/2025"));
    type(QStringLiteral("txtAge(2)"), QString());
    EXPECT_EQ(text(QStringLiteral("txtAge(2)")), QStringLiteral("0"));
    type(QStringLiteral("txtAge(0)"), QString());
    EXPECT_EQ(text(QStringLiteral("txtDOB")), QStringLiteral("23/11/2026"));
    // Ninety years overflow the day count: the box keeps what it had.
    type(QStringLiteral("txtAge(0)"), QStringLiteral("90"));
    EXPECT_EQ(text(QStringLiteral("txtDOB")), QStringLiteral("23/11/2026"));
    EXPECT_TRUE(env.ui().calls().isEmpty());
}

// --- closing -----------------------------------------------------------------------------------------

TEST_F(AddForm, CloseQuestion)
{
    open(false);
    type(QStringLiteral("txtName"), QStringLiteral("Bramble"));
    EXPECT_FALSE(form->recordSaved());

    // Yes saves; a refused save keeps the form open with what was typed.
    env.ui().queueAnswer(Ui::Answer::Yes);
    form->reject();
    ASSERT_EQ(env.ui().calls().size(), 2);
    EXPECT_EQ(env.ui().calls()[0].title, QStringLiteral("Save changes?"));
    EXPECT_EQ(env.ui().calls()[0].text, QStringLiteral("Do you want to save changes to this record?"));
    EXPECT_EQ(env.ui().calls()[0].buttons, Ui::Buttons::YesNo);
    EXPECT_EQ(env.ui().calls()[1].text, QStringLiteral("Please choose your animal's sex."));
    EXPECT_TRUE(host.calls.isEmpty());

    // Yes with a complete record saves and closes, without "add another".
    type(QStringLiteral("cboSex"), QStringLiteral("Doe"));
    env.ui().clear();
    env.ui().queueAnswer(Ui::Answer::Yes);
    form->reject();
    EXPECT_EQ(env.ui().calls().size(), 1);
    EXPECT_EQ(rows("SELECT name FROM tree"), QStringList{"Bramble"});
    EXPECT_EQ(form->result(), QDialog::Accepted);
    EXPECT_EQ(host.calls.last(), QStringLiteral("first:Bramble"));
}

TEST_F(AddForm, NoClosesWithoutSaving)
{
    gAnimal.name = QStringLiteral("Current");
    open(false, QStringLiteral("Births"));
    fillNew(QStringLiteral("Bramble"));
    env.ui().queueAnswer(Ui::Answer::No);
    form->reject();
    EXPECT_TRUE(rows("SELECT name FROM tree").isEmpty());
    EXPECT_EQ(form->result(), QDialog::Rejected);
    // The main list is refilled with the current animal first, and the Births page comes back.
    EXPECT_EQ(host.calls, QStringList({"refill", "first:Current", "tab:Births"}));
}

TEST_F(AddForm, OnTheFamilyTreeTheSubjectStays)
{
    exec("INSERT INTO tree (name,sex) VALUES ('Subject','male')");
    openOn(QStringLiteral("Subject"));
    host.page = QStringLiteral("Family Tree");
    form->OptUpdate_Click(0);
    fillNew(QStringLiteral("Its Sire"), QStringLiteral("Buck"));
    env.ui().queueAnswer(Ui::Answer::No);
    ASSERT_TRUE(form->SaveRecord(true));
    EXPECT_EQ(host.calls.last(), QStringLiteral("first:Subject"));
}

TEST_F(AddForm, QuickLinkSavesFirst)
{
    host.available = {QStringLiteral("Weight")};
    open(false);
    fillNew(QStringLiteral("Bramble"));
    env.ui().queueAnswer(Ui::Answer::Ok);
    form->lnkWeight_Click();
    ASSERT_GE(env.ui().calls().size(), 1);
    EXPECT_EQ(env.ui().calls()[0].title, QStringLiteral("Save Record"));
    EXPECT_EQ(env.ui().calls()[0].text, QStringLiteral("This record must be saved to the database before other "
                                                       "details can be added.\nSave this record?"));
    EXPECT_EQ(env.ui().calls().size(), 1); // saved without "add another"
    EXPECT_EQ(rows("SELECT name FROM tree"), QStringList{"Bramble"});
    EXPECT_EQ(host.calls.last(), QStringLiteral("link:Weight"));
}

TEST_F(AddForm, DeleteRemovesTheRecordAndCloses)
{
    exec("INSERT INTO tree (name,sex) VALUES ('Gone','male')");
    exec("INSERT INTO tree (name,sex) VALUES ('Stays','male')");
    openOn(QStringLiteral("Gone"));
    env.ui().queueAnswer(Ui::Answer::No);
    form->cmdDelete_Click();
    EXPECT_EQ(rows("SELECT name FROM tree ORDER BY name"), QStringList({"Gone", "Stays"}));
    EXPECT_TRUE(host.calls.isEmpty());

    env.ui().queueAnswer(Ui::Answer::Yes);
    form->cmdDelete_Click();
    EXPECT_EQ(env.ui().calls().last().title, QStringLiteral("Delete Record?"));
    EXPECT_EQ(env.ui().calls().last().text,
              QStringLiteral("Are you sure you want to permanently remove Gone from the database?"));
    EXPECT_EQ(rows("SELECT name FROM tree"), QStringList{"Stays"});
    EXPECT_EQ(host.calls, QStringList{"refill"});
}

} // namespace
