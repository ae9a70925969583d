// SPDX-License-Identifier: GPL-3.0-or-later
#include "printing/forms/FamilyTreePage.h"

#include "printing/PedigreeText.h"
#include "printing/forms/pedigree.h"
#include "records/Animal.h"
#include "records/Lists.h"
#include "records/forms/RecordHost.h"
#include "records/forms/frmAdd.h"
#include "session/globals.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QRadioButton>
#include <QStyle>
#include <QToolButton>
#include <QVBoxLayout>

namespace {

const QString kHint = QStringLiteral("Mouse over to view details. Double-click to edit or add parents.");

} // namespace

void EditFromTree(RecordHost* host, const QString& name, QWidget* parent, const std::function<void(frmAdd&)>& run)
{
    if (gDatabase.isReadOnly())
        return;
    EditMode = true;
    {
        frmAdd form(host, QStringLiteral("Family Tree"), parent);
        form.ShowAnimal(name);
        if (run)
            run(form);
        else
            form.exec();
    }
    EditMode = false;
    // The form may have deleted the animal that was current.
    if (!gAnimal.name.isEmpty() && !Lists::NameInTree(gAnimal.name))
        gAnimal = Animal();
    if (host)
        host->RunTabProcess();
}

FamilyTreePage::FamilyTreePage(RecordHost* recordHost, QWidget* parent) : QWidget(parent), host(recordHost)
{
    setObjectName(QStringLiteral("FamilyTreePage"));

    optGen4 = new QRadioButton(QStringLiteral("Show 5 generation pedigree"), this);
    optGen4->setObjectName(QStringLiteral("optGen(4)"));
    optGen4->setChecked(true);
    optGen7 = new QRadioButton(QStringLiteral("Show 7 generation pedigree"), this);
    optGen7->setObjectName(QStringLiteral("optGen(7)"));
    auto* optGen = new QButtonGroup(this);
    optGen->addButton(optGen4, 4);
    optGen->addButton(optGen7, 7);
    connect(optGen, &QButtonGroup::idClicked, this, &FamilyTreePage::optGen_Click);

    chkShowDetails = new QCheckBox(QStringLiteral("Show pedigree details (no pop ups)"), this);
    chkShowDetails->setObjectName(QStringLiteral("chkShowDetails"));
    connect(chkShowDetails, &QCheckBox::clicked, this, &FamilyTreePage::chkShowDetails_Click);

    imgPrevious = new QToolButton(this);
    imgPrevious->setObjectName(QStringLiteral("imgPrevious"));
    imgPrevious->setIcon(style()->standardIcon(QStyle::SP_ArrowLeft));
    imgPrevious->setAutoRaise(true);
    connect(imgPrevious, &QToolButton::clicked, this, &FamilyTreePage::imgPrevious_Click);
    lblBrowse = new QLabel(QStringLiteral("Browse"), this);
    lblBrowse->setObjectName(QStringLiteral("lblBrowse"));
    lblBrowse->setAlignment(Qt::AlignCenter);
    // Wide enough for "First Record", so that the arrows stay where the mouse is.
    lblBrowse->setMinimumWidth(lblBrowse->fontMetrics().horizontalAdvance(QStringLiteral("First Record")) + 12);
    imgNext = new QToolButton(this);
    imgNext->setObjectName(QStringLiteral("imgNext"));
    imgNext->setIcon(style()->standardIcon(QStyle::SP_ArrowRight));
    imgNext->setAutoRaise(true);
    connect(imgNext, &QToolButton::clicked, this, &FamilyTreePage::imgNext_Click);

    pedigree1 = new pedigree(this);
    pedigree1->setObjectName(QStringLiteral("pedigree1"));
    connect(pedigree1, &pedigree::boxDoubleClicked, this, &FamilyTreePage::pedigree1_DblClick);

    lblHelp = new QLabel(this);
    lblHelp->setObjectName(QStringLiteral("lblHelp"));
    lblHelp->setForegroundRole(QPalette::PlaceholderText);

    auto* bar = new QHBoxLayout;
    bar->setSpacing(12);
    bar->addWidget(optGen4);
    bar->addWidget(optGen7);
    bar->addWidget(chkShowDetails);
    bar->addStretch(1);

    // The hint and the browse arrows share the line under the pedigree, which keeps the page narrow
    // enough for a small window beside the search pane.
    auto* foot = new QHBoxLayout;
    foot->setSpacing(0);
    foot->addWidget(lblHelp, 1);
    foot->addWidget(imgPrevious);
    foot->addWidget(lblBrowse);
    foot->addWidget(imgNext);

    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(6, 4, 6, 2);
    column->setSpacing(4);
    column->addLayout(bar);
    column->addWidget(pedigree1, 1);
    column->addLayout(foot);
}

void FamilyTreePage::LoadTree()
{
    lblHelp->setText(kHint);
    const int generations = optGen4->isChecked() ? 4 : 7;
    QStringList familyArray;
    const QString name = gAnimal.storedName.isEmpty() ? gAnimal.name : gAnimal.storedName;
    pedigree1->showPedigree(name, familyArray, 254, PedigreeParent::FamilyTree, generations,
                            chkShowDetails->isChecked());
}

void FamilyTreePage::optGen_Click(int) { LoadTree(); }

void FamilyTreePage::chkShowDetails_Click() { LoadTree(); }

void FamilyTreePage::imgNext_Click() { step(1); }

void FamilyTreePage::imgPrevious_Click() { step(-1); }

void FamilyTreePage::step(int direction)
{
    if (browse && browse(direction)) {
        lblBrowse->setText(QStringLiteral("Browse"));
        return;
    }
    lblBrowse->setText(direction > 0 ? QStringLiteral("Last Record") : QStringLiteral("First Record"));
}

void FamilyTreePage::pedigree1_DblClick(const QString& name)
{
    if (edit)
        edit(name);
    else
        EditFromTree(host, name, this);
}
