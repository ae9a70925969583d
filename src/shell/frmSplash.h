// SPDX-License-Identifier: GPL-3.0-or-later
// The splash window: it makes the per-user folders, shows one of the user's pictures with the version,
// and after a few seconds or a click gives way to the main window and the chooser.
#pragma once

#include <QPixmap>
#include <QString>
#include <QWidget>

class QLabel;
class QTimer;

class frmSplash : public QWidget {
    Q_OBJECT
public:
    static constexpr int kShowMilliseconds = 3000;

    explicit frmSplash(const QString& commandLinePath, QWidget* parent = nullptr);

    // One *.jpg of folder at random, "" when it has none.
    static QString PickSplashPicture(const QString& folder);
    // The picture drawn for the program, shown when the user has none of their own.
    static QPixmap BuiltInPicture(const QSize& size);
    QString picturePath() const { return picture; }

public slots:
    void tmrSplash_Timer();
    void imgSplash_Click();
    void imgLogo_Click();

protected:
    void closeEvent(QCloseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    // Unloads the splash (which brings up the main window) and shows the chooser in front of it.
    void finish();

    QString commandLine;
    QString picture;
    bool finished = false;
    QLabel* imgSplash = nullptr;
    QLabel* imgLogo = nullptr;
    QLabel* lblVersion = nullptr;
    QTimer* tmrSplash = nullptr;
};
