// SPDX-License-Identifier: GPL-3.0-or-later
#include "records/RecordForm.h"

#include "records/Animal.h"
#include "records/Lists.h"
#include "records/Pictures.h"
#include "base/Clock.h"
#include "base/Dates.h"
#include "session/OpenDataFile.h"
#include "base/Ui.h"
#include "base/Log.h"
#include "session/globals.h"
#include "store/DataFile.h"

#include <QRegularExpression>
#include <QStringList>
#include <cmath>
#include <limits>

namespace RecordForm {

namespace {

const QString kUnknown = QStringLiteral("Unknown");

constexpr int kMin16 = std::numeric_limits<qint16>::min();
constexpr int kMax16 = std::numeric_limits<qint16>::max();

bool fits16(long long value) { return value >= kMin16 && value <= kMax16; }

// An age box as a 16-bit whole number, rounded half to even as the conversion always did.
std::optional<int> ageNumber(const QString& text)
{
    const QString t = text.trimmed();
    if (t.isEmpty())
        return 0;
    if (!IsNumeric(t) || t.startsWith(QLatin1Char('&')))
        return std::nullopt;
    QString decimal = t;
    decimal.replace(QLatin1Char('d'), QLatin1Char('e')).replace(QLatin1Char('D'), QLatin1Char('e'));
    decimal.remove(QRegularExpression(QStringLiteral(R"(\s)")));
    bool ok = false;
    const double value = decimal.toDouble(&ok);
    if (!ok)
        return std::nullopt;
    const double rounded = std::nearbyint(value);
    if (rounded < kMin16 || rounded > kMax16)
        return std::nullopt;
    return int(rounded);
}

} // namespace

bool IsNumeric(const QString& text)
{
    static const QRegularExpression decimal(
        QStringLiteral(R"(^\s*[+-]?\s*(\d+\.?\d*|\.\d+)([eEdD][+-]?\d+)?\s*$)"));
    static const QRegularExpression hexOrOctal(QStringLiteral(R"(^\s*&([hH][0-9A-Fa-f]+|[oO][0-7]+)\s*$)"));
    return decimal.match(text).hasMatch() || hexOrOctal.match(text).hasMatch();
}

QString checkIllegalChr(const QString& name)
{
    if (IsNumeric(name))
        return QStringLiteral("set of characters comprised only of numbers");
    static const QStringList illegal = {QStringLiteral("\\"), QStringLiteral("/"), QStringLiteral(":"),
                                        QStringLiteral("?"),  QStringLiteral("<"), QStringLiteral(">"),
                                        QStringLiteral("|"),  QStringLiteral("\"")};
    for (const QString& c : illegal) {
        if (name.contains(c))
            return c;
    }
    return {};
}

bool ValidateDateText(QString& text)
{
    if (text.isEmpty() || text == kUnknown) {
        text = kUnknownDate;
        return true;
    }
    return IsDate(text);
}

QString DateFormatText() { return GetLocaleWord(QStringLiteral("DateFormat")); }

std::optional<QDate> CalcDOB(int years, int months, int weeks)
{
    if (!fits16(years) || !fits16(months) || !fits16(weeks))
        return std::nullopt;
    // Each step of the sum is a 16-bit number; the first that overflows ends it.
    long long days = years * 365LL;
    if (!fits16(days))
        return std::nullopt;
    const long long monthDays = months * 30LL;
    if (!fits16(monthDays) || !fits16(days + monthDays))
        return std::nullopt;
    days += monthDays;
    const long long weekDays = weeks * 7LL;
    if (!fits16(weekDays) || !fits16(days + weekDays))
        return std::nullopt;
    days += weekDays;
    return Today().addDays(-days);
}

std::optional<QDate> CalcDOB(const QString& years, const QString& months, const QString& weeks)
{
    const auto y = ageNumber(years);
    const auto m = ageNumber(months);
    const auto w = ageNumber(weeks);
    if (!y || !m || !w)
        return std::nullopt;
    return CalcDOB(*y, *m, *w);
}

QString StoredSex(const QString& sexText)
{
    if (sexText.isEmpty())
        return {};
    if (sexText == gUser.Male)
        return QStringLiteral("male");
    if (sexText == gUser.Female)
        return QStringLiteral("female");
    if (sexText == QLatin1String("undefined"))
        return QStringLiteral("undefined");
    return {};
}

QString SaveMessages(SaveEntry& entry)
{
    QStringList messages;
    const QString animal = gUser.Animal;
    if (entry.addMode && Lists::RecordExists(EncodeText(entry.name), QStringLiteral("tree")))
        messages << QStringLiteral("A record already exists for this ") + animal;
    if (entry.name.isEmpty())
        messages << QStringLiteral("You must give your new ") + animal + QStringLiteral(" a name.");
    const QString illegal = checkIllegalChr(entry.name);
    if (!illegal.isEmpty()) {
        messages << QStringLiteral("Sorry you have a ") + illegal + QStringLiteral(" in the name.\n") +
                        QStringLiteral("You cannot have any of the characters   \\ / : ? < > | \" or a numeric value "
                                       "for the ") +
                        animal + QStringLiteral("'s name.\n") +
                        QStringLiteral("If you want to use just a number add the character  #  in front to make it "
                                       "non-numeric eg.  #1234");
    }
    const QString format = DateFormatText();
    if (!ValidateDateText(entry.dob))
        messages << QStringLiteral("You must enter the date of birth in date format  - ( ") + format +
                        QStringLiteral(" ) or leave it blank");
    if (entry.sold && !ValidateDateText(entry.dateSold))
        messages << QStringLiteral("Please enter Date sold in a date format  - ( ") + format +
                        QStringLiteral(" )  or leave it blank.");
    if (entry.deceased && !ValidateDateText(entry.dateDeceased))
        messages << QStringLiteral("Please enter Date deceased in a date format  - ( ") + format +
                        QStringLiteral(" )  or leave it blank.");
    // Without a sex nothing else is worth saying.
    if (StoredSex(entry.sex).isEmpty())
        return QStringLiteral("Please choose your animal's sex.");
    return messages.join(QLatin1Char('\n'));
}

bool SaveAnimalRecord(Animal& record, bool isEdit, const QString& oldName, bool showMessage)
{
    const bool rename = isEdit && IsRealRename(oldName, record.name);
    try {
        Transaction transaction(gDatabase);
        if (rename && !RenameInAllTables(oldName, record.name))
            return false;
        if (!record.save(isEdit, oldName, showMessage))
            return false;
        transaction.commit();
    } catch (const JetError& e) {
        LogError(QStringLiteral("Save animal error ") + QString::number(e.number()) + QStringLiteral(" - ") +
                 e.description());
        if (showMessage)
            Ui::message(QStringLiteral("Record failed to save - ") + record.name + QStringLiteral("\nError Number: ") +
                            QString::number(e.number()) + QLatin1Char('\n') + e.description(),
                        Ui::Buttons::Ok, Ui::Icon::Critical, QStringLiteral("Error"));
        return false;
    }
    if (rename && !renamePictures(oldName, record.name) && showMessage) {
        Ui::message(record.name + QStringLiteral(" is saved, but its pictures could not take the new name. They "
                                                 "are still in the pictures folder under ") +
                        oldName + QLatin1Char('.'),
                    Ui::Buttons::Ok, Ui::Icon::Exclamation, QStringLiteral("Pictures"));
    }
    return true;
}

ParentResult MakeParent(const QString& kind, const std::function<void()>& refillList)
{
    const bool father = kind == QLatin1String("Father");
    const QString term = father ? gUser.Father : gUser.Mother;
    ParentResult result;
    result.name = Ui::input(QStringLiteral("You can create a ") + term +
                                QStringLiteral("'s record and fill in the details later. \nPlease enter the ") + term +
                                QStringLiteral("'s name:"),
                            QStringLiteral("Quick Create - ") + term);
    if (result.name.isEmpty())
        return result;

    Animal parent;
    parent.name = result.name;
    parent.sex = father ? QStringLiteral("male") : QStringLiteral("female");
    if (refillList)
        refillList();
    if (Lists::RecordExists(EncodeText(result.name), QStringLiteral("tree"))) {
        Ui::message(QStringLiteral("A record already exists for ") + result.name +
                        QStringLiteral(", please choose it from the list."),
                    Ui::Buttons::Ok, Ui::Icon::Exclamation, QStringLiteral("Found Duplicate"));
        result.outcome = ParentOutcome::Duplicate;
        return result;
    }
    if (!parent.save(false, QString(), true)) {
        Ui::message(QStringLiteral("Parent record failed to save"), Ui::Buttons::Ok, Ui::Icon::Critical,
                    QStringLiteral("Error"));
        result.outcome = ParentOutcome::Failed;
        return result;
    }
    if (refillList)
        refillList();
    result.outcome = ParentOutcome::Created;
    return result;
}

} // namespace RecordForm
