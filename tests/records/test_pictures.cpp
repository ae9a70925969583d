// SPDX-License-Identifier: GPL-3.0-or-later
// The picture commands on the shared pictures folder: what add, remove and swap leave on disk, the
// dialogs they ask through, and the text rules of the record page.
#include "support/TestEnv.h"

#include "records/Animal.h"
#include "records/Pictures.h"
#include "base/Log.h"
#include "session/OpenDataFile.h"
#include "session/globals.h"
#include "store/DataFile.h"

#include <QDir>
#include <QFile>

namespace {

class PicturesTest : public ::testing::Test {
protected:
    void SetUp() override { QDir().mkpath(env.root() + QStringLiteral("camera")); }
    void TearDown() override { CloseDatabase(); }

    QString folder() const { return env.dataFolder() + QStringLiteral("my pics/"); }
    QString camera(const QString& file) const { return env.root() + QStringLiteral("camera/") + file; }
    // A picture file; the program never reads what is in it, so a text tells the files apart.
    static void make(const QString& path, const QString& content)
    {
        QDir().mkpath(QFileInfo(path).path());
        ASSERT_TRUE(TestEnv::writeText(path, content));
    }
    QStringList pictures() const
    {
        return QDir(folder()).entryList(QDir::Files, QDir::Name | QDir::IgnoreCase);
    }
    QString inFolder(const QString& file) const { return TestEnv::readText(folder() + file); }
    void openFile(const QString& fileName)
    {
        ASSERT_TRUE(CreateDataFile(fileName, QString()));
        ASSERT_TRUE(OpenDataFile(env.dataFolder() + fileName));
        env.ui().clear();
    }

    TestEnv env;
};

} // namespace

TEST_F(PicturesTest, AnAddedPictureIsCopiedUnderTheSlotNameWithItsLabel)
{
    make(camera("IMG_0012.jpg"), "new");
    make(folder() + "Rex(2) [old one].jpg", "old");
    make(folder() + "Rex(1).jpg", "other slot");
    env.ui().queueFile(camera("IMG_0012.jpg"));
    env.ui().queueInput("At the show");

    EXPECT_TRUE(AddPicture("Rex", 2));

    EXPECT_EQ(pictures(), QStringList({"Rex(1).jpg", "Rex(2) [At the show].jpg"}));
    EXPECT_EQ(inFolder("Rex(2) [At the show].jpg"), "new");
    EXPECT_EQ(TestEnv::readText(camera("IMG_0012.jpg")), "new");
    ASSERT_EQ(env.ui().calls().size(), 2);
    const ScriptedUi::Call& dialog = env.ui().calls().at(0);
    EXPECT_EQ(dialog.kind, ScriptedUi::Kind::OpenFile);
    EXPECT_EQ(dialog.title, "Choose picture");
    EXPECT_EQ(dialog.filter, "Compatable picture files|*.jpg");
    const ScriptedUi::Call& label = env.ui().calls().at(1);
    EXPECT_EQ(label.kind, ScriptedUi::Kind::Input);
    EXPECT_EQ(label.title, "Enter label");
    EXPECT_EQ(label.text,
              "If you want to you can enter a description below for your picture.\n\n"
              "Rules: No name needed, just a description - don't use characters [ ] ( ) \\ / : * ? < > | \"");
}

TEST_F(PicturesTest, NoLabelNoBracketsAndTheExtensionIsTheSourcesOwn)
{
    make(camera("Holiday.JPG"), "x");
    env.ui().queueFile(camera("Holiday.JPG"));
    env.ui().queueInput("");
    EXPECT_TRUE(AddPicture("Rex", 0));
    EXPECT_EQ(pictures(), QStringList{"Rex(0).JPG"});
    EXPECT_EQ(PictureFile("rex", 0), folder() + "Rex(0).JPG");
    EXPECT_EQ(PictureTargetName("Rex", 4, "Side", "/a/b.jpeg"), "Rex(4) [Side]jpeg");
}

TEST_F(PicturesTest, CancelInTheFileDialogChangesNothing)
{
    make(folder() + "Rex(0) [Best].jpg", "kept");
    EXPECT_FALSE(AddPicture("Rex", 0));
    EXPECT_EQ(pictures(), QStringList{"Rex(0) [Best].jpg"});
    ASSERT_EQ(env.ui().calls().size(), 1); // no label asked for
    EXPECT_EQ(env.ui().calls().at(0).kind, ScriptedUi::Kind::OpenFile);
}

TEST_F(PicturesTest, ASourceInMyPicsIsCopiedAndTheSlotsOwnFileIsKept)
{
    make(folder() + "scan.jpg", "scan");
    env.ui().queueFile(folder() + "scan.jpg");
    env.ui().queueInput("Label");
    EXPECT_TRUE(AddPicture("Rex", 1));
    EXPECT_EQ(pictures(), QStringList({"Rex(1) [Label].jpg", "scan.jpg"}));

    // Choosing the slot's own file again does not delete it on the way.
    env.ui().queueFile(folder() + "Rex(1) [Label].jpg");
    env.ui().queueInput("");
    EXPECT_FALSE(AddPicture("Rex", 1));
    EXPECT_EQ(inFolder("Rex(1) [Label].jpg"), "scan");
}

TEST_F(PicturesTest, ALabelAFileNameCannotHoldIsAskedForAgainAndTheOldPictureStays)
{
    make(camera("new.jpg"), "new");
    make(folder() + "Rex(0) [Old].jpg", "old");
    env.ui().queueFile(camera("new.jpg"));
    env.ui().queueInput("1/2 side");
    env.ui().queueInput("Half side");
    EXPECT_TRUE(AddPicture("Rex", 0));
    EXPECT_EQ(pictures(), QStringList{"Rex(0) [Half side].jpg"});
    EXPECT_EQ(inFolder("Rex(0) [Half side].jpg"), "new");
    ASSERT_EQ(env.ui().calls().size(), 4);
    EXPECT_EQ(env.ui().calls().at(2).text, "A picture's label becomes part of its file name and cannot hold /.\n"
                                           "Please leave out the characters [ ] ( ) \\ / : * ? < > | \"");

    // A copy that fails leaves the old picture where it was.
    env.ui().queueFile(camera("gone.jpg"));
    env.ui().queueInput("");
    EXPECT_FALSE(AddPicture("Rex", 0));
    EXPECT_EQ(pictures(), QStringList{"Rex(0) [Half side].jpg"});
}

TEST_F(PicturesTest, ARenameTakesOnlyTheAnimalsOwnPicturesAndAllOrNone)
{
    make(folder() + "Willowbrook Aster(0).jpg", "a0");
    make(folder() + "Willowbrook Aster(1) [Side].jpg", "a1");
    make(folder() + "Willowbrook Aster 2(0).jpg", "other");
    EXPECT_TRUE(renamePictures("willowbrook aster", "Aster"));
    EXPECT_EQ(pictures(), QStringList({"Aster(0).jpg", "Aster(1) [Side].jpg", "Willowbrook Aster 2(0).jpg"}));

    // A picture of the new name in the way: nothing moves.
    make(folder() + "Star(1) [Side].jpg", "star's own");
    EXPECT_FALSE(renamePictures("Aster", "Star"));
    EXPECT_EQ(pictures(), QStringList({"Aster(0).jpg", "Aster(1) [Side].jpg", "Star(1) [Side].jpg",
                                       "Willowbrook Aster 2(0).jpg"}));
    EXPECT_EQ(inFolder("Star(1) [Side].jpg"), "star's own");
}

TEST_F(PicturesTest, AFailedCopyEndsTheCommandAndIsLogged)
{
    env.ui().queueFile(camera("gone.jpg"));
    env.ui().queueInput("");
    EXPECT_FALSE(AddPicture("Rex", 0));
    EXPECT_TRUE(pictures().isEmpty());
    EXPECT_TRUE(TestEnv::readText(ErrorLogPath()).contains("Add picture error "));
}

TEST_F(PicturesTest, RemoveDeletesOnlyTheFileOfTheSlot)
{
    make(folder() + "Rex(0).jpg", "main");
    make(folder() + "Rex(3) [Side].jpg", "side");
    make(folder() + "Rexy(3).jpg", "another animal");
    EXPECT_TRUE(RemovePicture("Rex", 3));
    EXPECT_EQ(pictures(), QStringList({"Rex(0).jpg", "Rexy(3).jpg"}));
    EXPECT_FALSE(RemovePicture("Rex", 3));
    EXPECT_FALSE(RemovePicture("", 0));
}

TEST_F(PicturesTest, SwapTakesTheLabelsAlongWithThePictures)
{
    make(folder() + "Rex(0) [Best].jpg", "main");
    make(folder() + "rex(3) [Side].jpg", "side");
    EXPECT_TRUE(swapPictures("Rex", 3));
    EXPECT_EQ(pictures(), QStringList({"rex(0) [Side].jpg", "Rex(3) [Best].jpg"}));
    EXPECT_EQ(inFolder("rex(0) [Side].jpg"), "side");
    EXPECT_EQ(inFolder("Rex(3) [Best].jpg"), "main");
}

TEST_F(PicturesTest, SwapWithoutAMainPictureMakesTheSlotTheMainOne)
{
    make(folder() + "Rex(5).jpg", "five");
    EXPECT_TRUE(swapPictures("Rex", 5));
    EXPECT_EQ(pictures(), QStringList{"Rex(0).jpg"});
    EXPECT_EQ(inFolder("Rex(0).jpg"), "five");
    EXPECT_FALSE(swapPictures("Rex", 0));
    EXPECT_FALSE(swapPictures("Rex", 5)); // the slot is empty now
}

TEST_F(PicturesTest, ASwapThatCannotFinishPutsEveryFileBack)
{
    // A leftover of the temporary name stops the first step.
    make(folder() + "Rex(0).jpg", "main");
    make(folder() + "Rex(3).jpg", "three");
    make(folder() + "tRex(0).jpg", "leftover");
    EXPECT_FALSE(swapPictures("Rex", 3));
    EXPECT_EQ(pictures(), QStringList({"Rex(0).jpg", "Rex(3).jpg", "tRex(0).jpg"}));
    QFile::remove(folder() + "tRex(0).jpg");

    // A second file of slot 3 under the main picture's future name stops the second step.
    make(folder() + "Rex(3) [a].jpg", "three a");
    EXPECT_FALSE(swapPictures("Rex", 3));
    EXPECT_EQ(pictures(), QStringList({"Rex(0).jpg", "Rex(3) [a].jpg", "Rex(3).jpg"}));
    EXPECT_EQ(inFolder("Rex(3) [a].jpg"), "three a");
    EXPECT_TRUE(TestEnv::readText(ErrorLogPath()).contains("Swap pictures error "));
}

TEST_F(PicturesTest, TheShownLabelEndsAtTheFirstClosingBracket)
{
    openFile("Rabbits.cav");
    gDatabase.Execute("INSERT INTO tree (name,ps,pd) VALUES ('Rex','Unknown','Unknown')");
    make(folder() + "Rex(4) [Best] in show].jpg", "x"); // copied in by hand
    Animal rex;
    QString name = "Rex";
    rex.SetCurrentAnimal(name);
    EXPECT_EQ(rex.picture[4], folder() + "Rex(4) [Best] in show].jpg");
    EXPECT_EQ(rex.pictureLabel[4], "Best");
}

TEST_F(PicturesTest, TwoDataFilesShareThePicturesOfOneName)
{
    make(camera("p.jpg"), "x");
    openFile("Rabbits.cav");
    gDatabase.Execute("INSERT INTO tree (name,ps,pd) VALUES ('Rex','Unknown','Unknown')");
    env.ui().queueFile(camera("p.jpg"));
    env.ui().queueInput("Shared");
    ASSERT_TRUE(AddPicture("Rex", 0));
    CloseDatabase();

    openFile("Cavies.cav");
    gDatabase.Execute("INSERT INTO tree (name,ps,pd) VALUES ('rex','Unknown','Unknown')");
    Animal other;
    QString name = "rex";
    other.SetCurrentAnimal(name);
    EXPECT_EQ(other.picture[0], folder() + "Rex(0) [Shared].jpg");
    EXPECT_EQ(other.pictureLabel[0], "Shared");
}

TEST_F(PicturesTest, ViewingGoesToTheDesktopViewerAndLogsAMissingFile)
{
    make(folder() + "Rex(0).jpg", "x");
    ViewPicture(folder() + "Rex(0).jpg");
    ViewPicture(QString());
    ASSERT_EQ(env.ui().calls().size(), 1);
    EXPECT_EQ(env.ui().calls().at(0).kind, ScriptedUi::Kind::ShowPath);
    EXPECT_EQ(env.ui().calls().at(0).text, folder() + "Rex(0).jpg");

    ViewPicture(folder() + "Gone(0).jpg");
    EXPECT_EQ(env.ui().calls().size(), 1);
    EXPECT_TRUE(TestEnv::readText(ErrorLogPath())
                    .contains("Open Windows and Fax Viewer Error 53 - File not found: " + folder() + "Gone(0).jpg"));
}

TEST(PictureTexts, CaptionsFollowTheSlot)
{
    EXPECT_EQ(ChangePictureCaption(0), "Change main picture ");
    EXPECT_EQ(RemovePictureCaption(0), "Remove main picture ");
    EXPECT_EQ(SwapPictureCaption(0), "");
    EXPECT_EQ(ChangePictureCaption(7), "Change picture 7");
    EXPECT_EQ(RemovePictureCaption(7), "Remove picture 7");
    EXPECT_EQ(SwapPictureCaption(7), "Swap picture 7 with pedigree");
}

TEST(PictureTexts, WrapTextCutsAtTheLastBlankThatFits)
{
    EXPECT_EQ(WrapText("  the quick brown fox  ", 9), "the quick\nbrown fox");
    EXPECT_EQ(WrapText("the quick brown fox", 10), "the quick\nbrown fox");
    EXPECT_EQ(WrapText("the quick brown fox", 8), "the\nquick\nbrown\nfox");
    // A word longer than the line stands alone, uncut.
    EXPECT_EQ(WrapText("a Grandchampionship b", 5), "a\nGrandchampionship\nb");
    // Line ends already in the text restart the count.
    EXPECT_EQ(WrapText("Best in show\r\nBest of breed 2024", 13), "Best in show\r\nBest of breed\n2024");
    EXPECT_EQ(WrapText("", 10), "");
}

TEST(PictureTexts, APictureShrinksToItsBoxButIsNeverEnlarged)
{
    EXPECT_EQ(resizePicture(QSize(800, 600), QSize(400, 400)), QSize(400, 300));
    EXPECT_EQ(resizePicture(QSize(600, 800), QSize(400, 400)), QSize(300, 400));
    EXPECT_EQ(resizePicture(QSize(100, 50), QSize(400, 400)), QSize(100, 50));
    EXPECT_EQ(resizePicture(QSize(), QSize(400, 400)), QSize());
    EXPECT_EQ(resizePicture(QSize(100, 50), QSize(0, 0)), QSize());
}
