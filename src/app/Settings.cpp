#include "app/Settings.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <algorithm>
#include <array>
#include <cmath>

#include "data/Decoder.h"
#include "data/SettingKeys.h"

namespace vantor {

namespace {

constexpr std::array table = {
    Setting{settings::apiKey, SettingType::text},
    Setting{settings::windowToggleEvent, SettingType::text},
    Setting{settings::windowToggleSecondaryEvent, SettingType::text},
    Setting{settings::actionCamToggleEvent, SettingType::text},
    Setting{settings::pasteClipboard, SettingType::boolean},
    Setting{settings::enableEmojiCommands, SettingType::boolean},
    Setting{settings::enableChatLinkReturnKey, SettingType::boolean},
    Setting{settings::enabledApplications, SettingType::texts},
    Setting{settings::timerIsTimer, SettingType::boolean},
    Setting{settings::timerIsEvent, SettingType::boolean},
    Setting{settings::timerHasGuaranteedItems, SettingType::boolean},
    Setting{settings::timerDropsItems, SettingType::boolean},
    Setting{settings::timerHasAchievements, SettingType::boolean},
    Setting{settings::timerDropsCollectionsItems, SettingType::boolean},
    Setting{settings::timerIsSpecialEvent, SettingType::boolean},
    Setting{settings::timerWindowDuration, SettingType::number},
    Setting{settings::timerWatchedWindowDuration, SettingType::number},
    Setting{settings::fetchCatalogue, SettingType::boolean},
    Setting{settings::timerWithoutProgress, SettingType::boolean},
    Setting{settings::watching, SettingType::text},
    Setting{settings::explainedIcon, SettingType::boolean},
    Setting{settings::explainedEnter, SettingType::boolean},
    Setting{settings::frameMain, SettingType::text},
    Setting{settings::frameWatchedEvents, SettingType::text},
};

std::vector<std::string> splitAtCommas(const std::string& text) {
    std::vector<std::string> parts;
    for (const QString& part : QString::fromStdString(text).split(QLatin1Char(',')))
        if (const QString trimmed = part.trimmed(); !trimmed.isEmpty()) parts.push_back(trimmed.toStdString());
    return parts;
}

}  // namespace

std::span<const Setting> allSettings() { return table; }

const Setting* findSetting(std::string_view key) {
    const auto* found =
        std::find_if(table.begin(), table.end(), [&](const Setting& setting) { return setting.key == key; });
    return found == table.end() ? nullptr : found;
}

std::optional<SettingValue> parseSetting(const Setting& setting, const std::string& text) {
    std::optional<SettingValue> value;
    switch (setting.type) {
        case SettingType::boolean:
            if (text == "true" || text == "false") value.emplace(text == "true");
            break;
        case SettingType::number: {
            bool ok = false;
            const double number = QByteArray::fromStdString(text).toDouble(&ok);
            if (ok && std::isfinite(number)) value.emplace(number);
            break;
        }
        case SettingType::text:
            value.emplace(text);
            break;
        case SettingType::texts:
            if (!text.starts_with('[')) {
                value.emplace(splitAtCommas(text));
            } else if (auto texts = decodeTexts(text)) {
                value.emplace(std::move(*texts));
            }
            break;
    }
    return value;
}

std::string formatSetting(const SettingValue& value) {
    if (const auto* boolean = std::get_if<bool>(&value)) return *boolean ? "true" : "false";
    if (const auto* number = std::get_if<double>(&value))
        return QByteArray::number(*number, 'g', QLocale::FloatingPointShortest).toStdString();
    if (const auto* text = std::get_if<std::string>(&value)) return *text;
    return encodeTexts(std::get<std::vector<std::string>>(value));
}

std::optional<std::vector<std::string>> decodeTexts(const std::string& stored) {
    return decodeJson<std::vector<std::string>>(stored).value;
}

std::string encodeTexts(const std::vector<std::string>& texts) { return encodeJson(texts); }

}  // namespace vantor
