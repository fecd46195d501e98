#pragma once
// Posts keys through the server's XTEST extension, and records them so that Vantor does not react to itself. While a
// text is typed the keyboard is neutral, and guarded. A text ends where the connection is lost; the next one renews it.
// The typing thread.

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <optional>

#include "platform/KeyPoster.h"
#include "platform/linux/XConnection.h"
#include "platform/linux/keys/KeyEffects.h"
#include "platform/linux/keys/KeyboardGuardian.h"
#include "platform/linux/keys/NeutralKeyboard.h"
#include "platform/linux/keys/PostedKeyRecord.h"
#include "platform/linux/keys/PostedKeys.h"
#include "platform/linux/keys/XkbKeyboardLayout.h"

namespace vantor {

class XTestKeyPoster final : public KeyPoster {
public:
    // The layout is the one that the key map is learned from; the guardian's program may be missing. Nothing is started
    // before something is typed. The references outlive the poster, and nobody else uses the connection meanwhile.
    XTestKeyPoster(XConnection& connection, PostedKeyRecord& record, const XkbKeyboardLayout& learned,
                   std::filesystem::path guardian = {});
    XTestKeyPoster(const XTestKeyPoster&) = delete;
    XTestKeyPoster& operator=(const XTestKeyPoster&) = delete;
    // Releases what it pressed and has not released.
    ~XTestKeyPoster() override;

    // Asks in XWayland only, until a key has been seen to arrive.
    [[nodiscard]] bool isAllowed() override;
    [[nodiscard]] std::unique_ptr<Typing> beginTyping() override;
    // A game that looks at its messages 30 times a second must not find keys with different modifiers behind one look.
    [[nodiscard]] std::chrono::microseconds pauseBefore(const PostedKey& key) override;
    [[nodiscard]] std::chrono::microseconds pauseAtEnd() override;
    [[nodiscard]] PostVerdict post(const PostedKey& key) override;

private:
    class Span;
    void tap(std::uint8_t xKeycode);
    void endTyping();
    void settleAfterLoss();
    [[nodiscard]] std::chrono::microseconds pauseUnless(std::uint32_t carried) const;
    [[nodiscard]] std::uint32_t carriedBy(const PostedKey& key) const;

    XConnection& connection_;
    PostedKeyRecord& record_;
    PostedKeys keys_;
    const XkbKeyboardLayout& learned_;
    KeyEffects effects_;
    KeyboardGuardian guardian_;
    bool arrives_ = false;                    // what is posted: the player's answer holds for the session
    std::uint32_t sentinel_ = XCB_NONE;       // once made, as long as the connection
    std::optional<NeutralKeyboard> neutral_;  // while something is typed
    // Of the last press that was no modifier's: when, and what it carried.
    std::chrono::steady_clock::time_point lastPress_;
    std::uint32_t lastCarried_ = 0;
    Subscription renewal_;
};

}  // namespace vantor
