// SPDX-License-Identifier: GPL-3.0-or-later
#include "records/Animal.h"

#include "records/Titles.h"
#include "base/Clock.h"
#include "base/Dates.h"
#include "base/Log.h"
#include "session/OpenDataFile.h"
#include "session/RecentList.h"
#include "base/Ui.h"
#include "session/globals.h"
#include "store/DataFile.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <algorithm>
#include <limits>
#include <optional>

Animal gAnimal;

namespace {

const QString kUnknown = QStringLiteral("Unknown");

QString quoted(const QString& text) { return QLatin1Char('\'') + text + QLatin1Char('\''); }
QString flagWord(bool flag) { return flag ? QStringLiteral("True") : QStringLiteral("False"); }

QString errorLine(const QString& title, const JetError& e)
{
    return title + QString::number(e.number()) + QStringLiteral(" - ") + e.description();
}

// A column's value, or nothing when the column cannot be read: a failed step of a load leaves its field
// as it was.
std::optional<QVariant> column(const Recordset& rs, const QString& name)
{
    try {
        return rs.Fields(name);
    } catch (const JetError&) {
        return std::nullopt;
    }
}

bool isJpeg(const QString& fileName) { return fileName.endsWith(QLatin1String(".jpg"), Qt::CaseInsensitive); }

// The *.jpg names of the pictures folder that start with prefix (letter case ignored), in name order so
// that "the first" is the same on every file system.
QStringList picturesStartingWith(const QString& prefix)
{
    QStringList names;
    QDirIterator it(PicturesFolder(), QDir::Files | QDir::Hidden);
    while (it.hasNext()) {
        it.next();
        const QString fileName = it.fileName();
        if (isJpeg(fileName) && fileName.startsWith(prefix, Qt::CaseInsensitive))
            names << fileName;
    }
    names.sort(Qt::CaseInsensitive);
    return names;
}

// A date of the record's text fields, or nothing when it is no date.
std::optional<QDate> recordDate(const QString& text)
{
    const auto dt = ParseDateText(text);
    if (!dt)
        return std::nullopt;
    return dt->date();
}

// The whole part of a real number, cut at its point as the printed number would be.
int wholePart(double value) { return int(value); }

} // namespace

QString PicturesFolder() { return gDataFolder + QStringLiteral("my pics/"); }

void Animal::SetCurrentAnimal(QString& requested)
{
    if (requested.isEmpty())
        return;
    Recordset rs;
    int count = 0;
    try {
        rs = gDatabase.OpenRecordset(QStringLiteral("SELECT * FROM tree WHERE name = '") + EncodeText(requested) +
                                     QStringLiteral("' "));
        if (rs.Eof())
            return; // the old animal stays current
        rs.MoveLast();
        count = rs.RecordCount();
    } catch (const JetError&) {
        return;
    }
    if (count > 1) {
        Ui::message(QStringLiteral("The text you are searching for is contained in ") + QString::number(count) +
                        QStringLiteral(" records. Please try searching with titles for an exact match. \n"
                                       "If you think you may have duplicate records, click 'Database > Fix Data' "
                                       "from the top menu to find duplicates before continuing."),
                    Ui::Buttons::Ok, Ui::Icon::Exclamation, QStringLiteral("Duplicate record error"));
    }

    auto text = [&](const char* col, QString& field, bool decode) {
        if (const auto v = column(rs, QLatin1String(col)))
            field = decode ? DecodeText(v->toString()) : v->toString();
    };
    auto date = [&](const char* col, QString& field) {
        if (const auto v = column(rs, QLatin1String(col)))
            field = DateOrUnknown(*v);
    };
    auto flag = [&](const char* col, bool& field) {
        if (const auto v = column(rs, QLatin1String(col)))
            field = v->isValid() && v->toDouble() != 0;
    };

    text("name", name, true);
    text("name", storedName, false);
    text("Colour", colour, true);
    text("Breed", breed, true);
    text("Sex", sex, false);
    sexTerm = TranslateSex(sex);
    date("DOB", dob);
    text("Notes", notes, true);
    text("PS", ps, true);
    text("PD", pd, true);
    if (const auto v = column(rs, QStringLiteral("Cage")))
        cage = CageText(DecodeText(v->toString()));
    text("Tag", tag, true);
    flag("Deceased", deceased);
    date("DateDeceased", dateDeceased);
    flag("Sold", sold);
    for (int i = 0; i < 12; ++i) {
        const QByteArray col = "CustomField" + QByteArray::number(i + 1);
        text(col.constData(), customField[i], true);
    }
    text("Health", health, true);
    text("Journal", journal, true);
    text("CallName", callName, true);
    if (const auto v = column(rs, QStringLiteral("ID")))
        id = qint32(v->toLongLong());
    flag("Breeder", breeder);
    flag("Owner", owner);
    flag("Leased", leased);
    text("Prefix", prefix, true);
    text("Suffix", suffix, true);
    text("COI", coi, false);
    date("DateSold", dateSold);
    loadedDateSold = dateSold;
    rs.Close();

    requested = name;
    fullName = DecodeText(prefix + QLatin1Char(' ') + name + QLatin1Char(' ') + suffix).trimmed();
    age = AgeText(dob, deceased, dateDeceased, sold, dateSold);
    title = GetTitle(name);
    loadPictures();
}

void Animal::loadPictures()
{
    // One listing serves all ten slots: the folder is shared by every data file and can be large.
    const QStringList candidates = picturesStartingWith(name + QLatin1Char('('));
    const QString folder = PicturesFolder();
    for (int n = 0; n < kPictureSlots; ++n) {
        const QString pattern = name + QLatin1Char('(') + QString::number(n) + QLatin1Char(')');
        picture[n].clear();
        for (const QString& fileName : candidates) {
            if (fileName.startsWith(pattern, Qt::CaseInsensitive)) {
                picture[n] = folder + fileName;
                break;
            }
        }
        pictureLabel[n] = getPictureLabel(picture[n]);
    }
}

void Animal::clearFields()
{
    name.clear();
    storedName.clear();
    colour.clear();
    breed.clear();
    sex.clear();
    sexTerm.clear();
    dob.clear();
    notes.clear();
    ps.clear();
    pd.clear();
    cage.clear();
    tag.clear();
    dateDeceased.clear();
    for (QString& c : customField)
        c.clear();
    health.clear();
    journal.clear();
    callName.clear();
    dateSold.clear();
    loadedDateSold.clear();
    prefix.clear();
    suffix.clear();
    coi.clear();
    deceased = sold = breeder = owner = false;
    id = 0;
}

QString Animal::getPictureFileName(const QString& pattern) const
{
    const QStringList names = picturesStartingWith(pattern);
    return names.isEmpty() ? QString() : PicturesFolder() + names.first();
}

QString Animal::getPictureLabel(const QString& path)
{
    const qsizetype p = path.indexOf(QLatin1Char('['));
    const qsizetype q = path.indexOf(QLatin1Char(']'));
    if (p < 0 || q < 0 || q - p - 1 <= 0)
        return {};
    return path.mid(p + 1, q - p - 1);
}

QString Animal::CageText(const QString& value)
{
    if (value.size() == 1 && value.at(0).isDigit())
        return QLatin1Char('0') + value;
    return value;
}

QString Animal::AgeText(const QString& dobText, bool isDeceased, const QString& deathText, bool isSold,
                        const QString& soldText)
{
    if (dobText == kUnknown)
        return kUnknown;
    const auto born = recordDate(dobText);
    if (!born)
        return {};

    qint64 span = 0;
    const QString& endText = isDeceased ? deathText : soldText;
    if (isDeceased || isSold) {
        if (endText != kUnknown) {
            const auto end = recordDate(endText);
            if (!end)
                return {};
            span = born->daysTo(*end);
        }
    } else {
        span = born->daysTo(Today());
    }
    // The count is a 16-bit number: a span past its range gives no age at all.
    if (span > std::numeric_limits<qint16>::max() || span < std::numeric_limits<qint16>::min())
        return {};
    const qint16 days = qint16(span);

    int years = 0;
    int rest = days;
    double months = 0;
    if (days < 366) {
        months = rest / 30.0;
    } else {
        years = wholePart(days / 365.0);
        rest = days % 365;
        months = rest / 30.0;
    }

    QString text;
    if (years == 0) {
        if (rest > 120)
            text = QString::number(wholePart(rest / 30.0)) + QStringLiteral(" months");
        else if (rest >= 14)
            text = QString::number(wholePart(rest / 7.0)) + QStringLiteral(" weeks");
        else if (rest >= 8)
            text = QString::number(wholePart(rest / 7.0)) + QStringLiteral(" week");
        else if (rest == 1)
            text = QStringLiteral("1 day");
        else if (rest == 0)
            text = kUnknown;
        else
            text = QString::number(rest) + QStringLiteral(" days"); // 2 to 7, and a birth still to come
    } else if (years == 1) {
        text = QStringLiteral("1 year ") + QString::number(wholePart(months)) + QStringLiteral(" months");
    } else {
        text = QString::number(years) + QStringLiteral(" years ") + QString::number(wholePart(months)) +
               QStringLiteral(" months");
    }
    if (isDeceased)
        return QStringLiteral("Died at ") + text;
    if (isSold)
        return QStringLiteral("Sold at ") + text;
    return text;
}

void Animal::fillDefaults()
{
    for (QString* field : {&colour, &breed, &ps, &pd}) {
        if (field->isEmpty())
            *field = kUnknown;
    }
}

bool Animal::saveStatement(bool isEdit, const QString& oldName, bool showMessage)
{
    // Every text is encoded, also those the record once wrote raw: one apostrophe in a colour or a cage
    // broke the statement.
    const auto text = [](const QString& value) { return quoted(EncodeText(value)); };
    QString sql;
    if (isEdit) {
        const QList<std::pair<const char*, QString>> columns = {
            {"name", text(name)},        {"colour", text(colour)},       {"breed", text(breed)},
            {"sex", text(sex)},          {"dob", text(dob)},             {"ps", text(ps)},
            {"pd", text(pd)},            {"cage", text(cage)},           {"tag", text(tag)},
            {"picture", text(picture[0])}, {"deceased", flagWord(deceased)}, {"datedeceased", text(dateDeceased)},
            {"sold", flagWord(sold)},    {"datesold", text(dateSold)}};
        QStringList sets;
        for (const auto& [column, value] : columns)
            sets << QLatin1String(column) + QStringLiteral(" = ") + value;
        for (int i = 0; i < 12; ++i)
            sets << QStringLiteral("customfield") + QString::number(i + 1) + QStringLiteral(" = ") + text(customField[i]);
        sets << QStringLiteral("callname = ") + text(callName) << QStringLiteral("breeder = ") + flagWord(breeder)
             << QStringLiteral("owner = ") + flagWord(owner) << QStringLiteral("leased = ") + flagWord(leased)
             << QStringLiteral("prefix = ") + text(prefix) << QStringLiteral("suffix = ") + text(suffix);
        sql = QStringLiteral("UPDATE tree SET ") + sets.join(QLatin1Char(',')) + QStringLiteral(" WHERE name = ") +
              text(oldName);
    } else {
        QStringList values = {text(name), text(colour), text(breed),        text(sex),       text(dob),
                              text(ps),   text(pd),     text(cage),         text(tag),       text(picture[0]),
                              flagWord(deceased),       text(dateDeceased), flagWord(sold),  text(dateSold)};
        for (const QString& c : customField)
            values << text(c);
        values << text(callName) << flagWord(breeder) << flagWord(owner) << flagWord(leased) << text(prefix)
               << text(suffix);
        sql = QStringLiteral("INSERT INTO tree (name,colour,breed,sex,dob,ps,pd,cage,tag,picture,deceased,"
                             "dateDeceased,sold,datesold,customField1,customField2,customField3,customField4,"
                             "customField5,customField6,customField7,customField8,customField9,customField10,"
                             "customField11,customField12,callname,breeder,owner,leased,Prefix,Suffix) VALUES (") +
              values.join(QLatin1Char(',')) + QLatin1Char(')');
    }
    try {
        gDatabase.Execute(sql);
        return true;
    } catch (const JetError& e) {
        if (showMessage) {
            LogError(errorLine(QStringLiteral("Save Animal Error "), e));
            Ui::message(QStringLiteral("Record failed to save - ") + name + QStringLiteral("\nError Number: ") +
                            QString::number(e.number()) + QLatin1Char('\n') + e.description(),
                        Ui::Buttons::Ok, Ui::Icon::Critical, QStringLiteral("Error"));
        }
        return false;
    }
}

void Animal::updateSoldStock()
{
    if (!sold)
        return;
    const QString offspring = EncodeText(name);
    const auto text = [](const QString& value) { return EncodeText(value); };
    try {
        Recordset rs = gDatabase.OpenRecordset(QStringLiteral("SELECT * FROM soldStock  WHERE Offspring = '") +
                                               offspring + QLatin1Char('\''));
        const bool none = rs.Eof();
        rs.Close();
        if (none) {
            gDatabase.Execute(QStringLiteral("INSERT INTO soldstock (Dam,Sire,Offspring,DOB,Breed,Colour,DateSold,"
                                             "SoldTo) VALUES ('") +
                              text(pd) + QStringLiteral("','") + text(ps) + QStringLiteral("','") + offspring +
                              QStringLiteral("','") + text(dob) + QStringLiteral("','") + text(breed) +
                              QStringLiteral("','") + text(colour) + QStringLiteral("','") + text(dateSold) +
                              QStringLiteral("',' ')"));
        } else {
            // The buyer and the date of the sale belong to the sale: an edit of the animal keeps them,
            // unless the user changed the date here.
            QString sql = QStringLiteral("UPDATE soldStock SET Dam = '") + text(pd) + QStringLiteral("',Sire = '") +
                          text(ps) + QStringLiteral("',Offspring = '") + offspring + QStringLiteral("',DOB = '") +
                          text(dob) + QStringLiteral("',Breed = '") + text(breed) + QStringLiteral("',Colour = '") +
                          text(colour) + QLatin1Char('\'');
            if (dateSold != loadedDateSold)
                sql += QStringLiteral(",DateSold = '") + text(dateSold) + QLatin1Char('\'');
            gDatabase.Execute(sql + QStringLiteral(" WHERE Offspring = '") + offspring + QLatin1Char('\''));
        }
    } catch (const JetError& e) {
        LogError(errorLine(QStringLiteral("Update Sold Stock Error "), e));
    }
}

bool Animal::save(bool isEdit, const QString& oldName, bool showMessage)
{
    try {
        fillDefaults();
        // The row, its children's parent names and its sale change together or not at all.
        Transaction transaction(gDatabase);
        if (!saveStatement(isEdit, oldName, showMessage))
            return false;
        if (isEdit)
            RenameAnimal(oldName);
        updateSoldStock();
        transaction.commit();
        AddRecent(name);
        ShowRecentList();
        return true;
    } catch (const JetError& e) {
        if (showMessage) {
            LogError(errorLine(QStringLiteral("Save animal error "), e));
            Ui::message(QString::number(e.number()) + QStringLiteral(" - ") + e.description(), Ui::Buttons::Ok,
                        Ui::Icon::Critical, QStringLiteral("Error"));
        }
        return false;
    }
}

void Animal::RenameAnimal(const QString& oldName)
{
    if (!IsRealRename(oldName, name))
        return;
    for (const QString& col : {QStringLiteral("PS"), QStringLiteral("PD")}) {
        gDatabase.Execute(QStringLiteral("UPDATE tree SET ") + col + QStringLiteral(" = '") + EncodeText(name) +
                          QStringLiteral("' WHERE ") + col + QStringLiteral(" = '") + EncodeText(oldName) +
                          QStringLiteral("' "));
    }
    RenameRecent(oldName, name);
}

void Animal::SaveHealthOrJournal(const QString& field, const QString& value)
{
    try {
        gDatabase.Execute(QStringLiteral("UPDATE tree SET ") + field + QStringLiteral(" = '") + EncodeText(value) +
                          QStringLiteral("' WHERE name = '") + EncodeText(name) + QLatin1Char('\''));
    } catch (const JetError& e) {
        LogError(errorLine(QStringLiteral("Save ") + field + QStringLiteral(" Error "), e));
        Ui::message(QStringLiteral("Record failed to save - ") + name + QStringLiteral("\nError Number: ") +
                        QString::number(e.number()) + QLatin1Char('\n') + e.description(),
                    Ui::Buttons::Ok, Ui::Icon::Critical, QStringLiteral("Error"));
    }
}

void Animal::updateField(const QString& field, const QString& value)
{
    try {
        gDatabase.Execute(QStringLiteral("UPDATE tree SET ") + field + QStringLiteral(" = '") + EncodeText(value) +
                          QStringLiteral("' WHERE name = '") + storedName + QLatin1Char('\''));
    } catch (const JetError& e) {
        LogError(errorLine(QStringLiteral("Update Field Error "), e));
        Ui::message(field + QStringLiteral(" record failed to save\n") + e.description(), Ui::Buttons::Ok,
                    Ui::Icon::Critical);
    }
}

void Animal::Delete()
{
    try {
        gDatabase.Execute(QStringLiteral("DELETE from tree  WHERE ID = ") + QString::number(id));
        LogSave(QStringLiteral("Deleted: ") + name);
    } catch (const JetError& e) {
        LogError(errorLine(QStringLiteral("Delete Animal Error "), e));
        return;
    }
    DeletePictures();
}

void Animal::DeletePictures()
{
    const QString folder = PicturesFolder();
    const QString lowered = name.toLower();
    QStringList files;
    QDirIterator it(folder, QDir::Files | QDir::Hidden);
    while (it.hasNext()) {
        it.next();
        if (isJpeg(it.fileName()))
            files << it.fileName();
    }
    files.sort(Qt::CaseInsensitive);
    for (const QString& file : files) {
        const qsizetype bracket = file.indexOf(QLatin1Char('('));
        if (bracket < 0 || file.left(bracket).toLower() != lowered)
            continue;
        const Ui::Answer answer = Ui::message(
            QStringLiteral("Do you want to delete the picture ") + file +
                QStringLiteral(" from the Tessorin 'My Pics' folder?\n"
                               "This won't affect your original source copy of the picture."),
            Ui::Buttons::YesNo, Ui::Icon::Question, QStringLiteral("Delete Picture"));
        if (answer != Ui::Answer::Yes)
            continue;
        QFile f(folder + file);
        if (!f.remove()) {
            LogError(QStringLiteral("Picture delete for ") + name + QStringLiteral(" failed 75 - ") + f.errorString());
            Ui::message(QStringLiteral("Picture delete for ") + name + QStringLiteral(" failed"), Ui::Buttons::Ok,
                        Ui::Icon::Critical);
            return; // the pictures not reached stay
        }
    }
}

QString Animal::Get_Awards(bool withoutParents)
{
    const QChar cr = QLatin1Char('\r');
    QString text;
    if (name.isEmpty()) {
        text = QStringLiteral("The program cannot find the record you are looking for in this database.\r"
                              "You may have clicked on a record in the recent list which no longer exists or has "
                              "been renamed.\r"
                              "The list may belong to another database with the same name which you have opened "
                              "recently.\r"
                              "You can reset your recent names list by choosing Database > Clear Recent Names List "
                              "from the top menu.\r"
                              "To find records in this database click the SEARCH button. \r");
    } else if (!sex.isEmpty()) {
        text = QStringLiteral("Sex:   ") + sexTerm + cr;
    }
    if (!dob.isEmpty() && dob != kUnknown && dob != kUnknownDate) {
        text += QStringLiteral("DOB:  ") + dob + cr + QStringLiteral("Age:  ") + age;
        if (deceased)
            text += QStringLiteral(" (Deceased) ");
        text += cr;
    }
    if (!breed.isEmpty() && breed != kUnknown)
        text += QStringLiteral("Breed: ") + breed + cr;
    if (!colour.isEmpty() && colour != kUnknown)
        text += GetLocaleWord(QStringLiteral("Colour")) + QStringLiteral(":  ") + colour + cr;
    if (tag.size() > 1)
        text += QStringLiteral("Registration No: ") + tag + cr;
    if (!cage.isEmpty())
        text += QStringLiteral("Cage No: ") + cage + cr;
    if (!withoutParents) {
        // The parents as the file holds them now, not as they were loaded.
        const auto parent = [&](const QString& col, const QString& word) {
            try {
                Recordset rs = gDatabase.OpenRecordset(QStringLiteral("SELECT name,") + col +
                                                       QStringLiteral(" FROM tree WHERE name = '") + EncodeText(name) +
                                                       QStringLiteral("' "));
                if (rs.Eof())
                    return;
                const QString parentName = DecodeText(rs.Fields(col).toString());
                if (!parentName.isEmpty() && parentName != kUnknown)
                    text += word + QStringLiteral(":  ") + parentName + cr;
            } catch (const JetError&) {
            }
        };
        parent(QStringLiteral("PS"), gUser.Father);
        parent(QStringLiteral("PD"), gUser.Mother);
    }
    for (int i = 0; i < 12; ++i) {
        if (!customField[i].isEmpty())
            text += gUser.CustomName[i] + QStringLiteral(": ") + customField[i] + cr;
    }
    if (withoutParents) {
        while (text.endsWith(cr) || text.endsWith(QLatin1Char(' ')))
            text.chop(1);
    }
    return text;
}

QString Animal::GetTitle(const QString& name) { return MatchTitle(SplitTitles(gUser.Prefix), name); }

bool IsRealRename(const QString& oldName, const QString& newName)
{
    const QString old = oldName.trimmed();
    return !old.isEmpty() && old.compare(kUnknown, Qt::CaseInsensitive) != 0 && oldName != newName;
}

void ReplaceRecordName(const QString& table, const QString& field, const QString& oldName, const QString& newName)
{
    gDatabase.Execute(QStringLiteral("UPDATE ") + table + QStringLiteral(" SET ") + field + QStringLiteral(" = '") +
                      EncodeText(newName) + QStringLiteral("' WHERE ") + field + QStringLiteral(" = '") +
                      EncodeText(oldName) + QLatin1Char('\''));
}

bool RenameInAllTables(const QString& oldName, const QString& newName)
{
    if (!IsRealRename(oldName, newName))
        return true;
    struct Column {
        const char* table;
        const char* field;
    };
    static const Column columns[] = {{"tree", "ps"},          {"tree", "pd"},         {"weights", "name"},
                                     {"expenditure", "name"}, {"soldStock", "Dam"},   {"soldStock", "Sire"},
                                     {"soldStock", "Offspring"}, {"Breeding", "Boar"}, {"Breeding", "Sow"},
                                     {"Shows", "Name"},       {"vaccinations", "name"}};
    try {
        Transaction transaction(gDatabase);
        for (const Column& c : columns)
            ReplaceRecordName(QLatin1String(c.table), QLatin1String(c.field), oldName, newName);
        transaction.commit();
        return true;
    } catch (const JetError& e) {
        LogError(errorLine(QStringLiteral("Replace record name error "), e));
        return false;
    }
}
