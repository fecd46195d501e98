#include "platform/linux/keys/XTestKeyPoster.h"

#include <sys/prctl.h>

#include <algorithm>
#include <utility>

#include "platform/KeyClasses.h"
#include "platform/linux/XWayland.h"
#include "platform/linux/keys/KeyCodes.h"
#include "platform/linux/keys/KeyboardUndo.h"
#include "platform/linux/keys/PostingTrial.h"

namespace vantor {
namespace {

// Wine reads every event that has come, and only then makes characters of them one by one: with the group and the
// modifiers of the last event that it read, which is without those of the event itself. Shift, Caps Lock and Control
// are the three that it keeps beside each.
constexpr std::uint8_t slowToSee = 0xff & ~(1 | 2 | 4);
// One and a half pictures of thirty a second, since a game is not always on time.
constexpr std::chrono::milliseconds betweenLooks{50};

// A window that is never shown.
xcb_window_t makeSentinel(const XConnection& connection) {
    const xcb_window_t window = xcb_generate_id(connection.get());
    const std::uint32_t unmanaged = 1;
    xcb_create_window(connection.get(), 0, window, connection.root(), -1, -1, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                      XCB_COPY_FROM_PARENT, XCB_CW_OVERRIDE_REDIRECT, &unmanaged);
    return window;
}

}  // namespace

class XTestKeyPoster::Span final : public Typing {
public:
    explicit Span(XTestKeyPoster& poster) : poster_(poster), slack_(prctl(PR_GET_TIMERSLACK)) {
        // The kernel may add its slack, 50 us, to each wait between two keys.
        prctl(PR_SET_TIMERSLACK, 1UL);
    }
    ~Span() override {
        prctl(PR_SET_TIMERSLACK, static_cast<unsigned long>(slack_));
        poster_.endTyping();
    }

private:
    XTestKeyPoster& poster_;
    const int slack_;  // nanoseconds, of this thread
};

XTestKeyPoster::XTestKeyPoster(XConnection& connection, PostedKeyRecord& record, const XkbKeyboardLayout& learned,
                               std::filesystem::path guardian)
    : connection_(connection),
      record_(record),
      keys_(connection, record),
      learned_(learned),
      effects_(learned.keymap()),
      guardian_(std::move(guardian)),
      renewal_(connection.onRenewal([this] {
          sentinel_ = XCB_NONE;
          keys_.releaseAll();
          xcb_flush(connection_.get());
      })) {}

XTestKeyPoster::~XTestKeyPoster() {
    // The server keeps a dead client's keys down.
    if (!connection_.get()) return;
    keys_.releaseAll();
    xcb_flush(connection_.get());
}

bool XTestKeyPoster::isAllowed() {
    if (arrives_) return true;
    static_cast<void>(connection_.renew());
    arrives_ = !connection_.hasTest() || !xwaylandVersion(connection_) ||
               keyArrives(meaninglessKey(learned_.keymap()), [this](std::uint8_t xKeycode) { tap(xKeycode); });
    return arrives_;
}

void XTestKeyPoster::tap(std::uint8_t xKeycode) {
    for (const bool down : {true, false}) keys_.send(xKeycode, down);
    const auto done =
        owned(xcb_get_input_focus_reply(connection_.get(), xcb_get_input_focus(connection_.get()), nullptr));
    record_.answered(std::chrono::steady_clock::now());
}

std::unique_ptr<KeyPoster::Typing> XTestKeyPoster::beginTyping() {
    if (neutral_) return nullptr;
    static_cast<void>(connection_.renew());
    if (!connection_.hasTest() || !connection_.hasKeyboard() || connection_.isLost()) return nullptr;
    if (!effects_.areOf(learned_.keymap())) effects_ = KeyEffects(learned_.keymap());
    guardian_.ensureRunning();
    if (sentinel_ == XCB_NONE) sentinel_ = makeSentinel(connection_);
    guardian_.pending().setSentinel(sentinel_);
    keys_.noteIn(&guardian_.pending());
    neutral_.emplace(connection_, keys_, guardian_.pending(), effects_, learned_.group());
    return std::make_unique<Span>(*this);
}

void XTestKeyPoster::endTyping() {
    if (connection_.isLost()) return settleAfterLoss();
    neutral_.reset();
    if (connection_.isLost()) return settleAfterLoss();
    record_.answered(std::chrono::steady_clock::now());
    keys_.noteIn(nullptr);
}

std::uint32_t XTestKeyPoster::carriedBy(const PostedKey& key) const {
    const auto group = key.down ? learned_.group(key.layout) : neutral_->group();
    return (effects_.holding(keys_.inOrder(), group).modifiers & slowToSee) | std::uint32_t{group} << 8;
}

std::chrono::microseconds XTestKeyPoster::pauseBefore(const PostedKey& key) {
    return neutral_ ? pauseUnless(carriedBy(key)) : std::chrono::microseconds{0};
}

std::chrono::microseconds XTestKeyPoster::pauseAtEnd() {
    return neutral_ ? pauseUnless(carriedBy({.down = true})) : std::chrono::microseconds{0};
}

std::chrono::microseconds XTestKeyPoster::pauseUnless(std::uint32_t carried) const {
    if (carried == lastCarried_) return {};
    const auto left = lastPress_ + betweenLooks - std::chrono::steady_clock::now();
    return std::max(std::chrono::ceil<std::chrono::microseconds>(left), std::chrono::microseconds{0});
}

PostVerdict XTestKeyPoster::post(const PostedKey& key) {
    if (!connection_.hasTest()) return PostVerdict::unavailable;
    const auto xKeycode = xKeycodeOf(key.keyCode);
    if (!xKeycode) return PostVerdict::noSuchKey;
    if (neutral_ && key.down) neutral_->prepare(*xKeycode, learned_.group(key.layout));
    const bool types = neutral_ && key.down && !isModifierKey(key.keyCode);
    if (types) lastCarried_ = carriedBy(key);
    keys_.send(*xKeycode, key.down);
    xcb_flush(connection_.get());
    if (types) {
        // From when the server has done it: a busy one may be later than this program.
        const auto done =
            owned(xcb_get_input_focus_reply(connection_.get(), xcb_get_input_focus(connection_.get()), nullptr));
        lastPress_ = std::chrono::steady_clock::now();
        record_.answered(lastPress_);
    }
    if (!connection_.isLost()) return PostVerdict::posted;
    settleAfterLoss();
    return PostVerdict::lost;
}

void XTestKeyPoster::settleAfterLoss() {
    if (!neutral_) return;
    record_.answered(std::chrono::steady_clock::now());
    neutral_.reset();  // leaves the notes as they are: nothing goes out any more
    keys_.noteIn(nullptr);
    if (guardian_.letGo()) return;
    const XConnection another;
    if (another.get()) static_cast<void>(undoKeyboard(another.get(), guardian_.pending()));
    guardian_.pending().clear();
}

}  // namespace vantor
