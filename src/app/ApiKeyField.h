#pragma once
// The web API key as the settings panel shows and edits it: at rest the stored key, while editing another text, which
// replaces the stored one once the web API has taken it, and never otherwise. Main thread.

#include <functional>
#include <string>
#include <vector>

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
    enum class Trouble { none, notAKey, lacksPermission, noAnswer, notStored };
    [[nodiscard]] Trouble trouble() const { return trouble_; }
    // Which permissions that key lacks; empty where nobody said.
    [[nodiscard]] const std::vector<std::string>& missingPermissions() const { return check_.missingPermissions(); }
    // From the acceptance of a key until the field is edited again.
    [[nodiscard]] bool isAccepted() const { return isAccepted_; }

    void edit();
    // The text after an edit by the player; announces nothing. White space around what came in one go, as from the
    // clipboard, is left out.
    void type(const std::string& modText);
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
    bool isAccepted_ = false;
    Trouble trouble_ = Trouble::none;
    Subscription stored_;
};

}  // namespace vantor
