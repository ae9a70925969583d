// SPDX-License-Identifier: GPL-3.0-or-later
// The record page, the pictures dialog and the pop-up, on a real data file with real JPEG files in the
// pictures folder: what the labels and picture boxes show and what the picture commands leave.
#include "support/TestEnv.h"

#include "records/Animal.h"
#include "records/Pictures.h"
#include "records/forms/RecordPage.h"
#include "records/forms/frmPictures.h"
#include "records/forms/frmPopup.h"
#include "session/OpenDataFile.h"
#include "session/globals.h"
#include "store/DataFile.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMouseEvent>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>
#include <QVBoxLayout>

namespace {

class RecordPageTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(CreateDataFile(QStringLiteral("Cavies.cav"), QString()));
        ASSERT_TRUE(OpenDataFile(env.dataFolder() + QStringLiteral("Cavies.cav")));
        gUser.Father = QStringLiteral("Boar");
        gUser.Mother = QStringLiteral("Sow");
        gUser.Male = QStringLiteral("Boar");
        gUser.Female = QStringLiteral("Sow");
        gDatabase.Execute("INSERT INTO tree (name,sex,ps,pd,prefix,callname,notes) VALUES "
                          "('Rex','male','Dad','Mum','Ch','Rexie','Best in show at the spring fair')");
        gDatabase.Execute(
            "INSERT INTO tree (name,sex,ps,pd,callname) VALUES ('Max','male','Unknown','Unknown','Maxi')");
        gDatabase.Execute("INSERT INTO tree (name,sex,ps,pd,callname) VALUES ('Bo','female','Unknown','Unknown','B')");
        env.ui().clear();
    }
    void TearDown() override
    {
        CloseDatabase();
        gAnimal = Animal();
        gUser = User();
    }

    QString folder() const { return env.dataFolder() + QStringLiteral("my pics/"); }
    // A real JPEG of the given size, its colour telling the files apart.
    static void makeJpeg(const QString& path, QSize size, Qt::GlobalColor colour = Qt::darkGreen)
    {
        QDir().mkpath(QFileInfo(path).path());
        QImage image(size, QImage::Format_RGB32);
        image.fill(colour);
        ASSERT_TRUE(image.save(path, "JPG"));
    }
    static void setCurrent(const QString& name)
    {
        QString n = name;
        gAnimal = Animal();
        gAnimal.SetCurrentAnimal(n);
        ASSERT_EQ(gAnimal.name, name);
    }
    // A page laid out at the size it has beside the search pane in a 1100 x 760 window.
    static void layOut(QWidget& page)
    {
        page.resize(800, 560);
        page.show();
        QApplication::processEvents();
    }
    template <typename T>
    static T* child(const QWidget& parent, const QString& name)
    {
        T* found = parent.findChild<T*>(name);
        EXPECT_NE(found, nullptr) << name.toStdString();
        return found;
    }
    static void click(QWidget* widget)
    {
        const QPointF at(widget->width() / 2.0, widget->height() / 2.0);
        QMouseEvent press(QEvent::MouseButtonPress, at, widget->mapToGlobal(at), Qt::LeftButton, Qt::LeftButton,
                          Qt::NoModifier);
        QMouseEvent release(QEvent::MouseButtonRelease, at, widget->mapToGlobal(at), Qt::LeftButton, Qt::NoButton,
                            Qt::NoModifier);
        QApplication::sendEvent(widget, &press);
        QApplication::sendEvent(widget, &release);
    }

    TestEnv env;
};

} // namespace

TEST_F(RecordPageTest, TheTitleCarriesACallNameOfMoreThanOneCharacter)
{
    RecordPage page;
    setCurrent("Rex");
    page.loadnotes();
    QLabel* title = child<QLabel>(page, "lblBoldTitle");
    EXPECT_EQ(title->text(), "Ch Rex (Rexie)");
    EXPECT_TRUE(title->font().bold());

    setCurrent("Bo");
    page.loadnotes();
    EXPECT_EQ(title->text(), "Bo");

    gDatabase.Execute("UPDATE tree SET callname = '' WHERE name = 'Bo'");
    setCurrent("Bo");
    page.loadnotes();
    EXPECT_EQ(title->text(), "Bo");
}

TEST_F(RecordPageTest, ThePageShowsDetailsNotesAndTheMainPicture)
{
    makeJpeg(folder() + "Rex(0) [Best].jpg", QSize(1200, 900));
    makeJpeg(folder() + "Rex(4).jpg", QSize(90, 120), Qt::red);
    setCurrent("Rex");
    RecordPage page;
    layOut(page);

    const QString details = child<QLabel>(page, "lblDetails")->text();
    EXPECT_EQ(details, "Sex:   Boar\nBoar:  Dad\nSow:  Mum\n");
    EXPECT_EQ(child<QLabel>(page, "lblNotes")->text(), "Best in show at the spring fair");

    PictureBox* main = child<PictureBox>(page, "imgCavy");
    ASSERT_TRUE(main->hasPicture());
    EXPECT_EQ(main->path(), folder() + "Rex(0) [Best].jpg");
    const QSize drawn = main->drawnSize();
    EXPECT_LE(drawn.width(), main->width());
    EXPECT_LE(drawn.height(), main->height());
    EXPECT_NEAR(double(drawn.width()) / drawn.height(), 4.0 / 3.0, 0.02);

    EXPECT_TRUE(child<PictureBox>(page, "imgThumb(0)")->hasPicture());
    EXPECT_FALSE(child<PictureBox>(page, "imgThumb(1)")->hasPicture());
    PictureBox* four = child<PictureBox>(page, "imgThumb(4)");
    ASSERT_TRUE(four->hasPicture());
    EXPECT_EQ(four->picture().toImage().pixelColor(10, 10).red() > 200, true);
    EXPECT_LE(four->drawnSize().height(), four->height());
}

TEST_F(RecordPageTest, LongNotesWrapWithinTheLabel)
{
    QStringList words;
    for (int i = 0; i < 60; ++i)
        words << QStringLiteral("champion%1").arg(i);
    gDatabase.Execute("UPDATE tree SET notes = '" + words.join(' ') + "' WHERE name = 'Rex'");
    setCurrent("Rex");
    RecordPage page;
    layOut(page);

    QLabel* notes = child<QLabel>(page, "lblNotes");
    const QStringList lines = notes->text().split('\n');
    EXPECT_GT(lines.size(), 3);
    EXPECT_EQ(lines.join(' '), words.join(' '));
    const QFontMetrics metrics(notes->font());
    for (const QString& line : lines)
        EXPECT_LE(metrics.horizontalAdvance(line), notes->contentsRect().width()) << line.toStdString();

    // A wider page takes more on a line.
    page.resize(1200, 560);
    QApplication::processEvents();
    EXPECT_LT(notes->text().split('\n').size(), lines.size());
}

TEST_F(RecordPageTest, TheCaptionsFollowTheChosenSlot)
{
    makeJpeg(folder() + "Rex(3).jpg", QSize(40, 30));
    setCurrent("Rex");
    RecordPage page;
    QAction* add = child<QAction>(page, "mnuAddPic");
    QAction* remove = child<QAction>(page, "mnuDeletePic");
    QAction* swap = child<QAction>(page, "mnuPicSwap");
    EXPECT_EQ(child<QMenu>(page, "mnuPicOptions")->title(), "Picture Options");

    // The menu keeps its words whatever slot it works on; what it may do follows the slot.
    struct Case {
        int slot;
        bool removable, swappable;
        QString file;
    };
    const Case cases[] = {{0, false, false, ""}, {3, true, true, folder() + "Rex(3).jpg"}, {5, false, false, ""}};
    for (const Case& c : cases) {
        page.chooseSlot(c.slot);
        EXPECT_EQ(page.chosenSlot(), c.slot);
        EXPECT_EQ(add->text(), "Add / Change");
        EXPECT_EQ(remove->text(), "Delete");
        EXPECT_EQ(swap->text(), "Swap with pedigree picture");
        EXPECT_TRUE(add->isEnabled()) << c.slot;
        EXPECT_EQ(remove->isEnabled(), c.removable) << c.slot;
        EXPECT_EQ(swap->isEnabled(), c.swappable) << c.slot;
        EXPECT_EQ(child<QLineEdit>(page, "txtPicture")->text(), c.file) << c.slot;
    }
}

TEST_F(RecordPageTest, PictureCommandsShowTheRecordAgain)
{
    makeJpeg(folder() + "Rex(0) [Best].jpg", QSize(40, 30));
    makeJpeg(folder() + "Rex(3) [Side].jpg", QSize(40, 30));
    makeJpeg(env.root() + "IMG_1.jpg", QSize(40, 30));
    setCurrent("Rex");
    RecordPage page;
    int changed = 0;
    QObject::connect(&page, &RecordPage::picturesChanged, [&changed] { ++changed; });
    PictureBox* main = child<PictureBox>(page, "imgCavy");

    page.chooseSlot(3);
    child<QAction>(page, "mnuPicSwap")->trigger();
    EXPECT_EQ(gAnimal.picture[0], folder() + "Rex(0) [Side].jpg");
    EXPECT_EQ(gAnimal.pictureLabel[3], "Best");
    EXPECT_EQ(main->path(), folder() + "Rex(0) [Side].jpg");
    EXPECT_EQ(child<QLineEdit>(page, "txtPicture")->text(), folder() + "Rex(3) [Best].jpg");

    page.chooseSlot(7);
    env.ui().queueFile(env.root() + "IMG_1.jpg");
    env.ui().queueInput("Young");
    child<QAction>(page, "mnuAddPic")->trigger();
    EXPECT_EQ(gAnimal.picture[7], folder() + "Rex(7) [Young].jpg");
    EXPECT_TRUE(child<PictureBox>(page, "imgThumb(7)")->hasPicture());

    page.chooseSlot(0);
    child<QAction>(page, "mnuDeletePic")->trigger();
    EXPECT_EQ(gAnimal.picture[0], "");
    EXPECT_FALSE(main->hasPicture());
    EXPECT_EQ(changed, 3);

    // Cancel in the file dialog: nothing changed, nothing said.
    page.mnuAddPic_Click();
    EXPECT_EQ(changed, 3);
    EXPECT_TRUE(env.ui().messages().isEmpty());
}

TEST_F(RecordPageTest, AClickOnAPictureShowsItLarge)
{
    makeJpeg(folder() + "Rex(0).jpg", QSize(40, 30));
    makeJpeg(folder() + "Rex(2).jpg", QSize(40, 30));
    setCurrent("Rex");
    RecordPage page;
    layOut(page);

    click(child<PictureBox>(page, "imgCavy"));
    click(child<PictureBox>(page, "imgThumb(2)"));
    ASSERT_EQ(env.ui().calls().size(), 2);
    EXPECT_EQ(env.ui().calls().at(0).kind, ScriptedUi::Kind::ShowPath);
    EXPECT_EQ(env.ui().calls().at(0).text, folder() + "Rex(0).jpg");
    EXPECT_EQ(env.ui().calls().at(1).text, folder() + "Rex(2).jpg");
    EXPECT_EQ(page.chosenSlot(), 2);
}

TEST_F(RecordPageTest, WithoutACurrentAnimalThePageStaysEmpty)
{
    makeJpeg(folder() + "Rex(0).jpg", QSize(40, 30));
    RecordPage page;
    layOut(page);
    EXPECT_EQ(child<QLabel>(page, "lblBoldTitle")->text(), "");
    EXPECT_EQ(child<QLabel>(page, "lblDetails")->text(), "");
    EXPECT_EQ(child<QLabel>(page, "lblNotes")->text(), "");
    EXPECT_FALSE(child<PictureBox>(page, "imgCavy")->hasPicture());
    EXPECT_FALSE(child<QAction>(page, "mnuAddPic")->isEnabled());
    click(child<PictureBox>(page, "imgCavy"));
    EXPECT_TRUE(env.ui().calls().isEmpty());

    page.mnuAddPic_Click();
    ASSERT_EQ(env.ui().calls().size(), 1);
    EXPECT_EQ(env.ui().calls().at(0).title, "Error");
    EXPECT_EQ(env.ui().calls().at(0).text, "Please select a record from the Search list to edit.");

    QPushButton* notes = child<QPushButton>(page, "cmdAddNotes");
    EXPECT_FALSE(notes->isEnabled());
    EXPECT_EQ(notes->toolTip(), "Not available yet");
}

TEST_F(RecordPageTest, ShowNotesBringsThePageUpInItsTabStrip)
{
    QTabWidget tabs;
    tabs.addTab(new QWidget, "Journal");
    auto* frame = new QWidget;
    frame->setObjectName("fmeIndividual");
    auto* page = new RecordPage;
    (new QVBoxLayout(frame))->addWidget(page);
    tabs.insertTab(0, frame, "Cavy");
    tabs.setCurrentIndex(1);
    setCurrent("Max");

    page->ShowNotes();
    EXPECT_EQ(tabs.currentIndex(), 0);
    EXPECT_EQ(child<QLabel>(*page, "lblBoldTitle")->text(), "Max (Maxi)");
}

TEST_F(RecordPageTest, ThePopupShowsAnotherAnimalAndLeavesTheCurrentOne)
{
    makeJpeg(folder() + "Max(0).jpg", QSize(300, 200));
    setCurrent("Rex");
    frmPopup popup;
    EXPECT_TRUE(popup.windowFlags() & Qt::FramelessWindowHint);
    EXPECT_NE(child<QWidget>(popup, "popBorder"), nullptr);

    popup.SetPopupAnimal("Max");
    EXPECT_EQ(gAnimal.name, "Rex");
    EXPECT_EQ(gAnimal.fullName, "Ch Rex");
    EXPECT_EQ(popup.popupAnimal().name, "Max");
    EXPECT_EQ(child<QLabel>(popup, "lblNotesBold")->text(), "Max");
    EXPECT_EQ(child<QLabel>(popup, "lblNotes")->text(), "Sex:   Boar\n");
    EXPECT_EQ(child<PictureBox>(popup, "imgPopup")->path(), folder() + "Max(0).jpg");
    EXPECT_TRUE(child<PictureBox>(popup, "imgPopup")->hasPicture());

    // The full name, with its title, wrapped at 26 characters.
    gDatabase.Execute("UPDATE tree SET prefix = 'Grand Champion', suffix = 'of Hilltop Meadow Farm' WHERE name = 'Rex'");
    popup.SetPopupAnimal("Rex");
    EXPECT_EQ(child<QLabel>(popup, "lblNotesBold")->text(), "Grand Champion Rex of\nHilltop Meadow Farm");

    // A name that is gone shows the notice, not the animal shown before.
    popup.SetPopupAnimal("Nobody");
    EXPECT_EQ(child<QLabel>(popup, "lblNotesBold")->text(), "");
    EXPECT_TRUE(child<QLabel>(popup, "lblNotes")->text().startsWith(
        "The program cannot find the record you are looking for in this database.\n"));
    EXPECT_FALSE(child<PictureBox>(popup, "imgPopup")->hasPicture());
    EXPECT_EQ(gAnimal.name, "Rex");
}

TEST_F(RecordPageTest, ThePicturesDialogWorksOnTheSlotItsOptionChooses)
{
    makeJpeg(folder() + "Max(0) [Head].jpg", QSize(40, 30));
    makeJpeg(folder() + "Max(6).jpg", QSize(40, 30));
    frmPictures form("Max");
    QPushButton* add = child<QPushButton>(form, "cmdAddPic");
    QPushButton* remove = child<QPushButton>(form, "cmdDeletePic");
    QPushButton* swap = child<QPushButton>(form, "cmdSwap");
    EXPECT_TRUE(child<QRadioButton>(form, "optPicture(0)")->isChecked());
    EXPECT_EQ(add->text(), "Change main picture ");
    EXPECT_EQ(remove->text(), "Remove main picture ");
    EXPECT_TRUE(swap->isHidden());
    EXPECT_TRUE(child<PictureBox>(form, "imgPreview")->hasPicture());

    child<QRadioButton>(form, "optPicture(6)")->click();
    EXPECT_EQ(form.chosenSlot(), 6);
    EXPECT_EQ(add->text(), "Change picture 6");
    EXPECT_EQ(remove->text(), "Remove picture 6");
    EXPECT_EQ(swap->text(), "Swap picture 6 with pedigree");
    EXPECT_FALSE(swap->isHidden());

    swap->click();
    EXPECT_EQ(PictureFile("Max", 0), folder() + "Max(0).jpg");
    EXPECT_EQ(PictureFile("Max", 6), folder() + "Max(6) [Head].jpg");
    EXPECT_EQ(child<QLineEdit>(form, "txtPicture")->text(), folder() + "Max(6) [Head].jpg");

    remove->click();
    EXPECT_EQ(PictureFile("Max", 6), "");
    EXPECT_FALSE(remove->isEnabled());
    EXPECT_FALSE(swap->isEnabled());
}
