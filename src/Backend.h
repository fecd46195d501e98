#pragma once
// What the program needs of the system that it runs on. CMake chooses the one file that makes it; nothing else knows
// which system this is. Main thread.

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/MainThread.h"
#include "base/Scheduler.h"
#include "platform/Capability.h"
#include "platform/Clock.h"
#include "platform/Defaults.h"
#include "platform/KeyboardLayout.h"
#include "platform/Keychain.h"
#include "platform/OverlayWindows.h"
#include "platform/PageSource.h"
#include "platform/Pasteboard.h"
#include "platform/Screens.h"
#include "platform/StatusItem.h"
#include "platform/TypingBackend.h"

namespace vantor::backend {

// Everything, for as long as the application object lives.
class Backend : public TypingBackend {
public:
    [[nodiscard]] virtual OverlayWindows& overlayWindows() = 0;
    [[nodiscard]] virtual Screens& screens() = 0;
    [[nodiscard]] virtual StatusItem& statusItem() = 0;
    [[nodiscard]] virtual Pasteboard& pasteboard() = 0;
    [[nodiscard]] virtual Keychain& keychain() = 0;
    // The one embedded page, and where it is shown.
    [[nodiscard]] virtual std::unique_ptr<WebPage> makeWebPage() = 0;
    [[nodiscard]] virtual PageSource pageSource() = 0;
    // As they are at this call.
    [[nodiscard]] virtual std::vector<Capability> capabilities() = 0;
    // Makes the system ask the player to allow this; nothing where the system has no such question.
    [[nodiscard]] virtual std::function<void()> ask(CapabilityKind capability) = 0;
    // Tells of the desktop user's wish for reduced motion once it is known, and of changes where the system tells of
    // them.
    virtual void followReducedMotion(std::function<void(bool reduced)> handler) = 0;
    // Tells at once where translucent windows are not blended with what lies below, and of each change.
    virtual void followBlending(std::function<void(bool blends)> handler) = 0;
};

// Each of these says in one line on standard error why it gives nothing.
[[nodiscard]] std::unique_ptr<KeyboardLayout> makeKeyboardLayout();
[[nodiscard]] std::unique_ptr<TypingBackend> makeTypingBackend();
// To be called before there is an application object: whether the program can start here at all.
[[nodiscard]] bool prepareToStart();
[[nodiscard]] std::unique_ptr<Backend> makeBackend(MainThread& mainThread, Scheduler& scheduler);

// The given file, else the system's own place.
[[nodiscard]] std::unique_ptr<Defaults> makeDefaults(const std::optional<std::string>& settingsFile,
                                                     MainThread* mainThread);
[[nodiscard]] std::unique_ptr<Clock> makeClock();
// Copies of the program that see the same desktop share it.
[[nodiscard]] std::string desktopName();
[[nodiscard]] std::vector<Capability> examineCapabilities();
// The version of what shows pages, where it is the program's own to name.
[[nodiscard]] std::string webEngineVersion();
// Whether keyboards bear words where Apple's bear signs.
[[nodiscard]] bool hasPcKeyboards();
// Makes the player's own script fonts known.
void registerScriptFonts();

}  // namespace vantor::backend
