// SPDX-License-Identifier: GPL-3.0-or-later
// The species presets: one choice of animal gives a data file its words for the sexes and parents, the
// day counts of its breeding calendar and the titles of its custom fields.
#pragma once

#include <QLatin1String>
#include <QString>
#include <array>
#include <optional>
#include <span>

struct SpeciesPreset {
    QLatin1String animal;
    // False for a species the table knows but has nothing to suggest for: choosing it fills nothing.
    bool hasValues = true;
    QLatin1String male, female, father, mother;
    // Days after mating (gestation, nest) or after birth (rebreed, wean); empty where the table
    // suggests none, which leaves the box blank.
    std::optional<short> gestation, nestBox, rebreed, wean;
    // Titles of custom fields 1 to 12; a null text leaves the field unused.
    std::array<QLatin1String, 12> customNames{};
};

// Every row of the table, in its order.
std::span<const SpeciesPreset> SpeciesPresets();

// The row for an animal word, compared without regard to letter case or surrounding blanks;
// nullptr when the table has none.
const SpeciesPreset* FindSpeciesPreset(const QString& animal);
