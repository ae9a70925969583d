// SPDX-License-Identifier: GPL-3.0-or-later
// The rows of a page list as logic makes them, with no widget: what the page shows, what the command
// line prints and what a printout reads are the same rows.
#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <QVariant>

struct ReportColumn {
    QString caption;
    int width = 0;   // 0 hides the column: the ID and the sort columns
    // A click on the header sorts by this column's text instead: the hidden "SQL Date" beside a "Date",
    // which holds ToIsoDate of the date ("yyyy-mm-dd", "" for no date, which sorts first).
    int sortBy = -1;
};

struct ReportRows {
    QList<ReportColumn> columns; // the first is "ID", hidden
    QList<QStringList> rows;     // one text per column; the ID first

    int addColumn(const QString& caption, int width, int sortBy = -1)
    {
        columns.append({caption, width, sortBy});
        return int(columns.size()) - 1;
    }
    int columnOf(const QString& caption) const; // -1 when none
};

// A list's item key for a row: "A" and the ID, so that a key never starts with a digit.
inline QString ReportKey(const QString& id) { return QStringLiteral("A") + id; }
// A done flag as the lists show it: "/" for "y" (any case), else `no` ("No ", with its blank, on most pages).
QString DoneFlag(const QVariant& value, const QString& no = QStringLiteral("No "));
// Compares case-blind, with runs of digits by their value: "Hutch A3" before "Hutch A10".
int NaturalCompare(const QString& a, const QString& b);
