#pragma once
// Records what is posted, in order, and the typing that it belongs to; fails at the n-th post when told to. One thread.

#include <functional>
#include <vector>

#include "platform/KeyPoster.h"

namespace vantor {

class FakeKeyPoster final : public KeyPoster {
public:
    [[nodiscard]] std::unique_ptr<Typing> beginTyping() override {
        struct Span final : Typing {
            explicit Span(bool& lasting) : typing(lasting) { typing = true; }
            ~Span() override { typing = false; }
            bool& typing;
        };
        ++typingsBegun;
        return std::make_unique<Span>(typing);
    }
    [[nodiscard]] bool isAllowed() override { return allowed; }
    [[nodiscard]] std::chrono::microseconds pauseBefore(const PostedKey& key) override {
        return std::chrono::microseconds(key.keyCode == slowKey ? 30000 : 0);
    }
    [[nodiscard]] PostVerdict post(const PostedKey& key) override {
        posted.push_back(key);
        if (atPost) atPost();
        if (!typing) ++postedOutsideTyping;
        return static_cast<int>(posted.size()) == failAt ? failure : PostVerdict::posted;
    }

    std::vector<PostedKey> posted;
    std::function<void()> atPost;
    int failAt = 0;  // the first is 1
    PostVerdict failure = PostVerdict::unavailable;
    KeyCode slowKey = keyCodeCount;  // none
    int typingsBegun = 0;
    bool typing = false;
    bool allowed = true;
    int postedOutsideTyping = 0;
};

}  // namespace vantor
