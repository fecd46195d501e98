#pragma once
// Types one text or presses one combination, stroke by stroke, into the window that has the keyboard when it begins,
// and into no other. Made on the main thread; then the typing thread's, but for the state that any thread may read.

#include <atomic>
#include <chrono>
#include <cstddef>
#include <string>
#include <vector>

#include "input/KeyMap.h"
#include "platform/Clock.h"
#include "platform/KeyPoster.h"
#include "platform/KeyboardLayout.h"
#include "platform/TypingFocus.h"

namespace vantor {

// What has become of a text or a combination.
struct Typed {
    enum class End {
        whole,
        stopped,
        playerTyped,
        focusMoved,  // another window has the keyboard
        focusKept,   // no other application got the keyboard: nothing was posted
        notAllowed,  // the desktop lets nothing through, or not yet: nothing was posted
        lost,        // the way to the system is gone
    };
    End end = End::whole;
    std::size_t posted = 0;      // characters
    std::size_t characters = 0;  // of the text, those that the layout has keys for
    std::size_t unknown = 0;     // characters, or parts of a combination, that it has none for
    bool refused = false;        // whether the system did not take a stroke

    bool operator==(const Typed&) const = default;
};

class Typist {
public:
    struct Needs {
        KeyboardLayout& layout;
        KeyPoster& poster;
        TypingFocus& focus;
        Pause& pause;
    };
    struct State {
        // Anything but `whole`: what is under way ends with this, before its next stroke.
        std::atomic<Typed::End> wish{Typed::End::whole};
        std::atomic<std::size_t> posted{0};
        std::atomic<std::size_t> characters{0};
    };

    explicit Typist(const Needs& needs);
    Typist(const Typist&) = delete;
    Typist& operator=(const Typist&) = delete;

    [[nodiscard]] Typed type(const std::string& text);
    [[nodiscard]] Typed press(const std::string& combination);
    // False where it was asked to end meanwhile.
    bool wait(std::chrono::milliseconds duration);

    [[nodiscard]] State& state() { return state_; }
    [[nodiscard]] const KeyMap& keyMap() const { return keyMap_; }

private:
    using Strokes = std::vector<PostedKey>;

    [[nodiscard]] Typed::End begin();
    void post(const std::vector<Strokes>& pieces, Typed& typed);
    void postPiece(const Strokes& strokes, Typed& typed);
    [[nodiscard]] Typed::End endBeforeStroke();

    Needs needs_;
    KeyMap keyMap_;
    State state_;
};

}  // namespace vantor
