#include "catalogue_source.h"

#include "database/schema/schema.h"
#include "engine/engine.h"
#include "engine/recordset.h"

#include <filesystem>
#include <map>

namespace fs = std::filesystem;

namespace folio::catalogue_source {

namespace {

constexpr std::size_t ColumnCount = 18;
constexpr int IntegerMax = 32767; // the largest value of an Integer field

const schema::SideDatabase& catalogueDatabase() {
    for (const schema::SideDatabase& side : schema::sideDatabases())
        if (side.file == schema::EventCatalogueFile)
            return side;
    throw Error(0, "the schema describes no Ereignis.mdb");
}

// The tables of both languages have the same fields; the first one stands for them.
const schema::Field& catalogueField(std::string_view name) {
    const schema::Field* field = catalogueDatabase().tables.front().field(name);
    if (!field)
        throw Error(0, "the event catalogue has no field " + std::string(name));
    return *field;
}

// The reading of one line, with the file and the line for its messages.
class LineReader {
public:
    LineReader(const tsv::Line& line, const std::string& fileName)
        : cells_(line.cells), fileName_(fileName), line_(line.number) {}

    [[noreturn]] void fail(const std::string& problem) const {
        throw SourceError(fileName_, line_, problem);
    }

    int number(std::size_t column, std::string_view name, int low, int high) const {
        int value = 0;
        if (!tsv::parseInteger(cells_[column], value) || value < low || value > high)
            fail("the " + std::string(name) + " \"" + std::string(cells_[column]) +
                 "\" isn't a whole number from " + std::to_string(low) + " to " +
                 std::to_string(high));
        return value;
    }

    // A text cell for the catalogue field `field`; `name` says which cell in a message.
    std::string text(std::size_t column, std::string_view field, std::string_view name) const {
        std::string value = tsv::unescape(cells_[column], name, fileName_, line_);
        const int size = catalogueField(field).size;
        const std::size_t length = tsv::characterCount(value);
        if (length > static_cast<std::size_t>(size))
            fail("the " + std::string(name) + " text is " + std::to_string(length) +
                 " characters long, the field holds " + std::to_string(size));
        return value;
    }

    std::string gedtag(std::size_t column) const {
        std::string tag = text(column, "GedTAG", "gedtag");
        for (char c : tag)
            if (!(c >= 'A' && c <= 'Z') && !(c >= '0' && c <= '9') && c != '_')
                fail("the gedtag \"" + tag +
                     "\" isn't a GEDCOM tag (capital letters, digits and _, or nothing)");
        return tag;
    }

    Texts texts(std::size_t first, std::string_view language) const {
        const std::string prefix = std::string(language) + " ";
        Texts t;
        t.art = text(first, "Art", prefix + "Art");
        t.textVor = text(first + 1, "Text_vor", prefix + "Text_vor");
        t.textNach = text(first + 2, "Text_nach", prefix + "Text_nach");
        t.ereignisgrund = text(first + 3, "Ereignisgrund", prefix + "Ereignisgrund");
        if (t.art.find_first_not_of(' ') == std::string::npos)
            fail("the " + prefix + "Art is empty: a kind needs a name");
        return t;
    }

private:
    const std::vector<std::string_view>& cells_;
    const std::string& fileName_;
    int line_;
};

Row readRow(const tsv::Line& line, const std::string& fileName) {
    if (line.cells.size() != ColumnCount)
        throw SourceError(fileName, line.number,
                          "expected " + std::to_string(ColumnCount) +
                              " columns divided by tabs, found " +
                              std::to_string(line.cells.size()));
    const LineReader read(line, fileName);
    Row row;
    row.line = line.number;
    row.index = read.number(0, "Index", 0, IntegerMax);
    row.gedtag = read.gedtag(1);
    row.maxhauptpersonen = read.number(2, "maxhauptpersonen", 1, 2);
    row.mainindex = read.number(3, "mainindex", -1, IntegerMax);
    row.ortPos = read.number(4, "OrtPos", 0, 1);
    row.causAsTag = read.number(5, "CAUSasTAG", 0, 1) == 1;
    row.level = read.number(6, "Level", -IntegerMax - 1, IntegerMax);
    row.sortindex = read.number(7, "Sortindex", -IntegerMax - 1, IntegerMax);
    row.personenarten = read.text(8, "Personenarten", "Personenarten");
    row.txtzeichen = read.text(9, "txtzeichen", "txtzeichen");
    row.german = read.texts(10, "German");
    row.english = read.texts(14, "English");
    return row;
}

// Each kind's Index is its place in the sequence 0, 1, 2 ..., so that the numbers have no gap.
void checkSequence(const Row& row, std::size_t expected, const std::map<int, int>& lineOfIndex,
                   const std::string& fileName) {
    if (const auto before = lineOfIndex.find(row.index); before != lineOfIndex.end())
        throw SourceError(fileName, row.line,
                          "the Index " + std::to_string(row.index) + " was given before, in line " +
                              std::to_string(before->second));
    if (row.index != static_cast<int>(expected))
        throw SourceError(fileName, row.line,
                          "expected the Index " + std::to_string(expected) + ", found " +
                              std::to_string(row.index) +
                              ": the kinds are numbered from 0 without a gap, in the order of "
                              "the lines");
}

// Every mainindex names a kind, and no chain of them comes back to a kind it has passed. The
// rows stand at their Index.
void checkChains(const std::vector<Row>& rows, const std::string& fileName) {
    for (const Row& row : rows)
        if (row.mainindex >= static_cast<int>(rows.size()))
            throw SourceError(fileName, row.line,
                              "the mainindex " + std::to_string(row.mainindex) +
                                  " names no kind of the catalogue");
    for (const Row& row : rows) {
        std::string chain = std::to_string(row.index);
        int kind = row.mainindex;
        // A chain without a circle ends within as many steps as there are kinds; one that
        // doesn't come back to this row is reported at a row on its circle.
        for (std::size_t step = 0; kind != -1 && step < rows.size(); ++step) {
            chain += " -> " + std::to_string(kind);
            if (kind == row.index)
                throw SourceError(fileName, row.line,
                                  "the mainindex chain comes back to the kind " +
                                      std::to_string(row.index) + ": " + chain);
            kind = rows[kind].mainindex;
        }
    }
}

// A text for a catalogue field: the empty text is one blank where the field doesn't take it.
Value textValue(const schema::Table& table, std::string_view field, const std::string& text) {
    if (text.empty() && !table.field(field)->zeroLength)
        return Value(" ");
    return Value(text);
}

const Texts& textsOf(const Row& row, std::string_view language) {
    if (language == "Deutsch")
        return row.german;
    if (language == "English")
        return row.english;
    throw Error(0, "the event catalogue has no texts in the language " + std::string(language));
}

void writeRows(dao::Database& db, const schema::Table& table, const std::vector<Row>& rows) {
    std::unique_ptr<dao::Recordset> rs = db.OpenRecordset(table.name);
    for (const Row& row : rows) {
        const Texts& texts = textsOf(row, table.name);
        rs->AddNew();
        rs->set("Counter", Value(RecordId(row.index + 1)));
        rs->set("Index", Value(row.index));
        rs->set("Art", textValue(table, "Art", texts.art));
        rs->set("Text_vor", textValue(table, "Text_vor", texts.textVor));
        rs->set("Text_nach", textValue(table, "Text_nach", texts.textNach));
        rs->set("Level", Value(row.level));
        rs->set("GedTAG", textValue(table, "GedTAG", row.gedtag));
        rs->set("Sortindex", Value(row.sortindex));
        rs->set("Personenarten", textValue(table, "Personenarten", row.personenarten));
        rs->set("maxhauptpersonen", Value(row.maxhauptpersonen));
        rs->set("Ereignisgrund", textValue(table, "Ereignisgrund", texts.ereignisgrund));
        rs->set("txtzeichen", textValue(table, "txtzeichen", row.txtzeichen));
        rs->set("mainindex", Value(row.mainindex));
        rs->set("OrtPos", Value(row.ortPos));
        rs->set("CAUSasTAG", Value(row.causAsTag));
        rs->Update();
    }
    rs->Close();
}

} // namespace

std::vector<Row> parseCatalogue(std::string_view text, const std::string& fileName) {
    std::vector<Row> rows;
    std::map<int, int> lineOfIndex;
    for (const tsv::Line& line : tsv::dataLines(text, fileName)) {
        Row row = readRow(line, fileName);
        checkSequence(row, rows.size(), lineOfIndex, fileName);
        lineOfIndex.emplace(row.index, row.line);
        rows.push_back(std::move(row));
    }
    checkChains(rows, fileName);
    return rows;
}

std::vector<Row> readCatalogue(const std::string& path) {
    return parseCatalogue(tsv::readFile(path), path);
}

void buildCatalogue(const std::vector<Row>& rows, const std::string& path) {
    const std::vector<schema::Table>& tables = catalogueDatabase().tables;
    schema::writeDatabase(path, tables, [&](dao::Database& db) {
        for (const schema::Table& table : tables)
            writeRows(db, table, rows);
    });
}

} // namespace folio::catalogue_source
