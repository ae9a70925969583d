// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/frmTree.h"

#include "records/Animal.h"
#include "records/Lists.h"
#include "genetics/Coefficient.h"
#include "genetics/forms/DescendantsPage.h"
#include "genetics/forms/frmCalculator.h"
#include "printing/forms/FamilyTreePage.h"
#include "records/forms/RecordPage.h"
#include "records/forms/SearchPane.h"
#include "records/forms/ShowRecordOnForm.h"
#include "records/forms/frmAdd.h"
#include "records/forms/frmCage.h"
#include "records/forms/frmPictures.h"
#include "base/Folders.h"
#include "base/Log.h"
#include "session/OpenDataFile.h"
#include "session/RecentList.h"
#include "base/Ui.h"
#include "shell/Shell.h"
#include "shell/frmNewUser.h"
#include "session/globals.h"
#include "store/DataFile.h"
#include "store/IntegrityCheck.h"

#include <QApplication>
#include <QCloseEvent>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenuBar>
#include <QPointer>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QSet>
#include <QStyle>
#include <QTabBar>
#include <QTabWidget>
#include <QToolBar>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>
#include <map>

namespace {

QPointer<frmTree> gMainWindow;

// The main menu as the user sees it. A submenu entry names its submenu in `submenu`.
struct MenuEntry {
    const char* menu;
    const char* caption;
    const char* name;
    const char* submenu = nullptr;
};

const MenuEntry kMenus[] = {
    {"&File", "&Search For Record", "mnuSearch"},
    {"&File", "&Add Record", "mnuAdd"},
    {"&File", "Add Record (&Similar Details)", "mnuSimilar"},
    {"&File", "&Edit Current Record", "mnuEdit"},
    {"&File", "&Delete Current Record", "mnuDelete"},
    {"&File", nullptr, nullptr},
    {"&File", "E&xit", "mnuExit"},
    {"&Add", "&Journal Entry", "mnuJournal"},
    {"&Add", "&Health Record", "mnuHealth"},
    {"&Add", "&Mating Event", "mnuBreeding"},
    {"&Add", "&Sold Stock", "mnuSold"},
    {"&Add", "&Contact", "mnuContact"},
    {"&View", "&Database Information", "mnuInformation"},
    {"&View", "&Cag and Tag Numbers", "mnuCage"},
    {"&View", "C&alendar", "mnuCalendar"},
    {"&View", "&Inbreeding", "mnuInbreeding"},
    {"&View", "&Pedigree Preview", "mnuCertificate"},
    {"&View", "&User Settings", "mnuUser"},
    {"F&olders", "&My Databases", "mnuPersonal_folder"},
    {"F&olders", "&My Pictures", "mnuMyPics"},
    {"F&olders", "&My HTML Pedigrees", "mnu_HTML"},
    {"F&olders", "&Logos And Backgrounds", "mnuIconFolder"},
    {"F&olders", "&Backups Waiting to Burn To CD", "mnuBurn"},
    {"&Log files", "Open &Save Log", "mnuViewLog"},
    {"&Log files", "&Delete Save Log", "mnuDeleteLog"},
    {"&Log files", "Open &Error log", "mnuOpenError"},
    {"&Database", "&New", "mnuNewDatabase"},
    {"&Database", "&Open", "mnuOpen"},
    {"&Database", "To &Program Backup Folder", "mnuDefaultBackupFolder", "&Backup"},
    {"&Database", "To &CD", "mnuCopyCD", "&Backup"},
    {"&Database", "To &Floppy Disk", "mnuCopyFloppy", "&Backup"},
    {"&Database", "To &Other Location", "mnuCopyToOtherLocation", "&Backup"},
    {"&Database", "To &Online Archive", "mnuArchive", "&Backup"},
    {"&Database", "From drive or disk", "mnuRestoreFromHD", "&Restore"},
    {"&Database", "From online archive", "mnuRestoreOnline", "&Restore"},
    {"&Database", "&Clear Recent Names List", "mnuClearRecent"},
    {"&Database", "&Fix Data", "mnuReplace"},
    {"&Database", "&Repair Old Version Database", "mnuUpdateDatabase"},
    {"&Exchange", "Import &Pedigree Templates", "mnuImportPedigreeTemplates"},
    {"&Exchange", "&Import Records", "mnuImport"},
    {"&Exchange", "Import &HTML Pedigree", "mnuImportHTML"},
    {"&Exchange", "&Export HTML Pedigree", "mnuExportHTML"},
    {"&Exchange", "Export &CSV File", "mnuExport"},
    {"&Help", "&Local Content", "mnuUsing"},
    {"&Help", "&FAQs (online)", "mnuRecentAnswers"},
    {"&Help", "&More Backgrounds", "mnuBackgrounds"},
    {"&Help", "&Program News", "mnuNews"},
    {"&Help", "Check For &Updates", "mnuChkUpdates"},
    {"&Help", "&About", "mnuAbout"},
};

// The object names of the two submenus, which are known by their entries only.
const std::map<QString, QString> kSubmenuNames = {
    {QStringLiteral("&Backup"), QStringLiteral("mnuCopyToDisk")},
    {QStringLiteral("&Restore"), QStringLiteral("mnuRestore")},
};

using Handler = void (frmTree::*)();
// The entries that work in this version; every other one stands disabled with its tip.
const std::map<QString, Handler> kHandlers = {
    {QStringLiteral("mnuSearch"), &frmTree::mnuSearch_Click},
    {QStringLiteral("mnuAdd"), &frmTree::mnuAdd_Click},
    {QStringLiteral("mnuSimilar"), &frmTree::mnuSimilar_Click},
    {QStringLiteral("mnuEdit"), &frmTree::mnuEdit_Click},
    {QStringLiteral("mnuDelete"), &frmTree::mnuDelete_Click},
    {QStringLiteral("mnuMyPics"), &frmTree::mnuMyPics_Click},
    {QStringLiteral("mnuInbreeding"), &frmTree::mnuInbreeding_Click},
    {QStringLiteral("mnuExit"), &frmTree::mnuExit_Click},
    {QStringLiteral("mnuOpen"), &frmTree::mnuOpen_Click},
    {QStringLiteral("mnuNewDatabase"), &frmTree::mnuNewDatabase_Click},
    {QStringLiteral("mnuUser"), &frmTree::mnuUser_Click},
    {QStringLiteral("mnuPersonal_folder"), &frmTree::mnuPersonal_folder_Click},
    {QStringLiteral("mnuViewLog"), &frmTree::mnuViewLog_Click},
    {QStringLiteral("mnuDeleteLog"), &frmTree::mnuDeleteLog_Click},
    {QStringLiteral("mnuOpenError"), &frmTree::mnuOpenError_Click},
    {QStringLiteral("mnuClearRecent"), &frmTree::mnuClearRecent_Click},
    {QStringLiteral("mnuUpdateDatabase"), &frmTree::mnuUpdateDatabase_Click},
    {QStringLiteral("mnuCage"), &frmTree::mnuCage_Click},
};

// Entries that work on the open data file: without one they wait.
const QSet<QString> kNeedsDataFile = {
    QStringLiteral("mnuUser"),    QStringLiteral("mnuClearRecent"), QStringLiteral("mnuUpdateDatabase"),
    QStringLiteral("mnuSearch"),  QStringLiteral("mnuAdd"),         QStringLiteral("mnuSimilar"),
    QStringLiteral("mnuEdit"),    QStringLiteral("mnuDelete"),      QStringLiteral("mnuInbreeding"),
    QStringLiteral("mnuCage")};



// Entries that write to the data file (or to the pictures of its animals): a file open read-only
// leaves them disabled.
const QSet<QString> kWrites = {
    QStringLiteral("mnuAdd"),       QStringLiteral("mnuSimilar"),        QStringLiteral("mnuEdit"),
    QStringLiteral("mnuDelete"),    QStringLiteral("mnuUpdateDatabase"), QStringLiteral("mnuReplace"),
    QStringLiteral("mnuJournal"),   QStringLiteral("mnuHealth"),         QStringLiteral("mnuBreeding"),
    QStringLiteral("mnuSold"),      QStringLiteral("mnuContact"),        QStringLiteral("mnuImport"),
    QStringLiteral("mnuImportHTML"), QStringLiteral("mnuImportPedigreeTemplates"),
    QStringLiteral("mnuRestoreFromHD"), QStringLiteral("mnuRestoreOnline")};

const QString kReadOnlyTip = QStringLiteral("The data file is open read-only.");

struct ToolbarButton {
    const char* key;
    const char* runs;
    const char* themeIcon;
    QStyle::StandardPixmap fallback;
    QList<QPair<QString, QString>> menu; // (menu key, entry run)
};

const QList<ToolbarButton>& toolbarButtons()
{
    static const QList<ToolbarButton> buttons = {
        {"Search", "mnuSearch", "edit-find", QStyle::SP_FileDialogContentsView, {}},
        {"Add", "mnuAdd", "list-add", QStyle::SP_FileIcon,
         {{QStringLiteral("Similar"), QStringLiteral("mnuSimilar")}, {QStringLiteral("Blank"), QStringLiteral("mnuAdd")}}},
        {"Edit", "mnuEdit", "document-edit", QStyle::SP_FileDialogDetailedView, {}},
        {"Open File", "mnuOpen", "document-open", QStyle::SP_DialogOpenButton, {}},
        {"Calendar", "mnuCalendar", "x-office-calendar", QStyle::SP_FileDialogInfoView, {}},
        {"Inbreeding", "mnuInbreeding", "view-statistics", QStyle::SP_DesktopIcon, {}},
        {"Cage", "mnuCage", "view-list-details", QStyle::SP_FileDialogListView, {}},
        {"Certificate", "mnuCertificate", "document-print-preview", QStyle::SP_FileLinkIcon, {}},
        {"Backup", "mnuDefaultBackupFolder", "document-save", QStyle::SP_DialogSaveButton,
         {{QStringLiteral("Folder"), QStringLiteral("mnuDefaultBackupFolder")},
          {QStringLiteral("CD"), QStringLiteral("mnuCopyCD")},
          {QStringLiteral("Other"), QStringLiteral("mnuCopyToOtherLocation")},
          {QStringLiteral("Archive"), QStringLiteral("mnuArchive")}}},
        {"Update", "mnuChkUpdates", "system-software-update", QStyle::SP_BrowserReload, {}},
        {"User Details", "mnuUser", "preferences-system", QStyle::SP_DirHomeIcon, {}},
        {"News", "mnuNews", "internet-news-reader", QStyle::SP_MessageBoxInformation, {}},
        {"Help", "mnuUsing", "help-contents", QStyle::SP_DialogHelpButton, {}},
    };
    return buttons;
}

QString pageName(const QString& key)
{
    return QStringLiteral("fme") + QString(key).remove(QLatin1Char(' '));
}

// A file step that fails changes nothing for the user: the next load tries again.
void removeUpdateFile(const QString& path)
{
    if (!QFileInfo::exists(path) || QFile::remove(path))
        return;
    const QFileInfo info(path);
    const QString renamed =
        info.dir().filePath(QStringLiteral("Update_") + ProgramVersionText() + QStringLiteral(".exe"));
    if (QFile::rename(path, renamed))
        QFile::remove(renamed);
}

void showLog(const QString& path, const QString& text)
{
    if (QFileInfo(path).isFile())
        Ui::showPathOrSay(path);
    else
        Ui::message(text, Ui::Buttons::Ok, Ui::Icon::Information, QStringLiteral("No Log File"));
}

} // namespace

const QList<TreeTab>& frmTree::Tabs()
{
    static const QList<TreeTab> tabs = {
        {QStringLiteral("Individual"), QString(), true},
        {QStringLiteral("Journal"), QStringLiteral(" - Journal"), true},
        {QStringLiteral("Health"), QStringLiteral(" - Health records"), true},
        {QStringLiteral("Family Tree"), QStringLiteral(" - Family tree"), true},
        {QStringLiteral("Descendants"), QStringLiteral(" - Descendants"), true},
        {QStringLiteral("Breeding"), QStringLiteral(" - Mating records"), true},
        {QStringLiteral("Births"), QStringLiteral(" - Births"), true},
        {QStringLiteral("Sold Stock"), QStringLiteral("Sold stock"), false},
        {QStringLiteral("Contacts"), QStringLiteral("Contacts"), false},
        {QStringLiteral("Finance"), QStringLiteral("Finance"), false},
        {QStringLiteral("Reminders"), QStringLiteral("Reminders"), false},
        {QStringLiteral("Shows"), QStringLiteral("Shows"), false},
    };
    return tabs;
}

QString frmTree::PageTitle(const QString& key, const QString& animalName)
{
    for (const TreeTab& tab : Tabs()) {
        if (tab.key != key)
            continue;
        if (!tab.followsAnimal)
            return tab.titleSuffix;
        if (!animalName.isEmpty())
            return animalName + tab.titleSuffix;
        // No animal chosen yet: the page's words alone.
        return tab.titleSuffix.isEmpty() ? key : tab.titleSuffix.mid(3);
    }
    return QString();
}

frmTree::frmTree(QWidget* parent) : QMainWindow(parent)
{
    setObjectName(QStringLiteral("frmTree"));
    setAttribute(Qt::WA_DeleteOnClose);
    const bool open = gDatabase.isOpen();
    QString title = QStringLiteral("Tessorin");
    if (open)
        title += QStringLiteral(" - ") + QFileInfo(gDatabaseFile).fileName();
    if (open && gDatabase.isReadOnly())
        title += QStringLiteral(" (read-only)");
    setWindowTitle(title);

    RemoveLeftoverFiles();
    gFormsLoaded = true;

    buildMenus();
    buildToolbar();
    buildPages();

    if (open) {
        LoadRecentFile();
        Lists::LoadTitles(gUser.Prefix);
        pane->load();
        showFirstAnimal();
    } else {
        pane->setEnabled(false);
    }

    const QRect screen = QGuiApplication::primaryScreen() ? QGuiApplication::primaryScreen()->availableGeometry()
                                                          : QRect(0, 0, 1280, 1024);
    const QSize preferred(1100, 760);
    resize(preferred.boundedTo(screen.size()));
    move(screen.center() - rect().center());
    // On a small screen the window takes the whole of it, title bar and edges included.
    if (screen.width() < preferred.width() || screen.height() < preferred.height())
        setWindowState(windowState() | Qt::WindowMaximized);
    SelectTab(QStringLiteral("Individual"));
    if (!pane->pinned())
        HideSearch();
}

void frmTree::buildMenus()
{
    const bool open = gDatabase.isOpen();
    const bool readOnly = open && gDatabase.isReadOnly();
    std::map<QString, QMenu*> menus;
    std::map<QString, QMenu*> submenus;
    for (const MenuEntry& e : kMenus) {
        const QString menuCaption = QString::fromLatin1(e.menu);
        QMenu*& menu = menus[menuCaption];
        if (!menu) {
            menu = menuBar()->addMenu(menuCaption);
            menu->setToolTipsVisible(true);
        }
        if (!e.name) {
            menu->addSeparator();
            continue;
        }
        QMenu* target = menu;
        if (e.submenu) {
            const QString subCaption = QString::fromLatin1(e.submenu);
            QMenu*& sub = submenus[subCaption];
            if (!sub) {
                sub = menu->addMenu(subCaption);
                sub->setObjectName(kSubmenuNames.at(subCaption));
                sub->setToolTipsVisible(true);
            }
            target = sub;
        }
        const QString name = QString::fromLatin1(e.name);
        QAction* action = target->addAction(QString::fromLatin1(e.caption));
        action->setObjectName(name);
        const auto handler = kHandlers.find(name);
        if (handler == kHandlers.end()) {
            action->setEnabled(false);
            action->setToolTip(Ui::kNotAvailableYet);
        } else if (kNeedsDataFile.contains(name) && !open) {
            action->setEnabled(false);
        } else if (readOnly && kWrites.contains(name)) {
            action->setEnabled(false);
            action->setToolTip(kReadOnlyTip);
        } else {
            connect(action, &QAction::triggered, this, handler->second);
        }
    }
    // The platform has no folder of files waiting to be burnt to a disc.
    entry(QStringLiteral("mnuBurn"))->setVisible(false);
    // A submenu whose entries all wait says so as a whole.
    for (const auto& [caption, sub] : submenus) {
        sub->menuAction()->setEnabled(false);
        sub->menuAction()->setToolTip(Ui::kNotAvailableYet);
    }

    // The pop-up menus of the lists. An entry runs the main menu's command, or waits with its page.
    auto popupEntry = [this](QMenu* menu, const QString& caption, const QString& name, const QString& runs) {
        QAction* action = menu->addAction(caption);
        action->setObjectName(name);
        QAction* target = runs.isEmpty() ? nullptr : entry(runs);
        if (target && target->isEnabled()) {
            connect(action, &QAction::triggered, target, &QAction::trigger);
        } else if (!target) {
            action->setEnabled(false);
            action->setToolTip(Ui::kNotAvailableYet);
        } else {
            action->setEnabled(false);
            action->setToolTip(target->toolTip());
        }
        return action;
    };
    mnuPopUp = new QMenu(QStringLiteral("Popup"), this);
    mnuPopUp->setObjectName(QStringLiteral("mnuPopUp"));
    mnuPopUp->setToolTipsVisible(true);
    popupEntry(mnuPopUp, QStringLiteral("Edit Record"), QStringLiteral("mnuEditRecord"), QStringLiteral("mnuEdit"));
    popupEntry(mnuPopUp, QStringLiteral("Delete Record"), QStringLiteral("mnuDeleteRecord"), QStringLiteral("mnuDelete"));

    mnuOptions = new QMenu(QStringLiteral("Options"), this);
    mnuOptions->setObjectName(QStringLiteral("mnuOptions"));
    mnuOptions->setToolTipsVisible(true);
    auto* mnuListAdd = mnuOptions->addMenu(QStringLiteral("Add"));
    mnuListAdd->setObjectName(QStringLiteral("mnuListAdd"));
    mnuListAdd->setToolTipsVisible(true);
    const QList<QPair<QString, QString>> addEntries = {
        {QStringLiteral("Notes & Awards"), QStringLiteral("Notes")}, {QStringLiteral("Photo"), QStringLiteral("Photos")},
        {QStringLiteral("Journal"), QStringLiteral("Journal")},      {QStringLiteral("Weight"), QStringLiteral("Weight")},
        {QStringLiteral("Health Note"), QStringLiteral("Health")},   {QStringLiteral("Treatment"), QStringLiteral("Treatments")},
        {QStringLiteral("Show Result"), QStringLiteral("Shows")}};
    for (const auto& [caption, kind] : addEntries) {
        // A menu takes "&" for its shortcut mark; "&&" shows the ampersand itself.
        QAction* action = mnuListAdd->addAction(QString(caption).replace(QLatin1Char('&'), QStringLiteral("&&")));
        action->setObjectName(QStringLiteral("mnuListAdd") + QString(caption).remove(QLatin1Char(' ')));
        if (open && !readOnly && quickLinkAvailable(kind)) {
            connect(action, &QAction::triggered, this, [this, kind] { quickLink(kind); });
        } else {
            action->setEnabled(false);
            if (!quickLinkAvailable(kind))
                action->setToolTip(Ui::kNotAvailableYet);
            else if (readOnly)
                action->setToolTip(kReadOnlyTip);
        }
    }
    popupEntry(mnuOptions, QStringLiteral("Edit"), QStringLiteral("mnuListEdit"), QStringLiteral("mnuEdit"));
    popupEntry(mnuOptions, QStringLiteral("Delete"), QStringLiteral("mnuListDelete"), QStringLiteral("mnuDelete"));
}

void frmTree::buildToolbar()
{
    auto* bar = addToolBar(QStringLiteral("Toolbar"));
    bar->setObjectName(QStringLiteral("Toolbar1"));
    bar->setMovable(false);
    bar->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    bar->setIconSize(QSize(24, 24));
    for (const ToolbarButton& b : toolbarButtons()) {
        const QString key = QString::fromLatin1(b.key);
        QAction* runs = entry(QString::fromLatin1(b.runs));
        const QIcon icon = QIcon::fromTheme(QString::fromLatin1(b.themeIcon), style()->standardIcon(b.fallback));
        QAction* button = bar->addAction(icon, key);
        button->setObjectName(QStringLiteral("Toolbar1(") + key + QLatin1Char(')'));
        button->setData(key);
        button->setEnabled(runs->isEnabled());
        button->setToolTip(runs->isEnabled() ? QString(runs->text()).remove(QLatin1Char('&')) : runs->toolTip());
        connect(button, &QAction::triggered, runs, &QAction::trigger);
        if (b.menu.isEmpty())
            continue;
        auto* menu = new QMenu(bar);
        menu->setToolTipsVisible(true);
        for (const auto& [menuKey, entryName] : b.menu) {
            QAction* menuEntry = menu->addAction(menuKey);
            menuEntry->setObjectName(button->objectName() + QLatin1Char('(') + menuKey + QLatin1Char(')'));
            QAction* target = entry(entryName);
            menuEntry->setEnabled(target->isEnabled());
            menuEntry->setToolTip(target->toolTip());
            connect(menuEntry, &QAction::triggered, target, &QAction::trigger);
        }
        button->setMenu(menu);
        if (auto* tool = qobject_cast<QToolButton*>(bar->widgetForAction(button)))
            tool->setPopupMode(QToolButton::MenuButtonPopup);
    }
}

void frmTree::buildPages()
{
    auto* central = new QWidget(this);
    central->setObjectName(QStringLiteral("fmeWindow"));
    auto* row = new QHBoxLayout(central);
    row->setContentsMargins(4, 4, 4, 4);
    auto* pages = new QWidget(central);
    pages->setObjectName(QStringLiteral("fmeMainInfo"));
    row->addWidget(pages, 1);
    auto* layout = new QVBoxLayout(pages);
    layout->setContentsMargins(0, 0, 0, 0);

    lblTitle = new QLabel(pages);
    lblTitle->setObjectName(QStringLiteral("lblTitle"));
    QFont titleFont = lblTitle->font();
    titleFont.setPointSizeF(titleFont.pointSizeF() * 1.4);
    titleFont.setBold(true);
    lblTitle->setFont(titleFont);
    layout->addWidget(lblTitle);

    TabStrip1 = new QTabWidget(pages);
    TabStrip1->setObjectName(QStringLiteral("TabStrip1"));
    TabStrip1->setDocumentMode(true);
    TabStrip1->setUsesScrollButtons(true);
    layout->addWidget(TabStrip1, 1);

    for (qsizetype i = 0; i < Tabs().size(); ++i) {
        const TreeTab& tab = Tabs().at(i);
        auto* page = new QWidget(TabStrip1);
        page->setObjectName(pageName(tab.key));
        auto* pageLayout = new QVBoxLayout(page);
        QWidget* content = pageContent(tab.key, page);
        if (content) {
            pageLayout->setContentsMargins(0, 0, 0, 0);
            // A page wider than the room beside the search pane scrolls, rather than push the window
            // past a small screen's edge and the pane with it.
            auto* scroller = new QScrollArea(page);
            scroller->setObjectName(QStringLiteral("scr") + pageName(tab.key));
            scroller->setFrameShape(QFrame::NoFrame);
            scroller->setWidgetResizable(true);
            scroller->setWidget(content);
            pageLayout->addWidget(scroller);
        }
        auto* placeholder = new QLabel(page);
        placeholder->setObjectName(QStringLiteral("lblPageTitle(") + QString::number(i) + QLatin1Char(')'));
        placeholder->setAlignment(Qt::AlignCenter);
        placeholder->setForegroundRole(QPalette::PlaceholderText);
        QFont placeholderFont = placeholder->font();
        placeholderFont.setPointSizeF(placeholderFont.pointSizeF() * 2);
        placeholder->setFont(placeholderFont);
        if (content)
            placeholder->hide();
        else
            pageLayout->addWidget(placeholder);
        // The first caption is the species word of the open file; without a file the key stands.
        const QString caption = i == 0 && !gUser.Animal.isEmpty() ? gUser.Animal : tab.key;
        const int index = TabStrip1->addTab(page, caption);
        TabStrip1->tabBar()->setTabData(index, tab.key);
        // A page whose records come with a later version waits, with its tip.
        if (!content) {
            TabStrip1->setTabEnabled(index, false);
            TabStrip1->setTabToolTip(index, Ui::kNotAvailableYet);
        }
    }
    buildSearchPane(central);
    row->addWidget(cmdSearchBtn);
    row->addWidget(pane);
    setCentralWidget(central);
    connect(TabStrip1, &QTabWidget::currentChanged, this, &frmTree::TabStrip1_Click);
}

void frmTree::buildSearchPane(QWidget* central)
{
    pane = new SearchPane(central);
    pane->installEventFilter(this);
    connect(pane, &SearchPane::animalPicked, this, &frmTree::ChangeCurrentAnimal);
    connect(pane, &SearchPane::editRequested, this, &frmTree::mnuEdit_Click);
    connect(pane, &SearchPane::optionsRequested, this, [this](const QPoint& at, bool fromRecent, const QString& name) {
        // A row that could not be made current (a recent name gone from the file) has no options.
        if (gAnimal.name == name)
            (fromRecent ? mnuPopUp : mnuOptions)->popup(at);
    });
    connect(pane, &SearchPane::pinToggled, this, [this](bool pinned) {
        if (pinned)
            tmrSearchPane->stop();
    });

    // While the pane hides itself a narrow button stands at the window's edge; pointing at it brings the
    // pane back.
    cmdSearchBtn = new QPushButton(QStringLiteral("S\ne\na\nr\nc\nh"), central);
    cmdSearchBtn->setObjectName(QStringLiteral("cmdSearchBtn"));
    cmdSearchBtn->setToolTip(QStringLiteral("Show the search pane"));
    cmdSearchBtn->setFixedWidth(24);
    cmdSearchBtn->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
    cmdSearchBtn->installEventFilter(this);
    cmdSearchBtn->hide();
    connect(cmdSearchBtn, &QPushButton::clicked, this, &frmTree::ShowSearch);

    tmrSearchPane = new QTimer(this);
    tmrSearchPane->setObjectName(QStringLiteral("tmrSearchPane"));
    tmrSearchPane->setSingleShot(true);
    tmrSearchPane->setInterval(700);
    connect(tmrSearchPane, &QTimer::timeout, this, &frmTree::tmrSearchPane_Timer);
}

QAction* frmTree::entry(const QString& name) const
{
    return findChild<QAction*>(name);
}

int frmTree::tabIndex(const QString& key) const
{
    for (int i = 0; i < TabStrip1->count(); ++i) {
        if (TabStrip1->tabBar()->tabData(i).toString() == key)
            return i;
    }
    return -1;
}

QString frmTree::selectedKey() const
{
    return TabStrip1->tabBar()->tabData(TabStrip1->currentIndex()).toString();
}

QAction* frmTree::toolbarButton(const QString& key) const
{
    return findChild<QAction*>(QStringLiteral("Toolbar1(") + key + QLatin1Char(')'));
}

void frmTree::SelectTab(const QString& key)
{
    const int individual = tabIndex(QStringLiteral("Individual"));
    const int index = tabIndex(key);
    if (index < 0)
        return;
    const QSignalBlocker block(TabStrip1);
    TabStrip1->setCurrentIndex(individual);
    QCoreApplication::processEvents();
    TabStrip1->setCurrentIndex(index);
    RunTabProcess();
}

void frmTree::RunTabProcess()
{
    const QString key = selectedKey();
    QString title = PageTitle(key, gAnimal.name);
    // Before an animal is chosen the first page is named by its caption, the species word.
    if (key == QLatin1String("Individual") && gAnimal.name.isEmpty())
        title = TabStrip1->tabText(TabStrip1->currentIndex());
    lblTitle->setText(title);
    if (auto* label = findChild<QLabel*>(QStringLiteral("lblPageTitle(") +
                                         QString::number(TabStrip1->currentIndex()) + QLatin1Char(')')))
        label->setText(title);
    HideFrames();
    showPage(key);
}

void frmTree::HideFrames()
{
    // The web view and the printed pedigree share the page area with the tabs and show on demand only.
    for (QWidget* frame : centralWidget()->findChildren<QWidget*>()) {
        if (frame->objectName().contains(QLatin1String("Frame")))
            frame->hide();
    }
}

QWidget* frmTree::pageContent(const QString& key, QWidget* page)
{
    if (key == QLatin1String("Individual")) {
        recordPage = new RecordPage(page);
        recordPage->setCoefficientCaption(&CoefficientCaption);
        return recordPage;
    }
    if (key == QLatin1String("Descendants"))
        return descendantsPage = new DescendantsPage(page);
    if (key == QLatin1String("Family Tree")) {
        familyTreePage = new FamilyTreePage(this, page);
        // imgNext and imgPrevious step through the search list; at either end the page says so.
        familyTreePage->setBrowser([this](int step) {
            const int row = pane->currentRow() + step;
            if (row < 0 || row >= pane->rowCount())
                return false;
            pane->pickRow(row);
            return true;
        });
        return familyTreePage;
    }
    return nullptr;
}

void frmTree::showPage(const QString& key)
{
    if (key == QLatin1String("Individual"))
        recordPage->ShowNotes();
    else if (key == QLatin1String("Descendants"))
        descendantsPage->ShowDescendants();
    else if (key == QLatin1String("Family Tree"))
        familyTreePage->LoadTree();
}

void frmTree::TabStrip1_Click() { RunTabProcess(); }

void frmTree::resizeFrames()
{
    if (!pane)
        return;
    // A quarter of the window, but never so narrow that names are cut or so wide that the pages starve.
    pane->setFixedWidth(qBound(230, width() / 4, 320));
}

void frmTree::resizeEvent(QResizeEvent* event)
{
    QMainWindow::resizeEvent(event);
    resizeFrames();
}

void frmTree::ShowSearch()
{
    tmrSearchPane->stop();
    cmdSearchBtn->hide();
    pane->show();
}

void frmTree::HideSearch()
{
    pane->hide();
    cmdSearchBtn->show();
}

bool frmTree::searchShown() const { return !pane->isHidden(); }

void frmTree::tmrSearchPane_Timer()
{
    // A drop-down list of the pane is a window of its own: the pointer on it is still in the pane.
    if (!gFormsLoaded || pane->pinned() || pane->underMouse() || QApplication::activePopupWidget())
        return;
    HideSearch();
}

bool frmTree::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == pane && event->type() == QEvent::Leave && !pane->pinned())
        tmrSearchPane->start();
    else if (watched == pane && event->type() == QEvent::Enter)
        tmrSearchPane->stop();
    else if (watched == cmdSearchBtn && event->type() == QEvent::Enter)
        ShowSearch();
    return QMainWindow::eventFilter(watched, event);
}

void frmTree::ChangeCurrentAnimal(const QString& name, bool fromRecent)
{
    if (!Lists::NameInTree(name)) {
        if (fromRecent)
            RecentNotFound(name);
        return;
    }
    QString loaded = name;
    gAnimal.SetCurrentAnimal(loaded);
    AddRecent(loaded);
    ShowRecentList();
    RunTabProcess();
}

void frmTree::showFirstAnimal()
{
    // The window opens on the animal visited last, or on the first of the list, rather than on an empty
    // page; it is not a visit, so the recent list stays as it is.
    QString name = gRecentNames[0];
    if (name.isEmpty() || !Lists::NameInTree(name))
        name = pane->firstName();
    if (name.isEmpty())
        return;
    gAnimal.SetCurrentAnimal(name);
    pane->selectName(name);
}

bool frmTree::needsCurrentAnimal(const QString& text)
{
    if (!gAnimal.name.isEmpty() && Lists::NameInTree(gAnimal.name))
        return true;
    Ui::message(text, Ui::Buttons::Ok, Ui::Icon::Exclamation, QStringLiteral("Error"));
    return false;
}

void frmTree::DeleteCurrentAnimal()
{
    if (gDatabase.isReadOnly())
        return;
    if (!needsCurrentAnimal(QStringLiteral("Please select a record from the Search list to delete.")))
        return;
    const Ui::Answer answer = Ui::message(QStringLiteral("Are you sure you want to permanently remove ") + gAnimal.name +
                                              QStringLiteral(" from the database?"),
                                          Ui::Buttons::YesNo, Ui::Icon::Question, QStringLiteral("Delete Record?"));
    if (answer != Ui::Answer::Yes)
        return;
    // The animal's own row, wherever the current animal was picked from.
    int row = pane->rowOf(gAnimal.name);
    if (row < 0)
        row = pane->currentRow();
    gAnimal.Delete();
    gAnimal = Animal();
    pane->refillSearchList();
    // The animal that moved up into the deleted one's place becomes current.
    if (!pane->pickRow(row))
        RunTabProcess();
}

void frmTree::refillSearchList() { pane->refillSearchList(); }

void frmTree::putFirstInSearchList(const QString& name)
{
    pane->putFirstInSearchList(name);
    ChangeCurrentAnimal(name, false);
}

bool frmTree::quickLinkAvailable(const QString& kind) const { return kind == QLatin1String("Photos"); }

void frmTree::quickLink(const QString& kind)
{
    if (kind != QLatin1String("Photos") || gAnimal.name.isEmpty())
        return;
    SelectTab(QStringLiteral("Individual"));
    frmPictures form(gAnimal.name, this);
    form.exec();
    RunTabProcess();
}

void frmTree::openRecordForm(bool edit, bool similar)
{
    EditMode = edit;
    frmAdd form(this, TabStrip1->tabText(TabStrip1->currentIndex()), this);
    if (similar) {
        // A new record from the current one's details: opened as new, so that none of the current
        // animal's other records pass to it.
        ShowRecordOnForm(&form, gAnimal);
        for (const char* name : {"searchList", "txtName", "txtCallName", "txtTag", "txtCage", "txtDOB"}) {
            if (auto* box = form.findChild<QComboBox*>(QString::fromLatin1(name)))
                box->setEditText(QString());
            else if (auto* line = form.findChild<QLineEdit*>(QString::fromLatin1(name)))
                line->clear();
        }
    }
    form.exec();
    EditMode = false;
    // The form may have deleted the animal that was current.
    if (!gAnimal.name.isEmpty() && !Lists::NameInTree(gAnimal.name))
        gAnimal = Animal();
    RunTabProcess();
}

void frmTree::mnuSearch_Click()
{
    ShowSearch();
    pane->ShowSearchOptions(false);
}

void frmTree::mnuAdd_Click()
{
    if (!gDatabase.isReadOnly())
        openRecordForm(false, false);
}

void frmTree::mnuSimilar_Click()
{
    if (!gDatabase.isReadOnly() && needsCurrentAnimal(QStringLiteral("Please select a record from the Search list to copy.")))
        openRecordForm(false, true);
}

void frmTree::mnuEdit_Click()
{
    // A double click on a name comes here too, with the menu entry disabled or not.
    if (!gDatabase.isReadOnly() && needsCurrentAnimal(QStringLiteral("Please select a record from the Search list to edit.")))
        openRecordForm(true, false);
}

void frmTree::mnuDelete_Click() { DeleteCurrentAnimal(); }

void frmTree::mnuInbreeding_Click()
{
    frmCalculator form(this);
    form.exec();
    // A bulk run or the calculation of the current animal may have stored new coefficients.
    RunTabProcess();
}

void frmTree::mnuMyPics_Click()
{
    QDir().mkpath(PicturesFolder());
    Ui::showPathOrSay(PicturesFolder());
}

void frmTree::mnuExit_Click() { close(); }

void frmTree::mnuOpen_Click()
{
    if (gDatabase.isOpen())
        WriteRecentFile();
    // The file stays open behind the chooser: its Close goes back to it, and it closes the file itself
    // when another one opens.
    ShowChooser();
}

void frmTree::mnuNewDatabase_Click()
{
    // The new file brings its own recent list; this file's goes to its file first, as "Open" does.
    if (gDatabase.isOpen())
        WriteRecentFile();
    CreateNewDatabase();
}

void frmTree::mnuUser_Click() { ShowSetupWizard(); }

void frmTree::mnuPersonal_folder_Click() { Ui::showPathOrSay(gDataFolder); }

void frmTree::mnuViewLog_Click() { showLog(SaveLogPath(), QStringLiteral("There is no save log: nothing has been saved yet.")); }

void frmTree::mnuDeleteLog_Click()
{
    if (!QFileInfo(SaveLogPath()).isFile()) {
        Ui::message(QStringLiteral("There is no save log: nothing has been saved yet."), Ui::Buttons::Ok,
                    Ui::Icon::Information, QStringLiteral("No Log File"));
        return;
    }
    if (Ui::message(QStringLiteral("Are you sure you want to permanently delete the save log?\n") + SaveLogPath(),
                    Ui::Buttons::YesNo, Ui::Icon::Question, QStringLiteral("Delete Save Log?")) == Ui::Answer::Yes)
        DeleteSaveLog();
}

void frmTree::mnuOpenError_Click() { showLog(ErrorLogPath(), QStringLiteral("There is no error log: no error has happened since the program started.")); }

void frmTree::mnuClearRecent_Click() { ClearRecent(); }

void frmTree::mnuCage_Click()
{
    frmCage form(this, this);
    form.exec();
}

void frmTree::mnuUpdateDatabase_Click()
{
    if (gDatabase.isReadOnly())
        return;
    try {
        CheckDatabase(gDatabase, true, true);
        ReadUserSettings();
    } catch (const JetError& e) {
        LogError(QStringLiteral("Repair Old Version Database error ") + QString::number(e.number()) +
                 QStringLiteral(" - ") + e.description());
    }
}

void frmTree::UserSettingsChanged()
{
    TabStrip1->setTabText(tabIndex(QStringLiteral("Individual")),
                          gUser.Animal.isEmpty() ? QStringLiteral("Individual") : gUser.Animal);
    Lists::LoadTitles(gUser.Prefix);
    pane->reloadCriteria();
    RunTabProcess();
}

void frmTree::Unload()
{
    unloading = true;
    close();
}

void frmTree::closeEvent(QCloseEvent* event)
{
    if (closed) {
        event->accept();
        return;
    }
    closed = true;
    // A page that is open keeps its state by being left for "Individual".
    SelectTab(QStringLiteral("Individual"));
    if (gDatabase.isOpen())
        WriteRecentFile();
    if (!unloading)
        ExitProgram();
    gFormsLoaded = false;
    event->accept();
}

void RemoveLeftoverFiles()
{
    DeleteErrorLog();
    // The scratch copy of the online archive and a downloaded updater live under temp/ of the data folder;
    // the program has no other scratch place.
    QFile::remove(gDataFolder + QStringLiteral("temp/temp.cav"));
    removeUpdateFile(gDataFolder + QStringLiteral("temp/update.exe"));
}

void RunPendingUpdate()
{
    // The update check downloads no updater yet, so there is never one to start.
}

void ExitProgram()
{
    CloseDatabase();
    // Every other window of the program goes with the main one.
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (window->isVisible() && window != gMainWindow)
            window->close();
    }
    RunPendingUpdate();
    QCoreApplication::quit();
}

frmTree* MainWindow() { return gMainWindow; }

namespace {

bool gReplacementPending = false;

void replaceMainWindow()
{
    gReplacementPending = false;
    // Between the old window's close and the new one's show no window is up; the program must not end there.
    const bool quitOnLast = QGuiApplication::quitOnLastWindowClosed();
    QGuiApplication::setQuitOnLastWindowClosed(false);
    // A wizard opened for the new file waits on the window that shows it, and must not go with the old one.
    QPointer<frmNewUser> wizard = SetupWizardWindow();
    if (wizard && wizard->parentWidget())
        wizard->setParent(nullptr, wizard->windowFlags());
    if (gMainWindow)
        gMainWindow->Unload();
    gMainWindow = new frmTree;
    gMainWindow->show();
    if (wizard) {
        wizard->setParent(gMainWindow, wizard->windowFlags());
        wizard->show();
        wizard->raise();
        wizard->activateWindow();
    }
    QGuiApplication::setQuitOnLastWindowClosed(quitOnLast);
}

} // namespace

void ShowMainWindow()
{
    if (!gMainWindow) {
        replaceMainWindow();
        return;
    }
    if (gReplacementPending)
        return;
    gReplacementPending = true;
    // The old window may be the one whose menu asked for the new file (Database > New): it is replaced
    // once that command has returned to the event loop, never from inside it. Bound to the old window,
    // so that a window closed in the meantime takes the replacement with it.
    QMetaObject::invokeMethod(gMainWindow, &replaceMainWindow, Qt::QueuedConnection);
}
