// SPDX-License-Identifier: GPL-3.0-or-later
#include "session/RecentList.h"

#include "base/Folders.h"
#include "base/Log.h"
#include "base/Ui.h"
#include "session/globals.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QTextStream>
#include <exception>

std::array<QString, kRecentCount> gRecentNames;

namespace {
RecentListSink gSink;

// The list is shown one newest-first line a name, the free places left out.
QStringList shownNames()
{
    QStringList names;
    for (const QString& n : gRecentNames) {
        if (!n.isEmpty())
            names << n;
    }
    return names;
}
} // namespace

void SetRecentListSink(RecentListSink sink) { gSink = std::move(sink); }

QString RecentFilePath()
{
    return gSettingsFolder + QFileInfo(gDatabaseFile).fileName() + QStringLiteral(".txt");
}

void AddRecent(const QString& name)
{
    try {
        for (const QString& n : gRecentNames) {
            if (n == name)
                return; // a known name keeps its place
        }
        for (int i = kRecentCount - 1; i > 0; --i)
            gRecentNames[i] = gRecentNames[i - 1];
        gRecentNames[0] = name;
    } catch (const std::exception& e) {
        LogError(QStringLiteral("Add recent list error  - ") + QString::fromLocal8Bit(e.what()));
    }
}

void LoadRecentFile()
{
    gRecentNames.fill(QString());
    QFile file(RecentFilePath());
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return;
    QTextStream in(&file);
    // Only nineteen lines come back: the twentieth place is left for the next name added.
    for (int i = 0; i < kRecentCount - 1 && !in.atEnd(); ++i)
        gRecentNames[i] = in.readLine();
}

void ShowRecentList()
{
    try {
        if (gSink)
            gSink(shownNames(), QStringLiteral("List of records accessed recently."));
    } catch (const std::exception& e) {
        LogError(QStringLiteral("Load Recent list error  - ") + QString::fromLocal8Bit(e.what()));
    }
}

void WriteRecentFile()
{
    // Written beside and then put in place, so that a full disk leaves the last list as it was rather
    // than a cut one.
    QSaveFile file(RecentFilePath());
    QByteArray text;
    for (const QString& n : gRecentNames)
        text += n.toUtf8() + '\n';
    // Unbuffered, so that a short write shows in write()'s count: the commit does not notice one.
    if (!file.open(QIODevice::WriteOnly | QIODevice::Text | QIODevice::Unbuffered) ||
        file.write(text) != text.size()) {
        LogError(QStringLiteral("Write Recent file error  - ") + file.errorString());
        file.cancelWriting();
        return;
    }
    if (!file.commit())
        LogError(QStringLiteral("Write Recent file error  - ") + file.errorString());
}

void ClearRecent()
{
    gRecentNames.fill(QString());
    ShowRecentList();
}

void RenameRecent(const QString& oldName, const QString& newName)
{
    for (QString& n : gRecentNames) {
        if (n == oldName)
            n = newName;
    }
}

void RecentNotFound(const QString& name)
{
    const Ui::Answer answer =
        Ui::message(QStringLiteral("This animal has been deleted or is in a different database.\n"
                                   "Would you like to remove the name from your recent names list?"),
                    Ui::Buttons::YesNo, Ui::Icon::Question, QStringLiteral("No record found"));
    if (answer != Ui::Answer::Yes)
        return;
    for (QString& n : gRecentNames) {
        if (n == name)
            n.clear();
    }
    ShowRecentList();
}
