#include "app/cli/RemoteCommand.h"

#include <QtCore/QByteArray>
#include <ostream>

namespace vantor {

namespace {

const std::string done = "done";
const std::string unknownName = "unknown name";
const std::string ownInFront = "Vantor in front";
const std::string unknownRequest = "unknown request";
const std::string fillWord = "fill ";

}  // namespace

std::string requestLine(const AskRunning& command) {
    switch (command.what) {
        case AskRunning::What::toggleApp:
            return "toggle-app";
        case AskRunning::What::fill:
            return fillWord +
                   QByteArray::fromStdString(command.username.value_or("")).toPercentEncoding().toStdString();
        case AskRunning::What::readCatalogue:
            return "read-catalogue";
        case AskRunning::What::quit:
            break;
    }
    return "quit";
}

std::optional<AskRunning> parseRequest(const std::string& line) {
    if (line == "toggle-app") return AskRunning{AskRunning::What::toggleApp};
    if (line == "read-catalogue") return AskRunning{AskRunning::What::readCatalogue};
    if (line == "quit") return AskRunning{AskRunning::What::quit};
    if (!line.starts_with(fillWord)) return std::nullopt;
    return AskRunning{
        AskRunning::What::fill,
        QByteArray::fromPercentEncoding(QByteArray::fromStdString(line.substr(fillWord.size()))).toStdString()};
}

int runAskRunning(const AskRunning& command, const std::function<RemoteReply(const std::string& line)>& ask,
                  std::ostream& errors) {
    const RemoteReply reply = ask(requestLine(command));
    if (reply.line == done) return 0;
    if (!reply.running)
        errors << "vantor: no Vantor runs on this display\n";
    else if (reply.line == unknownName)
        errors << "vantor: --fill: no account of that name is stored\n";
    else if (reply.line == ownInFront)
        errors << "vantor: --toggle-app: Vantor itself is in front, which is not switched off\n";
    else if (reply.line == unknownRequest)
        errors << "vantor: the Vantor that runs is another version and does not know this command\n";
    else
        errors << "vantor: the Vantor that runs does not answer\n";
    return 1;
}

RemoteAnswer answerRequest(const std::string& line, const RemoteActions& actions) {
    const auto command = parseRequest(line);
    if (!command) return {.line = unknownRequest};
    switch (command->what) {
        case AskRunning::What::toggleApp:
            if (!actions.toggleApp()) return {.line = ownInFront};
            break;
        case AskRunning::What::fill:
            if (!actions.isAccount(*command->username)) return {.line = unknownName};
            actions.fillCredentials(*command->username);
            break;
        case AskRunning::What::readCatalogue:
            actions.readCatalogue();
            break;
        case AskRunning::What::quit:
            return {.line = done, .afterwards = actions.quit};
    }
    return {.line = done};
}

}  // namespace vantor
