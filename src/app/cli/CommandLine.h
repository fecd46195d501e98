#pragma once
// What the arguments ask for, as a plain value. Pure; any thread.

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <variant>
#include <vector>

#include "app/cli/Moment.h"

namespace vantor {

inline constexpr int usageStatus = 2;

struct StartProgram {
    bool operator==(const StartProgram&) const = default;
};
struct ShowHelp {
    bool operator==(const ShowHelp&) const = default;
};
struct ShowVersion {
    bool operator==(const ShowVersion&) const = default;
};
struct RunDoctor {
    bool operator==(const RunDoctor&) const = default;
};
struct PrintTimeline {
    bool json = false;
    bool windowOnly = false;
    std::optional<std::string> catalogueFile{};  // nothing: the embedded one
    std::optional<Moment> now{};                 // nothing: the clock's

    bool operator==(const PrintTimeline&) const = default;
};
// Whether a catalogue file would be taken, and what it would change.
struct CheckCatalogue {
    std::string file;

    bool operator==(const CheckCatalogue&) const = default;
};
// The catalogue as it was before its last update.
struct RollBackCatalogue {
    bool operator==(const RollBackCatalogue&) const = default;
};
struct PrintKeyMap {
    bool json = false;

    bool operator==(const PrintKeyMap&) const = default;
};
// Nothing as a text, here and below, means: read it from standard input.
struct TypeText {
    std::optional<std::string> text;

    bool operator==(const TypeText&) const = default;
};
struct PressText {
    std::optional<std::string> text;

    bool operator==(const PressText&) const = default;
};
struct SettingChange {
    std::string key;
    std::optional<std::string> value;

    bool operator==(const SettingChange&) const = default;
};
struct ChangeSettings {
    std::vector<SettingChange> changes;  // in the order given; at most one from standard input

    bool operator==(const ChangeSettings&) const = default;
};
struct PrintSetting {
    std::string key;

    bool operator==(const PrintSetting&) const = default;
};

// Something for the Vantor that runs already.
struct AskRunning {
    enum class What { toggleApp, fill, readCatalogue, quit, toggle, hide, show, paste, emote, stop };
    What what = What::toggleApp;
    std::optional<std::string> text{};  // with fill, an account's name; with emote, its emoji or its command

    bool operator==(const AskRunning&) const = default;
};

using Command =
    std::variant<StartProgram, ShowHelp, ShowVersion, RunDoctor, PrintTimeline, CheckCatalogue, RollBackCatalogue,
                 PrintKeyMap, TypeText, PressText, ChangeSettings, PrintSetting, AskRunning>;

// From an option, else from the environment, else nothing: the default is taken.
struct Overrides {
    std::optional<std::string> settingsFile;  // --settings, VANTOR_SETTINGS
    std::optional<std::string> apiHost;       // --api-host, VANTOR_API_HOST
    std::optional<std::string> staticFiles;   // --static-files, VANTOR_STATIC_FILES
    // Only from the environment: stand-ins for the hosts that pages and feedback go to.
    std::optional<std::string> wikiHost{};      // VANTOR_WIKI_HOST
    std::optional<std::string> videoHost{};     // VANTOR_VIDEO_HOST
    std::optional<std::string> searchHost{};    // VANTOR_SEARCH_HOST
    std::optional<std::string> feedbackHost{};  // VANTOR_FEEDBACK_HOST
    // The same for updates of the catalogue, which are believed only if they are signed.
    std::optional<std::string> catalogueHost{};  // VANTOR_CATALOGUE_HOST

    bool operator==(const Overrides&) const = default;
};

struct CommandLine {
    Command command;
    Overrides overrides;

    bool operator==(const CommandLine&) const = default;
};

// One line for standard error; the status is usageStatus. Holds no value that was given, since one may be a secret.
struct UsageError {
    std::string line;

    bool operator==(const UsageError&) const = default;
};

using EnvironmentLookup = std::function<std::optional<std::string>(const char* name)>;

// The arguments without the program's name.
[[nodiscard]] std::variant<CommandLine, UsageError> parseCommandLine(std::span<const std::string> arguments,
                                                                     const EnvironmentLookup& environment);

[[nodiscard]] std::string helpText();

// The process's own environment; a variable that is empty counts as unset.
[[nodiscard]] std::optional<std::string> environmentVariable(const char* name);

}  // namespace vantor
