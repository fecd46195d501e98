#include "platform/linux/services/SecretService.h"

// glib's headers name a structure member "signals"; QT_NO_KEYWORDS keeps the toolkit out of their way.
#include <libsecret/secret.h>

#include <cstdlib>
#include <filesystem>
#include <memory>

namespace vantor::secretservice {

namespace {

struct Unreference {
    void operator()(gpointer object) const { g_object_unref(object); }
};
template <typename T>
using Owned = std::unique_ptr<T, Unreference>;

struct DropTable {
    void operator()(GHashTable* table) const { g_hash_table_unref(table); }
};

// Receives the error of one call.
class Fault {
public:
    ~Fault() { g_clear_error(&error_); }
    Fault() = default;
    Fault(const Fault&) = delete;
    Fault& operator=(const Fault&) = delete;

    [[nodiscard]] GError** slot() {
        g_clear_error(&error_);
        return &error_;
    }
    [[nodiscard]] bool failed() const { return error_ != nullptr; }
    [[nodiscard]] KeychainStatus status() const {
        if (g_error_matches(error_, SECRET_ERROR, SECRET_ERROR_IS_LOCKED)) return KeychainStatus::locked;
        if (g_error_matches(error_, G_DBUS_ERROR, G_DBUS_ERROR_ACCESS_DENIED) ||
            g_error_matches(error_, G_IO_ERROR, G_IO_ERROR_PERMISSION_DENIED))
            return KeychainStatus::refused;
        return KeychainStatus::unavailable;  // also: broken off by the time limit
    }

private:
    GError* error_ = nullptr;
};

struct ItemList {
    ~ItemList() { g_list_free_full(head, g_object_unref); }
    explicit ItemList(GList* list) : head(list) {}
    ItemList(const ItemList&) = delete;
    ItemList& operator=(const ItemList&) = delete;

    template <typename Visit>
    void each(const Visit& visit) const {
        for (GList* node = head; node; node = node->next) visit(SECRET_ITEM(node->data));
    }

    GList* head;
};

// Without an address the library would start a bus of its own.
bool sessionHasBus() {
    const char* address = std::getenv("DBUS_SESSION_BUS_ADDRESS");
    if (address && *address) return true;
    const char* runtime = std::getenv("XDG_RUNTIME_DIR");
    std::error_code none;
    return runtime && std::filesystem::exists(std::filesystem::path(runtime) / "bus", none);
}

std::unique_ptr<GHashTable, DropTable> attributesOf(const KeychainItem& item) {
    std::unique_ptr<GHashTable, DropTable> table(g_hash_table_new_full(g_str_hash, g_str_equal, g_free, g_free));
    g_hash_table_insert(table.get(), g_strdup("class"), g_strdup(item.itemClass.c_str()));
    g_hash_table_insert(table.get(), g_strdup("account"), g_strdup(item.account.c_str()));
    return table;
}

Owned<SecretService> open(GCancellable* cancel, Fault& fault) {
    if (!sessionHasBus()) return nullptr;
    return Owned<SecretService>(
        secret_service_open_sync(SECRET_TYPE_SERVICE, nullptr, SECRET_SERVICE_OPEN_SESSION, cancel, fault.slot()));
}

enum class Opened { open, shut, none, unknown };

// The collection that new items go to.
Opened defaultCollection(SecretService& service, bool mayPrompt, GCancellable* cancel, Fault& fault) {
    const Owned<SecretCollection> collection(secret_collection_for_alias_sync(
        &service, SECRET_COLLECTION_DEFAULT, SECRET_COLLECTION_NONE, cancel, fault.slot()));
    if (!collection) return fault.failed() ? Opened::unknown : Opened::none;
    if (!secret_collection_get_locked(collection.get())) return Opened::open;
    if (!mayPrompt) return Opened::shut;
    GList* const wanted = g_list_append(nullptr, collection.get());
    const int unlocked = secret_service_unlock_sync(&service, wanted, cancel, nullptr, fault.slot());
    g_list_free(wanted);
    return unlocked > 0 ? Opened::open : Opened::shut;
}

KeychainStatus removeAll(SecretService& service, const KeychainItem& item, GCancellable* cancel) {
    Fault fault;
    GList* const found = secret_service_search_sync(&service, nullptr, attributesOf(item).get(), SECRET_SEARCH_ALL,
                                                    cancel, fault.slot());
    if (fault.failed()) return fault.status();
    const ItemList items(found);
    KeychainStatus status = KeychainStatus::done;
    items.each([&](SecretItem* each) {
        if (status == KeychainStatus::done && !secret_item_delete_sync(each, cancel, fault.slot()))
            status = fault.status();
    });
    return status;
}

// Makes the default collection where there is none, which asks the player for its password.
KeychainStatus add(SecretService& service, const KeychainItem& item, const std::string& data, GCancellable* cancel) {
    Fault fault;
    SecretValue* const value = secret_value_new(data.data(), static_cast<gssize>(data.size()), "text/plain");
    // The protocol wants a label; the item has none.
    const bool stored = secret_service_store_sync(&service, nullptr, attributesOf(item).get(),
                                                  SECRET_COLLECTION_DEFAULT, "", value, cancel, fault.slot());
    secret_value_unref(value);
    return stored ? KeychainStatus::done : fault.status();
}

}  // namespace

Copy copyMatching(const KeychainItem& item, Keychain::Prompt prompt, GCancellable* cancel) {
    const bool mayPrompt = prompt == Keychain::Prompt::allowed;
    Fault fault;
    const auto service = open(cancel, fault);
    if (!service) return {fault.status(), {}};
    // First the place where the item will be written: a prompt that is refused here is not followed by another.
    const Opened opened = defaultCollection(*service, mayPrompt, cancel, fault);
    if (opened == Opened::unknown) return {fault.status(), {}};
    if (opened == Opened::shut && mayPrompt) return {KeychainStatus::refused, {}};

    int flags = SECRET_SEARCH_ALL | SECRET_SEARCH_LOAD_SECRETS;
    if (mayPrompt) flags |= SECRET_SEARCH_UNLOCK;
    GList* const found = secret_service_search_sync(service.get(), nullptr, attributesOf(item).get(),
                                                    static_cast<SecretSearchFlags>(flags), cancel, fault.slot());
    if (fault.failed()) return {fault.status(), {}};
    const ItemList items(found);
    Copy copy;
    // Some services find nothing in what is locked.
    copy.status = opened == Opened::shut ? KeychainStatus::locked : KeychainStatus::notFound;
    items.each([&](SecretItem* each) {
        if (copy.status == KeychainStatus::done) return;
        SecretValue* const value = secret_item_get_secret(each);
        if (!value) {
            copy.status = mayPrompt ? KeychainStatus::refused : KeychainStatus::locked;
            return;
        }
        gsize length = 0;
        const char* const bytes = secret_value_get(value, &length);
        copy = {KeychainStatus::done, std::string(bytes, length)};
        secret_value_unref(value);
    });
    return copy;
}

KeychainStatus replace(const KeychainItem& item, const std::string& data, GCancellable* cancel) {
    Fault fault;
    const auto service = open(cancel, fault);
    if (!service) return fault.status();
    // What can be removed but not written anew would be lost.
    const Opened opened = defaultCollection(*service, true, cancel, fault);
    if (opened == Opened::unknown) return fault.status();
    if (opened == Opened::shut) return KeychainStatus::refused;
    const KeychainStatus removed = removeAll(*service, item, cancel);
    return removed == KeychainStatus::done ? add(*service, item, data, cancel) : removed;
}

}  // namespace vantor::secretservice
