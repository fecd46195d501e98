#include "app/cli/SettingsCommand.h"

#include <iterator>

#include "app/Settings.h"
#include "timers/DataFault.h"

namespace vantor {

namespace {

std::string typeText(SettingType type) {
    switch (type) {
        case SettingType::boolean:
            return "true or false";
        case SettingType::number:
            return "a number";
        case SettingType::text:
            return "a text";
        case SettingType::texts:
            return "a JSON list of texts, or texts between commas";
    }
    return {};
}

std::string readValue(std::istream& in) {
    std::string value{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    // what `echo` adds is no part of a key
    if (value.ends_with('\n')) value.pop_back();
    if (value.ends_with('\r')) value.pop_back();
    return value;
}

int unknownKey(const std::string& key, std::ostream& err) {
    err << oneLine("vantor: there is no setting " + key) << "\n";
    return usageStatus;
}

}  // namespace

int runChangeSettings(const ChangeSettings& request, Defaults& defaults, std::istream& in, std::ostream& err) {
    std::vector<std::pair<std::string, SettingValue>> checked;
    for (const SettingChange& change : request.changes) {
        const Setting* setting = findSetting(change.key);
        if (!setting) return unknownKey(change.key, err);
        auto value = parseSetting(*setting, change.value ? *change.value : readValue(in));
        if (!value) {
            err << "vantor: " << change.key << " takes " << typeText(setting->type) << "\n";
            return usageStatus;
        }
        checked.emplace_back(change.key, *std::move(value));
    }
    for (const auto& [key, value] : checked)
        if (defaults.setValue(key, value) != Defaults::Verdict::stored) {
            err << "vantor: " << key << " could not be stored\n";
            return 1;
        }
    return 0;
}

int runPrintSetting(const PrintSetting& request, const Defaults& defaults, std::ostream& out, std::ostream& err) {
    if (!findSetting(request.key)) return unknownKey(request.key, err);
    const auto value = defaults.value(request.key);
    if (!value) return 1;
    out << formatSetting(*value) << "\n";
    out.flush();
    return out ? 0 : 1;
}

}  // namespace vantor
