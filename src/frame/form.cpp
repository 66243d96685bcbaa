#include "frame/form.h"

#include "engine/errors.h"
#include "engine/text_util.h"

#include <algorithm>

namespace folio {

bool NoCaseLess::operator()(std::string_view a, std::string_view b) const {
    auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
    return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(),
                                        [&](char x, char y) { return lower(x) < lower(y); });
}

const Value& PropertyBag::get(std::string_view name) const {
    auto it = props_.find(name);
    if (it == props_.end())
        throw Error(err::PropertyNotSupported,
                    "Object doesn't support this property or method: " + std::string(name));
    return it->second;
}

void PropertyBag::set(std::string_view name, Value value) {
    auto it = props_.find(name);
    if (it == props_.end())
        props_.emplace(std::string(name), std::move(value));
    else
        it->second = std::move(value);
}

Form::Form(std::string name) : name_(std::move(name)) {
    set("Caption", Value(""));
    set("Left", Value(0));
    set("Top", Value(0));
    set("Width", Value(6000));
    set("Height", Value(4000));
    set("MousePointer", Value(MausNormal));
    set("Visible", Value(false));
}

Control& Form::addControl(std::string className, std::string name, int index) {
    controls_.push_back(std::make_unique<Control>(std::move(className), std::move(name), index));
    return *controls_.back();
}

Control& Form::control(std::string_view name, int index) {
    for (auto& c : controls_)
        if (c->index() == index && equalsNoCase(c->name(), name))
            return *c;
    throw Error(err::ControlArrayElement,
                "The form '" + name_ + "' has no control '" + std::string(name) +
                    (index >= 0 ? "(" + std::to_string(index) + ")" : "") + "'");
}

bool Form::hasControl(std::string_view name, int index) const {
    return std::any_of(controls_.begin(), controls_.end(), [&](const auto& c) {
        return c->index() == index && equalsNoCase(c->name(), name);
    });
}

} // namespace folio
