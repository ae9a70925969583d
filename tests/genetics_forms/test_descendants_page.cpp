// SPDX-License-Identifier: GPL-3.0-or-later
// The descendants page on a small stud: what the nine lists, their hidden companions and titles show for
// the current animal, and what a click on an entry highlights and tells.
#include "support/TestEnv.h"

#include "genetics/forms/DescendantsPage.h"
#include "records/Animal.h"
#include "session/OpenDataFile.h"
#include "session/globals.h"
#include "store/DataFile.h"

#include <QApplication>
#include <QLabel>
#include <QListWidget>
#include <QMouseEvent>

namespace {

class DescendantsPageTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(CreateDataFile(QStringLiteral("Cavies.cav"), QString()));
        ASSERT_TRUE(OpenDataFile(env.dataFolder() + QStringLiteral("Cavies.cav")));
        gUser.Animal = QStringLiteral("Cavy");
        gUser.Father = QStringLiteral("Boar");
        gUser.Mother = QStringLiteral("Sow");
        const char* rows[][4] = {
            {"Sire", "male", "Unknown", "Unknown"}, {"Kit A", "female", "Sire", "Dam"},
            {"O$Brien", "male", "Sire", "Dam"},     {"Grand", "male", "O$Brien", "Kit A"},
            {"Great", "female", "Grand", "unknown"},
        };
        for (const auto& r : rows)
            gDatabase.Execute(QStringLiteral("INSERT INTO tree (name, sex, ps, pd) VALUES ('%1', '%2', '%3', '%4')")
                                  .arg(QLatin1String(r[0]), QLatin1String(r[1]), QLatin1String(r[2]),
                                       QLatin1String(r[3])));
        page.resize(800, 560);
        page.show();
        QApplication::processEvents();
    }
    void TearDown() override
    {
        CloseDatabase();
        gAnimal = Animal();
        gUser = User();
    }

    static void setCurrent(const QString& name)
    {
        QString n = name;
        gAnimal = Animal();
        gAnimal.SetCurrentAnimal(n);
        ASSERT_EQ(gAnimal.name, name);
    }
    template <typename T> T* child(const QString& name) const
    {
        T* found = page.findChild<T*>(name);
        EXPECT_NE(found, nullptr) << name.toStdString();
        return found;
    }
    QListWidget* list(const char* name, int g) const
    {
        return child<QListWidget>(QLatin1String(name) + QStringLiteral("(%1)").arg(g));
    }
    static QStringList items(const QListWidget* list)
    {
        QStringList texts;
        for (int i = 0; i < list->count(); ++i)
            texts << list->item(i)->text();
        return texts;
    }
    static int selectedRow(const QListWidget* list)
    {
        const QList<QListWidgetItem*> selected = list->selectedItems();
        return selected.isEmpty() ? -1 : list->row(selected.first());
    }
    // A click on the row as the user makes it.
    static void click(QListWidget* list, int row)
    {
        list->scrollToItem(list->item(row));
        const QPointF at = list->visualItemRect(list->item(row)).center();
        QWidget* target = list->viewport();
        QMouseEvent press(QEvent::MouseButtonPress, at, target->mapToGlobal(at), Qt::LeftButton, Qt::LeftButton,
                          Qt::NoModifier);
        QMouseEvent release(QEvent::MouseButtonRelease, at, target->mapToGlobal(at), Qt::LeftButton, Qt::NoButton,
                            Qt::NoModifier);
        QApplication::sendEvent(target, &press);
        QApplication::sendEvent(target, &release);
    }

    TestEnv env;
    DescendantsPage page;
};

} // namespace

TEST_F(DescendantsPageTest, ListsHiddenListsTitlesAndTextsOfTheCurrentAnimal)
{
    setCurrent(QStringLiteral("Sire"));
    page.ShowDescendants();

    EXPECT_EQ(child<QLabel>(QStringLiteral("lblDescendantHelp"))->text(),
              QStringLiteral("Click on later generation Cavys to highlight ancestral line"));
    EXPECT_EQ(child<QLabel>(QStringLiteral("lblDescendantLegend"))->text(),
              QStringLiteral(">>  Bloodline continues\n>|   End of bloodline"));
    EXPECT_EQ(items(list("lstDescendants", 1)), QStringList({"  Kit A  >>", "  O'Brien  >>"}));
    EXPECT_EQ(items(list("lstDescendants", 2)), QStringList({"  Grand  >>", "  Grand  >>"}));
    EXPECT_EQ(items(list("lstDescendants", 3)), QStringList({"  Great  >|", "  Great  >|"}));
    EXPECT_EQ(items(list("lstDescendants_sex", 1)), QStringList({"female", "male"}));
    EXPECT_EQ(items(list("lstDescendants_Parent", 2)), QStringList({"Kit A", "O'Brien"}));
    EXPECT_FALSE(list("lstDescendants_sex", 1)->isVisible());
    EXPECT_FALSE(list("lstDescendants_Parent", 1)->isVisible());
    EXPECT_TRUE(list("lstDescendants", 9)->isVisible());
    EXPECT_EQ(child<QLabel>(QStringLiteral("lblDescendantTitle(2)"))->text(),
              QStringLiteral("Generation 2     (2 descendants)"));
    EXPECT_EQ(child<QLabel>(QStringLiteral("lblDescendantTitle(4)"))->text(), QStringLiteral("Generation 4"));

    // Another animal refills the page from nothing; the parents line of the last click goes.
    click(list("lstDescendants", 1), 0);
    setCurrent(QStringLiteral("Great"));
    page.ShowDescendants();
    for (int g = 1; g <= kDescendantGenerations; ++g) {
        EXPECT_EQ(list("lstDescendants", g)->count(), 0);
        EXPECT_EQ(list("lstDescendants_Parent", g)->count(), 0);
        EXPECT_EQ(child<QLabel>(QStringLiteral("lblDescendantTitle(%1)").arg(g))->text(),
                  QStringLiteral("Generation %1").arg(g));
    }
    EXPECT_EQ(child<QLabel>(QStringLiteral("lblDisplayParents"))->text(), QString());
}

TEST_F(DescendantsPageTest, AClickShowsTheParentsAndHighlightsTheLineBackToTheSubject)
{
    setCurrent(QStringLiteral("Sire"));
    page.ShowDescendants();
    auto* parents = child<QLabel>(QStringLiteral("lblDisplayParents"));

    click(list("lstDescendants", 2), 1);
    EXPECT_EQ(parents->text(), QStringLiteral("Grand        [ Boar: O'Brien   x   Sow: Kit A ]"));
    EXPECT_EQ(selectedRow(list("lstDescendants", 2)), 1);
    EXPECT_EQ(selectedRow(list("lstDescendants", 1)), 1);
    EXPECT_EQ(selectedRow(list("lstDescendants", 3)), -1);

    // A later generation: the line goes through the first Grand, and list 1 follows it.
    click(list("lstDescendants", 3), 1);
    EXPECT_EQ(parents->text(), QStringLiteral("Great        [ Boar: Grand   x   Sow: unknown ]"));
    EXPECT_EQ(selectedRow(list("lstDescendants", 3)), 1);
    EXPECT_EQ(selectedRow(list("lstDescendants", 2)), 0);
    EXPECT_EQ(selectedRow(list("lstDescendants", 1)), 0);

    // An earlier generation clears the later lists' selection.
    click(list("lstDescendants", 1), 1);
    EXPECT_EQ(parents->text(), QStringLiteral("O'Brien        [ Boar: Sire   x   Sow: Dam ]"));
    EXPECT_EQ(selectedRow(list("lstDescendants", 1)), 1);
    EXPECT_EQ(selectedRow(list("lstDescendants", 2)), -1);
    EXPECT_EQ(selectedRow(list("lstDescendants", 3)), -1);

    // The keyboard moves the clicked line too.
    list("lstDescendants", 2)->setCurrentRow(0);
    EXPECT_EQ(parents->text(), QStringLiteral("Grand        [ Boar: O'Brien   x   Sow: Kit A ]"));
    EXPECT_EQ(selectedRow(list("lstDescendants", 1)), 0);
}
