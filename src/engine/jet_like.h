// The LIKE of the family-tree files: "*" any run of characters, "?" one character, "#" one
// digit, "[a-c]" one character of a range or set, "[!a-c]" one character outside it. Letters
// match without regard to case. "%" and "_" are ordinary characters.
#pragma once

#include <string_view>
#include <vector>

namespace folio::jet {

class LikePattern {
public:
    // Throws folio::DatabaseError (invalid pattern) on an unclosed "[" or a falling range.
    explicit LikePattern(std::string_view pattern);
    bool matches(std::string_view text) const;

private:
    struct Item {
        enum class Kind { Star, Any, Digit, Char, Set } kind = Kind::Char;
        char32_t ch = 0;
        bool negated = false;
        std::vector<std::pair<char32_t, char32_t>> ranges;
        bool accepts(char32_t c) const;
    };
    std::vector<Item> items_;
};

bool like(std::string_view text, std::string_view pattern);

} // namespace folio::jet
