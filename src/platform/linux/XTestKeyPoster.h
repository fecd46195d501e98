#pragma once
// Posts keys through the server's XTEST extension, and records them so that Vantor does not react to itself. Main thread.

#include "platform/KeyPoster.h"
#include "platform/linux/PostedKeyRecord.h"
#include "platform/linux/XConnection.h"

namespace vantor {

class XTestKeyPoster final : public KeyPoster {
public:
    XTestKeyPoster(const XConnection& connection, PostedKeyRecord& record) : connection_(connection), record_(record) {}

    [[nodiscard]] PostVerdict post(const PostedKey& key) override;

private:
    const XConnection& connection_;
    PostedKeyRecord& record_;
};

}  // namespace vantor
