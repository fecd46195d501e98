#pragma once
// Draws one row of the timers list in the look. Main thread.

#include <QtWidgets/QStyledItemDelegate>

namespace vantor {

class TimerRowModel;

class TimerRowPainter : public QStyledItemDelegate {
public:
    explicit TimerRowPainter(const TimerRowModel& model, QObject* parent);

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

private:
    const TimerRowModel& model_;
};

}  // namespace vantor
