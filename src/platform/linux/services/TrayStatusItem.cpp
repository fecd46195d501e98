#include "platform/linux/services/TrayStatusItem.h"

#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusConnectionInterface>
#include <QtGui/QAction>
#include <QtGui/QCursor>
#include <QtGui/QIcon>
#include <QtWidgets/QApplication>
#include <utility>

namespace vantor {

namespace {

const QString barService = QStringLiteral("org.kde.StatusNotifierWatcher");

// A title as the toolkit's own menu wants it: an ampersand is a letter, not the mark of a shortcut.
QString widgetText(const QString& title) { return QString(title).replace(QLatin1Char('&'), QStringLiteral("&&")); }

// And as it must be for the status bar, to which the toolkit hands the text with its first ampersand turned into the
// mark of a shortcut there, an underscore (com.canonical.dbusmenu, "label"); other underscores it leaves as they are.
QString barText(const QString& title) {
    QString text = QString(title).replace(QLatin1Char('_'), QStringLiteral("__"));
    if (const auto first = text.indexOf(QLatin1Char('&')); first >= 0) text.insert(first, QLatin1Char('&'));
    return text;
}

void setTitleOf(QAction& action, const std::string& title) {
    action.setData(QString::fromStdString(title));
    action.setText(barText(action.data().toString()));
}

// A menu of the status bar. Where the desktop lets the toolkit draw it, it is shown with the toolkit's texts.
class StatusBarMenu final : public QMenu {
public:
    using QMenu::QMenu;

protected:
    void showEvent(QShowEvent* event) override {
        spell(widgetText);
        QMenu::showEvent(event);
    }
    void hideEvent(QHideEvent* event) override {
        QMenu::hideEvent(event);
        spell(barText);
    }

private:
    template <typename Spelling>
    void spell(const Spelling& spelling) {
        for (QAction* const action : actions())
            if (!action->isSeparator() && !action->menu()) action->setText(spelling(action->data().toString()));
    }
};

void fill(QMenu& menu, std::vector<MenuEntry> entries) {
    for (MenuEntry& entry : entries) {
        if (entry.kind == MenuEntry::Kind::separator) {
            menu.addSeparator();
        } else if (!entry.submenu.empty()) {
            auto* const submenu = new StatusBarMenu(QString::fromStdString(entry.title), &menu);
            fill(*submenu, std::move(entry.submenu));
            menu.addMenu(submenu);
        } else {
            QAction* const action = menu.addAction(QString());
            setTitleOf(*action, entry.title);
            action->setEnabled(entry.enabled && entry.action != nullptr);
            // Later: where the toolkit draws the menu itself, it still holds the keyboard now.
            QObject::connect(action, &QAction::triggered, qApp, [run = std::move(entry.action)] {
                if (run) QMetaObject::invokeMethod(qApp, run, Qt::QueuedConnection);
            });
        }
    }
}

}  // namespace

TrayStatusItem::TrayStatusItem(DisplayTray displayTray)
    : displayTray_(std::move(displayTray)),
      bar_(barService, QDBusConnection::sessionBus(), QDBusServiceWatcher::WatchForRegistration) {
    QObject::connect(&bar_, &QDBusServiceWatcher::serviceRegistered, &bar_, [this] { showWhereThereIsATray(); });
}

void TrayStatusItem::setMenu(const std::string& title, std::vector<MenuEntry> entries) {
    title_ = QString::fromStdString(title);
    auto menu = std::make_unique<StatusBarMenu>(title_);
    fill(*menu, std::move(entries));
    if (icon_) {
        icon_->setToolTip(title_);
        icon_->setContextMenu(menu.get());
    }
    menu_ = std::move(menu);
    showWhereThereIsATray();
}

void TrayStatusItem::setEntry(std::size_t position, const std::string& title, bool enabled) {
    if (!menu_) return;
    const auto actions = menu_->actions();
    if (position < static_cast<std::size_t>(actions.size())) {
        QAction& action = *actions[static_cast<qsizetype>(position)];
        setTitleOf(action, title);
        action.setEnabled(enabled);
    }
    // The other application in front is an occasion to look for a tray that nothing announces.
    showWhereThereIsATray();
}

// The toolkit looks for a status bar on the bus once, with its first icon, and keeps to the answer: so there is no icon
// before there is a place for it.
void TrayStatusItem::showWhereThereIsATray() {
    if (icon_ || !menu_ || !available()) return;
    icon_.emplace(QIcon(QStringLiteral(":/images/vantor.svg")));
    // A plain click opens the menu too, as the status bar's items do.
    QObject::connect(&*icon_, &QSystemTrayIcon::activated, &*icon_, [this](QSystemTrayIcon::ActivationReason reason) {
        if (reason == QSystemTrayIcon::Trigger && menu_) menu_->popup(QCursor::pos());
    });
    icon_->setToolTip(title_);
    icon_->setContextMenu(menu_.get());
    icon_->show();
}

bool TrayStatusItem::available() const {
    const auto bus = QDBusConnection::sessionBus();
    return (bus.isConnected() && bus.interface()->isServiceRegistered(barService)) || displayTray_();
}

}  // namespace vantor
