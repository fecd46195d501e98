#pragma once
// The gallery's window: a scene of the game, the ink panel over it, and the exhibits on the panel. Main thread.

#include <QtGui/QPixmap>
#include <QtWidgets/QWidget>

#include "game/Scene.h"

namespace gallery {

// `whole`: as tall as its exhibits, as for a picture; else they scroll.
enum class Extent { whole, scrolling };

class Stage : public QWidget {
public:
    Stage(game::Scene scene, Extent extent);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    game::Scene scene_;
    QPixmap background_;
};

}  // namespace gallery
