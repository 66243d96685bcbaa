#include "frame/platform.h"

namespace folio {

namespace {
std::unique_ptr<Platform>& current() {
    static std::unique_ptr<Platform> instance = std::make_unique<ScriptedPlatform>();
    return instance;
}
} // namespace

Platform& platform() {
    return *current();
}

std::unique_ptr<Platform> setPlatform(std::unique_ptr<Platform> p) {
    std::unique_ptr<Platform> old = std::move(current());
    current() = std::move(p);
    return old;
}

MessageAnswer ScriptedPlatform::showMessage(const MessageRequest& request) {
    shown.push_back(request);
    MessageAnswer answer = fallback;
    if (!answers.empty()) {
        answer = answers.front();
        answers.pop_front();
    }
    if (answer.checkboxValue == -2)
        answer.checkboxValue = request.checkboxValue;
    return answer;
}

} // namespace folio
