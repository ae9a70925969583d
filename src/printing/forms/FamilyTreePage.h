// SPDX-License-Identifier: GPL-3.0-or-later
// The "Family Tree" page of the main window: the current animal's pedigree in the 5- or 7-generation
// form, with or without details, browsing through the search list, and a double-click on a box that
// opens the add and edit form on that animal.
#pragma once

#include <QString>
#include <QWidget>
#include <functional>

class QCheckBox;
class QLabel;
class QRadioButton;
class QToolButton;
class RecordHost;
class frmAdd;
class pedigree;

// Opens frmAdd in edit mode on name (decoded), as if the user had picked it in the form's own list, and
// refills the main window's page afterwards. run replaces the modal exec (tests look at the form).
void EditFromTree(RecordHost* host, const QString& name, QWidget* parent,
                  const std::function<void(frmAdd&)>& run = {});

class FamilyTreePage : public QWidget {
    Q_OBJECT
public:
    // Moves the main window's search list by step (+1 next, -1 previous) and makes that animal current;
    // false, with nothing moved, at the end of the list.
    using Browser = std::function<bool(int step)>;
    // Opens the record of a box's animal for editing.
    using Editor = std::function<void(const QString& name)>;

    explicit FamilyTreePage(RecordHost* host, QWidget* parent = nullptr);

    // Draws the pedigree of gAnimal in the form and with the details chosen on the page.
    void LoadTree();

    void setBrowser(Browser browser) { browse = std::move(browser); }
    // Without an editor of its own the page runs EditFromTree with its host.
    void setEditor(Editor editor) { edit = std::move(editor); }

    pedigree* pedigreeControl() const { return pedigree1; }

public slots:
    void optGen_Click(int index);
    void chkShowDetails_Click();
    void imgNext_Click();
    void imgPrevious_Click();
    void pedigree1_DblClick(const QString& name);

private:
    void step(int direction);

    RecordHost* host = nullptr;
    Browser browse;
    Editor edit;

    QRadioButton* optGen4 = nullptr;
    QRadioButton* optGen7 = nullptr;
    QCheckBox* chkShowDetails = nullptr;
    QToolButton* imgPrevious = nullptr;
    QToolButton* imgNext = nullptr;
    QLabel* lblBrowse = nullptr;
    QLabel* lblHelp = nullptr;
    pedigree* pedigree1 = nullptr;
};
