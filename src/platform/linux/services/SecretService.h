#pragma once
// The questions to the Secret Service, each on a connection state of its own, so that a service that was restarted is
// simply asked again. Blocking; any thread but the main one. Cancel to break off.

#include <gio/gio.h>

#include <string>

#include "platform/Keychain.h"

namespace vantor::secretservice {

struct Copy {
    KeychainStatus status = KeychainStatus::unavailable;
    std::string data;
};

[[nodiscard]] Copy copyMatching(const KeychainItem& item, Keychain::Prompt prompt, GCancellable* cancel);
[[nodiscard]] KeychainStatus replace(const KeychainItem& item, const std::string& data, GCancellable* cancel);

}  // namespace vantor::secretservice
