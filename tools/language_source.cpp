#include "language_source.h"

#include "database/schema/schema.h"
#include "engine/engine.h"
#include "engine/recordset.h"

#include <filesystem>
#include <map>

namespace fs = std::filesystem;

namespace folio::language_source {

namespace {

// The key number of a row: digits only, from 1 to the largest Long.
bool parseNumber(std::string_view cell, int& number) {
    return tsv::parseInteger(cell, number) && number > 0;
}

void createLanguagesTable(dao::Database& db) {
    using dao::TableDef;
    TableDef table = dao::Database::CreateTableDef("Languages");
    table.AppendField(TableDef::CreateField("Counter", FieldType::Long));
    for (const char* language : {"Deutsch", "English"}) {
        dao::FieldDef field = TableDef::CreateField(language, FieldType::Memo);
        field.AllowZeroLength = true;
        table.AppendField(field);
    }
    dao::IndexDef index = TableDef::CreateIndex("Counter", {"Counter"});
    index.Unique = true;
    table.AppendIndex(index);
    db.AppendTableDef(table);
}

} // namespace

std::vector<Row> parseTexts(std::string_view text, const std::string& fileName) {
    std::vector<Row> rows;
    std::map<int, int> lineOfNumber;
    for (const tsv::Line& line : tsv::dataLines(text, fileName)) {
        const std::vector<std::string_view>& cells = line.cells;
        if (cells.size() != 3)
            throw SourceError(fileName, line.number,
                              "expected 3 columns divided by tabs (number, German, English), "
                              "found " +
                                  std::to_string(cells.size()));
        Row row;
        row.line = line.number;
        if (!parseNumber(cells[0], row.number))
            throw SourceError(fileName, line.number,
                              "the key \"" + std::string(cells[0]) +
                                  "\" isn't a whole number from 1 to 2147483647");
        const auto [first, isNew] = lineOfNumber.emplace(row.number, line.number);
        if (!isNew)
            throw SourceError(fileName, line.number,
                              "the key " + std::to_string(row.number) +
                                  " was given before, in line " + std::to_string(first->second));
        row.german = tsv::unescape(cells[1], "German", fileName, line.number);
        row.english = tsv::unescape(cells[2], "English", fileName, line.number);
        rows.push_back(std::move(row));
    }
    return rows;
}

std::vector<Row> readTexts(const std::string& path) {
    return parseTexts(tsv::readFile(path), path);
}

void buildLanguageDatabase(const std::vector<Row>& rows, const std::string& path) {
    schema::writeDatabase(path, {}, [&](dao::Database& db) {
        createLanguagesTable(db);
        std::unique_ptr<dao::Recordset> rs = db.OpenRecordset("Languages");
        for (const Row& row : rows) {
            rs->AddNew();
            rs->set("Counter", Value(row.number));
            rs->set("Deutsch", Value(row.german));
            rs->set("English", Value(row.english));
            rs->Update();
        }
    });
}

} // namespace folio::language_source
