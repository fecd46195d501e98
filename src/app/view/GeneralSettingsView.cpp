#include "app/view/GeneralSettingsView.h"

#include <QtWidgets/QHBoxLayout>

#include "app/view/EditableKeyView.h"
#include "data/SettingKeys.h"
#include "ui/GW2Toggle.h"
#include "ui/SectionTitle.h"
#include "ui/TextBlock.h"
#include "ui/VerticalScroller.h"

namespace vantor {

namespace {

constexpr int hotkeyLabelWidth = 140;

}  // namespace

GeneralSettingsView::GeneralSettingsView(const SettingsView::Needs& needs, QWidget* parent)
    : QWidget(parent), needs_(needs), page_(new QWidget), column_(new QVBoxLayout(page_)) {
    column_->setContentsMargins(8, 4, 16, 16);
    column_->setSpacing(8);

    addSection(QStringLiteral("Application"));
    addSwitch(QStringLiteral("Enable pasting (⌘ + V) if GW2 is missing system clipboard support"),
              settings::pasteClipboard, false);
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

    addSection(QStringLiteral("API Key"));
    column_->addWidget(new EditableKeyView(needs_.apiKey, needs_.keyGain, page_));
    column_->addWidget(new ApiSettingsView(needs_.helpHosts, needs_.openLink, page_));

    addSection(QStringLiteral("What Vantor needs on this machine"));
    column_->addWidget(new SystemCapabilitiesView(needs_.examineSystem, page_));
    column_->addStretch(1);

    auto* const scroller = new VerticalScroller(this);
    scroller->setContent(page_);
    auto* const whole = new QVBoxLayout(this);
    whole->setContentsMargins({});
    whole->addWidget(scroller);
}

void GeneralSettingsView::addSection(const QString& title) {
    if (column_->count() > 0) column_->addSpacing(12);
    column_->addWidget(new SectionTitle(title, page_));
}

void GeneralSettingsView::addSwitch(const QString& text, std::string_view key, bool byDefault) {
    auto* const toggle = new GW2Toggle(text, page_);
    toggle->bind(needs_.defaults, key, byDefault);
    column_->addWidget(toggle);
}

void GeneralSettingsView::addHotkey(const HotkeySetting& setting) {
    auto* const row = new QWidget(page_);
    auto* const layout = new QHBoxLayout(row);
    layout->setContentsMargins({});
    layout->setSpacing(12);
    auto* const label = new TextBlock(TextRole::body, setting.message, row);
    label->setFixedWidth(hotkeyLabelWidth);
    layout->addWidget(label);
    layout->addWidget(needs_.makeHotkeyField(setting, row), 1);
    column_->addWidget(row);
}

}  // namespace vantor
