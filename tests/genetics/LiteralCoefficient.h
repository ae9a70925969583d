// SPDX-License-Identifier: GPL-3.0-or-later
// The coefficient as the program has always worked it out, loop for loop: two sparse tables of 3001
// rows, every sire row compared with every dam row, text marks written behind each find. Slow on
// purpose; the tests hold the fast search in Coefficient.cpp against it.
#pragma once

#include "genetics/Coefficient.h"
#include "genetics/FamilyTree.h"
#include "session/OpenDataFile.h"
#include "session/globals.h"
#include "store/DataFile.h"

#include <QCoreApplication>
#include <QVariant>
#include <array>
#include <functional>
#include <memory>

namespace literal {

using Table = std::array<std::array<QString, 2>, 3001>;

struct State {
    Table sireSide, damSide;
    qint16 pathMark = 1;
};

inline qint16 GenerationOfPosition(qint16 p)
{
    if (p < 3) return 0;
    if (p < 7) return 1;
    if (p < 15) return 2;
    if (p < 31) return 3;
    if (p < 63) return 4;
    if (p < 97) return 5;
    if (p < 225) return 6;
    if (p < 481) return 7;
    if (p < 993) return 8;
    if (p < 2017) return 9;
    return 11;
}

inline qint16 SearchSize(int g)
{
    if (g < 5) return 32;
    if (g == 5) return 64;
    if (g == 6) return 128;
    if (g == 7) return 256;
    if (g == 8) return 512;
    if (g == 9) return 1024;
    return 2048;
}

inline bool between(int p, int a, int b) { return p >= a && p <= b; }

inline bool onSireSide(int p)
{
    return p == 1 || between(p, 3, 4) || between(p, 7, 10) || between(p, 15, 22) || between(p, 31, 46) ||
           between(p, 63, 94) || between(p, 127, 190) || between(p, 255, 383) || between(p, 511, 767) ||
           between(p, 1023, 1535);
}

inline bool onDamSide(int p)
{
    return p == 2 || between(p, 5, 6) || between(p, 11, 14) || between(p, 23, 30) || between(p, 47, 62) ||
           between(p, 95, 126) || between(p, 191, 254) || between(p, 384, 510) || between(p, 768, 1022) ||
           between(p, 1536, 2046);
}

// A store past row 3000 fails, which ends the procedure.
inline void MarkAncestorPositions(State& st, Table& table, qint16 position)
{
    std::array<qint32, 2047> entries{};
    int k = 1;
    for (int level = 1; level <= 10; ++level) {
        const qint32 first = (qint32(1) << level) * position + (qint32(1) << level) - 1;
        for (qint32 i = 0; i < (qint32(1) << level); ++i)
            entries[size_t(k++)] = first + i;
    }
    for (int e = 1; e <= 2045; ++e) {
        if (entries[size_t(e)] >= position) {
            if (entries[size_t(e)] > 3000)
                return;
            table[size_t(entries[size_t(e)])][1] = QString::number(st.pathMark);
        }
    }
}

// The comparison of steps 4 to 6; the list comes back without its blank last record. Throws
// CoefficientOverflow where the 16-bit path mark would pass 32767.
inline QVector<CommonAncestor> Compare(const QStringList& tree, qint16 searchSize)
{
    auto st = std::make_unique<State>();
    for (int p = 1; p <= searchSize; ++p) {
        if (onSireSide(p))
            st->sireSide[size_t(p)][0] = tree.at(p);
        else if (onDamSide(p))
            st->damSide[size_t(p)][0] = tree.at(p);
    }
    st->pathMark = 1;
    QVector<CommonAncestor> list(1);
    for (int s = 0; s <= 3000; ++s) {
        auto& sire = st->sireSide[size_t(s)];
        if (!(sire[0].length() >= 1 && sire[0].toLower() != QLatin1String("unknown")))
            continue;
        for (int d = 0; d <= 3000; ++d) {
            auto& dam = st->damSide[size_t(d)];
            if (!(dam[0].length() >= 1 && dam[0].toLower() != QLatin1String("unknown")))
                continue;
            if (sire[0] != dam[0])
                continue;
            if (sire[1] == dam[1] && (!sire[1].isEmpty() || !dam[1].isEmpty()))
                continue;
            list.append(CommonAncestor());
            CommonAncestor& a = list[list.size() - 2];
            a.name = sire[0];
            a.damGeneration = GenerationOfPosition(qint16(d));
            a.sireGeneration = GenerationOfPosition(qint16(s));
            MarkAncestorPositions(*st, st->sireSide, qint16(s));
            MarkAncestorPositions(*st, st->damSide, qint16(d));
            if (st->pathMark == 32767)
                throw CoefficientOverflow{};
            ++st->pathMark;
        }
    }
    list.removeLast();
    return list;
}

// Steps 1 to 3 with one query per look-up, as GetFather and GetMother make them.
inline QStringList Tree(const QString& name, QString sire, QString dam, qint16 generations, qint16* searchSize)
{
    *searchSize = SearchSize(generations);
    if (sire.isEmpty())
        sire = GetFather(name);
    if (dam.isEmpty())
        dam = GetMother(name);
    QStringList tree;
    for (int i = 0; i <= *searchSize; ++i)
        tree.append(QString());
    if (!name.isEmpty())
        FillFamilyTree(name, tree, *searchSize, QString(), QString());
    else
        FillFamilyTree(QString(), tree, *searchSize, sire, dam);
    return tree;
}

inline double Calculate(const QString& name, const QString& sire, const QString& dam, qint16 generations,
                        QVector<AncestorRow>* rows = nullptr)
{
    double total = 0;
    QVector<CommonAncestor> ancestors;
    try {
        qint16 size = 0;
        const QStringList tree = Tree(name, sire, dam, generations, &size);
        ancestors = Compare(tree, size);
    } catch (const CoefficientOverflow&) {
        return total;
    }
    for (int i = 0; i < ancestors.size() && !ancestors.at(i).name.isEmpty(); ++i) {
        const CommonAncestor& r = ancestors.at(i);
        const int n = r.sireGeneration + r.damGeneration + 1;
        const double own = ReadStoredCoefficient(r.name);
        const double c = RoundEven((1 / std::pow(2.0, n)) * (own / 100 + 1), 10);
        SaveCoefficient(r.name, c);
        total += c;
        if (rows) {
            QString text = NumberText(RoundEven(c * 100, 2)) + QLatin1Char('%');
            if (text == QLatin1String("0%"))
                text = QStringLiteral("0.009% or less");
            rows->append(AncestorRow{DecodeText(r.name), QString::number(r.sireGeneration + 1),
                                     QString::number(r.damGeneration + 1), text});
        }
    }
    if (!name.isEmpty())
        SaveCoefficient(EncodeText(name), total);
    return total;
}

// The bulk run, statement by statement, without a transaction; the rows as "name|breed|sex|text".
// afterRecord runs after each record's calculation, where the program yields.
inline bool Update(const QString& sql, qint16 generations, QStringList* rows,
                   const std::function<void(int)>& afterRecord = {})
{
    try {
        ClearCoefficients();
        Recordset rs = gDatabase.OpenRecordset(sql);
        if (rs.Eof())
            return false;
        rs.MoveLast();
        const int count = rs.RecordCount();
        if (count > 32767)
            return false;
        rs.MoveFirst();
        for (; !rs.Eof(); rs.MoveNext()) {
            const QVariant name = rs.Fields(QStringLiteral("name"));
            if (name.isNull())
                return false;
            QString row = DecodeText(name.toString()) + QLatin1Char('|') + rs.Fields(QStringLiteral("Breed")).toString() +
                          QLatin1Char('|') + SexWordOrUndefined(rs.Fields(QStringLiteral("Sex")).toString()) +
                          QLatin1Char('|');
            const QVariant ps = rs.Fields(QStringLiteral("PS"));
            const QVariant pd = rs.Fields(QStringLiteral("PD"));
            if (ps.isNull() || pd.isNull()) {
                rows->append(row);
                return false;
            }
            const double f = Calculate(name.toString(), ps.toString(), pd.toString(), generations);
            rows->append(row + BulkCoefficientText(f));
            if (afterRecord)
                afterRecord(int(rows->size()));
        }
        return true;
    } catch (const JetError&) {
        return false;
    }
}

} // namespace literal
