// SPDX-License-Identifier: GPL-3.0-or-later
// Errors of the data file engine, numbered and worded as the Jet engine words them,
// since the error log and the user's support requests quote them.
#pragma once

#include <QString>
#include <exception>
#include <string>

class JetError : public std::exception {
public:
    JetError(int number, QString description);
    int number() const { return m_number; }
    const QString& description() const { return m_description; }
    const char* what() const noexcept override { return m_what.c_str(); }

    static JetError tableExists(const QString& table);        // 3010
    static JetError fieldExists();                            // 3191
    static JetError itemNotFound();                           // 3265
    static JetError syntaxInExpression(const QString& expr);  // 3075
    static JetError syntaxInInsert();                         // 3134
    static JetError syntaxInUpdate();                         // 3144
    static JetError syntaxInCreateTable();                    // 3290
    static JetError syntaxInFrom();                           // 3131
    static JetError typeMismatch();                           // 3464
    static JetError tooFewParameters(int expected);           // 3061
    static JetError charactersAfterEnd();                     // 3142
    static JetError invalidStatement();                       // 3129
    static JetError noSuchTable(const QString& table);        // 3078
    static JetError unknownInsertField(const QString& field); // 3127
    static JetError noCurrentRecord();                        // 3021
    static JetError invalidOperation();                       // 3219
    static JetError fileNotFound(const QString& path);        // 3024
    static JetError databaseExists();                         // 3204
    static JetError unrecognizedFormat(const QString& path);  // 3343
    static JetError cannotOpen(const QString& path);          // 3051
    static JetError locked();                                 // 3218
    static JetError diskFull();                               // 3026
    static JetError objectClosed();                           // 3420
    static JetError readOnly();                               // 3027
    static JetError duplicateValues();                        // 3022
    static JetError fieldInIndex();                           // 3280
    static JetError valuesCountMismatch();                    // 3346
    static JetError syntaxInAlterTable();                     // 3293

private:
    int m_number;
    QString m_description;
    std::string m_what;
};
