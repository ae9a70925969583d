// SPDX-License-Identifier: GPL-3.0-or-later
// A synthetic stud for trying the program out and for measuring it: animals over several generations
// with shared sires (so that coefficients are not zero), their matings, treatments, weights, sales,
// show results, journal notes, contacts, money and reminders.
#pragma once

#include "store/Database.h"
#include "store/User.h"

#include <QDate>
#include <QString>

struct SpeciesPreset;

struct GenerateOptions {
    int animals = 1000;
    int generations = 8;
    quint32 seed = 1;
    // Days from mating to birth; the matings' due dates follow from it.
    int gestation = 31;
    // The file's weight measure: weights are written in pounds-and-ounces form when it holds "pounds",
    // in grams when it holds "gram", else in kilograms.
    QString weightMeasure;
    // When 1 to 12, the custom field of tree that takes the latest weight, as the weight form writes it.
    int weightCustomField = 0;
    // The last generation is born in the year before this day.
    QDate today;

    // The shape of a stud a breeder would recognise; the defaults keep the synthetic one as it is.
    QString ownStud = QStringLiteral("Willowbrook"); // the prefix of animals bred at home
    QString tagPrefix = QStringLiteral("WB");
    int breeds = 0;              // how many of the six breeds are kept; 0 for all
    int outsideStuds = 0;        // stock from other studs comes from the first n of them; 0 for all
    int sireShare = 12;          // one male in this many of a generation and breed is kept as a sire
    double maxCoefficient = 1.0; // a mating whose young would be more inbred than this is not made
    double lineBreeding = 1.0;   // the share of matings allowed above 10%
    int weanLitterDaysAgo = 0;   // when set, one litter is born this many days before today
    bool showcaseFirst = false;  // the first of the current stock by name gets a full, varied pedigree
    int shows = -1, journalNotes = -1; // how many to try for; -1 for a share of the animals
};

struct GenerateCounts {
    int animals = 0, matings = 0, treatments = 0, weights = 0, sales = 0, shows = 0, journal = 0, contacts = 0,
        finance = 0, reminders = 0;
};

// Fills a data file whose tables are made and whose tree is empty (std::invalid_argument otherwise, and
// for fewer than one animal or generation). A failing statement throws its JetError and the one
// transaction leaves the file as it was. The same options give the same file.
GenerateCounts GenerateStud(Database& database, const GenerateOptions& options);

// The settings of the demonstration stud: the preset's words, days and custom titles with a breeder,
// a stud and a country, so that the setup wizard has nothing to ask. Version and prefix are kept.
void ApplyDemoSettings(User& user, const SpeciesPreset& preset);
