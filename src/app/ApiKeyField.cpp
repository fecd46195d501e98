#include "app/ApiKeyField.h"

#include <utility>

#include "data/SettingKeys.h"

namespace vantor {

ApiKeyField::ApiKeyField(Defaults& defaults, ApiKeyCheck::Needs check, std::function<void()> accepted)
    : defaults_(defaults), accepted_(std::move(accepted)), check_(std::move(check)) {
    readStored();
    stored_ = defaults_.observe([this](const std::string& key) {
        if (key != settings::apiKey) return;
        readStored();
        changed_.announce();
    });
}

void ApiKeyField::edit() {
    rest();
    modText_ = text_;
    isEditing_ = true;
    changed_.announce();
}

void ApiKeyField::confirm() {
    if (!isEditing_) return;
    if (!check_.check(modText_, [this, key = modText_](ApiKeyCheck::Verdict verdict) { take(key, verdict); })) return;
    isChecking_ = true;
    trouble_ = Trouble::none;
    changed_.announce();
}

void ApiKeyField::cancel() {
    rest();
    changed_.announce();
}

void ApiKeyField::rest() {
    check_.forget();
    isEditing_ = false;
    isChecking_ = false;
    trouble_ = Trouble::none;
}

void ApiKeyField::take(const std::string& key, ApiKeyCheck::Verdict verdict) {
    isChecking_ = false;
    switch (verdict) {
        case ApiKeyCheck::Verdict::invalid:
            modText_ = "Invalid API key";
            break;
        case ApiKeyCheck::Verdict::noData:
            trouble_ = Trouble::noAnswer;
            break;
        case ApiKeyCheck::Verdict::accepted:
            if (defaults_.setValue(settings::apiKey, key) != Defaults::Verdict::stored) {
                trouble_ = Trouble::notStored;
                break;
            }
            rest();
            text_ = key;
            accepted_();
            break;
    }
    changed_.announce();
}

void ApiKeyField::readStored() { text_ = defaults_.get<std::string>(settings::apiKey).value_or(""); }

}  // namespace vantor
