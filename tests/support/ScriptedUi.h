// SPDX-License-Identifier: GPL-3.0-or-later
// The dialog service of the tests: it records every call and gives the answers a test queued ahead.
#pragma once

#include "base/Ui.h"

#include <QList>
#include <QQueue>
#include <QString>
#include <QStringList>

class ScriptedUi : public Ui::Service {
public:
    enum class Kind { Message, Input, OpenFile, SaveFile, ChooseFolder, ShowPath, Status };

    struct Call {
        Kind kind = Kind::Message;
        QString title;
        QString text;        // the message, the prompt, the path shown or the status line
        Ui::Buttons buttons = Ui::Buttons::Ok;
        Ui::Icon icon = Ui::Icon::None;
        QString defaultText; // an input box's default, a save dialog's file name
        QString filter;      // a file dialog's filter, as the program gave it
        QString folder;      // a file or folder dialog's starting folder
        QString reply;       // what the call gave back: the answer's name, the text or the path
    };

    // With nothing queued, a message gets the first button of its box (Ok, Yes, Retry or Abort), as
    // Enter on a fresh box would; an input box and a file or folder dialog get "", as Cancel would.
    // A queued answer that is not a button of the box fails the running test.
    void queueAnswer(Ui::Answer answer) { answers.enqueue(answer); }
    void queueInput(const QString& text) { inputs.enqueue(text); }
    void queueFile(const QString& path) { files.enqueue(path); } // open, save and folder dialogs
    // The desktop has no program for the next path shown (every other path opens).
    void queuePathFails() { pathFailures.enqueue(true); }

    const QList<Call>& calls() const { return recorded; }
    // The texts of the message boxes only, in order.
    QStringList messages() const;
    // Forgets the calls and whatever is still queued.
    void clear();
    // True when every queued answer, input and file was taken.
    bool allUsed() const { return answers.isEmpty() && inputs.isEmpty() && files.isEmpty() && pathFailures.isEmpty(); }

    Ui::Answer message(const QString& text, Ui::Buttons buttons, Ui::Icon icon, const QString& title) override;
    QString input(const QString& prompt, const QString& title, const QString& defaultText) override;
    QString openFile(const QString& title, const QString& filter, const QString& folder) override;
    QString saveFile(const QString& title, const QString& filter, const QString& folder,
                     const QString& defaultName) override;
    QString chooseFolder(const QString& title, const QString& folder) override;
    bool openPath(const QString& pathOrUrl) override;
    void showPath(const QString& pathOrUrl) override;
    void status(const QString& text) override;

    static QString answerName(Ui::Answer answer);

private:
    QString nextFile();

    QList<Call> recorded;
    QQueue<Ui::Answer> answers;
    QQueue<QString> inputs;
    QQueue<QString> files;
    QQueue<bool> pathFailures;
};
