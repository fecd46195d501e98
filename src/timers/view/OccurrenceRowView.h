#pragma once
// One row of the timers list on the screen: the occurrence drawn, its controls, and below it the opened part. A row
// that is given what it shows already does nothing. Main thread; the list recycles it for another occurrence.

#include <QtWidgets/QWidget>
#include <functional>
#include <optional>
#include <string>

#include "platform/Defaults.h"
#include "timers/AchievementBlock.h"
#include "timers/OccurrenceRow.h"

namespace vantor {

class AchievementBlockView;
class RowButton;
class RowLayout;
class WatchAchievementButton;

class OccurrenceRowView : public QWidget {
public:
    // What its controls do beside watching.
    struct Actions {
        Defaults& defaults;
        // A control that copies the chat link or types it into the game.
        std::function<QWidget*(const QString& chatLink, QWidget* parent)> makeWaypointButton;
        std::function<void(const std::string& page)> openWiki;
        std::function<void(double id)> toggleOpen;
    };

    OccurrenceRowView(const Actions& actions, RowLayout& layout, QWidget* parent);

    // block: of an open row. Whether it now has other controls.
    bool setRow(const OccurrenceRow& row, std::optional<AchievementBlock> block);
    [[nodiscard]] const OccurrenceRow& row() const { return row_; }

    // Its controls from left to right, of those that it has.
    [[nodiscard]] std::vector<QWidget*> controls() const;
    // In the order of `controls` of a row that has all of them; nothing for a widget of another row.
    [[nodiscard]] std::optional<std::size_t> controlAt(const QWidget* widget) const;
    // The same control as in another row, or the nearest that this row has.
    void focusControl(std::size_t control);
    static constexpr std::size_t watchControl = 3;

protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    [[nodiscard]] bool opensAt(QPoint place) const;
    void followChatLink();
    void placeControls();
    [[nodiscard]] int actionsLeft() const;
    [[nodiscard]] int headHeight() const;
    void paintBackground(QPainter& painter) const;
    void paintTexts(QPainter& painter) const;

    Actions actions_;
    RowLayout& layout_;
    OccurrenceRow row_;
    bool filled_ = false;
    bool pressed_ = false;
    RowButton* disclosure_;
    QWidget* waypoint_ = nullptr;
    RowButton* wiki_;
    WatchAchievementButton* watch_;
    AchievementBlockView* block_;
};

}  // namespace vantor
