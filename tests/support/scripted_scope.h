// A scripted platform in place for as long as a test fixture lives, the previous one back
// afterwards; `scripted->` reaches the platform's script and record of messages.
#pragma once

#include "frame/platform.h"

#include <memory>

namespace folio::test {

class ScriptedScope {
public:
    ScriptedScope() {
        auto p = std::make_unique<ScriptedPlatform>();
        platform_ = p.get();
        previous_ = setPlatform(std::move(p));
    }
    ~ScriptedScope() { setPlatform(std::move(previous_)); }
    ScriptedScope(const ScriptedScope&) = delete;
    ScriptedScope& operator=(const ScriptedScope&) = delete;

    ScriptedPlatform* operator->() const { return platform_; }

private:
    ScriptedPlatform* platform_;
    std::unique_ptr<Platform> previous_;
};

} // namespace folio::test
