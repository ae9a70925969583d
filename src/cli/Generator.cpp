// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/Generator.h"

#include "base/Clock.h"
#include "base/Dates.h"
#include "session/OpenDataFile.h"
#include "store/DataFile.h"
#include "store/SpeciesPresets.h"

#include <QHash>
#include <QList>
#include <QSet>
#include <QStringList>
#include <algorithm>
#include <cmath>
#include <random>
#include <stdexcept>

namespace {

// std::uniform_int_distribution differs between standard libraries; this does not, so a seed gives the
// same stud everywhere.
class Random {
public:
    explicit Random(quint32 seed) : m_engine(seed) {}
    quint32 next() { return quint32(m_engine()); }
    int below(int n) { return n <= 1 ? 0 : int((quint64(next()) * quint64(n)) >> 32); }
    int between(int low, int high) { return low + below(high - low + 1); }
    bool chance(double p) { return double(next()) < p * 4294967296.0; }
    double unit() { return double(next()) / 4294967296.0; }
    template <typename T> const T& pick(const QList<T>& list) { return list.at(below(int(list.size()))); }

private:
    std::mt19937 m_engine;
};

const QStringList kOtherStuds = {
    QStringLiteral("Hillcrest"),    QStringLiteral("O'Malley's"),  QStringLiteral("Bramble Hollow"),
    QStringLiteral("Kit's Corner"), QStringLiteral("Silverleaf"),  QStringLiteral("Åsgården"),
    QStringLiteral("Duncan's"),     QStringLiteral("Meadowvale"),  QStringLiteral("Foxglove"),
    QStringLiteral("Riverside"),    QStringLiteral("Thornbury"),   QStringLiteral("Rosebay"),
};

const QStringList kGivenNames = {
    QStringLiteral("Clover"),   QStringLiteral("Bramble"),  QStringLiteral("Pepper"),  QStringLiteral("Thistle"),
    QStringLiteral("Hazel"),    QStringLiteral("Juniper"),  QStringLiteral("Basil"),   QStringLiteral("Nutmeg"),
    QStringLiteral("Maple"),    QStringLiteral("Willow"),   QStringLiteral("Acorn"),   QStringLiteral("Biscuit"),
    QStringLiteral("Cinnamon"), QStringLiteral("Dandelion"), QStringLiteral("Ember"),  QStringLiteral("Fennel"),
    QStringLiteral("Ginger"),   QStringLiteral("Heather"),  QStringLiteral("Ivy"),     QStringLiteral("Jasper"),
    QStringLiteral("Kestrel"),  QStringLiteral("Lavender"), QStringLiteral("Moss"),    QStringLiteral("Nettle"),
    QStringLiteral("Oakley"),   QStringLiteral("Poppy"),    QStringLiteral("Quill"),   QStringLiteral("Rowan"),
    QStringLiteral("Saffron"),  QStringLiteral("Tansy"),    QStringLiteral("Umber"),   QStringLiteral("Violet"),
    QStringLiteral("Wren"),     QStringLiteral("Yarrow"),   QStringLiteral("Zoë"),     QStringLiteral("Aster"),
    QStringLiteral("Bluebell"), QStringLiteral("Cobalt"),   QStringLiteral("D'Arcy"),  QStringLiteral("Elder"),
    QStringLiteral("Fable"),    QStringLiteral("Gossamer"), QStringLiteral("Holly"),   QStringLiteral("Indigo"),
    QStringLiteral("Jethro"),   QStringLiteral("Kipper"),   QStringLiteral("Lupin"),   QStringLiteral("Marigold"),
    QStringLiteral("Nimbus"),   QStringLiteral("Onyx"),     QStringLiteral("Pippin"),  QStringLiteral("Quince"),
    QStringLiteral("Renée"),    QStringLiteral("Sorrel"),   QStringLiteral("Truffle"), QStringLiteral("Velvet"),
    QStringLiteral("Whisper"),  QStringLiteral("Xander"),   QStringLiteral("Yeti"),    QStringLiteral("Zephyr"),
    QStringLiteral("Barley"),   QStringLiteral("Comet"),    QStringLiteral("Dusty"),   QStringLiteral("Fudge"),
    QStringLiteral("Hopscotch"), QStringLiteral("Jigsaw"),  QStringLiteral("Mocha"),   QStringLiteral("Pebble"),
    QStringLiteral("Rascal"),   QStringLiteral("Sage"),     QStringLiteral("Toffee"),  QStringLiteral("Midnight"),
};

struct BreedInfo {
    QString name;
    double adultKilograms;
    QStringList colours;
};

const QList<BreedInfo> kBreeds = {
    {QStringLiteral("Netherland Dwarf"), 1.0,
     {QStringLiteral("Black"), QStringLiteral("Blue"), QStringLiteral("Chocolate"), QStringLiteral("Ruby-Eyed White"),
      QStringLiteral("Otter"), QStringLiteral("Sable Point")}},
    {QStringLiteral("Holland Lop"), 1.7,
     {QStringLiteral("Broken Black"), QStringLiteral("Broken Orange"), QStringLiteral("Tortoiseshell"),
      QStringLiteral("Chestnut Agouti"), QStringLiteral("Fawn")}},
    {QStringLiteral("Mini Rex"), 1.9,
     {QStringLiteral("Castor"), QStringLiteral("Lilac"), QStringLiteral("Black Otter"), QStringLiteral("Broken Castor"),
      QStringLiteral("Blue")}},
    {QStringLiteral("Dutch"), 2.2,
     {QStringLiteral("Black"), QStringLiteral("Blue"), QStringLiteral("Chocolate"), QStringLiteral("Tortoise"),
      QStringLiteral("Steel Grey")}},
    {QStringLiteral("Californian"), 4.0, {QStringLiteral("Black Points"), QStringLiteral("Chocolate Points")}},
    {QStringLiteral("Flemish Giant"), 6.5,
     {QStringLiteral("Light Grey"), QStringLiteral("Sandy"), QStringLiteral("Steel Grey"), QStringLiteral("Fawn")}},
};

const QStringList kTreatments = {
    QStringLiteral("Myxomatosis vaccine"), QStringLiteral("RHD2 vaccine"),       QStringLiteral("Worming"),
    QStringLiteral("Ear mite treatment"),  QStringLiteral("Coccidiosis course"),
    QStringLiteral("Fly strike prevention"),
    QStringLiteral("Nail trim"),
};

const QStringList kNotes = {
    QStringLiteral("Good temperament, easy to handle."), QStringLiteral("Show quality; strong head."),
    QStringLiteral("Slight malocclusion, do not breed."), QStringLiteral("Excellent mother, large litters."),
    QStringLiteral("Keep back for the breeding programme."), QStringLiteral("Nervous with strangers; \"shy\" type."),
};

const QStringList kFirstNames = {
    QStringLiteral("Sam"),    QStringLiteral("Jo"),     QStringLiteral("Alex"),   QStringLiteral("Morgan"),
    QStringLiteral("Casey"),  QStringLiteral("Robin"),  QStringLiteral("Jamie"),  QStringLiteral("Taylor"),
    QStringLiteral("Chris"),  QStringLiteral("Pat"),    QStringLiteral("Dana"),   QStringLiteral("Lee"),
    QStringLiteral("Kim"),    QStringLiteral("Noor"),   QStringLiteral("Ines"),   QStringLiteral("Tomás"),
    QStringLiteral("Ruth"),   QStringLiteral("Owen"),   QStringLiteral("Greta"),  QStringLiteral("Malik")};
const QStringList kLastNames = {
    QStringLiteral("Fletcher"),  QStringLiteral("O'Neill"), QStringLiteral("Baxter"),  QStringLiteral("Nguyen"),
    QStringLiteral("Kowalski"),  QStringLiteral("Harper"),  QStringLiteral("Lindqvist"), QStringLiteral("Moreau"),
    QStringLiteral("Okafor"),    QStringLiteral("Reyes"),   QStringLiteral("Abbott"),  QStringLiteral("Brennan"),
    QStringLiteral("Castillo"),  QStringLiteral("Dawson"),  QStringLiteral("Engel"),   QStringLiteral("Fairley"),
    QStringLiteral("Gallagher"), QStringLiteral("Hughes"),  QStringLiteral("Ibsen"),   QStringLiteral("Jansen")};
const QStringList kTowns = {QStringLiteral("Springfield"), QStringLiteral("Riverton"), QStringLiteral("Lakeside"),
                            QStringLiteral("Fairview"),    QStringLiteral("Greenville"), QStringLiteral("Oakdale")};
const QStringList kStreets = {QStringLiteral("Elm Street"), QStringLiteral("Mill Lane"), QStringLiteral("Orchard Road"),
                              QStringLiteral("Church Way"), QStringLiteral("Station Road")};
const QStringList kCategories = {QStringLiteral("Buyer"), QStringLiteral("Breeder"), QStringLiteral("Vet"),
                                 QStringLiteral("Judge"), QStringLiteral("Supplier")};
const QStringList kShows = {QStringLiteral("Spring Open Show"), QStringLiteral("County Fair"),
                            QStringLiteral("Regional Championship"), QStringLiteral("Club Table Show"),
                            QStringLiteral("National Convention")};
const QStringList kExpenses = {QStringLiteral("Feed pellets"), QStringLiteral("Hay"), QStringLiteral("Vet visit"),
                               QStringLiteral("Show entry fees"), QStringLiteral("Bedding"),
                               QStringLiteral("Hutch repairs")};

struct Beast {
    QString name, callName, breed, colour, cage, tag, notes, latestWeight;
    QString ps, pd; // a name, "Unknown" or blank, as the record keeps them
    int generation = 0;
    bool male = false;
    QDate dob;
    QDate lastUse; // the latest mating it took part in
    bool deceased = false, sold = false, owner = true, breeder = true, leased = false;
    QDate died, soldOn;
    int breedIndex = 0;
    int sire = -1, dam = -1; // indexes of the known parents
};

struct Mating {
    QString breed, boar, sow, colour, numBoars, numSows, stillborn;
    QDate mated, due, born;
    bool unsuccessful = false;
};

struct Weighing {
    int animal;
    QDate date;
    QString time, weight;
};

// Values as a statement carries them: text quoted in stored form, dates month first between '#' marks,
// flags as -1 and 0. The values of one statement are listed in braces, which also fixes the order in
// which the random picks among them are made.
QString text(const QString& s) { return QLatin1Char('\'') + EncodeText(s) + QLatin1Char('\''); }
QString date(const QDate& d)
{
    return d.isValid() ? QLatin1Char('#') + FormatSqlDate(d) + QLatin1Char('#') : QStringLiteral("Null");
}
QString flag(bool b) { return b ? QStringLiteral("-1") : QStringLiteral("0"); }
QString shortDate(const QDate& d) { return d.isValid() ? FormatShortDate(d) : QString(); }
QString insert(const QString& tableAndColumns, const QStringList& values)
{
    return QStringLiteral("INSERT INTO ") + tableAndColumns + QStringLiteral(" VALUES (") +
           values.join(QLatin1Char(',')) + QLatin1Char(')');
}
QString insert(const char* tableAndColumns, const QStringList& values)
{
    return insert(QString::fromUtf8(tableAndColumns), values);
}

enum class WeightUnit { Kilograms, Grams, Pounds };

// The stored text of a weight, and the text the weight form writes to a custom field.
QPair<QString, QString> weightTexts(double kilograms, WeightUnit unit, const QString& measure)
{
    switch (unit) {
    case WeightUnit::Pounds: {
        const double pounds = kilograms * 2.20462;
        int whole = int(pounds);
        int ounces = int(std::lround((pounds - whole) * 16));
        if (ounces == 16) {
            ++whole;
            ounces = 0;
        }
        const QString stored = QString::number(std::round((whole + ounces / 16.0) * 100) / 100, 'f', 2);
        QString shown;
        if (whole != 0)
            shown = QString::number(whole) + QStringLiteral(" lb ");
        if (ounces != 0)
            shown += QString::number(ounces) + QStringLiteral(" oz");
        return {stored, shown.trimmed()};
    }
    case WeightUnit::Grams: {
        const QString stored = QString::number(std::lround(kilograms * 1000));
        return {stored, stored + QLatin1Char(' ') + measure};
    }
    case WeightUnit::Kilograms: break;
    }
    const QString stored = QString::number(kilograms, 'f', 2);
    return {stored, stored + QLatin1Char(' ') + measure};
}

class StudBuilder {
public:
    StudBuilder(const GenerateOptions& o) : opt(o), rng(o.seed)
    {
        today = o.today.isValid() ? o.today : Today();
        const QString measure = o.weightMeasure.toLower();
        unit = measure.contains(QLatin1String("pounds")) ? WeightUnit::Pounds
               : measure.contains(QLatin1String("gram")) ? WeightUnit::Grams
                                                         : WeightUnit::Kilograms;
    }

    void build()
    {
        const int n = std::max(1, opt.animals);
        const int generations = std::clamp(opt.generations, 1, n);
        QVector<int> sizes(generations, n / generations);
        for (int g = generations - (n % generations); g < generations; ++g)
            ++sizes[g];
        span = 365;
        firstDay = today.addDays(-qint64(generations) * span);
        makeContacts(std::max(4, n / 400));
        for (int g = 0; g < generations; ++g) {
            if (g == 0)
                makeFounders(sizes[0]);
            else
                makeGeneration(g, sizes[g]);
        }
        makeExtraMatings(n);
        settleFates();
        if (opt.showcaseFirst)
            showcaseFirst();
        makeSales();
        makeWeights();
        makeTreatments(n / 3);
        makeShows(opt.shows >= 0 ? opt.shows : n / 40);
        makeJournal(opt.journalNotes >= 0 ? opt.journalNotes : n / 100);
        makeFinance(n / 20);
    }

    const GenerateOptions& opt;
    Random rng;
    QDate today, firstDay;
    int span = 365;
    WeightUnit unit = WeightUnit::Kilograms;
    QVector<Beast> beasts;
    QVector<int> generationStart;
    QVector<Mating> matings;
    QVector<Weighing> weighings;
    QStringList treatmentRows, showRows, saleRows, financeRows, contactRows, reminderRows;
    struct Contact {
        QString name, address;
    };
    QVector<Contact> contacts;
    QHash<QString, int> nameUses; // by lower-case name, since names compare case-blind
    int tagCounter = 0;

    int breedCount() const
    {
        return opt.breeds > 0 ? std::min(opt.breeds, int(kBreeds.size())) : int(kBreeds.size());
    }
    int studCount() const
    {
        return opt.outsideStuds > 0 ? std::min(opt.outsideStuds, int(kOtherStuds.size())) : int(kOtherStuds.size());
    }

    // The kinship of two animals: the coefficient of inbreeding their young would have. Parents are
    // always older, so they stand earlier in the list.
    QHash<quint64, double> kinships;
    double kinship(int a, int b)
    {
        if (a < 0 || b < 0)
            return 0;
        if (a == b)
            return 0.5 * (1 + kinship(beasts[a].sire, beasts[a].dam));
        if (a < b)
            std::swap(a, b);
        const quint64 key = (quint64(a) << 32) | quint32(b);
        if (const auto it = kinships.constFind(key); it != kinships.constEnd())
            return it.value();
        const double k = 0.5 * (kinship(beasts[a].sire, b) + kinship(beasts[a].dam, b));
        kinships.insert(key, k);
        return k;
    }

    QString uniqueName(const QString& base)
    {
        int& uses = nameUses[base.toLower()];
        ++uses;
        if (uses == 1)
            return base;
        // A base that already carries a number might meet a numbered name; go on until it is free.
        for (;;) {
            const QString candidate = base + QLatin1Char(' ') + QString::number(uses);
            if (!nameUses.contains(candidate.toLower())) {
                nameUses.insert(candidate.toLower(), 1);
                return candidate;
            }
            ++uses;
        }
    }

    Beast newBeast(int generation, bool male, int breedIndex, const QDate& dob, bool bredHere)
    {
        Beast b;
        b.generation = generation;
        b.male = male;
        b.breedIndex = breedIndex;
        b.breed = kBreeds.at(breedIndex).name;
        b.dob = dob;
        b.breeder = bredHere;
        b.callName = rng.pick(kGivenNames);
        const QString stud = bredHere && rng.chance(0.85) ? opt.ownStud : kOtherStuds.at(rng.below(studCount()));
        b.name = uniqueName(stud + QLatin1Char(' ') + b.callName);
        if (rng.chance(0.06))
            b.notes = rng.pick(kNotes);
        return b;
    }

    // Tags are given in order of birth, as a breeder tags the young.
    void appendGeneration(QVector<Beast>& generation)
    {
        std::stable_sort(generation.begin(), generation.end(),
                         [](const Beast& a, const Beast& b) { return a.dob < b.dob; });
        for (Beast& b : generation)
            b.tag = opt.tagPrefix + QStringLiteral("%1").arg(++tagCounter, 5, 10, QLatin1Char('0'));
        beasts += generation;
    }

    void makeFounders(int count)
    {
        generationStart.append(int(beasts.size()));
        QVector<Beast> founders;
        for (int i = 0; i < count; ++i) {
            const int breed = i % breedCount();
            // Each breed gets a male and a female first, so that every line can be bred on.
            const bool male = (i / breedCount()) < 2 ? (i / breedCount()) == 0 : rng.chance(0.4);
            Beast b = newBeast(0, male, breed, firstDay.addDays(rng.below(span)), false);
            b.colour = rng.pick(kBreeds.at(breed).colours);
            b.ps = rng.chance(0.5) ? QString() : QStringLiteral("Unknown");
            b.pd = rng.chance(0.5) ? QString() : QStringLiteral("Unknown");
            b.owner = rng.chance(0.4);
            founders.append(b);
        }
        appendGeneration(founders);
    }

    // The animals of a finished generation, by sex and breed (-1 for any); kept, as litters ask often.
    QHash<qint64, QVector<int>> memberLists;
    const QVector<int>& members(int generation, bool male, int breed)
    {
        static const QVector<int> none;
        if (generation < 0 || generation >= generationStart.size())
            return none;
        const qint64 key = (qint64(generation) * 1000 + (breed + 1)) * 2 + (male ? 1 : 0);
        auto it = memberLists.find(key);
        if (it != memberLists.end())
            return it.value();
        QVector<int> out;
        const int end = generation + 1 < generationStart.size() ? generationStart[generation + 1] : int(beasts.size());
        for (int i = generationStart[generation]; i < end; ++i) {
            if (beasts[i].male == male && (breed < 0 || beasts[i].breedIndex == breed))
                out.append(i);
        }
        return memberLists.insert(key, out).value();
    }

    // A stud uses few sires: the pool of a generation and breed is a small part of its males.
    QHash<qint64, QVector<int>> sirePools;
    const QVector<int>& sirePool(int generation, int breed)
    {
        const qint64 key = qint64(generation) * 100 + breed;
        auto it = sirePools.find(key);
        if (it != sirePools.end())
            return it.value();
        QVector<int> males = members(generation, true, breed);
        const int keep = std::max(2, int(males.size()) / std::max(1, opt.sireShare));
        QVector<int> pool;
        while (!males.isEmpty() && pool.size() < keep)
            pool.append(males.takeAt(rng.below(int(males.size()))));
        return sirePools.insert(key, pool).value();
    }

    int chooseSire(int generation, int breed)
    {
        const int from = generation >= 2 && rng.chance(0.2) ? generation - 2 : generation - 1;
        for (int g : {from, generation - 1, generation - 2}) {
            if (g < 0)
                continue;
            const QVector<int>& pool = sirePool(g, breed);
            if (!pool.isEmpty())
                return pool.at(rng.below(int(pool.size())));
        }
        for (int g = generation - 1; g >= 0; --g) {
            const QVector<int>& any = members(g, true, -1);
            if (!any.isEmpty())
                return any.at(rng.below(int(any.size())));
        }
        return -1;
    }

    int chooseDam(int generation)
    {
        const int from = generation >= 2 && rng.chance(0.25) ? generation - 2 : generation - 1;
        for (int g : {from, generation - 1}) {
            const QVector<int>& females = members(g, false, -1);
            if (!females.isEmpty())
                return females.at(rng.below(int(females.size())));
        }
        return -1;
    }

    void makeGeneration(int generation, int count)
    {
        const QDate windowStart = firstDay.addDays(qint64(generation) * span);
        generationStart.append(int(beasts.size()));
        QVector<Beast> litters;
        while (litters.size() < count) {
            const int dam = chooseDam(generation);
            const int breed = dam >= 0 ? beasts[dam].breedIndex : rng.below(breedCount());
            int sire = chooseSire(generation, breed);
            // A breeder avoids close matings, and makes a few on purpose to fix a line.
            for (int tries = 0; opt.maxCoefficient < 1.0 && sire >= 0 && dam >= 0 && tries < 30; ++tries) {
                const double f = kinship(sire, dam);
                if (f <= opt.maxCoefficient && (f <= 0.10 || rng.chance(opt.lineBreeding)))
                    break;
                sire = chooseSire(generation, breed);
            }
            QDate born = windowStart.addDays(rng.below(span));
            const bool toWean = opt.weanLitterDaysAgo > 0 && generation == opt.generations - 1 && litters.isEmpty();
            if (toWean)
                born = today.addDays(-opt.weanLitterDaysAgo);
            for (int parent : {sire, dam}) {
                if (parent >= 0 && born < beasts[parent].dob.addDays(120))
                    born = beasts[parent].dob.addDays(120 + rng.below(30));
            }
            if (born >= today)
                born = today.addDays(-1);
            const int size = std::min(rng.between(1, 8), int(count - litters.size()));
            QString ps = sire >= 0 ? beasts[sire].name : QStringLiteral("Unknown");
            QString pd = dam >= 0 ? beasts[dam].name : QString();
            if (rng.chance(0.015))
                ps = QString();
            else if (rng.chance(0.015))
                ps = QStringLiteral("Unknown");
            if (rng.chance(0.01))
                pd = QString();
            int boys = 0, girls = 0;
            QStringList colours;
            for (int k = 0; k < size; ++k) {
                const bool male = rng.chance(0.5);
                Beast b = newBeast(generation, male, breed, born, rng.chance(0.93));
                const double r = rng.unit();
                b.colour = r < 0.6 && dam >= 0    ? beasts[dam].colour
                           : r < 0.85 && sire >= 0 ? beasts[sire].colour
                                                  : rng.pick(kBreeds.at(breed).colours);
                b.ps = ps;
                b.pd = pd;
                b.sire = ps == (sire >= 0 ? beasts[sire].name : QString()) && sire >= 0 ? sire : -1;
                b.dam = pd == (dam >= 0 ? beasts[dam].name : QString()) && dam >= 0 ? dam : -1;
                if (toWean)
                    b.owner = true;
                b.owner = rng.chance(0.96);
                (male ? boys : girls)++;
                if (!colours.contains(b.colour))
                    colours.append(b.colour);
                litters.append(b);
            }
            for (int parent : {sire, dam}) {
                if (parent >= 0 && (!beasts[parent].lastUse.isValid() || beasts[parent].lastUse < born))
                    beasts[parent].lastUse = born;
            }
            if (sire >= 0 && dam >= 0 && !ps.isEmpty() && ps != QLatin1String("Unknown") && !pd.isEmpty()) {
                Mating m;
                m.breed = kBreeds.at(breed).name;
                m.boar = ps;
                m.sow = pd;
                m.born = born;
                m.mated = born.addDays(-opt.gestation - rng.between(-1, 1));
                m.due = m.mated.addDays(opt.gestation);
                m.numBoars = QString::number(boys);
                m.numSows = QString::number(girls);
                m.colour = colours.join(QStringLiteral(", "));
                m.stillborn = rng.chance(0.1) ? QStringLiteral("1") : QStringLiteral("0");
                matings.append(m);
            }
        }
        appendGeneration(litters);
    }

    // Matings that gave no litter: failed ones in the past and some still due, which the calendar shows.
    void makeExtraMatings(int n)
    {
        if (beasts.size() < 2)
            return;
        const int target = n / 5;
        const int extra = std::max(int(target - matings.size()), std::min(3, n / 20));
        const int pending = std::max(extra / 3, std::min(extra, 2));
        const int last = int(generationStart.size()) - 1;
        for (int i = 0; i < extra; ++i) {
            const bool isPending = i < pending;
            const int generation = isPending ? std::max(0, last - rng.below(2)) : rng.below(last + 1);
            const QVector<int>& does = members(generation, false, -1);
            const QVector<int>& bucks = members(generation, true, -1);
            if (does.isEmpty() || bucks.isEmpty())
                continue;
            const int sow = does.at(rng.below(int(does.size())));
            const int boar = bucks.at(rng.below(int(bucks.size())));
            // Both must be old enough to breed before the mating, and a past mating must be due by now.
            const QDate adult = std::max(beasts[sow].dob, beasts[boar].dob).addDays(150);
            if (adult.addDays(isPending ? 0 : opt.gestation + 1) > today)
                continue;
            Mating m;
            m.breed = beasts[sow].breed;
            m.boar = beasts[boar].name;
            m.sow = beasts[sow].name;
            if (isPending) {
                m.mated = today.addDays(-rng.below(std::max(1, opt.gestation - 1)));
                beasts[sow].lastUse = today;
                beasts[boar].lastUse = today;
            } else {
                const qint64 room = std::max<qint64>(1, adult.daysTo(today) - opt.gestation - 1);
                m.mated = adult.addDays(rng.below(int(std::min<qint64>(room, 2000))));
                m.unsuccessful = true;
                if (!beasts[sow].lastUse.isValid() || beasts[sow].lastUse < m.mated)
                    beasts[sow].lastUse = m.mated;
                if (!beasts[boar].lastUse.isValid() || beasts[boar].lastUse < m.mated)
                    beasts[boar].lastUse = m.mated;
            }
            m.due = m.mated.addDays(opt.gestation);
            matings.append(m);
        }
    }

    QSet<QString> contactNames;
    QString uniqueContactName(const QString& base)
    {
        QString name = base;
        for (int n = 2; contactNames.contains(name); ++n)
            name = base + QStringLiteral(" (") + QString::number(n) + QLatin1Char(')');
        contactNames.insert(name);
        return name;
    }

    QString personName()
    {
        const QString first = rng.pick(kFirstNames);
        return first + QLatin1Char(' ') + rng.pick(kLastNames);
    }

    void makeContacts(int count)
    {
        for (int i = 0; i < count; ++i) {
            // Contacts are told apart by name in the lists, so no two share one.
            QString name;
            for (int tries = 0; tries < 10 && (name.isEmpty() || contactNames.contains(name)); ++tries)
                name = personName();
            Contact c;
            c.name = uniqueContactName(name);
            const QString town = rng.pick(kTowns);
            const int number = rng.between(1, 250);
            c.address = QString::number(number) + QLatin1Char(' ') + rng.pick(kStreets) + QStringLiteral(", ") + town;
            contacts.append(c);
            QString mail = c.name.toLower().remove(QLatin1Char('\'')).remove(QLatin1Char('(')).remove(QLatin1Char(')'));
            mail.replace(QLatin1Char(' '), QLatin1Char('.'));
            contactRows << insert("contacts (name, address, city, state, country, postcode, phone, email, category, "
                                  "notes)",
                                  {text(c.name), text(c.address), text(town), text(QStringLiteral("OH")),
                                   text(QStringLiteral("United States")),
                                   text(QString::number(rng.between(43001, 45999))),
                                   text(QStringLiteral("555-%1").arg(rng.between(1000, 9999))),
                                   text(mail + QStringLiteral("@example.org")), text(rng.pick(kCategories)),
                                   rng.chance(0.3) ? text(QStringLiteral("Prefers pick-up on Saturdays."))
                                                   : QStringLiteral("Null")});
        }
    }

    // Deaths come after an animal's last mating, sales only to animals never bred from.
    void settleFates()
    {
        for (Beast& b : beasts) {
            QDate death = b.dob.addDays(rng.between(700, 2900));
            if (b.lastUse.isValid() && death < b.lastUse.addDays(20))
                death = b.lastUse.addDays(rng.between(20, 200));
            if (death < today) {
                b.deceased = true;
                b.died = death;
            }
            if (b.generation > 0 && !b.lastUse.isValid() && b.owner && rng.chance(0.2)) {
                const QDate sale = b.dob.addDays(rng.between(70, 200));
                if (sale < today && (!b.deceased || sale < b.died)) {
                    b.sold = true;
                    b.soldOn = sale;
                    b.deceased = false; // what became of it after the sale is not known here
                    b.died = QDate();
                }
            }
            if (b.owner && !b.deceased && !b.sold) {
                b.cage = QStringLiteral("Hutch %1%2").arg(QChar(u'A' + rng.below(8))).arg(rng.between(1, 40));
                b.leased = rng.chance(0.015);
            }
        }
    }

    void ancestors(int i, int depth, QSet<int>& found) const
    {
        for (int parent : {beasts[i].sire, beasts[i].dam}) {
            if (parent >= 0 && depth > 0) {
                found.insert(parent);
                ancestors(parent, depth - 1, found);
            }
        }
    }

    // The window opens on the first of the current stock by name: it gets the name of the grown animal
    // whose three generations are fullest and most varied, and that one takes its name.
    void showcaseFirst()
    {
        int first = -1, best = -1, bestCount = -1;
        for (int i = 0; i < beasts.size(); ++i) {
            const Beast& b = beasts[i];
            if (!b.owner || b.deceased || b.sold || !b.breeder)
                continue;
            if (first < 0 || b.name.compare(beasts[first].name, Qt::CaseInsensitive) < 0)
                first = i;
            if (b.dob.daysTo(today) < 240)
                continue;
            QSet<int> found;
            ancestors(i, 3, found);
            if (int(found.size()) >= bestCount) {
                best = i;
                bestCount = int(found.size());
            }
        }
        if (first < 0 || best == first)
            return;
        const QString a = beasts[first].name, b = beasts[best].name;
        const auto swapName = [&](QString& n) { n = n == a ? b : n == b ? a : n; };
        for (Beast& x : beasts) {
            swapName(x.ps);
            swapName(x.pd);
        }
        for (Mating& m : matings) {
            swapName(m.boar);
            swapName(m.sow);
        }
        std::swap(beasts[first].name, beasts[best].name);
        std::swap(beasts[first].callName, beasts[best].callName);
    }

    void makeWeights()
    {
        for (int i = 0; i < beasts.size(); ++i) {
            const Beast& b = beasts[i];
            const double adult = kBreeds.at(b.breedIndex).adultKilograms * (b.male ? 0.95 : 1.05);
            const int ages[2] = {rng.between(52, 60), rng.between(110, 130)};
            const double shares[2] = {0.45, 0.8};
            for (int k = 0; k < 2; ++k) {
                const QDate when = b.dob.addDays(ages[k]);
                if (when > today || (b.deceased && when > b.died) || (b.sold && when > b.soldOn))
                    continue;
                const double kilograms = adult * shares[k] * (0.9 + 0.2 * rng.unit());
                const auto [stored, shown] = weightTexts(kilograms, unit, opt.weightMeasure);
                const int hour = rng.between(7, 18);
                const QString time = QStringLiteral("%1:%2")
                                         .arg(hour, 2, 10, QLatin1Char('0'))
                                         .arg(rng.below(4) * 15, 2, 10, QLatin1Char('0'));
                weighings.append({i, when, time, stored});
                beasts[i].latestWeight = shown;
            }
        }
    }

    void makeTreatments(int count)
    {
        for (int i = 0; i < count && !beasts.isEmpty(); ++i) {
            const Beast& b = beasts[rng.below(int(beasts.size()))];
            QDate due = b.dob.addDays(rng.between(42, 700));
            if (due > today.addDays(90))
                due = std::max(b.dob.addDays(1), today.addDays(rng.between(-60, 90)));
            const bool done = due <= today && rng.chance(0.95);
            treatmentRows << insert("vaccinations (duedate, name, vaccination, done)",
                                    {date(due), text(b.name), text(rng.pick(kTreatments)),
                                     text(done ? QStringLiteral("y") : QStringLiteral("n"))});
        }
    }

    void makeShows(int count)
    {
        static const QStringList places = {QStringLiteral("1st"), QStringLiteral("2nd"), QStringLiteral("3rd"),
                                           QStringLiteral("4th"), QStringLiteral("5th")};
        for (int i = 0; i < count && !beasts.isEmpty(); ++i) {
            const Beast& b = beasts[rng.below(int(beasts.size()))];
            const QDate when = b.dob.addDays(rng.between(150, 700));
            if (when >= today || (b.deceased && when > b.died) || (b.sold && when > b.soldOn))
                continue;
            const QString cls = (b.dob.daysTo(when) > 180 ? QStringLiteral("Senior ") : QStringLiteral("Junior ")) +
                                (b.male ? QStringLiteral("Buck") : QStringLiteral("Doe"));
            const int place = rng.below(5);
            showRows << insert("shows (name, show, showDate, class, competitorNum, place, awards, judge, Points)",
                               {text(b.name), text(rng.pick(kShows)), date(when), text(cls),
                                text(QString::number(rng.between(1, 400))), text(places.at(place)),
                                text(place == 0 && rng.chance(0.3) ? QStringLiteral("Best of Breed") : QString()),
                                text(personName()), text(QString::number(5 - place))});
        }
    }

    // Journal rows refer to the animal by its tree id, known only once the animals are written.
    struct JournalEntry {
        int animal;
        QDate date;
        QString note;
    };
    QVector<JournalEntry> journalEntries;
    void makeJournal(int count)
    {
        static const QStringList notes = {QStringLiteral("Moved to a larger hutch."),
                                          QStringLiteral("Off her feed for a day; fine now."),
                                          QStringLiteral("Coat blowing, groomed."),
                                          QStringLiteral("Judge's comment: \"good depth of body\".")};
        for (int i = 0; i < count && !beasts.isEmpty(); ++i) {
            const int a = rng.below(int(beasts.size()));
            const QDate when = std::min(today, beasts[a].dob.addDays(rng.between(10, 400)));
            journalEntries.append({a, when, rng.pick(notes)});
        }
    }

    void makeFinance(int count)
    {
        for (int i = 0; i < count; ++i) {
            const QDate when = today.addDays(-rng.below(span * 2));
            financeRows << insert("expenditure (name, expense_date, details, amount, income, category)",
                                  {text(QStringLiteral("General")), date(when), text(rng.pick(kExpenses)),
                                   QString::number(rng.between(500, 12000) / 100.0, 'f', 2), QStringLiteral("0"),
                                   text(QStringLiteral("Running costs"))});
        }
        static const QStringList chores = {
            QStringLiteral("Order hay"),           QStringLiteral("Renew club membership"),
            QStringLiteral("Book vet for RHD2 boosters"), QStringLiteral("Clean water bottles"),
            QStringLiteral("Send show entries"),   QStringLiteral("Check nest boxes")};
        for (const QString& chore : chores) {
            const QDate when = today.addDays(rng.between(-20, 40));
            const QString done = when < today ? QStringLiteral("y") : QStringLiteral("n");
            reminderRows << insert("reminders (duedate, reminder, done)", {date(when), text(chore), text(done)});
        }
    }

    QString treeInsert(const Beast& b) const
    {
        QString columns = QStringLiteral("tree (name, colour, breed, sex, dob, ps, pd, cage, tag, deceased, "
                                         "dateDeceased, callname, sold, datesold, breeder, owner, leased, notes, "
                                         "prefix, suffix");
        QStringList values = {text(b.name),     text(b.colour),        text(b.breed),
                              text(b.male ? QStringLiteral("male") : QStringLiteral("female")),
                              date(b.dob),      text(b.ps),            text(b.pd),
                              text(b.cage),     text(b.tag),           flag(b.deceased),
                              text(shortDate(b.died)), text(b.callName), flag(b.sold),
                              date(b.soldOn),   flag(b.breeder),       flag(b.owner),
                              flag(b.leased),   text(b.notes),         QStringLiteral("''"),
                              QStringLiteral("''")};
        if (opt.weightCustomField > 0 && !b.latestWeight.isEmpty()) {
            columns += QStringLiteral(", customField") + QString::number(opt.weightCustomField);
            values << text(b.latestWeight);
        }
        return insert(columns + QLatin1Char(')'), values);
    }

    static QString matingInsert(const Mating& m)
    {
        return insert("breeding (Breed, Boar, Sow, Due, Mated, Born, numBoars, NumSows, Colour, Unsuccessful, "
                      "Stillborn, numUndefined)",
                      {text(m.breed), text(m.boar), text(m.sow), date(m.due), date(m.mated), date(m.born),
                       text(m.numBoars), text(m.numSows), text(m.colour),
                       // the mating form stores its check box: 1, not -1
                       m.unsuccessful ? QStringLiteral("1") : QStringLiteral("0"), text(m.stillborn),
                       QStringLiteral("0")});
    }

    // A sale is a row of soldstock, and half the time the money is booked too.
    void makeSales()
    {
        for (const Beast& b : std::as_const(beasts)) {
            if (!b.sold)
                continue;
            const Contact& buyer = contacts.at(rng.below(int(contacts.size())));
            saleRows << insert("soldstock (Dam, Offspring, DOB, Breed, Colour, DateSold, SoldTo, Sire, Address)",
                               {text(b.pd), text(b.name), text(shortDate(b.dob)), text(b.breed), text(b.colour),
                                text(shortDate(b.soldOn)), text(buyer.name), text(b.ps), text(buyer.address)});
            if (rng.chance(0.5)) {
                financeRows << insert("expenditure (name, expense_date, details, amount, income, category)",
                                      {text(b.name), date(b.soldOn), text(QStringLiteral("Sale of ") + b.name),
                                       QStringLiteral("0"), QString::number(rng.between(25, 120)),
                                       text(QStringLiteral("Sales"))});
            }
        }
    }
};

int countRows(Database& database, const QString& table)
{
    Recordset rs = database.OpenRecordset(QStringLiteral("SELECT Count(*) AS n FROM ") + table);
    return rs.Eof() ? 0 : rs.Fields(0).toInt();
}

} // namespace

GenerateCounts GenerateStud(Database& database, const GenerateOptions& options)
{
    if (options.animals < 1)
        throw std::invalid_argument("the number of animals must be at least 1");
    if (options.generations < 1)
        throw std::invalid_argument("the number of generations must be at least 1");
    if (countRows(database, QStringLiteral("tree")) != 0)
        throw std::invalid_argument("the data file already holds animals; a stud is generated into an empty one");

    StudBuilder s(options);
    s.build();

    GenerateCounts counts;
    Transaction transaction(database);
    for (const QString& row : std::as_const(s.contactRows))
        database.Execute(row);
    counts.contacts = int(s.contactRows.size());
    for (const Beast& b : std::as_const(s.beasts))
        database.Execute(s.treeInsert(b));
    counts.animals = int(s.beasts.size());

    Recordset first = database.OpenRecordset(QStringLiteral("SELECT id FROM tree WHERE name = ") +
                                             text(s.beasts.first().name));
    const int firstId = first.Fields(0).toInt();
    first.Close();

    for (const Mating& m : std::as_const(s.matings))
        database.Execute(s.matingInsert(m));
    counts.matings = int(s.matings.size());
    for (const QString& row : std::as_const(s.treatmentRows))
        database.Execute(row);
    counts.treatments = int(s.treatmentRows.size());
    for (const Weighing& w : std::as_const(s.weighings)) {
        database.Execute(insert("weights (weightDate, weightTime, name, weight)",
                                {date(w.date), text(w.time), text(s.beasts[w.animal].name), text(w.weight)}));
    }
    counts.weights = int(s.weighings.size());
    for (const QString& row : std::as_const(s.saleRows))
        database.Execute(row);
    counts.sales = int(s.saleRows.size());
    for (const QString& row : std::as_const(s.showRows))
        database.Execute(row);
    counts.shows = int(s.showRows.size());
    for (const auto& [animal, when, note] : std::as_const(s.journalEntries)) {
        database.Execute(insert("journal (nameId, journalDate, journalNote)",
                                {text(QString::number(firstId + animal)), date(when), text(note)}));
    }
    counts.journal = int(s.journalEntries.size());
    for (const QString& row : std::as_const(s.financeRows))
        database.Execute(row);
    counts.finance = int(s.financeRows.size());
    for (const QString& row : std::as_const(s.reminderRows))
        database.Execute(row);
    counts.reminders = int(s.reminderRows.size());
    transaction.commit();
    return counts;
}

void ApplyDemoSettings(User& user, const SpeciesPreset& preset)
{
    user.BreederName = QStringLiteral("Sam Fletcher");
    user.Stud = QStringLiteral("Ashgrove Rabbitry");
    user.StudNum = QStringLiteral("AG-1042");
    user.PhoneNum = QStringLiteral("555-0142");
    user.Email = QStringLiteral("sam@ashgrove.example");
    user.Country = QStringLiteral("United States");
    user.Organisation = QStringLiteral("Mid-Valley Rabbit Breeders Club");
    user.CustomDetail = GetPedigreeLabel(user.PhoneNum, user.StudNum, user.Email);
    user.Animal = preset.animal;
    user.Male = preset.male;
    user.Female = preset.female;
    user.Father = preset.father;
    user.Mother = preset.mother;
    user.Gestation = preset.gestation.value_or(0);
    user.NestBox = preset.nestBox.value_or(0);
    user.Rebreed = preset.rebreed.value_or(0);
    user.Wean = preset.wean.value_or(0);
    for (size_t i = 0; i < user.CustomName.size(); ++i)
        user.CustomName[i] = preset.customNames[i];
    user.WeightMeasure = QStringLiteral("pounds & ounces");
    // A demonstration file should not reach for the network on its own.
    user.AutoUpdate = 0;
}
