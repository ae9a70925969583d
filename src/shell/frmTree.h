// SPDX-License-Identifier: GPL-3.0-or-later
// The main window: menus, toolbar and the tab strip over the twelve pages. It is loaded afresh for each
// data file, so every page starts from the file that is open.
#pragma once

#include "records/forms/RecordHost.h"

#include <QList>
#include <QMainWindow>
#include <QString>

class QAction;
class QLabel;
class QMenu;
class QPushButton;
class QTabWidget;
class QTimer;
class DescendantsPage;
class FamilyTreePage;
class RecordPage;
class SearchPane;

struct TreeTab {
    QString key;         // the tab's key; the first one's caption is the species word
    QString titleSuffix; // after the animal's name, or the whole title of a page of whole-file lists
    bool followsAnimal;  // the page shows the current animal's records
};

class frmTree : public QMainWindow, public RecordHost {
    Q_OBJECT
public:
    explicit frmTree(QWidget* parent = nullptr);

    static const QList<TreeTab>& Tabs();
    // The title label's text for a page: the animal's name with the page's words, or the page's own title
    // for the pages that list the whole file.
    static QString PageTitle(const QString& key, const QString& animalName);

    QTabWidget* tabStrip() const { return TabStrip1; }
    int tabIndex(const QString& key) const; // -1 for an unknown key
    QString selectedKey() const;
    QAction* toolbarButton(const QString& key) const;

    SearchPane* searchPane() const { return pane; }

    // Selects "Individual" first and lets events run, so that the page by key is always entered afresh.
    void SelectTab(const QString& key) override;
    // Sets the title label for the selected tab and shows its page.
    void RunTabProcess() override;
    // Hides every page frame, before one shows.
    void HideFrames();
    // Keeps the search pane a usable width however narrow the window is.
    void resizeFrames();
    void ShowSearch();
    void HideSearch();
    bool searchShown() const;

    // A name picked in the search or recent list becomes the current animal.
    void ChangeCurrentAnimal(const QString& name, bool fromRecent);
    void DeleteCurrentAnimal();

    // RecordHost
    void refillSearchList() override;
    void putFirstInSearchList(const QString& name) override;
    QString shownPageKey() const override { return selectedKey(); }
    bool quickLinkAvailable(const QString& kind) const override;
    void quickLink(const QString& kind) override;

    // Closes the window as a change of data file does: the recent lists are written, the program goes on.
    void Unload();
    // The settings of the open file were saved again: the species word and the search criteria follow.
    void UserSettingsChanged();

public slots:
    void TabStrip1_Click();
    void mnuSearch_Click();
    void mnuAdd_Click();
    void mnuSimilar_Click();
    void mnuEdit_Click();
    void mnuDelete_Click();
    void mnuMyPics_Click();
    void mnuInbreeding_Click();
    void tmrSearchPane_Timer();
    void mnuExit_Click();
    void mnuOpen_Click();
    void mnuNewDatabase_Click();
    void mnuUser_Click();
    void mnuPersonal_folder_Click();
    void mnuViewLog_Click();
    void mnuDeleteLog_Click();
    void mnuOpenError_Click();
    void mnuClearRecent_Click();
    void mnuUpdateDatabase_Click();
    void mnuCage_Click();

protected:
    void closeEvent(QCloseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void buildMenus();
    void buildToolbar();
    void buildPages();
    void buildSearchPane(QWidget* central);
    QAction* entry(const QString& name) const;
    // The widget that fills a page, nullptr for a page of a later version.
    QWidget* pageContent(const QString& key, QWidget* page);
    void showPage(const QString& key);
    // Opens the add and edit form; similar starts from the current animal's details.
    void openRecordForm(bool edit, bool similar);
    bool needsCurrentAnimal(const QString& text);
    void showFirstAnimal();

    QTabWidget* TabStrip1 = nullptr;
    QLabel* lblTitle = nullptr;
    QMenu* mnuPopUp = nullptr;
    QMenu* mnuOptions = nullptr;
    SearchPane* pane = nullptr;
    QPushButton* cmdSearchBtn = nullptr; // stands in for the pane while it is hidden
    QTimer* tmrSearchPane = nullptr;
    RecordPage* recordPage = nullptr;
    DescendantsPage* descendantsPage = nullptr;
    FamilyTreePage* familyTreePage = nullptr;
    bool unloading = false; // closed for a change of data file, not by the user
    bool closed = false;
};

// The file steps of the main window's load: Errors.txt holds the present run only, and the scratch copy
// and a downloaded updater of the last run are removed.
void RemoveLeftoverFiles();
// The end of the program when the user closes the main window.
void ExitProgram();
void RunPendingUpdate();
// The main window that is up, nullptr before the splash has gone.
frmTree* MainWindow();
