// SPDX-License-Identifier: GPL-3.0-or-later
// The page list every page uses, and the cage window that is its first user.
#include "support/TestEnv.h"

#include "records/CageList.h"
#include "records/Lists.h"
#include "records/forms/RecordHost.h"
#include "records/forms/ReportList.h"
#include "records/forms/frmCage.h"
#include "session/OpenDataFile.h"
#include "session/globals.h"
#include "store/DataFile.h"

#include <QAbstractItemModel>
#include <QScrollBar>

namespace {

// Reminders as their page lists them: the date as stored, the text, the done flag, the sort date.
ReportRows reminders(const QList<QStringList>& rows)
{
    ReportRows r;
    r.addColumn(QStringLiteral("ID"), 0);
    r.addColumn(QStringLiteral("Date"), 80, 4);
    r.addColumn(QStringLiteral("Reminder"), 200);
    r.addColumn(QStringLiteral("Done"), 50);
    r.addColumn(QStringLiteral("SQL Date"), 0);
    for (const QStringList& row : rows)
        r.rows << QStringList{row[0], row[1], row[2], DoneFlag(row[3]), ToIsoDate(row[1])};
    return r;
}

const QList<QStringList> kReminders = {{"1", "03/02/2026", "worm the does", "y"},
                                       {"2", "25/12/2025", "Order hay", "n"},
                                       {"3", "someday", "clean hutches", "Y"},
                                       {"4", "01/11/2026", "Book the vet", ""}};

QStringList column(const ReportList& list, int visible)
{
    QStringList out;
    for (const QStringList& row : list.visibleRows())
        out << row.at(visible);
    return out;
}

TEST(ReportListTest, ShowsRowsWithHiddenIdAndSortColumnsAndDoneFlags)
{
    TestEnv env;
    ReportList list;
    list.fill(reminders(kReminders));
    EXPECT_EQ(list.visibleCaptions(), (QStringList{"Date", "Reminder", "Done"}));
    EXPECT_EQ(list.visibleWidths(), (QList<int>{80, 200, 50}));
    EXPECT_EQ(column(list, 2), (QStringList{"/", "No ", "/", "No "}));
    EXPECT_EQ(list.keyOf(1), "A2");
    // Every other row in the button colour, the rest left to the view.
    const QAbstractItemModel* m = list.model();
    EXPECT_FALSE(m->index(0, 1).data(Qt::BackgroundRole).isValid());
    EXPECT_EQ(m->index(1, 1).data(Qt::BackgroundRole).value<QColor>(), list.palette().color(QPalette::Button));
}

TEST(ReportListTest, HeaderClicksSortByTheHiddenDateOrByTextAndReverse)
{
    TestEnv env;
    ReportList list;
    list.fill(reminders(kReminders));
    const struct {
        const char* name;
        int column;
        QStringList ids;
    } clicks[] = {
        {"Date sorts as dates, no date first", 1, {"3", "2", "1", "4"}},
        {"the same header again reverses", 1, {"4", "1", "2", "3"}},
        {"another header sorts by text, case-blind", 2, {"4", "3", "2", "1"}},
    };
    for (const auto& c : clicks) {
        list.sortByColumn(c.column);
        QStringList ids;
        for (int row = 0; row < list.count(); ++row)
            ids << list.idOf(row);
        EXPECT_EQ(ids, c.ids) << c.name;
    }
    // The bands follow the rows as shown, not as filled.
    EXPECT_TRUE(list.model()->index(1, 1).data(Qt::BackgroundRole).isValid());
    EXPECT_FALSE(list.model()->index(2, 1).data(Qt::BackgroundRole).isValid());
}

TEST(ReportListTest, ARefillKeepsOrderSelectionAndScroll)
{
    TestEnv env;
    ReportList list;
    list.resize(400, 120);
    QList<QStringList> many;
    for (int i = 1; i <= 200; ++i)
        many << QStringList{QString::number(i), QStringLiteral("01/01/2026"), QStringLiteral("Task %1").arg(i), "n"};
    list.fill(reminders(many));
    list.show();
    ASSERT_TRUE(list.selectId(QStringLiteral("150")));
    list.verticalScrollBar()->setValue(100);
    many.removeAt(0); // the page refills after a row went
    list.fill(reminders(many));
    EXPECT_EQ(list.selectedId(), "150");
    EXPECT_EQ(list.verticalScrollBar()->value(), 100);

    QStringList activated;
    QObject::connect(&list, &ReportList::activated, [&](const QString& id) { activated << id; });
    emit list.doubleClicked(list.currentIndex());
    EXPECT_EQ(activated, QStringList{"150"});
}

class HostSpy : public RecordHost {
public:
    QStringList calls;
    void refillSearchList() override {}
    void putFirstInSearchList(const QString& name) override { calls << name; }
    QString shownPageKey() const override { return QStringLiteral("Individual"); }
    void SelectTab(const QString&) override {}
    void RunTabProcess() override {}
    bool quickLinkAvailable(const QString&) const override { return false; }
    void quickLink(const QString&) override {}
};

TEST(CageWindow, ListsTheCurrentStockByCageAndADoubleClickMakesOneCurrent)
{
    TestEnv env;
    ASSERT_TRUE(CreateDataFile(QStringLiteral("Rabbits.cav"), QString()));
    ASSERT_TRUE(OpenDataFile(env.dataFolder() + QStringLiteral("Rabbits.cav")));
    gDatabase.Execute(QStringLiteral("UPDATE cavyuser SET fldMale = 'Buck', fldFemale = 'Doe', fldPrefix = 'Ch,GCh'"));
    ReadUserSettings();
    Lists::LoadTitles(gUser.Prefix);
    const char* rows[] = {
        "'GCh Clover', 'female', 'b2', 'T9', 'Dutch', 0, 0, -1",
        "'Bramble', 'male', 'A10', 'T1', 'Rex', 0, 0, -1",
        "'Sold One', 'male', 'A0', 'T2', 'Rex', 0, -1, -1",  // sold: not current stock
        "'Gone', 'female', 'A0', 'T3', 'Rex', -1, 0, -1",   // deceased
        "'Visitor', 'female', 'A0', 'T4', 'Rex', 0, 0, 0",  // not mine
        "'ch Acorn', 'male', 'A9', '', 'Dutch', 0, 0, -1",
    };
    for (const char* r : rows)
        gDatabase.Execute(QStringLiteral("INSERT INTO tree (name, sex, cage, tag, breed, deceased, sold, owner) "
                                         "VALUES (%1)").arg(QLatin1String(r)));
    const ReportRows cages = CageRows(gDatabase);
    QStringList shown;
    for (const QStringList& row : cages.rows)
        shown << row.mid(1).join(QLatin1Char('|'));
    EXPECT_EQ(shown, (QStringList{"A9|Acorn||Buck|Dutch", "A10|Bramble|T1|Buck|Rex", "b2|Clover|T9|Doe|Dutch"}));

    HostSpy host;
    frmCage form(&host);
    EXPECT_EQ(form.windowTitle(), "Cage and Tag Numbers");
    ASSERT_EQ(form.list()->count(), 3);
    emit form.list()->activated(form.list()->idOf(2));
    EXPECT_EQ(host.calls, QStringList{"GCh Clover"});
    EXPECT_EQ(form.result(), QDialog::Accepted);
    CloseDatabase();
    gUser = User();
}

} // namespace
