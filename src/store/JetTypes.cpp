// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/JetTypes.h"

namespace jet {

QString declarationForType(int type, bool autoIncrement)
{
    if (autoIncrement)
        return QStringLiteral("INTEGER PRIMARY KEY AUTOINCREMENT");
    switch (type) {
    case dbBoolean: return QStringLiteral("BOOLEAN");
    case dbByte: return QStringLiteral("TINYINT");
    case dbInteger: return QStringLiteral("SMALLINT");
    case dbLong: return QStringLiteral("INTEGER");
    case dbCurrency: return QStringLiteral("CURRENCY");
    case dbSingle: return QStringLiteral("FLOAT");
    case dbDouble: return QStringLiteral("DOUBLE");
    case dbDate: return QStringLiteral("DATETIME");
    case dbMemo: return QStringLiteral("LONGTEXT COLLATE NOCASE");
    case dbText:
    default: return QStringLiteral("TEXT COLLATE NOCASE");
    }
}

int typeForDeclaration(const QString& declaredType)
{
    const QString d = declaredType.trimmed().toUpper();
    auto starts = [&](const char* w) { return d.startsWith(QLatin1String(w)); };
    if (d.isEmpty()) return dbText;
    if (starts("BOOLEAN") || starts("BIT") || starts("YESNO") || starts("LOGICAL")) return dbBoolean;
    if (starts("TINYINT") || starts("BYTE")) return dbByte;
    if (starts("SMALLINT") || starts("SHORT")) return dbInteger;
    if (starts("CURRENCY") || starts("MONEY")) return dbCurrency;
    if (starts("FLOAT") || starts("SINGLE")) return dbSingle;
    if (starts("DOUBLE") || starts("REAL") || starts("NUMBER") || starts("NUMERIC") || starts("DECIMAL")) return dbDouble;
    if (starts("DATETIME") || starts("DATE") || starts("TIMESTAMP") || starts("TIME")) return dbDate;
    if (starts("LONGTEXT") || starts("MEMO") || starts("CLOB")) return dbMemo;
    if (d.contains(QLatin1String("INT")) || starts("LONG") || starts("COUNTER")) return dbLong;
    return dbText;
}

} // namespace jet
