#pragma once
// One running Vantor for each user and display: the second start asks the first to open its overlay. Main thread.

#include <QByteArray>
#include <QLocalServer>
#include <QString>

#include <functional>

namespace vantor {

class SingleInstance {
public:
    enum class Role {
        first,        // this process listens from now on
        second,       // another one runs and has been asked
        unavailable,  // neither: the runtime folder cannot be used; the program goes on alone
    };

    // The handler runs at each request of a later start.
    explicit SingleInstance(std::function<void()> onOpen);

    // A name for the socket's file, for the display that DISPLAY names: the screen number makes no difference.
    [[nodiscard]] static QString nameFor(const QByteArray& display);
    // In the user's runtime folder. Once in the life of the object.
    [[nodiscard]] Role claim(const QString& name);

private:
    [[nodiscard]] static bool askTheFirst(const QString& path);
    void answerRequests();

    std::function<void()> onOpen_;
    QLocalServer server_;
};

}  // namespace vantor
