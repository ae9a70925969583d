// SPDX-License-Identifier: GPL-3.0-or-later
// The pedigree control: a surface of boxes (lblCavy), connectors (bracket) and column headings
// (lblAnimal) in the 4- or 7-generation form, filled from the ancestor walk and the print template.
// On the family tree page it also shows a pop-up of the animal under the mouse and reports a
// double-click on a box.
#pragma once

#include "printing/PedigreeLayout.h"
#include "printing/PedigreeText.h"
#include "printing/PrintSettings.h"

#include <QStringList>
#include <QWidget>
#include <array>
#include <memory>

class ConnectorPicture;
class PedigreeBox;
class PedigreeConnector;
class PedigreeSurface;
class PictureBox;
class QLabel;
class QScrollArea;
class QTimer;
class frmPopup;

class pedigree : public QWidget {
    Q_OBJECT
public:
    explicit pedigree(QWidget* parent = nullptr);
    ~pedigree() override;

    // Lays out the form, walks the ancestors of pstrName into familyArray (to 62 for 4 generations, 254
    // for 7, whatever indexLimit says) and fills the boxes. A blank name leaves the surface empty.
    void showPedigree(const QString& pstrName, QStringList& familyArray, int indexLimit, PedigreeParent ParentForm,
                      int generations, bool showPedigreeDetails);

    // The template the boxes read; "Default" until another is given.
    void setTemplate(const PrintSettings& settings);
    const PrintSettings& printTemplate() const { return settings; }

    void loadBackground();
    void LoadPedBrackets();
    void ClearPedTree();
    void makeFourGen();
    void makeSevenGen();
    void fillPedTreeBoxes();
    void fillFirstBox();
    void FillparentBox(const QString& name, int BoxNum);
    void FillPedFamily();
    // Empties every caption that begins with "." (placeholder captions).
    void ClearBlanks();
    void CheckBrackets(int BoxNum);
    void ShowBrackets(int bracketIndex, int heading);

    int generations() const { return generationsShown; }
    bool showsDetails() const { return details; }
    const QStringList& family() const { return familyArray; }
    const PedigreeGeometry& geometry() const { return layout; }
    double dotsPerInch() const;
    frmPopup* popup() const { return popupForm.get(); }
    QScrollArea* scrollArea() const { return scroll; }

signals:
    // A box was double-clicked: the animal's name as shown, decoded.
    void boxDoubleClicked(const QString& name);

public slots:
    void lblCavy_MouseMove(int index);
    void lblCavy_DblClick(int index);
    void imgBackground_MouseMove();
    void tmrShowPopup_Timer();

protected:
    void leaveEvent(QEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void applyLayout();
    void fitColumns();
    void placeConnectors();
    void closePopup();
    frmPopup* ensurePopup();

    PrintSettings settings;
    BoxWords words;
    void fitToWidth();
    double fitScale = 1; // below 1 while the five-generation sheet is shrunk to the page's width
    int generationsShown = 4;
    int indexLimit = 62;
    bool details = false;
    PedigreeParent ParentForm = PedigreeParent::FamilyTree;
    QStringList familyArray;
    PedigreeGeometry layout;
    int hoveredBox = -1;

    QScrollArea* scroll = nullptr;
    PedigreeSurface* imgBackground = nullptr;
    std::array<PedigreeBox*, kPedigreeBoxes> lblCavy{};
    std::array<PedigreeConnector*, kPedigreeBrackets> bracket{};
    std::array<QLabel*, kPedigreeHeadings> lblAnimal{};
    PictureBox* imgPopup = nullptr;
    QLabel* imgExplore = nullptr;
    QTimer* tmrShowPopup = nullptr;
    std::shared_ptr<ConnectorPicture> screenConnector;
    // A window of its own, kept out of the control's children so that its parts' names don't mix
    // with the surface's.
    std::unique_ptr<frmPopup> popupForm;
};

// A template colour as the screen shows it; a scheme colour comes from the palette.
QColor ScreenColour(const QString& text, const QPalette& palette, const QColor& fallback);
