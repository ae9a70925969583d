// SPDX-License-Identifier: GPL-3.0-or-later
// The cage and tag numbers of the current stock; a double click makes an animal current and closes.
#pragma once

#include <QDialog>

class RecordHost;
class ReportList;

class frmCage : public QDialog {
    Q_OBJECT
public:
    frmCage(RecordHost* host, QWidget* parent = nullptr);

    ReportList* list() const { return lstCage; }
    void choose(const QString& id); // as a double click on the row with this ID

private:
    RecordHost* host;
    ReportList* lstCage;
};
