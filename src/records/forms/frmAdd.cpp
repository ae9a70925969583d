// SPDX-License-Identifier: GPL-3.0-or-later
#include "records/forms/frmAdd.h"

#include "records/Lists.h"
#include "records/Pictures.h"
#include "records/RecordForm.h"
#include "records/forms/ListWidgets.h"
#include "records/forms/RecordHost.h"
#include "records/forms/ShowRecordOnForm.h"
#include "base/Dates.h"
#include "base/Log.h"
#include "session/OpenDataFile.h"
#include "base/Ui.h"
#include "session/globals.h"
#include "store/DataFile.h"
#include "store/JetError.h"

#include <QCheckBox>
#include <QComboBox>
#include <QEvent>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScopedValueRollback>
#include <QSignalBlocker>
#include <QVBoxLayout>
#include <functional>

namespace {

const QString kUnknown = QStringLiteral("Unknown");
const QString kAddCaption = QStringLiteral("Add New Record");
const QString kEditCaption = QStringLiteral("Edit Record");
const QString kCurrentStockCondition = QStringLiteral(" AND deceased <> -1 AND sold <> -1 AND owner = -1");

// A combo box that is filled when its list drops down rather than when the form opens.
class DropDownBox final : public QComboBox {
public:
    explicit DropDownBox(std::function<void(QComboBox*)> fill)
        : fill(std::move(fill))
    {
    }
    void showPopup() override
    {
        if (fill)
            fill(this);
        QComboBox::showPopup();
    }

private:
    std::function<void(QComboBox*)> fill;
};

struct QuickLink {
    const char* control;
    const char* caption;
    const char* kind; // what the main window's add command is asked for
};
const QuickLink kQuickLinks[] = {
    {"lnkNotes", "Notes / Awards", "Notes"},       {"lnkHealth", "Health Notes", "Health"},
    {"lnkTreatments", "Treatments", "Treatments"}, {"lnkWeight", "Weights", "Weight"},
    {"lnkJournal", "Journal", "Journal"},          {"lnkExpenditure", "Finance Records", "Finance"},
    {"lnkPhotos", "Photos", "Photos"},
};

QLineEdit* lineEdit(const QString& name, const QString& tip = QString())
{
    auto* box = new QLineEdit;
    box->setObjectName(name);
    box->setToolTip(tip);
    return box;
}

QLabel* label(const QString& name, const QString& text, QWidget* buddy = nullptr)
{
    auto* l = new QLabel(text);
    l->setObjectName(name);
    if (buddy)
        l->setBuddy(buddy);
    return l;
}

QCheckBox* checkBox(const QString& name, const QString& text, const QString& tip = QString())
{
    auto* box = new QCheckBox(text);
    box->setObjectName(name);
    box->setToolTip(tip);
    return box;
}

QPushButton* button(const QString& name, const QString& text, const QString& tip = QString())
{
    auto* b = new QPushButton(text);
    b->setObjectName(name);
    b->setToolTip(tip);
    b->setAutoDefault(false); // Enter in a box must not save a half-typed record
    return b;
}

QWidget* row(std::initializer_list<QWidget*> widgets, bool stretch = false)
{
    auto* w = new QWidget;
    auto* layout = new QHBoxLayout(w);
    layout->setContentsMargins(0, 0, 0, 0);
    for (QWidget* child : widgets)
        layout->addWidget(child);
    if (stretch)
        layout->addStretch();
    return w;
}

void logListError(const JetError& e)
{
    LogError(QStringLiteral("Fill list error ") + QString::number(e.number()) + QStringLiteral(" - ") +
             e.description());
}

} // namespace

frmAdd::frmAdd(RecordHost* host, const QString& callerTab, QWidget* parent)
    : QDialog(parent)
    , host(host)
    , callerTab(callerTab)
{
    setObjectName(QStringLiteral("frmAdd"));
    setModal(true);
    buildForm();
    Form_Load();
    watchForChanges();
}

void frmAdd::buildForm()
{
    const auto fillOnDrop = [this](QComboBox* box) { DropDown(box); };
    const auto combo = [&](const QString& name, const QString& tip = QString()) {
        auto* box = new DropDownBox(fillOnDrop);
        box->setObjectName(name);
        box->setEditable(true);
        box->setInsertPolicy(QComboBox::NoInsert);
        box->lineEdit()->setObjectName(name + QStringLiteral("Text"));
        box->setToolTip(tip);
        box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
        box->setMinimumContentsLength(16);
        return box;
    };

    lblTitle = label(QStringLiteral("lblTitle"), QString());
    QFont titleFont = lblTitle->font();
    titleFont.setBold(true);
    titleFont.setPointSizeF(titleFont.pointSizeF() * 1.3);
    lblTitle->setFont(titleFont);

    OptUpdate0 = new QRadioButton(QStringLiteral("Create new record or similar to this one"));
    OptUpdate0->setObjectName(QStringLiteral("OptUpdate(0)"));
    OptUpdate1 = new QRadioButton(QStringLiteral("Edit this record"));
    OptUpdate1->setObjectName(QStringLiteral("OptUpdate(1)"));
    connect(OptUpdate0, &QRadioButton::clicked, this, [this] { OptUpdate_Click(0); });
    connect(OptUpdate1, &QRadioButton::clicked, this, [this] { OptUpdate_Click(1); });

    // --- the record's details ---
    searchList = combo(QStringLiteral("searchList"), QStringLiteral("Tip: To find an animal quickly click the  drop "
                                                                    "down button and start typing the name"));
    // Completing "Be" into "Bella" would turn a rename into a second "Bella".
    searchList->setCompleter(nullptr);
    connect(searchList, &QComboBox::activated, this, [this] { searchList_Click(); });
    txtName = lineEdit(QStringLiteral("txtName"));
    optNameCStock = checkBox(QStringLiteral("optNameCStock"), QStringLiteral("List only Current Stock"));
    cboPrefix = combo(QStringLiteral("cboPrefix"));
    cboSuffix = combo(QStringLiteral("cboSuffix"));
    txtCallName = lineEdit(QStringLiteral("txtCallName"), QStringLiteral("(optional) informal or short name "));
    txtCage = lineEdit(QStringLiteral("txtCage"), QStringLiteral("If you don't label your cages leave this blank"));
    txtTag = lineEdit(QStringLiteral("txtTag"), QStringLiteral("If your animals don't have tags leave this blank"));
    cboColour = combo(QStringLiteral("cboColour"), QStringLiteral("Choose a colour or type in a new one"));
    cboBreed = combo(QStringLiteral("cboBreed"), QStringLiteral("Choose a breed or type in a new one"));
    cboSex = combo(QStringLiteral("cboSex"), QStringLiteral("Choose your animal's sex"));
    cboFather = combo(QStringLiteral("cboFather"),
                      QStringLiteral("Choose a Father's name from the list or leave as UNKNOWN"));
    optFatherCStock = checkBox(QStringLiteral("optFatherCStock"), QStringLiteral("List only Current Stock"));
    auto* cmdMakeFather = button(QStringLiteral("cmdMakeFather"), QStringLiteral("Create"),
                                 QStringLiteral("Create a parent so you can choose it from the list"));
    cboMother = combo(QStringLiteral("cboMother"),
                      QStringLiteral("Choose a Mother's name from the list or leave as UNKNOWN"));
    optMotherCStock = checkBox(QStringLiteral("optMotherCStock"), QStringLiteral("List only Current Stock"));
    auto* cmdMakeMother = button(QStringLiteral("cmdMakeMother"), QStringLiteral("Create"),
                                 QStringLiteral("Create a parent so you can choose it from the list"));
    connect(cmdMakeFather, &QPushButton::clicked, this, &frmAdd::cmdMakeFather_Click);
    connect(cmdMakeMother, &QPushButton::clicked, this, &frmAdd::cmdMakeMother_Click);

    txtDOB = lineEdit(QStringLiteral("txtDOB"),
                      QStringLiteral("Enter the date of birth or click Estimate to calculate"));
    auto* cmdEstimate = button(QStringLiteral("cmdEstimate"), QStringLiteral("Estimate"),
                               QStringLiteral("Calculate approximate DOB from estimated age"));
    connect(cmdEstimate, &QPushButton::clicked, this, &frmAdd::cmdEstimate_Click);

    fmeEstimate = new QGroupBox(QStringLiteral("Estimate"));
    fmeEstimate->setObjectName(QStringLiteral("fmeEstimate"));
    auto* estimateLayout = new QHBoxLayout(fmeEstimate);
    const QString units[] = {QStringLiteral("Years"), QStringLiteral("Months"), QStringLiteral("Weeks")};
    for (int i = 0; i < 3; ++i) {
        txtAge[i] = lineEdit(QStringLiteral("txtAge(%1)").arg(i));
        txtAge[i]->setText(QStringLiteral("0"));
        txtAge[i]->setMaximumWidth(50);
        estimateLayout->addWidget(txtAge[i]);
        estimateLayout->addWidget(new QLabel(units[i]));
        connect(txtAge[i], &QLineEdit::textChanged, this, [this, i] { txtAge_Change(i); });
    }
    estimateLayout->addStretch();
    fmeEstimate->hide();

    auto* details = new QGroupBox;
    details->setObjectName(QStringLiteral("fmeDetails"));
    auto* form = new QFormLayout(details);
    form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    auto* nameCell = new QWidget;
    auto* nameLayout = new QVBoxLayout(nameCell);
    nameLayout->setContentsMargins(0, 0, 0, 0);
    nameLayout->addWidget(searchList);
    nameLayout->addWidget(txtName);
    nameLayout->addWidget(optNameCStock);
    form->addRow(label(QStringLiteral("lblName"), QStringLiteral("* Name:"), txtName), nameCell);
    form->addRow(label(QStringLiteral("lblPrefix"), QStringLiteral("Prefix Title:"), cboPrefix), cboPrefix);
    form->addRow(label(QStringLiteral("lblSuffix"), QStringLiteral("Suffix Title:"), cboSuffix), cboSuffix);
    form->addRow(label(QStringLiteral("lblCallName"), QStringLiteral("Call Name:"), txtCallName), txtCallName);
    form->addRow(label(QStringLiteral("lblCage"), QStringLiteral("Cage No:"), txtCage), txtCage);
    form->addRow(label(QStringLiteral("lblTag"), QStringLiteral("Tag / Reg:"), txtTag), txtTag);
    lblColour = label(QStringLiteral("lblColour"), QStringLiteral("Colour:"), cboColour);
    form->addRow(lblColour, cboColour);
    form->addRow(label(QStringLiteral("lblBreed"), QStringLiteral("Breed:"), cboBreed), cboBreed);
    form->addRow(label(QStringLiteral("lblSex"), QStringLiteral("* Sex:"), cboSex), cboSex);
    lblFather = label(QStringLiteral("lblFather"), QString(), cboFather);
    form->addRow(lblFather, row({cboFather, cmdMakeFather}));
    form->addRow(QString(), optFatherCStock);
    lblMother = label(QStringLiteral("lblMother"), QString(), cboMother);
    form->addRow(lblMother, row({cboMother, cmdMakeMother}));
    form->addRow(QString(), optMotherCStock);
    form->addRow(label(QStringLiteral("lblDOB"), QStringLiteral("DOB:"), txtDOB), row({txtDOB, cmdEstimate}));
    form->addRow(QString(), fmeEstimate);

    // --- status ---
    auto* fmeStatus = new QGroupBox(QStringLiteral("Status"));
    fmeStatus->setObjectName(QStringLiteral("fmeStatus"));
    auto* status = new QGridLayout(fmeStatus);
    auto* lblStatusHint = label(QStringLiteral("lblStatusHint"), QStringLiteral("You may choose more than one box"));
    QFont hintFont = lblStatusHint->font();
    hintFont.setItalic(true);
    lblStatusHint->setFont(hintFont);
    chkBreeder = checkBox(QStringLiteral("chkBreeder"), QStringLiteral("I am the breeder"),
                          QStringLiteral("Did you breed this animal?"));
    chkOwner = checkBox(QStringLiteral("chkOwner"), QStringLiteral("I am the owner"),
                        QStringLiteral("Do you currently own this animal?"));
    chkLeased = checkBox(QStringLiteral("chkLeased"), QStringLiteral("Leased"),
                         QStringLiteral("Is the animal leased or borrowed from another breeder?"));
    chkDeceased = checkBox(QStringLiteral("chkDeceased"), QStringLiteral("Deceased"),
                           QStringLiteral("Is your animal dead?"));
    txtDateDeceased = lineEdit(QStringLiteral("txtDateDeceased"));
    lblDateDeceased = label(QStringLiteral("lblDateDeceased"), QStringLiteral("Date:"), txtDateDeceased);
    chkSold = checkBox(QStringLiteral("chkSold"), QStringLiteral("Sold"),
                       QStringLiteral("Has your animal been sold or given away?"));
    txtDateSold = lineEdit(QStringLiteral("txtDateSold"));
    lblDateSold = label(QStringLiteral("lblDateSold"), QStringLiteral("Date:"), txtDateSold);
    status->addWidget(lblStatusHint, 0, 0, 1, 3);
    status->addWidget(chkBreeder, 1, 0, 1, 3);
    status->addWidget(chkOwner, 2, 0, 1, 3);
    status->addWidget(chkLeased, 3, 0, 1, 3);
    status->addWidget(chkDeceased, 4, 0);
    status->addWidget(lblDateDeceased, 4, 1);
    status->addWidget(txtDateDeceased, 4, 2);
    status->addWidget(chkSold, 5, 0);
    status->addWidget(lblDateSold, 5, 1);
    status->addWidget(txtDateSold, 5, 2);
    status->setColumnStretch(2, 1);
    connect(chkDeceased, &QCheckBox::toggled, this, &frmAdd::chkDeceased_Click);
    connect(chkSold, &QCheckBox::toggled, this, &frmAdd::chkSold_Click);
    showDateBox(txtDateDeceased, lblDateDeceased, false);
    showDateBox(txtDateSold, lblDateSold, false);

    // --- custom fields ---
    const QString frameTitles[] = {QStringLiteral("Custom Fields (pedigree)"),
                                   QStringLiteral("Custom Fields (private)")};
    const QString frameNames[] = {QStringLiteral("fmeCustomPedigree"), QStringLiteral("fmeCustomPrivate")};
    for (int g = 0; g < 2; ++g) {
        fmeCustom[g] = new QGroupBox(frameTitles[g]);
        fmeCustom[g]->setObjectName(frameNames[g]);
        auto* layout = new QFormLayout(fmeCustom[g]);
        layout->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
        lblCustomFieldInfo[g] = label(QStringLiteral("lblCustomFieldInfo(%1)").arg(g), QString());
        lblCustomFieldInfo[g]->setWordWrap(true);
        layout->addRow(lblCustomFieldInfo[g]);
        for (int i = g * 6; i < g * 6 + 6; ++i) {
            cboCustomField[i] = combo(QStringLiteral("cboCustomField%1").arg(i + 1));
            lblCustomName[i] = label(QStringLiteral("lblCustomName%1").arg(i + 1), QString(), cboCustomField[i]);
            layout->addRow(lblCustomName[i], cboCustomField[i]);
        }
    }

    // --- commands ---
    cmdSave = button(QStringLiteral("cmdSave"), QStringLiteral("Save"));
    cmdDelete = button(QStringLiteral("cmdDelete"), QStringLiteral("Delete"));
    connect(cmdSave, &QPushButton::clicked, this, &frmAdd::cmdSave_Click);
    connect(cmdDelete, &QPushButton::clicked, this, &frmAdd::cmdDelete_Click);

    auto* links = new QGroupBox;
    links->setObjectName(QStringLiteral("fmeLinks"));
    auto* linkLayout = new QHBoxLayout(links);
    using Slot = void (frmAdd::*)();
    const Slot handlers[] = {&frmAdd::lnkNotes_Click,   &frmAdd::lnkHealth_Click,      &frmAdd::lnkTreatments_Click,
                          &frmAdd::lnkWeight_Click,  &frmAdd::lnkJournal_Click,     &frmAdd::lnkExpenditure_Click,
                          &frmAdd::lnkPhotos_Click};
    for (int i = 0; i < 7; ++i) {
        const QuickLink& link = kQuickLinks[i];
        auto* b = button(QLatin1String(link.control), QLatin1String(link.caption));
        b->setFlat(true);
        b->setCursor(Qt::PointingHandCursor);
        b->setStyleSheet(QStringLiteral("QPushButton { color: palette(link); text-decoration: underline; }"
                                        "QPushButton:disabled { color: palette(mid); }"));
        const bool available = host && host->quickLinkAvailable(QLatin1String(link.kind));
        b->setEnabled(available);
        if (!available)
            b->setToolTip(Ui::kNotAvailableYet);
        connect(b, &QPushButton::clicked, this, handlers[i]);
        linkLayout->addWidget(b);
    }
    linkLayout->addStretch();

    txtID = lineEdit(QStringLiteral("txtID"));
    txtID->hide();

    // --- the whole form ---
    auto* top = new QHBoxLayout;
    top->addWidget(lblTitle, 1);
    top->addWidget(OptUpdate0);
    top->addWidget(OptUpdate1);

    auto* right = new QVBoxLayout;
    right->addWidget(fmeStatus);
    right->addWidget(fmeCustom[0]);
    right->addWidget(fmeCustom[1]);
    right->addStretch();

    auto* middle = new QHBoxLayout;
    middle->addWidget(details, 3);
    middle->addLayout(right, 2);

    auto* bottom = new QHBoxLayout;
    bottom->addWidget(cmdDelete);
    bottom->addStretch();
    bottom->addWidget(cmdSave);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addLayout(middle, 1);
    layout->addWidget(links);
    layout->addLayout(bottom);
    layout->addWidget(txtID);

    for (QWidget* guarded : {static_cast<QWidget*>(cboFather), static_cast<QWidget*>(cboMother),
                             static_cast<QWidget*>(cboSex)}) {
        guarded->installEventFilter(this);
        static_cast<QComboBox*>(guarded)->lineEdit()->installEventFilter(this);
    }
    for (QLineEdit* date : {txtDOB, txtDateDeceased, txtDateSold})
        date->installEventFilter(this);
}

void frmAdd::Form_Load()
{
    loading = true;
    lblFather->setText(gUser.Father + QLatin1Char(':'));
    lblMother->setText(gUser.Mother + QLatin1Char(':'));
    ShowCustomFieldInfo();

    for (int i = 0; i < 12; ++i) {
        const bool titled = !gUser.CustomName[i].isEmpty();
        lblCustomName[i]->setText(gUser.CustomName[i]);
        lblCustomName[i]->setVisible(titled);
        cboCustomField[i]->setVisible(titled);
    }
    for (int g = 0; g < 2; ++g) {
        bool any = !lblCustomFieldInfo[g]->isHidden();
        for (int i = g * 6; i < g * 6 + 6; ++i)
            any = any || !gUser.CustomName[i].isEmpty();
        fmeCustom[g]->setVisible(any);
    }
    lblColour->setText(GetLocaleWord(QStringLiteral("Colour")) + QLatin1Char(':'));
    cboSex->addItems({gUser.Male, gUser.Female, QStringLiteral("undefined")});
    cboSex->setCurrentIndex(-1); // the user chooses; nothing is taken for granted
    cboSex->setEditText(QString());
    for (QComboBox* box : {cboColour, cboBreed, cboFather, cboMother})
        box->setEditText(kUnknown);
    txtDOB->setText(kUnknown);

    if (EditMode) {
        searchList->show();
        txtName->hide();
        cmdDelete->show();
        setWindowTitle(kEditCaption);
        OptUpdate1->setChecked(true);
        isEdit = true;
        searchList->setEditText(gAnimal.name);
        oldName = gAnimal.name;
        searchList_Click();
    } else {
        searchList->hide();
        searchList->clear();
        searchList->setEditText(QString());
        txtName->show();
        cmdDelete->hide();
        setWindowTitle(kAddCaption);
        OptUpdate0->setChecked(true);
        isEdit = false;
    }
    optNameCStock->setVisible(EditMode);
    loading = false;
    isSaved = true;
}

void frmAdd::watchForChanges()
{
    for (QLineEdit* box : findChildren<QLineEdit*>()) {
        if (box != txtID && !box->objectName().startsWith(QLatin1String("txtAge")))
            connect(box, &QLineEdit::textChanged, this, &frmAdd::markChanged);
    }
    for (QComboBox* box : findChildren<QComboBox*>())
        connect(box, &QComboBox::editTextChanged, this, &frmAdd::markChanged);
    for (QCheckBox* box : {chkDeceased, chkSold, chkBreeder, chkOwner, chkLeased})
        connect(box, &QCheckBox::toggled, this, &frmAdd::markChanged);
}

void frmAdd::markChanged()
{
    if (!loading)
        isSaved = false;
}

void frmAdd::ShowCustomFieldInfo()
{
    const bool none = gUser.CustomName[0].isEmpty() && gUser.CustomName[6].isEmpty();
    const QString text = QStringLiteral("Did you know you can store more aspects of your ") + gUser.Animal +
                         QStringLiteral(" using fields of your own choice.\nGo to MY SETTINGS and enter up to twelve "
                                        "custom field names. You can then add information here.");
    for (QLabel* info : lblCustomFieldInfo) {
        info->setText(text);
        info->setVisible(none);
    }
}

void frmAdd::DropDown(QComboBox* box)
{
    const QString name = box->objectName();
    const QScopedValueRollback<bool> guard(loading, true);
    try {
        if (box == cboFather || box == cboMother) {
            const bool father = box == cboFather;
            const bool current = (father ? optFatherCStock : optMotherCStock)->isChecked();
            ListWidgets::refill(box, [&](Lists::ListSink& sink) {
                Lists::FillParentList(sink, current ? kCurrentStockCondition : QString(),
                                      father ? QStringLiteral("male") : QStringLiteral("female"));
            });
        } else if (box == searchList) {
            const QString status =
                optNameCStock->isChecked() ? QStringLiteral("My Current Stock") : QStringLiteral("All Records");
            ListWidgets::refill(box, [&](Lists::ListSink& sink) {
                Lists::FillSearchList(sink, QStringLiteral("Status"), status, QString(), QString(), false, false);
            });
        } else if (box != cboSex) {
            // cboBreed, cboColour, cboPrefix, cboSuffix and the custom boxes: their column has their name.
            ListWidgets::refill(box, [&](Lists::ListSink& sink) {
                Lists::FillFieldList(sink, name.mid(3), QStringLiteral("tree"), false);
            });
        }
    } catch (const JetError& e) {
        logListError(e);
    }
}

bool frmAdd::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::KeyPress) {
        QObject* owner = watched;
        if (auto* edit = qobject_cast<QLineEdit*>(watched); edit && qobject_cast<QComboBox*>(edit->parent()))
            owner = edit->parent();
        if (owner == cboFather || owner == cboMother || owner == cboSex) {
            const auto* key = static_cast<QKeyEvent*>(event);
            switch (key->key()) {
            case Qt::Key_Up:
            case Qt::Key_Down:
            case Qt::Key_Delete:
            case Qt::Key_Backspace:
                return false;
            default:
                break;
            }
            // Moving on, closing and shortcuts are no typing.
            if (key->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier))
                return false;
            if (key->text().isEmpty() || !key->text().at(0).isPrint())
                return false;
            const QString warning =
                owner == cboSex ? QStringLiteral("You must not type the sex in this box - choose a sex from the list")
                                : QStringLiteral("You must not type names in this box - If a name isn't on the list "
                                                 "then create a parent record first");
            Ui::message(warning, Ui::Buttons::Ok, Ui::Icon::Exclamation, QStringLiteral("Warning"));
            return true;
        }
    } else if (event->type() == QEvent::FocusIn) {
        auto* box = qobject_cast<QLineEdit*>(watched);
        if (box && (box == txtDOB || box == txtDateDeceased || box == txtDateSold) && box->text() == kUnknown) {
            const QScopedValueRollback<bool> guard(loading, true);
            box->clear();
        }
    }
    return QDialog::eventFilter(watched, event);
}

void frmAdd::showDateBox(QLineEdit* box, QLabel* label, bool shown)
{
    box->setVisible(shown);
    label->setVisible(shown);
}

void frmAdd::chkDeceased_Click() { showDateBox(txtDateDeceased, lblDateDeceased, chkDeceased->isChecked()); }

void frmAdd::chkSold_Click()
{
    showDateBox(txtDateSold, lblDateSold, chkSold->isChecked());
    // A sold animal is no longer the user's; un-ticking does not make it theirs again.
    if (chkSold->isChecked())
        chkOwner->setChecked(false);
}

void frmAdd::cmdEstimate_Click() { fmeEstimate->show(); }

void frmAdd::txtAge_Change(int index)
{
    if (txtAge[index]->text().isEmpty()) {
        const QSignalBlocker block(txtAge[index]);
        txtAge[index]->setText(QStringLiteral("0"));
    }
    const auto dob = RecordForm::CalcDOB(txtAge[0]->text(), txtAge[1]->text(), txtAge[2]->text());
    if (dob)
        txtDOB->setText(FormatShortDate(*dob));
}

void frmAdd::OptUpdate_Click(int index)
{
    const QScopedValueRollback<bool> guard(loading, true);
    {
        const QSignalBlocker block0(OptUpdate0);
        const QSignalBlocker block1(OptUpdate1);
        (index == 1 ? OptUpdate1 : OptUpdate0)->setChecked(true);
    }
    if (index == 1) {
        isEdit = true;
        EditMode = true;
        try {
            ListWidgets::refill(searchList, [](Lists::ListSink& sink) { Lists::FillAllNames(sink, QString()); });
        } catch (const JetError& e) {
            logListError(e);
        }
        searchList->setEditText(oldName);
        txtName->setText(oldName);
        searchList->show();
        txtName->hide();
        cmdDelete->show();
        setWindowTitle(kEditCaption);
        lblTitle->setText(oldName);
    } else {
        isEdit = false;
        EditMode = false;
        txtName->clear();
        searchList->clear();
        searchList->setEditText(QString());
        searchList->hide();
        txtName->show();
        cmdDelete->hide();
        setWindowTitle(kAddCaption);
    }
    optNameCStock->setVisible(index == 1);
}

void frmAdd::searchList_Click()
{
    QString name = searchList->currentText();
    if (name.isEmpty())
        return;
    Animal picked;
    picked.SetCurrentAnimal(name);
    if (picked.name.isEmpty())
        return; // a name typed over the list, not a record: it stays as the new name
    {
        const QScopedValueRollback<bool> guard(loading, true);
        record = picked;
        txtName->setText(picked.name);
        lblTitle->setText(picked.name);
        oldName = picked.name;
        ShowRecordOnForm(this, picked);
    }
    isSaved = true;
}

void frmAdd::ShowAnimal(const QString& name)
{
    {
        const QScopedValueRollback<bool> guard(loading, true);
        searchList->setEditText(name);
    }
    searchList_Click();
}

bool frmAdd::SaveRecord(bool askAnother)
{
    const QString listed = searchList->currentText();
    if (isEdit && !listed.isEmpty() && listed != oldName) {
        const Ui::Answer answer =
            Ui::message(QStringLiteral("Are you sure you want to rename ") + oldName + QStringLiteral(" to ") + listed +
                            QLatin1Char('?'),
                        Ui::Buttons::OkCancel, Ui::Icon::Question, QStringLiteral("Replace Record?"));
        if (answer != Ui::Answer::Ok)
            return false;
        txtName->setText(listed);
    }
    record.name = txtName->text().isEmpty() ? listed : txtName->text();
    record.storedName = EncodeText(record.name);

    RecordForm::SaveEntry entry;
    entry.addMode = !isEdit;
    entry.name = record.name;
    entry.dob = txtDOB->text();
    entry.sold = chkSold->isChecked();
    entry.dateSold = txtDateSold->text();
    entry.deceased = chkDeceased->isChecked();
    entry.dateDeceased = txtDateDeceased->text();
    entry.sex = cboSex->currentText();
    QString messages;
    try {
        messages = RecordForm::SaveMessages(entry);
    } catch (const JetError& e) {
        LogError(QStringLiteral("Save animal error ") + QString::number(e.number()) + QStringLiteral(" - ") +
                 e.description());
        Ui::message(QStringLiteral("An error has occured with the information you have supplied."), Ui::Buttons::Ok,
                    Ui::Icon::Exclamation, QStringLiteral("Error creating record."));
        return false;
    }
    {
        // The boxes that passed now hold the unknown date in its stored form.
        const QScopedValueRollback<bool> guard(loading, true);
        txtDOB->setText(entry.dob);
        if (entry.sold)
            txtDateSold->setText(entry.dateSold);
        if (entry.deceased)
            txtDateDeceased->setText(entry.dateDeceased);
    }
    if (!messages.isEmpty()) {
        Ui::message(messages, Ui::Buttons::Ok, Ui::Icon::Exclamation, QStringLiteral("Incomplete record"));
        return false;
    }

    record.callName = txtCallName->text();
    record.colour = cboColour->currentText();
    record.breed = cboBreed->currentText();
    record.dob = txtDOB->text();
    record.ps = cboFather->currentText();
    record.pd = cboMother->currentText();
    record.cage = txtCage->text();
    record.tag = txtTag->text();
    record.deceased = chkDeceased->isChecked();
    record.dateDeceased = txtDateDeceased->text();
    record.sold = chkSold->isChecked();
    for (int i = 0; i < 12; ++i)
        record.customField[i] = cboCustomField[i]->currentText();
    record.dateSold = txtDateSold->text();
    record.breeder = chkBreeder->isChecked();
    record.owner = chkOwner->isChecked();
    record.leased = chkLeased->isChecked();
    record.prefix = cboPrefix->currentText();
    record.suffix = cboSuffix->currentText();
    record.sex = RecordForm::StoredSex(entry.sex);
    if (isEdit)
        record.id = txtID->text().toInt();

    isEdit = !OptUpdate0->isChecked();
    if (!RecordForm::SaveAnimalRecord(record, isEdit, oldName)) {
        Ui::message(QStringLiteral("An error has occured with the information you have supplied."), Ui::Buttons::Ok,
                    Ui::Icon::Exclamation, QStringLiteral("Error creating record."));
        isSaved = false;
        return false;
    }
    if (host)
        host->refillSearchList();
    // On the family tree the subject stays the animal whose tree is shown.
    if (!host || host->shownPageKey() != QLatin1String("Family Tree"))
        savedName = record.name;
    isSaved = true;

    if (askAnother && windowTitle() == kAddCaption && !EditMode) {
        const Ui::Answer answer =
            Ui::message(QStringLiteral("Do you want to add another record with similar details?"), Ui::Buttons::YesNo,
                        Ui::Icon::Question, QStringLiteral("Add Record"));
        if (answer == Ui::Answer::Yes) {
            clearForm();
            return true;
        }
    }
    Form_Unload(QDialog::Accepted);
    return true;
}

void frmAdd::clearForm()
{
    const QScopedValueRollback<bool> guard(loading, true);
    searchList->clear();
    searchList->setEditText(QString());
    for (QLineEdit* box : {txtName, txtCallName, txtTag, txtCage, txtDOB})
        box->clear();
}

void frmAdd::cmdSave_Click() { SaveRecord(true); }

void frmAdd::cmdDelete_Click()
{
    const QString name = record.name.isEmpty() ? oldName : record.name;
    const Ui::Answer answer = Ui::message(QStringLiteral("Are you sure you want to permanently remove ") + name +
                                              QStringLiteral(" from the database?"),
                                          Ui::Buttons::YesNo, Ui::Icon::Question, QStringLiteral("Delete Record?"));
    if (answer != Ui::Answer::Yes)
        return;
    Animal doomed = record;
    doomed.name = name;
    doomed.id = txtID->text().toInt();
    doomed.Delete();
    deletedName = name;
    isSaved = true;
    Form_Unload(QDialog::Accepted);
}

void frmAdd::cmdMakeFather_Click() { MakeParent(QStringLiteral("Father")); }
void frmAdd::cmdMakeMother_Click() { MakeParent(QStringLiteral("Mother")); }

void frmAdd::MakeParent(const QString& kind)
{
    QComboBox* box = kind == QLatin1String("Father") ? cboFather : cboMother;
    try {
        const RecordForm::ParentResult result = RecordForm::MakeParent(kind, [&] { DropDown(box); });
        if (result.outcome == RecordForm::ParentOutcome::Created)
            box->setEditText(result.name);
    } catch (const JetError& e) {
        LogError(QStringLiteral("Quick create error ") + QString::number(e.number()) + QStringLiteral(" - ") +
                 e.description());
    }
}

void frmAdd::checkSaved()
{
    if (isSaved)
        return;
    const Ui::Answer answer = Ui::message(QStringLiteral("This record must be saved to the database before other "
                                                         "details can be added.\nSave this record?"),
                                          Ui::Buttons::OkCancel, Ui::Icon::Question, QStringLiteral("Save Record"));
    if (answer == Ui::Answer::Ok)
        SaveRecord(false);
}

void frmAdd::quickLink(const QString& kind)
{
    checkSaved();
    if (host && host->quickLinkAvailable(kind))
        host->quickLink(kind);
}

void frmAdd::lnkNotes_Click() { quickLink(QStringLiteral("Notes")); }
void frmAdd::lnkHealth_Click() { quickLink(QStringLiteral("Health")); }
void frmAdd::lnkTreatments_Click() { quickLink(QStringLiteral("Treatments")); }
void frmAdd::lnkWeight_Click() { quickLink(QStringLiteral("Weight")); }
void frmAdd::lnkJournal_Click() { quickLink(QStringLiteral("Journal")); }
void frmAdd::lnkExpenditure_Click() { quickLink(QStringLiteral("Finance")); }
void frmAdd::lnkPhotos_Click() { quickLink(QStringLiteral("Photos")); }

void frmAdd::reject()
{
    if (unloaded) {
        QDialog::reject();
        return;
    }
    if (!isSaved) {
        const Ui::Answer answer =
            Ui::message(QStringLiteral("Do you want to save changes to this record?"), Ui::Buttons::YesNo,
                        Ui::Icon::Question, QStringLiteral("Save changes?"));
        if (answer == Ui::Answer::Yes) {
            // A save that is refused keeps the form open with what was typed; a good one closes it.
            SaveRecord(false);
            return;
        }
    }
    Form_Unload(QDialog::Rejected);
}

void frmAdd::Form_Unload(int result)
{
    if (unloaded)
        return;
    unloaded = true;
    oldName.clear();
    EditMode = false;
    if (savedName.isEmpty())
        savedName = gAnimal.name;
    if (host) {
        host->refillSearchList();
        // A deleted record does not come back to the head of the list.
        if (deletedName.isEmpty() || savedName.compare(deletedName, Qt::CaseInsensitive) != 0)
            host->putFirstInSearchList(savedName);
        if (callerTab == QLatin1String("Births"))
            host->SelectTab(QStringLiteral("Births"));
    }
    done(result);
}
