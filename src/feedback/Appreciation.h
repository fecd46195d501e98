#pragma once
// What the maker says about himself: his name in the game, his wallets, the licence of what came from the wiki. It
// comes from one resource file, texts/support.json. Values and actions; main thread.

#include <optional>
#include <string>
#include <vector>

#include "data/Fields.h"
#include "input/ClipboardManager.h"
#include "platform/Pasteboard.h"

namespace vantor {

struct Crypto {
    std::string id;  // the currency's short code
    std::string name;
    std::string wallet;
    std::optional<std::string> memo;  // some currencies need one besides the address

    bool operator==(const Crypto&) const = default;
};

template <>
struct Fields<Crypto> {
    static constexpr auto table = std::tuple(Field{"id", &Crypto::id}, Field{"name", &Crypto::name},
                                             Field{"wallet", &Crypto::wallet}, Field{"memo", &Crypto::memo});
};

struct SupportData {
    std::optional<std::string> accountName;  // in the game: a name, a dot, four digits
    std::vector<Crypto> cryptos;
    std::string licence;  // the licence's public page

    bool operator==(const SupportData&) const = default;
};

template <>
struct Fields<SupportData> {
    static constexpr auto table =
        std::tuple(Field{"accountName", &SupportData::accountName}, Field{"cryptos", &SupportData::cryptos},
                   Field{"licence", &SupportData::licence});
};

// With Shift held the name is typed into the game and the pasteboard is left alone; otherwise it is copied.
void pressAccountName(const std::string& name, ClipboardManager& clipboardManager, Pasteboard& pasteboard);

}  // namespace vantor
