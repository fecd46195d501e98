#pragma once
// Windows that only record, in order, what was asked of them: "make main", "front icon", "out main".

#include <memory>
#include <string>
#include <vector>

#include "platform/AppWindows.h"

namespace vantor {

class FakeWindows {
public:
    // The log may be shared with other doubles, so that the order across them is seen.
    explicit FakeWindows(std::vector<std::string>& log) : log_(log) {}

    [[nodiscard]] std::unique_ptr<AppWindow> make(AppWindowName name) {
        log_.push_back("make " + text(name));
        return std::make_unique<Window>(text(name), log_);
    }

private:
    static std::string text(AppWindowName name) {
        switch (name) {
            case AppWindowName::main:
                return "main";
            case AppWindowName::icon:
                return "icon";
            case AppWindowName::emoji:
                return "emoji";
            case AppWindowName::watchedEvents:
                return "watched";
        }
        return {};
    }

    class Window final : public AppWindow {
    public:
        Window(std::string name, std::vector<std::string>& log) : name_(std::move(name)), log_(log) {}
        void orderFront() override { log_.push_back("front " + name_); }
        void orderOut() override { log_.push_back("out " + name_); }
        void takeFocus() override { log_.push_back("focus " + name_); }

    private:
        std::string name_;
        std::vector<std::string>& log_;
    };

    std::vector<std::string>& log_;
};

}  // namespace vantor
