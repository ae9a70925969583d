// SPDX-License-Identifier: GPL-3.0-or-later
// A fixture for the store's tests: its own folders, a scripted dialog service and a fixed day.
#pragma once

#include "support/TestEnv.h"

#include <gtest/gtest.h>

class StoreTest : public ::testing::Test {
protected:
    void SetUp() override { env = std::make_unique<TestEnv>(); }
    void TearDown() override { env.reset(); }
    QString path(const QString& name) const { return env->dataFolder() + name; }
    std::unique_ptr<TestEnv> env;
};
