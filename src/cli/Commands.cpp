// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/Commands.h"
#include "cli/CliSupport.h"

#include "cli/DemoPictures.h"
#include "cli/Generator.h"
#include "records/Animal.h"
#include "base/Clock.h"
#include "base/Log.h"
#include "session/OpenDataFile.h"
#include "session/globals.h"
#include "store/DataFile.h"
#include "store/IntegrityCheck.h"
#include "store/Schema.h"
#include "store/SpeciesPresets.h"
#include "store/StatementLimit.h"
#include "store/User.h"

#include <QDate>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <cmath>
#include <optional>
#include <vector>
#include <stdexcept>

namespace {

QString jetMessage(const JetError& e)
{
    // One line, whatever the engine's text holds.
    QString description = e.description();
    description.replace(QLatin1Char('\n'), QLatin1Char(' '));
    return QStringLiteral("Error %1: %2").arg(e.number()).arg(description);
}


QString absolute(const QString& path) { return QFileInfo(path).absoluteFilePath(); }

// Makes the file and opens it as the program opens a data file, which gives it its tables, settings
// row and version stamp. The file is the session's gDatabase afterwards.
void createAndOpen(const QString& path)
{
    const QFileInfo info(path);
    if (info.exists())
        fail(QStringLiteral("Cannot create %1: the file exists").arg(path));
    if (!info.absoluteDir().exists())
        fail(QStringLiteral("Cannot create %1: no folder %2").arg(path, info.absolutePath()));
    if (!CreateDataFile(info.fileName(), info.absolutePath() + QLatin1Char('/')))
        fail(QStringLiteral("Cannot create %1").arg(path));
    if (!OpenDataFile(info.absoluteFilePath())) {
        RemoveDataFile(info.absoluteFilePath());
        fail(QStringLiteral("Cannot make the tables of %1 (is the disk full?); nothing was left behind").arg(path));
    }
}

// Runs work on a file this command has just made; on any failure the half-made file goes again, so
// that a rerun with the same path works.
template <typename Work> void onNewFile(const QString& path, Work work)
{
    createAndOpen(path);
    try {
        work();
        CloseDatabase();
    } catch (...) {
        CloseDatabase();
        RemoveDataFile(absolute(path));
        throw;
    }
}

// A statement typed by hand may run for hours on a large file; it is stopped after this unless asked.
constexpr int kStatementSeconds = 60;

bool isSelect(const QString& statement)
{
    static const QRegularExpression select(QStringLiteral("^\\s*select\\b"), QRegularExpression::CaseInsensitiveOption);
    return select.match(statement).hasMatch();
}

int cmdNew(const CommandLine& cl, QTextStream&)
{
    cl.expect({QStringLiteral("PATH")});
    onNewFile(cl.at(0), [] {});
    return kExitOk;
}

int cmdCheck(const CommandLine& cl, QTextStream& out)
{
    cl.expect({QStringLiteral("PATH")});
    const QString path = cl.at(0);
    const bool force = cl.flag(QStringLiteral("force"));
    Database db = openExisting(path);
    // Opening made the quick check; this one reads every index against its table as well.
    if (const QString damage = DamageReport(db, true); !damage.isEmpty())
        fail(QStringLiteral("%1 is damaged: %2").arg(path, damage));
    if (db.isReadOnly()) {
        if (!force && GetVersionText(db) == ProgramVersionText())
            return kExitOk;
        fail(QStringLiteral("Cannot bring %1 up to date: %2").arg(path, WhyReadOnly(path)));
    }
    for (const QString& removed : DropForeignTriggersAndViews(db))
        out << "removed\t" << EscapeField(removed) << '\n';
    const bool clean = CheckDatabase(db, force, false);
    db.Close();
    if (!clean)
        fail(QStringLiteral("The integrity check of %1 met errors; they are listed in %2").arg(path, ErrorLogPath()));
    return kExitOk;
}

int cmdSql(const CommandLine& cl, QTextStream& out)
{
    cl.expect({QStringLiteral("PATH"), QStringLiteral("STATEMENT")});
    Database db = openExisting(cl.at(0));
    const QString statement = cl.at(1);
    const int seconds = int(cl.number(QStringLiteral("time-limit"), kStatementSeconds, 1, 86400));
    std::optional<StatementTimeLimit> limit;
    if (!cl.flag(QStringLiteral("no-limit")))
        limit.emplace(db, seconds);
    try {
        if (!isSelect(statement)) {
            const int n = db.Execute(statement);
            out << "rows affected: " << n << '\n';
            db.Close();
            return kExitOk;
        }
        Recordset rs = db.OpenRecordset(statement);
        QStringList header;
        for (int i = 0; i < rs.FieldCount(); ++i)
            header << EscapeField(rs.FieldName(i));
        out << header.join(QLatin1Char('\t')) << '\n';
        QStringList row;
        while (!rs.Eof()) {
            row.clear();
            for (int i = 0; i < rs.FieldCount(); ++i)
                row << FormatField(rs.Fields(i));
            out << row.join(QLatin1Char('\t')) << '\n';
            rs.MoveNext();
        }
        rs.Close();
    } catch (const JetError&) {
        if (limit && limit->expired())
            fail(QStringLiteral("The statement ran longer than %1 s and was stopped; nothing of it was kept. "
                                "Give --no-limit to let it run.")
                     .arg(seconds));
        throw;
    }
    limit.reset();
    db.Close();
    return kExitOk;
}

int cmdSettings(const CommandLine& cl, QTextStream& out)
{
    cl.expect({QStringLiteral("PATH")});
    Database db = openExisting(cl.at(0));
    bool hasRow = false;
    try {
        hasRow = HasSettingsRow(db);
    } catch (const JetError&) {
    }
    if (!hasRow)
        fail(QStringLiteral("%1 has no settings row; tessorin-cli check makes it").arg(cl.at(0)));
    User user;
    user.read(db);
    db.Close();
    for (const auto& [name, value] : user.properties())
        out << name << '\t' << EscapeField(value) << '\n';
    return kExitOk;
}

int cmdInfo(const CommandLine& cl, QTextStream& out)
{
    cl.expect({QStringLiteral("PATH")});
    Database db = openExisting(cl.at(0));
    out << "program\t" << ProgramVersionText() << '\n';
    out << "version\t" << EscapeField(GetVersionText(db)) << '\n';
    out << "path\t" << EscapeField(absolute(cl.at(0))) << '\n';
    for (const Schema::TableStatement& t : Schema::Tables()) {
        out << t.table << '\t';
        if (db.hasTable(t.table)) {
            Recordset rs = db.OpenRecordset(QStringLiteral("SELECT Count(*) AS n FROM ") + t.table);
            out << FormatField(rs.Fields(0));
        } else {
            out << "\\N"; // a file of an older format that never got the table
        }
        out << '\n';
    }
    db.Close();
    return kExitOk;
}

int cmdGenerate(const CommandLine& cl, QTextStream&)
{
    cl.expect({QStringLiteral("PATH")});
    if (!cl.has(QStringLiteral("animals")))
        usage(QStringLiteral("generate needs --animals N"));
    GenerateOptions options;
    options.animals = int(cl.number(QStringLiteral("animals"), 0, 1, 10'000'000));
    options.generations = int(cl.number(QStringLiteral("generations"), 8, 1, 1000));
    options.seed = quint32(cl.number(QStringLiteral("seed"), 1, 0, 4294967295LL));
    onNewFile(cl.at(0), [&] { GenerateStud(gDatabase, options); });
    return kExitOk;
}

int cmdDemo(const CommandLine& cl, QTextStream&)
{
    cl.expect({QStringLiteral("PATH")});
    const quint32 seed = quint32(cl.number(QStringLiteral("seed"), 1, 0, 4294967295LL));
    onNewFile(cl.at(0), [&] {
        const SpeciesPreset* rabbit = FindSpeciesPreset(QStringLiteral("Rabbit"));
        User user = gUser;
        ApplyDemoSettings(user, *rabbit);
        if (!SaveSettingsToFile(gDatabase, user))
            fail(QStringLiteral("Cannot save the settings of %1").arg(cl.at(0)));
        ReadUserSettings(); // the dates written as text follow the country just saved
        GenerateOptions options;
        options.animals = 130;
        options.generations = 5;
        options.seed = seed;
        options.ownStud = QStringLiteral("Ashgrove");
        options.tagPrefix = QStringLiteral("AG");
        options.breeds = 2;
        options.outsideStuds = 5;
        options.sireShare = 3;
        options.maxCoefficient = 0.20;
        options.lineBreeding = 0.3;
        options.weanLitterDaysAgo = 40;
        options.showcaseFirst = true;
        options.shows = 40;
        options.journalNotes = 12;
        options.gestation = gUser.Gestation;
        options.weightMeasure = gUser.WeightMeasure;
        for (int i = 0; i < 12; ++i) {
            if (gUser.CustomName[size_t(i)].compare(QLatin1String("weight"), Qt::CaseInsensitive) == 0) {
                options.weightCustomField = i + 1;
                break;
            }
        }
        GenerateStud(gDatabase, options);
        // The current stock has pictures, so the record page of the demonstration shows one.
        QStringList stock;
        Recordset rs = gDatabase.OpenRecordset(
            QStringLiteral("SELECT name FROM tree WHERE deceased <> -1 AND sold <> -1 AND owner = -1 ORDER BY name"));
        for (; !rs.Eof() && stock.size() < 12; rs.MoveNext())
            stock << DecodeText(rs.Fields(0).toString());
        if (!DrawDemoPictures(stock))
            fail(QStringLiteral("Cannot write the pictures of %1 into %2").arg(cl.at(0), PicturesFolder()));
    });
    return kExitOk;
}

// One line per subcommand: its name, its function, the options that take a value and the flags.
struct CommandEntry {
    const char* name;
    int (*run)(const CommandLine&, QTextStream&);
    QStringList valueOptions;
    QStringList flags;
};

const std::vector<CommandEntry>& commandTable()
{
    static const std::vector<CommandEntry> table = {
        {"new", cmdNew, {}, {}},
        {"check", cmdCheck, {}, {QStringLiteral("force")}},
        {"sql", cmdSql, {QStringLiteral("time-limit")}, {QStringLiteral("no-limit")}},
        {"settings", cmdSettings, {}, {}},
        {"info", cmdInfo, {}, {}},
        {"generate", cmdGenerate, {QStringLiteral("animals"), QStringLiteral("generations"), QStringLiteral("seed")}, {}},
        {"demo", cmdDemo, {QStringLiteral("seed")}, {}},
        {"animal", cmdAnimal, {}, {}},
        {"add", cmdAdd, RecordOptions(), {}},
        {"edit", cmdEdit, RecordOptions() << QStringLiteral("rename") << QStringLiteral("similar"), {}},
        {"search", cmdSearch, {QStringLiteral("field1"), QStringLiteral("field2"), QStringLiteral("value2")},
         {QStringLiteral("contains"), QStringLiteral("current")}},
        {"title", cmdTitle, {}, {}},
        {"cages", cmdCages, {}, {}},
        {"tree", cmdTree, {QStringLiteral("limit")}, {}},
        {"coi", cmdCoi, {QStringLiteral("generations"), QStringLiteral("sire"), QStringLiteral("dam")},
         {QStringLiteral("all"), QStringLiteral("mine")}},
        {"descendants", cmdDescendants, {}, {}},
    };
    return table;
}

} // namespace

Database openExisting(const QString& path)
{
    if (!QFileInfo(path).isFile())
        fail(QStringLiteral("No data file at %1").arg(path));
    return OpenWithPassword(path);
}

OpenedDataFile::OpenedDataFile(const QString& path)
{
    gDatabase = openExisting(path);
    gDatabaseFile = QFileInfo(path).absoluteFilePath();
    m_previousUi = Ui::replace(std::make_unique<StderrUi>());
    try {
        ReadUserSettings();
    } catch (...) {
        release();
        throw;
    }
}

OpenedDataFile::~OpenedDataFile() { release(); }

void OpenedDataFile::release()
{
    Ui::replace(std::move(m_previousUi));
    CloseDatabase();
}

QString EscapeField(const QString& text)
{
    QString s;
    s.reserve(text.size());
    for (const QChar c : text) {
        switch (c.unicode()) {
        case '\\': s += QLatin1String("\\\\"); break;
        case '\t': s += QLatin1String("\\t"); break;
        case '\n': s += QLatin1String("\\n"); break;
        case '\r': s += QLatin1String("\\r"); break;
        default: s += c;
        }
    }
    return s;
}

QString FormatField(const QVariant& value)
{
    if (!value.isValid() || value.isNull())
        return QStringLiteral("\\N");
    switch (value.typeId()) {
    case QMetaType::QDateTime:
    case QMetaType::QDate: {
        const QDateTime dt = value.toDateTime();
        const QTime t = dt.time();
        return t.isValid() && t != QTime(0, 0) ? dt.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"))
                                               : dt.date().toString(QStringLiteral("yyyy-MM-dd"));
    }
    case QMetaType::Bool: return value.toBool() ? QStringLiteral("-1") : QStringLiteral("0");
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Short:
    case QMetaType::LongLong: return QString::number(value.toLongLong());
    case QMetaType::ULongLong: return QString::number(value.toULongLong());
    case QMetaType::Double:
    case QMetaType::Float: {
        const double d = value.toDouble();
        if (std::isfinite(d) && d == std::trunc(d) && std::fabs(d) < 1e15)
            return QString::number(qint64(d));
        return QString::number(d, 'g', 15);
    }
    case QMetaType::QByteArray: return EscapeField(QString::fromUtf8(value.toByteArray()));
    default: return EscapeField(value.toString());
    }
}

QString UsageText()
{
    return QStringLiteral(
        "Usage: tessorin-cli [--today YYYY-MM-DD] COMMAND ...\n"
        "\n"
        "Commands:\n"
        "  new PATH                  make a data file with its tables, settings row and version stamp\n"
        "  check PATH [--force]      test the file for damage, remove triggers and views of other\n"
        "                            programs (\"removed<TAB>trigger NAME\"), run the integrity check\n"
        "                            (always with --force, else only when the file's version differs)\n"
        "  sql PATH STATEMENT [--time-limit SECONDS | --no-limit]\n"
        "                            run one statement; a SELECT prints a header line and its rows,\n"
        "                            anything else prints \"rows affected: N\"; stopped after 60 s\n"
        "  settings PATH             the settings of the file, one Name<TAB>value a line\n"
        "  info PATH                 program and file version, path, and the rows of each table\n"
        "  generate PATH --animals N [--generations G] [--seed S]\n"
        "                            a new data file holding a synthetic stud (8 generations, seed 1)\n"
        "  demo PATH [--seed S]      a new data file with a small rabbit stud and its settings filled\n"
        "  animal PATH NAME          the record of one animal, one field<TAB>value a line, then its awards\n"
        "  add PATH --name N --sex S [--sire S --dam D --breed B --colour C --cage C --tag T --dob D\n"
        "      --owner F --breeder F --COLUMN VALUE ...]\n"
        "                            a new record, checked and saved as the add form saves it; then the\n"
        "                            record as animal prints it. Sex is male, female, undefined or the\n"
        "                            file's word; flags (owner, breeder, leased, sold, deceased) take\n"
        "                            yes/no; other COLUMNs: callname, prefix, suffix, datesold,\n"
        "                            datedeceased, customfield1 to customfield12\n"
        "  edit PATH NAME [--rename NEW] [--similar NEW] [--COLUMN VALUE ...]\n"
        "                            changes a record as the edit form does (a rename reaches every\n"
        "                            table and the pictures); --similar makes a new record from it\n"
        "  search PATH VALUE1 [--field1 CAPTION] [--field2 CAPTION --value2 VALUE [--contains]] [--current]\n"
        "                            the search list's lines, then the count of results\n"
        "  title PATH NAME           the title at the start of NAME, then NAME without it\n"
        "  tree PATH NAME [--limit N]\n"
        "                            the ancestor array of NAME, one position<TAB>name a line (limit 62)\n"
        "  coi PATH NAME [--generations G] | coi PATH --sire S --dam D [--generations G]\n"
        "                            the inbreeding coefficient of NAME or of a test mating, with its\n"
        "                            common ancestors (6 generations)\n"
        "  coi PATH --all|--mine [--generations G]\n"
        "                            works out and stores the coefficient of every animal, or of the\n"
        "                            current stock, and lists them\n"
        "  descendants PATH NAME     the descendants of NAME over nine generations\n"
        "  cages PATH                the current stock by cage: cage, name without its title, tag, sex\n"
        "                            and breed\n"
        "\n"
        "--today fixes the program's day. Output is one record a line, fields separated by a tab, Null\n"
        "as \\N; in a field a backslash, tab and line break are written \\\\, \\t and \\n.\n"
        "Exit status: 0 done, 1 failed, 2 wrong command line; the reason is one line on stderr.\n");
}

int RunCli(const QStringList& arguments, QTextStream& out, QTextStream& err)
{
    try {
        QStringList words;
        for (qsizetype i = 0; i < arguments.size(); ++i) {
            const QString& a = arguments.at(i);
            QString day;
            if (a == QLatin1String("--today")) {
                if (i + 1 >= arguments.size())
                    usage(QStringLiteral("--today needs a date, YYYY-MM-DD"));
                day = arguments.at(++i);
            } else if (a.startsWith(QLatin1String("--today="))) {
                day = a.mid(8);
            } else {
                words << a;
                continue;
            }
            static const QRegularExpression iso(QStringLiteral("^\\d{4}-\\d{2}-\\d{2}$"));
            const QDate d = QDate::fromString(day, QStringLiteral("yyyy-MM-dd"));
            if (!iso.match(day).hasMatch() || !d.isValid())
                usage(QStringLiteral("--today needs a date as YYYY-MM-DD, not \"%1\"").arg(day));
            SetFixedToday(d);
        }
        if (words.isEmpty())
            usage(QStringLiteral("No command given; tessorin-cli --help lists them"));
        const QString command = words.takeFirst();
        if (command == QLatin1String("--help") || command == QLatin1String("-h") || command == QLatin1String("help")) {
            out << UsageText();
            return kExitOk;
        }
        for (const CommandEntry& entry : commandTable()) {
            if (command == QLatin1String(entry.name))
                return entry.run(CommandLine(command, words, entry.valueOptions, entry.flags), out);
        }
        usage(QStringLiteral("Unknown command \"%1\"; tessorin-cli --help lists them").arg(command));
    } catch (const CliFailure& f) {
        out.flush();
        err << f.message << '\n';
        return f.code;
    } catch (const JetError& e) {
        out.flush();
        err << jetMessage(e) << '\n';
        return kExitFailed;
    } catch (const std::exception& e) {
        out.flush();
        err << "Error: " << e.what() << '\n';
        return kExitFailed;
    }
}
