#pragma once
// Posts single key events to whichever application has the focus. The typing thread.

#include <chrono>
#include <memory>

#include "platform/Keys.h"

namespace vantor {

enum class PostVerdict {
    posted,
    noSuchKey,
    unavailable,
    lost,  // the way to the system is gone, for this event and every one after it
};

class KeyPoster {
public:
    // Lasts as long as one text or combination is typed.
    class Typing {
    public:
        Typing() = default;
        virtual ~Typing() = default;
        Typing(const Typing&) = delete;
        Typing& operator=(const Typing&) = delete;
    };

    virtual ~KeyPoster() = default;
    // Where an event adds to what the player holds and has locked, what is posted while the owner lives arrives as if
    // nothing were held or locked; its end puts the player's locks back. Null where events carry their own flags. The
    // poster outlives the owner.
    [[nodiscard]] virtual std::unique_ptr<Typing> beginTyping() { return nullptr; }
    // Whether what is posted arrives at all: a desktop may ask the player first. May wait for a third of a second.
    [[nodiscard]] virtual bool isAllowed() { return true; }
    // How long this event still has to wait, beside the usual wait behind the one before it.
    [[nodiscard]] virtual std::chrono::microseconds pauseBefore(const PostedKey&) { return {}; }
    // How long after the usual wait the player's own keys could still spoil what was posted last.
    [[nodiscard]] virtual std::chrono::microseconds pauseAtEnd() { return {}; }
    // Returns as soon as the event is on its way; the wait between events is the caller's.
    [[nodiscard]] virtual PostVerdict post(const PostedKey& key) = 0;
};

}  // namespace vantor
