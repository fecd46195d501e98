#pragma once
// Keeps a key with the Super modifier from whoever has the focus, for as long as it lives, whatever else is held or
// locked. The server stops every keyboard at such a press until it has been told to go on, so that is done on a
// connection and a thread of its own, which wait for nobody: within a millisecond the press is swallowed and the
// keyboard is the application's again, which so sees the end of Super. Raw events go on, since another connection than
// theirs holds the grab. Made and destroyed on the main thread.

#include <cstdint>
#include <thread>

#include "platform/linux/XConnection.h"

namespace vantor {

class SuperKeyGrab {
public:
    explicit SuperKeyGrab(std::uint8_t xKeycode);
    ~SuperKeyGrab();
    SuperKeyGrab(const SuperKeyGrab&) = delete;
    SuperKeyGrab& operator=(const SuperKeyGrab&) = delete;

    // False where another client holds the key with Super already, and without a display.
    [[nodiscard]] bool holds() const { return holds_; }

private:
    void listen();
    void handlePress(std::uint16_t modifiers);
    void handleRelease();
    [[nodiscard]] bool isRelease(const xcb_generic_event_t& event) const;
    [[nodiscard]] bool keyIsDown() const;
    void grab(std::uint16_t modifiers) const;

    XConnection connection_;
    const std::uint8_t key_;
    bool holds_ = false;
    bool down_ = false;  // since a press that was kept back; the thread's alone
    std::thread thread_;
};

}  // namespace vantor
