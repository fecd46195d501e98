#include "ui/EscapeCatch.h"

#include <QtCore/QCoreApplication>
#include <QtGui/QKeyEvent>
#include <QtGui/QWindow>
#include <utility>

namespace vantor {

// On the application, since the one who listens to the window's keys does so there too; the latest filter is asked
// first.
class EscapeCatch::Filter final : public QObject {
public:
    Filter(QWidget& window, std::function<void()> caught, At at)
        : window_(&window), caught_(std::move(caught)), at_(at) {
        QCoreApplication::instance()->installEventFilter(this);
    }

    void end() {
        caught_ = nullptr;
        if (!held_) deleteLater();
    }

    bool eventFilter(QObject* watched, QEvent* event) override {
        const bool press = event->type() == QEvent::KeyPress;
        if (!press && event->type() != QEvent::KeyRelease) return false;
        if (!window_ || watched != window_->windowHandle()) return false;
        const auto& key = *static_cast<QKeyEvent*>(event);
        if (key.key() != Qt::Key_Escape) return false;
        if (press && !held_) {
            if (!caught_) return false;
            held_ = true;
            if (at_ == At::press) tell();
        } else if (!held_) {
            return false;  // a release whose press was before
        } else if (!press && !key.isAutoRepeat()) {
            held_ = false;
            deleteLater();
            if (at_ == At::release) tell();
        }
        return true;
    }

private:
    // May end this catch.
    void tell() {
        if (const auto caught = std::exchange(caught_, nullptr)) caught();
    }

    QPointer<QWidget> window_;
    std::function<void()> caught_;
    At at_;
    bool held_ = false;
};

EscapeCatch::EscapeCatch(QWidget& window, std::function<void()> caught, At at)
    : filter_(new Filter(window, std::move(caught), at)) {}

EscapeCatch::~EscapeCatch() {
    if (filter_) filter_->end();
}

}  // namespace vantor
