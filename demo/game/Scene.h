#pragma once
// The landscape that the stand-in game shows, so that legibility over a game can be judged. Plain drawing, main thread.

#include <QtGui/QPainter>

namespace game {

enum class Scene { bright, dark };

void drawScene(QPainter& painter, const QRect& area, Scene scene);

}  // namespace game
