#pragma once
// The two permissions of the system's privacy settings: Accessibility for pressing keys, Input Monitoring for hearing
// them. Without them everything else works. The system announces no change. Main thread.

#include <functional>
#include <utility>

namespace vantor {

class PrivacyPermissions {
public:
    enum class Kind {
        hearKeys,   // keys that go to other applications
        pressKeys,  // in other applications
    };

    // Keys that were heard are as good as the permission to hear them: the system may give both powers with the one.
    explicit PrivacyPermissions(std::function<bool()> heardKeys) : heardKeys_(std::move(heardKeys)) {}

    // As it is at this call.
    [[nodiscard]] bool granted(Kind kind) const;
    // Makes the system ask the player; its question says where to allow it. The system may ask only once.
    void ask(Kind kind);

private:
    std::function<bool()> heardKeys_;
};

}  // namespace vantor
