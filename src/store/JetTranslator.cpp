// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/JetTranslator.h"

#include "store/JetError.h"
#include "store/JetFunctions.h"
#include "store/JetTypes.h"

#include <QHash>
#include <QSet>

#include <cmath>
#include <vector>

namespace jet {

namespace {

// ---------------------------------------------------------------------------------------------
// Tokens

enum class Kw : quint8 {
    None, Select, Distinct, DistinctRow, Top, Percent, From, Where, Group, By, Having, Order, Asc, Desc, As,
    And, Or, Not, Xor, Eqv, Imp, Is, Null, Like, Between, In, Inner, Left, Right, Outer, Join, On, Union, All,
    Insert, Into, Values, Update, Set, Delete, Create, Table, Index, Unique, Primary, Key, Alter, Add, Column,
    Drop, Constraint, References, Foreign, Exists, Any, Some, Mod, True, False, With, Default,
};

const QHash<QString, Kw>& keywords()
{
    static const QHash<QString, Kw> map = {
        {QStringLiteral("SELECT"), Kw::Select},   {QStringLiteral("DISTINCT"), Kw::Distinct},
        {QStringLiteral("DISTINCTROW"), Kw::DistinctRow}, {QStringLiteral("TOP"), Kw::Top},
        {QStringLiteral("PERCENT"), Kw::Percent}, {QStringLiteral("FROM"), Kw::From},
        {QStringLiteral("WHERE"), Kw::Where},     {QStringLiteral("GROUP"), Kw::Group},
        {QStringLiteral("BY"), Kw::By},           {QStringLiteral("HAVING"), Kw::Having},
        {QStringLiteral("ORDER"), Kw::Order},     {QStringLiteral("ASC"), Kw::Asc},
        {QStringLiteral("DESC"), Kw::Desc},       {QStringLiteral("AS"), Kw::As},
        {QStringLiteral("AND"), Kw::And},         {QStringLiteral("OR"), Kw::Or},
        {QStringLiteral("NOT"), Kw::Not},         {QStringLiteral("XOR"), Kw::Xor},
        {QStringLiteral("EQV"), Kw::Eqv},         {QStringLiteral("IMP"), Kw::Imp},
        {QStringLiteral("IS"), Kw::Is},           {QStringLiteral("NULL"), Kw::Null},
        {QStringLiteral("LIKE"), Kw::Like},       {QStringLiteral("BETWEEN"), Kw::Between},
        {QStringLiteral("IN"), Kw::In},           {QStringLiteral("INNER"), Kw::Inner},
        {QStringLiteral("LEFT"), Kw::Left},       {QStringLiteral("RIGHT"), Kw::Right},
        {QStringLiteral("OUTER"), Kw::Outer},     {QStringLiteral("JOIN"), Kw::Join},
        {QStringLiteral("ON"), Kw::On},           {QStringLiteral("UNION"), Kw::Union},
        {QStringLiteral("ALL"), Kw::All},         {QStringLiteral("INSERT"), Kw::Insert},
        {QStringLiteral("INTO"), Kw::Into},       {QStringLiteral("VALUES"), Kw::Values},
        {QStringLiteral("UPDATE"), Kw::Update},   {QStringLiteral("SET"), Kw::Set},
        {QStringLiteral("DELETE"), Kw::Delete},   {QStringLiteral("CREATE"), Kw::Create},
        {QStringLiteral("TABLE"), Kw::Table},     {QStringLiteral("INDEX"), Kw::Index},
        {QStringLiteral("UNIQUE"), Kw::Unique},   {QStringLiteral("PRIMARY"), Kw::Primary},
        {QStringLiteral("KEY"), Kw::Key},         {QStringLiteral("ALTER"), Kw::Alter},
        {QStringLiteral("ADD"), Kw::Add},         {QStringLiteral("COLUMN"), Kw::Column},
        {QStringLiteral("DROP"), Kw::Drop},       {QStringLiteral("CONSTRAINT"), Kw::Constraint},
        {QStringLiteral("REFERENCES"), Kw::References}, {QStringLiteral("FOREIGN"), Kw::Foreign},
        {QStringLiteral("EXISTS"), Kw::Exists},   {QStringLiteral("ANY"), Kw::Any},
        {QStringLiteral("SOME"), Kw::Some},       {QStringLiteral("MOD"), Kw::Mod},
        {QStringLiteral("TRUE"), Kw::True},       {QStringLiteral("FALSE"), Kw::False},
        {QStringLiteral("WITH"), Kw::With},       {QStringLiteral("DEFAULT"), Kw::Default},
    };
    return map;
}

enum class T : quint8 { Word, Name, Quoted, String, Number, Date, Op };

struct Token {
    T kind = T::Op;
    Kw kw = Kw::None;
    QString text;      // Word: as written; Name/Quoted: the name inside; String/Number/Op: as written;
                       // Date: the storage text
    bool asName = false; // a double-quoted token that stands for a name
};

bool isIdentStart(QChar c) { return c.isLetter() || c == QLatin1Char('_'); }
bool isIdentPart(QChar c) { return c.isLetterOrNumber() || c == QLatin1Char('_'); }

QString quoteName(const QString& name)
{
    QString n = name;
    n.replace(QLatin1Char('"'), QLatin1String("\"\""));
    return QLatin1Char('"') + n + QLatin1Char('"');
}

QString quoteString(const QString& text)
{
    QString t = text;
    t.replace(QLatin1Char('\''), QLatin1String("''"));
    return QLatin1Char('\'') + t + QLatin1Char('\'');
}

// ---------------------------------------------------------------------------------------------
// Items: the statement as a tree of parenthesised groups, on which operators are rewritten.

struct Item {
    enum Kind : quint8 { Tok, Group, Text, Seq } kind = Tok;
    int tok = -1;
    QString text;
    std::vector<Item> kids;
    bool glueAfter = false;  // a function name: its '(' follows without a blank
    bool dateValued = false; // the expression gives a date

    static Item token(int i)
    {
        Item it;
        it.tok = i;
        return it;
    }
    static Item txt(const QString& s, bool glue = false)
    {
        Item it;
        it.kind = Text;
        it.text = s;
        it.glueAfter = glue;
        return it;
    }
    static Item seq(std::vector<Item> k)
    {
        Item it;
        it.kind = Seq;
        it.kids = std::move(k);
        return it;
    }
};

using Items = std::vector<Item>;

// The functions of Jet's expression service that SQL reaches, and what each becomes.
struct FunctionMap {
    const char* sqlName;
    const char* cast; // nullptr, "INTEGER", "REAL" or "NUMERIC"
    bool date;        // gives a date
};

const QHash<QString, FunctionMap>& functions()
{
    static const QHash<QString, FunctionMap> map = {
        {QStringLiteral("YEAR"), {"jet_year", "INTEGER", false}},
        {QStringLiteral("MONTH"), {"jet_month", "INTEGER", false}},
        {QStringLiteral("DAY"), {"jet_day", "INTEGER", false}},
        {QStringLiteral("HOUR"), {"jet_hour", "INTEGER", false}},
        {QStringLiteral("MINUTE"), {"jet_minute", "INTEGER", false}},
        {QStringLiteral("SECOND"), {"jet_second", "INTEGER", false}},
        {QStringLiteral("WEEKDAY"), {"jet_weekday", "INTEGER", false}},
        {QStringLiteral("CDATE"), {"jet_cdate", nullptr, true}},
        {QStringLiteral("CVDATE"), {"jet_cdate", nullptr, true}},
        {QStringLiteral("DATEVALUE"), {"jet_datevalue", nullptr, true}},
        {QStringLiteral("NOW"), {"jet_now", nullptr, true}},
        {QStringLiteral("DATE"), {"jet_today", nullptr, true}},
        {QStringLiteral("TIME"), {"jet_time", nullptr, true}},
        {QStringLiteral("DATESERIAL"), {"jet_dateserial", nullptr, true}},
        {QStringLiteral("DATEADD"), {"jet_dateadd", nullptr, true}},
        {QStringLiteral("DATEDIFF"), {"jet_datediff", "INTEGER", false}},
        {QStringLiteral("DATEPART"), {"jet_datepart", "INTEGER", false}},
        {QStringLiteral("MONTHNAME"), {"jet_monthname", nullptr, false}},
        {QStringLiteral("FORMAT"), {"jet_format", nullptr, false}},
        {QStringLiteral("TRIM"), {"jet_trim", nullptr, false}},
        {QStringLiteral("LTRIM"), {"jet_ltrim", nullptr, false}},
        {QStringLiteral("RTRIM"), {"jet_rtrim", nullptr, false}},
        {QStringLiteral("UCASE"), {"jet_ucase", nullptr, false}},
        {QStringLiteral("LCASE"), {"jet_lcase", nullptr, false}},
        {QStringLiteral("LEN"), {"jet_len", "INTEGER", false}},
        {QStringLiteral("LEFT"), {"jet_left", nullptr, false}},
        {QStringLiteral("RIGHT"), {"jet_right", nullptr, false}},
        {QStringLiteral("MID"), {"jet_mid", nullptr, false}},
        {QStringLiteral("INSTR"), {"jet_instr", "INTEGER", false}},
        {QStringLiteral("REPLACE"), {"jet_replace", nullptr, false}},
        {QStringLiteral("SPACE"), {"jet_space", nullptr, false}},
        {QStringLiteral("CHR"), {"jet_chr", nullptr, false}},
        {QStringLiteral("ASC"), {"jet_asc", "INTEGER", false}},
        {QStringLiteral("IIF"), {"jet_iif", nullptr, false}},
        {QStringLiteral("NZ"), {"jet_nz", nullptr, false}},
        {QStringLiteral("ISNULL"), {"jet_isnull", "INTEGER", false}},
        {QStringLiteral("ISDATE"), {"jet_isdate", "INTEGER", false}},
        {QStringLiteral("ISNUMERIC"), {"jet_isnumeric", "INTEGER", false}},
        {QStringLiteral("VAL"), {"jet_val", "REAL", false}},
        {QStringLiteral("STR"), {"jet_str", nullptr, false}},
        {QStringLiteral("CSTR"), {"jet_cstr", nullptr, false}},
        {QStringLiteral("CINT"), {"jet_cint", "INTEGER", false}},
        {QStringLiteral("CLNG"), {"jet_clng", "INTEGER", false}},
        {QStringLiteral("CBYTE"), {"jet_cint", "INTEGER", false}},
        {QStringLiteral("CDBL"), {"jet_cdbl", "REAL", false}},
        {QStringLiteral("CSNG"), {"jet_cdbl", "REAL", false}},
        {QStringLiteral("CCUR"), {"jet_ccur", "NUMERIC", false}},
        {QStringLiteral("CBOOL"), {"jet_cbool", "INTEGER", false}},
        {QStringLiteral("INT"), {"jet_int", "NUMERIC", false}},
        {QStringLiteral("FIX"), {"jet_fix", "NUMERIC", false}},
        {QStringLiteral("ABS"), {"jet_abs", "NUMERIC", false}},
        {QStringLiteral("SGN"), {"jet_sgn", "INTEGER", false}},
        {QStringLiteral("ROUND"), {"jet_round", "NUMERIC", false}},
        {QStringLiteral("SQR"), {"jet_sqr", "REAL", false}},
        {QStringLiteral("FIRST"), {"jet_first", nullptr, false}},
        {QStringLiteral("LAST"), {"jet_last", nullptr, false}},
    };
    return map;
}

// The Jet type named in CREATE TABLE and ALTER TABLE; -1 for an unknown name, 0 for binary data.
int typeForJetName(const QString& upper, bool& autoIncrement)
{
    autoIncrement = false;
    static const QHash<QString, int> map = {
        {QStringLiteral("COUNTER"), -2},     {QStringLiteral("AUTOINCREMENT"), -2}, {QStringLiteral("IDENTITY"), -2},
        {QStringLiteral("TEXT"), dbText},    {QStringLiteral("STRING"), dbText},    {QStringLiteral("VARCHAR"), dbText},
        {QStringLiteral("CHAR"), dbText},    {QStringLiteral("CHARACTER"), dbText}, {QStringLiteral("ALPHANUMERIC"), dbText},
        {QStringLiteral("NVARCHAR"), dbText}, {QStringLiteral("NCHAR"), dbText},    {QStringLiteral("GUID"), dbText},
        {QStringLiteral("MEMO"), dbMemo},    {QStringLiteral("LONGTEXT"), dbMemo},  {QStringLiteral("LONGCHAR"), dbMemo},
        {QStringLiteral("NOTE"), dbMemo},    {QStringLiteral("NTEXT"), dbMemo},
        {QStringLiteral("DATE"), dbDate},    {QStringLiteral("DATETIME"), dbDate}, {QStringLiteral("TIME"), dbDate},
        {QStringLiteral("TIMESTAMP"), dbDate},
        {QStringLiteral("NUMBER"), dbDouble}, {QStringLiteral("DOUBLE"), dbDouble}, {QStringLiteral("FLOAT"), dbDouble},
        {QStringLiteral("FLOAT8"), dbDouble}, {QStringLiteral("IEEEDOUBLE"), dbDouble},
        {QStringLiteral("NUMERIC"), dbDouble}, {QStringLiteral("DECIMAL"), dbDouble}, {QStringLiteral("DEC"), dbDouble},
        {QStringLiteral("SINGLE"), dbSingle}, {QStringLiteral("REAL"), dbSingle},   {QStringLiteral("FLOAT4"), dbSingle},
        {QStringLiteral("IEEESINGLE"), dbSingle},
        {QStringLiteral("LONG"), dbLong},    {QStringLiteral("INTEGER"), dbLong},   {QStringLiteral("INT"), dbLong},
        {QStringLiteral("INTEGER4"), dbLong},
        {QStringLiteral("SHORT"), dbInteger}, {QStringLiteral("SMALLINT"), dbInteger},
        {QStringLiteral("INTEGER2"), dbInteger},
        {QStringLiteral("BYTE"), dbByte},    {QStringLiteral("TINYINT"), dbByte},   {QStringLiteral("INTEGER1"), dbByte},
        {QStringLiteral("CURRENCY"), dbCurrency}, {QStringLiteral("MONEY"), dbCurrency},
        {QStringLiteral("YESNO"), dbBoolean}, {QStringLiteral("BIT"), dbBoolean},   {QStringLiteral("LOGICAL"), dbBoolean},
        {QStringLiteral("LOGICAL1"), dbBoolean}, {QStringLiteral("BOOLEAN"), dbBoolean},
        {QStringLiteral("BINARY"), 0},       {QStringLiteral("VARBINARY"), 0},      {QStringLiteral("LONGBINARY"), 0},
        {QStringLiteral("OLEOBJECT"), 0},    {QStringLiteral("GENERAL"), 0},        {QStringLiteral("IMAGE"), 0},
    };
    const auto it = map.constFind(upper);
    if (it == map.constEnd())
        return -1;
    if (it.value() == -2) {
        autoIncrement = true;
        return dbLong;
    }
    return it.value();
}

// Binding strength of Jet's binary operators; -1 for anything else.
enum Prec { PrecOr = 1, PrecAnd = 2, PrecNot = 3, PrecCompare = 4, PrecConcat = 6, PrecAdd = 7, PrecMod = 8,
            PrecIntDiv = 9, PrecMul = 10, PrecPow = 12 };

// ---------------------------------------------------------------------------------------------

class Translator {
public:
    Translator(const QString& sql, const SchemaLookup& schema) : m_sql(sql), m_schema(schema) {}
    Translation run();

private:
    // tokens
    void tokenize();
    [[noreturn]] void syntaxError() const;
    const Token& tk(const Item& it) const { return m_tokens[size_t(it.tok)]; }
    Kw kwOf(const Item& it) const { return it.kind == Item::Tok && tk(it).kind == T::Word ? tk(it).kw : Kw::None; }
    bool isOp(const Item& it, const char* op) const
    {
        return it.kind == Item::Tok && tk(it).kind == T::Op && tk(it).text == QLatin1String(op);
    }
    bool isNameItem(const Item& it) const;
    QString nameOf(const Item& it) const;

    // the tree
    Items buildItems(int& pos, bool inGroup);

    // expressions
    void rewrite(Items& seq);
    void mergeCalls(Items& seq);
    bool isUnitEnd(const Item& it) const;
    int unitStartBackward(const Items& seq, int end) const;
    int unitEndForward(const Items& seq, int start) const;
    int precOf(const Item& it) const;
    int leftExtent(const Items& seq, int op, int minPrec, bool inclusive) const;
    int rightExtent(const Items& seq, int op, int minPrec) const;
    void rewriteBinary(Items& seq, int prec, bool (Translator::*match)(const Item&) const,
                       Item (Translator::*build)(Items, Items) const);
    void rewriteConcat(Items& seq);
    void rewriteLike(Items& seq);
    bool isPow(const Item& it) const { return isOp(it, "^"); }
    bool isDiv(const Item& it) const { return isOp(it, "/"); }
    bool isIntDiv(const Item& it) const { return isOp(it, "\\"); }
    bool isMod(const Item& it) const { return kwOf(it) == Kw::Mod; }
    Item buildPow(Items a, Items b) const { return call("jet_pow", std::move(a), std::move(b)); }
    Item buildIntDiv(Items a, Items b) const { return call("jet_intdiv", std::move(a), std::move(b)); }
    Item buildMod(Items a, Items b) const { return call("jet_mod", std::move(a), std::move(b)); }
    Item buildDiv(Items a, Items b) const;
    Item call(const char* name, Items a, Items b) const;
    void handleSelectHead(Items& seq);
    bool isColumnRef(const Items& operand) const;
    bool isDateColumn(const Items& operand) const;
    bool isDateExpression(const Items& expr) const;

    // statements
    Translation select(Items& items);
    Translation insert(Items& items);
    Translation update(Items& items);
    Translation remove(Items& items);
    Translation createTable(Items& items);
    Translation createIndex(Items& items);
    Translation alterTable(Items& items);
    Translation drop(Items& items);
    QString columnDefinition(const Items& part);
    Item assign(Items expr, int type) const;
    QVector<ColumnInfo> requireTable(const QString& table) const;
    std::vector<Items> splitTopLevel(const Items& seq, int from, int to) const;
    void resolveQuotedNames();
    const QHash<QString, int>& statementColumns() const;

    // output
    QString render(const Items& seq) const;
    void emitItem(const Item& it, QString& out, bool& operandEnd, bool& glue) const;
    void put(QString& out, const QString& piece, bool& glue) const;

    const QString& m_sql;
    const SchemaLookup& m_schema;
    std::vector<Token> m_tokens;
    StatementKind m_kind = StatementKind::Other;
    bool m_ddl = false;
    mutable bool m_columnsLoaded = false;
    mutable QHash<QString, int> m_columns; // lower-case name -> type, of the statement's tables
};

[[noreturn]] void Translator::syntaxError() const
{
    switch (m_kind) {
    case StatementKind::Insert: throw JetError::syntaxInInsert();
    case StatementKind::Update: throw JetError::syntaxInUpdate();
    case StatementKind::CreateTable: throw JetError::syntaxInCreateTable();
    default: throw JetError::syntaxInExpression(m_sql.trimmed());
    }
}

void Translator::tokenize()
{
    const QString& s = m_sql;
    const qsizetype n = s.size();
    qsizetype i = 0;
    m_tokens.reserve(size_t(n / 4 + 4));
    while (i < n) {
        const QChar c = s[i];
        if (c.isSpace()) {
            ++i;
            continue;
        }
        if (c == QLatin1Char(';')) {
            // Exactly one statement: a ';' may end it, and nothing may follow, whatever it is.
            for (qsizetype j = i + 1; j < n; ++j)
                if (!s[j].isSpace())
                    throw JetError::charactersAfterEnd();
            break;
        }
        Token t;
        t.kind = T::Op;
        if (isIdentStart(c)) {
            qsizetype j = i + 1;
            while (j < n && isIdentPart(s[j]))
                ++j;
            if (j < n && s[j] == QLatin1Char('$')) // Left$ and the like
                ++j;
            t.kind = T::Word;
            t.text = s.mid(i, j - i);
            t.kw = keywords().value(t.text.toUpper(), Kw::None);
            i = j;
        } else if (c.isDigit() || (c == QLatin1Char('.') && i + 1 < n && s[i + 1].isDigit())) {
            qsizetype j = i;
            while (j < n && s[j].isDigit())
                ++j;
            if (j < n && s[j] == QLatin1Char('.')) {
                ++j;
                while (j < n && s[j].isDigit())
                    ++j;
            }
            if (j < n && (s[j] == QLatin1Char('e') || s[j] == QLatin1Char('E'))) {
                qsizetype k = j + 1;
                if (k < n && (s[k] == QLatin1Char('+') || s[k] == QLatin1Char('-')))
                    ++k;
                if (k < n && s[k].isDigit()) {
                    while (k < n && s[k].isDigit())
                        ++k;
                    j = k;
                }
            }
            t.kind = T::Number;
            t.text = s.mid(i, j - i);
            i = j;
        } else if (c == QLatin1Char('\'') || c == QLatin1Char('"')) {
            qsizetype j = i + 1;
            QString value;
            for (;;) {
                if (j >= n)
                    throw JetError::syntaxInExpression(s.mid(i).trimmed());
                if (s[j] == c) {
                    if (j + 1 < n && s[j + 1] == c) {
                        value += c;
                        j += 2;
                        continue;
                    }
                    break;
                }
                value += s[j++];
            }
            if (c == QLatin1Char('\'')) {
                t.kind = T::String;
                t.text = s.mid(i, j + 1 - i);
            } else {
                t.kind = T::Quoted;
                t.text = value;
            }
            i = j + 1;
        } else if (c == QLatin1Char('[')) {
            const qsizetype close = s.indexOf(QLatin1Char(']'), i + 1);
            if (close < 0)
                throw JetError::syntaxInExpression(s.mid(i).trimmed());
            t.kind = T::Name;
            t.text = s.mid(i + 1, close - i - 1);
            i = close + 1;
        } else if (c == QLatin1Char('#')) {
            const qsizetype close = s.indexOf(QLatin1Char('#'), i + 1);
            if (close < 0)
                throw JetError::syntaxInExpression(s.mid(i).trimmed());
            const auto m = parseDateLiteral(QStringView(s).mid(i + 1, close - i - 1));
            if (!m)
                throw JetError::syntaxInExpression(s.mid(i, close + 1 - i));
            t.kind = T::Date;
            t.text = storageText(*m);
            i = close + 1;
        } else {
            static const char* const twoChar[] = {"<>", "<=", ">=", "!="};
            bool done = false;
            for (const char* op : twoChar) {
                if (i + 1 < n && c == QLatin1Char(op[0]) && s[i + 1] == QLatin1Char(op[1])) {
                    t.text = QString::fromLatin1(op);
                    i += 2;
                    done = true;
                    break;
                }
            }
            if (!done) {
                static const QString single = QStringLiteral("=<>+-*/\\&^(),.");
                if (!single.contains(c))
                    throw JetError::syntaxInExpression(s.mid(i).trimmed());
                t.text = QString(c);
                ++i;
            }
        }
        m_tokens.push_back(std::move(t));
    }
}

bool Translator::isNameItem(const Item& it) const
{
    if (it.kind != Item::Tok)
        return false;
    const Token& t = tk(it);
    return (t.kind == T::Word && t.kw == Kw::None) || t.kind == T::Name || (t.kind == T::Quoted && t.asName);
}

QString Translator::nameOf(const Item& it) const
{
    return tk(it).text;
}

Items Translator::buildItems(int& pos, bool inGroup)
{
    Items out;
    while (pos < int(m_tokens.size())) {
        const Token& t = m_tokens[size_t(pos)];
        if (t.kind == T::Op && t.text == QLatin1String("(")) {
            ++pos;
            Item g;
            g.kind = Item::Group;
            g.kids = buildItems(pos, true);
            out.push_back(std::move(g));
            continue;
        }
        if (t.kind == T::Op && t.text == QLatin1String(")")) {
            if (!inGroup)
                syntaxError();
            ++pos;
            return out;
        }
        out.push_back(Item::token(pos));
        ++pos;
    }
    if (inGroup)
        syntaxError();
    return out;
}

// ---------------------------------------------------------------------------------------------
// Double-quoted tokens: Jet reads one as a name where a name stands or where it names a column of
// the statement's tables, and as a text everywhere else.

const QHash<QString, int>& Translator::statementColumns() const
{
    if (m_columnsLoaded)
        return m_columns;
    m_columnsLoaded = true;
    QSet<QString> seen;
    for (const Token& t : m_tokens) {
        if (!((t.kind == T::Word && t.kw == Kw::None) || t.kind == T::Name || t.kind == T::Quoted))
            continue;
        const QString key = t.text.toLower();
        if (seen.contains(key))
            continue;
        seen.insert(key);
        if (const auto cols = m_schema(t.text))
            for (const ColumnInfo& c : *cols) {
                const QString name = c.name.toLower();
                const auto it = m_columns.constFind(name);
                // A name two tables give different types has no one type.
                m_columns.insert(name, it == m_columns.constEnd() || it.value() == c.type ? c.type : -1);
            }
    }
    return m_columns;
}

void Translator::resolveQuotedNames()
{
    for (size_t i = 0; i < m_tokens.size(); ++i) {
        Token& t = m_tokens[i];
        if (t.kind != T::Quoted)
            continue;
        const Token* prev = i > 0 ? &m_tokens[i - 1] : nullptr;
        const Token* next = i + 1 < m_tokens.size() ? &m_tokens[i + 1] : nullptr;
        if (m_ddl) {
            const bool afterDefault = prev && ((prev->kind == T::Word && prev->kw == Kw::Default) ||
                                               (prev->kind == T::Op && i > 1 && m_tokens[i - 2].kw == Kw::Default));
            t.asName = !afterDefault;
            continue;
        }
        if (prev && prev->kind == T::Word &&
            (prev->kw == Kw::From || prev->kw == Kw::Join || prev->kw == Kw::Into || prev->kw == Kw::Update ||
             prev->kw == Kw::Table || prev->kw == Kw::As)) {
            t.asName = true;
            continue;
        }
        if ((prev && prev->kind == T::Op && prev->text == QLatin1String(".")) ||
            (next && next->kind == T::Op && next->text == QLatin1String("."))) {
            t.asName = true;
            continue;
        }
        t.asName = statementColumns().contains(t.text.toLower());
    }
}

// ---------------------------------------------------------------------------------------------
// Expressions

bool Translator::isUnitEnd(const Item& it) const
{
    if (it.kind != Item::Tok)
        return true;
    const Token& t = tk(it);
    switch (t.kind) {
    case T::Word: return t.kw == Kw::None || t.kw == Kw::Null || t.kw == Kw::True || t.kw == Kw::False;
    case T::Op: return false;
    default: return true;
    }
}

int Translator::precOf(const Item& it) const
{
    if (it.kind != Item::Tok)
        return -1;
    const Token& t = tk(it);
    if (t.kind == T::Op) {
        const QString& o = t.text;
        if (o == QLatin1String("^"))
            return PrecPow;
        if (o == QLatin1String("*") || o == QLatin1String("/"))
            return PrecMul;
        if (o == QLatin1String("\\"))
            return PrecIntDiv;
        if (o == QLatin1String("+") || o == QLatin1String("-"))
            return PrecAdd;
        if (o == QLatin1String("&"))
            return PrecConcat;
        if (o == QLatin1String("=") || o == QLatin1String("<>") || o == QLatin1String("<") || o == QLatin1String(">") ||
            o == QLatin1String("<=") || o == QLatin1String(">=") || o == QLatin1String("!="))
            return PrecCompare;
        return -1;
    }
    if (t.kind == T::Word) {
        switch (t.kw) {
        case Kw::Mod: return PrecMod;
        case Kw::Like:
        case Kw::Is:
        case Kw::In:
        case Kw::Between: return PrecCompare;
        case Kw::Not: return PrecNot;
        case Kw::And: return PrecAnd;
        case Kw::Or:
        case Kw::Xor:
        case Kw::Eqv:
        case Kw::Imp: return PrecOr;
        default: return -1;
        }
    }
    return -1;
}

// The first item of the operand that ends at `end`, with its signs; -1 when there is none.
int Translator::unitStartBackward(const Items& seq, int end) const
{
    if (end < 0 || !isUnitEnd(seq[size_t(end)]))
        return -1;
    int s = end;
    if (seq[size_t(s)].kind == Item::Tok && isNameItem(seq[size_t(s)])) {
        while (s >= 2 && isOp(seq[size_t(s - 1)], ".") && isNameItem(seq[size_t(s - 2)]))
            s -= 2;
    }
    while (s >= 1 && (isOp(seq[size_t(s - 1)], "-") || isOp(seq[size_t(s - 1)], "+")) &&
           (s < 2 || !isUnitEnd(seq[size_t(s - 2)])))
        --s;
    return s;
}

// The last item of the operand that begins at `start`; -1 when there is none.
int Translator::unitEndForward(const Items& seq, int start) const
{
    const int n = int(seq.size());
    int i = start;
    while (i < n && (isOp(seq[size_t(i)], "-") || isOp(seq[size_t(i)], "+")))
        ++i;
    if (i >= n || !isUnitEnd(seq[size_t(i)]))
        return -1;
    if (isNameItem(seq[size_t(i)])) {
        while (i + 2 < n && isOp(seq[size_t(i + 1)], ".") && isNameItem(seq[size_t(i + 2)]))
            i += 2;
    }
    return i;
}

int Translator::leftExtent(const Items& seq, int op, int minPrec, bool inclusive) const
{
    int end = op - 1;
    for (;;) {
        const int s = unitStartBackward(seq, end);
        if (s < 0)
            return -1;
        const int j = s - 1;
        if (j >= 1) {
            const int p = precOf(seq[size_t(j)]);
            if (p > minPrec || (inclusive && p == minPrec)) {
                end = j - 1;
                continue;
            }
        }
        return s;
    }
}

int Translator::rightExtent(const Items& seq, int op, int minPrec) const
{
    int start = op + 1;
    for (;;) {
        const int e = unitEndForward(seq, start);
        if (e < 0)
            return -1;
        const int j = e + 1;
        if (j < int(seq.size()) && precOf(seq[size_t(j)]) > minPrec) {
            start = j + 1;
            continue;
        }
        return e;
    }
}

Item Translator::call(const char* name, Items a, Items b) const
{
    Items k;
    k.push_back(Item::txt(QString::fromLatin1(name), true));
    Item g;
    g.kind = Item::Group;
    g.kids.push_back(Item::seq(std::move(a)));
    g.kids.push_back(Item::txt(QStringLiteral(",")));
    g.kids.push_back(Item::seq(std::move(b)));
    k.push_back(std::move(g));
    return Item::seq(std::move(k));
}

// Jet divides as floating point whatever the operands; SQLite would drop the fraction of two integers.
Item Translator::buildDiv(Items a, Items b) const
{
    Items k;
    k.push_back(Item::txt(QStringLiteral("CAST"), true));
    Item g;
    g.kind = Item::Group;
    g.kids.push_back(Item::seq(std::move(a)));
    g.kids.push_back(Item::txt(QStringLiteral("AS REAL")));
    k.push_back(std::move(g));
    k.push_back(Item::txt(QStringLiteral("/")));
    k.push_back(Item::seq(std::move(b)));
    Item outer;
    outer.kind = Item::Group;
    outer.kids.push_back(Item::seq(std::move(k)));
    return outer;
}

void Translator::rewriteBinary(Items& seq, int prec, bool (Translator::*match)(const Item&) const,
                               Item (Translator::*build)(Items, Items) const)
{
    for (int i = 0; i < int(seq.size()); ++i) {
        if (!(this->*match)(seq[size_t(i)]))
            continue;
        const int s = leftExtent(seq, i, prec, true);
        const int e = rightExtent(seq, i, prec);
        if (s < 0 || e < 0)
            syntaxError();
        Items a(std::make_move_iterator(seq.begin() + s), std::make_move_iterator(seq.begin() + i));
        Items b(std::make_move_iterator(seq.begin() + i + 1), std::make_move_iterator(seq.begin() + e + 1));
        Item built = (this->*build)(std::move(a), std::move(b));
        seq.erase(seq.begin() + s + 1, seq.begin() + e + 1);
        seq[size_t(s)] = std::move(built);
        i = s;
    }
}

// A column of a date type: the text it gives for & is the region's short date, as in Jet.
bool Translator::isColumnRef(const Items& operand) const
{
    if (operand.empty() || !isNameItem(operand.back()))
        return false;
    return operand.size() == 1 || (operand.size() == 3 && isNameItem(operand[0]) && isOp(operand[1], "."));
}

bool Translator::isDateColumn(const Items& operand) const
{
    if (!isColumnRef(operand))
        return false;
    const auto it = statementColumns().constFind(nameOf(operand.back()).toLower());
    return it != statementColumns().constEnd() && it.value() == dbDate;
}

void Translator::rewriteConcat(Items& seq)
{
    for (int i = 0; i < int(seq.size()); ++i) {
        if (!isOp(seq[size_t(i)], "&"))
            continue;
        const int s = leftExtent(seq, i, PrecConcat, true);
        if (s < 0)
            syntaxError();
        std::vector<std::pair<int, int>> operands{{s, i - 1}};
        int op = i;
        for (;;) {
            const int e = rightExtent(seq, op, PrecConcat);
            if (e < 0)
                syntaxError();
            operands.push_back({op + 1, e});
            if (e + 1 < int(seq.size()) && isOp(seq[size_t(e + 1)], "&")) {
                op = e + 1;
                continue;
            }
            break;
        }
        const int last = operands.back().second;
        Item g;
        g.kind = Item::Group;
        for (size_t k = 0; k < operands.size(); ++k) {
            if (k > 0)
                g.kids.push_back(Item::txt(QStringLiteral(",")));
            Items part(std::make_move_iterator(seq.begin() + operands[k].first),
                       std::make_move_iterator(seq.begin() + operands[k].second + 1));
            if (isDateColumn(part)) {
                Items wrapped;
                wrapped.push_back(Item::txt(QStringLiteral("jet_cdate"), true));
                Item inner;
                inner.kind = Item::Group;
                inner.kids = std::move(part);
                wrapped.push_back(std::move(inner));
                part = std::move(wrapped);
            }
            g.kids.push_back(Item::seq(std::move(part)));
        }
        Items k;
        k.push_back(Item::txt(QStringLiteral("jet_concat"), true));
        k.push_back(std::move(g));
        seq.erase(seq.begin() + s + 1, seq.begin() + last + 1);
        seq[size_t(s)] = Item::seq(std::move(k));
        i = s;
    }
}

void Translator::rewriteLike(Items& seq)
{
    for (int i = 0; i < int(seq.size()); ++i) {
        if (kwOf(seq[size_t(i)]) != Kw::Like)
            continue;
        const bool negated = i > 0 && kwOf(seq[size_t(i - 1)]) == Kw::Not;
        const int leftOp = negated ? i - 1 : i;
        const int s = leftExtent(seq, leftOp, PrecCompare, false);
        const int e = rightExtent(seq, i, PrecCompare);
        if (s < 0 || e < 0)
            syntaxError();
        Items a(std::make_move_iterator(seq.begin() + s), std::make_move_iterator(seq.begin() + leftOp));
        Items b(std::make_move_iterator(seq.begin() + i + 1), std::make_move_iterator(seq.begin() + e + 1));
        Item built = call("jet_like", std::move(a), std::move(b));
        if (negated)
            built = Item::seq({Item::txt(QStringLiteral("NOT")), std::move(built)});
        seq.erase(seq.begin() + s + 1, seq.begin() + e + 1);
        seq[size_t(s)] = std::move(built);
        i = s;
    }
}

void Translator::mergeCalls(Items& seq)
{
    for (size_t i = 0; i + 1 < seq.size(); ++i) {
        if (seq[i].kind != Item::Tok || seq[i + 1].kind != Item::Group)
            continue;
        const Token& t = tk(seq[i]);
        if (t.kind != T::Word || !(t.kw == Kw::None || t.kw == Kw::Left || t.kw == Kw::Right || t.kw == Kw::Asc))
            continue;
        QString upper = t.text.toUpper();
        if (upper.endsWith(QLatin1Char('$')))
            upper.chop(1);
        Items k;
        const auto f = functions().constFind(upper);
        bool date = false;
        if (f == functions().constEnd()) {
            // An aggregate or a function SQLite knows by the same name (Count, Sum, Min ...).
            k.push_back(Item::txt(upper.toLower(), true));
            k.push_back(std::move(seq[i + 1]));
        } else {
            date = f->date;
            if (f->cast)
                k.push_back(Item::txt(QStringLiteral("CAST"), true));
            Items callItems;
            callItems.push_back(Item::txt(QString::fromLatin1(f->sqlName), true));
            callItems.push_back(std::move(seq[i + 1]));
            if (f->cast) {
                Item g;
                g.kind = Item::Group;
                g.kids.push_back(Item::seq(std::move(callItems)));
                g.kids.push_back(Item::txt(QStringLiteral("AS ") + QLatin1String(f->cast)));
                k.push_back(std::move(g));
            } else {
                k = std::move(callItems);
            }
        }
        Item merged = Item::seq(std::move(k));
        merged.dateValued = date;
        seq.erase(seq.begin() + qsizetype(i) + 1);
        seq[i] = std::move(merged);
    }
}

void Translator::rewrite(Items& seq)
{
    for (Item& it : seq) {
        if (it.kind == Item::Group) {
            if (!it.kids.empty() && kwOf(it.kids.front()) == Kw::Select) {
                handleSelectHead(it.kids);
                rewrite(it.kids);
            } else {
                rewrite(it.kids);
            }
        }
    }
    mergeCalls(seq);

    bool pow = false, div = false, intDiv = false, mod = false, concat = false, like = false;
    for (const Item& it : seq) {
        if (it.kind != Item::Tok)
            continue;
        const Token& t = tk(it);
        if (t.kind == T::Op) {
            pow |= t.text == QLatin1String("^");
            div |= t.text == QLatin1String("/");
            intDiv |= t.text == QLatin1String("\\");
            concat |= t.text == QLatin1String("&");
        } else if (t.kind == T::Word) {
            mod |= t.kw == Kw::Mod;
            like |= t.kw == Kw::Like;
        }
    }
    if (pow)
        rewriteBinary(seq, PrecPow, &Translator::isPow, &Translator::buildPow);
    if (div)
        rewriteBinary(seq, PrecMul, &Translator::isDiv, &Translator::buildDiv);
    if (intDiv)
        rewriteBinary(seq, PrecIntDiv, &Translator::isIntDiv, &Translator::buildIntDiv);
    if (mod)
        rewriteBinary(seq, PrecMod, &Translator::isMod, &Translator::buildMod);
    if (concat)
        rewriteConcat(seq);
    if (like)
        rewriteLike(seq);
}

// SELECT [DISTINCT | DISTINCTROW] [TOP n]: SQLite's LIMIT stands at the end.
void Translator::handleSelectHead(Items& seq)
{
    size_t i = 1;
    if (i < seq.size() && kwOf(seq[i]) == Kw::DistinctRow)
        seq.erase(seq.begin() + qsizetype(i));
    else if (i < seq.size() && (kwOf(seq[i]) == Kw::Distinct || kwOf(seq[i]) == Kw::All))
        ++i;
    if (i < seq.size() && kwOf(seq[i]) == Kw::Top) {
        if (i + 1 >= seq.size() || seq[i + 1].kind != Item::Tok || tk(seq[i + 1]).kind != T::Number)
            syntaxError();
        const QString count = tk(seq[i + 1]).text;
        size_t drop = 2;
        if (i + 2 < seq.size() && kwOf(seq[i + 2]) == Kw::Percent)
            syntaxError(); // a share of the rows is not a count SQLite can take
        seq.erase(seq.begin() + qsizetype(i), seq.begin() + qsizetype(i + drop));
        seq.push_back(Item::txt(QStringLiteral("LIMIT ") + count));
    }
}

// ---------------------------------------------------------------------------------------------
// Output

void Translator::put(QString& out, const QString& piece, bool& glue) const
{
    if (piece.isEmpty())
        return;
    if (!out.isEmpty()) {
        const QChar prev = out.back();
        const QChar next = piece.front();
        bool space = true;
        if (glue || prev == QLatin1Char('(') || prev == QLatin1Char('.') || next == QLatin1Char(')') ||
            next == QLatin1Char(',') || next == QLatin1Char('.'))
            space = false;
        // Never let two tokens run into a comment: "- -1", "/ *".
        if (!space && ((prev == QLatin1Char('-') && next == QLatin1Char('-')) ||
                       (prev == QLatin1Char('/') && next == QLatin1Char('*')) ||
                       (prev == QLatin1Char('*') && next == QLatin1Char('/'))))
            space = true;
        if (space)
            out += QLatin1Char(' ');
    }
    out += piece;
    glue = false;
}

void Translator::emitItem(const Item& it, QString& out, bool& operandEnd, bool& glue) const
{
    switch (it.kind) {
    case Item::Group: {
        put(out, QStringLiteral("("), glue);
        operandEnd = false;
        bool innerEnd = false;
        for (const Item& k : it.kids)
            emitItem(k, out, innerEnd, glue);
        put(out, QStringLiteral(")"), glue);
        operandEnd = true;
        return;
    }
    case Item::Seq:
        for (const Item& k : it.kids)
            emitItem(k, out, operandEnd, glue);
        return;
    case Item::Text: {
        put(out, it.text, glue);
        const QChar last = it.text.back();
        operandEnd = last.isLetterOrNumber() || last == QLatin1Char(')') || last == QLatin1Char('\'') ||
                     last == QLatin1Char('"');
        if (it.text == QLatin1String("NOT") || it.text.startsWith(QLatin1String("AS ")))
            operandEnd = false;
        glue = it.glueAfter;
        return;
    }
    case Item::Tok: break;
    }
    const Token& t = tk(it);
    switch (t.kind) {
    case T::Word:
        switch (t.kw) {
        case Kw::None: put(out, quoteName(t.text), glue); operandEnd = true; return;
        case Kw::True: put(out, QStringLiteral("-1"), glue); operandEnd = true; return;
        case Kw::False: put(out, QStringLiteral("0"), glue); operandEnd = true; return;
        case Kw::Null: put(out, QStringLiteral("NULL"), glue); operandEnd = true; return;
        default: put(out, t.text.toUpper(), glue); operandEnd = false; return;
        }
    case T::Name: put(out, quoteName(t.text), glue); operandEnd = true; return;
    case T::Quoted:
        put(out, t.asName ? quoteName(t.text) : quoteString(t.text), glue);
        operandEnd = true;
        return;
    case T::String:
    case T::Number: put(out, t.text, glue); operandEnd = true; return;
    case T::Date:
        put(out, QStringLiteral("jet_date('") + t.text + QStringLiteral("')"), glue);
        operandEnd = true;
        return;
    case T::Op: {
        const QString& o = t.text;
        if (o == QLatin1String("&") || o == QLatin1String("\\") || o == QLatin1String("^"))
            syntaxError();
        const bool sign = (o == QLatin1String("-") || o == QLatin1String("+")) && !operandEnd;
        put(out, o, glue);
        operandEnd = false;
        glue = sign; // a sign stays with its operand: "-1"
        return;
    }
    }
}

QString Translator::render(const Items& seq) const
{
    QString out;
    out.reserve(m_sql.size() + 32);
    bool operandEnd = false;
    bool glue = false;
    for (const Item& it : seq)
        emitItem(it, out, operandEnd, glue);
    return out;
}

// ---------------------------------------------------------------------------------------------
// Statements

std::vector<Items> Translator::splitTopLevel(const Items& seq, int from, int to) const
{
    std::vector<Items> parts(1);
    for (int i = from; i < to; ++i) {
        if (isOp(seq[size_t(i)], ",")) {
            parts.emplace_back();
            continue;
        }
        parts.back().push_back(seq[size_t(i)]);
    }
    return parts;
}

QVector<ColumnInfo> Translator::requireTable(const QString& table) const
{
    const auto cols = m_schema(table);
    if (!cols)
        throw JetError::noSuchTable(table);
    return *cols;
}

bool Translator::isDateExpression(const Items& expr) const
{
    if (expr.size() != 1)
        return isDateColumn(expr);
    const Item& it = expr.front();
    if (it.dateValued)
        return true;
    if (it.kind == Item::Tok && tk(it).kind == T::Date)
        return true;
    return isDateColumn(expr);
}

// Jet converts what is written into a column to the column's type, and writes Null where it cannot.
Item Translator::assign(Items expr, int type) const
{
    // Literals that already have the column's type need no conversion: bulk inserts stay fast.
    if (expr.size() == 1 && expr.front().kind == Item::Tok) {
        const Token& t = tk(expr.front());
        if (t.kind == T::Word && t.kw == Kw::Null)
            return Item::seq(std::move(expr));
        if ((t.kind == T::String || (t.kind == T::Quoted && !t.asName)) && isTextType(type))
            return Item::seq(std::move(expr));
        if (t.kind == T::Date && type == dbDate)
            return Item::seq(std::move(expr));
    }
    {
        // A plain number, possibly signed, into a number column that holds it as it is.
        size_t k = 0;
        if (expr.size() == 2 && (isOp(expr[0], "-") || isOp(expr[0], "+")))
            k = 1;
        if (expr.size() == k + 1 && expr[k].kind == Item::Tok) {
            const Token& t = tk(expr[k]);
            if (t.kind == T::Number || (t.kind == T::Word && (t.kw == Kw::True || t.kw == Kw::False))) {
                bool ok = false;
                double v = t.kind == T::Number ? t.text.toDouble(&ok) : (t.kw == Kw::True ? -1.0 : 0.0);
                if (t.kind != T::Number)
                    ok = true;
                if (ok && k == 1 && isOp(expr[0], "-"))
                    v = -v;
                const bool whole = ok && v == std::trunc(v);
                bool fits = false;
                switch (type) {
                case dbDouble:
                case dbSingle:
                case dbCurrency: fits = ok; break;
                case dbLong: fits = whole && v >= -2147483648.0 && v <= 2147483647.0; break;
                case dbInteger: fits = whole && v >= -32768 && v <= 32767; break;
                case dbByte: fits = whole && v >= 0 && v <= 255; break;
                case dbBoolean: fits = ok && (v == 0 || v == -1); break;
                default: break;
                }
                if (fits)
                    return Item::seq(std::move(expr));
            }
        }
    }
    // A column into a column of the same kind.
    if (isColumnRef(expr)) {
        const int from = statementColumns().value(nameOf(expr.back()).toLower(), -1);
        if (from == type || (isTextType(from) && isTextType(type)))
            return Item::seq(std::move(expr));
    }
    const bool fromDate = isDateExpression(expr);
    Items k;
    k.push_back(Item::txt(QStringLiteral("jet_assign"), true));
    Item g;
    g.kind = Item::Group;
    g.kids.push_back(Item::seq(std::move(expr)));
    g.kids.push_back(Item::txt(QStringLiteral(",")));
    g.kids.push_back(Item::txt(QString::number(type)));
    if (fromDate) {
        g.kids.push_back(Item::txt(QStringLiteral(",")));
        g.kids.push_back(Item::txt(QString::number(dbDate)));
    }
    k.push_back(std::move(g));
    return Item::seq(std::move(k));
}

Translation Translator::select(Items& items)
{
    if (items.front().kind == Item::Group) { // (SELECT ...) UNION (SELECT ...)
        rewrite(items);
        Translation out;
        out.kind = StatementKind::Select;
        out.sql = render(items);
        return out;
    }
    handleSelectHead(items);
    rewrite(items);

    Translation out;
    out.kind = StatementKind::Select;
    // The first table read from, looking into a parenthesised join.
    for (size_t i = 0; i < items.size(); ++i) {
        if (kwOf(items[i]) != Kw::From)
            continue;
        const Item* next = i + 1 < items.size() ? &items[i + 1] : nullptr;
        while (next && next->kind == Item::Group && !next->kids.empty())
            next = &next->kids.front();
        if (next && isNameItem(*next))
            out.table = nameOf(*next);
        break;
    }

    // Jet names a column computed without AS "Expr1000", "Expr1001" ...
    int from = 1;
    while (from < int(items.size()) && (kwOf(items[size_t(from)]) == Kw::Distinct || kwOf(items[size_t(from)]) == Kw::All))
        ++from;
    int to = from;
    while (to < int(items.size()) && kwOf(items[size_t(to)]) != Kw::From &&
           !(items[size_t(to)].kind == Item::Text && items[size_t(to)].text.startsWith(QLatin1String("LIMIT "))))
        ++to;
    int expr = 1000;
    Items rebuilt(items.begin(), items.begin() + from);
    const std::vector<Items> parts = splitTopLevel(items, from, to);
    for (size_t p = 0; p < parts.size(); ++p) {
        if (p > 0)
            rebuilt.push_back(Item::txt(QStringLiteral(",")));
        const Items& part = parts[p];
        rebuilt.insert(rebuilt.end(), part.begin(), part.end());
        const bool star = (part.size() == 1 && isOp(part[0], "*")) ||
                          (part.size() == 3 && isNameItem(part[0]) && isOp(part[1], ".") && isOp(part[2], "*"));
        const bool column = (part.size() == 1 && isNameItem(part[0])) ||
                            (part.size() == 3 && isNameItem(part[0]) && isOp(part[1], ".") && isNameItem(part[2]));
        const bool aliased = part.size() >= 2 && kwOf(part[part.size() - 2]) == Kw::As;
        if (!part.empty() && !star && !column && !aliased)
            rebuilt.push_back(Item::txt(QStringLiteral("AS \"Expr%1\"").arg(expr++)));
    }
    rebuilt.insert(rebuilt.end(), items.begin() + to, items.end());
    out.sql = render(rebuilt);
    return out;
}

Translation Translator::insert(Items& items)
{
    if (items.size() < 4 || kwOf(items[1]) != Kw::Into || !isNameItem(items[2]))
        syntaxError();
    const QString table = nameOf(items[2]);
    const QVector<ColumnInfo> columns = requireTable(table);

    struct Target {
        QString name;
        int type;
    };
    std::vector<Target> targets;
    size_t i = 3;
    bool listed = false;
    if (items[i].kind == Item::Group) {
        listed = true;
        for (const Items& part : splitTopLevel(items[i].kids, 0, int(items[i].kids.size()))) {
            if (part.empty() || !isNameItem(part.back()) ||
                !(part.size() == 1 || (part.size() == 3 && isNameItem(part[0]) && isOp(part[1], "."))))
                syntaxError();
            const QString name = nameOf(part.back());
            int type = -1;
            for (const ColumnInfo& c : columns)
                if (c.name.compare(name, Qt::CaseInsensitive) == 0)
                    type = c.type;
            if (type < 0)
                throw JetError::unknownInsertField(name);
            targets.push_back({name, type});
        }
        ++i;
    } else {
        for (const ColumnInfo& c : columns)
            targets.push_back({c.name, c.type});
    }
    if (i >= items.size())
        syntaxError();

    QString head = QStringLiteral("INSERT INTO ") + quoteName(table);
    if (listed) {
        QStringList names;
        for (const Target& t : targets)
            names << quoteName(t.name);
        head += QStringLiteral(" (") + names.join(QStringLiteral(", ")) + QLatin1Char(')');
    }

    Translation out;
    out.kind = StatementKind::Insert;
    out.table = table;
    if (kwOf(items[i]) == Kw::Values) {
        if (i + 2 != items.size() || items[i + 1].kind != Item::Group)
            syntaxError();
        Items& values = items[i + 1].kids;
        std::vector<Items> parts = splitTopLevel(values, 0, int(values.size()));
        if (parts.size() != targets.size())
            throw JetError::valuesCountMismatch();
        Item g;
        g.kind = Item::Group;
        for (size_t p = 0; p < parts.size(); ++p) {
            if (parts[p].empty())
                syntaxError();
            if (p > 0)
                g.kids.push_back(Item::txt(QStringLiteral(",")));
            rewrite(parts[p]);
            g.kids.push_back(assign(std::move(parts[p]), targets[p].type));
        }
        out.sql = head + QStringLiteral(" VALUES ") + render(Items{std::move(g)});
        return out;
    }
    if (kwOf(items[i]) != Kw::Select)
        syntaxError();
    Items query(std::make_move_iterator(items.begin() + qsizetype(i)), std::make_move_iterator(items.end()));
    handleSelectHead(query);
    rewrite(query);
    int from = 1;
    while (from < int(query.size()) && (kwOf(query[size_t(from)]) == Kw::Distinct || kwOf(query[size_t(from)]) == Kw::All))
        ++from;
    int to = from;
    while (to < int(query.size()) && kwOf(query[size_t(to)]) != Kw::From &&
           !(query[size_t(to)].kind == Item::Text && query[size_t(to)].text.startsWith(QLatin1String("LIMIT "))))
        ++to;
    std::vector<Items> parts = splitTopLevel(query, from, to);
    const bool star = parts.size() == 1 &&
                      ((parts[0].size() == 1 && isOp(parts[0][0], "*")) ||
                       (parts[0].size() == 3 && isOp(parts[0][1], ".") && isOp(parts[0][2], "*")));
    if (!star) {
        if (parts.size() != targets.size())
            throw JetError::valuesCountMismatch();
        Items rebuilt(std::make_move_iterator(query.begin()), std::make_move_iterator(query.begin() + from));
        for (size_t p = 0; p < parts.size(); ++p) {
            if (parts[p].empty())
                syntaxError();
            if (p > 0)
                rebuilt.push_back(Item::txt(QStringLiteral(",")));
            rebuilt.push_back(assign(std::move(parts[p]), targets[p].type));
        }
        rebuilt.insert(rebuilt.end(), std::make_move_iterator(query.begin() + to), std::make_move_iterator(query.end()));
        query = std::move(rebuilt);
    }
    out.sql = head + QLatin1Char(' ') + render(query);
    return out;
}

Translation Translator::update(Items& items)
{
    if (items.size() < 5 || !isNameItem(items[1]) || kwOf(items[2]) != Kw::Set)
        syntaxError();
    const QString table = nameOf(items[1]);
    const QVector<ColumnInfo> columns = requireTable(table);
    int where = 3;
    while (where < int(items.size()) && kwOf(items[size_t(where)]) != Kw::Where)
        ++where;

    QString sql = QStringLiteral("UPDATE ") + quoteName(table) + QStringLiteral(" SET ");
    std::vector<Items> parts = splitTopLevel(items, 3, where);
    for (size_t p = 0; p < parts.size(); ++p) {
        Items& part = parts[p];
        size_t eq = 0;
        while (eq < part.size() && !isOp(part[eq], "="))
            ++eq;
        if (eq == 0 || eq + 1 >= part.size() || !isNameItem(part[eq - 1]) ||
            !(eq == 1 || (eq == 3 && isNameItem(part[0]) && isOp(part[1], "."))))
            syntaxError();
        const QString column = nameOf(part[eq - 1]);
        Items expr(std::make_move_iterator(part.begin() + qsizetype(eq) + 1), std::make_move_iterator(part.end()));
        rewrite(expr);
        int type = -1;
        for (const ColumnInfo& c : columns)
            if (c.name.compare(column, Qt::CaseInsensitive) == 0)
                type = c.type;
        // An unknown column is left for SQLite to refuse, which the engine reports as Jet does.
        Item value = type >= 0 ? assign(std::move(expr), type) : Item::seq(std::move(expr));
        if (p > 0)
            sql += QStringLiteral(", ");
        sql += quoteName(column) + QStringLiteral(" = ") + render(Items{std::move(value)});
    }
    if (where < int(items.size())) {
        Items rest(std::make_move_iterator(items.begin() + where), std::make_move_iterator(items.end()));
        rewrite(rest);
        sql += QLatin1Char(' ') + render(rest);
    }
    Translation out;
    out.kind = StatementKind::Update;
    out.table = table;
    out.sql = sql;
    return out;
}

Translation Translator::remove(Items& items)
{
    size_t from = 1;
    while (from < items.size() && kwOf(items[from]) != Kw::From)
        ++from;
    if (from + 1 >= items.size() || !isNameItem(items[from + 1]))
        syntaxError();
    // DELETE * FROM t and DELETE t.* FROM t: SQLite takes no column list.
    for (size_t i = 1; i < from; ++i)
        if (!isOp(items[i], "*") && !isOp(items[i], ".") && !isNameItem(items[i]))
            syntaxError();
    Translation out;
    out.kind = StatementKind::Delete;
    out.table = nameOf(items[from + 1]);
    Items rest(std::make_move_iterator(items.begin() + qsizetype(from)), std::make_move_iterator(items.end()));
    rewrite(rest);
    out.sql = QStringLiteral("DELETE ") + render(rest);
    return out;
}

// One column of CREATE TABLE or ALTER TABLE ADD: the name, the Jet type, and what follows it.
QString Translator::columnDefinition(const Items& part)
{
    if (part.size() < 2 || !isNameItem(part[0]) || part[1].kind != Item::Tok || tk(part[1]).kind != T::Word)
        syntaxError();
    bool autoIncrement = false;
    const int type = typeForJetName(tk(part[1]).text.toUpper(), autoIncrement);
    if (type < 0)
        syntaxError();
    QString def = quoteName(nameOf(part[0])) + QLatin1Char(' ');
    def += type == 0 ? QStringLiteral("BLOB") : declarationForType(type, autoIncrement);
    size_t i = 2;
    if (i < part.size() && part[i].kind == Item::Group) // a size or a seed: SQLite keeps no size
        ++i;
    if (i < part.size() && kwOf(part[i]) == Kw::None && part[i].kind == Item::Tok &&
        tk(part[i]).text.compare(QLatin1String("PRECISION"), Qt::CaseInsensitive) == 0)
        ++i;
    while (i < part.size()) {
        const Kw k = kwOf(part[i]);
        if (k == Kw::With) { // WITH COMPRESSION, WITH COMP: nothing to SQLite
            i += 2;
            continue;
        }
        if (autoIncrement && k == Kw::Primary && i + 1 < part.size() && kwOf(part[i + 1]) == Kw::Key) {
            i += 2;
            continue;
        }
        if (autoIncrement && k == Kw::Constraint && i + 3 < part.size() && kwOf(part[i + 2]) == Kw::Primary) {
            i += 4;
            continue;
        }
        if (k == Kw::Default) {
            size_t e = i + 1;
            while (e < part.size()) {
                const Kw stop = kwOf(part[e]);
                if (stop == Kw::Not || stop == Kw::Null || stop == Kw::Primary || stop == Kw::Unique ||
                    stop == Kw::Constraint || stop == Kw::References || stop == Kw::With)
                    break;
                ++e;
            }
            // "DEFAULT NULL" stops at once on NULL: take it as the value.
            if (e == i + 1 && e < part.size() && kwOf(part[e]) == Kw::Null)
                ++e;
            if (e == i + 1)
                syntaxError();
            Items value(part.begin() + qsizetype(i) + 1, part.begin() + qsizetype(e));
            bool literal = false;
            if (value.size() == 1 && value[0].kind == Item::Tok) {
                const Token& t = tk(value[0]);
                literal = t.kind == T::String || t.kind == T::Number || t.kind == T::Quoted ||
                          (t.kind == T::Word && (t.kw == Kw::Null || t.kw == Kw::True || t.kw == Kw::False));
                if (t.kind == T::Date) {
                    // The stored text itself, so that the file needs none of our functions to insert.
                    def += QStringLiteral(" DEFAULT ") + quoteString(t.text);
                    i = e;
                    continue;
                }
            } else if (value.size() == 2 && (isOp(value[0], "-") || isOp(value[0], "+")) && value[1].kind == Item::Tok &&
                       tk(value[1]).kind == T::Number) {
                literal = true;
            }
            rewrite(value);
            def += QStringLiteral(" DEFAULT ") +
                   (literal ? render(value) : QStringLiteral("(") + render(value) + QStringLiteral(")"));
            i = e;
            continue;
        }
        Items rest(part.begin() + qsizetype(i), part.begin() + qsizetype(i) + 1);
        def += QLatin1Char(' ') + render(rest);
        ++i;
    }
    return def;
}

Translation Translator::createTable(Items& items)
{
    m_kind = StatementKind::CreateTable;
    if (items.size() != 4 || !isNameItem(items[2]) || items[3].kind != Item::Group)
        syntaxError();
    const QString table = nameOf(items[2]);
    QStringList defs;
    for (const Items& part : splitTopLevel(items[3].kids, 0, int(items[3].kids.size()))) {
        if (part.empty())
            syntaxError();
        const Kw first = kwOf(part[0]);
        if (first == Kw::Constraint || first == Kw::Primary || first == Kw::Unique || first == Kw::Foreign)
            defs << render(part);
        else
            defs << columnDefinition(part);
    }
    Translation out;
    out.kind = StatementKind::CreateTable;
    out.table = table;
    out.sql = QStringLiteral("CREATE TABLE ") + quoteName(table) + QStringLiteral(" (") + defs.join(QStringLiteral(", ")) +
              QLatin1Char(')');
    return out;
}

Translation Translator::createIndex(Items& items)
{
    m_kind = StatementKind::CreateIndex;
    size_t i = 1;
    bool unique = false;
    if (kwOf(items[i]) == Kw::Unique) {
        unique = true;
        ++i;
    }
    if (i + 4 >= items.size() || kwOf(items[i]) != Kw::Index || !isNameItem(items[i + 1]) || kwOf(items[i + 2]) != Kw::On ||
        !isNameItem(items[i + 3]) || items[i + 4].kind != Item::Group)
        syntaxError();
    const QString index = nameOf(items[i + 1]);
    const QString table = nameOf(items[i + 3]);
    QStringList cols;
    for (const Items& part : splitTopLevel(items[i + 4].kids, 0, int(items[i + 4].kids.size()))) {
        if (part.empty() || !isNameItem(part[0]) || part.size() > 2 ||
            (part.size() == 2 && kwOf(part[1]) != Kw::Asc && kwOf(part[1]) != Kw::Desc))
            syntaxError();
        cols << render(part);
    }
    // WITH PRIMARY makes the key; DISALLOW NULL and IGNORE NULL change no result here.
    for (size_t k = i + 5; k < items.size(); ++k)
        if (kwOf(items[k]) == Kw::Primary)
            unique = true;
    Translation out;
    out.kind = StatementKind::CreateIndex;
    out.table = table;
    out.sql = QStringLiteral("CREATE ") + (unique ? QStringLiteral("UNIQUE ") : QString()) + QStringLiteral("INDEX ") +
              quoteName(index) + QStringLiteral(" ON ") + quoteName(table) + QStringLiteral(" (") +
              cols.join(QStringLiteral(", ")) + QLatin1Char(')');
    return out;
}

Translation Translator::alterTable(Items& items)
{
    m_kind = StatementKind::AlterTable;
    if (items.size() < 5 || kwOf(items[1]) != Kw::Table || !isNameItem(items[2]))
        throw JetError::syntaxInAlterTable();
    const QString table = nameOf(items[2]);
    Translation out;
    out.kind = StatementKind::AlterTable;
    out.table = table;
    const Kw action = kwOf(items[3]);
    size_t i = 4;
    if (kwOf(items[i]) == Kw::Column)
        ++i;
    else if (kwOf(items[i]) == Kw::Constraint)
        throw JetError::invalidOperation(); // keys are made through the table's Indexes
    if (i >= items.size())
        throw JetError::syntaxInAlterTable();
    Items rest(items.begin() + qsizetype(i), items.end());
    if (action == Kw::Add) {
        out.sql = QStringLiteral("ALTER TABLE ") + quoteName(table) + QStringLiteral(" ADD COLUMN ") +
                  columnDefinition(rest);
        return out;
    }
    if (action == Kw::Drop) {
        if (rest.size() != 1 || !isNameItem(rest[0]))
            throw JetError::syntaxInAlterTable();
        out.sql = QStringLiteral("ALTER TABLE ") + quoteName(table) + QStringLiteral(" DROP COLUMN ") +
                  quoteName(nameOf(rest[0]));
        return out;
    }
    if (action == Kw::Alter)
        throw JetError::invalidOperation(); // a column's type changes through the table's Fields
    throw JetError::syntaxInAlterTable();
}

Translation Translator::drop(Items& items)
{
    Translation out;
    if (items.size() == 3 && kwOf(items[1]) == Kw::Table && isNameItem(items[2])) {
        out.kind = StatementKind::DropTable;
        out.table = nameOf(items[2]);
        out.sql = QStringLiteral("DROP TABLE ") + quoteName(out.table);
        return out;
    }
    if ((items.size() == 3 || (items.size() == 5 && kwOf(items[3]) == Kw::On && isNameItem(items[4]))) &&
        kwOf(items[1]) == Kw::Index && isNameItem(items[2])) {
        out.kind = StatementKind::DropIndex;
        out.table = items.size() == 5 ? nameOf(items[4]) : QString();
        out.sql = QStringLiteral("DROP INDEX ") + quoteName(nameOf(items[2]));
        return out;
    }
    syntaxError();
}

// Parentheses and the operators rewritten into calls (^ / \ Mod Like) each add a level to the tree
// that is built and written out recursively; far past what any real statement needs, a statement is
// refused rather than let run the stack out.
constexpr int kMaxNesting = 256;

Translation Translator::run()
{
    tokenize();

    int depth = 0, deepest = 0, chained = 0;
    for (const Token& t : m_tokens) {
        if (t.kind == T::Op) {
            if (t.text == QLatin1String("("))
                deepest = std::max(deepest, ++depth);
            else if (t.text == QLatin1String(")"))
                --depth;
            else if (t.text == QLatin1String("^") || t.text == QLatin1String("/") || t.text == QLatin1String("\\"))
                ++chained;
        } else if (t.kind == T::Word && (t.kw == Kw::Mod || t.kw == Kw::Like)) {
            ++chained;
        }
    }
    if (deepest > kMaxNesting || chained > kMaxNesting)
        throw JetError(3075, QStringLiteral("Syntax error in query expression: the statement nests too deeply "
                                            "(more than %1 levels of parentheses or operators).")
                                 .arg(kMaxNesting));

    if (m_tokens.empty())
        throw JetError::invalidStatement();

    const Kw first = m_tokens[0].kind == T::Op && m_tokens[0].text == QLatin1String("(") && m_tokens.size() > 1
                         ? m_tokens[1].kw
                         : m_tokens[0].kw;
    switch (first) {
    case Kw::Select: m_kind = StatementKind::Select; break;
    case Kw::Insert: m_kind = StatementKind::Insert; break;
    case Kw::Update: m_kind = StatementKind::Update; break;
    case Kw::Delete: m_kind = StatementKind::Delete; break;
    case Kw::Create:
    case Kw::Alter:
    case Kw::Drop: m_ddl = true; break;
    default: throw JetError::invalidStatement();
    }
    resolveQuotedNames();

    int pos = 0;
    Items items = buildItems(pos, false);
    switch (first) {
    case Kw::Select: return select(items);
    case Kw::Insert: return insert(items);
    case Kw::Update: return update(items);
    case Kw::Delete: return remove(items);
    case Kw::Create:
        if (items.size() > 1 && kwOf(items[1]) == Kw::Table)
            return createTable(items);
        if (items.size() > 1 && (kwOf(items[1]) == Kw::Index || kwOf(items[1]) == Kw::Unique))
            return createIndex(items);
        throw JetError::invalidStatement();
    case Kw::Alter: return alterTable(items);
    case Kw::Drop: return drop(items);
    default: throw JetError::invalidStatement();
    }
}

} // namespace

Translation translate(const QString& jetSql, const SchemaLookup& schema)
{
    return Translator(jetSql, schema).run();
}

} // namespace jet
