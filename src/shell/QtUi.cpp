// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/QtUi.h"

#include <QApplication>
#include <QDesktopServices>
#include <QFileDialog>
#include <QInputDialog>
#include <QMessageBox>
#include <QUrl>

namespace {

std::function<void(const QString&)> gStatusSink;

QWidget* parentWindow() { return QApplication::activeWindow(); }

QString titleOr(const QString& title) { return title.isEmpty() ? QStringLiteral("Tessorin") : title; }

} // namespace

void QtUi::setStatusSink(std::function<void(const QString&)> sink) { gStatusSink = std::move(sink); }

Ui::Answer QtUi::message(const QString& text, Ui::Buttons buttons, Ui::Icon icon, const QString& title)
{
    using SB = QMessageBox::StandardButton;
    QMessageBox box(parentWindow());
    box.setWindowTitle(titleOr(title));
    box.setText(text);
    switch (icon) {
    case Ui::Icon::Information: box.setIcon(QMessageBox::Information); break;
    case Ui::Icon::Exclamation: box.setIcon(QMessageBox::Warning); break;
    case Ui::Icon::Critical: box.setIcon(QMessageBox::Critical); break;
    case Ui::Icon::Question: box.setIcon(QMessageBox::Question); break;
    case Ui::Icon::None: break;
    }
    switch (buttons) {
    case Ui::Buttons::Ok: box.setStandardButtons(SB::Ok); break;
    case Ui::Buttons::OkCancel: box.setStandardButtons(SB::Ok | SB::Cancel); break;
    case Ui::Buttons::YesNo: box.setStandardButtons(SB::Yes | SB::No); break;
    case Ui::Buttons::YesNoCancel: box.setStandardButtons(SB::Yes | SB::No | SB::Cancel); break;
    case Ui::Buttons::RetryCancel: box.setStandardButtons(SB::Retry | SB::Cancel); break;
    case Ui::Buttons::AbortRetryIgnore: box.setStandardButtons(SB::Abort | SB::Retry | SB::Ignore); break;
    }
    switch (box.exec()) {
    case SB::Cancel: return Ui::Answer::Cancel;
    case SB::Yes: return Ui::Answer::Yes;
    case SB::No: return Ui::Answer::No;
    case SB::Retry: return Ui::Answer::Retry;
    case SB::Abort: return Ui::Answer::Abort;
    case SB::Ignore: return Ui::Answer::Ignore;
    default: return Ui::Answer::Ok;
    }
}

QString QtUi::input(const QString& prompt, const QString& title, const QString& defaultText)
{
    bool ok = false;
    const QString answer =
        QInputDialog::getText(parentWindow(), titleOr(title), prompt, QLineEdit::Normal, defaultText, &ok);
    return ok ? answer : QString();
}

QString QtUi::openFile(const QString& title, const QString& filter, const QString& folder)
{
    return QFileDialog::getOpenFileName(parentWindow(), title, folder, Ui::qtFilter(filter));
}

QString QtUi::saveFile(const QString& title, const QString& filter, const QString& folder, const QString& defaultName)
{
    const QString start = defaultName.isEmpty() ? folder : QDir(folder).filePath(defaultName);
    return QFileDialog::getSaveFileName(parentWindow(), title, start, Ui::qtFilter(filter));
}

QString QtUi::chooseFolder(const QString& title, const QString& folder)
{
    return QFileDialog::getExistingDirectory(parentWindow(), title, folder);
}

bool QtUi::openPath(const QString& pathOrUrl)
{
    const QUrl url = pathOrUrl.contains(QLatin1String("://")) ? QUrl(pathOrUrl) : QUrl::fromLocalFile(pathOrUrl);
    return QDesktopServices::openUrl(url);
}

void QtUi::showPath(const QString& pathOrUrl) { openPath(pathOrUrl); }

void QtUi::status(const QString& text)
{
    if (gStatusSink)
        gStatusSink(text);
}
