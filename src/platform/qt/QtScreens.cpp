#include "platform/qt/QtScreens.h"

#include <QtGui/QGuiApplication>
#include <QtGui/QScreen>

namespace vantor {

std::vector<Rect> QtScreens::frames() const {
    std::vector<Rect> frames;
    const QScreen* const primary = QGuiApplication::primaryScreen();
    const auto add = [&](const QScreen* screen) {
        const QRect frame = screen->geometry();
        frames.push_back({frame.x(), frame.y(), frame.width(), frame.height()});
    };
    if (primary) add(primary);
    for (const QScreen* screen : QGuiApplication::screens())
        if (screen != primary) add(screen);
    // Between two monitors there may be a moment without any.
    if (frames.empty()) frames.push_back({0, 0, 1280, 800});
    return frames;
}

}  // namespace vantor
