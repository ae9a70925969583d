// SPDX-License-Identifier: GPL-3.0-or-later
// The subcommands of tessorin-cli. Output is one record a line, fields separated by a tab, Null as \N;
// inside a field a backslash, tab, line feed and carriage return are written \\, \t, \n and \r, so
// that a memo never breaks a line and a text "\N" never reads as Null.
#pragma once

#include <QString>
#include <QStringList>
#include <QTextStream>
#include <QVariant>

// Exit codes: 0 done, 1 the work failed, 2 the command line was wrong.
enum CliExit { kExitOk = 0, kExitFailed = 1, kExitUsage = 2 };

// Runs the command line without the program's name. Failures write one line to err.
int RunCli(const QStringList& arguments, QTextStream& out, QTextStream& err);

// A value as a field of output: \N for Null, dates as yyyy-MM-dd with " HH:mm:ss" when there is a
// time, whole numbers as integers, other numbers in their shortest form, text escaped as above.
QString FormatField(const QVariant& value);
QString EscapeField(const QString& text);

QString UsageText();
