#include "app/cli/RemoteCommand.h"

#include <QtCore/QByteArray>
#include <algorithm>
#include <array>
#include <ostream>
#include <string_view>

namespace vantor {

namespace {

using What = AskRunning::What;

struct Request {
    What what;
    std::string_view word;
    bool hasText = false;
};
constexpr std::array requests{
    Request{What::toggleApp, "toggle-app"},
    Request{What::fill, "fill", true},
    Request{What::readCatalogue, "read-catalogue"},
    Request{What::quit, "quit"},
    Request{What::toggle, "toggle"},
    Request{What::hide, "hide"},
    Request{What::show, "show"},
    Request{What::paste, "paste"},
    Request{What::emote, "emote", true},
    Request{What::stop, "stop"},
};

constexpr std::string_view done = "done";
constexpr std::string_view unknownRequest = "unknown request";

struct RefusalWords {
    Refusal refusal;
    std::string_view line;
    // For whom: the same refusal is told in other words to another command.
    What what;
    std::string_view sentence;
};
constexpr std::array refusals{
    RefusalWords{Refusal::unknownName, "unknown name", What::fill, "--fill: no account of that name is stored"},
    RefusalWords{Refusal::unknownName, "unknown name", What::emote, "--emote: there is no such emote"},
    RefusalWords{Refusal::vantorInFront, "Vantor in front", What::toggleApp,
                 "--toggle-app: Vantor itself is in front, which is not switched off"},
    RefusalWords{Refusal::notOverGame, "not over a game", What::paste,
                 "--paste: nothing is pasted unless the game is in front, the overlay closed and pasting switched on"},
    RefusalWords{Refusal::notOverGame, "not over a game", What::emote,
                 "--emote: no application is in front on which Vantor is enabled"},
};

}  // namespace

std::string requestLine(const AskRunning& command) {
    const Request& request = *std::ranges::find(requests, command.what, &Request::what);
    std::string line(request.word);
    if (request.hasText)
        line += " " + QByteArray::fromStdString(command.text.value_or("")).toPercentEncoding().toStdString();
    return line;
}

std::optional<AskRunning> parseRequest(const std::string& line) {
    const auto space = line.find(' ');
    const auto* const request = std::ranges::find(requests, line.substr(0, space), &Request::word);
    if (request == requests.end() || request->hasText != (space != std::string::npos)) return std::nullopt;
    if (!request->hasText) return AskRunning{request->what};
    return AskRunning{request->what,
                      QByteArray::fromPercentEncoding(QByteArray::fromStdString(line.substr(space + 1))).toStdString()};
}

int runAskRunning(const AskRunning& command, const std::function<RemoteReply(const std::string& line)>& ask,
                  std::ostream& errors) {
    const RemoteReply reply = ask(requestLine(command));
    if (reply.line == done) return 0;
    const auto* const refused = std::ranges::find_if(
        refusals, [&](const RefusalWords& each) { return reply.line == each.line && command.what == each.what; });
    if (!reply.running)
        errors << "vantor: no Vantor runs on this display\n";
    else if (refused != refusals.end())
        errors << "vantor: " << refused->sentence << "\n";
    else if (reply.line == unknownRequest)
        errors << "vantor: the Vantor that runs is another version and does not know this command\n";
    else
        errors << "vantor: the Vantor that runs does not answer\n";
    return 1;
}

RemoteAnswer answerRequest(const std::string& line, const RemoteActions& actions) {
    const auto command = parseRequest(line);
    if (!command) return {.line = std::string(unknownRequest)};
    if (command->what == What::quit) return {.line = std::string(done), .afterwards = actions.quit};
    const auto refusal = actions.act(*command);
    if (!refusal) return {.line = std::string(done)};
    return {.line = std::string(std::ranges::find(refusals, *refusal, &RefusalWords::refusal)->line)};
}

}  // namespace vantor
