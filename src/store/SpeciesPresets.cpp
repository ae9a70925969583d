// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/SpeciesPresets.h"

using namespace Qt::Literals::StringLiterals;

namespace {

using Names = std::array<QLatin1String, 12>;

// The titles that most species share.
constexpr Names kGeneral{"Ears"_L1,   "Head"_L1, "Legs"_L1, "Eye Colour"_L1, "Under Colour"_L1,
                         "Weight"_L1, "Line"_L1, "Nutritional Problems"_L1};

constexpr std::optional<short> kEmpty;

// The spellings ("Tatoo", "buck" for a sheep, the Sheep's "Ram") are the program's own.
const SpeciesPreset kPresets[] = {
    {"Animal Shelter"_L1, true, "male"_L1, "female"_L1, "Father"_L1, "Mother"_L1, kEmpty, kEmpty, kEmpty, kEmpty,
     Names{"Date surrendered"_L1, "Previous Owner"_L1, "Surrender reason"_L1, "Euthanized"_L1, "Euthanized Date"_L1,
           "Date Adopted"_L1, "New Owner"_L1, "Markings"_L1, "Temperament"_L1, "Rehome rating (1 -5)"_L1, "Weight"_L1,
           "Nutritional Problems"_L1}},
    {"Cat"_L1, true, "male"_L1, "female"_L1, "Father"_L1, "Mother"_L1, 60, 55, 112, 56,
     Names{"Eye Colour"_L1, "Eye PRA"_L1, "Chip Number"_L1, "Weight"_L1, "Bloodgroup"_L1, "FIV"_L1, "Line"_L1,
           "Nutritional Problems"_L1}},
    {"Chinchilla"_L1, true, "buck"_L1, "doe"_L1, "Father"_L1, "Mother"_L1, 111, 105, 140, 70, kGeneral},
    {"Cow"_L1, true, "bull"_L1, "cow"_L1, "Sire"_L1, "Dam"_L1, 285, 271, 168, 84, kGeneral},
    {"Deer"_L1, true, "buck"_L1, "doe"_L1, "Father"_L1, "Mother"_L1, 200, 190, 168, 84, kGeneral},
    {"Dog"_L1, true, "dog"_L1, "bitch"_L1, "Sire"_L1, "Dam"_L1, 63, 60, 100, 50,
     Names{"Eye Colour"_L1, "Eye PRA"_L1, "Chip Number"_L1, "Weight"_L1, "Bloodgroup"_L1,
           "Hip Dysplasia check Date"_L1, "HD result"_L1, "Tatoo"_L1, "Line"_L1, "Nutritional Problems"_L1}},
    {"Donkey"_L1, true, "jack"_L1, "jennet"_L1, "Father"_L1, "Mother"_L1, 365, 347, 280, 140,
     Names{"Weight"_L1, "Line"_L1, "Nutritional Problems"_L1}},
    {"Ferret"_L1, true, "hob"_L1, "jill"_L1, "Father"_L1, "Mother"_L1, 42, 40, 168, 84, kGeneral},
    {"Gerbil"_L1, true, "buck"_L1, "doe"_L1, "Father"_L1, "Mother"_L1, 21, 20, 56, 28, kGeneral},
    {"Goat"_L1, true, "buck"_L1, "doe"_L1, "Father"_L1, "Mother"_L1, 150, 143, 112, 56,
     Names{"Ears"_L1, "Head"_L1, "Legs"_L1, "Under Colour"_L1, "Weight"_L1, "Line"_L1, "Nutritional Problems"_L1}},
    {"Guinea Pig"_L1, true, "boar"_L1, "sow"_L1, "Sire"_L1, "Dam"_L1, 63, 60, 80, 40, kGeneral},
    {"Hamster"_L1, true, "buck"_L1, "doe"_L1, "Father"_L1, "Mother"_L1, 16, 15, 56, 28, kGeneral},
    {"Hedgehog"_L1, false, {}, {}, {}, {}, kEmpty, kEmpty, kEmpty, kEmpty, Names{}},
    {"Horse"_L1, true, "stallion"_L1, "mare"_L1, "Father"_L1, "Mother"_L1, 340, 323, 336, 168, kGeneral},
    {"Mouse"_L1, true, "buck"_L1, "doe"_L1, "Father"_L1, "Mother"_L1, 20, 19, 56, 28, kGeneral},
    {"Pig"_L1, true, "boar"_L1, "sow"_L1, "Father"_L1, "Mother"_L1, 112, 106, 84, 42, kGeneral},
    {"Possum"_L1, true, "jack"_L1, "jill"_L1, "Father"_L1, "Mother"_L1, 17, 16, 192, 96, kGeneral},
    {"Rabbit"_L1, true, "buck"_L1, "doe"_L1, "Sire"_L1, "Dam"_L1, 31, 29, 112, 56,
     Names{"Registry Number"_L1, "Grand Champion Number"_L1, "Weight"_L1, "Ears"_L1, "Head"_L1, "Legs"_L1,
           "Eye Colour"_L1, "Line"_L1, "Best In Show"_L1, "Best Of Breed"_L1, "Best Opposite Breed"_L1,
           "Best Opposite In Show"_L1}},
    {"Rat"_L1, true, "buck"_L1, "doe"_L1, "Father"_L1, "Mother"_L1, 20, 19, 56, 28, kGeneral},
    {"Sheep"_L1, true, "buck"_L1, "ewe"_L1, "Ram"_L1, "Dam"_L1, 145, 138, 168, 84, kGeneral},
    {"Bird"_L1, true, "cock"_L1, "hen"_L1, "Cock"_L1, "Hen"_L1, 17, 16, 20, 10,
     Names{"Laid"_L1, "Set"_L1, "Ringed"_L1, "Fledged"_L1, "Breeding Round"_L1, "Breeding Season"_L1, "Bearing"_L1,
           "Feathering"_L1, "Size"_L1, "Beak Colour"_L1, "Eye Colour"_L1, "Eye-Lid Colour"_L1}},
    {"[Clear previous choice]"_L1, true, "male"_L1, "female"_L1, "Father"_L1, "Mother"_L1, kEmpty, kEmpty, kEmpty,
     kEmpty, Names{}},
};

} // namespace

std::span<const SpeciesPreset> SpeciesPresets() { return kPresets; }

const SpeciesPreset* FindSpeciesPreset(const QString& animal)
{
    const QString word = animal.trimmed();
    for (const SpeciesPreset& p : kPresets) {
        if (word.compare(p.animal, Qt::CaseInsensitive) == 0)
            return &p;
    }
    return nullptr;
}
