// SPDX-License-Identifier: GPL-3.0-or-later
// Field type numbers and attributes of the Jet engine, and how each is declared in SQLite
// so that the number can be read back from the declared type.
#pragma once

#include <QString>

namespace jet {

enum FieldType : int {
    dbBoolean = 1,
    dbByte = 2,
    dbInteger = 3,
    dbLong = 4,
    dbCurrency = 5,
    dbSingle = 6,
    dbDouble = 7,
    dbDate = 8,
    dbText = 10,
    dbMemo = 12,
};

enum FieldAttribute : int {
    dbFixedField = 1,
    dbVariableField = 2,
    dbAutoIncrField = 16,
};

// The SQLite column declaration for a Jet field type ("TEXT COLLATE NOCASE" for dbText).
// An auto-increment long gives "INTEGER PRIMARY KEY AUTOINCREMENT".
QString declarationForType(int type, bool autoIncrement = false);

// The Jet type number for a SQLite declared type as written by declarationForType, or as found in
// a file written by another tool (INT, VARCHAR(50), REAL ...). An empty declaration reads as text.
int typeForDeclaration(const QString& declaredType);

// True for the types whose values are text (dbText, dbMemo).
inline bool isTextType(int type) { return type == dbText || type == dbMemo; }

} // namespace jet
