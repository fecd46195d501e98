#include "app/view/IconMenu.h"

#include <QtGui/QPainter>
#include <QtWidgets/QApplication>

#include "ui/Blending.h"
#include "ui/Fonts.h"
#include "ui/InkPanel.h"
#include "ui/Palette.h"

namespace vantor {

namespace {

constexpr InkPanelStyle panel{.opacity = 0.96, .margin = 8, .tear = 3, .seed = 11};
constexpr int textPixels = 14;

QString css(const QColor& colour) {
    return QStringLiteral("rgba(%1,%2,%3,%4)")
        .arg(colour.red())
        .arg(colour.green())
        .arg(colour.blue())
        .arg(colour.alphaF());
}

QString menuStyle() {
    return QStringLiteral(
               "QMenu { background: transparent; border: none; padding: 14px 12px; color: %1; }"
               "QMenu::item { background: transparent; padding: 7px 28px 7px 14px; border-left: 3px solid transparent; "
               "}"
               "QMenu::item:selected { background: %2; color: %3; border-left-color: %4; }"
               "QMenu::item:disabled { color: %5; background: transparent; border-left-color: transparent; }"
               "QMenu::separator { height: 1px; background: %6; margin: 6px 10px; }"
               "QMenu::right-arrow { image: url(:/images/chevron.right.svg); width: 12px; height: 12px; right: 8px; }")
        .arg(css(palette::warmWhite), css(palette::withAlpha(palette::gold, 0.09)), css(palette::gold),
             css(palette::red), css(palette::dim), css(palette::line));
}

// An ampersand in a name is a letter, not the mark of a shortcut.
QString menuText(const std::string& title) {
    return QString::fromStdString(title).replace(QLatin1Char('&'), QStringLiteral("&&"));
}

}  // namespace

IconMenu::IconMenu(const std::vector<MenuEntry>& entries, QWidget* parent)
    : IconMenu(QStringLiteral("Vantor"), parent) {
    fill(entries);
}

IconMenu::IconMenu(const QString& title, QWidget* parent) : QMenu(title, parent) {
    setWindowFlags(windowFlags() | Qt::FramelessWindowHint | Qt::NoDropShadowWindowHint);
    setAttribute(Qt::WA_TranslucentBackground);
    setFont(sansFont(textPixels));
    setStyleSheet(menuStyle());
}

void IconMenu::open(const std::vector<MenuEntry>& entries, QPoint place) {
    auto* const menu = new IconMenu(entries, nullptr);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->popup(place);
}

void IconMenu::fill(const std::vector<MenuEntry>& entries) {
    for (const MenuEntry& entry : entries) {
        if (entry.kind == MenuEntry::Kind::separator) {
            addSeparator();
        } else if (!entry.submenu.empty()) {
            auto* const submenu = new IconMenu(menuText(entry.title), this);
            submenu->fill(entry.submenu);
            addMenu(submenu);
        } else {
            QAction* const action = addAction(menuText(entry.title));
            action->setEnabled(entry.enabled && entry.action);
            // Later: an open menu holds the keyboard, and what the entry types must reach the game.
            QObject::connect(action, &QAction::triggered, qApp, [run = entry.action] {
                if (run) QMetaObject::invokeMethod(qApp, run, Qt::QueuedConnection);
            });
        }
    }
}

void IconMenu::resizeEvent(QResizeEvent* event) {
    QMenu::resizeEvent(event);
    cutToSolidPart(*this, {});
}

void IconMenu::paintEvent(QPaintEvent* event) {
    if (background_.deviceIndependentSize().toSize() != size() || background_.devicePixelRatio() != devicePixelRatioF())
        background_ = drawInkPanel(size(), devicePixelRatioF(), panel);
    {
        QPainter painter(this);
        painter.drawPixmap(0, 0, background_);
    }
    QMenu::paintEvent(event);
}

}  // namespace vantor
