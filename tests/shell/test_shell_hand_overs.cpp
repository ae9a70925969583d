// SPDX-License-Identifier: GPL-3.0-or-later
// The window tests start with a widget application on the offscreen platform.
#include <QApplication>
#include <gtest/gtest.h>

TEST(FormsEnvironment, RunsWithAWidgetApplication)
{
    EXPECT_NE(qobject_cast<QApplication*>(QCoreApplication::instance()), nullptr);
}
