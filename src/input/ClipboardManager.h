#pragma once
// The queue of what is typed and pressed in the application that has the focus: one operation after the other, each on
// the typing thread, what follows it on the main thread. Main thread; one instance, made at start.

#include <bitset>
#include <chrono>
#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "base/MainThread.h"
#include "base/Notice.h"
#include "base/TaskQueue.h"
#include "input/Typist.h"
#include "platform/KeyMonitors.h"
#include "platform/Workspace.h"

namespace vantor {

class ClipboardManager {
public:
    using Then = std::function<void(const Typed& typed)>;
    struct Needs {
        Typist::Needs typist;
        KeyMonitors& monitors;
        Workspace& workspace;
        TaskQueue& typingThread;  // has run its last task before the others go
        MainThread& mainThread;
        std::function<void(const std::string& line)> say{};  // why something was not typed; never what
    };
    // Of the text that is being typed.
    struct Progress {
        std::size_t number = 0;  // of the text since the start
        std::size_t posted = 0;
        std::size_t characters = 0;
    };

    explicit ClipboardManager(Needs needs);
    ~ClipboardManager();
    ClipboardManager(const ClipboardManager&) = delete;
    ClipboardManager& operator=(const ClipboardManager&) = delete;

    void typeString(const std::string& text, Then then = {});
    void pressReadableKeys(const std::string& combination, Then then = {});
    // The delay is a part of the operation; after it `text` is asked for what to type: nothing where it has nowhere to
    // go any more.
    void typeLater(std::chrono::milliseconds delay, std::function<std::optional<std::string>()> text, Then then = {});
    // Ends the text under way before its next stroke, and with it those that wait. Combinations are pressed all the
    // same: what they switch in the game has been switched here.
    void stop() { endTexts(Typed::End::stopped); }
    // For the end of the program, dispatching nothing: stops, and waits until the keyboard is the player's again. False
    // when the time ran out.
    bool finish(std::chrono::milliseconds atMost);

    // Whether anything is under way or waits.
    [[nodiscard]] bool isBusy() const { return underWay_.has_value(); }
    [[nodiscard]] std::optional<Progress> progress() const;
    // Told when an operation begins to type or press, and at its end.
    [[nodiscard]] Subscription observe(Notice::Handler handler) { return changed_.observe(std::move(handler)); }

    // Whether a Shift key was held at the last change of modifiers that went to a window of ours.
    [[nodiscard]] bool shiftPressed() const { return shiftPressed_; }
    // Only while nothing is under way.
    [[nodiscard]] const KeyMap& keyMap() const;

private:
    struct Operation {
        bool isText = false;
        std::chrono::milliseconds delay{0};
        std::function<std::optional<std::string>()> content;
        Then then;
        Typed::End dropped = Typed::End::whole;  // anything else: its turn is its end
    };
    // What the typing thread has of it, which may outlive the rest.
    struct Thread;

    void enqueue(Operation operation);
    void advance();
    void begin();
    void runThere(std::function<Typed(Typist&)> work, std::function<void(const Typed&)> here);
    void complete(const Typed& typed);
    void endTexts(Typed::End end);
    void sayFault(const Typed& typed, bool isText) const;
    void hearPlayer(const KeyEvent& event);

    Needs needs_;
    std::shared_ptr<Thread> thread_;
    std::deque<Operation> waiting_;
    std::optional<Operation> underWay_;
    std::size_t texts_ = 0;  // begun since the start
    bool isTyping_ = false;  // a text, past its delay
    Notice changed_;
    bool shiftPressed_ = false;
    std::bitset<keyCodeCount> playersKeys_;  // down
    std::shared_ptr<const bool> alive_ = std::make_shared<const bool>(true);
    Subscription shiftObserver_;
    Subscription playerObserver_;
};

// What a button says when its text has been typed.
[[nodiscard]] std::string statusOf(const Typed& typed);
// Why something was not typed or pressed whole, one line, with the number of characters that were; empty where it was.
[[nodiscard]] std::string faultOf(const Typed& typed, bool isText);

}  // namespace vantor
