// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/Dates.h"

#include <QRegularExpression>
#include <limits>

namespace {

DateOrder regionalOrder = DateOrder::DayFirst;

const QString kUnknownWord = QStringLiteral("Unknown");

// Local wall time, as the user typed it. Where that time does not exist locally (a daylight-saving
// gap at midnight, as some zones have) it is kept as the same wall time in UTC rather than lost.
QDateTime wallTime(const QDate& date, const QTime& time)
{
    QDateTime value(date, time);
    if (!value.isValid())
        value = QDateTime(date, time, Qt::UTC);
    return value;
}

// The time after a date: hh:mm[:ss] with an optional AM/PM. Invalid when the text is no such time.
QTime parseTime(const QRegularExpressionMatch& m, int first)
{
    int hour = m.captured(first).toInt();
    const int minute = m.captured(first + 1).toInt();
    const int second = m.hasCaptured(first + 2) ? m.captured(first + 2).toInt() : 0;
    const QString half = m.captured(first + 3).toUpper();
    if (!half.isEmpty()) {
        if (hour > 12)
            return {};
        if (half == QLatin1String("AM") && hour == 12)
            hour = 0;
        else if (half == QLatin1String("PM") && hour < 12)
            hour += 12;
    }
    return QTime(hour, minute, second);
}

int fullYear(const QString& digits)
{
    const int year = digits.toInt();
    if (digits.size() == 2)
        return year < 30 ? 2000 + year : 1900 + year;
    return year < 100 ? 0 : year; // "0025" is no year anyone means
}

bool isNull(const QVariant& value)
{
    return !value.isValid() || value.typeId() == QMetaType::Nullptr;
}

} // namespace

void SetRegionalDateOrder(DateOrder order)
{
    regionalOrder = order;
}

namespace {
// While the store evaluates a statement, the order of the file the statement runs on.
thread_local std::optional<DateOrder> fileOrder;
} // namespace

DateOrder RegionalDateOrder()
{
    return fileOrder ? *fileOrder : regionalOrder;
}

ScopedDateOrder::ScopedDateOrder(DateOrder order) : m_previous(fileOrder)
{
    fileOrder = order;
}

ScopedDateOrder::~ScopedDateOrder()
{
    fileOrder = m_previous;
}

DateOrder DateOrderForCountry(const QString& country)
{
    return country == QLatin1String("United States") ? DateOrder::MonthFirst : DateOrder::DayFirst;
}

std::optional<QDateTime> ParseDateText(const QString& text, DateOrder order)
{
    // Groups: 1-3 the date's numbers, 4-7 the time. The separator must be the same twice.
    static const QString timePart =
        QStringLiteral(R"((?:(?:\s+|T)([0-9]{1,2}):([0-9]{2})(?::([0-9]{2}))?\s*([AaPp][Mm])?)?$)");
    static const QRegularExpression regional(
        QStringLiteral(R"(^([0-9]{1,2})([/.\-])([0-9]{1,2})\2([0-9]{4}|[0-9]{2}))") + timePart);
    static const QRegularExpression yearFirst(
        QStringLiteral(R"(^([0-9]{4})([/.\-])([0-9]{1,2})\2([0-9]{1,2}))") + timePart);

    const QString t = text.trimmed();
    int year = 0;
    int month = 0;
    int day = 0;
    QRegularExpressionMatch m = yearFirst.match(t);
    if (m.hasMatch()) {
        year = fullYear(m.captured(1));
        month = m.captured(3).toInt();
        day = m.captured(4).toInt();
    } else {
        m = regional.match(t);
        if (!m.hasMatch())
            return std::nullopt;
        const int first = m.captured(1).toInt();
        const int second = m.captured(3).toInt();
        month = order == DateOrder::MonthFirst ? first : second;
        day = order == DateOrder::MonthFirst ? second : first;
        year = fullYear(m.captured(4));
    }
    const QDate date(year, month, day);
    if (year == 0 || !date.isValid())
        return std::nullopt;

    QTime time(0, 0);
    if (m.hasCaptured(5)) {
        time = parseTime(m, 5);
        if (!time.isValid())
            return std::nullopt;
    }
    return wallTime(date, time);
}

std::optional<QDateTime> ParseDateText(const QString& text)
{
    return ParseDateText(text, RegionalDateOrder());
}

std::optional<QDateTime> ToDateTime(const QVariant& value)
{
    switch (value.typeId()) {
    case QMetaType::QDate: {
        const QDate date = value.toDate();
        if (!date.isValid())
            return std::nullopt;
        return wallTime(date, QTime(0, 0));
    }
    case QMetaType::QDateTime: {
        const QDateTime dt = value.toDateTime();
        if (!dt.isValid())
            return std::nullopt;
        return dt;
    }
    case QMetaType::QString:
    case QMetaType::QByteArray:
        return ParseDateText(value.toString());
    default:
        // Numbers are no dates here, as the form's date check refuses them.
        return std::nullopt;
    }
}

bool IsDate(const QVariant& value)
{
    return ToDateTime(value).has_value();
}

QString ToIsoDate(const QVariant& value)
{
    const auto dt = ToDateTime(value);
    return dt ? dt->date().toString(QStringLiteral("yyyy-MM-dd")) : QString();
}

QString ShowDate(const QVariant& value)
{
    if (isNull(value))
        return kUnknownWord;
    const int type = value.typeId();
    if (type == QMetaType::QDate || type == QMetaType::QDateTime) {
        const auto dt = ToDateTime(value);
        if (!dt || dt->date().year() == 1925)
            return kUnknownWord;
        return FormatShortDate(dt->date());
    }
    const QString text = value.toString();
    // Only those four digits are looked at, so any date of 1925 reads as unknown as well.
    if (text.contains(QLatin1String("1925")))
        return kUnknownWord;
    if (type == QMetaType::QString || type == QMetaType::QByteArray) {
        if (const auto dt = ParseDateText(text))
            return FormatShortDate(dt->date());
    }
    return text;
}

QString DateOrUnknown(const QVariant& value)
{
    return ShowDate(value);
}

QString FormatShortDate(const QDate& date)
{
    return date.toString(RegionalDateOrder() == DateOrder::MonthFirst ? QStringLiteral("MM/dd/yyyy")
                                                                : QStringLiteral("dd/MM/yyyy"));
}

QString FormatSqlDate(const QDate& date)
{
    return date.toString(QStringLiteral("MM/dd/yyyy"));
}

QString StorageDateText(const QDateTime& value)
{
    if (!value.isValid())
        return QString();
    QString text = value.date().toString(QStringLiteral("yyyy-MM-dd"));
    const QTime time = value.time();
    if (time.hour() != 0 || time.minute() != 0 || time.second() != 0)
        text += QLatin1Char(' ') + time.toString(QStringLiteral("HH:mm:ss"));
    return text;
}

short WholePart(const QString& text)
{
    // The leading number of the part before the point, read as Val would ("12kg" gives 12). A number
    // that does not fit 16 bits gives 0 rather than a wrapped value, as no weight is that large.
    const QString t = text.trimmed();
    const qsizetype point = t.indexOf(QLatin1Char('.'));
    const QString whole = (point < 0 ? t : t.left(point)).trimmed();

    qsizetype i = 0;
    bool negative = false;
    if (i < whole.size() && (whole[i] == QLatin1Char('-') || whole[i] == QLatin1Char('+'))) {
        negative = whole[i] == QLatin1Char('-');
        ++i;
    }
    qint64 value = 0;
    qsizetype digits = 0;
    for (; i < whole.size() && whole[i] >= QLatin1Char('0') && whole[i] <= QLatin1Char('9'); ++i, ++digits) {
        if (value <= std::numeric_limits<short>::max())
            value = value * 10 + (whole[i].unicode() - u'0');
    }
    if (digits == 0)
        return 0;
    if (negative)
        value = -value;
    if (value < std::numeric_limits<short>::min() || value > std::numeric_limits<short>::max())
        return 0;
    return static_cast<short>(value);
}

QString FractionPart(const QString& text)
{
    const QString t = text.trimmed();
    const qsizetype point = t.indexOf(QLatin1Char('.'));
    return point < 0 ? QString() : t.mid(point + 1);
}
