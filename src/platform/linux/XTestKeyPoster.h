#pragma once
// Posts keys through the server's XTEST extension, and records them so that Vantor does not react to itself. Main
// thread.

#include <bitset>

#include "platform/KeyPoster.h"
#include "platform/linux/PostedKeyRecord.h"
#include "platform/linux/XConnection.h"

namespace vantor {

class XTestKeyPoster final : public KeyPoster {
public:
    XTestKeyPoster(const XConnection& connection, PostedKeyRecord& record) : connection_(connection), record_(record) {}
    XTestKeyPoster(const XTestKeyPoster&) = delete;
    XTestKeyPoster& operator=(const XTestKeyPoster&) = delete;
    // Releases what it pressed and has not released.
    ~XTestKeyPoster() override;

    [[nodiscard]] PostVerdict post(const PostedKey& key) override;

private:
    void send(std::uint8_t xKeycode, bool down);

    const XConnection& connection_;
    PostedKeyRecord& record_;
    std::bitset<256> down_;
};

}  // namespace vantor
