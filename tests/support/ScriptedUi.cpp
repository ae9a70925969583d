// SPDX-License-Identifier: GPL-3.0-or-later
#include "ScriptedUi.h"

#include <gtest/gtest.h>

namespace {

QList<Ui::Answer> buttonsOf(Ui::Buttons buttons)
{
    using Ui::Answer;
    switch (buttons) {
    case Ui::Buttons::Ok: return {Answer::Ok};
    case Ui::Buttons::OkCancel: return {Answer::Ok, Answer::Cancel};
    case Ui::Buttons::YesNo: return {Answer::Yes, Answer::No};
    case Ui::Buttons::YesNoCancel: return {Answer::Yes, Answer::No, Answer::Cancel};
    case Ui::Buttons::RetryCancel: return {Answer::Retry, Answer::Cancel};
    case Ui::Buttons::AbortRetryIgnore: return {Answer::Abort, Answer::Retry, Answer::Ignore};
    }
    return {Answer::Ok};
}

} // namespace

QString ScriptedUi::answerName(Ui::Answer answer)
{
    switch (answer) {
    case Ui::Answer::Ok: return QStringLiteral("Ok");
    case Ui::Answer::Cancel: return QStringLiteral("Cancel");
    case Ui::Answer::Yes: return QStringLiteral("Yes");
    case Ui::Answer::No: return QStringLiteral("No");
    case Ui::Answer::Retry: return QStringLiteral("Retry");
    case Ui::Answer::Abort: return QStringLiteral("Abort");
    case Ui::Answer::Ignore: return QStringLiteral("Ignore");
    }
    return QString();
}

QStringList ScriptedUi::messages() const
{
    QStringList texts;
    for (const Call& c : recorded) {
        if (c.kind == Kind::Message)
            texts << c.text;
    }
    return texts;
}

void ScriptedUi::clear()
{
    recorded.clear();
    answers.clear();
    inputs.clear();
    files.clear();
    pathFailures.clear();
}

Ui::Answer ScriptedUi::message(const QString& text, Ui::Buttons buttons, Ui::Icon icon, const QString& title)
{
    const QList<Ui::Answer> offered = buttonsOf(buttons);
    Ui::Answer answer = offered.first();
    if (!answers.isEmpty()) {
        answer = answers.dequeue();
        if (!offered.contains(answer))
            ADD_FAILURE() << "The answer " << answerName(answer).toStdString()
                          << " was queued for a box without that button: " << text.toStdString();
    }
    Call c;
    c.kind = Kind::Message;
    c.title = title;
    c.text = text;
    c.buttons = buttons;
    c.icon = icon;
    c.reply = answerName(answer);
    recorded << c;
    return answer;
}

QString ScriptedUi::input(const QString& prompt, const QString& title, const QString& defaultText)
{
    Call c;
    c.kind = Kind::Input;
    c.title = title;
    c.text = prompt;
    c.defaultText = defaultText;
    c.reply = inputs.isEmpty() ? QString() : inputs.dequeue();
    recorded << c;
    return c.reply;
}

QString ScriptedUi::nextFile()
{
    return files.isEmpty() ? QString() : files.dequeue();
}

QString ScriptedUi::openFile(const QString& title, const QString& filter, const QString& folder)
{
    Call c;
    c.kind = Kind::OpenFile;
    c.title = title;
    c.filter = filter;
    c.folder = folder;
    c.reply = nextFile();
    recorded << c;
    return c.reply;
}

QString ScriptedUi::saveFile(const QString& title, const QString& filter, const QString& folder,
                             const QString& defaultName)
{
    Call c;
    c.kind = Kind::SaveFile;
    c.title = title;
    c.filter = filter;
    c.folder = folder;
    c.defaultText = defaultName;
    c.reply = nextFile();
    recorded << c;
    return c.reply;
}

QString ScriptedUi::chooseFolder(const QString& title, const QString& folder)
{
    Call c;
    c.kind = Kind::ChooseFolder;
    c.title = title;
    c.folder = folder;
    c.reply = nextFile();
    recorded << c;
    return c.reply;
}

bool ScriptedUi::openPath(const QString& pathOrUrl)
{
    Call c;
    c.kind = Kind::ShowPath;
    c.text = pathOrUrl;
    const bool opened = pathFailures.isEmpty() || !pathFailures.dequeue();
    c.reply = opened ? QStringLiteral("Opened") : QStringLiteral("No program");
    recorded << c;
    return opened;
}

void ScriptedUi::showPath(const QString& pathOrUrl) { openPath(pathOrUrl); }

void ScriptedUi::status(const QString& text)
{
    Call c;
    c.kind = Kind::Status;
    c.text = text;
    recorded << c;
}
