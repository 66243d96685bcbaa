#include "database/schema/schema.h"

#include "engine/engine.h"
#include "engine/text_util.h"

namespace folio::schema {

const Field* Table::field(std::string_view fieldName) const {
    for (const Field& f : fields)
        if (equalsNoCase(f.name, fieldName))
            return &f;
    return nullptr;
}

const Table* findTable(const std::vector<Table>& tables, std::string_view name) {
    for (const Table& t : tables)
        if (equalsNoCase(t.name, name))
            return &t;
    return nullptr;
}

void createTable(dao::Database& db, const Table& table) {
    dao::TableDef def = dao::Database::CreateTableDef(std::string(table.name));
    for (const Field& f : table.fields) {
        dao::FieldDef field = dao::TableDef::CreateField(std::string(f.name), f.type, f.size);
        field.AllowZeroLength = f.zeroLength && isTextType(f.type);
        def.AppendField(field);
    }
    for (const Index& i : table.indexes) {
        dao::IndexDef index = dao::TableDef::CreateIndex(std::string(i.name));
        for (std::string_view f : i.fields)
            index.Fields.emplace_back(f);
        index.Unique = i.unique;
        def.AppendIndex(index);
    }
    db.AppendTableDef(def);
}

} // namespace folio::schema
