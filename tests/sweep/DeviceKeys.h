#pragma once
// Which keys are down on one device, as the server tells; the core keyboard's answer is that of all devices together.
// One thread.

#include <bitset>
#include <cstdint>
#include <string_view>

#include "platform/linux/XConnection.h"

namespace vantor::sweep {

class DeviceKeys {
public:
    // The first keyboard whose name begins so. Without one no key is ever down.
    DeviceKeys(const XConnection& server, std::string_view name);

    [[nodiscard]] bool exists() const { return device_ != 0; }
    [[nodiscard]] std::bitset<256> down() const;

private:
    const XConnection& server_;
    std::uint8_t device_ = 0;
};

}  // namespace vantor::sweep
