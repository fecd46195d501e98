#include "input/ClipboardManager.h"

#include <condition_variable>
#include <mutex>
#include <utility>

#include "platform/KeyClasses.h"

namespace vantor {
namespace {

using End = Typed::End;

std::string reasonOf(End end) {
    switch (end) {
        case End::playerTyped:
            return "you pressed a key";
        case End::focusMoved:
            return "another window has the keyboard";
        case End::lost:
            return "the keyboard takes no more keys";
        default:
            return "stopped";
    }
}

}  // namespace

struct ClipboardManager::Thread {
    explicit Thread(const Typist::Needs& needs) : typist(needs) {}

    Typist typist;
    std::mutex mutex;
    std::condition_variable rests;
    bool works = false;
};

ClipboardManager::ClipboardManager(Needs needs)
    : needs_(std::move(needs)),
      thread_(std::make_shared<Thread>(needs_.typist)),
      shiftObserver_(needs_.monitors.addLocalMonitor(maskOf(KeyEventType::flagsChanged) | maskOf(KeyEventType::keyUp),
                                                     [this](const KeyEvent& event) {
                                                         if (event.type == KeyEventType::keyUp)
                                                             hearPlayer(event);
                                                         else
                                                             shiftPressed_ = (event.flags & modifier::shift) != 0;
                                                         return KeyMonitors::Passing::passOn;
                                                     })),
      playerObserver_(needs_.monitors.addGlobalMonitor(maskOf(KeyEventType::keyDown) | maskOf(KeyEventType::keyUp),
                                                       [this](const KeyEvent& event) { hearPlayer(event); })) {}

ClipboardManager::~ClipboardManager() { thread_->typist.state().wish = End::stopped; }

const KeyMap& ClipboardManager::keyMap() const { return thread_->typist.keyMap(); }

void ClipboardManager::typeString(const std::string& text, Then then) {
    enqueue({.isText = true, .content = [text] { return text; }, .then = std::move(then)});
}

void ClipboardManager::pressReadableKeys(const std::string& combination, Then then) {
    enqueue({.content = [combination] { return combination; }, .then = std::move(then)});
}

void ClipboardManager::typeLater(std::chrono::milliseconds delay, std::function<std::optional<std::string>()> text,
                                 Then then) {
    enqueue({.isText = true, .delay = delay, .content = std::move(text), .then = std::move(then)});
}

void ClipboardManager::enqueue(Operation operation) {
    waiting_.push_back(std::move(operation));
    advance();
}

void ClipboardManager::advance() {
    if (underWay_ || waiting_.empty()) return;
    underWay_ = std::move(waiting_.front());
    waiting_.pop_front();
    // Nothing works there now, so nobody misses the last wish.
    thread_->typist.state().wish = underWay_->dropped;
    if (underWay_->dropped != End::whole) return complete({.end = underWay_->dropped});
    if (underWay_->delay.count() == 0) return begin();
    runThere([delay = underWay_->delay](
                 Typist& typist) { return typist.wait(delay) ? Typed{} : Typed{.end = typist.state().wish}; },
             [this](const Typed& waited) { waited.end == End::whole ? begin() : complete(waited); });
}

void ClipboardManager::begin() {
    const auto content = underWay_->content();
    if (!content) return complete({.end = End::focusMoved});
    needs_.workspace.hideAndUnhideWithoutActivation();
    // Our windows do not hear of a release that happens while another application has the keyboard.
    shiftPressed_ = false;
    isTyping_ = underWay_->isText;
    if (isTyping_) ++texts_;
    // Not the last text's, until there is something to tell of this one.
    thread_->typist.state().posted = 0;
    thread_->typist.state().characters = 0;
    changed_.announce();
    runThere([isText = underWay_->isText,
              content = *content](Typist& typist) { return isText ? typist.type(content) : typist.press(content); },
             [this](const Typed& typed) { complete(typed); });
}

void ClipboardManager::runThere(std::function<Typed(Typist&)> work, std::function<void(const Typed&)> here) {
    {
        const std::lock_guard lock(thread_->mutex);
        thread_->works = true;
    }
    needs_.typingThread.post([thread = thread_, work = std::move(work), here = std::move(here),
                              &mainThread = needs_.mainThread, alive = std::weak_ptr(alive_)]() mutable {
        const Typed typed = work(thread->typist);
        {
            const std::lock_guard lock(thread->mutex);
            thread->works = false;
        }
        thread->rests.notify_all();
        mainThread.post([here = std::move(here), typed, alive] {
            if (!alive.expired()) here(typed);
        });
    });
}

void ClipboardManager::complete(const Typed& typed) {
    const Operation done = *std::exchange(underWay_, std::nullopt);
    isTyping_ = false;
    // What waits was meant for the same window.
    if (typed.end == End::focusMoved) endTexts(End::focusMoved);
    // Of those that it dropped the one that was under way has told.
    if (done.dropped == End::whole) sayFault(typed, done.isText);
    if (done.then) done.then(typed);
    changed_.announce();
    advance();
}

void ClipboardManager::endTexts(End end) {
    for (Operation& each : waiting_)
        if (each.isText && each.dropped == End::whole) each.dropped = end;
    auto& wish = thread_->typist.state().wish;
    if (underWay_ && underWay_->isText && wish == End::whole) wish = end;
}

bool ClipboardManager::finish(std::chrono::milliseconds atMost) {
    waiting_.clear();
    thread_->typist.state().wish = End::stopped;
    std::unique_lock lock(thread_->mutex);
    const bool rests = thread_->rests.wait_for(lock, atMost, [this] { return !thread_->works; });
    if (const auto typed = progress(); typed && typed->posted < typed->characters)
        sayFault({.end = End::stopped, .posted = typed->posted, .characters = typed->characters}, true);
    return rests;
}

void ClipboardManager::sayFault(const Typed& typed, bool isText) const {
    const std::string fault = faultOf(typed, isText);
    if (!fault.empty() && needs_.say) needs_.say(fault);
}

std::optional<ClipboardManager::Progress> ClipboardManager::progress() const {
    if (!isTyping_) return std::nullopt;
    const Typist::State& state = thread_->typist.state();
    return Progress{texts_, state.posted, state.characters};
}

// What the player types would stand in the middle of the text, and a Return of his would send half of it and make
// shortcuts of the rest. A text can be typed again. A key that was down before is not typed, and modifiers do no harm.
void ClipboardManager::hearPlayer(const KeyEvent& event) {
    if (event.keyCode >= keyCodeCount) return;
    const bool down = event.type == KeyEventType::keyDown;
    const bool wasDown = playersKeys_[event.keyCode];
    playersKeys_[event.keyCode] = down;
    if (down && !wasDown && isTyping_) endTexts(event.keyCode == key_code::escape ? End::stopped : End::playerTyped);
}

std::string statusOf(const Typed& typed) { return typed.end == End::whole ? "typed in app" : "stopped"; }

std::string faultOf(const Typed& typed, bool isText) {
    if (typed.end == End::whole) return {};
    if (typed.end == End::focusKept) return "the game did not get the keyboard back: nothing was typed";
    if (typed.end == End::notAllowed)
        return "the desktop asks whether Vantor may press keys, and nothing was typed: allow it in the dialog, then "
               "again";
    if (!isText) return "the keys were not all pressed: " + reasonOf(typed.end);
    if (typed.characters == 0) return "nothing was typed: " + reasonOf(typed.end);
    return "typing ended after " + std::to_string(typed.posted) + " of " + std::to_string(typed.characters) +
           " characters: " + reasonOf(typed.end);
}

}  // namespace vantor
