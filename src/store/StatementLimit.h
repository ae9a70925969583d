// SPDX-License-Identifier: GPL-3.0-or-later
// A time limit for the statements of a database, for statements typed by a person who cannot know
// how long they will run.
#pragma once

#include "store/Database.h"

#include <QElapsedTimer>

class StatementTimeLimit {
public:
    // From now on, a statement still running after `seconds` is stopped with a JetError.
    StatementTimeLimit(Database& database, int seconds);
    ~StatementTimeLimit();
    // True once a statement was stopped by the limit.
    bool expired() const { return m_expired; }
    StatementTimeLimit(const StatementTimeLimit&) = delete;
    StatementTimeLimit& operator=(const StatementTimeLimit&) = delete;

private:
    static int tick(void* self);
    Database& m_database;
    QElapsedTimer m_timer;
    qint64 m_limitMs;
    bool m_expired = false;
};
