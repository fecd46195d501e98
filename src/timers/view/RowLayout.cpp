#include "timers/view/RowLayout.h"

#include <QtGui/QFontMetrics>
#include <algorithm>
#include <utility>

#include "ui/Fonts.h"

namespace vantor {

namespace {

constexpr int gap = 12;
constexpr int imageWidth = 19;  // with its distance to the label

const auto widestGetThereBy = QStringLiteral("get there by 00:00 to LFG");

}  // namespace

int RowLayout::height() { return withText(58); }
int RowLayout::timeRight() { return withText(110); }
int RowLayout::textLeft() { return timeRight() + 14; }
int RowLayout::lineHeight() { return withText(21); }

void RowLayout::setWidth(int width) {
    if (width == std::exchange(width_, width)) return;
    lines_.clear();
    heights_.fill(0);
}

const RowLayout::SecondLine& RowLayout::secondLine(const QString& getThereBy, std::span<const RewardBadge> badges) {
    std::vector<std::string_view> key;
    if (!getThereBy.isEmpty()) key.emplace_back("lfg");
    for (const RewardBadge& badge : badges) key.push_back(badge.image);
    if (const auto found = lines_.find(key); found != lines_.end()) return found->second;

    const QFontMetrics textMetrics(sansFont(13));
    const QFontMetrics labelMetrics(sansFont(12));
    const int room = std::max(1, width_ - textLeft() - actionsWidth);
    SecondLine line;
    int left = 0;
    int top = 0;
    const auto place = [&](int partWidth) {
        if (left > 0 && left + partWidth > room) {
            left = 0;
            top += lineHeight();
        }
        const QRect frame(left, top, std::min(partWidth, room), lineHeight());
        left += partWidth + gap;
        return frame;
    };
    if (!getThereBy.isEmpty()) line.getThereBy = place(textMetrics.horizontalAdvance(widestGetThereBy) + 2);
    for (const RewardBadge& badge : badges) {
        const QString label = QString::fromUtf8(badge.label.data(), static_cast<qsizetype>(badge.label.size()));
        line.badges.push_back(place(imageWidth + labelMetrics.horizontalAdvance(label) + 2));
    }
    if (left > 0) line.lines = top / lineHeight() + 1;
    return lines_.emplace(std::move(key), std::move(line)).first->second;
}

int RowLayout::rowHeight(bool gathersEarly, std::span<const RewardBadge> badges) {
    const SecondLine& line = secondLine(gathersEarly ? widestGetThereBy : QString(), badges);
    return height() + std::max(0, line.lines - 1) * lineHeight();
}

int RowLayout::rowHeight(const Event& event) {
    std::size_t parts = event.lfg ? 1 : 0;
    if (event.rewards) {
        const EventRewards& rewards = *event.rewards;
        parts |= (rewards.items ? 2U : 0U) | (rewards.random_items ? 4U : 0U) | (rewards.achievements ? 8U : 0U) |
                 (rewards.items_for_achievements ? 16U : 0U);
    }
    int& known = heights_[parts];
    if (known == 0) known = rowHeight(event.lfg.has_value(), rewardBadges(event));
    return known;
}

}  // namespace vantor
