// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/Log.h"

#include "base/Clock.h"
#include "base/Dates.h"
#include "base/Folders.h"

#include <QFile>

namespace {

void appendLine(const QString& path, const QString& text)
{
    // Before the folders are worked out there is nowhere to log; the working folder is no place for it.
    if (gSettingsFolder.isEmpty())
        return;
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Append))
        return;
    file.write((LogLine(text) + QLatin1Char('\n')).toUtf8());
    file.close();
}

} // namespace

QString SaveLogPath()
{
    return gSettingsFolder + QStringLiteral("Save.txt");
}

QString ErrorLogPath()
{
    return gSettingsFolder + QStringLiteral("Errors.txt");
}

void LogSave(const QString& text)
{
    appendLine(SaveLogPath(), text);
}

void LogError(const QString& text)
{
    appendLine(ErrorLogPath(), text);
}

void DeleteSaveLog()
{
    QFile::remove(SaveLogPath());
}

void DeleteErrorLog()
{
    QFile::remove(ErrorLogPath());
}

QString LogLine(const QString& text)
{
    return LogLine(text, Now());
}

QString LogLine(const QString& text, const QDateTime& when)
{
    // With "AP" in the form Qt counts hours 1 to 12 and writes "AM"/"PM" alike on every machine.
    return FormatShortDate(when.date()) + QLatin1Char(' ') + when.time().toString(QStringLiteral("hh:mmAP")) +
           QStringLiteral(" - ") + text;
}
