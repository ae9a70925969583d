// SPDX-License-Identifier: GPL-3.0-or-later
// The dialog service: every message box, question, input box, file dialog and "open this folder or
// page" goes through it, so that logic never shows a widget itself and tests can answer ahead of time.
#pragma once

#include <QString>
#include <QStringList>
#include <memory>

namespace Ui {

// The tip of a command whose work comes with a later version of the program.
inline const QString kNotAvailableYet = QStringLiteral("Not available yet");

enum class Buttons { Ok, OkCancel, YesNo, YesNoCancel, RetryCancel, AbortRetryIgnore };
enum class Icon { None, Information, Exclamation, Critical, Question };
enum class Answer { Ok, Cancel, Yes, No, Retry, Abort, Ignore };

class Service {
public:
    virtual ~Service() = default;
    virtual Answer message(const QString& text, Buttons buttons, Icon icon, const QString& title) = 0;
    // Returns "" on Cancel, as an input box does.
    virtual QString input(const QString& prompt, const QString& title, const QString& defaultText) = 0;
    // Filters in the program's own form, "Data files (*.cav)|*.cav|All files (*.*)|*.*". "" on Cancel.
    virtual QString openFile(const QString& title, const QString& filter, const QString& folder) = 0;
    virtual QString saveFile(const QString& title, const QString& filter, const QString& folder,
                             const QString& defaultName) = 0;
    virtual QString chooseFolder(const QString& title, const QString& folder) = 0;
    // Opens a folder, file or page with the desktop's program for it; false when the desktop has none.
    virtual bool openPath(const QString& pathOrUrl)
    {
        showPath(pathOrUrl);
        return true;
    }
    // What a service that cannot tell whether the desktop opened the path implements instead.
    virtual void showPath(const QString& pathOrUrl) = 0;
    // A status line such as the chooser's label; "" clears it.
    virtual void status(const QString& text) = 0;
};

// Ok to every box, and nothing typed, chosen or shown: the service of a program with no one to ask.
class SilentService : public Service {
public:
    Answer message(const QString&, Buttons, Icon, const QString&) override { return Answer::Ok; }
    QString input(const QString&, const QString&, const QString&) override { return QString(); }
    QString openFile(const QString&, const QString&, const QString&) override { return QString(); }
    QString saveFile(const QString&, const QString&, const QString&, const QString&) override { return QString(); }
    QString chooseFolder(const QString&, const QString&) override { return QString(); }
    void showPath(const QString&) override {}
    void status(const QString&) override {}
};

// The installed service. Until one is installed, a silent one answers Ok/"" to everything.
Service& service();
void install(std::unique_ptr<Service> s);
// Installs s (nullptr: the silent one) and hands back the service it replaces, nullptr for the silent one.
std::unique_ptr<Service> replace(std::unique_ptr<Service> s);

// Shorthands for the installed service.
Answer message(const QString& text, Buttons buttons = Buttons::Ok, Icon icon = Icon::None,
               const QString& title = QString());
QString input(const QString& prompt, const QString& title = QString(), const QString& defaultText = QString());
QString openFile(const QString& title, const QString& filter, const QString& folder = QString());
QString saveFile(const QString& title, const QString& filter, const QString& folder = QString(),
                 const QString& defaultName = QString());
QString chooseFolder(const QString& title, const QString& folder = QString());
// False when the desktop has no program to open the path.
bool showPath(const QString& pathOrUrl);
// Opens the path, or tells the user, naming it, that nothing on the computer could open it.
bool showPathOrSay(const QString& pathOrUrl);
void status(const QString& text);

// "Data files (*.cav)|*.cav|All files (*.*)|*.*" -> "Data files (*.cav);;All files (*)"
QString qtFilter(const QString& pipedFilter);

} // namespace Ui
