// SPDX-License-Identifier: GPL-3.0-or-later
// The Inbreeding Calculator driven by its controls: what it shows on opening, a test mating with its
// report and gauge, the refusal of more than ten generations, the bulk runs with their question, their
// disabled buttons and their sorted rows, the stored lists, and sorting by a header.
#include "support/TestEnv.h"

#include "genetics/forms/frmCalculator.h"
#include "records/Animal.h"
#include "session/OpenDataFile.h"
#include "session/globals.h"
#include "store/DataFile.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTimer>
#include <QTreeWidget>

namespace {

class Calculator : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(CreateDataFile(QStringLiteral("Calc.cav"), QString()));
        ASSERT_TRUE(OpenDataFile(env.dataFolder() + QStringLiteral("Calc.cav")));
        gDatabase.Execute(
            QStringLiteral("UPDATE cavyuser SET fldMale = 'Buck', fldFemale = 'Doe', fldAnimal = 'Rabbit'"));
        ReadUserSettings();
        // name, PS, PD, sex, coi, sold
        const char* rows[][6] = {
            {"Grandsire", "", "", "male", "0", "0"},         {"Granddam", "", "", "female", "7.5", "0"},
            {"O$Brien", "Grandsire", "Granddam", "male", "", "0"}, {"Sister", "Grandsire", "Granddam", "female", "", "-1"},
            {"Kit", "O$Brien", "Sister", "male", "NULL", "0"},
        };
        int day = 0;
        for (const auto& r : rows) {
            const QString coi = QLatin1String(r[4]) == QLatin1String("NULL") ? QStringLiteral("NULL")
                                                                             : QStringLiteral("'%1'").arg(QLatin1String(r[4]));
            gDatabase.Execute(QStringLiteral("INSERT INTO tree (name, ps, pd, sex, coi, sold, deceased, owner, breed, dob) "
                                             "VALUES ('%1', '%2', '%3', '%4', %5, %6, 0, -1, 'Rex', #%7#)")
                                  .arg(QLatin1String(r[0]), QLatin1String(r[1]), QLatin1String(r[2]),
                                       QLatin1String(r[3]), coi, QLatin1String(r[5]),
                                       QDate(2020, 1, 1).addDays(day++).toString(QStringLiteral("MM/dd/yyyy"))));
        }
        QString current = QStringLiteral("Kit");
        gAnimal = Animal();
        gAnimal.SetCurrentAnimal(current);
        env.ui().clear();
        form = std::make_unique<frmCalculator>();
        form->resize(900, 600);
        form->show();
        QApplication::processEvents();
    }
    void TearDown() override
    {
        form.reset();
        CloseDatabase();
        gAnimal = Animal();
        gUser = User();
    }

    template <typename T> T* child(const QString& name) const
    {
        T* found = form->findChild<T*>(name);
        EXPECT_NE(found, nullptr) << name.toStdString();
        return found;
    }
    QTreeWidget* list() const { return child<QTreeWidget>(QStringLiteral("lstCoefficient")); }
    QStringList headers() const
    {
        QStringList h;
        for (int i = 0; i < list()->columnCount(); ++i)
            h << list()->headerItem()->text(i);
        return h;
    }
    QStringList rows(int firstColumn = 0) const
    {
        QStringList out;
        for (int i = 0; i < list()->topLevelItemCount(); ++i) {
            QStringList cells;
            for (int c = firstColumn; c < list()->columnCount(); ++c)
                cells << list()->topLevelItem(i)->text(c);
            out << cells.join(QLatin1Char('|'));
        }
        return out;
    }
    QStringList buttonTexts() const
    {
        QStringList t;
        for (const char* n : {"cmdCalculateCoef", "cmdShow", "cmdShowMine", "cmdCalculateAllCOI", "cmdUpdateMine"})
            t << child<QPushButton>(QLatin1String(n))->text() +
                     (child<QPushButton>(QLatin1String(n))->isEnabled() ? QString() : QStringLiteral(" (off)"));
        return t;
    }
    static QString coi(const QString& name)
    {
        Recordset rs = gDatabase.OpenRecordset(QStringLiteral("SELECT coi FROM tree WHERE name = '") + name +
                                               QLatin1Char('\''));
        return rs.Fields(0).isNull() ? QStringLiteral("<null>") : rs.Fields(0).toString();
    }

    TestEnv env;
    std::unique_ptr<frmCalculator> form;
};

const QStringList kIdle = {"Calculate", "Show All", "Show Mine", "Update All", "Update mine"};

} // namespace

TEST_F(Calculator, OpensWithTheSpeciesWordsListsAndTheCurrentAnimal)
{
    EXPECT_EQ(form->windowTitle(), QStringLiteral("Inbreeding Calculator"));
    EXPECT_EQ(child<QLabel>(QStringLiteral("lblMaleTitle"))->text(), QStringLiteral("Buck:"));
    EXPECT_EQ(child<QLabel>(QStringLiteral("lblFemaleTitle"))->text(), QStringLiteral("Doe:"));
    EXPECT_TRUE(child<QLabel>(QStringLiteral("lblHelp"))
                    ->text()
                    .startsWith(QStringLiteral("To calculate the inbreeding coefficient of offspring resulting from a "
                                               "test mating between two of your Rabbits choose a breeding partner")));
    QComboBox* males = child<QComboBox>(QStringLiteral("cboCoefficient(1)"));
    QComboBox* females = child<QComboBox>(QStringLiteral("cboCoefficient(2)"));
    QStringList maleItems, femaleItems, generations;
    for (int i = 0; i < males->count(); ++i)
        maleItems << males->itemText(i);
    for (int i = 0; i < females->count(); ++i)
        femaleItems << females->itemText(i);
    EXPECT_EQ(maleItems, QStringList({"Unknown", "Grandsire", "Kit", "O'Brien"}));
    EXPECT_EQ(femaleItems, QStringList({"Unknown", "Granddam", "Sister"}));
    EXPECT_EQ(males->currentText(), QStringLiteral("Kit"));
    EXPECT_EQ(females->currentText(), QString());
    QComboBox* g = child<QComboBox>(QStringLiteral("cboGenerations"));
    for (int i = 0; i < g->count(); ++i)
        generations << g->itemText(i);
    EXPECT_EQ(generations, QStringList({"4", "5", "6", "7", "8", "9", "10"}));
    EXPECT_EQ(g->currentText(), QStringLiteral("6"));
    EXPECT_EQ(buttonTexts(), kIdle);
    EXPECT_EQ(child<QPushButton>(QStringLiteral("cmdCalculateAllCOI"))->toolTip(),
              QStringLiteral("Calculate all COI and save them to your database"));
    QPushButton* print = child<QPushButton>(QStringLiteral("cmdPrintInbreeding"));
    EXPECT_FALSE(print->isEnabled());
    EXPECT_EQ(print->toolTip(), QStringLiteral("Not available yet"));

    // The current stock leaves out the sold sister.
    child<QCheckBox>(QStringLiteral("optMotherCStock"))->click();
    EXPECT_EQ(females->count(), 2);
    EXPECT_EQ(females->itemText(1), QStringLiteral("Granddam"));
}

TEST_F(Calculator, ATestMatingReportsTheCommonAncestorsAndFillsTheGauge)
{
    child<QComboBox>(QStringLiteral("cboCoefficient(1)"))->setEditText(QStringLiteral("O'Brien"));
    child<QComboBox>(QStringLiteral("cboCoefficient(2)"))->setEditText(QStringLiteral("Sister"));
    child<QPushButton>(QStringLiteral("cmdCalculateCoef"))->click();
    EXPECT_EQ(headers(), QStringList({"id", "Common Ancestor", "Gen. from Buck", "Gen. from Doe", "Contribution %",
                                      "Common Ancestor's own Inbreeding"}));
    EXPECT_TRUE(list()->isColumnHidden(0));
    EXPECT_EQ(list()->columnWidth(5), 3 * list()->viewport()->width());
    // Granddam's own 7.5% adds to her path.
    EXPECT_EQ(rows(), QStringList({"|Grandsire|2|2|12.5%|", "|Granddam|2|2|13.44%|"}));
    EXPECT_EQ(child<QLabel>(QStringLiteral("lblDescription"))->text(), QStringLiteral("25.94%"));
    QLabel* bar = child<QLabel>(QStringLiteral("lblGuage"));
    QLabel* background = child<QLabel>(QStringLiteral("lblGuageBackground"));
    EXPECT_EQ(bar->width(), qRound(background->width() * 0.259375));
    EXPECT_EQ(bar->palette().color(QPalette::Window), QColor(Qt::red));
    EXPECT_EQ(buttonTexts(), kIdle);
    // The partners keep what they had; the common ancestors now hold their contributions.
    EXPECT_EQ(coi(QStringLiteral("O$Brien")), QString());
    EXPECT_EQ(coi(QStringLiteral("Sister")), QString());
    EXPECT_EQ(coi(QStringLiteral("Granddam")), QStringLiteral("13.44"));

    if (qEnvironmentVariableIsSet("TESSORIN_SCREENSHOTS")) {
        QApplication::processEvents();
        form->grab().save(qEnvironmentVariable("TESSORIN_SCREENSHOTS") + QStringLiteral("/calculator-test-mating.png"));
    }

    // One animal: the other side blank.
    child<QComboBox>(QStringLiteral("cboCoefficient(1)"))->setEditText(QString());
    child<QComboBox>(QStringLiteral("cboCoefficient(2)"))->setEditText(QStringLiteral("Granddam"));
    child<QPushButton>(QStringLiteral("cmdCalculateCoef"))->click();
    EXPECT_TRUE(rows().isEmpty());
    EXPECT_EQ(child<QLabel>(QStringLiteral("lblDescription"))->text(), QStringLiteral("0%"));
    EXPECT_EQ(bar->palette().color(QPalette::Window), QColor(Qt::blue));
    EXPECT_EQ(coi(QStringLiteral("Granddam")), QStringLiteral("0"));

    // Nothing chosen: the columns are set, and that is all.
    child<QComboBox>(QStringLiteral("cboCoefficient(2)"))->setEditText(QString());
    child<QPushButton>(QStringLiteral("cmdCalculateCoef"))->click();
    EXPECT_EQ(child<QLabel>(QStringLiteral("lblDescription"))->text(), QString());
    EXPECT_EQ(buttonTexts(), kIdle);
}

TEST_F(Calculator, MoreThanTenGenerationsIsRefusedAndSetBackToTen)
{
    child<QComboBox>(QStringLiteral("cboGenerations"))->setEditText(QStringLiteral("14"));
    child<QPushButton>(QStringLiteral("cmdCalculateCoef"))->click();
    ASSERT_EQ(env.ui().calls().size(), 1);
    EXPECT_EQ(env.ui().calls().at(0).text, QStringLiteral("Maximum search is 10 generations."));
    EXPECT_EQ(env.ui().calls().at(0).title, QStringLiteral("Error"));
    EXPECT_EQ(child<QComboBox>(QStringLiteral("cboGenerations"))->currentText(), QStringLiteral("10"));
    EXPECT_EQ(rows(), QStringList({"|Grandsire|2|2|12.5%|", "|Granddam|2|2|13.44%|"}));
}

TEST_F(Calculator, UpdateAllAsksFirstAndWorksWithItsButtonsOff)
{
    env.ui().queueAnswer(Ui::Answer::Cancel);
    child<QPushButton>(QStringLiteral("cmdCalculateAllCOI"))->click();
    ASSERT_EQ(env.ui().calls().size(), 1);
    EXPECT_EQ(env.ui().calls().at(0).title, QStringLiteral("Update Database"));
    EXPECT_EQ(env.ui().calls().at(0).buttons, Ui::Buttons::OkCancel);
    EXPECT_EQ(env.ui().calls().at(0).text,
              QStringLiteral("This operation will calculate all inbreeding coefficients for all your records and update "
                             "your database with the results. It could take a considerable time if you have a lot of "
                             "Rabbits.\n\nYou only need to run this if - \n  * this is the first time you have "
                             "calculated coefficents for this database.\n  * you have added new Rabbits since the last "
                             "time it ran it.\n  * you want to change the generations searched.\nDo you want to "
                             "continue?"));
    EXPECT_EQ(coi(QStringLiteral("Granddam")), QStringLiteral("7.5"));
    EXPECT_EQ(buttonTexts(), kIdle);

    QStringList during;
    QString gaugeDuring;
    bool closedDuring = false;
    QTimer::singleShot(0, form.get(), [&] {
        during = buttonTexts();
        gaugeDuring = child<QLabel>(QStringLiteral("lblDescription"))->text();
        closedDuring = form->close();
    });
    child<QPushButton>(QStringLiteral("cmdCalculateAllCOI"))->click();
    EXPECT_EQ(during, QStringList({"Please Wait (off)", "Please Wait (off)", "Please Wait (off)", "Please Wait (off)",
                                   "Please Wait (off)"}));
    EXPECT_FALSE(closedDuring);
    EXPECT_EQ(gaugeDuring, QStringLiteral("20% completed")); // after the first of five records
    EXPECT_EQ(headers(), QStringList({"Name", "Breed", "Sex", "Inbreeding Coefficient"}));
    // Sorted by the coefficient, highest first; the rest in the order of birth.
    EXPECT_EQ(rows(), QStringList({"Kit|Rex|Buck|25%", "Grandsire|Rex|Buck|00%", "Granddam|Rex|Doe|00%",
                                   "O'Brien|Rex|Buck|00%", "Sister|Rex|Doe|00%"}));
    EXPECT_EQ(child<QLabel>(QStringLiteral("lblDescription"))->text(), QStringLiteral("Operation completed"));
    EXPECT_EQ(child<QComboBox>(QStringLiteral("cboCoefficient(1)"))->currentText(), QString());
    EXPECT_EQ(buttonTexts(), kIdle);
    EXPECT_EQ(coi(QStringLiteral("Kit")), QStringLiteral("25"));
    EXPECT_TRUE(form->isVisible());
}

TEST_F(Calculator, TheStoredListsAndSortingByAHeader)
{
    child<QPushButton>(QStringLiteral("cmdShow"))->click();
    EXPECT_EQ(headers(), QStringList({"ID", "Name", "Breed", "Sex", "Inbreeding Coefficient"}));
    EXPECT_TRUE(list()->isColumnHidden(0));
    EXPECT_EQ(child<QLabel>(QStringLiteral("lblDescription"))->text(), QStringLiteral("List of all coefficient saved."));
    EXPECT_EQ(rows(1), QStringList({"Kit|Rex|Buck|Click Update All to calculate", "Granddam|Rex|Doe|07.5%",
                                    "Grandsire|Rex|Buck|0%", "O'Brien|Rex|Buck|%", "Sister|Rex|Doe|%"}));

    child<QPushButton>(QStringLiteral("cmdShowMine"))->click();
    EXPECT_EQ(child<QLabel>(QStringLiteral("lblDescription"))->text(),
              QStringLiteral("List of coefficients saved for my stock."));
    EXPECT_EQ(list()->topLevelItemCount(), 4);

    // Each click on a header sorts by that column and turns the order round.
    list()->header()->sectionClicked(1);
    EXPECT_EQ(list()->topLevelItem(0)->text(1), QStringLiteral("Granddam"));
    list()->header()->sectionClicked(1);
    EXPECT_EQ(list()->topLevelItem(0)->text(1), QStringLiteral("O'Brien"));
}
