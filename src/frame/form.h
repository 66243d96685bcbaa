// Forms without a window system: a form and its controls are plain objects that hold the
// state of each control as named properties (Caption, Text, Value, Enabled, Visible, ...),
// found without regard to case. The logic of the system reads and writes these models; a
// view (the Qt wizard, or nothing on the command line) mirrors them.
#pragma once

#include "engine/value.h"

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace folio {

struct NoCaseLess {
    using is_transparent = void;
    bool operator()(std::string_view a, std::string_view b) const;
};

// Named properties. Reading one that was never set raises, as a control without that
// property would.
class PropertyBag {
public:
    bool has(std::string_view name) const { return props_.find(name) != props_.end(); }
    const Value& get(std::string_view name) const;
    std::string text(std::string_view name) const { return get(name).text(); }
    void set(std::string_view name, Value value);

private:
    std::map<std::string, Value, NoCaseLess> props_;
};

class Control : public PropertyBag {
public:
    Control(std::string className, std::string name, int index = -1)
        : className_(std::move(className)), name_(std::move(name)), index_(index) {}
    const std::string& className() const { return className_; }
    const std::string& name() const { return name_; }
    // The index within a control array, or -1.
    int index() const { return index_; }
    // Items of a collection of the control: "Buttons", "MenuButtons", "Tabs", "Panels",
    // "ColumnHeaders", "ButtonMenus".
    std::vector<PropertyBag>& items(std::string_view collection) {
        return items_[std::string(collection)];
    }
    bool hasItems(std::string_view collection) const {
        return items_.find(collection) != items_.end();
    }

private:
    std::string className_;
    std::string name_;
    int index_;
    std::map<std::string, std::vector<PropertyBag>, NoCaseLess> items_;
};

// Mouse pointers of a form.
inline constexpr int MausNormal = 0;
inline constexpr int MausSanduhr = 11;

class Form : public PropertyBag {
public:
    explicit Form(std::string name);
    virtual ~Form() = default;
    Form(const Form&) = delete;
    Form& operator=(const Form&) = delete;

    const std::string& name() const { return name_; }
    Control& addControl(std::string className, std::string name, int index = -1);
    // The control of that name (and index, for control arrays); raises when there is none.
    Control& control(std::string_view name, int index = -1);
    bool hasControl(std::string_view name, int index = -1) const;
    std::vector<std::unique_ptr<Control>>& controls() { return controls_; }

private:
    std::string name_;
    std::vector<std::unique_ptr<Control>> controls_;
};

} // namespace folio
