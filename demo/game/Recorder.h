#pragma once
// Writes what the game window is given to a file, one JSON line for each event, on disk at once. Main thread.

#include <QtCore/QFile>
#include <QtGui/QKeyEvent>

namespace game {

class Recorder {
public:
    // False when the file cannot be written.
    [[nodiscard]] bool open(const QString& path);
    void key(const QKeyEvent& event, bool down);
    void focus(bool in);
    void click(int x, int y);

private:
    void write(const class QJsonObject& line);

    QFile file_;
};

}  // namespace game
