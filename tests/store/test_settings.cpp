// SPDX-License-Identifier: GPL-3.0-or-later
// The settings row read into User and written back, and the words read through it.
#include "StoreTest.h"

#include "session/OpenDataFile.h"
#include "session/globals.h"
#include "store/DataFile.h"
#include "store/IntegrityCheck.h"
#include "store/User.h"

namespace {

class Settings : public StoreTest {
protected:
    void SetUp() override
    {
        StoreTest::SetUp();
        ASSERT_TRUE(CreateDataFile(QStringLiteral("s.cav"), env->dataFolder()));
        db = OpenWithPassword(path(QStringLiteral("s.cav")));
        CheckDatabase(db, false, false);
    }
    static User filled()
    {
        User u;
        u.Stud = QStringLiteral("Hillside");
        u.BreederName = QStringLiteral("Mary O'Neill");
        u.Email = QStringLiteral("mary@example.org");
        u.PhoneNum = QStringLiteral("555 0100");
        u.StudNum = QStringLiteral("HS42");
        u.Animal = QStringLiteral("Rabbit");
        u.Male = QStringLiteral("Buck");
        u.Female = QStringLiteral("Doe");
        u.Father = QStringLiteral("Sire");
        u.Mother = QStringLiteral("Dam");
        u.Gestation = 31;
        u.NestBox = 28;
        u.Rebreed = 42;
        u.Wean = 56;
        u.Tag = 60;
        u.Country = QStringLiteral("United Kingdom");
        u.CustomDetail = QStringLiteral("Phone: 555 0100");
        for (int i = 0; i < 12; ++i)
            u.CustomName[size_t(i)] = QStringLiteral("Field %1").arg(i + 1);
        u.Organisation = QStringLiteral("National Rabbit Council");
        u.Reminders = QStringLiteral("Clean hutches");
        u.WeightMeasure = QStringLiteral("kilograms");
        u.Version = QStringLiteral("5.00.00");
        u.AutoUpdate = -1;
        return u;
    }
    Database db;
};

TEST_F(Settings, EveryPropertySurvivesASaveAndARead)
{
    const User u = filled();
    ASSERT_TRUE(SaveSettingsToFile(db, u));
    User back;
    back.read(db);
    User expected = u;
    expected.BreederName = QStringLiteral("Mary O$Neill"); // values are not decoded on reading
    EXPECT_EQ(back.properties(), expected.properties());
    // Stored with its apostrophe turned, read back as stored.
    Recordset rs = db.OpenRecordset(QStringLiteral("SELECT fldBreederName FROM cavyuser"));
    EXPECT_EQ(rs.Fields(0).toString(), QStringLiteral("Mary O$Neill"));
    EXPECT_EQ(back.BreederName, QStringLiteral("Mary O$Neill"));
}

TEST_F(Settings, TheWizardsSaveKeepsThePrefixList)
{
    User u = filled();
    u.Prefix = QStringLiteral("GC,CH");
    u.savePrefixes(db);
    u.Prefix = QStringLiteral("something else");
    ASSERT_TRUE(SaveSettingsToFile(db, u));
    User back;
    back.read(db);
    EXPECT_EQ(back.Prefix, QStringLiteral("GC,CH"));
}

TEST_F(Settings, TheSaveStatementNamesTheColumnsInTheirOrder)
{
    User u;
    u.Gestation = 31;
    u.AutoUpdate = 1;
    const QString sql = SaveSettingsStatement(u);
    EXPECT_TRUE(sql.startsWith(QStringLiteral("UPDATE cavyuser SET fldEmail = '', fldBreederName = '', fldStud = '', "
                                              "fldStudNum = '', fldPhoneNum = '', fldAnimal = '', fldMale = '', "
                                              "fldFemale = '', fldFather = '', fldMother = '', fldGestation = '31', "
                                              "fldNestBox = '0', fldRebreed = '0', fldWean = '0', fldTag = '0', "
                                              "fldCountry = '', fldCustomDetail = '', fldCustomName1 = '',")));
    EXPECT_TRUE(sql.endsWith(QStringLiteral("fldCustomName12 = '', fldOrganisation = '', fldReminders = '', "
                                            "fldWeightMeasure = '', fldVersion = '', fldAutoUpdate = 1 WHERE ID = 1")));
    EXPECT_FALSE(sql.contains(QStringLiteral("fldPrefix")));
}

TEST_F(Settings, ValuesThatCannotBeCopiedLeaveTheFreshValue)
{
    db.Execute(QStringLiteral("UPDATE cavyuser SET fldGestation = 70000, fldStud = Null, fldCustomName4 = '   ', "
                              "fldCustomName5 = ' Eye colour ' WHERE ID = 1"));
    TableDef td = db.TableDefs(QStringLiteral("cavyuser"));
    td.Fields().Delete(QStringLiteral("fldTag"));
    User u;
    u.read(db);
    EXPECT_EQ(u.Gestation, 0);
    EXPECT_EQ(u.Stud, QString());
    EXPECT_EQ(u.Tag, 0);
    EXPECT_EQ(u.CustomName[3], QString());
    EXPECT_EQ(u.CustomName[4], QStringLiteral("Eye colour"));
    EXPECT_EQ(u.Animal, QStringLiteral("Animal"));
    EXPECT_EQ(u.AutoUpdate, 1);
}

TEST_F(Settings, APrefixThatCannotBeSavedSaysSo)
{
    User u;
    db.Close();
    env->ui().clear();
    u.savePrefixes(db);
    const auto calls = env->ui().calls();
    ASSERT_EQ(calls.size(), 1);
    EXPECT_EQ(calls[0].text, QStringLiteral("Add new prefix to collection failed"));
    EXPECT_EQ(calls[0].title, QStringLiteral("Error"));
}

TEST_F(Settings, WordsFollowTheFilesSpeciesAndCountry)
{
    gUser = User();
    gUser.Male = QStringLiteral("Buck");
    gUser.Female = QStringLiteral("Doe");
    EXPECT_EQ(TranslateSex(QStringLiteral("MALE")), QStringLiteral("Buck"));
    EXPECT_EQ(TranslateSex(QStringLiteral("female")), QStringLiteral("Doe"));
    EXPECT_EQ(TranslateSex(QStringLiteral("unknown")), QStringLiteral("undefined"));
    EXPECT_EQ(TranslateSex(QString()), QStringLiteral("undefined"));

    struct Row { const char* country; const char* colour; const char* date; const char* weight; const char* personalise; };
    const Row rows[] = {
        {"United States", "Color", "mm/dd/yyyy", "kg", "personalize"},
        {"United Kingdom", "Colour", "dd/mm/yyyy", "lbs", "personalise"},
        {"Australia", "Colour", "dd/mm/yyyy", "kg", "personalise"},
    };
    for (const Row& r : rows) {
        gUser.Country = QString::fromLatin1(r.country);
        EXPECT_EQ(GetLocaleWord(QStringLiteral("Colour")), QString::fromLatin1(r.colour)) << r.country;
        EXPECT_EQ(GetLocaleWord(QStringLiteral("DateFormat")), QString::fromLatin1(r.date)) << r.country;
        EXPECT_EQ(GetLocaleWord(QStringLiteral("WeightFormat")), QString::fromLatin1(r.weight)) << r.country;
        EXPECT_EQ(GetLocaleWord(QStringLiteral("personalise")), QString::fromLatin1(r.personalise)) << r.country;
        EXPECT_EQ(GetLocaleWord(QStringLiteral("Breed")), QString());
    }
    EXPECT_EQ(GetPedigreeLabel(QStringLiteral("555 0100"), QStringLiteral("HS42"), QStringLiteral("m@x.org")),
              QStringLiteral("Phone: 555 0100\nStud Number: HS42\nEmail: m@x.org"));
    gUser = User();
}

} // namespace
