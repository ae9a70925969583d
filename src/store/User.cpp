// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/User.h"

#include "base/Ui.h"
#include "store/DataFile.h"

#include <limits>

namespace {

// A copy that cannot be made (Null, a missing column, a number out of range) is skipped, leaving the
// fresh object's value.
void copyText(Recordset& rs, const char* column, QString& target, bool trim = false)
{
    try {
        const QVariant v = rs.Fields(QString::fromLatin1(column));
        if (v.isNull())
            return;
        target = trim ? v.toString().trimmed() : v.toString();
    } catch (const JetError&) {
    }
}

void copyShort(Recordset& rs, const char* column, short& target)
{
    try {
        const QVariant v = rs.Fields(QString::fromLatin1(column));
        if (v.isNull())
            return;
        bool ok = false;
        const double d = v.toString().trimmed().toDouble(&ok);
        if (!ok || d < std::numeric_limits<short>::min() || d > std::numeric_limits<short>::max())
            return;
        target = short(qRound(d));
    } catch (const JetError&) {
    }
}

QString quoted(const QString& text) { return QLatin1Char('\'') + EncodeText(text) + QLatin1Char('\''); }

} // namespace

void User::read(Database& database)
{
    try {
        Recordset rs = database.OpenRecordset(QStringLiteral("SELECT * FROM cavyuser  WHERE ID = 1"));
        if (rs.Eof())
            return;
        copyText(rs, "fldBreederName", BreederName);
        copyText(rs, "fldEmail", Email);
        copyText(rs, "fldPhoneNum", PhoneNum);
        copyText(rs, "fldStud", Stud);
        copyText(rs, "fldStudNum", StudNum);
        copyText(rs, "fldAnimal", Animal);
        copyText(rs, "fldMale", Male);
        copyText(rs, "fldFemale", Female);
        copyText(rs, "fldFather", Father);
        copyText(rs, "fldMother", Mother);
        copyShort(rs, "fldGestation", Gestation);
        copyShort(rs, "fldNestBox", NestBox);
        copyShort(rs, "fldRebreed", Rebreed);
        copyShort(rs, "fldWean", Wean);
        copyShort(rs, "fldTag", Tag);
        copyText(rs, "fldCountry", Country);
        copyText(rs, "fldCustomDetail", CustomDetail);
        for (int i = 0; i < 12; ++i)
            copyText(rs, QByteArray("fldCustomName" + QByteArray::number(i + 1)).constData(), CustomName[size_t(i)], true);
        copyText(rs, "fldOrganisation", Organisation);
        copyText(rs, "fldReminders", Reminders);
        copyText(rs, "fldPrefix", Prefix);
        copyText(rs, "fldWeightMeasure", WeightMeasure);
        copyText(rs, "fldVersion", Version);
        copyShort(rs, "fldAutoUpdate", AutoUpdate);
    } catch (const JetError&) {
        // A file without its settings row reads as empty settings; the setup wizard asks for them.
    }
}

void User::savePrefixes(Database& database) const
{
    try {
        database.Execute(QStringLiteral("UPDATE cavyuser ") + QStringLiteral("SET fldPrefix = ") + quoted(Prefix) +
                         QStringLiteral(" WHERE id = ") + QString::number(1));
    } catch (const JetError&) {
        Ui::message(QStringLiteral("Add new prefix to collection failed"), Ui::Buttons::Ok, Ui::Icon::Exclamation,
                    QStringLiteral("Error"));
    }
}

QList<QPair<QString, QString>> User::properties() const
{
    QList<QPair<QString, QString>> p;
    auto add = [&](const char* name, const QString& value) { p.append({QString::fromLatin1(name), value}); };
    add("Stud", Stud);
    add("BreederName", BreederName);
    add("Email", Email);
    add("PhoneNum", PhoneNum);
    add("StudNum", StudNum);
    add("Animal", Animal);
    add("Male", Male);
    add("Female", Female);
    add("Father", Father);
    add("Mother", Mother);
    add("Gestation", QString::number(Gestation));
    add("NestBox", QString::number(NestBox));
    add("Rebreed", QString::number(Rebreed));
    add("Wean", QString::number(Wean));
    add("Tag", QString::number(Tag));
    add("Country", Country);
    add("CustomDetail", CustomDetail);
    for (int i = 0; i < 12; ++i)
        p.append({QStringLiteral("CustomName") + QString::number(i + 1), CustomName[size_t(i)]});
    add("Organisation", Organisation);
    add("Reminders", Reminders);
    add("Prefix", Prefix);
    add("WeightMeasure", WeightMeasure);
    add("Version", Version);
    add("AutoUpdate", QString::number(AutoUpdate));
    return p;
}

QString SaveSettingsStatement(const User& u)
{
    QStringList sets;
    auto set = [&](const char* column, const QString& value) {
        sets << QString::fromLatin1(column) + QStringLiteral(" = ") + quoted(value);
    };
    set("fldEmail", u.Email);
    set("fldBreederName", u.BreederName);
    set("fldStud", u.Stud);
    set("fldStudNum", u.StudNum);
    set("fldPhoneNum", u.PhoneNum);
    set("fldAnimal", u.Animal);
    set("fldMale", u.Male);
    set("fldFemale", u.Female);
    set("fldFather", u.Father);
    set("fldMother", u.Mother);
    set("fldGestation", QString::number(u.Gestation));
    set("fldNestBox", QString::number(u.NestBox));
    set("fldRebreed", QString::number(u.Rebreed));
    set("fldWean", QString::number(u.Wean));
    set("fldTag", QString::number(u.Tag));
    set("fldCountry", u.Country);
    set("fldCustomDetail", u.CustomDetail);
    for (int i = 0; i < 12; ++i)
        set(QByteArray("fldCustomName" + QByteArray::number(i + 1)).constData(), u.CustomName[size_t(i)]);
    set("fldOrganisation", u.Organisation);
    set("fldReminders", u.Reminders);
    set("fldWeightMeasure", u.WeightMeasure);
    set("fldVersion", u.Version);
    sets << QStringLiteral("fldAutoUpdate = ") + QString::number(u.AutoUpdate);
    return QStringLiteral("UPDATE cavyuser ") + QStringLiteral("SET ") + sets.join(QStringLiteral(", ")) +
           QStringLiteral(" WHERE ID = 1");
}

bool SaveSettingsToFile(Database& database, const User& user)
{
    try {
        database.Execute(SaveSettingsStatement(user));
        return true;
    } catch (const JetError&) {
        return false;
    }
}
