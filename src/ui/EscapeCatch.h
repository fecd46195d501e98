#pragma once
// Takes the next Escape of a window before anyone else sees it: press and release, since the window itself may close at
// the release. For what is open inside the window, and for a window whose end must not give the release to another.
// Main thread.

#include <QtCore/QPointer>
#include <QtWidgets/QWidget>
#include <functional>

namespace vantor {

// Scoped: destroyed before an Escape, it lets every later one pass; destroyed between press and release, the release is
// still taken.
class EscapeCatch {
public:
    enum class At { press, release };
    EscapeCatch(QWidget& window, std::function<void()> caught, At at = At::press);
    ~EscapeCatch();
    EscapeCatch(const EscapeCatch&) = delete;
    EscapeCatch& operator=(const EscapeCatch&) = delete;

private:
    class Filter;
    QPointer<Filter> filter_;
};

}  // namespace vantor
