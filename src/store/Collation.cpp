// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/Collation.h"

#include <QChar>
#include <QString>
#include <QVarLengthArray>
#include <sqlite3.h>

namespace jet {

namespace {

using Folded = QVarLengthArray<char32_t, 64>;

// The base letter of a code point whose canonical decomposition starts with one ("é" -> "e").
char32_t baseOf(char32_t c)
{
    for (int guard = 0; guard < 4; ++guard) {
        if (QChar::decompositionTag(c) != QChar::Canonical)
            return c;
        const QString d = QChar::decomposition(c);
        if (d.isEmpty())
            return c;
        c = d.at(0).isHighSurrogate() && d.size() > 1 ? QChar::surrogateToUcs4(d.at(0), d.at(1)) : d.at(0).unicode();
    }
    return c;
}

bool isMark(char32_t c)
{
    const QChar::Category cat = QChar::category(c);
    return cat == QChar::Mark_NonSpacing || cat == QChar::Mark_SpacingCombining || cat == QChar::Mark_Enclosing;
}

// The folded text and the same without accents.
void fold(QStringView s, Folded& folded, Folded& bare)
{
    for (qsizetype i = 0; i < s.size(); ++i) {
        char32_t c = s[i].unicode();
        if (s[i].isHighSurrogate() && i + 1 < s.size() && s[i + 1].isLowSurrogate()) {
            c = QChar::surrogateToUcs4(s[i], s[i + 1]);
            ++i;
        }
        const char32_t f = QChar::toCaseFolded(c);
        folded.append(f);
        if (c < 0x80) {
            bare.append(f);
            continue;
        }
        if (isMark(f))
            continue;
        // Decomposition may give an upper-case base ("Å" folds to "å" first, so it does not), fold again.
        bare.append(QChar::toCaseFolded(baseOf(f)));
    }
}

int compareArrays(const Folded& a, const Folded& b)
{
    const qsizetype n = std::min(a.size(), b.size());
    for (qsizetype i = 0; i < n; ++i)
        if (a[i] != b[i])
            return a[i] < b[i] ? -1 : 1;
    return a.size() == b.size() ? 0 : (a.size() < b.size() ? -1 : 1);
}

inline unsigned char lowerAscii(unsigned char c) { return (c >= 'A' && c <= 'Z') ? c + 32 : c; }

int collate(void*, int aLength, const void* a, int bLength, const void* b)
{
    return compareNoCaseUtf8(static_cast<const char*>(a), aLength, static_cast<const char*>(b), bLength);
}

} // namespace

int compareNoCase(QStringView a, QStringView b)
{
    Folded fa, ba, fb, bb;
    fold(a, fa, ba);
    fold(b, fb, bb);
    if (const int c = compareArrays(ba, bb))
        return c;
    return compareArrays(fa, fb);
}

QString foldCase(QStringView text)
{
    Folded folded, bare;
    fold(text, folded, bare);
    return QString::fromUcs4(folded.constData(), folded.size());
}

int compareNoCaseUtf8(const char* a, int aLength, const char* b, int bLength)
{
    // Most names are ASCII and every index look-up on tree.name compares here: byte by byte, as
    // SQLite's NOCASE does, until a byte outside ASCII is met.
    const auto* pa = reinterpret_cast<const unsigned char*>(a);
    const auto* pb = reinterpret_cast<const unsigned char*>(b);
    const int n = std::min(aLength, bLength);
    int i = 0;
    for (; i < n; ++i) {
        if ((pa[i] | pb[i]) & 0x80)
            break;
        const unsigned char x = lowerAscii(pa[i]), y = lowerAscii(pb[i]);
        // The texts agree up to here letter for letter, so this letter decides the order whatever
        // follows.
        if (x != y)
            return x < y ? -1 : 1;
    }
    if (i == n) {
        bool rest = true;
        for (int k = n; k < aLength && rest; ++k)
            rest = !(pa[k] & 0x80);
        for (int k = n; k < bLength && rest; ++k)
            rest = !(pb[k] & 0x80);
        if (rest)
            return aLength == bLength ? 0 : (aLength < bLength ? -1 : 1);
    }
    return compareNoCase(QString::fromUtf8(a, aLength), QString::fromUtf8(b, bLength));
}

void registerCollation(sqlite3* db)
{
    sqlite3_create_collation_v2(db, "NOCASE", SQLITE_UTF8, nullptr, collate, nullptr);
}

} // namespace jet
