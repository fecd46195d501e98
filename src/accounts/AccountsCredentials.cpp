#include "accounts/AccountsCredentials.h"

#include <utility>

#include "accounts/AccountsJson.h"

namespace vantor {

namespace {

AccountsCredentials::Storage storageAfter(KeychainStatus status) {
    switch (status) {
        case KeychainStatus::done:
        case KeychainStatus::notFound:
            return AccountsCredentials::Storage::known;
        case KeychainStatus::locked:
            return AccountsCredentials::Storage::locked;
        case KeychainStatus::refused:
            return AccountsCredentials::Storage::refused;
        case KeychainStatus::unavailable:
            break;
    }
    return AccountsCredentials::Storage::unavailable;
}

}  // namespace

KeychainItem AccountsCredentials::keychainItem() { return {"generic-password", "orvendel.Vantor.accounts"}; }

AccountsCredentials::AccountsCredentials(Keychain& keychain, PrintLine printLine)
    : keychain_(keychain), printLine_(std::move(printLine)) {
    read(Keychain::Prompt::never);
}

void AccountsCredentials::set(const std::string& username, const std::string& password) {
    accounts_.insert_or_assign(username, password);
    if (storage_ != Storage::known) changesBeforeRead_.insert_or_assign(username, password);
}

void AccountsCredentials::remove(const std::string& username) {
    accounts_.erase(username);
    if (storage_ != Storage::known) changesBeforeRead_.insert_or_assign(username, std::nullopt);
}

bool AccountsCredentials::save() {
    if (const auto encoded = encodeAccounts(accounts_); !encoded.value) {
        printLine_("error writing credentials: " + encoded.error);
        return false;
    }
    saveWanted_ = true;
    if (busy_) return true;
    if (storage_ == Storage::known)
        write();
    else
        read(Keychain::Prompt::allowed);
    return true;
}

void AccountsCredentials::read(Keychain::Prompt prompt) {
    busy_ = true;
    keychain_.copyMatching(
        keychainItem(), prompt,
        [this, prompt, alive = std::weak_ptr(alive_)](KeychainStatus status, const std::string& data) {
            if (alive.expired()) return;
            busy_ = false;
            take(status, data);
            if (!saveWanted_) return;
            if (storage_ == Storage::known)
                write();
            else if (prompt == Keychain::Prompt::never)
                read(Keychain::Prompt::allowed);  // a save came while the start was reading
            else
                saved(false);
        });
}

void AccountsCredentials::take(KeychainStatus status, const std::string& data) {
    storage_ = storageAfter(status);
    if (status == KeychainStatus::done) {
        auto decoded = decodeAccounts(data);
        if (!decoded.error.empty()) printLine_("error reading credentials: " + decoded.error);
        merge(decoded.value.value_or(Accounts()));
    }
    if (storage_ == Storage::known) changesBeforeRead_.clear();
    changed_.announce();
}

void AccountsCredentials::merge(const Accounts& stored) {
    accounts_ = stored;
    for (const auto& [username, password] : changesBeforeRead_) {
        if (password)
            accounts_.insert_or_assign(username, *password);
        else
            accounts_.erase(username);
    }
}

void AccountsCredentials::write() {
    saveWanted_ = false;
    const auto encoded = encodeAccounts(accounts_);
    if (!encoded.value) return;  // the save that follows the change has said so
    busy_ = true;
    keychain_.replace(keychainItem(), *encoded.value, [this, alive = std::weak_ptr(alive_)](KeychainStatus status) {
        if (!alive.expired()) saved(status == KeychainStatus::done);
    });
}

void AccountsCredentials::saved(bool stored) {
    busy_ = false;
    const bool again = std::exchange(saveWanted_, false) && storage_ == Storage::known;
    if (std::exchange(stored_, stored) != stored) changed_.announce();
    if (again) write();
}

}  // namespace vantor
