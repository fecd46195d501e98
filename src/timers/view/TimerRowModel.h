#pragma once
// The rows that the timers list shows, as the toolkit's list model. A refresh touches only what became different: rows
// that left are removed, new ones inserted, and a row is announced as changed only when one of its texts is. Main
// thread.

#include <QtCore/QAbstractListModel>
#include <QtCore/QString>
#include <QtGui/QColor>
#include <span>
#include <vector>

#include "timers/TimelineEvent.h"

namespace vantor {

struct ShownRow {
    double id = 0;
    QString time;
    QString remaining;
    QString name;
    QString place;       // section and category
    QString getThereBy;  // empty when players need not gather early
    QColor accent;
    bool gathering = false;

    bool operator==(const ShownRow&) const = default;
};

[[nodiscard]] std::vector<ShownRow> shownRows(std::span<const TimelineEvent> visible, int currentMinute,
                                              double windowMinutes);

class TimerRowModel : public QAbstractListModel {
public:
    // Both the held and the new rows are ascending by id.
    void setRows(std::vector<ShownRow> rows);
    [[nodiscard]] const ShownRow& row(int index) const { return rows_[static_cast<std::size_t>(index)]; }

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    // The row as one text, for whoever cannot see it.
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;

private:
    std::vector<ShownRow> rows_;
};

}  // namespace vantor
