#pragma once
// Where the parts of a timers row stand. The second line, with "get there by" and the badges, takes as many lines as
// the width needs; a row's height follows, so the list can place rows that it has not drawn. Main thread.

#include <QtCore/QRect>
#include <array>
#include <map>
#include <span>
#include <vector>

#include "timers/RewardBadge.h"

namespace vantor {

class RowLayout {
public:
    // In pixels, which grow with the player's text size.
    [[nodiscard]] static int height();  // of a row whose second line fits into one
    [[nodiscard]] static int textLeft();
    [[nodiscard]] static int timeRight();  // the times end here
    [[nodiscard]] static int lineHeight();
    static constexpr int actionsWidth = 124;  // three controls and the edge

    // Rectangles of the second line's parts, from its top left corner.
    struct SecondLine {
        QRect getThereBy;           // null without one
        std::vector<QRect> badges;  // image and label
        int lines = 0;
    };

    // For rows of this width; keeps the answers until it becomes another one.
    void setWidth(int width);
    [[nodiscard]] int width() const { return width_; }
    [[nodiscard]] const SecondLine& secondLine(const QString& getThereBy, std::span<const RewardBadge> badges);
    [[nodiscard]] int rowHeight(bool gathersEarly, std::span<const RewardBadge> badges);
    // Of a closed row.
    [[nodiscard]] int rowHeight(const Event& event);

private:
    int width_ = 0;
    // By whether players gather early and by the badges' images: rows differ in little else. All times are as wide.
    std::map<std::vector<std::string_view>, SecondLine> lines_;
    std::array<int, 32> heights_{};  // by which parts an event has; 0 when not known yet
};

}  // namespace vantor
