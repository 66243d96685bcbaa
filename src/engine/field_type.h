// The field types of the family-tree files, with the numbers by which a field is created,
// and their declared column types in the database file.
#pragma once

#include <string>
#include <string_view>

namespace folio {

enum class FieldType : int {
    Boolean = 1,  // True -1, False 0
    Byte = 2,     // 0 to 255
    Integer = 3,  // 16-bit signed
    Long = 4,     // 32-bit signed
    Currency = 5, // 64-bit fixed point, four decimals (RecordId)
    Double = 7,
    DateTime = 8, // days since 1899-12-30
    Text = 10,    // at most `size` characters
    Memo = 12,    // long text
};

bool isTextType(FieldType t);
// The size that a field of the type reports: bytes for numbers, characters for Text, 0 for
// Memo.
int fixedSize(FieldType t);
// The declared column type: "BOOLEAN", "TEXT(255)", "LONGTEXT", ...
std::string declaredType(FieldType t, int size);
// The type and size behind a declared column type. Types written by other tools map by
// their affinity (INTEGER to Long, REAL to Double, TEXT to Memo).
FieldType typeFromDeclared(std::string_view declared, int& size);
// "Text", "Long", ... for messages.
const char* typeName(FieldType t);

} // namespace folio
