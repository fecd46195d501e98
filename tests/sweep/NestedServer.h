#pragma once
// An X server inside a window of another. What is typed in the outer one comes out of the inner one's own keyboard: a
// device beside that of the test extension. Owns the process and the window. Main thread.

#include <QtCore/QProcess>
#include <QtCore/QString>

#include "platform/linux/XConnection.h"

namespace vantor::sweep {

class NestedServer {
public:
    // Connects to the outer server, which DISPLAY names.
    NestedServer();
    ~NestedServer();
    NestedServer(const NestedServer&) = delete;
    NestedServer& operator=(const NestedServer&) = delete;

    // Its display name; empty when it did not start.
    [[nodiscard]] const QString& display() const { return display_; }
    // Sends a key of the outer keyboard; it is in the inner server some time later.
    void press(std::uint8_t xKeycode, bool down);

private:
    [[nodiscard]] bool clearMeanings();
    void roundTrip();

    XConnection outer_;
    xcb_window_t frame_ = XCB_NONE;
    QProcess process_;
    QString display_;
};

}  // namespace vantor::sweep
