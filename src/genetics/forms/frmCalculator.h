// SPDX-License-Identifier: GPL-3.0-or-later
// The Inbreeding Calculator: a test mating or one animal with its common ancestors, the bulk runs that
// store every coefficient, and the lists of what is stored.
#pragma once

#include "genetics/Calculator.h"
#include "genetics/Coefficient.h"

#include <QDialog>
#include <QElapsedTimer>
#include <QList>

class QCheckBox;
class QComboBox;
class QLabel;
class QPushButton;
class QTreeWidget;
class QTreeWidgetItem;
class QWidget;

class frmCalculator : public QDialog, private CoefficientView {
    Q_OBJECT
public:
    // Fills itself from the open file and gAnimal (LoadInBreeding); show() or exec() it.
    explicit frmCalculator(QWidget* parent = nullptr);

    void LoadInBreeding();
    void DisableButtons();
    void resetbuttons();
    void calculateCOI(bool currentStockOnly);
    void listStored(const QString& mode);

    bool isRunning() const { return running; }

public slots:
    void cmdCalculateCoef_Click();
    void cmdShow_Click();
    void cmdShowMine_Click();
    void cmdCalculateAllCOI_Click();
    void cmdUpdateMine_Click();
    void optFatherCStock_Click();
    void optMotherCStock_Click();
    void lstCoefficient_ColumnClick(int column);

protected:
    void closeEvent(QCloseEvent* event) override;
    void reject() override;

private:
    // CoefficientView
    void addAncestorRow(const AncestorRow& row) override;
    QString generationsText() const override;
    void setGenerationsText(const QString& text) override;
    void addRecordRow(const QString& name, const QString& breed, const QString& sex) override;
    void setRecordCoefficient(const QString& text) override;
    void progress(double fraction, const QString& label) override;

    void setColumns(const QVector<Calculator::Column>& columns);
    void emptyGauge();
    void setGauge(int width, bool red, const QString& text);
    void fillNames(bool male);
    void showPendingRows();

    QLabel* lblHelp = nullptr;
    QLabel* lblMaleTitle = nullptr;
    QLabel* lblFemaleTitle = nullptr;
    QComboBox* cboMale = nullptr;   // cboCoefficient(1)
    QComboBox* cboFemale = nullptr; // cboCoefficient(2)
    QCheckBox* optFatherCStock = nullptr;
    QCheckBox* optMotherCStock = nullptr;
    QComboBox* cboGenerations = nullptr;
    QPushButton* cmdCalculateCoef = nullptr;
    QPushButton* cmdShow = nullptr;
    QPushButton* cmdShowMine = nullptr;
    QPushButton* cmdCalculateAllCOI = nullptr;
    QPushButton* cmdUpdateMine = nullptr;
    QPushButton* cmdPrintInbreeding = nullptr;
    QTreeWidget* lstCoefficient = nullptr;
    QWidget* gaugeArea = nullptr;
    QLabel* lblGuage = nullptr;
    QLabel* lblGuageBackground = nullptr;
    QLabel* lblDescription = nullptr;

    // The bulk run's rows wait here between two paints: painting the window after each record would
    // cost more than the run itself.
    QList<QTreeWidgetItem*> pendingRows;
    QTreeWidgetItem* lastRecordRow = nullptr;
    QString lastProgress;
    QElapsedTimer sincePaint;
    bool running = false;
    Qt::SortOrder sortOrder = Qt::DescendingOrder;
};
