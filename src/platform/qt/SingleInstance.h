#pragma once
// One running Vantor for each user and display: the second start asks the first to open its overlay, and a command asks
// it for something else. A request and its answer are one line each. Main thread.

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtNetwork/QLocalServer>
#include <QtNetwork/QLocalSocket>

#include <functional>
#include <optional>
#include <string>

namespace vantor {

class SingleInstance {
public:
    enum class Role {
        first,        // this process listens from now on
        second,       // another one runs and has been asked
        unavailable,  // neither: the runtime folder cannot be used; the program goes on alone
    };

    struct Answer {
        std::string line;
        std::function<void()> afterwards{};  // once the line is on its way; may end the process
    };
    using RequestHandler = std::function<Answer(const std::string& line)>;

    // The handler runs at each request of a later start.
    explicit SingleInstance(std::function<void()> onOpen);

    // Answers every request that is not one of a later start. Without a handler they get no answer.
    void answerWith(RequestHandler handler) { onRequest_ = std::move(handler); }

    struct Reply {
        bool running = false;               // somebody listens
        std::optional<std::string> line{};  // nothing: no answer in time
    };
    // Asks the one that runs, from a process of its own.
    [[nodiscard]] static Reply request(const QString& name, const std::string& line);

    // A name for the socket's file, for the display that DISPLAY names: the screen number makes no difference.
    [[nodiscard]] static QString nameFor(const QByteArray& display);
    // In the user's runtime folder. Once in the life of the object.
    [[nodiscard]] Role claim(const QString& name);

private:
    [[nodiscard]] static bool askTheFirst(const QString& path);
    [[nodiscard]] static QString pathOf(const QString& name);
    void answerRequests();
    void answerLine(QLocalSocket& socket, const QByteArray& line);

    std::function<void()> onOpen_;
    RequestHandler onRequest_;
    QLocalServer server_;
};

}  // namespace vantor
