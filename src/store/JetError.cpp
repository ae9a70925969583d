// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/JetError.h"

JetError::JetError(int number, QString description)
    : m_number(number), m_description(std::move(description)),
      m_what(QString(QString::number(number) + QStringLiteral(": ") + m_description).toStdString()) {}

JetError JetError::tableExists(const QString& t) { return {3010, QStringLiteral("Table '%1' already exists.").arg(t)}; }
JetError JetError::fieldExists() { return {3191, QStringLiteral("Cannot define field more than once.")}; }
JetError JetError::itemNotFound() { return {3265, QStringLiteral("Item not found in this collection.")}; }
JetError JetError::syntaxInExpression(const QString& e)
{
    return {3075, QStringLiteral("Syntax error (missing operator) in query expression '%1'.").arg(e)};
}
JetError JetError::syntaxInInsert() { return {3134, QStringLiteral("Syntax error in INSERT INTO statement.")}; }
JetError JetError::syntaxInUpdate() { return {3144, QStringLiteral("Syntax error in UPDATE statement.")}; }
JetError JetError::syntaxInCreateTable() { return {3290, QStringLiteral("Syntax error in CREATE TABLE statement.")}; }
JetError JetError::syntaxInFrom() { return {3131, QStringLiteral("Syntax error in FROM clause.")}; }
JetError JetError::typeMismatch() { return {3464, QStringLiteral("Data type mismatch in criteria expression.")}; }
JetError JetError::tooFewParameters(int n) { return {3061, QStringLiteral("Too few parameters. Expected %1.").arg(n)}; }
JetError JetError::charactersAfterEnd() { return {3142, QStringLiteral("Characters found after end of SQL statement.")}; }
JetError JetError::invalidStatement()
{
    return {3129, QStringLiteral("Invalid SQL statement; expected 'DELETE', 'INSERT', 'PROCEDURE', 'SELECT', or 'UPDATE'.")};
}
JetError JetError::noSuchTable(const QString& t)
{
    return {3078, QStringLiteral("The database engine cannot find the input table or query '%1'. "
                                 "Make sure it exists and that its name is spelled correctly.").arg(t)};
}
JetError JetError::unknownInsertField(const QString& f)
{
    return {3127, QStringLiteral("The INSERT INTO statement contains the following unknown field name: '%1'. "
                                 "Make sure you have typed the name correctly, and try the operation again.").arg(f)};
}
JetError JetError::noCurrentRecord() { return {3021, QStringLiteral("No current record.")}; }
JetError JetError::invalidOperation() { return {3219, QStringLiteral("Invalid operation.")}; }
JetError JetError::fileNotFound(const QString& p) { return {3024, QStringLiteral("Could not find file '%1'.").arg(p)}; }
JetError JetError::databaseExists() { return {3204, QStringLiteral("Database already exists.")}; }
JetError JetError::unrecognizedFormat(const QString& p)
{
    return {3343, QStringLiteral("Unrecognized database format '%1'.").arg(p)};
}
JetError JetError::cannotOpen(const QString& p)
{
    return {3051, QStringLiteral("The database engine cannot open the file '%1'. It is already opened exclusively "
                                 "by another user, or you need permission to view its data.").arg(p)};
}
JetError JetError::locked() { return {3218, QStringLiteral("Could not update; currently locked.")}; }
JetError JetError::diskFull() { return {3026, QStringLiteral("Not enough space on disk.")}; }
JetError JetError::objectClosed() { return {3420, QStringLiteral("Object invalid or no longer set.")}; }
JetError JetError::readOnly()
{
    return {3027, QStringLiteral("Cannot update. Database or object is read-only.")};
}
JetError JetError::duplicateValues()
{
    return {3022, QStringLiteral("The changes you requested to the table were not successful because they would "
                                 "create duplicate values in the index, primary key, or relationship.")};
}
JetError JetError::fieldInIndex()
{
    return {3280, QStringLiteral("Can't delete a field that is part of an index or is needed by the system.")};
}
JetError JetError::valuesCountMismatch()
{
    return {3346, QStringLiteral("Number of query values and destination fields are not the same.")};
}
JetError JetError::syntaxInAlterTable() { return {3293, QStringLiteral("Syntax error in ALTER TABLE statement.")}; }
