#include "platform/linux/keys/XTestKeyPoster.h"

#include <sys/prctl.h>

#include <utility>

#include "platform/linux/keys/KeyCodes.h"
#include "platform/linux/keys/KeyboardUndo.h"

namespace vantor {
namespace {

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
    keys_.noteIn(nullptr);
}

PostVerdict XTestKeyPoster::post(const PostedKey& key) {
    if (!connection_.hasTest()) return PostVerdict::unavailable;
    const auto xKeycode = xKeycodeOf(key.keyCode);
    if (!xKeycode) return PostVerdict::noSuchKey;
    if (neutral_ && key.down) neutral_->prepare(*xKeycode, learned_.group(key.layout));
    keys_.send(*xKeycode, key.down);
    xcb_flush(connection_.get());
    if (!connection_.isLost()) return PostVerdict::posted;
    settleAfterLoss();
    return PostVerdict::lost;
}

void XTestKeyPoster::settleAfterLoss() {
    if (!neutral_) return;
    neutral_.reset();  // leaves the notes as they are: nothing goes out any more
    keys_.noteIn(nullptr);
    if (guardian_.letGo()) return;
    const XConnection another;
    if (another.get()) static_cast<void>(undoKeyboard(another.get(), guardian_.pending()));
    guardian_.pending().clear();
}

}  // namespace vantor
