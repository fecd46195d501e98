#pragma once
// A desktop whose frontmost application a test changes. Writes down what it was asked for. One thread.

#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "platform/TypingFocus.h"
#include "platform/Workspace.h"

namespace vantor {

class FakeWorkspace final : public Workspace, public TypingFocus {
public:
    Subscription observeFrontmostApplication(FrontmostHandler handler) override {
        handler_ = std::move(handler);
        handler_(frontmost_);
        return Subscription([this] { handler_ = nullptr; });
    }
    [[nodiscard]] std::optional<std::string> displayName(const std::string& identifier) const override {
        const auto found = names.find(identifier);
        return found == names.end() ? std::nullopt : std::optional(found->second);
    }
    void hideAndUnhideWithoutActivation() override { calls.emplace_back("hide and unhide"); }
    bool awaitOther(std::chrono::milliseconds atMost) override {
        calls.push_back("await focus " + std::to_string(atMost.count()));
        return focusReturns;
    }
    bool isKept() override { return !focusMoves || !focusMoves(); }
    [[nodiscard]] PointerHold pointerHold() const override { return hold; }

    void bringToFront(std::string identifier) {
        frontmost_ = std::move(identifier);
        if (handler_) handler_(frontmost_);
    }

    std::map<std::string, std::string> names;
    std::vector<std::string> calls;
    bool focusReturns = true;
    std::function<bool()> focusMoves;  // asked before each stroke
    PointerHold hold = PointerHold::none;

private:
    std::string frontmost_;
    FrontmostHandler handler_;
};

}  // namespace vantor
