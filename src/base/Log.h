// SPDX-License-Identifier: GPL-3.0-or-later
// The two text logs in gSettingsFolder. A line reads: short date, blank, "hh:mmAM", " - ", text.
// A failing write is swallowed: the program never stops on a full disk or a locked log.
#pragma once

#include <QDateTime>
#include <QString>

void LogSave(const QString& text);
void LogError(const QString& text);
void DeleteSaveLog();
void DeleteErrorLog();
QString SaveLogPath();
QString ErrorLogPath();
QString LogLine(const QString& text); // the line as written, without its line break
QString LogLine(const QString& text, const QDateTime& when);
