#include "engine/field_type.h"

#include "engine/text_util.h"

#include <charconv>

namespace folio {

bool isTextType(FieldType t) {
    return t == FieldType::Text || t == FieldType::Memo;
}

int fixedSize(FieldType t) {
    switch (t) {
    case FieldType::Boolean:
        return 1;
    case FieldType::Byte:
        return 1;
    case FieldType::Integer:
        return 2;
    case FieldType::Long:
        return 4;
    case FieldType::Currency:
        return 8;
    case FieldType::Double:
        return 8;
    case FieldType::DateTime:
        return 8;
    case FieldType::Text:
        return 50;
    case FieldType::Memo:
        return 0;
    }
    return 0;
}

std::string declaredType(FieldType t, int size) {
    switch (t) {
    case FieldType::Boolean:
        return "BOOLEAN";
    case FieldType::Byte:
        return "BYTE";
    case FieldType::Integer:
        return "SHORT";
    case FieldType::Long:
        return "LONG";
    case FieldType::Currency:
        return "CURRENCY";
    case FieldType::Double:
        return "DOUBLE";
    case FieldType::DateTime:
        return "DATETIME";
    case FieldType::Text:
        return "TEXT(" + std::to_string(size > 0 ? size : 50) + ")";
    case FieldType::Memo:
        return "LONGTEXT";
    }
    return "LONGTEXT";
}

FieldType typeFromDeclared(std::string_view declared, int& size) {
    const std::string d = upperAscii(trimWhitespace(declared));
    size = 0;
    FieldType t = FieldType::Memo;
    if (d == "BOOLEAN")
        t = FieldType::Boolean;
    else if (d == "BYTE")
        t = FieldType::Byte;
    else if (d == "SHORT")
        t = FieldType::Integer;
    else if (d == "LONG")
        t = FieldType::Long;
    else if (d == "CURRENCY")
        t = FieldType::Currency;
    else if (d == "DOUBLE")
        t = FieldType::Double;
    else if (d == "DATETIME")
        t = FieldType::DateTime;
    else if (d == "LONGTEXT")
        t = FieldType::Memo;
    else if (d.starts_with("TEXT(")) {
        t = FieldType::Text;
        int n = 0;
        auto [p, ec] = std::from_chars(d.data() + 5, d.data() + d.size(), n);
        size = ec == std::errc() && n > 0 ? n : 255;
        (void)p;
        return t;
    } else if (d.find("INT") != std::string::npos)
        t = FieldType::Long;
    else if (d.find("REAL") != std::string::npos || d.find("FLOA") != std::string::npos ||
             d.find("DOUB") != std::string::npos)
        t = FieldType::Double;
    size = fixedSize(t);
    return t;
}

const char* typeName(FieldType t) {
    switch (t) {
    case FieldType::Boolean:
        return "Boolean";
    case FieldType::Byte:
        return "Byte";
    case FieldType::Integer:
        return "Integer";
    case FieldType::Long:
        return "Long";
    case FieldType::Currency:
        return "Currency";
    case FieldType::Double:
        return "Double";
    case FieldType::DateTime:
        return "Date/Time";
    case FieldType::Text:
        return "Text";
    case FieldType::Memo:
        return "Memo";
    }
    return "?";
}

} // namespace folio
