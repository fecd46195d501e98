#pragma once
// The logins of the player's game accounts: user names and passwords, all in one keychain item as one JSON object. The
// map in memory is what counts; the item is read once, at creation, and written whole after every change. Main thread.
//
// An item that could not be read (locked, refused, no answer) is not known to be empty. The first save after such a
// start opens the store, reads the item and puts the changes made meanwhile on top of it; where that is refused they
// stay in memory only, like any save that fails.

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "base/Notice.h"
#include "platform/Keychain.h"

namespace vantor {

class AccountsCredentials {
public:
    using Accounts = std::map<std::string, std::string>;  // password by user name, both as typed
    using PrintLine = std::function<void(const std::string& line)>;

    // Whether the item's content is known, and why not.
    enum class Storage { reading, known, locked, refused, unavailable };

    [[nodiscard]] static KeychainItem keychainItem();

    // Starts reading, which asks the player for nothing and fails silently.
    AccountsCredentials(Keychain& keychain, PrintLine printLine);
    AccountsCredentials(const AccountsCredentials&) = delete;
    AccountsCredentials& operator=(const AccountsCredentials&) = delete;

    [[nodiscard]] const Accounts& accounts() const { return accounts_; }
    [[nodiscard]] Storage storage() const { return storage_; }
    // False while a change is in memory only because the last save was refused.
    [[nodiscard]] bool stored() const { return stored_; }
    // On the main thread, after what was read changed the accounts, and after every change of storage() and stored().
    Subscription observe(Notice::Handler handler) { return changed_.observe(std::move(handler)); }

    void set(const std::string& username, const std::string& password);
    void remove(const std::string& username);
    // False when the accounts cannot be written as JSON; nothing is stored then. What the keychain answers later is
    // reported nowhere.
    [[nodiscard]] bool save();

private:
    void read(Keychain::Prompt prompt);
    void take(KeychainStatus status, const std::string& data);
    void merge(const Accounts& stored);
    void write();
    void saved(bool stored);

    Keychain& keychain_;
    PrintLine printLine_;
    Notice changed_;
    Accounts accounts_;
    Storage storage_ = Storage::reading;
    // Until the item is known: what was changed; nothing stands for a removal.
    std::map<std::string, std::optional<std::string>> changesBeforeRead_;
    bool busy_ = false;  // the keychain has a question of ours
    bool saveWanted_ = false;
    bool stored_ = true;
    std::shared_ptr<const bool> alive_ = std::make_shared<const bool>(true);  // answers may come after the end
};

}  // namespace vantor
