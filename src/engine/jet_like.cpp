#include "engine/jet_like.h"

#include "engine/errors.h"

#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <string>

namespace folio::jet {

namespace {

std::u32string foldedCodePoints(std::string_view s) {
    std::u32string out;
    out.reserve(s.size());
    std::int32_t i = 0;
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(s.data());
    const auto length = static_cast<std::int32_t>(s.size());
    while (i < length) {
        UChar32 c;
        U8_NEXT(bytes, i, length, c);
        if (c < 0)
            c = 0xFFFD;
        out.push_back(static_cast<char32_t>(u_foldCase(c, U_FOLD_CASE_DEFAULT)));
    }
    return out;
}

[[noreturn]] void invalid(std::string_view pattern) {
    throw DatabaseError(err::InvalidPattern,
                        "Invalid pattern string in LIKE: '" + std::string(pattern) + "'");
}

} // namespace

bool LikePattern::Item::accepts(char32_t c) const {
    switch (kind) {
    case Kind::Star:
        return true;
    case Kind::Any:
        return true;
    case Kind::Digit:
        return c >= U'0' && c <= U'9';
    case Kind::Char:
        return c == ch;
    case Kind::Set:
        for (auto [lo, hi] : ranges)
            if (c >= lo && c <= hi)
                return !negated;
        return negated;
    }
    return false;
}

LikePattern::LikePattern(std::string_view pattern) {
    const std::u32string p = foldedCodePoints(pattern);
    for (std::size_t i = 0; i < p.size(); ++i) {
        Item item;
        item.kind = Item::Kind::Char;
        switch (p[i]) {
        case U'*':
            item.kind = Item::Kind::Star;
            if (!items_.empty() && items_.back().kind == Item::Kind::Star)
                continue;
            break;
        case U'?':
            item.kind = Item::Kind::Any;
            break;
        case U'#':
            item.kind = Item::Kind::Digit;
            break;
        case U'[': {
            const std::size_t close = p.find(U']', i + 1);
            if (close == std::u32string::npos)
                invalid(pattern);
            item.kind = Item::Kind::Set;
            std::size_t k = i + 1;
            if (k < close && p[k] == U'!' && close > k + 1) {
                item.negated = true;
                ++k;
            }
            for (; k < close; ++k) {
                if (k + 2 < close && p[k + 1] == U'-') {
                    if (p[k + 2] < p[k])
                        invalid(pattern);
                    item.ranges.emplace_back(p[k], p[k + 2]);
                    k += 2;
                } else {
                    item.ranges.emplace_back(p[k], p[k]);
                }
            }
            i = close;
            break;
        }
        default:
            item.ch = p[i];
            break;
        }
        items_.push_back(std::move(item));
    }
}

bool LikePattern::matches(std::string_view textUtf8) const {
    const std::u32string text = foldedCodePoints(textUtf8);
    std::size_t t = 0, p = 0;
    std::size_t starItem = std::u32string::npos, starText = 0;
    while (t < text.size()) {
        if (p < items_.size() && items_[p].kind == Item::Kind::Star) {
            starItem = p++;
            starText = t;
        } else if (p < items_.size() && items_[p].accepts(text[t])) {
            ++p;
            ++t;
        } else if (starItem != std::u32string::npos) {
            p = starItem + 1;
            t = ++starText;
        } else {
            return false;
        }
    }
    while (p < items_.size() && items_[p].kind == Item::Kind::Star)
        ++p;
    return p == items_.size();
}

bool like(std::string_view text, std::string_view pattern) {
    return LikePattern(pattern).matches(text);
}

} // namespace folio::jet
