// SPDX-License-Identifier: GPL-3.0-or-later
// Jet's dialect as SQLite text: each item of the dialect, and the refusals Jet makes before running.
#include "store/JetError.h"
#include "store/JetTranslator.h"
#include "store/JetTypes.h"
#include "support/TestEnv.h"

#include <gtest/gtest.h>

#include <QHash>

namespace {

using jet::StatementKind;

// The columns of the data file's tables that the cases below name.
std::optional<QVector<jet::ColumnInfo>> fakeSchema(const QString& table)
{
    static const QHash<QString, QVector<jet::ColumnInfo>> tables = {
        {QStringLiteral("tree"),
         {{QStringLiteral("id"), jet::dbLong},
          {QStringLiteral("name"), jet::dbText},
          {QStringLiteral("breed"), jet::dbText},
          {QStringLiteral("dob"), jet::dbDate},
          {QStringLiteral("notes"), jet::dbMemo},
          {QStringLiteral("deceased"), jet::dbDouble},
          {QStringLiteral("dateDeceased"), jet::dbText},
          {QStringLiteral("sold"), jet::dbDouble},
          {QStringLiteral("ps"), jet::dbText},
          {QStringLiteral("pd"), jet::dbText}}},
        {QStringLiteral("breeding"),
         {{QStringLiteral("ID"), jet::dbLong},
          {QStringLiteral("Boar"), jet::dbText},
          {QStringLiteral("Sow"), jet::dbText},
          {QStringLiteral("Mated"), jet::dbDate},
          {QStringLiteral("Unsuccessful"), jet::dbInteger}}},
    };
    const auto it = tables.constFind(table.toLower());
    if (it == tables.constEnd())
        return std::nullopt;
    return it.value();
}

jet::Translation tr(const QString& sql)
{
    return jet::translate(sql, fakeSchema);
}

int errorOf(const QString& sql)
{
    try {
        tr(sql);
    } catch (const JetError& e) {
        return e.number();
    }
    return 0;
}

struct Case {
    const char* jet;
    const char* sqlite;
};

void PrintTo(const Case& c, std::ostream* os) { *os << c.jet; }

class Dialect : public ::testing::TestWithParam<Case> {};

TEST_P(Dialect, TranslatesToSQLite)
{
    const Case& c = GetParam();
    EXPECT_EQ(tr(QString::fromUtf8(c.jet)).sql, QString::fromUtf8(c.sqlite));
}

INSTANTIATE_TEST_SUITE_P(
    Statements, Dialect,
    ::testing::Values(
        Case{"Select * From tree ORDER by name", R"(SELECT * FROM "tree" ORDER BY "name")"},
        Case{"select name from tree where ps = 'a' or pd = 'b';",
             R"(SELECT "name" FROM "tree" WHERE "ps" = 'a' OR "pd" = 'b')"},
        Case{"DELETE * FROM tree WHERE ID = 5", R"(DELETE FROM "tree" WHERE "ID" = 5)"},
        Case{"DELETE tree.* FROM tree", R"(DELETE FROM "tree")"},
        Case{"DELETE from tree  WHERE ID = 7", R"(DELETE FROM "tree" WHERE "ID" = 7)"},
        Case{"SELECT TOP 5 name FROM tree ORDER BY name", R"(SELECT "name" FROM "tree" ORDER BY "name" LIMIT 5)"},
        Case{"SELECT DISTINCTROW name FROM tree", R"(SELECT "name" FROM "tree")"},
        Case{"SELECT [tree].[name], [dob] FROM [tree]", R"(SELECT "tree"."name", "dob" FROM "tree")"},
        Case{"SELECT Count(*) FROM tree", R"(SELECT count(*) AS "Expr1000" FROM "tree")"},
        Case{"SELECT Max(dob) AS latest FROM tree", R"(SELECT max("dob") AS "latest" FROM "tree")"},
        Case{"SELECT * FROM tree WHERE sold <> -1 AND deceased = True",
             R"(SELECT * FROM "tree" WHERE "sold" <> -1 AND "deceased" = -1)"},
        Case{"SELECT * FROM tree WHERE deceased = false", R"(SELECT * FROM "tree" WHERE "deceased" = 0)"},
        Case{"SELECT * FROM tree WHERE name Is Not Null AND NOT sold = -1",
             R"(SELECT * FROM "tree" WHERE "name" IS NOT NULL AND NOT "sold" = -1)"},
        Case{"SELECT * FROM tree WHERE id Between 1 And 3 OR id In (5, 6)",
             R"(SELECT * FROM "tree" WHERE "id" BETWEEN 1 AND 3 OR "id" IN (5, 6))"}));

INSTANTIATE_TEST_SUITE_P(
    DateLiterals, Dialect,
    ::testing::Values(
        Case{"SELECT * FROM tree WHERE dob > #03/15/2020#", R"(SELECT * FROM "tree" WHERE "dob" > jet_date('2020-03-15'))"},
        Case{"SELECT * FROM tree WHERE dob > #03 15 2020#", R"(SELECT * FROM "tree" WHERE "dob" > jet_date('2020-03-15'))"},
        Case{"SELECT * FROM tree WHERE dob > #3/5/20#", R"(SELECT * FROM "tree" WHERE "dob" > jet_date('2020-03-05'))"},
        Case{"SELECT * FROM tree WHERE dob > #3/5/45#", R"(SELECT * FROM "tree" WHERE "dob" > jet_date('1945-03-05'))"},
        Case{"SELECT * FROM tree WHERE dob > #2020-03-15#", R"(SELECT * FROM "tree" WHERE "dob" > jet_date('2020-03-15'))"},
        Case{"SELECT * FROM tree WHERE dob = #03/15/2020 10:30 PM#",
             R"(SELECT * FROM "tree" WHERE "dob" = jet_date('2020-03-15 22:30:00'))"},
        Case{"SELECT * FROM tree WHERE dob = #03/15/2020 00:00:00#",
             R"(SELECT * FROM "tree" WHERE "dob" = jet_date('2020-03-15'))"},
        // A month that cannot be one is the day, as Jet reads it.
        Case{"SELECT * FROM tree WHERE dob = #13/01/2020#", R"(SELECT * FROM "tree" WHERE "dob" = jet_date('2020-01-13'))"},
        Case{"SELECT * FROM tree WHERE dob = #Jan 2, 2020#", R"(SELECT * FROM "tree" WHERE "dob" = jet_date('2020-01-02'))"},
        Case{"SELECT * FROM tree WHERE dob Between #01/01/2020# And #12/31/2020#",
             R"(SELECT * FROM "tree" WHERE "dob" BETWEEN jet_date('2020-01-01') AND jet_date('2020-12-31'))"}));

INSTANTIATE_TEST_SUITE_P(
    Operators, Dialect,
    ::testing::Values(
        Case{"SELECT * FROM tree WHERE name LIKE  '*ash*'", R"(SELECT * FROM "tree" WHERE jet_like("name", '*ash*'))"},
        Case{"SELECT * FROM tree WHERE name NOT LIKE 'a*' AND breed Like 'x' & '*'",
             R"(SELECT * FROM "tree" WHERE NOT jet_like("name", 'a*') AND jet_like("breed", jet_concat('x', '*')))"},
        Case{"SELECT name & ' (' & breed & ')' AS label FROM tree",
             R"(SELECT jet_concat("name", ' (', "breed", ')') AS "label" FROM "tree")"},
        // & binds looser than + and tighter than =.
        Case{"SELECT * FROM tree WHERE id + 1 & 'x' = '2x'",
             R"(SELECT * FROM "tree" WHERE jet_concat("id" + 1, 'x') = '2x')"},
        // A date column joined to text reads as the region's short date.
        Case{"SELECT name & ' ' & dob FROM tree",
             R"(SELECT jet_concat("name", ' ', jet_cdate("dob")) AS "Expr1000" FROM "tree")"},
        Case{"SELECT id Mod 3, id \\ 2, id / 2 FROM tree",
             R"(SELECT jet_mod("id", 3) AS "Expr1000", jet_intdiv("id", 2) AS "Expr1001", (CAST("id" AS REAL) / 2) AS "Expr1002" FROM "tree")"},
        Case{"SELECT id * 2 Mod 3 FROM tree", R"(SELECT jet_mod("id" * 2, 3) AS "Expr1000" FROM "tree")"},
        Case{"SELECT 2 ^ 3 FROM tree", R"(SELECT jet_pow(2, 3) AS "Expr1000" FROM "tree")"},
        Case{"SELECT -id - -1 FROM tree", R"(SELECT -"id" - -1 AS "Expr1000" FROM "tree")"}));

INSTANTIATE_TEST_SUITE_P(
    Functions, Dialect,
    ::testing::Values(
        Case{"SELECT * FROM breeding WHERE Year(mated) = '2020'",
             R"(SELECT * FROM "breeding" WHERE CAST(jet_year("mated") AS INTEGER) = '2020')"},
        Case{"SELECT * FROM tree WHERE CDate(dateDeceased) > #01/01/2020#",
             R"(SELECT * FROM "tree" WHERE jet_cdate("dateDeceased") > jet_date('2020-01-01'))"},
        Case{"SELECT Format(dob, 'yyyy-mm-dd') AS d FROM tree", R"(SELECT jet_format("dob", 'yyyy-mm-dd') AS "d" FROM "tree")"},
        Case{"SELECT Left$(name, 1), Right(name, 2), Mid(name, 2, 1) FROM tree",
             R"(SELECT jet_left("name", 1) AS "Expr1000", jet_right("name", 2) AS "Expr1001", jet_mid("name", 2, 1) AS "Expr1002" FROM "tree")"},
        Case{"SELECT * FROM tree WHERE IIf(IsNull(dob), 'u', 'k') = 'u'",
             R"(SELECT * FROM "tree" WHERE jet_iif(CAST(jet_isnull("dob") AS INTEGER), 'u', 'k') = 'u')"},
        Case{"SELECT Nz(breed, 'none') AS b, Val(name) AS v FROM tree",
             R"(SELECT jet_nz("breed", 'none') AS "b", CAST(jet_val("name") AS REAL) AS "v" FROM "tree")"},
        Case{"SELECT * FROM tree WHERE dob < Date() AND dob < Now()",
             R"(SELECT * FROM "tree" WHERE "dob" < jet_today() AND "dob" < jet_now())"},
        Case{"SELECT UCase(Trim(name)) FROM tree", R"(SELECT jet_ucase(jet_trim("name")) AS "Expr1000" FROM "tree")"}));

INSTANTIATE_TEST_SUITE_P(
    Names, Dialect,
    ::testing::Values(
        // A double-quoted word that names a column is that column; any other is a text.
        Case{R"(SELECT "name" FROM tree WHERE name = "Ash")", R"(SELECT "name" FROM "tree" WHERE "name" = 'Ash')"},
        Case{R"(SELECT * FROM "tree" WHERE "tree"."breed" = "it's")",
             R"(SELECT * FROM "tree" WHERE "tree"."breed" = 'it''s')"},
        // Text inside quotes is never touched.
        Case{"SELECT * FROM tree WHERE name = 'True & #1/1/2020# -- [x] \"y\"; Like *'",
             R"(SELECT * FROM "tree" WHERE "name" = 'True & #1/1/2020# -- [x] "y"; Like *')"},
        Case{"SELECT * FROM tree WHERE name = 'O''Brien'", R"(SELECT * FROM "tree" WHERE "name" = 'O''Brien')"},
        // A bracketed word is a name even when it is a word of the dialect.
        Case{"SELECT [True], [Year], [Date] FROM tree WHERE [Mod] = 1", R"(SELECT "True", "Year", "Date" FROM "tree" WHERE "Mod" = 1)"}));

INSTANTIATE_TEST_SUITE_P(
    Assignments, Dialect,
    ::testing::Values(
        Case{"UPDATE tree SET sold = -1 WHERE name =  'Ash'", R"(UPDATE "tree" SET "sold" = -1 WHERE "name" = 'Ash')"},
        Case{"UPDATE tree SET sold = 'True', tree.dob = '01/02/2020', name = 'x' WHERE id = 1",
             R"(UPDATE "tree" SET "sold" = jet_assign('True', 7), "dob" = jet_assign('01/02/2020', 8), "name" = 'x' WHERE "id" = 1)"},
        Case{"UPDATE tree SET dateDeceased = #01/02/2020#, dob = #01/02/2020#",
             R"(UPDATE "tree" SET "dateDeceased" = jet_assign(jet_date('2020-01-02'), 10, 8), "dob" = jet_date('2020-01-02'))"},
        Case{"UPDATE tree SET name = dob", R"(UPDATE "tree" SET "name" = jet_assign("dob", 10, 8))"},
        Case{"UPDATE breeding SET Unsuccessful = 1.5", R"(UPDATE "breeding" SET "Unsuccessful" = jet_assign(1.5, 3))"},
        Case{"INSERT INTO tree (name, dob, sold) VALUES ('Ash', '01/02/2020', 0)",
             R"(INSERT INTO "tree" ("name", "dob", "sold") VALUES ('Ash', jet_assign('01/02/2020', 8), 0))"},
        Case{"INSERT INTO breeding VALUES (Null, 'B', 'S', #5/1/2021#, True)",
             R"(INSERT INTO "breeding" VALUES (NULL, 'B', 'S', jet_date('2021-05-01'), -1))"},
        Case{"INSERT INTO breeding (Boar, Mated) SELECT name, dateDeceased FROM tree WHERE sold = -1",
             R"(INSERT INTO "breeding" ("Boar", "Mated") SELECT "name", jet_assign("dateDeceased", 8) FROM "tree" WHERE "sold" = -1)"},
        Case{"INSERT INTO tree SELECT * FROM tree", R"(INSERT INTO "tree" SELECT * FROM "tree")"}));

INSTANTIATE_TEST_SUITE_P(
    Definitions, Dialect,
    ::testing::Values(
        Case{"CREATE TABLE weights (id COUNTER PRIMARY KEY, weightDate DATE, weightTime STRING, name STRING, weight STRING)",
             R"(CREATE TABLE "weights" ("id" INTEGER PRIMARY KEY AUTOINCREMENT, "weightDate" DATETIME, "weightTime" TEXT COLLATE NOCASE, "name" TEXT COLLATE NOCASE, "weight" TEXT COLLATE NOCASE))"},
        Case{"CREATE TABLE t (a Text(50), b char(1), c MEMO, d NUMBER, e LONG, f Currency, g YESNO, h BIT, i SHORT, j INTEGER)",
             R"(CREATE TABLE "t" ("a" TEXT COLLATE NOCASE, "b" TEXT COLLATE NOCASE, "c" LONGTEXT COLLATE NOCASE, "d" DOUBLE, "e" INTEGER, "f" CURRENCY, "g" BOOLEAN, "h" BOOLEAN, "i" SMALLINT, "j" INTEGER))"},
        Case{R"(CREATE TABLE t (a STRING DEFAULT "", b LONG DEFAULT 0 NOT NULL, c DATE DEFAULT #1/2/2020#, d Long DEFAULT -1))",
             R"(CREATE TABLE "t" ("a" TEXT COLLATE NOCASE DEFAULT '', "b" INTEGER DEFAULT 0 NOT NULL, "c" DATETIME DEFAULT '2020-01-02', "d" INTEGER DEFAULT -1))"},
        Case{"CREATE TABLE t (a LONG, b STRING, CONSTRAINT pk PRIMARY KEY (a))",
             R"(CREATE TABLE "t" ("a" INTEGER, "b" TEXT COLLATE NOCASE, CONSTRAINT "pk" PRIMARY KEY ("a")))"},
        Case{"ALTER TABLE tree ADD COLUMN coi TEXT(50)", R"(ALTER TABLE "tree" ADD COLUMN "coi" TEXT COLLATE NOCASE)"},
        Case{"ALTER TABLE tree ADD leased BIT", R"(ALTER TABLE "tree" ADD COLUMN "leased" BOOLEAN)"},
        Case{"ALTER TABLE tree DROP COLUMN title", R"(ALTER TABLE "tree" DROP COLUMN "title")"},
        Case{"DROP INDEX title ON tree", R"(DROP INDEX "title")"},
        Case{"DROP TABLE [old table]", R"(DROP TABLE "old table")"},
        Case{"CREATE UNIQUE INDEX PrimaryKey ON contacts (ID) WITH PRIMARY",
             R"(CREATE UNIQUE INDEX "PrimaryKey" ON "contacts" ("ID"))"},
        Case{"CREATE INDEX byName ON tree (name, dob DESC)", R"(CREATE INDEX "byName" ON "tree" ("name", "dob" DESC))"}));

TEST(Translation, NamesTheKindAndTheTable)
{
    struct KindCase {
        const char* jet;
        StatementKind kind;
        const char* table;
    };
    const KindCase cases[] = {
        {"SELECT * FROM Breeding WHERE ID = 1", StatementKind::Select, "Breeding"},
        {"SELECT * FROM ([tree] INNER JOIN breeding ON tree.name = breeding.Boar)", StatementKind::Select, "tree"},
        {"INSERT INTO tree (name) VALUES ('a')", StatementKind::Insert, "tree"},
        {"UPDATE Tree SET name = 'a'", StatementKind::Update, "Tree"},
        {"DELETE * FROM tree", StatementKind::Delete, "tree"},
        {"CREATE TABLE journal (id COUNTER PRIMARY KEY)", StatementKind::CreateTable, "journal"},
        {"ALTER TABLE tree ADD COLUMN x STRING", StatementKind::AlterTable, "tree"},
        {"DROP TABLE tree", StatementKind::DropTable, "tree"},
        {"CREATE INDEX i ON tree (name)", StatementKind::CreateIndex, "tree"},
        {"DROP INDEX i ON tree", StatementKind::DropIndex, "tree"},
    };
    for (const KindCase& c : cases) {
        const jet::Translation t = tr(QString::fromUtf8(c.jet));
        EXPECT_EQ(t.kind, c.kind) << c.jet;
        EXPECT_EQ(t.table, QString::fromUtf8(c.table)) << c.jet;
    }
}

TEST(Translation, RefusesWhatJetRefusesWithItsNumbers)
{
    EXPECT_EQ(errorOf(QStringLiteral("SELECT * FROM tree; DROP TABLE tree")), 3142);
    EXPECT_EQ(errorOf(QStringLiteral("SELECT * FROM tree WHERE name = ''; DROP TABLE tree; --'")), 3142);
    EXPECT_EQ(errorOf(QStringLiteral("SELECT * FROM tree;;")), 3142);
    EXPECT_EQ(errorOf(QStringLiteral("SELECT * FROM tree ;  ")), 0);
    EXPECT_EQ(errorOf(QStringLiteral("SELECT * FROM tree WHERE dob = #13/45/2020#")), 3075);
    EXPECT_EQ(errorOf(QStringLiteral("SELECT * FROM tree WHERE dob = #02/30/2020#")), 3075);
    EXPECT_EQ(errorOf(QStringLiteral("SELECT * FROM tree WHERE dob = #soon#")), 3075);
    EXPECT_EQ(errorOf(QStringLiteral("SELECT * FROM tree WHERE dob = #01/02/2020")), 3075);
    EXPECT_EQ(errorOf(QStringLiteral("SELECT * FROM tree WHERE name = 'open")), 3075);
    EXPECT_EQ(errorOf(QStringLiteral("SELECT * FROM tree WHERE (name = 'a'")), 3075);
    EXPECT_EQ(errorOf(QStringLiteral("SELECT * FROM tree WHERE name = @x")), 3075);
    EXPECT_EQ(errorOf(QStringLiteral("SELECT name & FROM tree")), 3075);
    EXPECT_EQ(errorOf(QStringLiteral("INSERT INTO tree (name, nosuch) VALUES ('a', 1)")), 3127);
    EXPECT_EQ(errorOf(QStringLiteral("INSERT INTO nosuch (a) VALUES (1)")), 3078);
    EXPECT_EQ(errorOf(QStringLiteral("UPDATE nosuch SET a = 1")), 3078);
    EXPECT_EQ(errorOf(QStringLiteral("INSERT INTO tree (name, dob) VALUES ('a')")), 3346);
    EXPECT_EQ(errorOf(QStringLiteral("INSERT INTO tree (name) VALUES ('a'), ('b')")), 3134);
    EXPECT_EQ(errorOf(QStringLiteral("UPDATE tree SET WHERE id = 1")), 3144);
    EXPECT_EQ(errorOf(QStringLiteral("CREATE TABLE t (a WIDGET)")), 3290);
    EXPECT_EQ(errorOf(QStringLiteral("CREATE TABLE t (a)")), 3290);
    EXPECT_EQ(errorOf(QStringLiteral("ALTER TABLE tree ALTER COLUMN name MEMO")), 3219);
    EXPECT_EQ(errorOf(QString()), 3129);
    EXPECT_EQ(errorOf(QStringLiteral("   ;")), 3129);
    EXPECT_EQ(errorOf(QStringLiteral("PRAGMA writable_schema = 1")), 3129);
    EXPECT_EQ(errorOf(QStringLiteral("VACUUM")), 3129);
}

TEST(Translation, AnUnknownUpdateColumnIsLeftForTheEngineToRefuse)
{
    EXPECT_EQ(tr(QStringLiteral("UPDATE tree SET nosuch = 'a'")).sql, QStringLiteral(R"(UPDATE "tree" SET "nosuch" = 'a')"));
}

} // namespace
