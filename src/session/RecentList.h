// SPDX-License-Identifier: GPL-3.0-or-later
// The animals visited last in the open data file, kept per data file in a small text file so that the
// list survives between runs.
#pragma once

#include <QString>
#include <QStringList>
#include <array>
#include <functional>

inline constexpr int kRecentCount = 20;

// Index 0 is the newest; an empty text is a free place.
extern std::array<QString, kRecentCount> gRecentNames;

// Where ShowRecentList puts the names: the main window's lstRecent, or a test's plain list.
using RecentListSink = std::function<void(const QStringList& names, const QString& tip)>;
void SetRecentListSink(RecentListSink sink);

// gSettingsFolder + the open data file's file name + ".txt".
QString RecentFilePath();

void AddRecent(const QString& name);
void LoadRecentFile();
void ShowRecentList();
void WriteRecentFile();
void ClearRecent();
// Every place holding oldName takes newName, so that a renamed animal keeps its place.
void RenameRecent(const QString& oldName, const QString& newName);
// Asks whether to drop a name that has no row any more; on Yes every place holding it is blanked.
void RecentNotFound(const QString& name);
