// SPDX-License-Identifier: GPL-3.0-or-later
#include "records/forms/frmCage.h"

#include "records/CageList.h"
#include "records/Lists.h"
#include "records/forms/RecordHost.h"
#include "records/forms/ReportList.h"
#include "session/globals.h"

#include <QLabel>
#include <QVBoxLayout>

frmCage::frmCage(RecordHost* h, QWidget* parent) : QDialog(parent), host(h), lstCage(new ReportList(this))
{
    setObjectName(QStringLiteral("frmCage"));
    setWindowTitle(QStringLiteral("Cage and Tag Numbers"));
    lstCage->setObjectName(QStringLiteral("lstCage"));
    auto* hint = new QLabel(QStringLiteral("Double click an animal to make it the current one."), this);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(lstCage);
    layout->addWidget(hint);
    lstCage->fill(CageRows(gDatabase));
    resize(720, 520);
    connect(lstCage, &ReportList::activated, this, &frmCage::choose);
}

void frmCage::choose(const QString& id)
{
    const QString name = Lists::GetNameById(id);
    if (name.isEmpty())
        return;
    if (host)
        host->putFirstInSearchList(name);
    accept();
}
