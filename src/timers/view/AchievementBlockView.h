#pragma once
// The opened part of a timers row: achievements with a mark, a name, a bar and the progress in words, and what the
// event gives by kind and count. Main thread.

#include <QtWidgets/QWidget>

#include "timers/AchievementBlock.h"

namespace vantor {

class AchievementBlockView : public QWidget {
public:
    explicit AchievementBlockView(QWidget* parent);

    void setBlock(AchievementBlock block);
    [[nodiscard]] static int heightOf(const AchievementBlock& block);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void paintLine(QPainter& painter, const QRect& frame, const AchievementLine& line) const;

    AchievementBlock block_;
};

}  // namespace vantor
