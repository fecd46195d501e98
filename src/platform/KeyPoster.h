#pragma once
// Posts single key events to whichever application has the focus. Main thread.

#include "platform/Keys.h"

namespace vantor {

enum class PostVerdict { posted, noSuchKey, unavailable };

class KeyPoster {
public:
    virtual ~KeyPoster() = default;
    // Returns as soon as the event is on its way; the wait between events is the caller's.
    [[nodiscard]] virtual PostVerdict post(const PostedKey& key) = 0;
};

}  // namespace vantor
