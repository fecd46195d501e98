#pragma once
// Records what is posted, in order, and fails at the n-th post when told to. One thread.

#include <vector>

#include "platform/KeyPoster.h"

namespace vantor {

class FakeKeyPoster final : public KeyPoster {
public:
    [[nodiscard]] PostVerdict post(const PostedKey& key) override {
        posted.push_back(key);
        return static_cast<int>(posted.size()) == failAt ? PostVerdict::unavailable : PostVerdict::posted;
    }

    std::vector<PostedKey> posted;
    int failAt = 0;  // the first is 1
};

}  // namespace vantor
