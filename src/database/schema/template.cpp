// Building the template SF.MDB and the empty side databases from the schema data. New family
// trees are copies of the template, so it carries the one row of `Version` that every file
// has, with the program's version and the default marks of name input.
#include "database/schema/schema.h"

#include "engine/engine.h"
#include "engine/file_beside.h"
#include "engine/recordset.h"

#include <functional>
#include <system_error>

namespace fs = std::filesystem;

namespace folio::schema {

void writeDatabase(const fs::path& target, const std::vector<Table>& tables,
                   const std::function<void(dao::Database&)>& fill) {
    if (target.has_parent_path())
        fs::create_directories(target.parent_path());
    FileBeside file(target);
    {
        std::unique_ptr<dao::Database> db =
            dao::engine().workspace(0).CreateDatabase(file.path().string());
        dao::Transaction transaction(*db);
        for (const Table& table : tables)
            createTable(*db, table);
        if (fill)
            fill(*db);
        transaction.commit();
        db->Close();
    }
    file.putInPlace();
}

Value emptyValue(const Field& field) {
    switch (field.type) {
    case FieldType::Boolean:
        return Value(false);
    case FieldType::Text:
    case FieldType::Memo:
        return Value(field.zeroLength ? "" : " ");
    default:
        return Value(0);
    }
}

// The author is still unknown.
void writeVersionRow(dao::Database& db) {
    const Table& table = *findTable(mainTables(), "Version");
    std::unique_ptr<dao::Recordset> rs = db.OpenRecordset(table.name);
    rs->AddNew();
    for (const Field& field : table.fields)
        rs->set(field.name, emptyValue(field));
    rs->set("Versionname", Value(CurrentVersion));
    rs->set("KzTitelvor", Value("["));
    rs->set("KzTitelnach", Value("]"));
    rs->set("KzRufnamevor", Value("°"));
    rs->set("KzRufnamenach", Value("°"));
    rs->set("KzGeburtsnamevor", Value("{"));
    rs->set("KzGeburtsnamenach", Value("}"));
    rs->Update();
    rs->Close();
}

void buildTemplate(const fs::path& folder) {
    writeDatabase(folder / TemplateFile, mainTables(), writeVersionRow);
}

void buildSideDatabases(const fs::path& folder) {
    for (const SideDatabase& side : sideDatabases())
        if (side.file != EventCatalogueFile)
            writeDatabase(folder / side.file, side.tables);
}

} // namespace folio::schema
