#pragma once
// Runs the commands that need no windows. One thread.

#include <functional>
#include <iosfwd>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/cli/CommandLine.h"
#include "app/cli/RemoteCommand.h"
#include "catalogue/LayeredCatalogue.h"
#include "platform/Capability.h"
#include "platform/Clock.h"
#include "platform/Defaults.h"
#include "platform/KeyboardLayout.h"
#include "platform/TypingBackend.h"

namespace vantor {

// Made when a command asks for it. What may be null has then said why in one line on standard error.
struct CommandNeeds {
    std::function<std::unique_ptr<Defaults>()> makeDefaults;
    std::function<std::unique_ptr<Clock>()> makeClock;
    std::function<std::unique_ptr<KeyboardLayout>()> makeKeyboardLayout;  // may be null
    std::function<std::unique_ptr<TypingBackend>()> makeTyping;           // may be null
    std::function<std::vector<Capability>()> examineCapabilities;
    std::function<std::string()> catalogue;  // the embedded one
    LayeredCatalogue::Needs layers{};        // what lies over it
    std::function<std::string()> version;    // with a line feed at its end
    std::function<RemoteReply(const std::string& line)> askRunning;
    Pause& pause;
    std::istream& in;
    std::ostream& out;
    std::ostream& err;
};

// The exit status. Nothing: the program is to start.
[[nodiscard]] std::optional<int> runCommand(const Command& command, const CommandNeeds& needs);

}  // namespace vantor
