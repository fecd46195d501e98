#include "app/view/GeneralSettingsView.h"

#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QApplication>
#include <QtWidgets/QHBoxLayout>

#include "data/SettingKeys.h"
#include "ui/GW2Toggle.h"
#include "ui/SectionTitle.h"
#include "ui/TextBlock.h"

namespace vantor {

namespace {

constexpr int hotkeyLabelWidth = 140;
constexpr int fadeMargin = 20;  // the page's upper edge fades

}  // namespace

GeneralSettingsView::GeneralSettingsView(const SettingsView::Needs& needs, QWidget* parent)
    : QWidget(parent), needs_(needs), page_(new QWidget), column_(new QVBoxLayout(page_)) {
    column_->setContentsMargins(8, 4, 16, 16);
    column_->setSpacing(8);

    addSection(QStringLiteral("Application"));
    addSwitch(QStringLiteral("Enable pasting (⌘ + V) if GW2 is missing system clipboard support"),
              settings::pasteClipboard, false);
    windowToggle_ =
        addHotkey({QStringLiteral("Window toggle"), settings::windowToggleEvent, settings::windowToggleSecondaryEvent});
    addHotkey({QStringLiteral("Toggle action cam"), settings::actionCamToggleEvent, {}});

    addSection(QStringLiteral("Chat commands"));
    addSwitch(QStringLiteral("Enable chat command selection through emoji quick menu"), settings::enableEmojiCommands,
              false);

    addSection(QStringLiteral("Chat links"));
    column_->addWidget(new TextBlock(TextRole::hint,
                                     QStringLiteral("to type chat link automatically press SHIFT (⇧) + CLICK"), page_));
    addSwitch(QStringLiteral("Press ENTER (⏎) automatically before and after automatic chat link typing"),
              settings::enableChatLinkReturnKey, true);

    keyTitle_ = addSection(QStringLiteral("API Key"));
    key_ = new EditableKeyView(needs_.apiKey, needs_.keyGain, page_);
    column_->addWidget(key_);
    keyHelp_ = new ApiSettingsView(needs_.helpHosts, needs_.openLink, page_);
    column_->addWidget(keyHelp_);

    addSection(QStringLiteral("What Vantor needs on this machine"));
    column_->addWidget(new SystemCapabilitiesView(needs_.examineSystem, page_));
    column_->addStretch(1);

    scroller_ = new VerticalScroller(this);
    scroller_->setContent(page_);
    auto* const whole = new QVBoxLayout(this);
    whole->setContentsMargins({});
    whole->addWidget(scroller_);
}

void GeneralSettingsView::leadToKey() {
    keyHelp_->unfoldHowToGetOne();
    key_->edit();
    bringUp(keyTitle_);
}

void GeneralSettingsView::leadToHotkey() {
    bringUp(windowToggle_);
    auto* const field = qobject_cast<QAbstractButton*>(windowToggle_->focusProxy());
    if (!field) return;
    field->setFocus(Qt::TabFocusReason);
    field->click();
}

// Later: a page that is shown for the first time has no layout yet.
void GeneralSettingsView::bringUp(QWidget* part) {
    QMetaObject::invokeMethod(
        this,
        [this, part] {
            column_->activate();
            QApplication::sendPostedEvents(page_, QEvent::LayoutRequest);
            scroller_->verticalScrollBar()->setValue(part->mapTo(page_, QPoint()).y() - fadeMargin);
        },
        Qt::QueuedConnection);
}

QWidget* GeneralSettingsView::addSection(const QString& title) {
    if (column_->count() > 0) column_->addSpacing(12);
    auto* const heading = new SectionTitle(title, page_);
    column_->addWidget(heading);
    return heading;
}

void GeneralSettingsView::addSwitch(const QString& text, std::string_view key, bool byDefault) {
    auto* const toggle = new GW2Toggle(text, page_);
    toggle->bind(needs_.defaults, key, byDefault);
    column_->addWidget(toggle);
}

QWidget* GeneralSettingsView::addHotkey(const HotkeySetting& setting) {
    auto* const row = new QWidget(page_);
    auto* const layout = new QHBoxLayout(row);
    layout->setContentsMargins({});
    layout->setSpacing(12);
    auto* const label = new TextBlock(TextRole::body, setting.message, row);
    label->setFixedWidth(hotkeyLabelWidth);
    layout->addWidget(label);
    QWidget* const field = needs_.makeHotkeyField(setting, row);
    layout->addWidget(field, 1);
    column_->addWidget(row);
    return field;
}

}  // namespace vantor
