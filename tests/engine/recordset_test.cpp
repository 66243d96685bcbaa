#include "engine/errors.h"
#include "engine/recordset.h"
#include "support/small_db.h"

#include <gtest/gtest.h>

using namespace folio;
using folio::test::SmallDb;

namespace {

template <class F> int errorOf(F&& f) {
    try {
        f();
    } catch (const Error& e) {
        return e.number();
    }
    return 0;
}

std::vector<long long> walk(dao::Recordset& rs) {
    std::vector<long long> ids;
    for (rs.MoveFirst(); !rs.Eof(); rs.MoveNext())
        ids.push_back(rs.get("Counter").toInt());
    return ids;
}

// Persons 30, 10, 20, 40 added in that order.
struct Four : SmallDb {
    Four() {
        test::addPerson(*db, 30, "Dreißig", true);
        test::addPerson(*db, 10, "Zehn", false);
        test::addPerson(*db, 20, "Zwanzig", true);
        test::addPerson(*db, 40, "Vierzig", false);
    }
};

} // namespace

TEST(Recordset, TableCursorWalksInIndexOrderAndSeeks) {
    Four s;
    auto rs = s.db->OpenRecordset("Personen", dao::RecordsetType::Table);
    EXPECT_EQ(walk(*rs), (std::vector<long long>{30, 10, 20, 40})); // no index: as stored
    EXPECT_EQ(rs->RecordCount(), 4);
    EXPECT_EQ(errorOf([&] { rs->Seek("=", Value(RecordId(10))); }), err::InvalidWithoutIndex);

    rs->Index("counter");
    EXPECT_EQ(walk(*rs), (std::vector<long long>{10, 20, 30, 40}));
    rs->Seek("=", Value(RecordId(20)));
    ASSERT_FALSE(rs->NoMatch());
    EXPECT_EQ(rs->get("Name").text(), "Zwanzig");
    rs->MoveNext(); // goes on in index order from the row found
    EXPECT_EQ(rs->get("Counter").toInt(), 30);
    rs->Seek("=", Value(RecordId(25)));
    EXPECT_TRUE(rs->NoMatch());
    EXPECT_TRUE(rs->Eof());
    EXPECT_EQ(errorOf([&] { rs->get("Name"); }), err::NoCurrentRecord);
    rs->Seek(">=", Value(RecordId(25)));
    EXPECT_EQ(rs->get("Counter").toInt(), 30);
    rs->Seek("<", Value(RecordId(25)));
    EXPECT_EQ(rs->get("Counter").toInt(), 20);
    rs->Seek("=", Value("40")); // a number as text finds the number
    EXPECT_FALSE(rs->NoMatch());

    rs->MoveLast();
    EXPECT_EQ(rs->get("Counter").toInt(), 40);
    rs->MoveNext();
    EXPECT_TRUE(rs->Eof());
    EXPECT_EQ(errorOf([&] { rs->MoveNext(); }), err::NoCurrentRecord);
    rs->MoveLast();
    rs->MovePrevious();
    EXPECT_EQ(rs->get("Counter").toInt(), 30);

    EXPECT_EQ(errorOf([&] { rs->Index("Name"); }), err::ItemNotFound);
    EXPECT_EQ(errorOf([&] { rs->FindFirst("Counter = 10"); }), err::OperationNotSupported);

    s.db->Execute("DELETE * FROM Personen");
    auto empty = s.db->OpenRecordset("Personen");
    EXPECT_TRUE(empty->Eof());
    EXPECT_EQ(errorOf([&] { empty->MoveFirst(); }), err::NoCurrentRecord);
}

TEST(Recordset, FieldsByNameInAnyCaseWithTheirTypes) {
    SmallDb s;
    auto rs = s.db->OpenRecordset("Personen");
    rs->AddNew();
    rs->set("COUNTER", Value(RecordId::fromUnits(70005)));
    rs->set("markierung", Value(1));
    rs->set("Name", Value("Ölschläger"));
    rs->set("Vorname", Value(""));
    rs->set("Geburt", Value(DateTime::fromDate(1848, 3, 18)));
    rs->set("Alter", Value("77"));
    rs->set("Zahl", Value(-32768));
    rs->set("Gross", Value(2000000000));
    rs->set("Wert", Value(0.25));
    rs->Update();
    rs->Requery();

    EXPECT_EQ(rs->get("counter").toRecordId(), RecordId::fromUnits(70005));
    EXPECT_EQ(rs->get("counter").kind(), Value::Kind::Currency);
    EXPECT_EQ(rs->get("Markierung"), Value(true));
    EXPECT_EQ(rs->get("Markierung").toInt(), -1);
    EXPECT_EQ(rs->get("NAME").text(), "Ölschläger");
    EXPECT_EQ(rs->get("Vorname"), Value("")); // the empty text, not Null
    EXPECT_TRUE(rs->get("Memo").isNull());    // never written: Null
    EXPECT_EQ(rs->get("Geburt").toDate().year(), 1848);
    EXPECT_EQ(rs->get("Alter"), Value(77));
    EXPECT_EQ(rs->get("Zahl"), Value(-32768));
    EXPECT_EQ(rs->get("Wert"), Value(0.25));
    EXPECT_EQ((*rs)["gross"].toInt(), 2000000000);
    EXPECT_EQ(errorOf([&] { rs->get("Nachname"); }), err::ItemNotFound);
    EXPECT_EQ(s.db->OpenRecordset("SELECT Counter FROM Personen WHERE Markierung = True ;")
                  ->RecordCount(),
              1);
}

TEST(Recordset, WritesRefuseWhatTheFieldCannotHold) {
    SmallDb s;
    test::addPerson(*s.db, 1, "Huber");
    auto rs = s.db->OpenRecordset("Personen");
    EXPECT_EQ(errorOf([&] { rs->set("Name", Value("x")); }), err::UpdateWithoutEdit);
    EXPECT_EQ(errorOf([&] { rs->Update(); }), err::UpdateWithoutEdit);
    rs->Edit();
    EXPECT_EQ(errorOf([&] { rs->set("Alter", Value(256)); }), err::Overflow);
    EXPECT_EQ(errorOf([&] { rs->set("Zahl", Value(40000)); }), err::Overflow);
    EXPECT_EQ(errorOf([&] { rs->set("Name", Value(std::string(21, 'x'))); }), err::FieldTooSmall);
    EXPECT_NO_THROW(rs->set("Name", Value("Ääääääääääääääääääää"))); // 20 characters
    EXPECT_EQ(errorOf([&] { rs->set("Name", Value("")); }), err::ZeroLengthString);
    EXPECT_EQ(errorOf([&] { rs->set("Gross", Value("viel")); }), err::ConversionError);
    try {
        rs->set("Alter", Value(-1));
    } catch (const DatabaseError& e) {
        EXPECT_EQ(e.field(), "Alter");
        EXPECT_NE(std::string(e.what()).find("Alter"), std::string::npos);
    }
    rs->set("Name", Value(nullptr)); // Null is always allowed
    rs->Update();
    EXPECT_TRUE(rs->get("Name").isNull());
}

TEST(Recordset, DynasetFixesItsRowsButShowsTheirChanges) {
    Four s;
    auto marked = s.db->OpenRecordset("SELECT * FROM Personen WHERE Markierung = TRUE ORDER BY "
                                      "Counter");
    EXPECT_EQ(marked->Type(), dao::RecordsetType::Dynaset);
    EXPECT_EQ(marked->get("Counter").toInt(), 20);

    // Changes through another cursor, a new marked row, and a row that no longer matches.
    auto table = s.db->OpenRecordset("Personen");
    table->Index("Counter");
    table->Seek("=", Value(RecordId(20)));
    table->Edit();
    table->set("Name", Value("Zwanzig neu"));
    table->set("Markierung", Value(false));
    table->Update();
    test::addPerson(*s.db, 50, "Fünfzig", true);

    EXPECT_EQ(marked->get("Name").text(), "Zwanzig neu");       // the current row shows the change
    EXPECT_EQ(walk(*marked), (std::vector<long long>{20, 30})); // no new row, none dropped
    EXPECT_EQ(marked->RecordCount(), 2);
    marked->Requery();
    EXPECT_EQ(walk(*marked), (std::vector<long long>{30, 50}));

    // A row deleted after opening can't be read.
    auto all = s.db->OpenRecordset("SELECT * FROM Personen ORDER BY Counter");
    s.db->Execute("DELETE * FROM Personen WHERE Counter = 10");
    EXPECT_EQ(errorOf([&] { all->get("Name"); }), err::RecordDeleted);
    all->MoveNext();
    EXPECT_EQ(all->get("Counter").toInt(), 20);
}

TEST(Recordset, DynasetFindsEditsAndAdds) {
    Four s;
    auto rs = s.db->OpenRecordset("Select Counter, Name FROM Personen ORDER BY Counter");
    rs->FindFirst("Name LIKE 'Z*'");
    ASSERT_FALSE(rs->NoMatch());
    EXPECT_EQ(rs->get("Counter").toInt(), 10);
    rs->FindNext("Name LIKE 'Z*'");
    EXPECT_EQ(rs->get("Counter").toInt(), 20);
    rs->FindNext("Name LIKE 'Z*'");
    EXPECT_TRUE(rs->NoMatch());
    EXPECT_EQ(rs->get("Counter").toInt(), 20); // a failed search doesn't move
    rs->FindFirst("Counter = 40");
    EXPECT_EQ(rs->get("Name").text(), "Vierzig");

    rs->Edit();
    rs->set("name", Value("Vier Zehner"));
    rs->Update();
    EXPECT_EQ(rs->get("Name").text(), "Vier Zehner");
    rs->AddNew();
    rs->set("Counter", Value(RecordId(60)));
    rs->set("Name", Value("Sechzig"));
    rs->Update();
    EXPECT_EQ(rs->get("Counter").toInt(), 40); // the current row stays
    rs->MoveLast();
    EXPECT_EQ(rs->get("Counter").toInt(), 60); // a row added here joins at the end
    EXPECT_EQ(s.db->OpenRecordset("Personen")->RecordCount(), 5);

    // Rows that stand for no single row of a table are read-only.
    auto distinct =
        s.db->OpenRecordset("SELECT DISTINCT Markierung FROM Personen WHERE Counter < 60");
    EXPECT_EQ(distinct->RecordCount(), 2);
    EXPECT_EQ(errorOf([&] { distinct->Edit(); }), err::ReadOnly);
    auto counted = s.db->OpenRecordset("SELECT count(*) AS n FROM Personen");
    EXPECT_EQ(counted->get("n").toInt(), 5);
    auto byName = s.db->OpenRecordset("Personen", dao::RecordsetType::Dynaset);
    byName->FindFirst("Counter = 60");
    EXPECT_EQ(byName->get("Name").text(), "Sechzig");
    EXPECT_EQ(errorOf([&] { s.db->OpenRecordset("SELECT * FROM Nirgends"); }), err::SyntaxError);
    EXPECT_EQ(errorOf([&] { s.db->OpenRecordset("Nirgends"); }), err::TableNotFound);
}

TEST(Recordset, CursorsSurviveSchemaChangesAndRollbacks) {
    Four s;
    auto rs = s.db->OpenRecordset("Personen");
    rs->Index("Counter");
    rs->MoveFirst();
    rs->MoveNext(); // on 20, in the middle of a walk
    auto occu = dao::TableDef::CreateField("OCCU", FieldType::Text, 255);
    occu.AllowZeroLength = true;
    s.db->tableDef("Personen").AppendField(occu);
    s.db->tableDef("Personen").DeleteField("Wert");
    EXPECT_EQ(rs->get("Counter").toInt(), 20);
    EXPECT_TRUE(rs->get("OCCU").isNull());
    EXPECT_EQ(errorOf([&] { rs->get("Wert"); }), err::ItemNotFound);
    rs->MoveNext();
    EXPECT_EQ(rs->get("Counter").toInt(), 30);

    s.db->BeginTrans();
    rs->Edit();
    rs->set("Name", Value("Falsch"));
    rs->Update();
    s.db->Rollback();
    EXPECT_EQ(rs->get("Name").text(), "Dreißig");
    rs->MoveNext();
    EXPECT_EQ(rs->get("Counter").toInt(), 40);
}

TEST(Recordset, TheSameQueryWithOtherNumbers) {
    SmallDb s;
    for (int i = 1; i <= 5; ++i)
        test::addPerson(*s.db, i, "P" + std::to_string(i), i % 2 == 1);
    // Opened many times, also while an earlier one is still open: each gets its own rows.
    auto first = s.db->OpenRecordset("SELECT * FROM Personen WHERE Counter = 1");
    for (int round = 0; round < 3; ++round)
        for (int i = 1; i <= 5; ++i) {
            auto rs =
                s.db->OpenRecordset("SELECT * FROM Personen WHERE Counter = " + std::to_string(i));
            ASSERT_FALSE(rs->Eof());
            EXPECT_EQ(rs->get("Name").text(), "P" + std::to_string(i));
            auto distinct = s.db->OpenRecordset(
                "SELECT DISTINCT Markierung FROM Personen WHERE Counter <= " + std::to_string(i));
            EXPECT_EQ(distinct->RecordCount(), i == 1 ? 1 : 2);
        }
    EXPECT_EQ(first->get("Name").text(), "P1");
    // A schema change in between: the query is prepared anew.
    auto f = dao::TableDef::CreateField("Neu", FieldType::Long);
    s.db->tableDef("Personen").AppendField(f);
    auto rs = s.db->OpenRecordset("SELECT * FROM Personen WHERE Counter = 2");
    EXPECT_TRUE(rs->hasField("Neu"));
    EXPECT_EQ(rs->get("Name").text(), "P2");
}
