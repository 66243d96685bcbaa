// The services that forms need of the platform: message boxes, letting pending events run,
// repainting, waiting, the screen, and keeping a window on top. The wizard installs its Qt
// implementation; tests and the command line install a scripted one.
#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace folio {

class Form;
class Control;

// Answers of a message box.
inline constexpr int AntwortOk = 1;
inline constexpr int AntwortAbbrechen = 2;
inline constexpr int AntwortJa = 6;
inline constexpr int AntwortNein = 7;

struct MessageRequest {
    std::string text;
    int style = 0; // buttons + icon + default button, as the styles of a message box add up
    std::string title;
    bool checkboxShown = false;
    std::string checkboxText;
    int checkboxValue = -2; // -2: no check box state
    int number = 0;
    std::string owner; // name of the owner form, if any
};

struct MessageAnswer {
    int button = AntwortOk;
    int checkboxValue = -2; // the state of the check box when the box closed
};

class Platform {
public:
    virtual ~Platform() = default;
    virtual MessageAnswer showMessage(const MessageRequest& request) = 0;
    virtual void doEvents() {}
    virtual void repaint(Form& /*form*/, Control* /*control*/) {}
    virtual void sleep(int /*milliseconds*/) {}
    // The screen size in twips (15 twips a pixel).
    virtual int screenWidth() const { return 1920 * 15; }
    virtual int screenHeight() const { return 1080 * 15; }
    // Puts a window on top of all (position -1), releases it (-2) or leaves it (0).
    virtual bool setWindowPos(Form& /*form*/, int /*position*/, int /*flags*/) { return true; }
    // Shows a document (a help page) in the application that the user has for it.
    virtual void oeffnen(const std::string& /*datei*/) {}
};

// The platform in use; a scripted one until another is installed.
Platform& platform();
// Installs a platform; returns the one it replaces.
std::unique_ptr<Platform> setPlatform(std::unique_ptr<Platform> p);

// Answers each question from a script and records every message it was shown, so that
// tests and the command line can drive every dialogue of the system.
class ScriptedPlatform : public Platform {
public:
    // Answers given in turn; when they run out, `fallback` answers (OK, check box unchanged).
    std::deque<MessageAnswer> answers;
    MessageAnswer fallback{AntwortOk, -2};
    std::vector<MessageRequest> shown;
    int doEventsCalls = 0;
    int sleptMilliseconds = 0;
    // What a test looks at whenever pending events would run.
    std::function<void()> onEvents;

    MessageAnswer showMessage(const MessageRequest& request) override;
    void doEvents() override {
        ++doEventsCalls;
        if (onEvents)
            onEvents();
    }
    void sleep(int milliseconds) override { sleptMilliseconds += milliseconds; }
    std::vector<std::string> geoeffnet;
    void oeffnen(const std::string& datei) override { geoeffnet.push_back(datei); }
};

} // namespace folio
