// SPDX-License-Identifier: GPL-3.0-or-later
// The database chooser: lists the data files the program can find and opens, makes, renames, deletes
// or restores one, or sets one as the default.
#pragma once

#include "shell/ChooserLogic.h"

#include <QPointer>
#include <QStringList>
#include <QWidget>

class QAction;
class QGridLayout;
class QLabel;
class QMenu;
class QPushButton;
class QScrollArea;
class QVBoxLayout;

class frmOpenFile : public QWidget {
    Q_OBJECT

public:
    explicit frmOpenFile(QWidget* parent = nullptr);
    ~frmOpenFile() override;

    // The chooser on screen, nullptr when none is.
    static frmOpenFile* instance();

    // Lists the data files; with none, says so and offers to make one.
    void LoadFiles();
    void clearFileList();
    const QVector<Chooser::FileRow>& rows() const { return m_rows; }

    void LoadTips();
    void DisplayCurrentTip();

    // Opens a listed file; errorTitle names where the open came from.
    bool openRow(int index, const QString& errorTitle);
    // The row the pop-up menu works on.
    void setMenuRow(int index) { m_menuRow = index; }
    void showRowMenu(int index, const QPoint& globalPos);

    // Closes the chooser after a file opened: the program goes on in the main window.
    void handOver();

public slots:
    void cmdBrowse_Click();
    void cmdCreateNewDatabase_Click();
    void cmdClose_Click();
    void mnuOpen_Click();
    void mnuDefault_Click();
    void mnuRemoveDefault_Click();
    void mnuDelete_Click();
    void mnuRename_Click();
    void mnuRestore_Click();
    void mnuCreateNew_Click();
    void mnuClose_Click();

protected:
    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void FindDatabaseFile();
    void addSection(const QString& heading, const QString& tip, const QVector<Chooser::FileRow>& rows);
    void addRow(const Chooser::FileRow& row);
    void setStatus(const QString& text);
    void placeHeader();
    void getMainInfo();
    const Chooser::FileRow* menuRow() const;

    QVector<Chooser::FileRow> m_rows;
    QStringList m_tips;
    int m_menuRow = -1;
    bool m_handedOver = false;

    QLabel* lblTip = nullptr;
    QLabel* lblFileDisplayMessage = nullptr;
    QLabel* lblMainInfo = nullptr;
    QLabel* lblLink = nullptr;
    QScrollArea* scrFiles = nullptr;
    QWidget* fraHeader = nullptr;
    QWidget* fraFiles = nullptr;
    QVBoxLayout* fileLayout = nullptr;
    QPushButton* cmdBrowse = nullptr;
    QPushButton* cmdCreateNewDatabase = nullptr;
    QPushButton* cmdClose = nullptr;
    QMenu* mnuPopup = nullptr;
    QAction* mnuOpen = nullptr;
    QAction* mnuDefault = nullptr;
    QAction* mnuRemoveDefault = nullptr;
};
