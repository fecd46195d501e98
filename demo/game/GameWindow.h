#pragma once
// The stand-in game's window: a landscape, and a chat that shows what is typed. Main thread.

#include <QtCore/QStringList>
#include <QtGui/QPixmap>
#include <QtWidgets/QWidget>
#include <optional>

#include "PointerClip.h"
#include "Recorder.h"
#include "Scene.h"

namespace game {

class GameWindow : public QWidget {
public:
    GameWindow(Scene scene, Recorder& recorder);
    // While it has the focus and covers the screen.
    void holdPointer() { clip_.emplace(); }

protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void typed(const QString& text);

    Scene scene_;
    Recorder& recorder_;
    QPixmap landscape_;
    QStringList said_;
    QString line_;
    bool announced_ = false;
    std::optional<PointerClip> clip_;
};

}  // namespace game
