#pragma once
// A desktop's status bar on the session bus (org.kde.StatusNotifierWatcher): takes items in, reads an item's menu
// (com.canonical.dbusmenu) and clicks its entries. The watcher answers on a thread of its own, as another process
// would; everything else is the main thread's.

#include <QtCore/QStringList>
#include <QtCore/QThread>
#include <QtDBus/QDBusVirtualObject>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace vantor {

struct StatusBarEntry {
    int id = 0;
    std::string label;  // without the mark of a shortcut; "-" for a separator
    bool enabled = true;
    std::vector<StatusBarEntry> entries{};
};

class StandInStatusBar {
public:
    enum class Start { now, later };
    explicit StandInStatusBar(Start when = Start::now);
    ~StandInStatusBar();
    StandInStatusBar(const StandInStatusBar&) = delete;
    StandInStatusBar& operator=(const StandInStatusBar&) = delete;

    // The bus names of the items that have registered, in order.
    [[nodiscard]] QStringList items() const;
    // Nothing while the item has no menu. Turns the event loop: the item may be this process's own.
    [[nodiscard]] std::optional<std::vector<StatusBarEntry>> menuOf(const QString& item) const;
    void click(const QString& item, int id) const;
    // Comes to the bus, after Start::later.
    void start();
    // Leaves the bus and comes back, as a desktop that crashed does.
    void restart();

private:
    class Watcher;
    void stop();

    std::unique_ptr<QThread> thread_;
    std::unique_ptr<Watcher> watcher_;
};

}  // namespace vantor
