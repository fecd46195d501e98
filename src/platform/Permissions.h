#pragma once
// What the system lets Vantor do only once the player has allowed it. Without any of it everything else works. Main
// thread.

#include <functional>

#include "base/Subscription.h"

namespace vantor {

class Permissions {
public:
    enum class Kind {
        hearKeys,   // keys that go to other applications
        pressKeys,  // in other applications
    };

    virtual ~Permissions() = default;
    // As it is at this call.
    [[nodiscard]] virtual bool granted(Kind kind) const = 0;
    // Makes the system ask the player; its question says where to allow it. The system may ask only once.
    virtual void ask(Kind kind) = 0;
    // Runs after a permission was given or taken away, without a restart.
    virtual Subscription observe(std::function<void()> handler) = 0;
};

}  // namespace vantor
