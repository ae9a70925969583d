// SPDX-License-Identifier: GPL-3.0-or-later
#include "records/forms/SearchPane.h"

#include "records/forms/ListWidgets.h"
#include "base/ProgramSettings.h"
#include "session/RecentList.h"

#include <QCheckBox>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QEvent>
#include <QGridLayout>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QPushButton>
#include <QRadioButton>
#include <QScopedValueRollback>
#include <QSignalBlocker>
#include <QStackedWidget>
#include <QToolButton>
#include <QVBoxLayout>

namespace {

const QString kOptions = QStringLiteral("Options");

// The pane that shows the recent names; the main window of the last file loaded owns it.
SearchPane* gRecentOwner = nullptr;
const QString kLetters = QStringLiteral("#ABCDEFGHIJKLMNOPQRSTUVWXYZ");

// A drawing pin, upright when the pane is pinned and lying down when it hides itself.
QIcon pinIcon(bool pinned)
{
    QPixmap pixmap(20, 20);
    pixmap.fill(Qt::transparent);
    QPainter p(&pixmap);
    p.setRenderHint(QPainter::Antialiasing);
    p.translate(10, 10);
    if (!pinned)
        p.rotate(90);
    p.setPen(QPen(QColor(60, 60, 60), 1.2));
    p.drawLine(QPointF(0, 3), QPointF(0, 9));
    p.setBrush(pinned ? QColor(200, 40, 40) : QColor(150, 150, 150));
    p.drawRect(QRectF(-3, -7, 6, 7));
    p.drawRect(QRectF(-6, 0, 12, 3));
    return QIcon(pixmap);
}

// The animal's name of a result line, which may carry its call name in brackets behind.
QString nameOfLine(const QString& line)
{
    const qsizetype bracket = line.indexOf(QStringLiteral("    ["));
    return bracket < 0 ? line : line.left(bracket);
}

QComboBox* valueBox(QWidget* parent, const QString& name)
{
    auto* box = new QComboBox(parent);
    box->setObjectName(name);
    box->setEditable(true);
    box->setInsertPolicy(QComboBox::NoInsert);
    box->setMaxVisibleItems(20);
    // What is typed is searched as typed: a completed "Wil" would search for one name, not for every
    // name that holds "Wil".
    box->setCompleter(nullptr);
    return box;
}

// A list of names. When it gets the focus with no row current, the view makes its first row current:
// that is no choice of the user's, so such a change is told apart from a pick.
class NameList : public QListWidget {
public:
    using QListWidget::QListWidget;
    bool takingFocus() const { return focusing; }

protected:
    void focusInEvent(QFocusEvent* event) override
    {
        const QScopedValueRollback rollback(focusing, true);
        QListWidget::focusInEvent(event);
    }

private:
    bool focusing = false;
};

} // namespace

SearchPane::SearchPane(QWidget* parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("fmeSearch"));
    auto* outer = new QVBoxLayout(this);
    outer->setContentsMargins(4, 4, 4, 4);
    outer->setSpacing(4);

    auto* head = new QHBoxLayout;
    lblSearch = new QLabel(QStringLiteral("Search"), this);
    lblSearch->setObjectName(QStringLiteral("lblSearch"));
    QFont bold = lblSearch->font();
    bold.setBold(true);
    lblSearch->setFont(bold);
    lblRecent = new QLabel(QStringLiteral("Show Recent"), this);
    lblRecent->setObjectName(QStringLiteral("lblRecent"));
    lblRecent->setCursor(Qt::PointingHandCursor);
    lblRecent->setStyleSheet(QStringLiteral("color: palette(link); text-decoration: underline;"));
    lblRecent->installEventFilter(this);
    imgPin = new QToolButton(this);
    imgPin->setObjectName(QStringLiteral("imgPin"));
    imgPin->setAutoRaise(true);
    connect(imgPin, &QToolButton::clicked, this, &SearchPane::imgPin_Click);
    head->addWidget(lblSearch);
    head->addStretch(1);
    head->addWidget(lblRecent);
    head->addWidget(imgPin);
    outer->addLayout(head);

    views = new QStackedWidget(this);
    outer->addWidget(views, 1);

    // The search view.
    auto* searchView = new QWidget(views);
    searchView->setObjectName(QStringLiteral("fmeSearchOptions"));
    auto* s = new QVBoxLayout(searchView);
    s->setContentsMargins(0, 0, 0, 0);
    s->setSpacing(3);

    cboSearch = new QComboBox(searchView);
    cboSearch->setObjectName(QStringLiteral("cboSearch"));
    cboSearch->setToolTip(QStringLiteral("Primary Search Criteria"));
    cboSearch->setMaxVisibleItems(20);
    cboBreed = valueBox(searchView, QStringLiteral("cboBreed"));
    cboBreed->setToolTip(QStringLiteral("Primary Search Field"));
    auto* first = new QHBoxLayout;
    first->addWidget(cboSearch, 2);
    first->addWidget(cboBreed, 3);
    s->addLayout(first);

    auto* filter = new QHBoxLayout;
    lblFilterTitle = new QLabel(QStringLiteral("Filter"), searchView);
    lblFilterTitle->setObjectName(QStringLiteral("lblFilterTitle"));
    lblFilter = new QLabel(QStringLiteral("My Animals"), searchView);
    lblFilter->setObjectName(QStringLiteral("lblFilter"));
    optCurrentStock = new QCheckBox(QStringLiteral("list my current stock"), searchView);
    optCurrentStock->setObjectName(QStringLiteral("optCurrentStock"));
    filter->addWidget(lblFilterTitle);
    filter->addWidget(lblFilter);
    filter->addWidget(optCurrentStock, 1);
    s->addLayout(filter);

    cboSearch2 = new QComboBox(searchView);
    cboSearch2->setObjectName(QStringLiteral("cboSearch2"));
    cboSearch2->setToolTip(QStringLiteral("Secondary Search Criteria"));
    cboSearch2->setMaxVisibleItems(20);
    cboBreed2 = valueBox(searchView, QStringLiteral("cboBreed2"));
    cboBreed2->setToolTip(QStringLiteral("Secondary Search Field"));
    auto* second = new QHBoxLayout;
    second->addWidget(cboSearch2, 2);
    second->addWidget(cboBreed2, 3);
    s->addLayout(second);

    auto* how = new QHBoxLayout;
    optContains0 = new QRadioButton(QStringLiteral("is"), searchView);
    optContains0->setObjectName(QStringLiteral("optContains(0)"));
    optContains0->setChecked(true);
    optContains1 = new QRadioButton(QStringLiteral("contains (enter text)"), searchView);
    optContains1->setObjectName(QStringLiteral("optContains(1)"));
    optContains1->setToolTip(QStringLiteral("Click this option and enter text in the box below."));
    how->addWidget(optContains0);
    how->addWidget(optContains1, 1);
    s->addLayout(how);

    auto* buttons = new QHBoxLayout;
    cmdAdvanced = new QPushButton(QStringLiteral("Search"), searchView);
    cmdAdvanced->setObjectName(QStringLiteral("cmdAdvanced"));
    cmdAdvanced->setToolTip(QStringLiteral("Search with both pairs of lists"));
    cmdReset = new QPushButton(QStringLiteral("Reset lists"), searchView);
    cmdReset->setObjectName(QStringLiteral("cmdReset"));
    buttons->addWidget(cmdAdvanced);
    buttons->addWidget(cmdReset);
    s->addLayout(buttons);

    auto* letters = new QGridLayout;
    letters->setSpacing(1);
    for (int i = 0; i < kLetters.size(); ++i) {
        auto* letter = new QLabel(kLetters.mid(i, 1), searchView);
        letter->setObjectName(QStringLiteral("lblLetter(%1)").arg(i));
        letter->setAlignment(Qt::AlignCenter);
        letter->setCursor(Qt::PointingHandCursor);
        letter->setMinimumWidth(14);
        letter->installEventFilter(this);
        letters->addWidget(letter, i / 14, i % 14);
        lblLetter << letter;
    }
    s->addLayout(letters);

    searchList = new NameList(searchView);
    searchList->setObjectName(QStringLiteral("searchList"));
    searchList->setContextMenuPolicy(Qt::CustomContextMenu);
    s->addWidget(searchList, 1);

    lblResultsFound = new QLabel(searchView);
    lblResultsFound->setObjectName(QStringLiteral("lblResultsFound"));
    lblResultsFound->setWordWrap(true);
    s->addWidget(lblResultsFound);
    lblSubjectAnimal = new QLabel(searchView);
    lblSubjectAnimal->setObjectName(QStringLiteral("lblSubjectAnimal"));
    lblSubjectAnimal->setWordWrap(true);
    lblSubjectAnimal->setForegroundRole(QPalette::PlaceholderText);
    s->addWidget(lblSubjectAnimal);
    views->addWidget(searchView);

    // The recent view.
    lstRecent = new NameList(views);
    lstRecent->setObjectName(QStringLiteral("lstRecent"));
    lstRecent->setContextMenuPolicy(Qt::CustomContextMenu);
    views->addWidget(lstRecent);

    connect(cboSearch, &QComboBox::activated, this, &SearchPane::cboSearch_Click);
    connect(cboBreed, &QComboBox::activated, this, &SearchPane::cboBreed_Click);
    connect(cboBreed->lineEdit(), &QLineEdit::returnPressed, this, &SearchPane::cboBreed_Click);
    connect(cboSearch2, &QComboBox::activated, this, &SearchPane::cboSearch2_Click);
    connect(cboBreed2->lineEdit(), &QLineEdit::returnPressed, this, &SearchPane::AdvancedSearch);
    connect(optCurrentStock, &QCheckBox::clicked, this, &SearchPane::cboBreed_Click);
    connect(cmdAdvanced, &QPushButton::clicked, this, &SearchPane::AdvancedSearch);
    connect(cmdReset, &QPushButton::clicked, this, &SearchPane::cmdReset_Click);
    for (QListWidget* list : {searchList, lstRecent}) {
        const bool recent = list == lstRecent;
        // A mouse press moves the row before its click arrives: the click picks, so the name is loaded once.
        connect(list, &QListWidget::currentRowChanged, this, [this, list, recent] {
            if (QGuiApplication::mouseButtons() == Qt::NoButton && !static_cast<NameList*>(list)->takingFocus())
                rowChosen(list, recent);
        });
        connect(list, &QListWidget::itemClicked, this, [this, list, recent] { rowChosen(list, recent); });
        connect(list, &QListWidget::itemDoubleClicked, this, &SearchPane::editRequested);
        // The options act on the current animal: the row under the pointer becomes current first, as a
        // left click makes it.
        connect(list, &QListWidget::customContextMenuRequested, this, [this, list, recent](const QPoint& pos) {
            QListWidgetItem* item = list->itemAt(pos);
            if (!item || item->text().isEmpty())
                return;
            {
                const QSignalBlocker block(list);
                list->setCurrentItem(item);
            }
            rowChosen(list, recent);
            emit optionsRequested(list->viewport()->mapToGlobal(pos), recent, nameOfLine(item->text()));
        });
    }
    gRecentOwner = this;
    SetRecentListSink([this](const QStringList& names, const QString& tip) { showRecentNames(names, tip); });

    setPinned(true);
    showRecent(false);
    resetLetterColour();
    setMinimumWidth(220);
}

SearchPane::~SearchPane()
{
    if (gRecentOwner != this)
        return;
    gRecentOwner = nullptr;
    SetRecentListSink(nullptr);
}

void SearchPane::load()
{
    {
        const QSignalBlocker block(cboSearch);
        cboSearch->clear();
        cboSearch->addItems(Lists::SearchCriteria(true));
        cboSearch->setCurrentText(QStringLiteral("Status"));
        const QSignalBlocker block2(cboSearch2);
        cboSearch2->clear();
        cboSearch2->addItem(QString());
        cboSearch2->addItems(Lists::SearchCriteria(false));
        cboSearch2->setCurrentIndex(0);
    }
    GetBreedChoices(cboSearch, cboBreed);
    cboBreed_Click();
    ShowRecentList();
    showRecent(GetUserSearchPreference());
    setPinned(GetUserPinPreference());
}

void SearchPane::readWidgets()
{
    search.cboSearch = cboSearch->currentText();
    search.cboBreed = cboBreed->currentText();
    search.cboSearch2 = cboSearch2->currentText();
    search.cboBreed2 = cboBreed2->currentText();
    // The second value's prompt is no value.
    if (search.cboBreed2 == QLatin1String("Click to select  > >"))
        search.cboBreed2.clear();
    search.optContains1 = optContains1->isChecked();
    search.optCurrentStock = optCurrentStock->isChecked();
    search.searchList = ListWidgets::read(searchList);
}

void SearchPane::showOutcome()
{
    {
        const QSignalBlocker block(searchList);
        ListWidgets::show(search.searchList, searchList);
    }
    const QSignalBlocker block(optCurrentStock);
    optCurrentStock->setChecked(search.optCurrentStock);
    optCurrentStock->setVisible(search.currentStockShown);
    lblFilterTitle->setVisible(search.currentStockShown);
    lblFilter->setVisible(search.currentStockShown);
    lblResultsFound->setText(search.lblResultsFound);
    lblSubjectAnimal->setText(search.lblSubjectAnimal);
}

void SearchPane::GetBreedChoices(QComboBox* criterionList, QComboBox* valueList)
{
    readWidgets();
    Lists::ListSink sink;
    search.GetBreedChoices(criterionList->currentText(), sink);
    ListWidgets::show(sink, valueList);
}

void SearchPane::GetBreed2List() { GetBreedChoices(cboSearch2, cboBreed2); }

void SearchPane::cboSearch_Click() { GetBreedChoices(cboSearch, cboBreed); }

void SearchPane::cboSearch2_Click()
{
    GetBreed2List();
    // Without a second criterion the second value means nothing.
    if (cboSearch2->currentText().isEmpty())
        cboBreed2->setEditText(QString());
}

void SearchPane::cboBreed_Click()
{
    readWidgets();
    search.cboBreed_Click();
    showOutcome();
}

void SearchPane::refillSearchList() { cboBreed_Click(); }

void SearchPane::AdvancedSearch()
{
    readWidgets();
    search.AdvancedSearch();
    showOutcome();
}

void SearchPane::cmdReset_Click()
{
    readWidgets();
    search.cmdReset_Click();
    {
        const QSignalBlocker b1(cboSearch), b2(cboSearch2), b3(cboBreed), b4(cboBreed2);
        cboSearch->setCurrentText(search.cboSearch);
        Lists::ListSink values;
        search.GetBreedChoices(search.cboSearch, values);
        ListWidgets::show(values, cboBreed);
        cboBreed->setEditText(search.cboBreed);
        cboSearch2->setCurrentIndex(0);
        cboBreed2->clear();
        cboBreed2->setEditText(QString());
        optContains0->setChecked(true);
    }
    showOutcome();
    ShowSearchOptions(true);
}

void SearchPane::lblLetter_Click(int index)
{
    readWidgets();
    search.lblLetter_Click(kLetters.mid(index, 1));
    showOutcome();
}

void SearchPane::ShowSearchOptions(bool fromReset)
{
    if (recentShown)
        showRecent(false);
    if (!fromReset)
        cboSearch->setFocus();
}

void SearchPane::resetLetterColour()
{
    for (QLabel* letter : lblLetter)
        letter->setStyleSheet(QStringLiteral("color: palette(link); padding: 1px;"));
}

bool SearchPane::pickRow(int row)
{
    if (searchList->count() == 0)
        return false;
    searchList->setCurrentRow(qBound(0, row, searchList->count() - 1));
    rowChosen(searchList, false);
    return true;
}

int SearchPane::currentRow() const { return searchList->currentRow(); }

int SearchPane::rowCount() const { return searchList->count(); }

QString SearchPane::firstName() const { return searchList->count() ? nameOfLine(searchList->item(0)->text()) : QString(); }

int SearchPane::rowOf(const QString& name) const
{
    for (int i = 0; i < searchList->count(); ++i) {
        if (nameOfLine(searchList->item(i)->text()) == name)
            return i;
    }
    return -1;
}

void SearchPane::reloadCriteria()
{
    const QSignalBlocker block(cboSearch), block2(cboSearch2);
    for (auto [box, withStatus] : {std::pair{cboSearch, true}, std::pair{cboSearch2, false}}) {
        const QString chosen = box->currentText();
        box->clear();
        if (!withStatus)
            box->addItem(QString());
        box->addItems(Lists::SearchCriteria(withStatus));
        box->setCurrentIndex(qMax(0, box->findText(chosen)));
    }
}

void SearchPane::selectName(const QString& name)
{
    const QSignalBlocker block(searchList);
    for (int i = 0; i < searchList->count(); ++i) {
        if (nameOfLine(searchList->item(i)->text()) == name) {
            searchList->setCurrentRow(i);
            return;
        }
    }
}

void SearchPane::putFirstInSearchList(const QString& name)
{
    const QSignalBlocker block(searchList);
    for (int i = searchList->count() - 1; i >= 0; --i) {
        if (searchList->item(i)->text() == name)
            delete searchList->takeItem(i);
    }
    searchList->insertItem(0, name);
    searchList->setCurrentRow(0);
    searchList->scrollToTop();
}

void SearchPane::rowChosen(QListWidget* list, bool fromRecent)
{
    const QListWidgetItem* item = list->currentItem();
    if (!item || item->text().isEmpty())
        return;
    emit animalPicked(nameOfLine(item->text()), fromRecent);
}

void SearchPane::showRecentNames(const QStringList& names, const QString& tip)
{
    const QSignalBlocker block(lstRecent);
    lstRecent->clear();
    lstRecent->addItems(names);
    lstRecent->setToolTip(tip);
}

void SearchPane::showRecent(bool recent)
{
    recentShown = recent;
    views->setCurrentIndex(recent ? 1 : 0);
    lblRecent->setText(recent ? QStringLiteral("Show Search") : QStringLiteral("Show Recent"));
    lblSearch->setText(recent ? QStringLiteral("Recent") : QStringLiteral("Search"));
}

void SearchPane::lblRecent_Click()
{
    showRecent(!recentShown);
    WriteUserSearchPreference(recentShown);
}

void SearchPane::setPinned(bool pinned)
{
    isPinned = pinned;
    imgPin->setIcon(pinIcon(pinned));
    imgPin->setObjectName(QStringLiteral("imgPin"));
    imgPin->setToolTip(pinned ? QStringLiteral("Auto-hide search pane") : QStringLiteral("Keep search pane visible"));
    imgPin->setAccessibleName(pinned ? QStringLiteral("imgPinned") : QStringLiteral("imgUnpinned"));
}

void SearchPane::imgPin_Click()
{
    setPinned(!isPinned);
    WriteUserPinPreference(isPinned);
    emit pinToggled(isPinned);
}

bool SearchPane::GetUserSearchPreference()
{
    return GetSetting(kOptions, QStringLiteral("Search Preference")) == QLatin1String("Recent");
}

void SearchPane::WriteUserSearchPreference(bool recent)
{
    SaveSetting(kOptions, QStringLiteral("Search Preference"),
                recent ? QStringLiteral("Recent") : QStringLiteral("Search"));
}

bool SearchPane::GetUserPinPreference()
{
    return GetSetting(kOptions, QStringLiteral("Search Pane Pinned"), QStringLiteral("True")) != QLatin1String("False");
}

void SearchPane::WriteUserPinPreference(bool pinned)
{
    SaveSetting(kOptions, QStringLiteral("Search Pane Pinned"), pinned ? QStringLiteral("True") : QStringLiteral("False"));
}

bool SearchPane::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == lblRecent && event->type() == QEvent::MouseButtonRelease) {
        lblRecent_Click();
        return true;
    }
    const int index = int(lblLetter.indexOf(qobject_cast<QLabel*>(watched)));
    if (index >= 0) {
        if (event->type() == QEvent::MouseButtonRelease) {
            lblLetter_Click(index);
            return true;
        }
        if (event->type() == QEvent::Enter) {
            resetLetterColour();
            lblLetter[index]->setStyleSheet(
                QStringLiteral("color: palette(highlighted-text); background: palette(highlight); padding: 1px;"));
            lblLetter[index]->setToolTip(QStringLiteral("Go to ") + kLetters.mid(index, 1));
        }
    }
    return QWidget::eventFilter(watched, event);
}
