// SPDX-License-Identifier: GPL-3.0-or-later
// The family tree page on a real data file, driven through its widgets: the boxes of a full pedigree
// in both forms, gaps where nobody is, champions in red, names with an apostrophe, the hover pop-up,
// browsing at the ends of the list and the double-click that opens the edit form.
#include "support/TestEnv.h"

#include "printing/PedigreeLayout.h"
#include "printing/forms/FamilyTreePage.h"
#include "printing/forms/pedigree.h"
#include "records/Animal.h"
#include "records/forms/RecordHost.h"
#include "records/forms/frmAdd.h"
#include "records/forms/frmPopup.h"
#include "session/OpenDataFile.h"
#include "session/globals.h"
#include "store/DataFile.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QElapsedTimer>
#include <QLabel>
#include <QMouseEvent>
#include <QRadioButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QTimer>
#include <QToolButton>
#include <memory>

namespace {

class FakeHost : public RecordHost {
public:
    QStringList calls;
    void refillSearchList() override { calls << QStringLiteral("refill"); }
    void putFirstInSearchList(const QString& name) override { calls << QStringLiteral("first:") + name; }
    QString shownPageKey() const override { return QStringLiteral("Family Tree"); }
    void SelectTab(const QString& key) override { calls << QStringLiteral("tab:") + key; }
    void RunTabProcess() override { calls << QStringLiteral("run"); }
    bool quickLinkAvailable(const QString&) const override { return false; }
    void quickLink(const QString&) override {}
};

// The name at position k of the generated pedigree.
QString ancestor(int k)
{
    return k == 0 ? QStringLiteral("Subject") : QStringLiteral("Anc %1").arg(k, 3, 10, QLatin1Char('0'));
}

class FamilyTreePageTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(CreateDataFile(QStringLiteral("Cavies.cav"), QString()));
        ASSERT_TRUE(OpenDataFile(env.dataFolder() + QStringLiteral("Cavies.cav")));
        gUser.Male = QStringLiteral("Boar");
        gUser.Female = QStringLiteral("Sow");
        gUser.Country = QStringLiteral("Australia");
        gUser.Prefix = QStringLiteral("Ch,Grand Ch");
        gAnimal = Animal();
        EditMode = false;
        page = std::make_unique<FamilyTreePage>(&host);
        page->resize(820, 600);
    }
    void TearDown() override
    {
        page.reset();
        CloseDatabase();
        gAnimal = Animal();
        gUser = User();
        EditMode = false;
    }

    // name, ps, pd, sex, prefix (stored forms)
    void add(const QString& name, const QString& ps, const QString& pd, const QString& sex = QStringLiteral("male"),
             const QString& prefix = QString())
    {
        gDatabase.Execute(QStringLiteral("INSERT INTO tree (name, ps, pd, sex, prefix) VALUES ('%1', '%2', '%3', '%4', "
                                         "'%5')")
                              .arg(name, ps, pd, sex, prefix));
    }
    // Eight generations, every position known: position k is "Anc k", its colour "Ck" and its
    // registration "Rk".
    void addFullPedigree()
    {
        Transaction t(gDatabase);
        for (int k = 0; k < kPedigreeBoxes; ++k) {
            const QString ps = 2 * k + 1 < kPedigreeBoxes ? ancestor(2 * k + 1) : QString();
            const QString pd = 2 * k + 2 < kPedigreeBoxes ? ancestor(2 * k + 2) : QString();
            gDatabase.Execute(QStringLiteral("INSERT INTO tree (name, ps, pd, sex, colour, tag, dob) VALUES ('%1', '%2', "
                                             "'%3', '%4', 'C%5', 'R%5', #03/15/2024#)")
                                  .arg(ancestor(k), ps, pd, k % 2 ? QStringLiteral("male") : QStringLiteral("female"))
                                  .arg(k));
        }
        t.commit();
    }
    void choose(const QString& name)
    {
        QString n = name;
        gAnimal.SetCurrentAnimal(n);
        ASSERT_EQ(gAnimal.name, name);
    }
    void showForm(int generations, bool details = false)
    {
        page->findChild<QRadioButton*>(QStringLiteral("optGen(%1)").arg(generations))->setChecked(true);
        page->findChild<QCheckBox*>(QStringLiteral("chkShowDetails"))->setChecked(details);
        page->LoadTree();
    }
    QLabel* box(int i) const { return page->findChild<QLabel*>(QStringLiteral("lblCavy(%1)").arg(i)); }
    QWidget* bracket(int k) const { return page->findChild<QWidget*>(QStringLiteral("bracket(%1)").arg(k)); }
    QLabel* heading(int h) const { return page->findChild<QLabel*>(QStringLiteral("lblAnimal(%1)").arg(h)); }
    bool shown(QWidget* w) const { return w->isVisibleTo(page.get()); }
    pedigree* control() const { return page->findChild<pedigree*>(QStringLiteral("pedigree1")); }

    static void sendMouse(QWidget* w, QEvent::Type type, Qt::MouseButton button = Qt::NoButton)
    {
        const QPointF at(w->width() / 2.0, w->height() / 2.0);
        QMouseEvent event(type, at, w->mapToGlobal(at), button, button == Qt::NoButton ? Qt::NoButton : button,
                          Qt::NoModifier);
        QApplication::sendEvent(w, &event);
    }
    static bool waitFor(const std::function<bool()>& done, int ms = 3000)
    {
        QElapsedTimer timer;
        timer.start();
        while (!done() && timer.elapsed() < ms)
            QApplication::processEvents(QEventLoop::AllEvents, 20);
        return done();
    }

    TestEnv env;
    FakeHost host;
    std::unique_ptr<FamilyTreePage> page;
};

} // namespace

TEST_F(FamilyTreePageTest, TheFiveGenerationFormShowsThirtyBoxesInHeapOrder)
{
    addFullPedigree();
    choose(ancestor(0));
    showForm(4);

    EXPECT_EQ(page->findChild<QLabel*>(QStringLiteral("lblHelp"))->text(),
              QStringLiteral("Mouse over to view details. Double-click to edit or add parents."));
    EXPECT_EQ(page->findChild<QRadioButton*>(QStringLiteral("optGen(4)"))->text(),
              QStringLiteral("Show 5 generation pedigree"));
    EXPECT_EQ(page->findChild<QRadioButton*>(QStringLiteral("optGen(7)"))->text(),
              QStringLiteral("Show 7 generation pedigree"));
    EXPECT_EQ(page->findChild<QCheckBox*>(QStringLiteral("chkShowDetails"))->text(),
              QStringLiteral("Show pedigree details (no pop ups)"));

    ASSERT_EQ(control()->generations(), 4);
    // The array is walked to 62; of its positions only the first 30 have boxes.
    const QStringList family = control()->family();
    ASSERT_EQ(family.size(), 64);
    for (int k = 0; k <= 62; ++k)
        EXPECT_EQ(family.at(k), ancestor(k)) << k;
    const double dpi = control()->dotsPerInch();
    const PedigreeGeometry g = makeFourGen();
    for (int k = 1; k <= 30; ++k) {
        EXPECT_TRUE(shown(box(k))) << k;
        EXPECT_EQ(box(k)->text(), ancestor(k) + QLatin1Char(' ')) << k;
        EXPECT_EQ(box(k)->geometry(), TwipsToPixels(g.boxes[k], dpi)) << k;
    }
    for (int k = 31; k < kPedigreeBoxes; ++k) {
        EXPECT_FALSE(shown(box(k))) << k;
        EXPECT_EQ(box(k)->text(), QString()) << k;
    }
    for (int k = 0; k < kPedigreeBrackets; ++k)
        EXPECT_EQ(shown(bracket(k)), k < 15) << k;
    for (int h = 0; h < kPedigreeHeadings; ++h)
        EXPECT_EQ(shown(heading(h)), h < 4) << h;
    EXPECT_EQ(heading(0)->text(), QStringLiteral("Parents"));
    EXPECT_EQ(heading(3)->text(), QStringLiteral("G G Grandparents"));
    EXPECT_FALSE(shown(page->findChild<QWidget*>(QStringLiteral("imgExplore"))));
    // The subject's box holds its details; a column further out stands further right.
    EXPECT_EQ(box(0)->text(), QStringLiteral("Subject\nSex:     Sow\nDOB:    15/03/2024\nBreed:  \nColour:   C0\nReg: R0"));
    EXPECT_LT(box(1)->x(), box(3)->x());
    EXPECT_LT(box(3)->y(), box(4)->y());
}

TEST_F(FamilyTreePageTest, TheSevenGenerationFormShowsEveryBoxToTheLastConnector)
{
    addFullPedigree();
    choose(ancestor(0));
    showForm(7);

    ASSERT_EQ(control()->generations(), 7);
    EXPECT_EQ(control()->family().size(), 256);
    const double dpi = control()->dotsPerInch();
    const PedigreeGeometry g = makeSevenGen();
    for (int k = 1; k < kPedigreeBoxes; ++k) {
        ASSERT_TRUE(shown(box(k))) << k;
        EXPECT_EQ(box(k)->text(), ancestor(k) + QLatin1Char(' ')) << k;
        EXPECT_EQ(box(k)->geometry(), TwipsToPixels(g.boxes[k], dpi)) << k;
    }
    // The subject has no connector here; bracket(126) is the last.
    EXPECT_FALSE(shown(bracket(0)));
    for (int k = 1; k < kPedigreeBrackets; ++k)
        EXPECT_TRUE(shown(bracket(k))) << k;
    for (int h = 0; h < kPedigreeHeadings; ++h)
        EXPECT_TRUE(shown(heading(h))) << h;
    EXPECT_EQ(heading(6)->text(), QStringLiteral("G G G G G Grandparents"));
    EXPECT_TRUE(shown(page->findChild<QWidget*>(QStringLiteral("imgExplore"))));
    // The surface is larger than the page: both scroll bars move it, 500 twips a step.
    auto* scroll = control()->scrollArea();
    EXPECT_EQ(scroll->widget()->size(),
              QSize(TwipsToPixels(g.surface.width(), dpi), TwipsToPixels(g.surface.height(), dpi)));
    EXPECT_EQ(page->findChild<QScrollBar*>(QStringLiteral("vScrollPedigree"))->singleStep(), TwipsToPixels(500, dpi));
    EXPECT_TRUE(page->findChild<QScrollBar*>(QStringLiteral("hScrollPedigree")) != nullptr);
}

TEST_F(FamilyTreePageTest, DetailsShowTheTemplatesFieldsAndNoPopups)
{
    addFullPedigree();
    choose(ancestor(0));
    showForm(7, true);
    EXPECT_EQ(box(1)->text(), QStringLiteral("Anc 001\nColour: C1\nRegistration: R1"));
    EXPECT_EQ(box(6)->text(), QStringLiteral("Anc 006\nColour: C6\nRegistration: R6"));
    EXPECT_EQ(box(7)->text(), QStringLiteral("Anc 007\n[C7] [R7]"));
    EXPECT_EQ(box(30)->text(), QStringLiteral("Anc 030\n[C30] [R30]"));
    EXPECT_EQ(box(31)->text(), QStringLiteral("Anc 031"));
    EXPECT_EQ(box(254)->text(), QStringLiteral("Anc 254"));

    page->show();
    sendMouse(box(3), QEvent::MouseMove);
    EXPECT_FALSE(page->findChild<QTimer*>(QStringLiteral("tmrShowPopup"))->isActive());
    EXPECT_TRUE(control()->popup() == nullptr || !control()->popup()->isVisible());

    // Back to names only when the box is unticked.
    page->findChild<QCheckBox*>(QStringLiteral("chkShowDetails"))->click();
    EXPECT_EQ(box(1)->text(), QStringLiteral("Anc 001 "));
}

TEST_F(FamilyTreePageTest, NobodyLeavesAGapWithoutCaptionOrConnector)
{
    add(QStringLiteral("Kit"), QStringLiteral("unknown"), QStringLiteral("Doe"));
    add(QStringLiteral("Doe"), QStringLiteral("UNKNOWN"), QString(), QStringLiteral("female"));
    add(QStringLiteral("Pip"), QStringLiteral("Z"), QStringLiteral("Doe"));
    add(QStringLiteral("Z"), QStringLiteral("Doe"), QStringLiteral("Doe"));
    choose(QStringLiteral("Kit"));
    showForm(4);

    EXPECT_FALSE(shown(box(1)));
    EXPECT_EQ(box(1)->text(), QString());
    EXPECT_TRUE(shown(box(2)));
    EXPECT_EQ(box(2)->text(), QStringLiteral("Doe "));
    EXPECT_TRUE(shown(bracket(0)));
    // Behind "unknown" and behind a mother with neither parent, nothing at all.
    for (int k = 3; k <= 30; ++k) {
        EXPECT_FALSE(shown(box(k))) << k;
        EXPECT_EQ(box(k)->text(), QString()) << k;
    }
    for (int k = 1; k < kPedigreeBrackets; ++k)
        EXPECT_FALSE(shown(bracket(k))) << k;
    EXPECT_TRUE(shown(heading(0)));
    EXPECT_FALSE(shown(heading(1)));

    // A parent of one character is nobody too, though it has a record and parents of its own.
    choose(QStringLiteral("Pip"));
    showForm(4);
    EXPECT_FALSE(shown(box(1)));
    EXPECT_TRUE(shown(box(2)));
    EXPECT_TRUE(shown(box(3)));
    EXPECT_TRUE(shown(bracket(0)));
    // The walk goes on behind it: its parents have their boxes and their connector.
    EXPECT_TRUE(shown(bracket(1)));

    // Placeholder captions are cleared.
    box(40)->setText(QStringLiteral(".placeholder"));
    control()->ClearBlanks();
    EXPECT_EQ(box(40)->text(), QString());
}

TEST_F(FamilyTreePageTest, ABlankSubjectDrawsAnEmptyTree)
{
    addFullPedigree();
    showForm(7);
    for (int k = 0; k < kPedigreeBoxes; ++k)
        ASSERT_FALSE(shown(box(k))) << k;
    for (int k = 0; k < kPedigreeBrackets; ++k)
        ASSERT_FALSE(shown(bracket(k))) << k;
    for (int h = 0; h < kPedigreeHeadings; ++h)
        EXPECT_FALSE(shown(heading(h))) << h;
}

TEST_F(FamilyTreePageTest, ChampionsAreRedByPrefixOrTitle)
{
    add(QStringLiteral("Kit"), QStringLiteral("Ch Pepper"), QStringLiteral("Salt"));
    add(QStringLiteral("Ch Pepper"), QStringLiteral("Chester"), QStringLiteral("grand ch Nutmeg"));
    add(QStringLiteral("Salt"), QString(), QString(), QStringLiteral("female"), QStringLiteral("Rosebank"));
    add(QStringLiteral("Chester"), QString(), QString());
    add(QStringLiteral("grand ch Nutmeg"), QString(), QString(), QStringLiteral("female"));
    choose(QStringLiteral("Kit"));
    showForm(4);

    const QColor red(255, 0, 0), black(0, 0, 0);
    EXPECT_EQ(box(1)->text(), QStringLiteral("Ch Pepper "));
    EXPECT_EQ(box(1)->palette().color(QPalette::WindowText), red);
    EXPECT_EQ(box(2)->text(), QStringLiteral("Rosebank Salt "));
    EXPECT_EQ(box(2)->palette().color(QPalette::WindowText), red);
    EXPECT_EQ(box(3)->text(), QStringLiteral("Chester "));
    EXPECT_EQ(box(3)->palette().color(QPalette::WindowText), black);
    EXPECT_EQ(box(4)->palette().color(QPalette::WindowText), red);
}

TEST_F(FamilyTreePageTest, NamesWithApostrophesAndLitterMates)
{
    add(QStringLiteral("Pip"), QStringLiteral("O$Hara"), QStringLiteral("Mum"));
    add(QStringLiteral("Pop"), QStringLiteral("O$Hara"), QStringLiteral("Mum"), QStringLiteral("female"),
        QStringLiteral("Rosebank"));
    add(QStringLiteral("Pup"), QStringLiteral("O$Hara"), QStringLiteral("Mum"), QStringLiteral("undefined"));
    add(QStringLiteral("Half"), QStringLiteral("O$Hara"), QStringLiteral("Other"));
    add(QStringLiteral("O$Hara"), QStringLiteral("Pa$1"), QString());
    add(QStringLiteral("Mum"), QString(), QString(), QStringLiteral("female"));
    choose(QStringLiteral("Pip"));
    showForm(4);

    EXPECT_EQ(box(1)->text(), QStringLiteral("O'Hara "));
    // A "$" before a digit is no apostrophe; a parent without a record of its own still has its box.
    EXPECT_EQ(box(3)->text(), QStringLiteral("Pa$1 "));
    EXPECT_EQ(control()->family().at(1), QStringLiteral("O$Hara"));
    EXPECT_TRUE(box(0)->text().endsWith(QStringLiteral("\nSame Family Tree:\nRosebank Pop (Sow)\nPup (undefined)")))
        << box(0)->text().toStdString();
}

TEST_F(FamilyTreePageTest, FoundersAreNoLitterMatesOfEachOther)
{
    add(QStringLiteral("Founder"), QString(), QStringLiteral("Unknown"));
    add(QStringLiteral("Stray"), QString(), QStringLiteral("Unknown"));
    add(QStringLiteral("Waif"), QStringLiteral("Unknown"), QString());
    choose(QStringLiteral("Founder"));
    showForm(4);
    EXPECT_FALSE(box(0)->text().contains(QStringLiteral("Same Family Tree:"))) << box(0)->text().toStdString();
}

TEST_F(FamilyTreePageTest, TheHoverPopupShowsTheBoxsAnimalAndLeavesTheCurrentOne)
{
    add(QStringLiteral("Pip"), QStringLiteral("O$Hara"), QStringLiteral("Mum"));
    add(QStringLiteral("O$Hara"), QString(), QString());
    add(QStringLiteral("Mum"), QString(), QString(), QStringLiteral("female"));
    choose(QStringLiteral("Pip"));
    const qint32 id = gAnimal.id;
    showForm(4);
    page->show();

    sendMouse(box(1), QEvent::MouseMove);
    ASSERT_TRUE(control()->popup() != nullptr);
    EXPECT_EQ(control()->popup()->popupAnimal().name, QStringLiteral("O'Hara"));
    EXPECT_TRUE(page->findChild<QTimer*>(QStringLiteral("tmrShowPopup"))->isActive());
    EXPECT_TRUE(waitFor([&] { return control()->popup()->isVisible(); }));
    EXPECT_EQ(control()->popup()->findChild<QLabel*>(QStringLiteral("lblNotesBold"))->text(), QStringLiteral("O'Hara"));
    EXPECT_EQ(gAnimal.name, QStringLiteral("Pip"));
    EXPECT_EQ(gAnimal.id, id);

    // Another box: the pop-up follows; the background closes it.
    sendMouse(box(2), QEvent::MouseMove);
    EXPECT_EQ(control()->popup()->popupAnimal().name, QStringLiteral("Mum"));
    sendMouse(page->findChild<QWidget*>(QStringLiteral("imgBackground")), QEvent::MouseMove);
    EXPECT_FALSE(control()->popup()->isVisible());
    EXPECT_FALSE(page->findChild<QTimer*>(QStringLiteral("tmrShowPopup"))->isActive());
    EXPECT_EQ(gAnimal.name, QStringLiteral("Pip"));
}

TEST_F(FamilyTreePageTest, BrowsingStopsAtTheEndsOfTheList)
{
    add(QStringLiteral("Ash"), QStringLiteral("Dad"), QString());
    add(QStringLiteral("Birch"), QStringLiteral("Mum"), QString());
    const QStringList list = {QStringLiteral("Ash"), QStringLiteral("Birch")};
    int row = 0;
    choose(list.at(row));
    showForm(4);
    page->setBrowser([&](int step) {
        if (row + step < 0 || row + step >= list.size())
            return false;
        row += step;
        choose(list.at(row));
        page->LoadTree();
        return true;
    });
    auto* next = page->findChild<QToolButton*>(QStringLiteral("imgNext"));
    auto* previous = page->findChild<QToolButton*>(QStringLiteral("imgPrevious"));
    auto* label = page->findChild<QLabel*>(QStringLiteral("lblBrowse"));
    EXPECT_EQ(label->text(), QStringLiteral("Browse"));

    previous->click();
    EXPECT_EQ(label->text(), QStringLiteral("First Record"));
    EXPECT_EQ(row, 0);
    next->click();
    EXPECT_EQ(label->text(), QStringLiteral("Browse"));
    EXPECT_EQ(box(1)->text(), QStringLiteral("Mum "));
    next->click();
    EXPECT_EQ(label->text(), QStringLiteral("Last Record"));
    EXPECT_EQ(row, 1);
    EXPECT_EQ(box(1)->text(), QStringLiteral("Mum "));
    previous->click();
    EXPECT_EQ(label->text(), QStringLiteral("Browse"));
    EXPECT_EQ(box(1)->text(), QStringLiteral("Dad "));
}

TEST_F(FamilyTreePageTest, ADoubleClickOpensTheBoxsAnimalForEditing)
{
    add(QStringLiteral("Pip"), QStringLiteral("O$Hara"), QStringLiteral("Mum"));
    add(QStringLiteral("O$Hara"), QString(), QString());
    add(QStringLiteral("Mum"), QString(), QString(), QStringLiteral("female"));
    choose(QStringLiteral("Pip"));
    showForm(4);
    QStringList edited;
    page->setEditor([&](const QString& name) { edited << name; });
    sendMouse(box(1), QEvent::MouseButtonDblClick, Qt::LeftButton);
    sendMouse(box(5), QEvent::MouseButtonDblClick, Qt::LeftButton); // an empty box
    EXPECT_EQ(edited, QStringList{QStringLiteral("O'Hara")});

    // The edit path itself: frmAdd in edit mode on that animal, then the page behind refilled.
    bool looked = false;
    EditFromTree(&host, QStringLiteral("O'Hara"), nullptr, [&](frmAdd& form) {
        looked = true;
        EXPECT_TRUE(EditMode);
        EXPECT_TRUE(form.editing());
        EXPECT_EQ(form.currentOldName(), QStringLiteral("O'Hara"));
        EXPECT_EQ(form.findChild<QComboBox*>(QStringLiteral("searchList"))->currentText(), QStringLiteral("O'Hara"));
        form.findChild<QComboBox*>(QStringLiteral("cboMother"))->setEditText(QStringLiteral("Mum"));
        EXPECT_TRUE(form.SaveRecord(false));
    });
    EXPECT_TRUE(looked);
    EXPECT_FALSE(EditMode);
    EXPECT_EQ(host.calls.last(), QStringLiteral("run"));
    Recordset rs = gDatabase.OpenRecordset(QStringLiteral("SELECT pd FROM tree WHERE name = 'O$Hara'"));
    EXPECT_EQ(rs.Fields(0).toString(), QStringLiteral("Mum"));
    EXPECT_EQ(gAnimal.name, QStringLiteral("Pip"));
}
