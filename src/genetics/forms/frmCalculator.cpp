// SPDX-License-Identifier: GPL-3.0-or-later
#include "genetics/forms/frmCalculator.h"

#include "records/Animal.h"
#include "records/forms/ListWidgets.h"
#include "base/Ui.h"
#include "session/globals.h"
#include "store/JetError.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace {

constexpr int kGaugeWidth = 360;
constexpr int kGaugeHeight = 18;

QPushButton* button(QWidget* parent, const QString& name, const QString& caption, const QString& tip)
{
    auto* b = new QPushButton(caption, parent);
    b->setObjectName(name);
    b->setToolTip(tip);
    return b;
}

QComboBox* nameBox(QWidget* parent, const QString& name)
{
    auto* box = new QComboBox(parent);
    box->setObjectName(name);
    box->setEditable(true);
    box->setInsertPolicy(QComboBox::NoInsert);
    box->setMinimumContentsLength(24);
    return box;
}

} // namespace

frmCalculator::frmCalculator(QWidget* parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmCalculator"));
    setWindowTitle(QStringLiteral("Inbreeding Calculator"));

    lblHelp = new QLabel(this);
    lblHelp->setObjectName(QStringLiteral("lblHelp"));
    lblHelp->setWordWrap(true);

    lblMaleTitle = new QLabel(this);
    lblMaleTitle->setObjectName(QStringLiteral("lblMaleTitle"));
    lblFemaleTitle = new QLabel(this);
    lblFemaleTitle->setObjectName(QStringLiteral("lblFemaleTitle"));
    cboMale = nameBox(this, QStringLiteral("cboCoefficient(1)"));
    cboFemale = nameBox(this, QStringLiteral("cboCoefficient(2)"));
    optFatherCStock = new QCheckBox(QStringLiteral("List only Current Stock"), this);
    optFatherCStock->setObjectName(QStringLiteral("optFatherCStock"));
    optMotherCStock = new QCheckBox(QStringLiteral("List only Current Stock"), this);
    optMotherCStock->setObjectName(QStringLiteral("optMotherCStock"));
    auto* lblGenerations = new QLabel(QStringLiteral("Search Generations:"), this);
    lblGenerations->setObjectName(QStringLiteral("lblGenerations"));
    cboGenerations = new QComboBox(this);
    cboGenerations->setObjectName(QStringLiteral("cboGenerations"));
    cboGenerations->setEditable(true);
    cboGenerations->setInsertPolicy(QComboBox::NoInsert);

    cmdCalculateCoef = button(this, QStringLiteral("cmdCalculateCoef"), QStringLiteral("Calculate"),
                              QStringLiteral("Calculate the COI of the animals in the lists"));
    cmdShow = button(this, QStringLiteral("cmdShow"), QStringLiteral("Show All"),
                     QStringLiteral("Show all stored percentages from your database"));
    cmdShowMine = button(this, QStringLiteral("cmdShowMine"), QStringLiteral("Show Mine"),
                         QStringLiteral("Show stored percentages for your current stock only"));
    cmdCalculateAllCOI = button(this, QStringLiteral("cmdCalculateAllCOI"), QStringLiteral("Update All"),
                                QStringLiteral("Calculate all COI and save them to your database"));
    cmdUpdateMine = button(this, QStringLiteral("cmdUpdateMine"), QStringLiteral("Update mine"), QString());
    // Printing lists comes with the printing of lists.
    cmdPrintInbreeding = button(this, QStringLiteral("cmdPrintInbreeding"), QStringLiteral("Print Coefficient Details"),
                                Ui::kNotAvailableYet);
    cmdPrintInbreeding->setEnabled(false);

    gaugeArea = new QWidget(this);
    gaugeArea->setObjectName(QStringLiteral("gaugeArea"));
    gaugeArea->setMinimumHeight(kGaugeHeight + 4);
    gaugeArea->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    lblGuageBackground = new QLabel(gaugeArea);
    lblGuageBackground->setObjectName(QStringLiteral("lblGuageBackground"));
    lblGuageBackground->setFrameShape(QFrame::Panel);
    lblGuageBackground->setFrameShadow(QFrame::Sunken);
    lblGuageBackground->setGeometry(0, 2, kGaugeWidth, kGaugeHeight);
    lblGuage = new QLabel(gaugeArea);
    lblGuage->setObjectName(QStringLiteral("lblGuage"));
    lblGuage->setAutoFillBackground(true);
    lblDescription = new QLabel(gaugeArea);
    lblDescription->setObjectName(QStringLiteral("lblDescription"));

    lstCoefficient = new QTreeWidget(this);
    lstCoefficient->setObjectName(QStringLiteral("lstCoefficient"));
    lstCoefficient->setRootIsDecorated(false);
    lstCoefficient->setAlternatingRowColors(true);
    lstCoefficient->setUniformRowHeights(true);
    lstCoefficient->setSelectionBehavior(QAbstractItemView::SelectRows);
    lstCoefficient->header()->setSectionsClickable(true);
    lstCoefficient->header()->setStretchLastSection(false);
    lstCoefficient->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    connect(lstCoefficient->header(), &QHeaderView::sectionClicked, this, &frmCalculator::lstCoefficient_ColumnClick);

    auto* choices = new QGridLayout;
    choices->addWidget(lblMaleTitle, 0, 0);
    choices->addWidget(cboMale, 0, 1);
    choices->addWidget(optFatherCStock, 0, 2);
    choices->addWidget(lblFemaleTitle, 1, 0);
    choices->addWidget(cboFemale, 1, 1);
    choices->addWidget(optMotherCStock, 1, 2);
    choices->addWidget(lblGenerations, 2, 0);
    choices->addWidget(cboGenerations, 2, 1, Qt::AlignLeft);
    choices->setColumnStretch(1, 1);

    auto* buttons = new QHBoxLayout;
    for (QPushButton* b : {cmdCalculateCoef, cmdShow, cmdShowMine, cmdCalculateAllCOI, cmdUpdateMine})
        buttons->addWidget(b);
    buttons->addStretch(1);
    buttons->addWidget(cmdPrintInbreeding);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(lblHelp);
    layout->addLayout(choices);
    layout->addLayout(buttons);
    layout->addWidget(gaugeArea);
    layout->addWidget(lstCoefficient, 1);
    resize(820, 600);

    connect(cmdCalculateCoef, &QPushButton::clicked, this, &frmCalculator::cmdCalculateCoef_Click);
    connect(cmdShow, &QPushButton::clicked, this, &frmCalculator::cmdShow_Click);
    connect(cmdShowMine, &QPushButton::clicked, this, &frmCalculator::cmdShowMine_Click);
    connect(cmdCalculateAllCOI, &QPushButton::clicked, this, &frmCalculator::cmdCalculateAllCOI_Click);
    connect(cmdUpdateMine, &QPushButton::clicked, this, &frmCalculator::cmdUpdateMine_Click);
    connect(optFatherCStock, &QCheckBox::clicked, this, &frmCalculator::optFatherCStock_Click);
    connect(optMotherCStock, &QCheckBox::clicked, this, &frmCalculator::optMotherCStock_Click);

    emptyGauge();
    resetbuttons();
    LoadInBreeding();
}

void frmCalculator::LoadInBreeding()
{
    lblHelp->setText(Calculator::HelpText());
    lblMaleTitle->setText(gUser.Male + QLatin1Char(':'));
    lblFemaleTitle->setText(gUser.Female + QLatin1Char(':'));
    fillNames(true);
    fillNames(false);
    cboGenerations->clear();
    for (int g = 4; g <= 10; ++g)
        cboGenerations->addItem(QString::number(g));
    cboGenerations->setCurrentText(QStringLiteral("6"));
    if (gAnimal.sex == QLatin1String("male"))
        cboMale->setEditText(gAnimal.name);
    else if (gAnimal.sex == QLatin1String("female"))
        cboFemale->setEditText(gAnimal.name);
}

void frmCalculator::fillNames(bool male)
{
    QComboBox* box = male ? cboMale : cboFemale;
    const bool current = (male ? optFatherCStock : optMotherCStock)->isChecked();
    try {
        ListWidgets::refill(box, [&](Lists::ListSink& sink) { Calculator::FillNameList(sink, male, current); });
    } catch (const JetError&) {
        // A list that cannot be read stays as it was; the form has no messages of its own.
    }
}

void frmCalculator::optFatherCStock_Click() { fillNames(true); }
void frmCalculator::optMotherCStock_Click() { fillNames(false); }

void frmCalculator::DisableButtons()
{
    for (QPushButton* b : {cmdCalculateCoef, cmdCalculateAllCOI, cmdShow, cmdUpdateMine, cmdShowMine}) {
        b->setText(QStringLiteral("Please Wait"));
        b->setEnabled(false);
    }
}

void frmCalculator::resetbuttons()
{
    cmdCalculateCoef->setText(QStringLiteral("Calculate"));
    cmdCalculateAllCOI->setText(QStringLiteral("Update All"));
    cmdShow->setText(QStringLiteral("Show All"));
    cmdUpdateMine->setText(QStringLiteral("Update mine"));
    cmdShowMine->setText(QStringLiteral("Show Mine"));
    for (QPushButton* b : {cmdCalculateCoef, cmdCalculateAllCOI, cmdShow, cmdUpdateMine, cmdShowMine})
        b->setEnabled(true);
    // The two runs store what they work out; a file opened for reading takes nothing.
    if (gDatabase.isReadOnly()) {
        for (QPushButton* b : {cmdCalculateAllCOI, cmdUpdateMine}) {
            b->setEnabled(false);
            b->setToolTip(QStringLiteral("The data file is open read-only."));
        }
    }
}

void frmCalculator::setColumns(const QVector<Calculator::Column>& columns)
{
    const int w = lstCoefficient->viewport()->width();
    lstCoefficient->clear();
    qDeleteAll(pendingRows);
    pendingRows.clear();
    lastRecordRow = nullptr;
    lstCoefficient->setSortingEnabled(false);
    lstCoefficient->header()->setSortIndicatorShown(false);
    QStringList titles;
    for (const Calculator::Column& c : columns)
        titles << c.title;
    lstCoefficient->setColumnCount(int(titles.size()));
    lstCoefficient->setHeaderLabels(titles);
    for (int i = 0; i < columns.size(); ++i) {
        // A column of no width is a hidden key column.
        lstCoefficient->setColumnHidden(i, columns.at(i).widthShare == 0);
        if (columns.at(i).widthShare > 0)
            lstCoefficient->setColumnWidth(i, int(w * columns.at(i).widthShare));
    }
}

void frmCalculator::emptyGauge() { setGauge(0, false, QString()); }

void frmCalculator::setGauge(int width, bool red, const QString& text)
{
    QPalette palette = lblGuage->palette();
    palette.setColor(QPalette::Window, red ? QColor(Qt::red) : QColor(Qt::blue));
    lblGuage->setPalette(palette);
    lblGuage->setGeometry(lblGuageBackground->x(), lblGuageBackground->y(), width, kGaugeHeight);
    lblGuage->setVisible(width > 0);
    lblGuage->raise();
    lblDescription->setText(text);
    lblDescription->adjustSize();
    lblDescription->move(lblGuageBackground->x() + width + 6,
                         lblGuageBackground->y() + (kGaugeHeight - lblDescription->height()) / 2);
    lblDescription->raise();
}

void frmCalculator::cmdCalculateCoef_Click()
{
    emptyGauge();
    DisableButtons();
    setColumns(Calculator::AncestorColumns());
    const std::optional<Calculator::Choice> choice =
        Calculator::ChooseCalculation(cboMale->currentText(), cboFemale->currentText());
    if (!choice) {
        resetbuttons();
        return;
    }
    if (cboGenerations->currentText().isEmpty())
        cboGenerations->setEditText(QStringLiteral("6"));
    qint16 generations = 0;
    if (!ToInteger16(cboGenerations->currentText(), &generations)) {
        resetbuttons();
        return;
    }
    const double f = CalculateCoefficient(choice->name, choice->sire, choice->dam, generations, true, true, this);
    setGauge(Calculator::GaugeWidth(lblGuageBackground->width(), f), Calculator::GaugeIsRed(f),
             Calculator::CoefficientText(f));
    resetbuttons();
}

void frmCalculator::calculateCOI(bool currentStockOnly)
{
    if (Ui::message(Calculator::UpdateConfirmationText(currentStockOnly), Ui::Buttons::OkCancel, Ui::Icon::Question,
                    QStringLiteral("Update Database")) != Ui::Answer::Ok) {
        resetbuttons();
        return;
    }
    emptyGauge();
    DisableButtons();
    cboMale->setEditText(QString());
    cboFemale->setEditText(QString());
    setColumns(Calculator::RecordColumns());
    // Sorted once at the end: re-sorting the whole list after every record would cost more than the run.
    lstCoefficient->header()->setSortIndicator(3, Qt::DescendingOrder);
    lstCoefficient->header()->setSortIndicatorShown(true);
    running = true;
    lastProgress.clear();
    sincePaint.start();
    QString stopped;
    const bool completed = UpdateCoefficients(Calculator::BulkQuery(currentStockOnly), *this, &stopped);
    showPendingRows();
    running = false;
    lastRecordRow = nullptr;
    sortOrder = Qt::DescendingOrder;
    lstCoefficient->sortItems(3, sortOrder);
    resetbuttons();
    if (!completed)
        Ui::message(QStringLiteral("The coefficients were not all worked out.\n") + stopped, Ui::Buttons::Ok,
                    Ui::Icon::Exclamation, QStringLiteral("Update Database"));
}

void frmCalculator::cmdCalculateAllCOI_Click() { calculateCOI(false); }
void frmCalculator::cmdUpdateMine_Click() { calculateCOI(true); }

void frmCalculator::listStored(const QString& mode)
{
    setColumns(Calculator::StoredColumns());
    QString description;
    QVector<Calculator::StoredRow> rows;
    try {
        rows = Calculator::StoredCoefficients(mode, &description);
    } catch (const JetError&) {
    }
    QList<QTreeWidgetItem*> items;
    items.reserve(rows.size());
    for (const Calculator::StoredRow& r : rows)
        items << new QTreeWidgetItem(QStringList{r.id, r.name, r.breed, r.sex, r.coefficient});
    lstCoefficient->addTopLevelItems(items);
    sortOrder = Qt::DescendingOrder;
    lstCoefficient->header()->setSortIndicator(4, sortOrder);
    lstCoefficient->header()->setSortIndicatorShown(true);
    lstCoefficient->sortItems(4, sortOrder);
    setGauge(0, false, description);
}

void frmCalculator::cmdShow_Click() { listStored(QStringLiteral("Show All")); }
void frmCalculator::cmdShowMine_Click() { listStored(QStringLiteral("Show Mine")); }

void frmCalculator::lstCoefficient_ColumnClick(int column)
{
    if (running)
        return;
    sortOrder = sortOrder == Qt::AscendingOrder ? Qt::DescendingOrder : Qt::AscendingOrder;
    lstCoefficient->header()->setSortIndicator(column, sortOrder);
    lstCoefficient->header()->setSortIndicatorShown(true);
    lstCoefficient->sortItems(column, sortOrder);
}

void frmCalculator::closeEvent(QCloseEvent* event)
{
    // The bulk run yields to the event loop with this form as its view.
    if (running) {
        event->ignore();
        return;
    }
    QDialog::closeEvent(event);
}

void frmCalculator::reject()
{
    if (!running)
        QDialog::reject();
}

void frmCalculator::addAncestorRow(const AncestorRow& row)
{
    lstCoefficient->addTopLevelItem(new QTreeWidgetItem(
        QStringList{QString(), row.name, row.sireGeneration, row.damGeneration, row.contribution, QString()}));
}

QString frmCalculator::generationsText() const { return cboGenerations->currentText(); }
void frmCalculator::setGenerationsText(const QString& text) { cboGenerations->setEditText(text); }

void frmCalculator::addRecordRow(const QString& name, const QString& breed, const QString& sex)
{
    lastRecordRow = new QTreeWidgetItem(QStringList{name, breed, sex, QString()});
    pendingRows.append(lastRecordRow);
}

void frmCalculator::showPendingRows()
{
    if (pendingRows.isEmpty())
        return;
    lstCoefficient->addTopLevelItems(pendingRows);
    pendingRows.clear();
}

void frmCalculator::setRecordCoefficient(const QString& text)
{
    if (lastRecordRow)
        lastRecordRow->setText(3, text);
}

void frmCalculator::progress(double fraction, const QString& label)
{
    // A new percentage, the end, or a tenth of a second: often enough for the eye.
    constexpr qint64 kPaintMilliseconds = 100;
    if (label == lastProgress && sincePaint.elapsed() < kPaintMilliseconds)
        return;
    showPendingRows();
    if (label != lastProgress)
        setGauge(Calculator::GaugeWidth(lblGuageBackground->width(), fraction), false, label);
    lastProgress = label;
    sincePaint.restart();
}
