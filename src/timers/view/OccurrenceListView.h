#pragma once
// The list of timers rows. Only the rows on the screen exist as widgets, with one more above and below, and are
// recycled, so a list of thousands costs what a short one does. The place that the player looks at, open rows and the
// focus stay where they are when the list changes. Main thread.

#include <QtWidgets/QAbstractScrollArea>
#include <functional>
#include <set>
#include <vector>

#include "timers/view/OccurrenceRowView.h"
#include "timers/view/RowLayout.h"

namespace vantor {

class OccurrenceListView : public QAbstractScrollArea {
public:
    // The rows by their place in the list, ascending by id. What it refers to outlives the view.
    struct Rows {
        std::function<std::size_t()> count;
        std::function<const TimelineEvent&(std::size_t place)> occurrence;
        std::function<OccurrenceRow(std::size_t place)> row;
        std::function<AchievementBlock(const Event& event)> block;
        std::function<void(const Event& event)> opened;  // by the player
        // Whether the occurrence is still ahead, also one that the search leaves out.
        std::function<bool(double id)> isAhead;
    };

    // Without `toggleOpen`, which is the list's own.
    OccurrenceListView(Rows rows, OccurrenceRowView::Actions actions, QWidget* parent);

    // After the rows changed.
    void refresh();
    // The eye of the uppermost row, from the top of the list.
    void focusFirstWatch();
    // The control after which the rows' controls come in the order of the keyboard.
    void setTabPredecessor(QWidget* predecessor) { predecessor_ = predecessor; }

    [[nodiscard]] bool isOpen(double id) const { return open_.contains(id); }
    void toggleOpen(double id);
    // Of the rows that exist, from top to bottom; for who inspects it.
    [[nodiscard]] std::vector<const OccurrenceRowView*> existingRows() const;

protected:
    void resizeEvent(QResizeEvent* event) override;
    void scrollContentsBy(int x, int y) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    struct Focus {
        double id;
        std::size_t control;
    };

    void measure();
    void keepPlace();
    void arrange();
    [[nodiscard]] std::vector<std::size_t> wantedPlaces(std::optional<std::size_t> focused) const;
    [[nodiscard]] std::vector<OccurrenceRowView*> viewsFor(const std::vector<std::size_t>& places);
    void orderTabs(const std::vector<OccurrenceRowView*>& views);
    void followFocus(const QWidget* now);
    void bringIntoView(std::size_t place);
    void focusRow(std::size_t place, std::size_t control);
    // The first row with this id or a later one; the count when there is none.
    [[nodiscard]] std::size_t placeFrom(double id) const;
    [[nodiscard]] std::optional<std::size_t> placeOf(double id) const;
    // The first row that reaches below this height; the list is not empty.
    [[nodiscard]] std::size_t placeAt(int y) const;

    Rows rows_;
    OccurrenceRowView::Actions actions_;
    RowLayout layout_;
    std::vector<int> tops_{0};  // of each row, and the end of the last
    std::vector<OccurrenceRowView*> existing_;
    std::set<double> open_;
    std::optional<Focus> focus_;
    // What the player looks at: the row at the upper edge and how far it is scrolled. Nothing at the very top.
    std::optional<double> anchor_;
    int anchorOffset_ = 0;
    bool arranging_ = false;  // what happens to the scroll bar and the focus is our own doing
    QWidget* predecessor_ = nullptr;
    QWidget* edges_ = nullptr;
};

}  // namespace vantor
