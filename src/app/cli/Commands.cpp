#include "app/cli/Commands.h"

#include <istream>
#include <iterator>
#include <ostream>

#include "app/cli/CatalogueCommand.h"
#include "app/cli/DoctorCommand.h"
#include "app/cli/SettingsCommand.h"
#include "app/cli/TimelineCommand.h"
#include "base/AtOnce.h"
#include "catalogue/CatalogueWords.h"
#include "input/ClipboardManager.h"
#include "input/KeyMap.h"

namespace vantor {

namespace {

constexpr int unavailableStatus = 1;

class Runner {
public:
    explicit Runner(const CommandNeeds& needs) : needs_(needs) {}

    std::optional<int> operator()(const StartProgram&) const { return std::nullopt; }
    std::optional<int> operator()(const ShowHelp&) const { return print(helpText()); }
    std::optional<int> operator()(const ShowVersion&) const {
        return print(needs_.version() + "catalogue " + catalogueText(readStoredCatalogue(needs_.layers).status) + "\n");
    }
    std::optional<int> operator()(const RunDoctor&) const {
        return print(
            capabilitiesAsText(needs_.examineCapabilities(), catalogueRows(readStoredCatalogue(needs_.layers))));
    }
    std::optional<int> operator()(const PrintTimeline& command) const {
        StoredCatalogue stored;
        if (!command.catalogueFile) stored = readStoredCatalogue(needs_.layers);
        for (const std::string& fault : stored.faults) needs_.err << "vantor: " << fault << "\n";
        return runTimeline(command, needs_.catalogue(), *needs_.makeDefaults(), *needs_.makeClock(), needs_.out,
                           needs_.err, stored.above);
    }
    std::optional<int> operator()(const CheckCatalogue& command) const {
        return runCatalogueCheck(command, needs_.catalogue(), needs_.layers, needs_.out, needs_.err);
    }
    std::optional<int> operator()(const RollBackCatalogue&) const {
        const int status = runCatalogueRollback(needs_.layers, needs_.out, needs_.err);
        // A Vantor that runs reads it anew; where none does, nobody has to.
        if (status == 0) (void)needs_.askRunning(requestLine({AskRunning::What::readCatalogue}));
        return status;
    }
    std::optional<int> operator()(const PrintKeyMap&) const {
        const auto layout = needs_.makeKeyboardLayout();
        return layout ? print(keyMapJson(KeyMap::learn(*layout)) + "\n") : unavailableStatus;
    }
    std::optional<int> operator()(const TypeText& command) const {
        return act([text = given(command.text)](ClipboardManager& keys, const ClipboardManager::Then& then) {
            keys.typeString(text, then);
        });
    }
    std::optional<int> operator()(const PressText& command) const {
        return act([text = given(command.text)](ClipboardManager& keys, const ClipboardManager::Then& then) {
            keys.pressReadableKeys(text, then);
        });
    }
    std::optional<int> operator()(const ChangeSettings& command) const {
        return runChangeSettings(command, *needs_.makeDefaults(), needs_.in, needs_.err);
    }
    std::optional<int> operator()(const PrintSetting& command) const {
        return runPrintSetting(command, *needs_.makeDefaults(), needs_.out, needs_.err);
    }
    std::optional<int> operator()(AskRunning command) const {
        if (command.what == AskRunning::What::fill) command.text = given(command.text);
        return runAskRunning(command, needs_.askRunning, needs_.err);
    }

private:
    int print(const std::string& text) const {
        needs_.out << text;
        return 0;
    }
    [[nodiscard]] std::string given(const std::optional<std::string>& text) const {
        return text ? *text : std::string(std::istreambuf_iterator<char>(needs_.in), {});
    }
    // Types or presses once, into the application that has the focus.
    template <typename Operation>
    int act(const Operation& operation) const {
        const auto typing = needs_.makeTyping();
        if (!typing) return unavailableStatus;
        const TypingServices services = typing->typing();
        TaskQueueAtOnce here;
        MainThreadAtOnce after;
        ClipboardManager clipboardManager(
            {.typist = {services.layout, services.poster, services.focus, needs_.pause},
             .monitors = services.monitors,
             .workspace = services.workspace,
             .typingThread = here,
             .mainThread = after,
             .say = [this](const std::string& line) { needs_.err << "vantor: " << line << "\n"; }});
        Typed typed;
        operation(clipboardManager, [&typed](const Typed& done) { typed = done; });
        if (typed.unknown > 0)
            needs_.err << "vantor: the keyboard layout has no key for " << typed.unknown
                       << " of what was to be typed\n";
        if (typed.end == Typed::End::whole && typed.refused)
            needs_.err << "vantor: the keyboard did not take every key, so what was to be typed is not whole\n";
        return typed.end == Typed::End::whole && !typed.refused ? 0 : unavailableStatus;
    }

    const CommandNeeds& needs_;
};

}  // namespace

std::optional<int> runCommand(const Command& command, const CommandNeeds& needs) {
    return std::visit(Runner(needs), command);
}

}  // namespace vantor
