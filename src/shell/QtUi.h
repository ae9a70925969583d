// SPDX-License-Identifier: GPL-3.0-or-later
// The dialog service shown with Qt's own message boxes, input boxes and file dialogs.
#pragma once

#include "base/Ui.h"

#include <QWidget>

class QtUi : public Ui::Service {
public:
    Ui::Answer message(const QString& text, Ui::Buttons buttons, Ui::Icon icon, const QString& title) override;
    QString input(const QString& prompt, const QString& title, const QString& defaultText) override;
    QString openFile(const QString& title, const QString& filter, const QString& folder) override;
    QString saveFile(const QString& title, const QString& filter, const QString& folder, const QString& defaultName) override;
    QString chooseFolder(const QString& title, const QString& folder) override;
    bool openPath(const QString& pathOrUrl) override;
    void showPath(const QString& pathOrUrl) override;
    void status(const QString& text) override;

    // Where status lines go: the chooser's label while it is up.
    static void setStatusSink(std::function<void(const QString&)> sink);
};
