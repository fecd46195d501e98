#include "app/cli/CommandLine.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string_view>

#include "catalogue/UpdateHost.h"
#include "timers/DataFault.h"

namespace vantor {

namespace {

using namespace std::string_view_literals;

enum class Id {
    help,
    version,
    timeline,
    checkCatalogue,
    rollBackCatalogue,
    keyMap,
    type,
    press,
    set,
    get,
    doctor,
    toggle,
    hide,
    show,
    paste,
    emote,
    stop,
    toggleApp,
    fill,
    quit,
    json,
    catalogue,
    now,
    window,
    settings,
    apiHost,
    staticFiles,
};

enum class Role { command, detail, overrides };

struct Option {
    Id id;
    Role role;
    std::string_view name;
    std::string_view operand;  // empty when it takes none
    std::string_view help;
};

constexpr std::array options{
    Option{Id::timeline, Role::command, "--timeline", "", "print the day's timeline as the stored settings filter it"},
    Option{Id::json, Role::detail, "--json", "", "with --timeline or --key-map: as JSON"},
    Option{Id::catalogue, Role::detail, "--catalogue", "FILE",
           "with --timeline: of this catalogue alone, not of the one in use"},
    Option{Id::now, Role::detail, "--now", "ISO-8601", "with --timeline: as of this moment; local without an offset"},
    Option{Id::window, Role::detail, "--window", "", "with --timeline: only what the timers list would show"},
    Option{Id::checkCatalogue, Role::command, "--catalogue-check", "FILE",
           "say what is wrong with a catalogue file, or what it would change"},
    Option{Id::rollBackCatalogue, Role::command, "--catalogue-rollback", "",
           "go back to the catalogue before the last update, until a newer one comes"},
    Option{Id::keyMap, Role::command, "--key-map", "", "print the keys that type each text on this keyboard layout"},
    Option{Id::type, Role::command, "--type", "TEXT", "type TEXT into the focused application; - reads standard input"},
    Option{Id::press, Role::command, "--press", "TEXT",
           "press the keys of TEXT, a stored hotkey; - reads standard input"},
    Option{Id::set, Role::command, "--set", "KEY=VALUE", "store a setting (repeatable); KEY=- reads standard input"},
    Option{Id::get, Role::command, "--get", "KEY", "print a stored setting; status 1 if it is unset"},
    Option{Id::toggle, Role::command, "--toggle", "", "ask the Vantor that runs to do what its hotkey does"},
    Option{Id::hide, Role::command, "--hide", "", "ask it to do what Escape does"},
    Option{Id::show, Role::command, "--show", "", "ask it to show its overlay, as the floating icon does"},
    Option{Id::paste, Role::command, "--paste", "", "ask it to type the clipboard into the game, as the shortcut does"},
    Option{Id::emote, Role::command, "--emote", "TEXT", "ask it to type an emote into the game, by emoji or command"},
    Option{Id::stop, Role::command, "--stop", "", "ask it to stop typing"},
    Option{Id::toggleApp, Role::command, "--toggle-app", "",
           "ask the Vantor that runs to allow its overlay on the current application, or no longer"},
    Option{Id::fill, Role::command, "--fill", "NAME",
           "ask the Vantor that runs to type this account's login; - reads standard input"},
    Option{Id::quit, Role::command, "--quit", "", "ask the Vantor that runs to end"},
    Option{Id::doctor, Role::command, "--doctor", "", "tell what Vantor can do here, and what to do about the rest"},
    Option{Id::version, Role::command, "--version", "", "print the version"},
    Option{Id::help, Role::command, "--help", "", "print this text"},
    Option{Id::settings, Role::overrides, "--settings", "FILE", "keep the settings in FILE; or VANTOR_SETTINGS"},
    Option{Id::apiHost, Role::overrides, "--api-host", "URL", "the game's web API; or VANTOR_API_HOST"},
    Option{Id::staticFiles, Role::overrides, "--static-files", "URL", "the catalogue files; or VANTOR_STATIC_FILES"},
};

const Option* optionNamed(std::string_view name) {
    const auto* found = std::ranges::find(options, name, &Option::name);
    return found == options.end() ? nullptr : found;
}

bool hasScheme(std::string_view url, std::initializer_list<std::string_view> schemes) {
    return std::ranges::any_of(schemes,
                               [&](std::string_view scheme) { return url.starts_with(scheme) && url != scheme; });
}

std::optional<std::string> textOrStandardInput(const std::string& operand) {
    return operand == "-" ? std::nullopt : std::optional(operand);
}

class Parser {
public:
    explicit Parser(const EnvironmentLookup& environment) {
        overrides_ = {.settingsFile = environment("VANTOR_SETTINGS"),
                      .apiHost = environment("VANTOR_API_HOST"),
                      .staticFiles = environment("VANTOR_STATIC_FILES"),
                      .wikiHost = environment("VANTOR_WIKI_HOST"),
                      .videoHost = environment("VANTOR_VIDEO_HOST"),
                      .searchHost = environment("VANTOR_SEARCH_HOST"),
                      .feedbackHost = environment("VANTOR_FEEDBACK_HOST"),
                      .catalogueHost = environment("VANTOR_CATALOGUE_HOST")};
    }

    [[nodiscard]] std::variant<CommandLine, UsageError> parse(std::span<const std::string> arguments) {
        for (std::size_t place = 0; place < arguments.size(); ++place) {
            const std::string& argument = arguments[place];
            const auto equals = argument.find('=');
            const std::string name = argument.substr(0, equals);
            const Option* option = optionNamed(name);
            // a stray word may be part of a text to type, so only what looks like an option is repeated
            if (!option)
                return error(name.starts_with("--") ? "unknown option " + name
                                                    : "unexpected argument " + std::to_string(place + 1));
            std::string operand;
            if (!option->operand.empty()) {
                if (equals != std::string::npos)
                    operand = argument.substr(equals + 1);
                else if (place + 1 < arguments.size())
                    operand = arguments[++place];
                else
                    return error(name + " needs " + std::string(option->operand));
            } else if (equals != std::string::npos) {
                return error(name + " takes no value");
            }
            if (option->id == Id::help) return CommandLine{ShowHelp{}, overrides_};
            if (auto wrong = take(*option, operand)) return *std::move(wrong);
        }
        return finish();
    }

private:
    [[nodiscard]] static UsageError error(const std::string& what) {
        return {oneLine("vantor: " + what + "; see vantor --help")};
    }

    [[nodiscard]] std::optional<UsageError> take(const Option& option, const std::string& operand) {
        const std::string name(option.name);
        if (option.role == Role::command) {
            const bool repeatedSet = command_ == &option && option.id == Id::set;
            if (command_ && !repeatedSet)
                return error(command_ == &option
                                 ? name + " is given twice"
                                 : std::string(command_->name) + " and " + name + " do not go together");
            command_ = &option;
        } else if (option.role == Role::detail) {
            details_.push_back(option.id);
        }
        switch (option.id) {
            case Id::type:
            case Id::press:
            case Id::get:
            case Id::fill:
            case Id::emote:
            case Id::checkCatalogue:
                text_ = operand;
                break;
            case Id::set:
                return takeChange(operand);
            case Id::catalogue:
                timeline_.catalogueFile = operand;
                break;
            case Id::now:
                timeline_.now = parseMoment(operand);
                if (!timeline_.now)
                    return error("--now: no ISO 8601 moment such as 2026-03-29T01:30 or 2026-03-29T01:30Z");
                break;
            case Id::settings:
                if (operand.empty()) return error("--settings: no file name");
                overrides_.settingsFile = operand;
                break;
            case Id::apiHost:
                overrides_.apiHost = operand;
                break;
            case Id::staticFiles:
                overrides_.staticFiles = operand;
                break;
            default:
                break;
        }
        return std::nullopt;
    }

    [[nodiscard]] std::optional<UsageError> takeChange(const std::string& operand) {
        const auto equals = operand.find('=');
        if (equals == std::string::npos || equals == 0) return error("--set needs KEY=VALUE");
        SettingChange change{operand.substr(0, equals), textOrStandardInput(operand.substr(equals + 1))};
        if (!change.value && std::ranges::any_of(changes_, [](const SettingChange& other) { return !other.value; }))
            return error("--set: only one value can come from standard input");
        changes_.push_back(std::move(change));
        return std::nullopt;
    }

    [[nodiscard]] std::variant<CommandLine, UsageError> finish() {
        if (overrides_.apiHost && !hasScheme(*overrides_.apiHost, {"https://", "http://"}))
            return error("the web API's host is no http or https URL");
        for (const auto& host :
             {overrides_.wikiHost, overrides_.videoHost, overrides_.searchHost, overrides_.feedbackHost})
            if (host && !hasScheme(*host, {"https://", "http://"}))
                return error("the host of the pages or of the feedback service is no http or https URL");
        if (overrides_.staticFiles && !hasScheme(*overrides_.staticFiles, {"https://", "http://", "file:///", "qrc:/"}))
            return error("the place of the catalogue files is no http, https, file or qrc URL");

        if (overrides_.catalogueHost && !isUpdateHost(*overrides_.catalogueHost))
            return error("the host of the catalogue's updates is no https URL");

        const std::optional<Id> command = command_ ? std::optional(command_->id) : std::nullopt;
        for (const Id detail : details_)
            if (command != Id::timeline && !(detail == Id::json && command == Id::keyMap)) {
                const auto* option = std::ranges::find(options, detail, &Option::id);
                return error(std::string(option->name) +
                             (detail == Id::json ? " needs --timeline or --key-map" : " needs --timeline"));
            }
        return CommandLine{commandOf(command), overrides_};
    }

    [[nodiscard]] Command commandOf(std::optional<Id> command) {
        if (!command) return StartProgram{};
        const auto given = [&](Id detail) { return std::ranges::find(details_, detail) != details_.end(); };
        switch (*command) {
            case Id::timeline:
                timeline_.json = given(Id::json);
                timeline_.windowOnly = given(Id::window);
                return timeline_;
            case Id::checkCatalogue:
                return CheckCatalogue{text_};
            case Id::rollBackCatalogue:
                return RollBackCatalogue{};
            case Id::keyMap:
                return PrintKeyMap{given(Id::json)};
            case Id::type:
                return TypeText{textOrStandardInput(text_)};
            case Id::press:
                return PressText{textOrStandardInput(text_)};
            case Id::set:
                return ChangeSettings{changes_};
            case Id::get:
                return PrintSetting{text_};
            case Id::toggle:
                return AskRunning{AskRunning::What::toggle};
            case Id::hide:
                return AskRunning{AskRunning::What::hide};
            case Id::show:
                return AskRunning{AskRunning::What::show};
            case Id::paste:
                return AskRunning{AskRunning::What::paste};
            case Id::emote:
                return AskRunning{AskRunning::What::emote, text_};
            case Id::stop:
                return AskRunning{AskRunning::What::stop};
            case Id::toggleApp:
                return AskRunning{AskRunning::What::toggleApp};
            case Id::fill:
                return AskRunning{AskRunning::What::fill, textOrStandardInput(text_)};
            case Id::quit:
                return AskRunning{AskRunning::What::quit};
            case Id::doctor:
                return RunDoctor{};
            case Id::version:
                return ShowVersion{};
            default:
                return ShowHelp{};
        }
    }

    Overrides overrides_;
    const Option* command_ = nullptr;
    std::vector<Id> details_;
    std::string text_;
    PrintTimeline timeline_;
    std::vector<SettingChange> changes_;
};

}  // namespace

std::variant<CommandLine, UsageError> parseCommandLine(std::span<const std::string> arguments,
                                                       const EnvironmentLookup& environment) {
    return Parser(environment).parse(arguments);
}

std::string helpText() {
    std::string text =
        "Vantor stands beside the game: start it without a command and it waits in the status bar.\n"
        "\n"
        "usage: vantor [COMMAND] [OPTION...]\n"
        "\n";
    for (const Option& option : options) {
        std::string left = "  " + std::string(option.name);
        if (!option.operand.empty()) left += " " + std::string(option.operand);
        left.resize(std::max<std::size_t>(left.size() + 2, 24), ' ');
        text += left + std::string(option.help) + "\n";
    }
    return text;
}

std::optional<std::string> environmentVariable(const char* name) {
    const char* value = std::getenv(name);
    return value && *value ? std::optional<std::string>(value) : std::nullopt;
}

}  // namespace vantor
