// SPDX-License-Identifier: GPL-3.0-or-later
// Date rules of a data file: the regional short form by the file's country, the unknown date,
// and the forms used in SQL and sorting.
#pragma once

#include <QDateTime>
#include <QString>
#include <QVariant>
#include <optional>

enum class DateOrder { MonthFirst, DayFirst };

// The regional order of the open data file: month first for "United States", day first elsewhere
// (also for an empty or unknown country). Set from the open file when it is read; day first until then.
void SetRegionalDateOrder(DateOrder order);
DateOrder RegionalDateOrder();
DateOrder DateOrderForCountry(const QString& country);

// Makes RegionalDateOrder() answer another file's order on this thread while it lives: the store
// evaluates each statement in the order of the file it runs on, whichever file the window has open.
class ScopedDateOrder {
public:
    explicit ScopedDateOrder(DateOrder order);
    ~ScopedDateOrder();
    ScopedDateOrder(const ScopedDateOrder&) = delete;
    ScopedDateOrder& operator=(const ScopedDateOrder&) = delete;

private:
    std::optional<DateOrder> m_previous;
};

// Parses a date as IsDate accepts it: the given order with one- or two-digit day and month, two- or
// four-digit year (00-29 are 2000s, 30-99 are 1900s) and the separators '/', '-', '.', or ISO
// yyyy-mm-dd; either may be followed by a time (hh:mm[:ss], with an optional AM/PM). Nothing when
// the text is no date.
std::optional<QDateTime> ParseDateText(const QString& text, DateOrder order);
std::optional<QDateTime> ParseDateText(const QString& text); // by the regional order

// A QDate, QDateTime or a text that ParseDateText accepts.
std::optional<QDateTime> ToDateTime(const QVariant& value);

bool IsDate(const QVariant& value);
QString ToIsoDate(const QVariant& value);              // "yyyy-mm-dd", or "" when no date
QString ShowDate(const QVariant& value);               // "Unknown" for Null and for any text holding "1925"
QString DateOrUnknown(const QVariant& value);          // the same rule, for a date column
QString FormatShortDate(const QDate& date);            // "mm/dd/yyyy" or "dd/mm/yyyy" by the regional order
QString FormatSqlDate(const QDate& date);              // "mm/dd/yyyy", for between '#' marks
QString StorageDateText(const QDateTime& value);       // "yyyy-MM-dd", with " HH:mm:ss" when there is a time

inline const QString kUnknownDate = QStringLiteral("01/01/1925");

// Splits a decimal text at its first point.
short WholePart(const QString& text);   // digits before the point as a 16-bit integer (0 when none)
QString FractionPart(const QString& text);
