#pragma once
// The web API key as the settings panel shows and edits it: at rest the stored key, while editing another text, which
// replaces the stored one once the web API has taken it, and never otherwise. Main thread.

#include <functional>
#include <string>

#include "app/ApiKeyCheck.h"
#include "base/Notice.h"
#include "platform/Defaults.h"

namespace vantor {

class ApiKeyField {
public:
    // accepted: called after a key was stored.
    ApiKeyField(Defaults& defaults, ApiKeyCheck::Needs check, std::function<void()> accepted);

    [[nodiscard]] const std::string& text() const { return text_; }
    [[nodiscard]] bool isEditing() const { return isEditing_; }
    [[nodiscard]] const std::string& modText() const { return modText_; }
    // While the web API is being asked.
    [[nodiscard]] bool isChecking() const { return isChecking_; }
    // Why the last confirmed key is neither stored nor called invalid.
    enum class Trouble { none, noAnswer, notStored };
    [[nodiscard]] Trouble trouble() const { return trouble_; }

    void edit();
    // What the player has typed; announces nothing.
    void type(const std::string& modText) { modText_ = modText; }
    void confirm();
    // Back to rest with the stored key; an answer under way is no longer waited for.
    void cancel();

    Subscription observe(Notice::Handler handler) { return changed_.observe(std::move(handler)); }

private:
    void rest();
    void take(const std::string& key, ApiKeyCheck::Verdict verdict);
    void readStored();

    Defaults& defaults_;
    std::function<void()> accepted_;
    ApiKeyCheck check_;
    Notice changed_;
    std::string text_;
    std::string modText_;
    bool isEditing_ = false;
    bool isChecking_ = false;
    Trouble trouble_ = Trouble::none;
    Subscription stored_;
};

}  // namespace vantor
