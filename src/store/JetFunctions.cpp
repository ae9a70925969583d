// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/JetFunctions.h"

#include "base/Clock.h"
#include "base/Dates.h"
#include "store/JetTranslator.h"
#include "store/JetTypes.h"

#include <QVarLengthArray>
#include <sqlite3.h>

#include <cmath>
#include <cstdio>
#include <limits>
#include <memory>
#include <vector>

namespace jet {

namespace {

const QDate kSerialZero(1899, 12, 30);

const char* const kMonthNames[] = {"January", "February", "March",     "April",   "May",      "June",
                                   "July",    "August",   "September", "October", "November", "December"};
const char* const kDayNames[] = {"Sunday", "Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday"};

QString monthName(int month, bool abbreviate)
{
    const QString name = QLatin1String(kMonthNames[(month - 1) % 12]);
    return abbreviate ? name.left(3) : name;
}

// 0 for Sunday.
int dayOfWeekFromSunday(const QDate& d)
{
    return int((d.toJulianDay() + 1) % 7);
}

int twoDigitYear(int y, int digits)
{
    if (digits <= 2)
        return y < 30 ? 2000 + y : 1900 + y;
    return y;
}

template <class Ch>
std::optional<Moment> parseStorage(const Ch* p, qsizetype n)
{
    auto digit = [&](qsizetype i) { return i < n && p[i] >= '0' && p[i] <= '9'; };
    auto num = [&](qsizetype i, int len) {
        int v = 0;
        for (int k = 0; k < len; ++k)
            v = v * 10 + (p[i + k] - '0');
        return v;
    };
    if (n < 10 || !digit(0) || !digit(1) || !digit(2) || !digit(3) || p[4] != '-' || !digit(5) || !digit(6) ||
        p[7] != '-' || !digit(8) || !digit(9))
        return std::nullopt;
    Moment m;
    m.date = QDate(num(0, 4), num(5, 2), num(8, 2));
    if (!m.date.isValid() || m.date.year() < 100)
        return std::nullopt;
    if (n == 10)
        return m;
    if ((p[10] != ' ' && p[10] != 'T') || n < 16 || !digit(11) || !digit(12) || p[13] != ':' || !digit(14) ||
        !digit(15))
        return std::nullopt;
    m.hour = num(11, 2);
    m.minute = num(14, 2);
    if (n > 16) {
        if (n != 19 || p[16] != ':' || !digit(17) || !digit(18))
            return std::nullopt;
        m.second = num(17, 2);
    }
    if (m.hour > 23 || m.minute > 59 || m.second > 59)
        return std::nullopt;
    return m;
}

Moment momentOf(const QDateTime& dt)
{
    Moment m;
    m.date = dt.date();
    const QTime t = dt.time();
    m.hour = t.hour();
    m.minute = t.minute();
    m.second = t.second();
    return m;
}

QString pad2(int v)
{
    return QString::number(v).rightJustified(2, QLatin1Char('0'));
}

QString timeText(const Moment& m)
{
    if (RegionalDateOrder() == DateOrder::MonthFirst) {
        const int h12 = m.hour % 12 == 0 ? 12 : m.hour % 12;
        return QString::number(h12) + QLatin1Char(':') + pad2(m.minute) + QLatin1Char(':') + pad2(m.second) +
               (m.hour < 12 ? QLatin1String(" AM") : QLatin1String(" PM"));
    }
    return pad2(m.hour) + QLatin1Char(':') + pad2(m.minute) + QLatin1Char(':') + pad2(m.second);
}

// Parses the parts of a date written month first, with month names allowed. With requireName, a
// date of bare numbers is refused, for texts whose number order is the region's business.
std::optional<Moment> parseLooseDate(QStringView t, bool requireName)
{
    struct Part {
        enum Kind { Num, Word, Colon } kind;
        int value = 0;
        int digits = 0;
        QString word;
    };
    QVarLengthArray<Part, 12> parts;
    for (qsizetype i = 0; i < t.size();) {
        const QChar c = t[i];
        if (c.isDigit()) {
            qsizetype j = i;
            int v = 0;
            while (j < t.size() && t[j].isDigit() && j - i < 6)
                v = v * 10 + t[j++].digitValue();
            if (j < t.size() && t[j].isDigit())
                return std::nullopt;
            parts.push_back({Part::Num, v, int(j - i), {}});
            i = j;
        } else if (c.isLetter()) {
            qsizetype j = i;
            while (j < t.size() && t[j].isLetter())
                ++j;
            parts.push_back({Part::Word, 0, 0, t.mid(i, j - i).toString().toLower()});
            i = j;
        } else if (c == QLatin1Char(':')) {
            parts.push_back({Part::Colon, 0, 0, {}});
            ++i;
        } else if (c == QLatin1Char('/') || c == QLatin1Char('-') || c == QLatin1Char('.') || c == QLatin1Char(',') ||
                   c.isSpace()) {
            ++i;
        } else {
            return std::nullopt;
        }
    }

    Moment m;
    bool haveTime = false;
    QVarLengthArray<Part, 6> date;
    int month = 0;
    for (qsizetype i = 0; i < parts.size(); ++i) {
        const Part& p = parts[i];
        if (p.kind == Part::Num && i + 2 < parts.size() && parts[i + 1].kind == Part::Colon &&
            parts[i + 2].kind == Part::Num) {
            if (haveTime)
                return std::nullopt;
            haveTime = true;
            m.hour = p.value;
            m.minute = parts[i + 2].value;
            i += 2;
            if (i + 2 < parts.size() && parts[i + 1].kind == Part::Colon && parts[i + 2].kind == Part::Num) {
                m.second = parts[i + 2].value;
                i += 2;
            }
            if (i + 1 < parts.size() && parts[i + 1].kind == Part::Word &&
                (parts[i + 1].word == QLatin1String("am") || parts[i + 1].word == QLatin1String("pm"))) {
                if (m.hour < 1 || m.hour > 12)
                    return std::nullopt;
                const bool pm = parts[i + 1].word == QLatin1String("pm");
                m.hour = m.hour % 12 + (pm ? 12 : 0);
                ++i;
            }
            if (m.hour > 23 || m.minute > 59 || m.second > 59)
                return std::nullopt;
        } else if (p.kind == Part::Num) {
            date.push_back(p);
        } else if (p.kind == Part::Word) {
            int found = 0;
            for (int k = 0; k < 12 && !found; ++k) {
                const QString name = QString::fromLatin1(kMonthNames[k]).toLower();
                if (p.word.size() >= 3 && name.startsWith(p.word))
                    found = k + 1;
            }
            if (!found || month)
                return std::nullopt;
            month = found;
        } else {
            return std::nullopt;
        }
    }
    if (requireName && !month)
        return std::nullopt;

    int y = 0, mo = 0, d = 0;
    if (month) {
        mo = month;
        if (date.size() == 2) {
            const bool firstIsYear = date[0].digits >= 3 || date[0].value > 31;
            const Part& yp = firstIsYear ? date[0] : date[1];
            d = (firstIsYear ? date[1] : date[0]).value;
            y = twoDigitYear(yp.value, yp.digits);
        } else if (date.size() == 1) {
            if (date[0].digits >= 3 || date[0].value > 31) {
                y = twoDigitYear(date[0].value, date[0].digits);
                d = 1;
            } else {
                d = date[0].value;
                y = Today().year();
            }
        } else {
            return std::nullopt;
        }
    } else if (date.size() == 3) {
        if (date[0].digits >= 3) {
            y = date[0].value;
            mo = date[1].value;
            d = date[2].value;
        } else {
            mo = date[0].value;
            d = date[1].value;
            y = twoDigitYear(date[2].value, date[2].digits);
            // Jet reads a month that cannot be one as the day, and the day as the month.
            if (mo > 12 && d <= 12)
                std::swap(mo, d);
        }
    } else if (date.size() == 2) {
        if (date[1].digits >= 3) {
            mo = date[0].value;
            d = 1;
            y = date[1].value;
        } else {
            mo = date[0].value;
            d = date[1].value;
            y = Today().year();
            if (mo > 12 && d <= 12)
                std::swap(mo, d);
        }
    } else if (date.isEmpty() && haveTime) {
        m.date = kSerialZero;
        return m;
    } else {
        return std::nullopt;
    }
    m.date = QDate(y, mo, d);
    if (!m.date.isValid() || y < 100 || y > 9999)
        return std::nullopt;
    return m;
}

// ---------------------------------------------------------------------------------------------
// Decimal digits of a double, rounded half away from zero as Format rounds.

struct Decimal {
    QString integer;  // without leading zeros, "0" for none
    QString fraction; // exactly the digits asked for
};

Decimal roundDecimal(double a, int fractionDigits)
{
    a = std::fabs(a);
    char buf[64];
    std::snprintf(buf, sizeof buf, "%.14e", a);
    // "d.dddddddddddddde+XX": fifteen significant digits.
    QString digits;
    const char* p = buf;
    for (; *p && *p != 'e'; ++p)
        if (*p >= '0' && *p <= '9')
            digits += QLatin1Char(*p);
    const int exponent = *p == 'e' ? std::atoi(p + 1) : 0;
    int point = exponent + 1;
    if (a == 0) {
        digits = QStringLiteral("0");
        point = 1;
    }
    if (point <= 0) {
        digits = QString(-point + 1, QLatin1Char('0')) + digits;
        point = 1;
    }
    if (point > digits.size())
        digits += QString(point - digits.size(), QLatin1Char('0'));
    QString intPart = digits.left(point);
    QString frac = digits.mid(point);
    if (frac.size() > fractionDigits) {
        const bool up = frac[fractionDigits] >= QLatin1Char('5');
        frac.truncate(fractionDigits);
        if (up) {
            QString all = intPart + frac;
            int i = int(all.size()) - 1;
            for (; i >= 0; --i) {
                if (all[i] == QLatin1Char('9')) {
                    all[i] = QLatin1Char('0');
                } else {
                    all[i] = QChar(all[i].unicode() + 1);
                    break;
                }
            }
            if (i < 0)
                all.prepend(QLatin1Char('1'));
            intPart = all.left(all.size() - fractionDigits);
            frac = all.right(fractionDigits);
        }
    }
    frac = frac.leftJustified(fractionDigits, QLatin1Char('0'));
    while (intPart.size() > 1 && intPart[0] == QLatin1Char('0'))
        intPart.remove(0, 1);
    if (intPart.isEmpty())
        intPart = QStringLiteral("0");
    return {intPart, frac};
}

QString groupThousands(const QString& digits)
{
    QString out;
    const int n = int(digits.size());
    for (int i = 0; i < n; ++i) {
        if (i > 0 && (n - i) % 3 == 0)
            out += QLatin1Char(',');
        out += digits[i];
    }
    return out;
}

// Splits a format at ';' outside quotes.
QStringList formatSections(const QString& format)
{
    QStringList sections;
    QString current;
    bool quoted = false;
    for (qsizetype i = 0; i < format.size(); ++i) {
        const QChar c = format[i];
        if (c == QLatin1Char('"'))
            quoted = !quoted;
        if (c == QLatin1Char('\\') && !quoted && i + 1 < format.size()) {
            current += c;
            current += format[++i];
            continue;
        }
        if (c == QLatin1Char(';') && !quoted) {
            sections << current;
            current.clear();
            continue;
        }
        current += c;
    }
    sections << current;
    return sections;
}

QString formatNumberSection(double v, const QString& section, bool withSign)
{
    struct Element {
        enum Kind { Literal, IntDigit, Point, FracDigit, Percent, Exponent } kind;
        QString text; // literal text, or for Exponent "E+" / "e-" ...
        int zeros = 0; // Exponent: minimum digits
    };
    std::vector<Element> elements;
    int intZeros = 0, fracCount = 0, fracZeros = 0;
    bool seenPoint = false, thousands = false, percent = false, scientific = false, seenDigit = false;
    int intDigits = 0;
    for (qsizetype i = 0; i < section.size(); ++i) {
        const QChar c = section[i];
        if (c == QLatin1Char('"')) {
            const qsizetype end = section.indexOf(QLatin1Char('"'), i + 1);
            const qsizetype stop = end < 0 ? section.size() : end;
            elements.push_back({Element::Literal, section.mid(i + 1, stop - i - 1)});
            i = stop;
        } else if (c == QLatin1Char('\\') && i + 1 < section.size()) {
            elements.push_back({Element::Literal, QString(section[++i])});
        } else if ((c == QLatin1Char('0') || c == QLatin1Char('#')) && !scientific) {
            seenDigit = true;
            if (seenPoint) {
                ++fracCount;
                if (c == QLatin1Char('0'))
                    fracZeros = fracCount;
                elements.push_back({Element::FracDigit, {}});
            } else {
                ++intDigits;
                if (c == QLatin1Char('0'))
                    ++intZeros;
                elements.push_back({Element::IntDigit, {}});
            }
        } else if (c == QLatin1Char('.') && !seenPoint && !scientific) {
            seenPoint = true;
            elements.push_back({Element::Point, {}});
        } else if (c == QLatin1Char(',') && !seenPoint && seenDigit) {
            thousands = true;
        } else if (c == QLatin1Char('%')) {
            percent = true;
            elements.push_back({Element::Percent, {}});
        } else if ((c == QLatin1Char('E') || c == QLatin1Char('e')) && i + 1 < section.size() &&
                   (section[i + 1] == QLatin1Char('+') || section[i + 1] == QLatin1Char('-')) && seenDigit &&
                   !scientific) {
            scientific = true;
            Element e{Element::Exponent, QString(c) + section[i + 1]};
            i += 2;
            while (i < section.size() && (section[i] == QLatin1Char('0') || section[i] == QLatin1Char('#'))) {
                if (section[i] == QLatin1Char('0'))
                    ++e.zeros;
                ++i;
            }
            --i;
            elements.push_back(e);
        } else {
            elements.push_back({Element::Literal, QString(c)});
        }
    }
    if (percent)
        v *= 100;

    QString intText, fracText, expText;
    if (scientific) {
        int exponent = 0;
        double mantissa = std::fabs(v);
        const int lead = std::max(intDigits, 1);
        if (mantissa != 0) {
            exponent = int(std::floor(std::log10(mantissa))) - (lead - 1);
            mantissa /= std::pow(10.0, exponent);
        }
        Decimal d = roundDecimal(mantissa, fracCount);
        if (mantissa != 0 && d.integer.size() > lead) { // 9.99 rounded up to 10.0
            ++exponent;
            d = roundDecimal(std::fabs(v) / std::pow(10.0, exponent), fracCount);
        }
        intText = d.integer;
        fracText = d.fraction;
        for (const Element& e : elements) {
            if (e.kind == Element::Exponent) {
                QString sign;
                if (exponent < 0)
                    sign = QStringLiteral("-");
                else if (e.text[1] == QLatin1Char('+'))
                    sign = QStringLiteral("+");
                expText = e.text.left(1) + sign +
                          QString::number(std::abs(exponent)).rightJustified(e.zeros, QLatin1Char('0'));
            }
        }
    } else {
        const Decimal d = roundDecimal(v, fracCount);
        intText = d.integer;
        fracText = d.fraction;
    }
    while (fracText.size() > fracZeros && fracText.endsWith(QLatin1Char('0')))
        fracText.chop(1);
    if (intText == QLatin1String("0") && intZeros == 0)
        intText.clear();
    if (intText.size() < intZeros)
        intText = intText.rightJustified(intZeros, QLatin1Char('0'));
    if (thousands)
        intText = groupThousands(intText);

    const bool isZero = (intText.isEmpty() || intText.count(QLatin1Char('0')) + intText.count(QLatin1Char(',')) ==
                                                  intText.size()) &&
                        fracText.count(QLatin1Char('0')) == fracText.size();
    QString out;
    if (withSign && v < 0 && !isZero)
        out += QLatin1Char('-');
    bool intWritten = false;
    int fracIndex = 0;
    const bool anyInt = intDigits > 0;
    for (const Element& e : elements) {
        switch (e.kind) {
        case Element::Literal: out += e.text; break;
        case Element::IntDigit:
            if (!intWritten)
                out += intText;
            intWritten = true;
            break;
        case Element::Point:
            if (!anyInt && !intWritten) {
                out += intText;
                intWritten = true;
            }
            out += QLatin1Char('.');
            break;
        case Element::FracDigit:
            if (fracIndex < fracText.size())
                out += fracText[fracIndex];
            ++fracIndex;
            break;
        case Element::Percent: out += QLatin1Char('%'); break;
        case Element::Exponent: out += expText; break;
        }
    }
    return out;
}

} // namespace

// ---------------------------------------------------------------------------------------------
// Dates

QString storageText(const Moment& m)
{
    QString text = QString::number(m.date.year()).rightJustified(4, QLatin1Char('0')) + QLatin1Char('-') +
                   pad2(m.date.month()) + QLatin1Char('-') + pad2(m.date.day());
    if (m.hasTime())
        text += QLatin1Char(' ') + pad2(m.hour) + QLatin1Char(':') + pad2(m.minute) + QLatin1Char(':') + pad2(m.second);
    return text;
}

std::optional<Moment> parseStorageText(QStringView text)
{
    return parseStorage(text.utf16(), text.size());
}

std::optional<Moment> parseDateLiteral(QStringView text)
{
    return parseLooseDate(text.trimmed(), false);
}

std::optional<Moment> parseDateValue(const QString& text)
{
    const QString t = text.trimmed();
    if (auto m = parseStorageText(t))
        return m;
    if (auto dt = ParseDateText(t))
        return momentOf(*dt);
    return parseLooseDate(t, true);
}

double serialOf(const Moment& m)
{
    const double days = double(kSerialZero.daysTo(m.date));
    const double fraction = m.secondsOfDay() / 86400.0;
    return days >= 0 ? days + fraction : days - fraction;
}

std::optional<Moment> momentOfSerial(double serial)
{
    // Jet's range: 1 January 100 to 31 December 9999.
    if (!std::isfinite(serial) || serial < -657434.0 || serial >= 2958466.0)
        return std::nullopt;
    const double whole = std::trunc(serial);
    qint64 seconds = std::llround(std::fabs(serial - whole) * 86400.0);
    if (seconds >= 86400)
        seconds = 86399;
    Moment m;
    m.date = kSerialZero.addDays(qint64(whole));
    m.hour = int(seconds / 3600);
    m.minute = int(seconds / 60 % 60);
    m.second = int(seconds % 60);
    return m;
}

QString regionalDateText(const Moment& m)
{
    if (m.date == kSerialZero && m.hasTime())
        return timeText(m);
    QString text = FormatShortDate(m.date);
    if (m.hasTime())
        text += QLatin1Char(' ') + timeText(m);
    return text;
}

// ---------------------------------------------------------------------------------------------
// Numbers

QString numberText(double value)
{
    if (std::isnan(value))
        return QStringLiteral("NaN");
    if (std::isinf(value))
        return value > 0 ? QStringLiteral("Infinity") : QStringLiteral("-Infinity");
    if (value == std::trunc(value) && std::fabs(value) < 1e15)
        return QString::number(qint64(value));
    char buf[40];
    std::snprintf(buf, sizeof buf, "%.15g", value);
    QString text = QString::fromLatin1(buf);
    const qsizetype e = text.indexOf(QLatin1Char('e'));
    if (e >= 0)
        text[e] = QLatin1Char('E');
    return text;
}

std::optional<double> parseNumberText(QStringView text)
{
    const QStringView t = text.trimmed();
    if (t.isEmpty())
        return std::nullopt;
    if (t.compare(QLatin1String("true"), Qt::CaseInsensitive) == 0)
        return -1.0;
    if (t.compare(QLatin1String("false"), Qt::CaseInsensitive) == 0)
        return 0.0;
    if (t.size() > 2 && t[0] == QLatin1Char('&') && (t[1] == QLatin1Char('H') || t[1] == QLatin1Char('h') ||
                                                     t[1] == QLatin1Char('O') || t[1] == QLatin1Char('o'))) {
        bool ok = false;
        const int base = (t[1] == QLatin1Char('H') || t[1] == QLatin1Char('h')) ? 16 : 8;
        const qint64 v = t.mid(2).toLongLong(&ok, base);
        if (!ok)
            return std::nullopt;
        return double(v);
    }
    QByteArray clean;
    clean.reserve(t.size());
    qsizetype i = 0;
    if (t[i] == QLatin1Char('+') || t[i] == QLatin1Char('-'))
        clean += char(t[i++].unicode());
    bool digits = false, point = false;
    for (; i < t.size(); ++i) {
        const QChar c = t[i];
        if (c >= QLatin1Char('0') && c <= QLatin1Char('9')) {
            clean += char(c.unicode());
            digits = true;
        } else if (c == QLatin1Char(',') && digits && !point && i + 1 < t.size() && t[i + 1].isDigit()) {
            continue; // a thousands separator
        } else if (c == QLatin1Char('.') && !point) {
            point = true;
            clean += '.';
        } else {
            break;
        }
    }
    if (!digits)
        return std::nullopt;
    if (i < t.size() && (t[i] == QLatin1Char('e') || t[i] == QLatin1Char('E') || t[i] == QLatin1Char('d') ||
                         t[i] == QLatin1Char('D'))) {
        clean += 'e';
        ++i;
        if (i < t.size() && (t[i] == QLatin1Char('+') || t[i] == QLatin1Char('-')))
            clean += char(t[i++].unicode());
        bool expDigits = false;
        while (i < t.size() && t[i] >= QLatin1Char('0') && t[i] <= QLatin1Char('9')) {
            clean += char(t[i++].unicode());
            expDigits = true;
        }
        if (!expDigits)
            return std::nullopt;
    }
    if (i != t.size())
        return std::nullopt;
    bool ok = false;
    const double v = clean.toDouble(&ok);
    if (!ok || !std::isfinite(v))
        return std::nullopt;
    return v;
}

double valOf(QStringView text)
{
    QByteArray clean;
    qsizetype i = 0;
    auto skipBlanks = [&] {
        while (i < text.size() && (text[i] == QLatin1Char(' ') || text[i] == QLatin1Char('\t') ||
                                   text[i] == QLatin1Char('\n') || text[i] == QLatin1Char('\r')))
            ++i;
    };
    skipBlanks();
    if (i + 1 < text.size() && text[i] == QLatin1Char('&')) {
        const QChar k = text[i + 1].toUpper();
        const int base = k == QLatin1Char('H') ? 16 : k == QLatin1Char('O') ? 8 : 0;
        if (base) {
            i += 2;
            qint64 v = 0;
            for (; i < text.size(); ++i) {
                const int d = text[i].isDigit() ? text[i].digitValue()
                              : (base == 16 && text[i].toUpper() >= QLatin1Char('A') && text[i].toUpper() <= QLatin1Char('F'))
                                  ? text[i].toUpper().unicode() - 'A' + 10
                                  : -1;
                if (d < 0 || d >= base)
                    break;
                v = v * base + d;
            }
            return double(v);
        }
    }
    if (i < text.size() && (text[i] == QLatin1Char('+') || text[i] == QLatin1Char('-')))
        clean += char(text[i++].unicode());
    bool point = false, digits = false;
    for (;; ++i) {
        skipBlanks();
        if (i >= text.size())
            break;
        const QChar c = text[i];
        if (c >= QLatin1Char('0') && c <= QLatin1Char('9')) {
            clean += char(c.unicode());
            digits = true;
        } else if (c == QLatin1Char('.') && !point) {
            clean += '.';
            point = true;
        } else {
            break;
        }
    }
    if (digits && i < text.size() &&
        (text[i] == QLatin1Char('e') || text[i] == QLatin1Char('E') || text[i] == QLatin1Char('d') ||
         text[i] == QLatin1Char('D'))) {
        QByteArray exp = "e";
        qsizetype j = i + 1;
        if (j < text.size() && (text[j] == QLatin1Char('+') || text[j] == QLatin1Char('-')))
            exp += char(text[j++].unicode());
        bool expDigits = false;
        while (j < text.size() && text[j] >= QLatin1Char('0') && text[j] <= QLatin1Char('9')) {
            exp += char(text[j++].unicode());
            expDigits = true;
        }
        if (expDigits)
            clean += exp;
    }
    if (!digits)
        return 0;
    bool ok = false;
    const double v = clean.toDouble(&ok);
    return ok && std::isfinite(v) ? v : 0;
}

// ---------------------------------------------------------------------------------------------
// LIKE

namespace {

char16_t fold(char16_t c)
{
    if (c < 0x80)
        return (c >= 'A' && c <= 'Z') ? char16_t(c + 32) : c;
    if (QChar::isSurrogate(c))
        return c;
    return char16_t(QChar::toCaseFolded(char32_t(c)));
}

struct PatternElement {
    enum Kind : quint8 { Literal, AnyOne, Digit, AnyRun, Set } kind;
    bool negated = false;
    char16_t ch = 0;
    std::vector<std::pair<char16_t, char16_t>> ranges;

    PatternElement(Kind k, char16_t c = 0) : kind(k), ch(c) {}

    bool matches(char16_t c) const
    {
        switch (kind) {
        case Literal: return c == ch;
        case AnyOne: return true;
        case Digit: return c >= '0' && c <= '9';
        case Set: {
            bool in = false;
            for (const auto& r : ranges)
                if (c >= r.first && c <= r.second) {
                    in = true;
                    break;
                }
            return in != negated;
        }
        case AnyRun: return false;
        }
        return false;
    }
};

using CompiledPattern = std::vector<PatternElement>;

CompiledPattern compilePattern(QStringView p)
{
    CompiledPattern out;
    for (qsizetype i = 0; i < p.size(); ++i) {
        const char16_t c = p[i].unicode();
        if (c == '*') {
            if (out.empty() || out.back().kind != PatternElement::AnyRun)
                out.push_back(PatternElement(PatternElement::AnyRun));
        } else if (c == '?') {
            out.push_back(PatternElement(PatternElement::AnyOne));
        } else if (c == '#') {
            out.push_back(PatternElement(PatternElement::Digit));
        } else if (c == '[') {
            const qsizetype close = p.indexOf(QLatin1Char(']'), i + 1);
            if (close < 0) { // no list: the bracket stands for itself
                out.push_back(PatternElement(PatternElement::Literal, fold(c)));
                continue;
            }
            PatternElement e(PatternElement::Set);
            qsizetype j = i + 1;
            if (j < close && p[j] == QLatin1Char('!') && j + 1 < close) {
                e.negated = true;
                ++j;
            }
            for (; j < close; ++j) {
                const char16_t a = fold(p[j].unicode());
                if (j + 2 < close && p[j + 1] == QLatin1Char('-')) {
                    const char16_t b = fold(p[j + 2].unicode());
                    e.ranges.push_back({std::min(a, b), std::max(a, b)});
                    j += 2;
                } else {
                    e.ranges.push_back({a, a});
                }
            }
            if (e.ranges.empty()) // "[]" matches nothing but is no error
                e.negated = false;
            out.push_back(std::move(e));
            i = close;
        } else {
            out.push_back(PatternElement(PatternElement::Literal, fold(c)));
        }
    }
    return out;
}

bool matchCompiled(QStringView value, const CompiledPattern& p)
{
    const qsizetype n = value.size();
    const qsizetype m = qsizetype(p.size());
    qsizetype i = 0, j = 0, starJ = -1, starI = 0;
    while (i < n) {
        if (j < m && p[size_t(j)].kind != PatternElement::AnyRun && p[size_t(j)].matches(fold(value[i].unicode()))) {
            ++i;
            ++j;
        } else if (j < m && p[size_t(j)].kind == PatternElement::AnyRun) {
            starJ = j++;
            starI = i;
        } else if (starJ >= 0) {
            j = starJ + 1;
            i = ++starI;
        } else {
            return false;
        }
    }
    while (j < m && p[size_t(j)].kind == PatternElement::AnyRun)
        ++j;
    return j == m;
}

} // namespace

bool likeMatch(QStringView value, QStringView pattern)
{
    return matchCompiled(value, compilePattern(pattern));
}

// ---------------------------------------------------------------------------------------------
// Format

namespace {

bool namedIs(const QString& f, const char* name)
{
    return f.compare(QLatin1String(name), Qt::CaseInsensitive) == 0;
}

bool isNamedDateFormat(const QString& f)
{
    for (const char* n : {"General Date", "Long Date", "Medium Date", "Short Date", "Long Time", "Medium Time",
                          "Short Time"})
        if (namedIs(f, n))
            return true;
    return false;
}

bool isNamedNumberFormat(const QString& f)
{
    for (const char* n : {"General Number", "Currency", "Euro", "Fixed", "Standard", "Percent", "Scientific",
                          "Yes/No", "True/False", "On/Off"})
        if (namedIs(f, n))
            return true;
    return false;
}

// What a format holds outside quotes and escapes.
struct FormatShape {
    bool digits = false; // 0 or #
    bool dateLetters = false;
};

FormatShape shapeOf(const QString& f)
{
    FormatShape s;
    for (qsizetype i = 0; i < f.size(); ++i) {
        const QChar c = f[i];
        if (c == QLatin1Char('"')) {
            const qsizetype end = f.indexOf(QLatin1Char('"'), i + 1);
            i = end < 0 ? f.size() : end;
        } else if (c == QLatin1Char('\\')) {
            ++i;
        } else if (c == QLatin1Char('0') || c == QLatin1Char('#')) {
            s.digits = true;
        } else {
            switch (c.toLower().unicode()) {
            case 'd': case 'm': case 'y': case 'h': case 'n': case 's': case 'q': case 'w': case 'c': case 't':
                s.dateLetters = true;
                break;
            case 'a':
                if (f.mid(i, 5).compare(QLatin1String("AM/PM"), Qt::CaseInsensitive) == 0 ||
                    f.mid(i, 3).compare(QLatin1String("A/P"), Qt::CaseInsensitive) == 0 ||
                    f.mid(i, 4).compare(QLatin1String("AMPM"), Qt::CaseInsensitive) == 0)
                    s.dateLetters = true;
                break;
            default: break;
            }
        }
    }
    return s;
}

QString formatDateCustom(const Moment& m, const QString& f)
{
    struct Tok {
        enum Kind { Literal, Day, Weekday, Month, Minute, Quarter, Year, Hour, Second, AmPm, General, LongTime } kind;
        int count = 0;
        QString text; // literal, or the AM/PM spelling

        Tok(Kind k, int n, QString t = {}) : kind(k), count(n), text(std::move(t)) {}
    };
    std::vector<Tok> toks;
    for (qsizetype i = 0; i < f.size();) {
        const QChar c = f[i];
        if (c == QLatin1Char('"')) {
            const qsizetype end = f.indexOf(QLatin1Char('"'), i + 1);
            const qsizetype stop = end < 0 ? f.size() : end;
            toks.push_back(Tok(Tok::Literal, 0, f.mid(i + 1, stop - i - 1)));
            i = stop + 1;
            continue;
        }
        if (c == QLatin1Char('\\')) {
            if (i + 1 < f.size())
                toks.push_back(Tok(Tok::Literal, 0, QString(f[i + 1])));
            i += 2;
            continue;
        }
        if (c == QLatin1Char('a') || c == QLatin1Char('A')) {
            if (f.mid(i, 5).compare(QLatin1String("AM/PM"), Qt::CaseInsensitive) == 0) {
                toks.push_back(Tok(Tok::AmPm, 5, f.mid(i, 5)));
                i += 5;
                continue;
            }
            if (f.mid(i, 4).compare(QLatin1String("AMPM"), Qt::CaseInsensitive) == 0) {
                toks.push_back(Tok(Tok::AmPm, 4, QStringLiteral("AM/PM")));
                i += 4;
                continue;
            }
            if (f.mid(i, 3).compare(QLatin1String("A/P"), Qt::CaseInsensitive) == 0) {
                toks.push_back(Tok(Tok::AmPm, 3, f.mid(i, 3)));
                i += 3;
                continue;
            }
        }
        const QChar lower = c.toLower();
        qsizetype j = i;
        while (j < f.size() && f[j].toLower() == lower)
            ++j;
        const int run = int(j - i);
        switch (lower.unicode()) {
        case 'd': toks.push_back(Tok(run >= 3 && run <= 4 ? Tok::Weekday : Tok::Day, run)); break;
        case 'w': toks.push_back(Tok(Tok::Weekday, run == 1 ? -1 : -2)); break;
        case 'm': toks.push_back(Tok(Tok::Month, run)); break;
        case 'n': toks.push_back(Tok(Tok::Minute, run)); break;
        case 'q': toks.push_back(Tok(Tok::Quarter, run)); break;
        case 'y': toks.push_back(Tok(Tok::Year, run)); break;
        case 'h': toks.push_back(Tok(Tok::Hour, run)); break;
        case 's': toks.push_back(Tok(Tok::Second, run)); break;
        case 'c': toks.push_back(Tok(Tok::General, run)); break;
        case 't':
            if (run >= 5) {
                toks.push_back(Tok(Tok::LongTime, run));
                break;
            }
            [[fallthrough]];
        default: toks.push_back(Tok(Tok::Literal, 0, f.mid(i, run))); break;
        }
        i = j;
    }

    // m and mm after an hour or before a second are minutes.
    auto neighbour = [&](size_t k, int step) -> const Tok* {
        for (qsizetype x = qsizetype(k) + step; x >= 0 && x < qsizetype(toks.size()); x += step)
            if (toks[size_t(x)].kind != Tok::Literal)
                return &toks[size_t(x)];
        return nullptr;
    };
    bool twelveHour = false;
    for (size_t k = 0; k < toks.size(); ++k) {
        Tok& t = toks[k];
        if (t.kind == Tok::AmPm)
            twelveHour = true;
        if (t.kind == Tok::Month && t.count <= 2) {
            const Tok* before = neighbour(k, -1);
            const Tok* after = neighbour(k, +1);
            if ((before && before->kind == Tok::Hour) || (after && after->kind == Tok::Second))
                t.kind = Tok::Minute;
        }
    }

    const QDate& d = m.date;
    QString out;
    for (const Tok& t : toks) {
        switch (t.kind) {
        case Tok::Literal: out += t.text; break;
        case Tok::Day:
            if (t.count == 1)
                out += QString::number(d.day());
            else if (t.count == 2)
                out += pad2(d.day());
            else if (t.count == 5)
                out += FormatShortDate(d);
            else
                out += formatMoment(m, QStringLiteral("Long Date"));
            break;
        case Tok::Weekday:
            if (t.count == -1)
                out += QString::number(dayOfWeekFromSunday(d) + 1);
            else if (t.count == -2) {
                const int jan1 = dayOfWeekFromSunday(QDate(d.year(), 1, 1));
                out += QString::number((d.dayOfYear() - 1 + jan1) / 7 + 1);
            } else {
                const QString name = QLatin1String(kDayNames[dayOfWeekFromSunday(d)]);
                out += t.count == 3 ? name.left(3) : name;
            }
            break;
        case Tok::Month:
            if (t.count == 1)
                out += QString::number(d.month());
            else if (t.count == 2)
                out += pad2(d.month());
            else
                out += monthName(d.month(), t.count == 3);
            break;
        case Tok::Minute: out += t.count == 1 ? QString::number(m.minute) : pad2(m.minute); break;
        case Tok::Quarter: out += QString::number((d.month() - 1) / 3 + 1); break;
        case Tok::Year:
            if (t.count == 1)
                out += QString::number(d.dayOfYear());
            else if (t.count == 2)
                out += pad2(d.year() % 100);
            else
                out += QString::number(d.year()).rightJustified(4, QLatin1Char('0'));
            break;
        case Tok::Hour: {
            int h = m.hour;
            if (twelveHour)
                h = h % 12 == 0 ? 12 : h % 12;
            out += t.count == 1 ? QString::number(h) : pad2(h);
            break;
        }
        case Tok::Second: out += t.count == 1 ? QString::number(m.second) : pad2(m.second); break;
        case Tok::AmPm: {
            const bool am = m.hour < 12;
            const QString& s = t.text;
            if (t.count == 3) // A/P
                out += am ? s.left(1) : s.right(1);
            else if (t.count == 4) // AMPM: the region's words
                out += am ? QStringLiteral("AM") : QStringLiteral("PM");
            else
                out += am ? s.left(2) : s.right(2);
            break;
        }
        case Tok::General: out += formatMoment(m, QStringLiteral("General Date")); break;
        case Tok::LongTime: out += formatMoment(m, QStringLiteral("Long Time")); break;
        }
    }
    return out;
}

} // namespace

bool isDateFormat(const QString& format)
{
    if (isNamedDateFormat(format))
        return true;
    if (isNamedNumberFormat(format))
        return false;
    const FormatShape s = shapeOf(format);
    return s.dateLetters && !s.digits;
}

bool isNumberFormat(const QString& format)
{
    if (isNamedNumberFormat(format))
        return true;
    if (isNamedDateFormat(format))
        return false;
    return shapeOf(format).digits;
}

QString formatMoment(const Moment& m, const QString& f)
{
    const bool monthFirst = RegionalDateOrder() == DateOrder::MonthFirst;
    if (f.isEmpty() || namedIs(f, "General Date"))
        return regionalDateText(m);
    if (namedIs(f, "Short Date"))
        return FormatShortDate(m.date);
    if (namedIs(f, "Long Date"))
        return formatDateCustom(m, monthFirst ? QStringLiteral("dddd, mmmm d, yyyy") : QStringLiteral("dd mmmm yyyy"));
    if (namedIs(f, "Medium Date"))
        return formatDateCustom(m, QStringLiteral("dd-mmm-yy"));
    if (namedIs(f, "Long Time"))
        return timeText(m);
    if (namedIs(f, "Medium Time"))
        return formatDateCustom(m, QStringLiteral("hh:nn AM/PM"));
    if (namedIs(f, "Short Time"))
        return formatDateCustom(m, QStringLiteral("hh:nn"));
    return formatDateCustom(m, f);
}

QString formatNumber(double v, const QString& f)
{
    if (f.isEmpty() || namedIs(f, "General Number"))
        return numberText(v);
    if (namedIs(f, "Currency"))
        return formatNumber(v, QStringLiteral("$#,##0.00;($#,##0.00)"));
    if (namedIs(f, "Euro"))
        return formatNumber(v, QStringLiteral("\u20AC#,##0.00;(\u20AC#,##0.00)"));
    if (namedIs(f, "Fixed"))
        return formatNumber(v, QStringLiteral("0.00"));
    if (namedIs(f, "Standard"))
        return formatNumber(v, QStringLiteral("#,##0.00"));
    if (namedIs(f, "Percent"))
        return formatNumber(v, QStringLiteral("0.00%"));
    if (namedIs(f, "Scientific"))
        return formatNumber(v, QStringLiteral("0.00E+00"));
    if (namedIs(f, "Yes/No"))
        return v != 0 ? QStringLiteral("Yes") : QStringLiteral("No");
    if (namedIs(f, "True/False"))
        return v != 0 ? QStringLiteral("True") : QStringLiteral("False");
    if (namedIs(f, "On/Off"))
        return v != 0 ? QStringLiteral("On") : QStringLiteral("Off");

    const QStringList sections = formatSections(f);
    if (v < 0 && sections.size() >= 2 && !sections[1].isEmpty())
        return formatNumberSection(-v, sections[1], false);
    if (v == 0 && sections.size() >= 3 && !sections[2].isEmpty())
        return formatNumberSection(v, sections[2], false);
    return formatNumberSection(v, sections[0], true);
}

// ---------------------------------------------------------------------------------------------
// The SQL functions

namespace {

using Ctx = sqlite3_context;
using Value = sqlite3_value;

int typeOf(Value* v) { return sqlite3_value_type(v); }
bool isNull(Value* v) { return typeOf(v) == SQLITE_NULL; }
bool isDateValue(Value* v) { return typeOf(v) == SQLITE_TEXT && sqlite3_value_subtype(v) == kDateSubtype; }

QString rawText(Value* v)
{
    const char* t = reinterpret_cast<const char*>(sqlite3_value_text(v));
    return QString::fromUtf8(t, sqlite3_value_bytes(v));
}

std::optional<Moment> dateOf(Value* v)
{
    switch (typeOf(v)) {
    case SQLITE_INTEGER:
    case SQLITE_FLOAT: return momentOfSerial(sqlite3_value_double(v));
    case SQLITE_TEXT: {
        const char* t = reinterpret_cast<const char*>(sqlite3_value_text(v));
        const int n = sqlite3_value_bytes(v);
        if (auto m = parseStorage(t, n))
            return m;
        return parseDateValue(QString::fromUtf8(t, n));
    }
    default: return std::nullopt;
    }
}

std::optional<double> numberOf(Value* v)
{
    switch (typeOf(v)) {
    case SQLITE_INTEGER: return double(sqlite3_value_int64(v));
    case SQLITE_FLOAT: return sqlite3_value_double(v);
    case SQLITE_TEXT:
        if (isDateValue(v)) {
            if (auto m = dateOf(v))
                return serialOf(*m);
            return std::nullopt;
        }
        return parseNumberText(rawText(v));
    default: return std::nullopt;
    }
}

std::optional<QString> stringOf(Value* v)
{
    switch (typeOf(v)) {
    case SQLITE_NULL: return std::nullopt;
    case SQLITE_INTEGER: return QString::number(sqlite3_value_int64(v));
    case SQLITE_FLOAT: return numberText(sqlite3_value_double(v));
    case SQLITE_TEXT:
        if (isDateValue(v))
            if (auto m = dateOf(v))
                return regionalDateText(*m);
        return rawText(v);
    default: return rawText(v);
    }
}

void resultText(Ctx* c, const QString& s)
{
    const QByteArray u = s.toUtf8();
    sqlite3_result_text(c, u.constData(), int(u.size()), SQLITE_TRANSIENT);
}

void resultDate(Ctx* c, const std::optional<Moment>& m)
{
    if (!m) {
        sqlite3_result_null(c);
        return;
    }
    resultText(c, storageText(*m));
    sqlite3_result_subtype(c, kDateSubtype);
}

// Whole numbers come back as integers, so that 2 reads as "2" and compares as 2.
void resultNumber(Ctx* c, double d)
{
    if (!std::isfinite(d)) {
        sqlite3_result_null(c);
        return;
    }
    if (d == std::trunc(d) && std::fabs(d) < 9.0e15)
        sqlite3_result_int64(c, qint64(d));
    else
        sqlite3_result_double(c, d);
}

void resultFlag(Ctx* c, bool b) { sqlite3_result_int(c, b ? -1 : 0); }

// Jet's rounding to a whole number for the integer types: halves go to the even neighbour.
std::optional<qint64> roundedWhole(double d, double lo, double hi)
{
    const double r = std::nearbyint(d);
    if (!std::isfinite(r) || r < lo || r > hi)
        return std::nullopt;
    return qint64(r);
}

bool truthOf(Value* v)
{
    const auto n = numberOf(v);
    return n && *n != 0;
}

int intArg(Value* v, int fallback)
{
    const auto n = numberOf(v);
    return n ? int(std::trunc(*n)) : fallback;
}

// --- values and types

void fnDate(Ctx* c, int, Value** a)
{
    if (isNull(a[0])) {
        sqlite3_result_null(c);
        return;
    }
    sqlite3_result_value(c, a[0]);
    sqlite3_result_subtype(c, kDateSubtype);
}

void fnAssign(Ctx* c, int argc, Value** a)
{
    Value* v = a[0];
    if (isNull(v)) {
        sqlite3_result_null(c);
        return;
    }
    const int type = sqlite3_value_int(a[1]);
    const bool fromDate = isDateValue(v) || (argc > 2 && sqlite3_value_int(a[2]) == dbDate);
    switch (type) {
    case dbDate: {
        std::optional<Moment> m;
        if (typeOf(v) == SQLITE_TEXT && !isDateValue(v) && !fromDate) {
            // A text goes in as a date only in the storage form or the region's short date.
            const char* t = reinterpret_cast<const char*>(sqlite3_value_text(v));
            m = parseStorage(t, sqlite3_value_bytes(v));
            if (!m) {
                if (auto dt = ParseDateText(rawText(v)))
                    m = momentOf(*dt);
            }
        } else {
            m = dateOf(v);
        }
        if (m)
            resultText(c, storageText(*m));
        else
            sqlite3_result_null(c);
        return;
    }
    case dbBoolean: {
        const auto n = numberOf(v);
        if (n)
            resultFlag(c, *n != 0);
        else
            sqlite3_result_null(c);
        return;
    }
    case dbByte:
    case dbInteger:
    case dbLong: {
        const auto n = numberOf(v);
        const double lo = type == dbByte ? 0 : type == dbInteger ? -32768 : -2147483648.0;
        const double hi = type == dbByte ? 255 : type == dbInteger ? 32767 : 2147483647.0;
        const auto r = n ? roundedWhole(*n, lo, hi) : std::nullopt;
        if (r)
            sqlite3_result_int64(c, *r);
        else
            sqlite3_result_null(c);
        return;
    }
    case dbCurrency: {
        const auto n = numberOf(v);
        if (n)
            resultNumber(c, std::nearbyint(*n * 10000.0) / 10000.0);
        else
            sqlite3_result_null(c);
        return;
    }
    case dbSingle:
    case dbDouble: {
        const auto n = numberOf(v);
        if (n && std::isfinite(*n))
            sqlite3_result_double(c, *n);
        else
            sqlite3_result_null(c);
        return;
    }
    case dbText:
    case dbMemo:
        if (fromDate) {
            if (const auto m = dateOf(v)) {
                resultText(c, regionalDateText(*m));
                return;
            }
        }
        if (typeOf(v) == SQLITE_TEXT) {
            sqlite3_result_value(c, v);
            return;
        }
        resultText(c, *stringOf(v));
        return;
    default: sqlite3_result_value(c, v); return;
    }
}

void fnConcat(Ctx* c, int argc, Value** a)
{
    QString out;
    bool any = false;
    for (int i = 0; i < argc; ++i) {
        if (const auto s = stringOf(a[i])) {
            out += *s;
            any = true;
        }
    }
    if (any)
        resultText(c, out);
    else
        sqlite3_result_null(c);
}

void fnLike(Ctx* c, int, Value** a)
{
    if (isNull(a[0]) || isNull(a[1])) {
        sqlite3_result_null(c);
        return;
    }
    auto* compiled = static_cast<CompiledPattern*>(sqlite3_get_auxdata(c, 1));
    if (!compiled) {
        compiled = new CompiledPattern(compilePattern(*stringOf(a[1])));
        sqlite3_set_auxdata(c, 1, compiled, [](void* p) { delete static_cast<CompiledPattern*>(p); });
        compiled = static_cast<CompiledPattern*>(sqlite3_get_auxdata(c, 1));
        if (!compiled) { // SQLite dropped it at once: match with a copy of our own
            const CompiledPattern local = compilePattern(*stringOf(a[1]));
            resultFlag(c, matchCompiled(*stringOf(a[0]), local));
            return;
        }
    }
    resultFlag(c, matchCompiled(*stringOf(a[0]), *compiled));
}

// --- dates

template <int Part>
void fnDatePart(Ctx* c, int, Value** a)
{
    const auto m = dateOf(a[0]);
    if (!m) {
        sqlite3_result_null(c);
        return;
    }
    int v = 0;
    switch (Part) {
    case 0: v = m->date.year(); break;
    case 1: v = m->date.month(); break;
    case 2: v = m->date.day(); break;
    case 3: v = m->hour; break;
    case 4: v = m->minute; break;
    case 5: v = m->second; break;
    }
    sqlite3_result_int(c, v);
}

int weekdayOf(const QDate& d, int firstDay)
{
    if (firstDay < 1 || firstDay > 7)
        firstDay = 1;
    return (dayOfWeekFromSunday(d) - (firstDay - 1) + 7) % 7 + 1;
}

void fnWeekday(Ctx* c, int argc, Value** a)
{
    const auto m = dateOf(a[0]);
    if (!m) {
        sqlite3_result_null(c);
        return;
    }
    sqlite3_result_int(c, weekdayOf(m->date, argc > 1 ? intArg(a[1], 1) : 1));
}

void fnCDate(Ctx* c, int, Value** a) { resultDate(c, dateOf(a[0])); }

void fnDateValue(Ctx* c, int, Value** a)
{
    auto m = dateOf(a[0]);
    if (m)
        m->hour = m->minute = m->second = 0;
    resultDate(c, m);
}

void fnNow(Ctx* c, int, Value**) { resultDate(c, momentOf(Now())); }

void fnToday(Ctx* c, int, Value**)
{
    Moment m;
    m.date = Today();
    resultDate(c, m);
}

void fnTime(Ctx* c, int, Value**)
{
    Moment m = momentOf(Now());
    m.date = kSerialZero;
    resultDate(c, m);
}

void fnDateSerial(Ctx* c, int, Value** a)
{
    const auto y = numberOf(a[0]), mo = numberOf(a[1]), d = numberOf(a[2]);
    if (!y || !mo || !d) {
        sqlite3_result_null(c);
        return;
    }
    int year = int(*y);
    if (year >= 0 && year < 100)
        year = twoDigitYear(year, 2);
    const QDate first(year, 1, 1);
    if (!first.isValid()) {
        sqlite3_result_null(c);
        return;
    }
    Moment m;
    m.date = first.addMonths(int(*mo) - 1).addDays(qint64(*d) - 1);
    if (!m.date.isValid() || m.date.year() < 100 || m.date.year() > 9999)
        sqlite3_result_null(c);
    else
        resultDate(c, m);
}

std::optional<Moment> addSeconds(const Moment& m, qint64 seconds)
{
    const qint64 total = m.secondsOfDay() + seconds;
    qint64 days = total / 86400;
    qint64 rest = total % 86400;
    if (rest < 0) {
        rest += 86400;
        --days;
    }
    Moment out;
    out.date = m.date.addDays(days);
    out.hour = int(rest / 3600);
    out.minute = int(rest / 60 % 60);
    out.second = int(rest % 60);
    if (!out.date.isValid() || out.date.year() < 100 || out.date.year() > 9999)
        return std::nullopt;
    return out;
}

void fnDateAdd(Ctx* c, int, Value** a)
{
    const auto interval = stringOf(a[0]);
    const auto n = numberOf(a[1]);
    const auto m = dateOf(a[2]);
    if (!interval || !n || !m) {
        sqlite3_result_null(c);
        return;
    }
    const QString iv = interval->trimmed().toLower();
    const qint64 k = qint64(std::trunc(*n));
    std::optional<Moment> r = *m;
    if (iv == QLatin1String("yyyy"))
        r->date = m->date.addMonths(int(k * 12));
    else if (iv == QLatin1String("q"))
        r->date = m->date.addMonths(int(k * 3));
    else if (iv == QLatin1String("m"))
        r->date = m->date.addMonths(int(k));
    else if (iv == QLatin1String("d") || iv == QLatin1String("y") || iv == QLatin1String("w"))
        r = addSeconds(*m, k * 86400);
    else if (iv == QLatin1String("ww"))
        r = addSeconds(*m, k * 7 * 86400);
    else if (iv == QLatin1String("h"))
        r = addSeconds(*m, k * 3600);
    else if (iv == QLatin1String("n"))
        r = addSeconds(*m, k * 60);
    else if (iv == QLatin1String("s"))
        r = addSeconds(*m, k);
    else
        r.reset();
    if (r && (!r->date.isValid() || r->date.year() < 100 || r->date.year() > 9999))
        r.reset();
    resultDate(c, r);
}

qint64 floorDiv(qint64 a, qint64 b)
{
    qint64 q = a / b;
    if ((a % b != 0) && ((a < 0) != (b < 0)))
        --q;
    return q;
}

void fnDateDiff(Ctx* c, int argc, Value** a)
{
    const auto interval = stringOf(a[0]);
    const auto m1 = dateOf(a[1]);
    const auto m2 = dateOf(a[2]);
    if (!interval || !m1 || !m2) {
        sqlite3_result_null(c);
        return;
    }
    const QString iv = interval->trimmed().toLower();
    const QDate& d1 = m1->date;
    const QDate& d2 = m2->date;
    const qint64 jd1 = d1.toJulianDay(), jd2 = d2.toJulianDay();
    const qint64 t1 = jd1 * 86400 + m1->secondsOfDay(), t2 = jd2 * 86400 + m2->secondsOfDay();
    qint64 r = 0;
    if (iv == QLatin1String("yyyy"))
        r = d2.year() - d1.year();
    else if (iv == QLatin1String("q"))
        r = (d2.year() * 4 + (d2.month() - 1) / 3) - (d1.year() * 4 + (d1.month() - 1) / 3);
    else if (iv == QLatin1String("m"))
        r = (d2.year() * 12 + d2.month()) - (d1.year() * 12 + d1.month());
    else if (iv == QLatin1String("d") || iv == QLatin1String("y"))
        r = jd2 - jd1;
    else if (iv == QLatin1String("w"))
        r = (jd2 - jd1) / 7;
    else if (iv == QLatin1String("ww")) {
        int first = argc > 3 ? intArg(a[3], 1) : 1;
        if (first < 1 || first > 7)
            first = 1;
        const qint64 shift = 1 - (first - 1);
        r = floorDiv(jd2 + shift, 7) - floorDiv(jd1 + shift, 7);
    } else if (iv == QLatin1String("h"))
        r = floorDiv(t2, 3600) - floorDiv(t1, 3600);
    else if (iv == QLatin1String("n"))
        r = floorDiv(t2, 60) - floorDiv(t1, 60);
    else if (iv == QLatin1String("s"))
        r = t2 - t1;
    else {
        sqlite3_result_null(c);
        return;
    }
    sqlite3_result_int64(c, r);
}

void fnDatePartOf(Ctx* c, int argc, Value** a)
{
    const auto interval = stringOf(a[0]);
    const auto m = dateOf(a[1]);
    if (!interval || !m) {
        sqlite3_result_null(c);
        return;
    }
    const QString iv = interval->trimmed().toLower();
    const int first = argc > 2 ? intArg(a[2], 1) : 1;
    const QDate& d = m->date;
    int r = 0;
    if (iv == QLatin1String("yyyy"))
        r = d.year();
    else if (iv == QLatin1String("q"))
        r = (d.month() - 1) / 3 + 1;
    else if (iv == QLatin1String("m"))
        r = d.month();
    else if (iv == QLatin1String("y"))
        r = d.dayOfYear();
    else if (iv == QLatin1String("d"))
        r = d.day();
    else if (iv == QLatin1String("w"))
        r = weekdayOf(d, first);
    else if (iv == QLatin1String("ww"))
        r = (d.dayOfYear() - 1 + weekdayOf(QDate(d.year(), 1, 1), first) - 1) / 7 + 1;
    else if (iv == QLatin1String("h"))
        r = m->hour;
    else if (iv == QLatin1String("n"))
        r = m->minute;
    else if (iv == QLatin1String("s"))
        r = m->second;
    else {
        sqlite3_result_null(c);
        return;
    }
    sqlite3_result_int(c, r);
}

void fnMonthName(Ctx* c, int argc, Value** a)
{
    const auto n = numberOf(a[0]);
    if (!n || *n < 1 || *n > 12) {
        sqlite3_result_null(c);
        return;
    }
    resultText(c, monthName(int(*n), argc > 1 && truthOf(a[1])));
}

// --- Format

void fnFormat(Ctx* c, int argc, Value** a)
{
    Value* v = a[0];
    if (isNull(v)) {
        sqlite3_result_null(c);
        return;
    }
    const QString format = argc > 1 && !isNull(a[1]) ? *stringOf(a[1]) : QString();
    if (format.isEmpty()) {
        resultText(c, *stringOf(v));
        return;
    }
    if (isDateFormat(format)) {
        std::optional<Moment> m = dateOf(v);
        if (m)
            resultText(c, formatMoment(*m, format));
        else
            resultText(c, *stringOf(v)); // a text that is no date comes back as it is
        return;
    }
    if (isNumberFormat(format)) {
        const auto n = numberOf(v);
        if (n)
            resultText(c, formatNumber(*n, format));
        else
            resultText(c, *stringOf(v));
        return;
    }
    // Text formats: > upper case, < lower case, @ and & the text itself.
    QString s = *stringOf(v);
    if (format.contains(QLatin1Char('>')))
        s = s.toUpper();
    else if (format.contains(QLatin1Char('<')))
        s = s.toLower();
    resultText(c, s);
}

// --- texts

template <int Which>
void fnTrim(Ctx* c, int, Value** a)
{
    auto s = stringOf(a[0]);
    if (!s) {
        sqlite3_result_null(c);
        return;
    }
    qsizetype b = 0, e = s->size();
    if (Which != 2)
        while (b < e && (*s)[b] == QLatin1Char(' '))
            ++b;
    if (Which != 1)
        while (e > b && (*s)[e - 1] == QLatin1Char(' '))
            --e;
    resultText(c, s->mid(b, e - b));
}

template <bool Upper>
void fnCase(Ctx* c, int, Value** a)
{
    const auto s = stringOf(a[0]);
    if (!s)
        sqlite3_result_null(c);
    else
        resultText(c, Upper ? s->toUpper() : s->toLower());
}

void fnLen(Ctx* c, int, Value** a)
{
    const auto s = stringOf(a[0]);
    if (!s)
        sqlite3_result_null(c);
    else
        sqlite3_result_int64(c, s->size());
}

template <bool FromLeft>
void fnSide(Ctx* c, int, Value** a)
{
    const auto s = stringOf(a[0]);
    const auto n = numberOf(a[1]);
    if (!s || !n || *n < 0) {
        sqlite3_result_null(c);
        return;
    }
    const qsizetype k = qsizetype(std::min(*n, 1e9));
    resultText(c, FromLeft ? s->left(k) : s->right(k));
}

void fnMid(Ctx* c, int argc, Value** a)
{
    const auto s = stringOf(a[0]);
    const auto start = numberOf(a[1]);
    if (!s || !start || *start < 1) {
        sqlite3_result_null(c);
        return;
    }
    qsizetype len = -1;
    if (argc > 2 && !isNull(a[2])) {
        const auto l = numberOf(a[2]);
        if (!l || *l < 0) {
            sqlite3_result_null(c);
            return;
        }
        len = qsizetype(std::min(*l, 1e9));
    }
    const qsizetype from = qsizetype(std::min(*start, 1e9)) - 1;
    resultText(c, from >= s->size() ? QString() : s->mid(from, len));
}

void fnInStr(Ctx* c, int argc, Value** a)
{
    int first = 0;
    qsizetype start = 1;
    if (argc >= 3) {
        const auto n = numberOf(a[0]);
        if (!n || *n < 1) {
            sqlite3_result_null(c);
            return;
        }
        start = qsizetype(*n);
        first = 1;
    }
    const auto s1 = stringOf(a[first]);
    const auto s2 = stringOf(a[first + 1]);
    if (!s1 || !s2) {
        sqlite3_result_null(c);
        return;
    }
    const bool binary = argc >= 4 && intArg(a[3], 1) == 0;
    if (start > s1->size()) {
        sqlite3_result_int(c, 0);
        return;
    }
    if (s2->isEmpty()) {
        sqlite3_result_int64(c, start);
        return;
    }
    const qsizetype at = s1->indexOf(*s2, start - 1, binary ? Qt::CaseSensitive : Qt::CaseInsensitive);
    sqlite3_result_int64(c, at + 1);
}

void fnReplace(Ctx* c, int argc, Value** a)
{
    const auto s = stringOf(a[0]);
    const auto find = stringOf(a[1]);
    const auto with = stringOf(a[2]);
    if (!s || !find || !with) {
        sqlite3_result_null(c);
        return;
    }
    qsizetype start = argc > 3 ? qsizetype(intArg(a[3], 1)) : 1;
    int count = argc > 4 ? intArg(a[4], -1) : -1;
    const bool binary = argc > 5 && intArg(a[5], 1) == 0;
    if (start < 1) {
        sqlite3_result_null(c);
        return;
    }
    // As Jet does, the result begins at the start position.
    QString text = s->mid(start - 1);
    if (find->isEmpty() || count == 0) {
        resultText(c, text);
        return;
    }
    QString out;
    qsizetype pos = 0;
    const Qt::CaseSensitivity cs = binary ? Qt::CaseSensitive : Qt::CaseInsensitive;
    while (count != 0) {
        const qsizetype at = text.indexOf(*find, pos, cs);
        if (at < 0)
            break;
        out += QStringView(text).mid(pos, at - pos);
        out += *with;
        pos = at + find->size();
        if (count > 0)
            --count;
    }
    out += QStringView(text).mid(pos);
    resultText(c, out);
}

void fnSpace(Ctx* c, int, Value** a)
{
    const auto n = numberOf(a[0]);
    if (!n || *n < 0 || *n > 65535)
        sqlite3_result_null(c);
    else
        resultText(c, QString(qsizetype(*n), QLatin1Char(' ')));
}

void fnChr(Ctx* c, int, Value** a)
{
    const auto n = numberOf(a[0]);
    if (!n || *n < 0 || *n > 65535)
        sqlite3_result_null(c);
    else
        resultText(c, QString(QChar(char16_t(*n))));
}

void fnAsc(Ctx* c, int, Value** a)
{
    const auto s = stringOf(a[0]);
    if (!s || s->isEmpty())
        sqlite3_result_null(c);
    else
        sqlite3_result_int(c, s->at(0).unicode());
}

// --- choices and tests

void fnIIf(Ctx* c, int, Value** a) { sqlite3_result_value(c, truthOf(a[0]) ? a[1] : a[2]); }

void fnNz(Ctx* c, int argc, Value** a)
{
    if (!isNull(a[0]))
        sqlite3_result_value(c, a[0]);
    else if (argc > 1)
        sqlite3_result_value(c, a[1]);
    else
        sqlite3_result_text(c, "", 0, SQLITE_STATIC);
}

void fnIsNull(Ctx* c, int, Value** a) { resultFlag(c, isNull(a[0])); }

void fnIsDate(Ctx* c, int, Value** a)
{
    bool yes = false;
    if (isDateValue(a[0]))
        yes = true;
    else if (typeOf(a[0]) == SQLITE_TEXT)
        yes = dateOf(a[0]).has_value();
    resultFlag(c, yes);
}

void fnIsNumeric(Ctx* c, int, Value** a)
{
    const int t = typeOf(a[0]);
    resultFlag(c, t == SQLITE_INTEGER || t == SQLITE_FLOAT || (t == SQLITE_TEXT && numberOf(a[0]).has_value()));
}

// --- numbers

void fnVal(Ctx* c, int, Value** a)
{
    switch (typeOf(a[0])) {
    case SQLITE_NULL: sqlite3_result_null(c); return;
    case SQLITE_INTEGER:
    case SQLITE_FLOAT: sqlite3_result_value(c, a[0]); return;
    default: resultNumber(c, valOf(*stringOf(a[0]))); return;
    }
}

void fnStr(Ctx* c, int, Value** a)
{
    const auto n = numberOf(a[0]);
    if (!n) {
        sqlite3_result_null(c);
        return;
    }
    resultText(c, (*n >= 0 ? QStringLiteral(" ") : QString()) + numberText(*n));
}

void fnCStr(Ctx* c, int, Value** a)
{
    const auto s = stringOf(a[0]);
    if (s)
        resultText(c, *s);
    else
        sqlite3_result_null(c);
}

template <int Bits>
void fnCWhole(Ctx* c, int, Value** a)
{
    const auto n = numberOf(a[0]);
    const double lo = Bits == 16 ? -32768.0 : -2147483648.0;
    const double hi = Bits == 16 ? 32767.0 : 2147483647.0;
    const auto r = n ? roundedWhole(*n, lo, hi) : std::nullopt;
    if (r)
        sqlite3_result_int64(c, *r);
    else
        sqlite3_result_null(c);
}

void fnCDbl(Ctx* c, int, Value** a)
{
    const auto n = numberOf(a[0]);
    if (n)
        sqlite3_result_double(c, *n);
    else
        sqlite3_result_null(c);
}

void fnCCur(Ctx* c, int, Value** a)
{
    const auto n = numberOf(a[0]);
    if (n)
        resultNumber(c, std::nearbyint(*n * 10000.0) / 10000.0);
    else
        sqlite3_result_null(c);
}

void fnCBool(Ctx* c, int, Value** a)
{
    const auto n = numberOf(a[0]);
    if (n)
        resultFlag(c, *n != 0);
    else
        sqlite3_result_null(c);
}

template <int Op>
void fnWhole(Ctx* c, int, Value** a)
{
    if (typeOf(a[0]) == SQLITE_INTEGER) {
        const qint64 v = sqlite3_value_int64(a[0]);
        if (Op == 2)
            sqlite3_result_int64(c, v < 0 ? -v : v);
        else if (Op == 3)
            sqlite3_result_int(c, v < 0 ? -1 : v > 0 ? 1 : 0);
        else
            sqlite3_result_int64(c, v);
        return;
    }
    const auto n = numberOf(a[0]);
    if (!n) {
        sqlite3_result_null(c);
        return;
    }
    switch (Op) {
    case 0: resultNumber(c, std::floor(*n)); break; // Int
    case 1: resultNumber(c, std::trunc(*n)); break; // Fix
    case 2: resultNumber(c, std::fabs(*n)); break;  // Abs
    case 3: sqlite3_result_int(c, *n < 0 ? -1 : *n > 0 ? 1 : 0); break;
    }
}

void fnRound(Ctx* c, int argc, Value** a)
{
    const auto n = numberOf(a[0]);
    const int places = argc > 1 ? intArg(a[1], 0) : 0;
    if (!n || places < 0 || places > 15) {
        sqlite3_result_null(c);
        return;
    }
    const double scale = std::pow(10.0, places);
    // Round half to even, as Jet's Round does, on the value as printed to 15 digits.
    const double scaled = QByteArray::number(*n * scale, 'g', 15).toDouble();
    resultNumber(c, std::nearbyint(scaled) / scale);
}

void fnSqr(Ctx* c, int, Value** a)
{
    const auto n = numberOf(a[0]);
    if (!n || *n < 0)
        sqlite3_result_null(c);
    else
        sqlite3_result_double(c, std::sqrt(*n));
}

void fnIntDiv(Ctx* c, int, Value** a)
{
    const auto x = numberOf(a[0]), y = numberOf(a[1]);
    if (!x || !y) {
        sqlite3_result_null(c);
        return;
    }
    const double rx = std::nearbyint(*x), ry = std::nearbyint(*y);
    if (ry == 0) {
        sqlite3_result_null(c);
        return;
    }
    resultNumber(c, std::trunc(rx / ry));
}

void fnMod(Ctx* c, int, Value** a)
{
    const auto x = numberOf(a[0]), y = numberOf(a[1]);
    if (!x || !y) {
        sqlite3_result_null(c);
        return;
    }
    const double rx = std::nearbyint(*x), ry = std::nearbyint(*y);
    if (ry == 0) {
        sqlite3_result_null(c);
        return;
    }
    resultNumber(c, std::fmod(rx, ry));
}

void fnPow(Ctx* c, int, Value** a)
{
    const auto x = numberOf(a[0]), y = numberOf(a[1]);
    if (!x || !y)
        sqlite3_result_null(c);
    else
        resultNumber(c, std::pow(*x, *y));
}

// --- First and Last

struct Kept {
    sqlite3_value* value;
    bool seen;
};

template <bool Last>
void stepKeep(Ctx* c, int, Value** a)
{
    auto* k = static_cast<Kept*>(sqlite3_aggregate_context(c, sizeof(Kept)));
    if (!k)
        return;
    if (k->seen && !Last)
        return;
    sqlite3_value_free(k->value);
    k->value = sqlite3_value_dup(a[0]);
    k->seen = true;
}

void finalKeep(Ctx* c)
{
    auto* k = static_cast<Kept*>(sqlite3_aggregate_context(c, 0));
    if (k && k->value) {
        sqlite3_result_value(c, k->value);
        sqlite3_value_free(k->value);
        k->value = nullptr;
    } else {
        sqlite3_result_null(c);
    }
}

// A function of one connection: each call sees the regional order of the file it runs on.
struct Binding {
    void (*fn)(sqlite3_context*, int, sqlite3_value**);
    std::shared_ptr<const std::function<DateOrder()>> orderOfFile;
};

void callInFileOrder(sqlite3_context* c, int argc, sqlite3_value** argv)
{
    const auto* b = static_cast<const Binding*>(sqlite3_user_data(c));
    const ScopedDateOrder order((*b->orderOfFile)());
    b->fn(c, argc, argv);
}

} // namespace

void registerFunctions(sqlite3* db, std::function<DateOrder()> orderOfFile)
{
    const auto order = std::make_shared<const std::function<DateOrder()>>(std::move(orderOfFile));
    using Fn = void (*)(sqlite3_context*, int, sqlite3_value**);
#ifdef SQLITE_RESULT_SUBTYPE
    constexpr int makesDate = SQLITE_RESULT_SUBTYPE;
#else
    constexpr int makesDate = 0;
#endif
    constexpr int pure = SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_SUBTYPE;
    constexpr int clock = SQLITE_UTF8 | makesDate;
    struct Def {
        const char* name;
        int args;
        Fn fn;
        int flags;
    };
    const Def defs[] = {
        {"jet_date", 1, fnDate, pure | makesDate},
        {"jet_assign", 2, fnAssign, pure},
        {"jet_assign", 3, fnAssign, pure},
        {"jet_concat", -1, fnConcat, pure},
        {"jet_like", 2, fnLike, pure},
        {"jet_year", 1, fnDatePart<0>, pure},
        {"jet_month", 1, fnDatePart<1>, pure},
        {"jet_day", 1, fnDatePart<2>, pure},
        {"jet_hour", 1, fnDatePart<3>, pure},
        {"jet_minute", 1, fnDatePart<4>, pure},
        {"jet_second", 1, fnDatePart<5>, pure},
        {"jet_weekday", 1, fnWeekday, pure},
        {"jet_weekday", 2, fnWeekday, pure},
        {"jet_cdate", 1, fnCDate, pure | makesDate},
        {"jet_datevalue", 1, fnDateValue, pure | makesDate},
        {"jet_now", 0, fnNow, clock},
        {"jet_today", 0, fnToday, clock},
        {"jet_time", 0, fnTime, clock},
        {"jet_dateserial", 3, fnDateSerial, pure | makesDate},
        {"jet_dateadd", 3, fnDateAdd, pure | makesDate},
        {"jet_datediff", 3, fnDateDiff, pure},
        {"jet_datediff", 4, fnDateDiff, pure},
        {"jet_datepart", 2, fnDatePartOf, pure},
        {"jet_datepart", 3, fnDatePartOf, pure},
        {"jet_monthname", 1, fnMonthName, pure},
        {"jet_monthname", 2, fnMonthName, pure},
        {"jet_format", 1, fnFormat, pure},
        {"jet_format", 2, fnFormat, pure},
        {"jet_trim", 1, fnTrim<0>, pure},
        {"jet_ltrim", 1, fnTrim<1>, pure},
        {"jet_rtrim", 1, fnTrim<2>, pure},
        {"jet_ucase", 1, fnCase<true>, pure},
        {"jet_lcase", 1, fnCase<false>, pure},
        {"jet_len", 1, fnLen, pure},
        {"jet_left", 2, fnSide<true>, pure},
        {"jet_right", 2, fnSide<false>, pure},
        {"jet_mid", 2, fnMid, pure},
        {"jet_mid", 3, fnMid, pure},
        {"jet_instr", 2, fnInStr, pure},
        {"jet_instr", 3, fnInStr, pure},
        {"jet_instr", 4, fnInStr, pure},
        {"jet_replace", 3, fnReplace, pure},
        {"jet_replace", 4, fnReplace, pure},
        {"jet_replace", 5, fnReplace, pure},
        {"jet_replace", 6, fnReplace, pure},
        {"jet_space", 1, fnSpace, pure},
        {"jet_chr", 1, fnChr, pure},
        {"jet_asc", 1, fnAsc, pure},
        {"jet_iif", 3, fnIIf, pure | makesDate},
        {"jet_nz", 1, fnNz, pure | makesDate},
        {"jet_nz", 2, fnNz, pure | makesDate},
        {"jet_isnull", 1, fnIsNull, pure},
        {"jet_isdate", 1, fnIsDate, pure},
        {"jet_isnumeric", 1, fnIsNumeric, pure},
        {"jet_val", 1, fnVal, pure},
        {"jet_str", 1, fnStr, pure},
        {"jet_cstr", 1, fnCStr, pure},
        {"jet_cint", 1, fnCWhole<16>, pure},
        {"jet_clng", 1, fnCWhole<32>, pure},
        {"jet_cdbl", 1, fnCDbl, pure},
        {"jet_ccur", 1, fnCCur, pure},
        {"jet_cbool", 1, fnCBool, pure},
        {"jet_int", 1, fnWhole<0>, pure},
        {"jet_fix", 1, fnWhole<1>, pure},
        {"jet_abs", 1, fnWhole<2>, pure},
        {"jet_sgn", 1, fnWhole<3>, pure},
        {"jet_round", 1, fnRound, pure},
        {"jet_round", 2, fnRound, pure},
        {"jet_sqr", 1, fnSqr, pure},
        {"jet_intdiv", 2, fnIntDiv, pure},
        {"jet_mod", 2, fnMod, pure},
        {"jet_pow", 2, fnPow, pure},
    };
    for (const Def& d : defs) {
        sqlite3_create_function_v2(db, d.name, d.args, d.flags, new Binding{d.fn, order}, callInFileOrder, nullptr,
                                   nullptr, [](void* b) { delete static_cast<Binding*>(b); });
    }
    sqlite3_create_function_v2(db, "jet_first", 1, SQLITE_UTF8 | makesDate, nullptr, nullptr, stepKeep<false>,
                               finalKeep, nullptr);
    sqlite3_create_function_v2(db, "jet_last", 1, SQLITE_UTF8 | makesDate, nullptr, nullptr, stepKeep<true>,
                               finalKeep, nullptr);

    // A double-quoted name that names no column must be an error, as in Jet, not a string.
    sqlite3_db_config(db, SQLITE_DBCONFIG_DQS_DML, 0, static_cast<int*>(nullptr));
}

} // namespace jet
