// The SQL dialect of the family-tree files, and its translation into the dialect of the
// store. Family-tree code writes SQL as its files have always been queried: TRUE and FALSE
// as -1 and 0, "DELETE * FROM", date literals "#m-d-yyyy#", strings in double or single
// quotes, "[Table].[Field]" names, "&" joining texts, and LIKE with its own pattern
// language (implemented as a function of the connection, see jet_like.h). A text holding
// more than one statement is refused.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace folio::jet {

enum class TokenKind {
    Space,  // blanks, tabs, line breaks
    Word,   // identifier or keyword
    Quoted, // [name], `name`
    String, // 'text' or "text"
    Number,
    Date,   // #...#
    Symbol, // operators, parentheses, commas, semicolons
};

struct Token {
    TokenKind kind;
    std::string_view text;
};

// Splits SQL text into tokens. Throws folio::DatabaseError on an unterminated literal.
std::vector<Token> tokenize(std::string_view sql);

// The SQL for the store. Throws folio::DatabaseError (naming the statement) on a second
// statement, a NUL character, a malformed date literal or an unterminated literal.
std::string translate(std::string_view sql);

// The date number (days since 1899-12-30) of the inside of a date literal: "m-d-yyyy",
// "m/d/yyyy" or "yyyy-m-d", each optionally followed by a time "h:mm[:ss]"; a year of one
// or two digits ("m-d-yy") is 2000-2029 for 00-29 and 1930-1999 for 30-99. Throws
// folio::DatabaseError when the text is no date.
double dateLiteralValue(std::string_view inside);

// SQL text with the numbers that follow a comparison taken out as parameters ("Quelle = 17"
// becomes "Quelle = ?" and 17): the key under which a query is prepared once and run with
// other numbers.
struct Parameterized {
    std::string key;
    std::vector<double> numbers;
    std::vector<bool> whole; // the number was written without a decimal point
};
Parameterized parameterize(std::string_view sql);

// What a recordset needs to know of a translated SELECT: whether its rows stand for rows
// of one table (so that they can be written back), and the pieces to re-read one row.
struct SelectShape {
    bool isSelect = false;
    bool updatable = false; // one base table; no DISTINCT, GROUP BY, aggregate, join, union
    std::string table;      // the base table, as named in the FROM clause, unquoted
    std::string qualifier;  // how the statement refers to it: its alias, else its name
    std::string selectList; // text between SELECT and FROM
    std::string fromTable;  // "FROM <table> [AS alias]"
    std::string rest;       // everything behind the table: WHERE ..., ORDER BY ...
};

SelectShape analyzeSelect(std::string_view translatedSql);

// The name of a table that `text` stands for when it is a bare name ("Daten", "[Daten]"),
// else an empty string (it is SQL then).
std::string bareTableName(std::string_view text);

} // namespace folio::jet
