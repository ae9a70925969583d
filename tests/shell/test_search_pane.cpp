// SPDX-License-Identifier: GPL-3.0-or-later
// The search pane through its widgets, and the record commands of the main window that act on the
// animal picked in it.
#include "support/TestEnv.h"

#include "records/Animal.h"
#include "records/forms/SearchPane.h"
#include "session/OpenDataFile.h"
#include "base/ProgramSettings.h"
#include "session/RecentList.h"
#include "shell/frmTree.h"
#include "session/globals.h"
#include "store/DataFile.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMouseEvent>
#include <QPushButton>
#include <QRadioButton>
#include <QTimer>
#include <QWindow>
#include <QKeyEvent>
#include <QMenu>
#include <QToolButton>
#include <gtest/gtest.h>

// The platform's own mouse input, as the desktop delivers it: the application then knows which buttons
// are held, as it does for a real click.
Q_GUI_EXPORT void qt_handleMouseEvent(QWindow* window, const QPointF& local, const QPointF& global, Qt::MouseButtons state,
                                      Qt::MouseButton button, QEvent::Type type, Qt::KeyboardModifiers mods,
                                      int timestamp);

namespace {

// Presses or releases a mouse button at a point of a widget of a shown window.
void platformMouse(QWidget* widget, QPoint pos, Qt::MouseButton button, bool press)
{
    static int timestamp = 1000;
    timestamp += 500;
    QWindow* handle = widget->window()->windowHandle();
    const QPointF local = widget->mapTo(widget->window(), pos);
    qt_handleMouseEvent(handle, local, handle->mapToGlobal(local), press ? Qt::MouseButtons(button) : Qt::NoButton,
                        button, press ? QEvent::MouseButtonPress : QEvent::MouseButtonRelease, Qt::NoModifier, timestamp);
    QApplication::processEvents();
}

// Types text into a box key by key, as the keyboard does.
void type(QWidget* box, const QString& text)
{
    for (const QChar c : text) {
        QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, QString(c));
        QApplication::sendEvent(box, &press);
        QKeyEvent release(QEvent::KeyRelease, 0, Qt::NoModifier, QString(c));
        QApplication::sendEvent(box, &release);
    }
}

class SearchPaneTest : public EnvTest {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(CreateDataFile(QStringLiteral("Rabbits.cav"), env.dataFolder()));
        ASSERT_TRUE(OpenDataFile(env.dataFolder() + QStringLiteral("Rabbits.cav")));
        gUser.Animal = QStringLiteral("Rabbit");
        // name, breed, owner, sold, deceased
        const char* rows[][5] = {
            {"Amber", "Rex", "-1", "0", "0"},   {"Basil", "Dutch", "-1", "0", "0"}, {"Bramble", "Rex", "-1", "0", "0"},
            {"Clover", "Lop", "-1", "-1", "0"}, {"Dill", "Rex", "0", "0", "0"},     {"Elm", "Dutch", "-1", "0", "-1"},
        };
        for (const auto& r : rows) {
            gDatabase.Execute(QStringLiteral("INSERT INTO tree (name, sex, breed, owner, sold, deceased, breeder, leased, "
                                             "prefix, suffix) VALUES ('%1', 'female', '%2', %3, %4, %5, 0, 0, '', '')")
                                  .arg(QString::fromLatin1(r[0]), QString::fromLatin1(r[1]), QString::fromLatin1(r[2]),
                                       QString::fromLatin1(r[3]), QString::fromLatin1(r[4])));
        }
        // Each test starts with the pane as a first run shows it: pinned, with the search list.
        DeleteSetting(QStringLiteral("Options"), QStringLiteral("Search Preference"));
        DeleteSetting(QStringLiteral("Options"), QStringLiteral("Search Pane Pinned"));
        env.ui().clear();
    }

    ~SearchPaneTest() override
    {
        CloseDatabase();
        gUser = User();
        gAnimal = Animal();
        gRecentNames.fill(QString());
        gFormsLoaded = false;
    }

    template <typename T>
    static T* child(QWidget* w, const QString& name)
    {
        T* found = w->findChild<T*>(name);
        EXPECT_NE(found, nullptr) << name.toStdString();
        return found;
    }

    static QStringList rows(QListWidget* list)
    {
        QStringList out;
        for (int i = 0; i < list->count(); ++i)
            out << list->item(i)->text();
        return out;
    }

    static void click(QWidget* w)
    {
        QMouseEvent release(QEvent::MouseButtonRelease, QPointF(2, 2), w->mapToGlobal(QPointF(2, 2)), Qt::LeftButton,
                            Qt::NoButton, Qt::NoModifier);
        QApplication::sendEvent(w, &release);
    }

    static void choose(QComboBox* box, const QString& text)
    {
        const int index = box->findText(text);
        ASSERT_GE(index, 0) << text.toStdString();
        box->setCurrentIndex(index);
        emit box->activated(index);
    }
};

} // namespace

TEST_F(SearchPaneTest, TheWindowOpensOnTheCurrentStockAndFiltersByStatusAndValue)
{
    frmTree window;
    auto* list = child<QListWidget>(&window, QStringLiteral("searchList"));
    auto* results = child<QLabel>(&window, QStringLiteral("lblResultsFound"));
    EXPECT_EQ(rows(list), QStringList({"Amber", "Basil", "Bramble"}));
    EXPECT_EQ(child<QComboBox>(&window, QStringLiteral("cboSearch"))->currentText(), QStringLiteral("Status"));
    EXPECT_EQ(child<QComboBox>(&window, QStringLiteral("cboBreed"))->currentText(), QStringLiteral("My Current Stock"));
    EXPECT_EQ(results->text(), QStringLiteral("3 results. Click to view.\nDouble click to edit. Right click for options."));
    EXPECT_TRUE(child<QCheckBox>(&window, QStringLiteral("optCurrentStock"))->isHidden());

    auto* value = child<QComboBox>(&window, QStringLiteral("cboBreed"));
    choose(value, QStringLiteral("All Records"));
    EXPECT_EQ(rows(list), QStringList({"Amber", "Basil", "Bramble", "Clover", "Dill", "Elm"}));
    choose(value, QStringLiteral("Sold Stock"));
    EXPECT_EQ(rows(list), QStringList({"Clover"}));
    EXPECT_FALSE(child<QCheckBox>(&window, QStringLiteral("optCurrentStock"))->isHidden());
    EXPECT_EQ(results->text(), QStringLiteral("1 result. Click to view.\nDouble click to edit. Right click for options."));

    // A criterion gives its values; a value picks the rows; the filter narrows to the stock.
    choose(child<QComboBox>(&window, QStringLiteral("cboSearch")), QStringLiteral("Breed"));
    EXPECT_EQ(value->currentText(), QStringLiteral("Click to select  > >"));
    choose(value, QStringLiteral("Rex"));
    EXPECT_EQ(rows(list), QStringList({"Amber", "Bramble", "Dill"}));
    child<QCheckBox>(&window, QStringLiteral("optCurrentStock"))->click();
    EXPECT_EQ(rows(list), QStringList({"Amber", "Bramble"}));
    EXPECT_EQ(child<QLabel>(&window, QStringLiteral("lblSubjectAnimal"))->text(),
              QStringLiteral("Search Result: 2 records found where Breed is \"Rex\" (list my current stock)"));

    // The second pair: "contains" text.
    choose(child<QComboBox>(&window, QStringLiteral("cboSearch2")), QStringLiteral("Name"));
    child<QRadioButton>(&window, QStringLiteral("optContains(1)"))->setChecked(true);
    child<QComboBox>(&window, QStringLiteral("cboBreed2"))->setEditText(QStringLiteral("mb"));
    child<QPushButton>(&window, QStringLiteral("cmdAdvanced"))->click();
    EXPECT_EQ(rows(list), QStringList({"Amber", "Bramble"}));
    child<QComboBox>(&window, QStringLiteral("cboBreed2"))->setEditText(QStringLiteral("ble"));
    child<QPushButton>(&window, QStringLiteral("cmdAdvanced"))->click();
    EXPECT_EQ(rows(list), QStringList({"Bramble"}));

    // Reset brings the first search back.
    child<QPushButton>(&window, QStringLiteral("cmdReset"))->click();
    EXPECT_EQ(rows(list), QStringList({"Amber", "Basil", "Bramble"}));
    EXPECT_EQ(child<QComboBox>(&window, QStringLiteral("cboSearch2"))->currentText(), QString());
    EXPECT_TRUE(child<QRadioButton>(&window, QStringLiteral("optContains(0)"))->isChecked());
}

TEST_F(SearchPaneTest, AdvancedSearchWithoutASecondValueSaysWhatIsMissing)
{
    frmTree window;
    child<QPushButton>(&window, QStringLiteral("cmdAdvanced"))->click();
    ASSERT_EQ(env.ui().calls().size(), 1);
    EXPECT_EQ(env.ui().calls()[0].title, QStringLiteral("Missing search criteria"));
    EXPECT_EQ(rows(child<QListWidget>(&window, QStringLiteral("searchList"))), QStringList({"Amber", "Basil", "Bramble"}));
}

TEST_F(SearchPaneTest, TheLetterBarShowsTheTailAndSaysWhenNoNameStartsWithTheLetter)
{
    frmTree window;
    auto* list = child<QListWidget>(&window, QStringLiteral("searchList"));
    auto* results = child<QLabel>(&window, QStringLiteral("lblResultsFound"));
    ASSERT_EQ(child<QLabel>(&window, QStringLiteral("lblLetter(0)"))->text(), QStringLiteral("#"));
    ASSERT_EQ(child<QLabel>(&window, QStringLiteral("lblLetter(26)"))->text(), QStringLiteral("Z"));

    click(child<QLabel>(&window, QStringLiteral("lblLetter(2)"))); // B
    EXPECT_EQ(rows(list), QStringList({"Basil", "Bramble"}));
    EXPECT_EQ(results->text(), QStringLiteral("Displaying from B onwards.\nClick # to view full list"));

    click(child<QLabel>(&window, QStringLiteral("lblLetter(26)"))); // Z
    EXPECT_EQ(rows(list), QStringList({"Amber", "Basil", "Bramble"}));
    EXPECT_EQ(results->text(), QStringLiteral("No name starts with Z."));

    click(child<QLabel>(&window, QStringLiteral("lblLetter(0)")));
    EXPECT_EQ(rows(list), QStringList({"Amber", "Basil", "Bramble"}));
    EXPECT_EQ(results->text(), QStringLiteral("3 results. Click to view.\nDouble click to edit. Right click for options."));

    // Pointing at a letter highlights it alone and names it in the tip.
    QEvent enter(QEvent::Enter);
    QApplication::sendEvent(child<QLabel>(&window, QStringLiteral("lblLetter(3)")), &enter);
    EXPECT_EQ(child<QLabel>(&window, QStringLiteral("lblLetter(3)"))->toolTip(), QStringLiteral("Go to C"));
    EXPECT_NE(child<QLabel>(&window, QStringLiteral("lblLetter(3)"))->styleSheet(),
              child<QLabel>(&window, QStringLiteral("lblLetter(4)"))->styleSheet());
}

TEST_F(SearchPaneTest, APickMakesTheAnimalCurrentAndEntersTheRecentList)
{
    frmTree window;
    auto* list = child<QListWidget>(&window, QStringLiteral("searchList"));
    list->setCurrentRow(1);
    EXPECT_EQ(gAnimal.name, QStringLiteral("Basil"));
    EXPECT_EQ(gRecentNames[0], QStringLiteral("Basil"));
    EXPECT_EQ(child<QLabel>(&window, QStringLiteral("lblTitle"))->text(), QStringLiteral("Basil"));
    EXPECT_EQ(rows(child<QListWidget>(&window, QStringLiteral("lstRecent"))), QStringList({"Basil"}));

    // A recent name whose record went away is offered for removal.
    list->setCurrentRow(0);
    AddRecent(QStringLiteral("Gone"));
    ShowRecentList();
    gDatabase.Execute(QStringLiteral("DELETE * FROM tree WHERE name = 'Gone'"));
    env.ui().queueAnswer(Ui::Answer::Yes);
    auto* recent = child<QListWidget>(&window, QStringLiteral("lstRecent"));
    recent->setCurrentRow(0);
    ASSERT_EQ(env.ui().calls().size(), 1);
    EXPECT_EQ(env.ui().calls()[0].title, QStringLiteral("No record found"));
    EXPECT_EQ(rows(recent), QStringList({"Amber", "Basil"}));
    EXPECT_EQ(gAnimal.name, QStringLiteral("Amber"));
}

TEST_F(SearchPaneTest, TheRecentSwapAndThePinAreRememberedForTheNextWindow)
{
    {
        frmTree window;
        window.show();
        auto* swap = child<QLabel>(&window, QStringLiteral("lblRecent"));
        EXPECT_EQ(swap->text(), QStringLiteral("Show Recent"));
        click(swap);
        EXPECT_EQ(swap->text(), QStringLiteral("Show Search"));
        EXPECT_EQ(child<QLabel>(&window, QStringLiteral("lblSearch"))->text(), QStringLiteral("Recent"));
        EXPECT_TRUE(child<QListWidget>(&window, QStringLiteral("lstRecent"))->isVisible());
        EXPECT_EQ(GetSetting(QStringLiteral("Options"), QStringLiteral("Search Preference")), QStringLiteral("Recent"));

        auto* pin = child<QToolButton>(&window, QStringLiteral("imgPin"));
        EXPECT_EQ(pin->toolTip(), QStringLiteral("Auto-hide search pane"));
        pin->click();
        EXPECT_EQ(pin->toolTip(), QStringLiteral("Keep search pane visible"));
        window.Unload();
    }
    frmTree second;
    second.show();
    EXPECT_EQ(child<QLabel>(&second, QStringLiteral("lblRecent"))->text(), QStringLiteral("Show Search"));
    // Not pinned: the pane waits behind its button until pointed at.
    EXPECT_FALSE(second.searchShown());
    EXPECT_TRUE(child<QPushButton>(&second, QStringLiteral("cmdSearchBtn"))->isVisible());
    QEvent enter(QEvent::Enter);
    QApplication::sendEvent(child<QPushButton>(&second, QStringLiteral("cmdSearchBtn")), &enter);
    EXPECT_TRUE(second.searchShown());
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(second.searchPane(), &leave);
    second.tmrSearchPane_Timer();
    EXPECT_FALSE(second.searchShown());
    // The search menu entry brings it back with the search list.
    second.findChild<QAction*>(QStringLiteral("mnuSearch"))->trigger();
    EXPECT_TRUE(second.searchShown());
    EXPECT_EQ(child<QLabel>(&second, QStringLiteral("lblRecent"))->text(), QStringLiteral("Show Recent"));
    second.Unload();
}

TEST_F(SearchPaneTest, ANarrowWindowKeepsTheSearchPaneUsable)
{
    frmTree window;
    window.show();
    window.resize(640, 500);
    QApplication::processEvents();
    EXPECT_GE(window.searchPane()->width(), 230);
    window.resize(1600, 900);
    QApplication::processEvents();
    EXPECT_LE(window.searchPane()->width(), 320);
    window.Unload();
}

TEST_F(SearchPaneTest, DeleteAsksThenRemovesTheRecordAndPicksTheNextInItsPlace)
{
    frmTree window;
    auto* list = child<QListWidget>(&window, QStringLiteral("searchList"));
    list->setCurrentRow(1);
    ASSERT_EQ(gAnimal.name, QStringLiteral("Basil"));

    env.ui().queueAnswer(Ui::Answer::No);
    window.findChild<QAction*>(QStringLiteral("mnuDelete"))->trigger();
    ASSERT_EQ(env.ui().calls().size(), 1);
    EXPECT_EQ(env.ui().calls()[0].title, QStringLiteral("Delete Record?"));
    EXPECT_EQ(env.ui().calls()[0].text, QStringLiteral("Are you sure you want to permanently remove Basil from the database?"));
    EXPECT_EQ(rows(list).size(), 3);

    env.ui().clear();
    env.ui().queueAnswer(Ui::Answer::Yes);
    window.findChild<QAction*>(QStringLiteral("mnuDeleteRecord"))->trigger();
    EXPECT_EQ(rows(list), QStringList({"Amber", "Bramble"}));
    EXPECT_TRUE(gDatabase.OpenRecordset(QStringLiteral("SELECT * FROM tree WHERE name = 'Basil'")).Eof());
    EXPECT_EQ(gAnimal.name, QStringLiteral("Bramble"));
    EXPECT_EQ(list->currentRow(), 1);
}

TEST_F(SearchPaneTest, TheWindowOpensOnTheAnimalVisitedLastOrTheFirstOfTheList)
{
    {
        frmTree window;
        EXPECT_EQ(gAnimal.name, QStringLiteral("Amber"));
        EXPECT_EQ(child<QLabel>(&window, QStringLiteral("lblBoldTitle"))->text(), QStringLiteral("Amber"));
        EXPECT_TRUE(gRecentNames[0].isEmpty()); // opening is no visit
        window.Unload();
    }
    AddRecent(QStringLiteral("Bramble"));
    WriteRecentFile();
    frmTree second;
    EXPECT_EQ(gAnimal.name, QStringLiteral("Bramble"));
    EXPECT_EQ(child<QListWidget>(&second, QStringLiteral("searchList"))->currentRow(), 2);
    second.Unload();
}

TEST_F(SearchPaneTest, RecordCommandsWithoutACurrentAnimalSaySo)
{
    gDatabase.Execute(QStringLiteral("DELETE * FROM tree"));
    frmTree window;
    window.findChild<QAction*>(QStringLiteral("mnuEdit"))->trigger();
    window.findChild<QAction*>(QStringLiteral("mnuDelete"))->trigger();
    ASSERT_EQ(env.ui().calls().size(), 2);
    EXPECT_EQ(env.ui().calls()[0].title, QStringLiteral("Error"));
    EXPECT_EQ(env.ui().calls()[0].text, QStringLiteral("Please select a record from the Search list to edit."));
    EXPECT_EQ(env.ui().calls()[1].text, QStringLiteral("Please select a record from the Search list to delete."));
}

TEST_F(SearchPaneTest, SelectTabEntersThePageAfreshEvenWhenItIsOnTop)
{
    frmTree window;
    child<QListWidget>(&window, QStringLiteral("searchList"))->setCurrentRow(0);
    auto* title = child<QLabel>(&window, QStringLiteral("lblBoldTitle"));
    title->setText(QStringLiteral("stale"));
    window.SelectTab(QStringLiteral("Individual"));
    EXPECT_EQ(title->text(), QStringLiteral("Amber"));
}

TEST_F(SearchPaneTest, AnEditThroughTheWindowRenamesAndPutsTheNewNameFirst)
{
    frmTree window;
    auto* list = child<QListWidget>(&window, QStringLiteral("searchList"));
    list->setCurrentRow(2);
    ASSERT_EQ(gAnimal.name, QStringLiteral("Bramble"));
    gDatabase.Execute(QStringLiteral("INSERT INTO weights (name, weight) VALUES ('Bramble', 2.5)"));

    env.ui().queueAnswer(Ui::Answer::Ok); // "Replace Record?"
    QTimer::singleShot(0, [] {
        QWidget* form = QApplication::activeModalWidget();
        ASSERT_NE(form, nullptr);
        EXPECT_EQ(form->windowTitle(), QStringLiteral("Edit Record"));
        form->findChild<QComboBox*>(QStringLiteral("searchList"))->setEditText(QStringLiteral("Briar"));
        form->findChild<QPushButton*>(QStringLiteral("cmdSave"))->click();
    });
    window.findChild<QAction*>(QStringLiteral("mnuEdit"))->trigger();

    EXPECT_EQ(env.ui().calls().value(0).title, QStringLiteral("Replace Record?"));
    EXPECT_EQ(rows(list).value(0), QStringLiteral("Briar"));
    EXPECT_EQ(gAnimal.name, QStringLiteral("Briar"));
    EXPECT_EQ(child<QLabel>(&window, QStringLiteral("lblTitle"))->text(), QStringLiteral("Briar"));
    EXPECT_FALSE(gDatabase.OpenRecordset(QStringLiteral("SELECT * FROM weights WHERE name = 'Briar'")).Eof());
    EXPECT_TRUE(gDatabase.OpenRecordset(QStringLiteral("SELECT * FROM tree WHERE name = 'Bramble'")).Eof());
    EXPECT_FALSE(EditMode);
}

TEST_F(SearchPaneTest, AddSimilarStartsFromTheCurrentAnimalAndLeavesItsRecordsAlone)
{
    frmTree window;
    child<QListWidget>(&window, QStringLiteral("searchList"))->setCurrentRow(0);
    ASSERT_EQ(gAnimal.name, QStringLiteral("Amber"));
    gDatabase.Execute(QStringLiteral("INSERT INTO weights (name, weight) VALUES ('Amber', 2.5)"));

    env.ui().queueAnswer(Ui::Answer::No); // no other record
    QTimer::singleShot(0, [] {
        QWidget* form = QApplication::activeModalWidget();
        ASSERT_NE(form, nullptr);
        EXPECT_EQ(form->windowTitle(), QStringLiteral("Add New Record"));
        EXPECT_EQ(form->findChild<QComboBox*>(QStringLiteral("cboBreed"))->currentText(), QStringLiteral("Rex"));
        EXPECT_EQ(form->findChild<QLineEdit*>(QStringLiteral("txtName"))->text(), QString());
        form->findChild<QLineEdit*>(QStringLiteral("txtName"))->setText(QStringLiteral("Amberlyn"));
        form->findChild<QPushButton*>(QStringLiteral("cmdSave"))->click();
    });
    window.findChild<QAction*>(QStringLiteral("mnuSimilar"))->trigger();

    Recordset rs = gDatabase.OpenRecordset(QStringLiteral("SELECT breed FROM tree WHERE name = 'Amberlyn'"));
    ASSERT_FALSE(rs.Eof());
    EXPECT_EQ(rs.Fields(0).toString(), QStringLiteral("Rex"));
    EXPECT_FALSE(gDatabase.OpenRecordset(QStringLiteral("SELECT * FROM weights WHERE name = 'Amber'")).Eof());
    EXPECT_EQ(gAnimal.name, QStringLiteral("Amberlyn"));
}

TEST_F(SearchPaneTest, TheRecordPageEndsWithTheCoefficientAndTheGeneticsPagesFollowThePick)
{
    gDatabase.Execute(QStringLiteral("UPDATE tree SET ps = 'Dill', pd = 'Amber' WHERE name = 'Basil'"));
    frmTree window;
    EXPECT_TRUE(child<QLabel>(&window, QStringLiteral("lblDetails"))->text().endsWith(QStringLiteral("\nCOI: 0%")));

    window.SelectTab(QStringLiteral("Descendants"));
    EXPECT_EQ(child<QLabel>(&window, QStringLiteral("lblTitle"))->text(), QStringLiteral("Amber - Descendants"));
    auto* generation1 = child<QListWidget>(&window, QStringLiteral("lstDescendants(1)"));
    ASSERT_EQ(generation1->count(), 1);
    EXPECT_TRUE(generation1->item(0)->text().contains(QStringLiteral("Basil")));

    child<QListWidget>(&window, QStringLiteral("searchList"))->setCurrentRow(1);
    window.SelectTab(QStringLiteral("Family Tree"));
    EXPECT_EQ(child<QLabel>(&window, QStringLiteral("lblTitle"))->text(), QStringLiteral("Basil - Family tree"));
    QStringList shown;
    for (QLabel* box : window.findChildren<QLabel*>()) {
        if (box->objectName() == QLatin1String("lblCavy(1)") || box->objectName() == QLatin1String("lblCavy(2)"))
            shown << box->text().trimmed();
    }
    EXPECT_TRUE(shown.join(QLatin1Char(' ')).contains(QStringLiteral("Dill"))) << shown.join(QLatin1Char('|')).toStdString();
    EXPECT_TRUE(shown.join(QLatin1Char(' ')).contains(QStringLiteral("Amber")));
}

TEST_F(SearchPaneTest, ARightClickMakesTheRowCurrentBeforeItsOptionsAct)
{
    frmTree window;
    window.show();
    QApplication::processEvents();
    auto* list = child<QListWidget>(&window, QStringLiteral("searchList"));
    list->setCurrentRow(0);
    ASSERT_EQ(gAnimal.name, QStringLiteral("Amber"));

    const QPoint onBramble = list->visualItemRect(list->item(2)).center();
    platformMouse(list->viewport(), onBramble, Qt::RightButton, true);
    EXPECT_EQ(gAnimal.name, QStringLiteral("Bramble"));
    EXPECT_EQ(child<QLabel>(&window, QStringLiteral("lblTitle"))->text(), QStringLiteral("Bramble"));
    auto* options = child<QMenu>(&window, QStringLiteral("mnuOptions"));
    EXPECT_TRUE(options->isVisible());

    env.ui().queueAnswer(Ui::Answer::Yes);
    child<QAction>(&window, QStringLiteral("mnuListDelete"))->trigger();
    options->close();
    platformMouse(list->viewport(), onBramble, Qt::RightButton, false);

    ASSERT_EQ(env.ui().calls().size(), 1);
    EXPECT_EQ(env.ui().calls()[0].text, QStringLiteral("Are you sure you want to permanently remove Bramble from the database?"));
    EXPECT_EQ(rows(list), QStringList({"Amber", "Basil"}));
    EXPECT_FALSE(gDatabase.OpenRecordset(QStringLiteral("SELECT * FROM tree WHERE name = 'Amber'")).Eof());
    window.Unload();
}

TEST_F(SearchPaneTest, TypedValuesAreSearchedAsTypedAndPickedOnesWithAnApostropheFindTheirRow)
{
    gDatabase.Execute(QStringLiteral("INSERT INTO tree (name, sex, breed, owner, sold, deceased, breeder, leased, prefix, "
                                     "suffix) VALUES ('O$Brien', 'male', 'Rex', -1, 0, 0, 0, 0, '', '')"));
    frmTree window;
    window.show();
    QApplication::setActiveWindow(&window);
    auto* list = child<QListWidget>(&window, QStringLiteral("searchList"));
    auto* count = child<QLabel>(&window, QStringLiteral("lblSubjectAnimal"));

    // "B" typed in the "contains" box stays "B": every name holding a b, not the first name the list offers.
    choose(child<QComboBox>(&window, QStringLiteral("cboSearch2")), QStringLiteral("Name"));
    child<QRadioButton>(&window, QStringLiteral("optContains(1)"))->setChecked(true);
    auto* value2 = child<QComboBox>(&window, QStringLiteral("cboBreed2"));
    value2->setEditText(QString());
    value2->lineEdit()->setFocus();
    type(value2->lineEdit(), QStringLiteral("B"));
    EXPECT_EQ(value2->currentText(), QStringLiteral("B"));
    QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
    QApplication::sendEvent(value2->lineEdit(), &enter);
    EXPECT_EQ(rows(list), QStringList({"Amber", "Basil", "Bramble", "O'Brien"}));
    EXPECT_EQ(count->text(), QStringLiteral("Search Result: 4 records found where Status is \"My Current Stock\" and "
                                            "Name contains \"B\""));

    // A name with an apostrophe picked from the value list.
    child<QPushButton>(&window, QStringLiteral("cmdReset"))->click();
    choose(child<QComboBox>(&window, QStringLiteral("cboSearch")), QStringLiteral("Name"));
    auto* value1 = child<QComboBox>(&window, QStringLiteral("cboBreed"));
    choose(value1, QStringLiteral("O'Brien"));
    EXPECT_EQ(rows(list), QStringList({"O'Brien"}));
    EXPECT_EQ(count->text(), QStringLiteral("Search Result: 1 records found where Name is \"O'Brien\" (list all records)"));
    EXPECT_EQ(TestEnv::readText(env.settingsFolder() + QStringLiteral("Errors.txt")), QString());
    window.Unload();
}

TEST_F(SearchPaneTest, ShowRecentShowsTheNamesAndLeavesTheCurrentAnimalAlone)
{
    frmTree window;
    window.show();
    QApplication::setActiveWindow(&window);
    QApplication::processEvents();
    auto* list = child<QListWidget>(&window, QStringLiteral("searchList"));
    for (int row : {1, 2, 1}) // Basil, Bramble, then Basil again, which keeps its place below Bramble
        list->setCurrentRow(row);
    ASSERT_EQ(gAnimal.name, QStringLiteral("Basil"));
    list->setFocus();
    QApplication::processEvents();
    ASSERT_TRUE(list->hasFocus());

    click(child<QLabel>(&window, QStringLiteral("lblRecent")));
    auto* recent = child<QListWidget>(&window, QStringLiteral("lstRecent"));
    EXPECT_TRUE(recent->isVisible());
    EXPECT_EQ(rows(recent), QStringList({"Bramble", "Basil"}));
    recent->setFocus(Qt::TabFocusReason);
    QApplication::processEvents();
    EXPECT_EQ(gAnimal.name, QStringLiteral("Basil"));
    EXPECT_EQ(child<QLabel>(&window, QStringLiteral("lblTitle"))->text(), QStringLiteral("Basil"));

    // Only a choice of the user's changes it.
    emit recent->itemClicked(recent->item(0));
    EXPECT_EQ(gAnimal.name, QStringLiteral("Bramble"));
    click(child<QLabel>(&window, QStringLiteral("lblRecent")));
    window.Unload();
}

TEST_F(SearchPaneTest, AfterADeleteTheNextAnimalOfTheListBecomesCurrentWhereverTheDeletedOneWasPicked)
{
    frmTree window;
    auto* list = child<QListWidget>(&window, QStringLiteral("searchList"));
    list->setCurrentRow(1); // Basil enters the recent list
    list->setCurrentRow(0);
    child<QListWidget>(&window, QStringLiteral("lstRecent"))->setCurrentRow(1);
    ASSERT_EQ(gAnimal.name, QStringLiteral("Basil"));
    ASSERT_EQ(list->currentRow(), 0);

    env.ui().queueAnswer(Ui::Answer::Yes);
    window.findChild<QAction*>(QStringLiteral("mnuDelete"))->trigger();
    EXPECT_EQ(rows(list), QStringList({"Amber", "Bramble"}));
    EXPECT_EQ(gAnimal.name, QStringLiteral("Bramble"));
    EXPECT_EQ(list->currentRow(), 1);
}

TEST_F(SearchPaneTest, TheWindowFitsAnEightHundredBySixHundredScreenWithThePaneWhole)
{
    frmTree window;
    window.show();
    // A title bar and the desktop's panel take some of the 600 lines.
    EXPECT_LE(window.minimumSizeHint().width(), 800);
    EXPECT_LE(window.minimumSizeHint().height(), 540);
    window.setWindowState(Qt::WindowNoState);
    window.resize(800, 540);
    QApplication::processEvents();
    ASSERT_EQ(window.size(), QSize(800, 540));
    for (const char* name : {"imgPin", "lblRecent", "cmdReset", "cmdAdvanced", "cboBreed", "searchList", "lblLetter(26)"}) {
        auto* widget = child<QWidget>(&window, QString::fromLatin1(name));
        const QRect inWindow(widget->mapTo(&window, QPoint(0, 0)), widget->size());
        EXPECT_TRUE(window.rect().contains(inWindow)) << name;
        EXPECT_TRUE(widget->isVisible()) << name;
    }
    // The widest page scrolls within its tab instead of widening the window.
    window.SelectTab(QStringLiteral("Family Tree"));
    QApplication::processEvents();
    EXPECT_EQ(window.size(), QSize(800, 540));
    window.Unload();
}
