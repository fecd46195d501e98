#include "timers/view/TimerRowModel.h"

#include <QtCore/QStringList>
#include <algorithm>
#include <utility>

#include "timers/TimerRow.h"

namespace vantor {

namespace {

QColor accentOf(const Event& event) {
    if (!event.bg || event.bg->size() < 3) return QColor(0xA7, 0x9F, 0x8D);
    const auto part = [&](std::size_t index) {
        return static_cast<int>(std::clamp<std::int64_t>((*event.bg)[index], 0, 255));
    };
    return {part(0), part(1), part(2)};
}

QString placeOf(const ScheduledEvent& scheduled) {
    QString place = QString::fromStdString(scheduled.sectionName);
    if (!scheduled.sectionCategory.empty())
        place += QStringLiteral(" · ") + QString::fromStdString(scheduled.sectionCategory);
    return place;
}

QString remainingText(const TimerRow& row, bool gathering) {
    // Within the minute of its start an occurrence is still listed.
    if (row.remaining == "now") return QStringLiteral("now");
    return gathering ? QStringLiteral("gathering") : QStringLiteral("in ") + QString::fromStdString(row.remaining);
}

}  // namespace

std::vector<ShownRow> shownRows(std::span<const TimelineEvent> visible, int currentMinute, double windowMinutes) {
    const std::vector<TimerRow> texts = timerRows(visible, currentMinute, windowMinutes);
    std::vector<ShownRow> rows;
    rows.reserve(texts.size());
    for (std::size_t i = 0; i < texts.size() && i < visible.size(); ++i) {
        const TimerRow& text = texts[i];
        const bool gathering = visible[i].event().lfg && visible[i].gatheringMinute() <= currentMinute;
        rows.push_back({text.id, QString::fromStdString(text.time), remainingText(text, gathering),
                        text.name.empty() ? QStringLiteral("–") : QString::fromStdString(text.name),
                        placeOf(*visible[i].scheduled), QString::fromStdString(text.getThereBy),
                        accentOf(visible[i].event()), gathering});
    }
    return rows;
}

void TimerRowModel::setRows(std::vector<ShownRow> rows) {
    std::size_t place = 0;
    for (ShownRow& next : rows) {
        const auto index = [&] { return static_cast<int>(place); };
        std::size_t gone = place;
        while (gone < rows_.size() && rows_[gone].id < next.id) ++gone;
        if (gone > place) {
            beginRemoveRows({}, index(), static_cast<int>(gone) - 1);
            rows_.erase(rows_.begin() + index(), rows_.begin() + static_cast<int>(gone));
            endRemoveRows();
        }
        if (place < rows_.size() && rows_[place].id == next.id) {
            if (rows_[place] != next) {
                rows_[place] = std::move(next);
                const QModelIndex changed = createIndex(index(), 0);
                Q_EMIT dataChanged(changed, changed);
            }
        } else {
            beginInsertRows({}, index(), index());
            rows_.insert(rows_.begin() + index(), std::move(next));
            endInsertRows();
        }
        ++place;
    }
    if (place < rows_.size()) {
        beginRemoveRows({}, static_cast<int>(place), static_cast<int>(rows_.size()) - 1);
        rows_.erase(rows_.begin() + static_cast<int>(place), rows_.end());
        endRemoveRows();
    }
}

int TimerRowModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

QVariant TimerRowModel::data(const QModelIndex& index, int role) const {
    if (role != Qt::AccessibleTextRole && role != Qt::DisplayRole) return {};
    const ShownRow& shown = row(index.row());
    QStringList parts{shown.time, shown.name, shown.remaining, shown.place};
    if (!shown.getThereBy.isEmpty()) parts << shown.getThereBy;
    return parts.join(QStringLiteral(", "));
}

}  // namespace vantor
