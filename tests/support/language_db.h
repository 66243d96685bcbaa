// A small language database made inside a test.
#pragma once

#include "engine/engine.h"
#include "engine/recordset.h"

#include <string>
#include <tuple>
#include <vector>

namespace folio::test {

struct Text {
    long number;
    Value deutsch;
    Value english;
};

inline void createLanguageDb(const std::string& path, const std::vector<Text>& texts) {
    auto db = dao::engine().workspace(0).CreateDatabase(path);
    dao::TableDef t = dao::Database::CreateTableDef("Languages");
    t.AppendField(dao::TableDef::CreateField("Counter", FieldType::Long));
    for (const char* language : {"Deutsch", "English"}) {
        auto f = dao::TableDef::CreateField(language, FieldType::Memo);
        f.AllowZeroLength = true;
        t.AppendField(f);
    }
    t.AppendIndex(dao::TableDef::CreateIndex("Counter", {"Counter"}));
    db->AppendTableDef(t);
    auto rs = db->OpenRecordset("Languages");
    for (const Text& text : texts) {
        rs->AddNew();
        rs->set("Counter", Value(text.number));
        rs->set("Deutsch", text.deutsch);
        rs->set("English", text.english);
        rs->Update();
    }
}

} // namespace folio::test
