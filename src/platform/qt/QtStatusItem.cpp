#include "platform/qt/QtStatusItem.h"

#include <QtGui/QAction>
#include <QtGui/QCursor>
#include <QtGui/QIcon>
#include <utility>

namespace vantor {

namespace {

// An ampersand in an application's name is a letter, not the mark of a shortcut.
QString menuText(const std::string& title) {
    return QString::fromStdString(title).replace(QLatin1Char('&'), QStringLiteral("&&"));
}

void fill(QMenu& menu, std::vector<MenuEntry> entries) {
    for (MenuEntry& entry : entries) {
        if (entry.kind == MenuEntry::Kind::separator) {
            menu.addSeparator();
        } else if (!entry.submenu.empty()) {
            fill(*menu.addMenu(menuText(entry.title)), std::move(entry.submenu));
        } else {
            QAction* const action = menu.addAction(menuText(entry.title));
            action->setEnabled(entry.enabled);
            if (entry.action) QObject::connect(action, &QAction::triggered, &menu, std::move(entry.action));
        }
    }
}

}  // namespace

void QtStatusItem::setMenu(const std::string& title, std::vector<MenuEntry> entries) {
    menu_.clear();
    menu_.setTitle(QString::fromStdString(title));
    fill(menu_, std::move(entries));
    icon_.setIcon(QIcon(QStringLiteral(":/images/vantor.svg")));
    icon_.setToolTip(QString::fromStdString(title));
    icon_.setContextMenu(&menu_);
    // A plain click opens the menu too, as the status bar's items do.
    QObject::connect(&icon_, &QSystemTrayIcon::activated, &menu_, [this](QSystemTrayIcon::ActivationReason reason) {
        if (reason == QSystemTrayIcon::Trigger) menu_.popup(QCursor::pos());
    });
    icon_.show();
}

void QtStatusItem::setTitle(std::size_t position, const std::string& title) {
    const auto actions = menu_.actions();
    if (position < static_cast<std::size_t>(actions.size()))
        actions[static_cast<qsizetype>(position)]->setText(menuText(title));
}

bool QtStatusItem::available() const { return QSystemTrayIcon::isSystemTrayAvailable(); }

}  // namespace vantor
