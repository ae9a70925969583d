// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/StatementLimit.h"

#include "store/Connection.h"

namespace {
// Virtual machine steps between looks at the clock: often enough to stop within a few milliseconds.
constexpr int kStepsBetweenChecks = 10000;
}

StatementTimeLimit::StatementTimeLimit(Database& database, int seconds)
    : m_database(database), m_limitMs(qint64(seconds) * 1000)
{
    m_timer.start();
    if (m_database.isOpen())
        sqlite3_progress_handler(m_database.connection()->db(), kStepsBetweenChecks, &StatementTimeLimit::tick, this);
}

StatementTimeLimit::~StatementTimeLimit()
{
    if (m_database.isOpen())
        sqlite3_progress_handler(m_database.connection()->db(), 0, nullptr, nullptr);
}

int StatementTimeLimit::tick(void* self)
{
    auto* limit = static_cast<StatementTimeLimit*>(self);
    if (limit->m_timer.elapsed() < limit->m_limitMs)
        return 0;
    limit->m_expired = true;
    return 1;
}
