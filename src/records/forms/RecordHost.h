// SPDX-License-Identifier: GPL-3.0-or-later
// What the record forms ask of the main window that opened them. frmTree is the one in the program;
// tests give their own.
#pragma once

#include <QString>

class RecordHost {
public:
    virtual ~RecordHost() = default;

    // Runs the main window's search again with the criteria it shows.
    virtual void refillSearchList() = 0;
    // Takes every line equal to name out of the main result list and puts name first, selected.
    virtual void putFirstInSearchList(const QString& name) = 0;
    // The key of the page on top ("Individual", "Births", ...).
    virtual QString shownPageKey() const = 0;
    // Selects a page afresh (see frmTree::SelectTab).
    virtual void SelectTab(const QString& key) = 0;
    // Refills the page on top from gAnimal.
    virtual void RunTabProcess() = 0;
    // The main window's add command for one kind of record: "Notes", "Health", "Treatments", "Weight",
    // "Journal", "Finance" or "Photos". False when this version has no such command yet.
    virtual bool quickLinkAvailable(const QString& kind) const = 0;
    virtual void quickLink(const QString& kind) = 0;
};
