// Small databases made inside a test: a table of persons with fields of every type.
#pragma once

#include "engine/engine.h"
#include "engine/recordset.h"
#include "support/temp_dir.h"

#include <memory>
#include <string>

namespace folio::test {

// Creates `Personen` with Counter (Currency, index Counter), Markierung (Boolean),
// Name (Text(20)), Vorname (Text(20), zero length), Geburt (Date/Time), Alter (Byte),
// Zahl (Integer), Gross (Long), Wert (Double) and Memo (Memo, zero length).
inline void createPersonen(dao::Database& db) {
    using dao::TableDef;
    dao::TableDef t = dao::Database::CreateTableDef("Personen");
    t.AppendField(TableDef::CreateField("Counter", FieldType::Currency));
    t.AppendField(TableDef::CreateField("Markierung", FieldType::Boolean));
    t.AppendField(TableDef::CreateField("Name", FieldType::Text, 20));
    auto vorname = TableDef::CreateField("Vorname", FieldType::Text, 20);
    vorname.AllowZeroLength = true;
    t.AppendField(vorname);
    t.AppendField(TableDef::CreateField("Geburt", FieldType::DateTime));
    t.AppendField(TableDef::CreateField("Alter", FieldType::Byte));
    t.AppendField(TableDef::CreateField("Zahl", FieldType::Integer));
    t.AppendField(TableDef::CreateField("Gross", FieldType::Long));
    t.AppendField(TableDef::CreateField("Wert", FieldType::Double));
    auto memo = TableDef::CreateField("Memo", FieldType::Memo);
    memo.AllowZeroLength = true;
    t.AppendField(memo);
    t.AppendIndex(TableDef::CreateIndex("Counter", {"Counter"}));
    db.AppendTableDef(t);
}

inline void addPerson(dao::Database& db, long long counter, const std::string& name,
                      bool marked = false) {
    auto rs = db.OpenRecordset("Personen");
    rs->AddNew();
    rs->set("Counter", Value(RecordId(counter)));
    rs->set("Name", Value(name));
    rs->set("Markierung", Value(marked));
    rs->Update();
}

// A database file with the table Personen and the given persons (counter, name).
struct SmallDb {
    TempDir dir;
    std::string path = dir.file("test.SF6");
    std::unique_ptr<dao::Database> db;

    SmallDb() {
        db = dao::engine().workspace(0).CreateDatabase(path);
        createPersonen(*db);
    }
};

} // namespace folio::test
