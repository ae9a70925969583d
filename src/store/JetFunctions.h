// SPDX-License-Identifier: GPL-3.0-or-later
// The values and conversions behind the functions that translated statements call: Jet's dates,
// numbers, texts, LIKE patterns and Format, on SQLite's values.
#pragma once

#include <QDate>
#include <QString>
#include <QStringView>
#include <optional>

namespace jet {

// A date and time of day as Jet holds it, without a time zone. The data file keeps it as the text
// "YYYY-MM-DD", with " HH:MM:SS" only when the time is not midnight, so that text order is date order.
struct Moment {
    QDate date;
    int hour = 0;
    int minute = 0;
    int second = 0;

    bool hasTime() const { return hour != 0 || minute != 0 || second != 0; }
    int secondsOfDay() const { return hour * 3600 + minute * 60 + second; }
};

// The SQLite subtype that marks a text value as a date on its way between functions.
constexpr unsigned kDateSubtype = 'D';

QString storageText(const Moment& m);
std::optional<Moment> parseStorageText(QStringView text); // "YYYY-MM-DD[ HH:MM[:SS]]" only

// The text between the # marks of a date literal: month first whatever the region, as Jet reads it.
std::optional<Moment> parseDateLiteral(QStringView text);

// A date written by a person or another program: the storage form, the regional short date, a date
// literal's forms with month names. Nothing when it is no date.
std::optional<Moment> parseDateValue(const QString& text);

// Jet's serial date: days since 30 December 1899, the time as the fraction.
double serialOf(const Moment& m);
std::optional<Moment> momentOfSerial(double serial);

// A date as CStr gives it: the regional short date, with the time when there is one.
QString regionalDateText(const Moment& m);

// A number as CStr gives it: 15 significant digits, "1E+20" past them.
QString numberText(double value);

// A text that reads as a number as CDbl reads it: blanks around, a sign, thousands separators, an
// exponent, "True" and "False". Nothing when it is none.
std::optional<double> parseNumberText(QStringView text);

// Val: the number at the start of the text, blanks inside it ignored, 0 when there is none.
double valOf(QStringView text);

// Jet's LIKE: * ? # [list] [!list] [a-z], without regard to case; % and _ are plain characters.
bool likeMatch(QStringView value, QStringView pattern);

// Format for a date and for a number, with the named formats ("Short Date", "Currency" ...) and the
// custom ones ("yyyy-mm-dd", "hh:mmAMPM", "#,##0.00" ...).
QString formatMoment(const Moment& m, const QString& format);
QString formatNumber(double value, const QString& format);
bool isDateFormat(const QString& format);   // true when the format shows a date or a time
bool isNumberFormat(const QString& format); // true when it shows a number

} // namespace jet
