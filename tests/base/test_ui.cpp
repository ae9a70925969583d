// SPDX-License-Identifier: GPL-3.0-or-later
// The dialog service: the silent default and file filters.
#include "support/TestEnv.h"

#include "base/Ui.h"

namespace {

using Ui::Answer;
using Ui::Buttons;

TEST(UiFilter, PipedFiltersBecomeQtFilters)
{
    const char* const cases[][2] = {
        {"Data files (*.cav)|*.cav|All files (*.*)|*.*", "Data files (*.cav);;All files (*)"},
        {"Pictures|*.jpg;*.bmp", "Pictures (*.jpg *.bmp)"},
        {"CSV Files (*.csv)|*.csv", "CSV Files (*.csv)"},
        {"Text (tab separated)|*.txt", "Text (tab separated) (*.txt)"},
        {"Anything|", "Anything (*)"},
        {"Web pages (*.htm)", "Web pages (*.htm)"},
        {"", ""},
    };
    for (const auto& c : cases)
        EXPECT_EQ(Ui::qtFilter(c[0]), c[1]) << c[0];
}

TEST(UiService, WithoutAnInstalledServiceEveryBoxAnswersOkAndNothingIsChosen)
{
    std::unique_ptr<Ui::Service> before = Ui::replace(nullptr);
    EXPECT_EQ(Ui::message(QStringLiteral("Delete?"), Buttons::YesNo), Answer::Ok);
    EXPECT_EQ(Ui::input(QStringLiteral("Name"), QString(), QStringLiteral("Ash")), QString());
    EXPECT_EQ(Ui::openFile(QStringLiteral("Open"), QStringLiteral("All|*.*")), QString());
    EXPECT_EQ(Ui::saveFile(QStringLiteral("Save"), QStringLiteral("All|*.*")), QString());
    EXPECT_EQ(Ui::chooseFolder(QStringLiteral("Folder")), QString());
    Ui::showPath(QStringLiteral("/nowhere"));
    Ui::status(QStringLiteral("busy"));
    Ui::replace(std::move(before));
}

} // namespace
