// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/frmOpenFile.h"

#include "base/Dates.h"
#include "session/OpenDataFile.h"
#include "base/Ui.h"
#include "session/globals.h"
#include "shell/QtUi.h"
#include "shell/Shell.h"
#include "store/DataFile.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QPixmap>
#include <QPushButton>
#include <QRandomGenerator>
#include <QScrollArea>
#include <QScrollBar>
#include <QSvgRenderer>
#include <QVBoxLayout>

namespace {

QPointer<frmOpenFile> gChooser;

const QString kRenameFailed = QStringLiteral("The file may be in use or you may need Administrator rights.");
const QString kOpeningStatus = QStringLiteral("Opening Database ...");
const QString kDatabaseFilter =
    QStringLiteral("Database Files (*.cav, *.bak)|*.cav;*.bak|All Files (*.*)|*.*");

void toMainWindow()
{
    if (const auto& h = Chooser::CurrentHandOvers(); h.mainWindow)
        h.mainWindow();
    else
        ShowMainWindow();
}

void toSetupWizard()
{
    if (const auto& h = Chooser::CurrentHandOvers(); h.setupWizard)
        h.setupWizard();
    else
        ShowSetupWizard();
}

void endProgram()
{
    if (const auto& h = Chooser::CurrentHandOvers(); h.endProgram)
        h.endProgram();
    else
        // Queued, so that the box or handler that asked for it returns first.
        QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection);
}

QPixmap speciesPixmap(int icon, int size)
{
    QPixmap pixmap(size, size);
    pixmap.fill(Qt::transparent);
    QSvgRenderer renderer(Chooser::IconPath(icon));
    if (!renderer.isValid())
        renderer.load(Chooser::IconPath(Chooser::IconGeneral));
    if (renderer.isValid()) {
        QPainter painter(&pixmap);
        renderer.render(&painter);
    }
    return pixmap;
}

QString modifiedText(const QDateTime& when)
{
    if (!when.isValid())
        return {};
    return FormatShortDate(when.date()) + QStringLiteral("  ") + when.time().toString(QStringLiteral("HH:mm"));
}

QString arrayName(const char* control, int index)
{
    return QString::fromLatin1(control) + QLatin1Char('(') + QString::number(index) + QLatin1Char(')');
}

// The column headers stand in the scroll area's top margin, so that they keep over their columns
// whether or not a scroll bar takes room from the rows.
class FileScrollArea : public QScrollArea {
public:
    using QScrollArea::QScrollArea;
    using QScrollArea::setViewportMargins;
};

// The rows and the headers share these, so that each header stands over its column.
constexpr int kRowSpacing = 6;
constexpr int kIconWidth = 32;
constexpr int kModifiedWidth = 140;
constexpr int kRecordsWidth = 110;
constexpr int kListMargin = 4;  // of the list inside the scroll area
constexpr int kRowMargin = 4;   // of a row inside the list
constexpr int kRowIndent = 2;

// The file open behind the chooser stays open until another one has opened; if that one fails, the
// first is opened again, so that closing the chooser goes back to it.
bool openInPlaceOfCurrent(const QString& path)
{
    const QString previous = gDatabase.isOpen() ? gDatabaseFile : QString();
    if (!previous.isEmpty())
        CloseDatabase();
    gDatabaseFile = path;
    if (OpenDataFile(path))
        return true;
    if (!previous.isEmpty() && !OpenDataFile(previous))
        gDatabaseFile = previous;
    return false;
}

} // namespace

frmOpenFile::frmOpenFile(QWidget* parent)
    : QWidget(parent, Qt::Window)
{
    setObjectName(QStringLiteral("frmOpenFile"));
    setWindowTitle(QStringLiteral("Open File"));
    setAttribute(Qt::WA_DeleteOnClose);
    // The main window behind has no data file until one is picked here.
    setWindowModality(Qt::ApplicationModal);
    resize(660, 540);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(14, 14, 14, 10);
    layout->setSpacing(8);

    auto* lblTitle = new QLabel(QStringLiteral("Choose a data file"), this);
    lblTitle->setObjectName(QStringLiteral("lblTitle"));
    QFont titleFont = lblTitle->font();
    titleFont.setPointSizeF(titleFont.pointSizeF() * 1.5);
    titleFont.setBold(true);
    lblTitle->setFont(titleFont);
    layout->addWidget(lblTitle);

    lblTip = new QLabel(this);
    lblTip->setObjectName(QStringLiteral("lblTip"));
    lblTip->setWordWrap(true);
    lblTip->setMargin(8);
    lblTip->setCursor(Qt::PointingHandCursor);
    lblTip->setToolTip(QStringLiteral("Click for another tip"));
    lblTip->setStyleSheet(QStringLiteral("QLabel { background: #fff8d6; border: 1px solid #e4d58a; border-radius: 4px; }"));
    lblTip->installEventFilter(this);
    layout->addWidget(lblTip);

    auto* scroll = new FileScrollArea(this);
    scrFiles = scroll;
    scrFiles->setObjectName(QStringLiteral("scrFiles"));
    scrFiles->setWidgetResizable(true);
    scrFiles->setFrameShape(QFrame::StyledPanel);

    fraHeader = new QWidget(scrFiles);
    fraHeader->setObjectName(QStringLiteral("fraHeader"));
    auto* headerLayout = new QHBoxLayout(fraHeader);
    headerLayout->setContentsMargins(kListMargin + kRowMargin, 4, kListMargin + kRowMargin, 2);
    headerLayout->setSpacing(kRowSpacing);
    auto addHeader = [&](const char* name, const QString& text, int width) {
        auto* l = new QLabel(text, fraHeader);
        l->setObjectName(QString::fromLatin1(name));
        QFont f = l->font();
        f.setBold(true);
        l->setFont(f);
        if (width > 0)
            l->setFixedWidth(width);
        headerLayout->addWidget(l, width > 0 ? 0 : 1);
    };
    addHeader("lblHeaderIcon", QString(), kRowIndent + kRowSpacing + kIconWidth);
    addHeader("lblHeaderName", QStringLiteral("Data file"), 0);
    addHeader("lblHeaderModified", QStringLiteral("Last modified"), kModifiedWidth);
    addHeader("lblHeaderRecords", QStringLiteral("Records"), kRecordsWidth);
    scroll->setViewportMargins(0, fraHeader->sizeHint().height(), 0, 0);

    fraFiles = new QWidget;
    fraFiles->setObjectName(QStringLiteral("fraFiles"));
    fraFiles->setAutoFillBackground(true);
    QPalette pal = fraFiles->palette();
    pal.setColor(QPalette::Window, pal.color(QPalette::Base));
    fraFiles->setPalette(pal);
    fraFiles->setStyleSheet(QStringLiteral("QFrame[fileRow=\"true\"] { border-radius: 4px; }"
                                           "QFrame[fileRow=\"true\"]:hover { background: #e3eefa; }"));
    fileLayout = new QVBoxLayout(fraFiles);
    fileLayout->setContentsMargins(kListMargin, kListMargin, kListMargin, kListMargin);
    fileLayout->setSpacing(2);
    fileLayout->addStretch(1);
    scrFiles->setWidget(fraFiles);
    fraFiles->installEventFilter(this);
    scrFiles->viewport()->installEventFilter(this);
    connect(scrFiles->horizontalScrollBar(), &QScrollBar::valueChanged, this, &frmOpenFile::placeHeader);
    layout->addWidget(scrFiles, 1);

    lblFileDisplayMessage = new QLabel(this);
    lblFileDisplayMessage->setObjectName(QStringLiteral("lblFileDisplayMessage"));
    lblFileDisplayMessage->setWordWrap(true);
    lblFileDisplayMessage->setStyleSheet(QStringLiteral("QLabel { color: #8a1c1c; }"));
    lblFileDisplayMessage->hide();
    layout->addWidget(lblFileDisplayMessage);

    lblLink = new QLabel(this);
    lblLink->setObjectName(QStringLiteral("lblLink"));
    lblLink->hide();
    layout->addWidget(lblLink);

    auto* bottom = new QHBoxLayout;
    lblMainInfo = new QLabel(this);
    lblMainInfo->setObjectName(QStringLiteral("lblMainInfo"));
    lblMainInfo->setStyleSheet(QStringLiteral("QLabel { color: #606060; }"));
    lblMainInfo->setTextInteractionFlags(Qt::TextSelectableByMouse);
    bottom->addWidget(lblMainInfo, 1);
    cmdBrowse = new QPushButton(QStringLiteral("&Find..."), this);
    cmdBrowse->setObjectName(QStringLiteral("cmdBrowse"));
    cmdBrowse->setToolTip(QStringLiteral("Open a data file from another folder or a removable disk"));
    cmdCreateNewDatabase = new QPushButton(QStringLiteral("&New Data File..."), this);
    cmdCreateNewDatabase->setObjectName(QStringLiteral("cmdCreateNewDatabase"));
    cmdClose = new QPushButton(QStringLiteral("&Close"), this);
    cmdClose->setObjectName(QStringLiteral("cmdClose"));
    bottom->addWidget(cmdBrowse);
    bottom->addWidget(cmdCreateNewDatabase);
    bottom->addWidget(cmdClose);
    layout->addLayout(bottom);
    connect(cmdBrowse, &QPushButton::clicked, this, &frmOpenFile::cmdBrowse_Click);
    connect(cmdCreateNewDatabase, &QPushButton::clicked, this, &frmOpenFile::cmdCreateNewDatabase_Click);
    connect(cmdClose, &QPushButton::clicked, this, &frmOpenFile::cmdClose_Click);

    mnuPopup = new QMenu(this);
    mnuPopup->setObjectName(QStringLiteral("mnuPopup"));
    auto addAction = [this](const char* name, const QString& text, void (frmOpenFile::*slot)()) {
        QAction* a = mnuPopup->addAction(text);
        a->setObjectName(QString::fromLatin1(name));
        connect(a, &QAction::triggered, this, slot);
        return a;
    };
    mnuOpen = addAction("mnuOpen", QStringLiteral("&Open"), &frmOpenFile::mnuOpen_Click);
    mnuPopup->addSeparator();
    mnuDefault = addAction("mnuDefault", QStringLiteral("Open at &Start (Default)"), &frmOpenFile::mnuDefault_Click);
    mnuRemoveDefault =
        addAction("mnuRemoveDefault", QStringLiteral("Remove De&fault"), &frmOpenFile::mnuRemoveDefault_Click);
    mnuPopup->addSeparator();
    addAction("mnuRename", QStringLiteral("&Rename..."), &frmOpenFile::mnuRename_Click);
    addAction("mnuDelete", QStringLiteral("&Delete"), &frmOpenFile::mnuDelete_Click);
    addAction("mnuRestore", QStringLiteral("Restore &Backup Over This File..."), &frmOpenFile::mnuRestore_Click);
    mnuPopup->addSeparator();
    addAction("mnuCreateNew", QStringLiteral("Create &New Data File..."), &frmOpenFile::mnuCreateNew_Click);
    addAction("mnuClose", QStringLiteral("&Close"), &frmOpenFile::mnuClose_Click);

    // The integrity check of an open reports its steps here.
    QtUi::setStatusSink([this](const QString& text) { setStatus(text); });

    gChooser = this;
    LoadTips();
    DisplayCurrentTip();
    getMainInfo();
}

frmOpenFile::~frmOpenFile()
{
    if (gChooser == this) {
        gChooser = nullptr;
        QtUi::setStatusSink(nullptr);
    }
}

frmOpenFile* frmOpenFile::instance() { return gChooser.data(); }

void frmOpenFile::placeHeader()
{
    const QRect viewport = scrFiles->viewport()->geometry();
    const int height = fraHeader->sizeHint().height();
    fraHeader->setGeometry(viewport.x() - scrFiles->horizontalScrollBar()->value(), viewport.y() - height,
                           std::max(fraFiles->width(), viewport.width()), height);
}

void frmOpenFile::setStatus(const QString& text)
{
    lblFileDisplayMessage->setText(text);
    lblFileDisplayMessage->setVisible(!text.isEmpty());
    lblFileDisplayMessage->repaint();
}

void frmOpenFile::clearFileList()
{
    m_rows.clear();
    m_menuRow = -1;
    while (fileLayout->count() > 1) {
        QLayoutItem* item = fileLayout->takeAt(0);
        if (QWidget* w = item->widget())
            w->deleteLater();
        delete item;
    }
}

void frmOpenFile::LoadFiles()
{
    clearFileList();
    setStatus(QString());
    // The Windows program also listed the per-user shadow copy of its install folder; Linux keeps no
    // such copy, so there are two places only.
    const QVector<Chooser::FileRow> user =
        Chooser::findFilenames(Chooser::UserFilesFolder(), QStringLiteral("*.cav"), false);
    const QVector<Chooser::FileRow> system =
        Chooser::findFilenames(Chooser::SystemFilesFolder(), QStringLiteral("*.cav"), true);
    if (!user.isEmpty())
        addSection(QStringLiteral("Tell me more about User Files"),
                   QStringLiteral("Your own data files, kept in ") + QDir::toNativeSeparators(gDataFolder) +
                       QStringLiteral(". Backups and pictures live beside them."),
                   user);
    if (!system.isEmpty())
        addSection(QStringLiteral("Tell me more about System Files"),
                   QStringLiteral("Data files installed with the program in ") +
                       QDir::toNativeSeparators(Chooser::SystemFilesFolder()) +
                       QStringLiteral(". They may be read-only; use Find to copy one into your own folder."),
                   system);
    if (!m_rows.isEmpty())
        return;

    setStatus(QStringLiteral("No Databases found in default locations.\n"
                             "Create a new database or click FIND to find a file."));
    const Ui::Answer answer = Ui::message(
        QStringLiteral("No databases were found in default locations. Would you like to create a new database file?\n"
                       "Note: If this is the first time you have run the program click OK to create a data file. "
                       "If you want to browse for a file somewhere else click Cancel."),
        Ui::Buttons::OkCancel, Ui::Icon::Question, QStringLiteral("Create new data file?"));
    if (answer == Ui::Answer::Ok)
        CreateNewDatabase();
}

void frmOpenFile::addSection(const QString& heading, const QString& tip, const QVector<Chooser::FileRow>& rows)
{
    auto* label = new QLabel(heading, fraFiles);
    label->setObjectName(rows.first().systemFile ? QStringLiteral("lblSystemFiles") : QStringLiteral("lblUserFiles"));
    label->setToolTip(tip);
    label->setWhatsThis(tip);
    label->setCursor(Qt::WhatsThisCursor);
    label->setStyleSheet(QStringLiteral("QLabel { color: #2a5d8f; font-weight: bold; padding: 6px 4px 2px 4px; }"));
    fileLayout->insertWidget(fileLayout->count() - 1, label);
    for (const Chooser::FileRow& row : rows)
        addRow(row);
}

void frmOpenFile::addRow(const Chooser::FileRow& row)
{
    const int index = int(m_rows.size());
    m_rows.append(row);
    const bool isDefault =
        QFileInfo(Chooser::DefaultDatabase()).absoluteFilePath() == QFileInfo(row.path).absoluteFilePath();

    auto* frame = new QFrame(fraFiles);
    frame->setObjectName(arrayName("fraRow", index));
    frame->setCursor(Qt::PointingHandCursor);
    frame->setToolTip(QDir::toNativeSeparators(row.path) +
                      (isDefault ? QStringLiteral("\nOpens at start (default data file)") : QString()));
    frame->setProperty("fileRow", true);
    auto* h = new QHBoxLayout(frame);
    h->setContentsMargins(kRowMargin, 3, kRowMargin, 3);
    h->setSpacing(kRowSpacing);

    auto* img = new QLabel(frame);
    img->setObjectName(arrayName("imgFolder", index));
    img->setFixedSize(kIconWidth, kIconWidth);
    img->setPixmap(speciesPixmap(row.icon, kIconWidth));
    auto* name = new QLabel(row.shownName, frame);
    name->setObjectName(arrayName("lblFolder", index));
    if (isDefault) {
        QFont f = name->font();
        f.setBold(true);
        name->setFont(f);
    }
    auto* modified = new QLabel(modifiedText(row.modified), frame);
    modified->setObjectName(arrayName("lblModified", index));
    modified->setFixedWidth(kModifiedWidth);
    auto* records = new QLabel(row.open            ? QStringLiteral("FILE OPENED")
                               : row.needsRecovery ? QStringLiteral("needs recovery")
                                                   : QString::number(row.records) + QStringLiteral(" records"),
                               frame);
    records->setObjectName(arrayName("lblRecords", index));
    records->setFixedWidth(kRecordsWidth);
    if (row.needsRecovery)
        records->setToolTip(QStringLiteral("The last change to this file was cut short. Click to open it: "
                                           "the unfinished change is undone and the file is whole again."));
    if (row.open)
        records->setStyleSheet(QStringLiteral("QLabel { color: #1b7a2f; font-weight: bold; }"));

    h->addSpacing(kRowIndent);
    h->addWidget(img);
    h->addWidget(name, 1);
    h->addWidget(modified);
    h->addWidget(records);
    for (QWidget* w : {static_cast<QWidget*>(frame), static_cast<QWidget*>(img), static_cast<QWidget*>(name),
                       static_cast<QWidget*>(modified), static_cast<QWidget*>(records)}) {
        w->setProperty("row", index);
        w->installEventFilter(this);
    }
    fileLayout->insertWidget(fileLayout->count() - 1, frame);
}

bool frmOpenFile::eventFilter(QObject* watched, QEvent* event)
{
    if ((watched == fraFiles || watched == scrFiles->viewport()) &&
        (event->type() == QEvent::Resize || event->type() == QEvent::Move)) {
        placeHeader();
        return QWidget::eventFilter(watched, event);
    }
    if (watched == lblTip) {
        if (event->type() == QEvent::MouseButtonRelease)
            DisplayCurrentTip();
        return QWidget::eventFilter(watched, event);
    }
    const QVariant row = watched->property("row");
    if (!row.isValid())
        return QWidget::eventFilter(watched, event);
    if (event->type() == QEvent::MouseButtonRelease &&
        static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton) {
        openRow(row.toInt(), QStringLiteral("Error #IMC001"));
        return true;
    }
    if (event->type() == QEvent::ContextMenu) {
        showRowMenu(row.toInt(), static_cast<QContextMenuEvent*>(event)->globalPos());
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

bool frmOpenFile::openRow(int index, const QString& errorTitle)
{
    if (index < 0 || index >= m_rows.size())
        return false;
    const QString path = m_rows.at(index).path;
    setStatus(kOpeningStatus);
    if (openInPlaceOfCurrent(path)) {
        handOver();
        return true;
    }
    setStatus(QString());
    Ui::message(QStringLiteral("Error opening ") + path, Ui::Buttons::Ok, Ui::Icon::Exclamation, errorTitle);
    return false;
}

void frmOpenFile::handOver()
{
    m_handedOver = true;
    close();
    toMainWindow();
}

void frmOpenFile::showRowMenu(int index, const QPoint& globalPos)
{
    m_menuRow = index;
    const Chooser::FileRow* row = menuRow();
    const bool isDefault = row && QFileInfo(Chooser::DefaultDatabase()).absoluteFilePath() == row->path;
    mnuDefault->setEnabled(row && !isDefault);
    mnuRemoveDefault->setEnabled(isDefault);
    mnuPopup->exec(globalPos);
}

const Chooser::FileRow* frmOpenFile::menuRow() const
{
    return m_menuRow >= 0 && m_menuRow < m_rows.size() ? &m_rows.at(m_menuRow) : nullptr;
}

void frmOpenFile::LoadTips()
{
    m_tips = Chooser::LoadTips(Chooser::TipsFile(), GetLocaleWord(QStringLiteral("Colour")),
                               Chooser::AnimalsWord(gUser.Animal));
}

void frmOpenFile::DisplayCurrentTip()
{
    if (m_tips.isEmpty())
        return;
    const int pick = int(QRandomGenerator::global()->bounded(qsizetype(m_tips.size())));
    lblTip->setText(QStringLiteral("TIP: ") + m_tips.at(pick));
}

void frmOpenFile::getMainInfo() { lblMainInfo->setText(Chooser::getMainInfo()); }

void frmOpenFile::cmdBrowse_Click() { FindDatabaseFile(); }

void frmOpenFile::FindDatabaseFile()
{
    const QString file = Ui::openFile(QStringLiteral("Open File"), kDatabaseFilter, gDataFolder);
    if (file.isEmpty())
        return;
    if (file.endsWith(QLatin1String(".cav"), Qt::CaseInsensitive) && Chooser::InProgramFolder(file)) {
        setStatus(kOpeningStatus);
        if (openInPlaceOfCurrent(file)) {
            handOver();
            return;
        }
        setStatus(QString());
        Ui::message(QStringLiteral("Error opening ") + file, Ui::Buttons::Ok, Ui::Icon::Exclamation,
                    QStringLiteral("Error #FD01"));
        return;
    }
    // A file on a stick or a share is never worked on where it lies: it could go away mid-save.
    if (Ui::message(QStringLiteral("Tessorin will need to copy the file to your Documents folder so you can open it "
                                   "from the OPEN FILE window. Do you want to continue?"),
                    Ui::Buttons::YesNo, Ui::Icon::Question, QStringLiteral("Copy file")) != Ui::Answer::Yes)
        return;
    const QString target = Chooser::CopyTargetFor(file);
    if (QFileInfo::exists(target) &&
        Ui::message(QStringLiteral("Do you want to overwrite ") + target + QStringLiteral("?"), Ui::Buttons::OkCancel,
                    Ui::Icon::Question, QStringLiteral("File already exists")) != Ui::Answer::Ok)
        return;
    if (Chooser::IsOpenDataFile(target) || !Chooser::CopyDataFile(file, target)) {
        Ui::message(kRenameFailed, Ui::Buttons::Ok, Ui::Icon::Exclamation, QStringLiteral("Copy Error"));
        return;
    }
    Ui::message(QStringLiteral("Tessorin will now close to register a new database.\n"
                               "Restart the program and choose your database from the Open File window."),
                Ui::Buttons::Ok, Ui::Icon::Information, QStringLiteral("Restart Required"));
    m_handedOver = true;
    close();
    endProgram();
}

void frmOpenFile::cmdCreateNewDatabase_Click() { CreateNewDatabase(); }

void frmOpenFile::cmdClose_Click() { close(); }

void frmOpenFile::mnuOpen_Click() { openRow(m_menuRow, QStringLiteral("Error #MN001")); }

void frmOpenFile::mnuDefault_Click()
{
    if (const Chooser::FileRow* row = menuRow()) {
        Chooser::SetDefaultDatabase(row->path);
        LoadFiles();
    }
}

void frmOpenFile::mnuRemoveDefault_Click()
{
    Chooser::RemoveDefault();
    LoadFiles();
}

void frmOpenFile::mnuDelete_Click()
{
    const Chooser::FileRow* row = menuRow();
    if (!row)
        return;
    const QString path = row->path;
    if (Ui::message(QStringLiteral("Are you sure you want to delete ") + row->fileName + QStringLiteral("?"),
                    Ui::Buttons::YesNo, Ui::Icon::Question, QStringLiteral("Delete File")) != Ui::Answer::Yes)
        return;
    // Linux would let the open file go from under its own connection, and its records with it.
    const bool open = row->open || Chooser::IsOpenDataFile(path);
    if (open || !Chooser::DeleteListedFile(path)) {
        Ui::message(QStringLiteral("This file may be currently opened or may have been installed with the original "
                                   "program.\nWindows Vista may not allow it to be deleted."),
                    Ui::Buttons::Ok, Ui::Icon::Exclamation, QStringLiteral("Delete Error"));
        return;
    }
    if (QFileInfo(Chooser::DefaultDatabase()).absoluteFilePath() == path)
        Chooser::RemoveDefault();
    LoadFiles();
}

void frmOpenFile::mnuRename_Click()
{
    const Chooser::FileRow* row = menuRow();
    if (!row)
        return;
    const QString path = row->path;
    const bool open = row->open || Chooser::IsOpenDataFile(path);
    const QString answer = Ui::input(QStringLiteral("Please enter a new name for this file?"),
                                     QStringLiteral("Rename File"), QFileInfo(path).completeBaseName());
    if (answer.trimmed().isEmpty())
        return;
    const QString target = Chooser::RenamedPath(path, answer);
    // The open file keeps its name: its connection, recent lists and log all go by the path.
    if (open || !Chooser::RenameListedFile(path, target)) {
        Ui::message(kRenameFailed, Ui::Buttons::Ok, Ui::Icon::Exclamation, QStringLiteral("Rename Error"));
        return;
    }
    if (QFileInfo(Chooser::DefaultDatabase()).absoluteFilePath() == path)
        Chooser::SetDefaultDatabase(target);
    LoadFiles();
}

void frmOpenFile::mnuRestore_Click()
{
    const Chooser::FileRow* row = menuRow();
    if (!row)
        return;
    const QString path = row->path;
    const QString name = row->fileName;
    const bool open = row->open || Chooser::IsOpenDataFile(path);
    if (open &&
        Ui::message(QStringLiteral("If you want to replace the '") + name + QStringLiteral("' database ") +
                        QStringLiteral("you should close and re-open the program to break database connections "
                                       "first. \nDo you want to continue?"),
                    Ui::Buttons::YesNo, Ui::Icon::Question, QStringLiteral("Database Open")) != Ui::Answer::Yes)
        return;
    const QString backup =
        Ui::openFile(QStringLiteral("Choose file to restore"), kDatabaseFilter, gDataFolder + QStringLiteral("DataBk/"));
    if (backup.isEmpty())
        return;
    // The open file is never written over under its own connection: the backup goes beside it.
    const QString target = open ? Chooser::SharedCopyName(path) : path;
    if (QFileInfo::exists(target) &&
        Ui::message(QStringLiteral("Do you want to overwrite ") + target + QStringLiteral("?"), Ui::Buttons::OkCancel,
                    Ui::Icon::Question, QStringLiteral("File already exists")) != Ui::Answer::Ok)
        return;
    if (!Chooser::CopyDataFile(backup, target)) {
        Ui::message(kRenameFailed, Ui::Buttons::Ok, Ui::Icon::Exclamation, QStringLiteral("Copy Error"));
        return;
    }
    Ui::message(QStringLiteral("Backup file restored."), Ui::Buttons::Ok, Ui::Icon::Information,
                QStringLiteral("Operation Completed"));
    LoadFiles();
}

void frmOpenFile::mnuCreateNew_Click() { CreateNewDatabase(); }

void frmOpenFile::mnuClose_Click() { close(); }

void frmOpenFile::closeEvent(QCloseEvent* event)
{
    if (gChooser == this) {
        gChooser = nullptr;
        QtUi::setStatusSink(nullptr);
    }
    QWidget::closeEvent(event);
    // Closed without a file picked: with no data file there is nothing for the main window to show.
    // Shown over an open file (an empty name for a new file), closing it just goes back to that file.
    if (!m_handedOver && !gDatabase.isOpen())
        endProgram();
}

void ShowChooser(const QString& commandLinePath)
{
    if (frmOpenFile* chooser = frmOpenFile::instance()) {
        chooser->show();
        chooser->raise();
        chooser->activateWindow();
        return;
    }
    if (Chooser::LoadOrderPending()) {
        Chooser::SetLoadOrderPending(false);
        if (Chooser::RunLoadOrder(commandLinePath)) {
            toMainWindow();
            return;
        }
    }
    auto* chooser = new frmOpenFile;
    chooser->show();
    chooser->LoadFiles();
}

void CreateNewDatabase()
{
    const QString answer = Ui::input(QStringLiteral("Please enter a unique name for your new data file:\n"
                                                    "(example - Rabbits or Poodles or My Cavies etc.)"),
                                     QStringLiteral("Create Database"), QString());
    const QString name = Chooser::NewDataFileName(answer);
    if (name.isEmpty()) {
        Ui::message(QStringLiteral("You must enter a name for your new database file or use the FIND button to open "
                                   "an existing file."),
                    Ui::Buttons::Ok, Ui::Icon::Exclamation, QStringLiteral("Error"));
        ShowChooser();
        return;
    }
    const QString fileName = name + QStringLiteral(".cav");
    const QString previousFile = gDatabaseFile;
    gDatabaseFile = fileName;
    if (!CreateDataFile(fileName, QString())) {
        gDatabaseFile = previousFile;
        // Not silent: the likely cause is a name already taken, and the user would otherwise be left
        // wondering why nothing happened.
        Ui::message(QStringLiteral("The data file ") + gDataFolder + fileName +
                        QStringLiteral(" could not be made. A file of that name may already exist."),
                    Ui::Buttons::Ok, Ui::Icon::Exclamation, QStringLiteral("Error"));
        return;
    }
    const QString path = gDataFolder + fileName;
    if (!openInPlaceOfCurrent(path)) {
        // Half made (a full disk): it goes with its journal, so the name can be used again.
        RemoveDataFile(path);
        Ui::message(QStringLiteral("Error opening ") + path, Ui::Buttons::Ok, Ui::Icon::Exclamation,
                    QStringLiteral("Error"));
        return;
    }
    if (frmOpenFile* chooser = frmOpenFile::instance())
        chooser->handOver();
    else
        toMainWindow();
    toSetupWizard();
}
