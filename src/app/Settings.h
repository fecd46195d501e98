#pragma once
// The settings by name: which keys there are, which type each stores, and their form as texts. Any thread.
//
// Defaults are each reader's own. In particular `general.enableChatLinkReturnKey` unset reads as true in the settings
// panel and as false where chat links are typed; both are meant.

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Defaults.h"

namespace vantor {

enum class SettingType { boolean, number, text, texts };

struct Setting {
    std::string_view key;
    SettingType type;
};

[[nodiscard]] std::span<const Setting> allSettings();
[[nodiscard]] const Setting* findSetting(std::string_view key);

// A value given as text: true or false; a finite number; any text; a JSON list of texts, or texts between commas.
[[nodiscard]] std::optional<SettingValue> parseSetting(const Setting& setting, const std::string& text);
[[nodiscard]] std::string formatSetting(const SettingValue& value);

// A list of texts kept in a text setting, as JSON. Nothing when the text is no such list.
[[nodiscard]] std::optional<std::vector<std::string>> decodeTexts(const std::string& stored);
[[nodiscard]] std::string encodeTexts(const std::vector<std::string>& texts);

}  // namespace vantor
