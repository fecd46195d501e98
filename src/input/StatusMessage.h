#pragma once
// A short message that a button writes out one character at a time, keeps for a second and erases again. Main thread;
// it may go while a message is under way.

#include <QtCore/QString>
#include <functional>
#include <memory>

#include "base/Scheduler.h"

namespace vantor {

class StatusMessage {
public:
    explicit StatusMessage(Scheduler& scheduler) : scheduler_(scheduler) {}
    StatusMessage(const StatusMessage&) = delete;
    StatusMessage& operator=(const StatusMessage&) = delete;

    // Does nothing while a message is still there.
    void show(const QString& message);
    // What of it is shown now.
    [[nodiscard]] const QString& text() const { return shown_->text; }
    void onChanged(std::function<void()> handler) { shown_->changed = std::move(handler); }

private:
    struct Shown {
        QString text;
        bool underWay = false;
        std::function<void()> changed;
        void set(QString next);
    };

    Scheduler& scheduler_;
    std::shared_ptr<Shown> shown_ = std::make_shared<Shown>();
};

}  // namespace vantor
