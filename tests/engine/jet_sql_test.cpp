#include "engine/errors.h"
#include "engine/jet_sql.h"

#include <gtest/gtest.h>

using folio::jet::analyzeSelect;
using folio::jet::translate;

TEST(JetSql, TranslatesTheDialectOutsideStringLiterals) {
    EXPECT_EQ(translate("Update Daten Set Markierung = 0 WHERE Lebt = TRUE ;"),
              "Update Daten Set Markierung = 0 WHERE Lebt = -1 ;");
    EXPECT_EQ(translate("UPDATE Daten SET OnlineabfrageDB = False"),
              "UPDATE Daten SET OnlineabfrageDB = 0");
    EXPECT_EQ(translate("DELETE * FROM navigation ;"), "DELETE  FROM navigation ;");
    EXPECT_EQ(translate("delete   *   from x"), "delete      from x");
    EXPECT_EQ(translate("SELECT a * 2 FROM x"), "SELECT a * 2 FROM x");
    // Words inside strings and brackets stay as they are.
    EXPECT_EQ(translate("SELECT * FROM t WHERE a = 'TRUE' AND [False] = 1"),
              "SELECT * FROM t WHERE a = 'TRUE' AND [False] = 1");
    EXPECT_EQ(translate("SELECT * FROM t WHERE a = 'it''s #1#'"),
              "SELECT * FROM t WHERE a = 'it''s #1#'");
    // Strings in double quotes become SQL strings.
    EXPECT_EQ(translate("SELECT * FROM t WHERE a = \"x'y\"\"z\""),
              "SELECT * FROM t WHERE a = 'x''y\"z'");
    // A field named Index, and "&" joining texts.
    EXPECT_EQ(translate("SELECT Index, Mainindex FROM Ereignisdb WHERE Mainindex > -1"),
              "SELECT \"Index\", Mainindex FROM Ereignisdb WHERE Mainindex > -1");
    EXPECT_EQ(translate("CREATE INDEX x ON t (a)"), "CREATE INDEX x ON t (a)");
    EXPECT_EQ(translate("SELECT a & 'x' FROM t"), "SELECT a || 'x' FROM t");
    // A number that runs into a word is two tokens.
    EXPECT_EQ(translate("SELECT * FROM t WHERE ( Quelle = 5OR ZIEL =  5) ;"),
              "SELECT * FROM t WHERE ( Quelle = 5 OR ZIEL =  5) ;");
    EXPECT_EQ(translate("SELECT [Daten].[Counter] FROM [Daten]"),
              "SELECT [Daten].[Counter] FROM [Daten]");
}

TEST(JetSql, DateLiterals) {
    EXPECT_EQ(translate("SELECT * FROM t WHERE d = #1-1-4000#"),
              "SELECT * FROM t WHERE d = 767011");
    EXPECT_EQ(translate("SELECT * FROM t WHERE d >= #12/31/1899#"), "SELECT * FROM t WHERE d >= 1");
    EXPECT_EQ(translate("SELECT * FROM t WHERE d = #1-1-1900 12:00#"),
              "SELECT * FROM t WHERE d = 2.5");
    EXPECT_EQ(translate("SELECT * FROM t WHERE d = #2000-02-29#"),
              "SELECT * FROM t WHERE d = 36585");
    // Years of one or two digits: 00-29 in this century, 30-99 in the last; four digits
    // stand as written.
    EXPECT_EQ(translate("SELECT * FROM t WHERE d = #1-1-00#"), "SELECT * FROM t WHERE d = 36526");
    EXPECT_EQ(translate("SELECT * FROM t WHERE d = #12-31-29#"), "SELECT * FROM t WHERE d = 47483");
    EXPECT_EQ(translate("SELECT * FROM t WHERE d = #1-1-30#"), "SELECT * FROM t WHERE d = 10959");
    EXPECT_EQ(translate("SELECT * FROM t WHERE d > #2-29-96# AND d < #1-1-5#"),
              "SELECT * FROM t WHERE d > 35124 AND d < 38353");
    EXPECT_EQ(translate("SELECT * FROM t WHERE d = #1-1-0030#"),
              "SELECT * FROM t WHERE d = -683001");
    EXPECT_THROW(translate("SELECT * FROM t WHERE d = #13-1-2000#"), folio::DatabaseError);
    EXPECT_THROW(translate("SELECT * FROM t WHERE d = #hello#"), folio::DatabaseError);
    EXPECT_THROW(translate("SELECT * FROM t WHERE d = #1-1-2000"), folio::DatabaseError);
}

TEST(JetSql, RefusesASecondStatementAndUnterminatedLiterals) {
    EXPECT_NO_THROW(translate("UPDATE t SET a = 1 ; "));
    EXPECT_NO_THROW(translate("UPDATE t SET a = ';' ;;"));
    try {
        translate("UPDATE t SET a = 1; DELETE * FROM t");
        FAIL() << "two statements passed";
    } catch (const folio::DatabaseError& e) {
        EXPECT_EQ(e.number(), folio::err::CharactersAfterStatement);
        EXPECT_NE(std::string(e.what()).find("DELETE * FROM t"), std::string::npos);
    }
    // The store ends a statement at any ";", in parentheses too.
    EXPECT_THROW(translate("SELECT (1; DELETE * FROM t)"), folio::DatabaseError);
    // Nor behind what the store would take for a comment and the dialect doesn't: there the
    // quote opens a text that holds the ";".
    EXPECT_EQ(translate("SELECT 1 /* \"x */ ; DELETE * FROM t; \""),
              "SELECT 1 / * 'x */ ; DELETE * FROM t; '");
    EXPECT_EQ(translate("SELECT 2--1, 3-(-1), 4-TRUE, 5-#12-30-1899#, 6-#12-29-1899#"),
              "SELECT 2- -1, 3-(-1), 4- -1, 5-0, 6- -1");
    // Nor does anything hide behind a NUL, where the store stops reading.
    EXPECT_THROW(translate(std::string("SELECT 1\0; DELETE * FROM t", 26)), folio::DatabaseError);
    EXPECT_THROW(translate("SELECT 'abc FROM t"), folio::DatabaseError);
    EXPECT_THROW(translate("SELECT [abc FROM t"), folio::DatabaseError);
}

TEST(JetSql, ShapeOfSelects) {
    auto s = analyzeSelect("Select * FROM Ereignis_DS WHERE Ziel = 5 ;");
    EXPECT_TRUE(s.isSelect);
    EXPECT_TRUE(s.updatable);
    EXPECT_EQ(s.table, "Ereignis_DS");
    EXPECT_EQ(s.qualifier, "Ereignis_DS");
    EXPECT_EQ(s.selectList, "*");
    EXPECT_EQ(s.rest, "WHERE Ziel = 5");

    s = analyzeSelect("SELECT d.Counter, d.GIVN FROM [Daten] AS d ORDER BY d.GIVN");
    EXPECT_TRUE(s.updatable);
    EXPECT_EQ(s.table, "Daten");
    EXPECT_EQ(s.qualifier, "d");
    EXPECT_EQ(s.fromTable, "FROM [Daten] AS d ");
    EXPECT_EQ(s.rest, "ORDER BY d.GIVN");

    s = analyzeSelect("SELECT Counter FROM Daten d WHERE x IN (SELECT y FROM z, w)");
    EXPECT_TRUE(s.updatable);
    EXPECT_EQ(s.qualifier, "d");

    EXPECT_FALSE(analyzeSelect("Select DISTINCT Ziel FROM Ereignis_DS WHERE Quelle = 1").updatable);
    EXPECT_FALSE(analyzeSelect("SELECT count(*) FROM Daten").updatable);
    EXPECT_FALSE(analyzeSelect("SELECT a FROM x, y").updatable);
    EXPECT_FALSE(analyzeSelect("SELECT a FROM x INNER JOIN y ON x.a = y.a").updatable);
    EXPECT_FALSE(analyzeSelect("SELECT Art FROM Ereignis GROUP BY Art").updatable);
    EXPECT_FALSE(analyzeSelect("UPDATE x SET a = 1").isSelect);
}

TEST(JetSql, NumbersBehindComparisonsBecomeParameters) {
    auto p =
        folio::jet::parameterize("Select * FROM Ereignis_DS WHERE Ziel =  17 AND Art > -2.5 ;");
    EXPECT_EQ(p.key, "Select * FROM Ereignis_DS WHERE Ziel =  ? AND Art > ? ;");
    ASSERT_EQ(p.numbers.size(), 2u);
    EXPECT_EQ(p.numbers[0], 17);
    EXPECT_TRUE(p.whole[0]);
    EXPECT_EQ(p.numbers[1], -2.5);
    EXPECT_FALSE(p.whole[1]);
    // Numbers elsewhere, in strings and dates stay in the text.
    p = folio::jet::parameterize("SELECT TOP 5 a - 1 FROM t WHERE b = 'x = 3' ORDER BY 1");
    EXPECT_EQ(p.key, "SELECT TOP 5 a - 1 FROM t WHERE b = 'x = 3' ORDER BY 1");
    EXPECT_TRUE(p.numbers.empty());
}
