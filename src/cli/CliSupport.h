// SPDX-License-Identifier: GPL-3.0-or-later
// What the subcommands of tessorin-cli share: the parsed command line and the way a command fails.
#pragma once

#include "cli/Commands.h"
#include "base/Ui.h"
#include "store/Database.h"

#include <QHash>
#include <QString>
#include <QStringList>
#include <QTextStream>
#include <cstdio>
#include <memory>

// A failure that ends the command with a message; the code says whose fault it was.
struct CliFailure {
    int code;
    QString message;
};

[[noreturn]] inline void usage(const QString& message) { throw CliFailure{kExitUsage, message}; }
[[noreturn]] inline void fail(const QString& message) { throw CliFailure{kExitFailed, message}; }

// The words of one command after its name: positional arguments and --options.
class CommandLine {
public:
    CommandLine(QString command, const QStringList& words, const QStringList& valueOptions, const QStringList& flags)
        : m_command(std::move(command))
    {
        for (qsizetype i = 0; i < words.size(); ++i) {
            const QString& w = words.at(i);
            if (w.startsWith(QLatin1String("--")) && w.size() > 2) {
                const QString name = w.mid(2);
                if (valueOptions.contains(name)) {
                    if (i + 1 >= words.size())
                        usage(QStringLiteral("Option --%1 of %2 needs a value").arg(name, m_command));
                    m_values.insert(name, words.at(++i));
                } else if (flags.contains(name)) {
                    m_flags << name;
                } else {
                    usage(QStringLiteral("Unknown option %1 for %2").arg(w, m_command));
                }
            } else {
                m_positional << w;
            }
        }
    }

    // Exactly these positional arguments, by name for the message.
    void expect(const QStringList& names) const
    {
        if (m_positional.size() < names.size())
            usage(QStringLiteral("%1 needs %2").arg(m_command, names.join(QLatin1Char(' '))));
        if (m_positional.size() > names.size())
            usage(QStringLiteral("Too many arguments for %1: %2").arg(m_command, m_positional.at(names.size())));
    }

    QString at(int i) const { return m_positional.at(i); }
    bool flag(const QString& name) const { return m_flags.contains(name); }
    bool has(const QString& name) const { return m_values.contains(name); }
    QString value(const QString& name) const { return m_values.value(name); }

    long long number(const QString& name, long long fallback, long long low, long long high) const
    {
        if (!m_values.contains(name))
            return fallback;
        bool ok = false;
        const long long n = m_values.value(name).toLongLong(&ok);
        if (!ok || n < low || n > high)
            usage(QStringLiteral("--%1 must be a whole number from %2 to %3, not \"%4\"")
                      .arg(name)
                      .arg(low)
                      .arg(high)
                      .arg(m_values.value(name)));
        return n;
    }

private:
    QString m_command;
    QStringList m_positional, m_flags;
    QHash<QString, QString> m_values;
};


// The dialog service of the command line: a message goes to stderr as "title: text", a question
// takes its first answer, and what would need a person (files, input) is cancelled.
class StderrUi : public Ui::SilentService {
public:
    Ui::Answer message(const QString& text, Ui::Buttons buttons, Ui::Icon, const QString& title) override
    {
        QTextStream err(stderr);
        err << (title.isEmpty() ? QString() : title + QStringLiteral(": ")) << EscapeField(text) << '\n';
        switch (buttons) {
        case Ui::Buttons::YesNo:
        case Ui::Buttons::YesNoCancel: return Ui::Answer::Yes;
        case Ui::Buttons::RetryCancel: return Ui::Answer::Retry;
        case Ui::Buttons::AbortRetryIgnore: return Ui::Answer::Abort;
        default: return Ui::Answer::Ok;
        }
    }
};

// Opens an existing data file for a command, as the program opens it; fails with one line when it
// cannot.
Database openExisting(const QString& path);

// A command's hold on a data file as the program holds the open one: gDatabase, gDatabaseFile, the
// settings in gUser, and the command line's dialog service. All of it is given back however the
// command ends.
class OpenedDataFile {
public:
    explicit OpenedDataFile(const QString& path);
    ~OpenedDataFile();
    OpenedDataFile(const OpenedDataFile&) = delete;
    OpenedDataFile& operator=(const OpenedDataFile&) = delete;

private:
    void release();
    std::unique_ptr<Ui::Service> m_previousUi;
};

// The commands added by the record subsystem.
int cmdAnimal(const CommandLine& cl, QTextStream& out);
// The record of that name as `animal` prints it; fails when there is none.
void PrintRecord(const QString& name, QTextStream& out);
// `add` and `edit`: the add form's save, without its window (RecordCommands.cpp).
int cmdAdd(const CommandLine& cl, QTextStream& out);
int cmdEdit(const CommandLine& cl, QTextStream& out);
// The options of a record's fields that add and edit take.
QStringList RecordOptions();
int cmdSearch(const CommandLine& cl, QTextStream& out);
int cmdTitle(const CommandLine& cl, QTextStream& out);
int cmdCages(const CommandLine& cl, QTextStream& out);
// Pedigrees and genetics (TreeCommands.cpp, CoiCommands.cpp, DescendantsCommands.cpp).
int cmdTree(const CommandLine& cl, QTextStream& out);
int cmdCoi(const CommandLine& cl, QTextStream& out);
int cmdDescendants(const CommandLine& cl, QTextStream& out);
