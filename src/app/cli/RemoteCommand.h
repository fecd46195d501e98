#pragma once
// What one process asks of the Vantor that runs already, where there is no status bar to click: a request and an answer
// of one line each. Both sides; main thread.

#include <functional>
#include <iosfwd>
#include <optional>
#include <string>

#include "app/cli/CommandLine.h"

namespace vantor {

// A name may hold any character; the line holds none that ends it.
[[nodiscard]] std::string requestLine(const AskRunning& command);
[[nodiscard]] std::optional<AskRunning> parseRequest(const std::string& line);

// The asking side. Prints at most one line, to errors; the exit status: 0 when it is done, else 1.
struct RemoteReply {
    bool running = false;
    std::optional<std::string> line{};
};
[[nodiscard]] int runAskRunning(const AskRunning& command,
                                const std::function<RemoteReply(const std::string& line)>& ask, std::ostream& errors);

// The running side.
struct RemoteAnswer {
    std::string line;
    std::function<void()> afterwards{};  // once the line is on its way
};
// Does what is asked and says what has become of it: nothing where it is done, else one of the refusals below.
enum class Refusal { unknownName, vantorInFront, notOverGame };
struct RemoteActions {
    std::function<std::optional<Refusal>(const AskRunning& command)> act;
    std::function<void()> quit;
};
[[nodiscard]] RemoteAnswer answerRequest(const std::string& line, const RemoteActions& actions);

}  // namespace vantor
