#include "app/ApiKeyField.h"

#include <QtCore/QString>
#include <algorithm>
#include <utility>

#include "data/SettingKeys.h"

namespace vantor {

namespace {

// What is new lies between what the two texts share at their ends. A single space may have been typed.
QString withoutPastedBlanks(const QString& before, const QString& after) {
    const qsizetype shorter = std::min(before.size(), after.size());
    qsizetype front = 0;
    while (front < shorter && before[front] == after[front]) ++front;
    qsizetype back = 0;
    while (back < shorter - front && before[before.size() - 1 - back] == after[after.size() - 1 - back]) ++back;
    const QString inserted = after.mid(front, after.size() - front - back);
    return inserted == QLatin1String(" ") ? after : after.left(front) + inserted.trimmed() + after.right(back);
}

}  // namespace

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

void ApiKeyField::type(const std::string& modText) {
    modText_ = withoutPastedBlanks(QString::fromStdString(modText_), QString::fromStdString(modText)).toStdString();
    trouble_ = Trouble::none;
}

void ApiKeyField::confirm() {
    if (!isEditing_) return;
    isChecking_ = !modText_.empty() &&
                  check_.check(modText_, [this, key = modText_](ApiKeyCheck::Verdict verdict) { take(key, verdict); });
    trouble_ = isChecking_ ? Trouble::none : Trouble::notAKey;
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
    isAccepted_ = false;
    trouble_ = Trouble::none;
}

void ApiKeyField::take(const std::string& key, ApiKeyCheck::Verdict verdict) {
    isChecking_ = false;
    switch (verdict) {
        case ApiKeyCheck::Verdict::invalid:
            modText_ = "Invalid API key";
            break;
        case ApiKeyCheck::Verdict::lacksPermission:
            trouble_ = Trouble::lacksPermission;
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
            isAccepted_ = true;
            accepted_();
            break;
    }
    changed_.announce();
}

void ApiKeyField::readStored() { text_ = defaults_.get<std::string>(settings::apiKey).value_or(""); }

}  // namespace vantor
