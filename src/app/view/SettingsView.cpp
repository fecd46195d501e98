#include "app/view/SettingsView.h"

#include <QtWidgets/QVBoxLayout>
#include <utility>

#include "app/view/GeneralSettingsView.h"
#include "ui/Tabber.h"

namespace vantor {

SettingsView::SettingsView(Needs needs, QWidget* parent) : QWidget(parent), needs_(std::move(needs)) {
    tabs_ = new VerticalTabber(this);
    tabs_->addTab(QStringLiteral("General"), {},
                  [this](QWidget* page) { return new GeneralSettingsView(needs_, page); });
    tabs_->addTab(QStringLiteral("Timers"), {}, needs_.makeTimersPage);
    tabs_->addTab(QStringLiteral("Accounts"), {}, needs_.makeAccountsPage);
    auto* const whole = new QVBoxLayout(this);
    whole->setContentsMargins({});
    whole->addWidget(tabs_);
}

GeneralSettingsView& SettingsView::general() {
    select(Page::general);
    return *static_cast<GeneralSettingsView*>(tabs_->page(static_cast<int>(Page::general)));
}

void SettingsView::leadToKey() { general().leadToKey(); }

void SettingsView::leadToHotkey() { general().leadToHotkey(); }

void SettingsView::select(Page page) { tabs_->select(static_cast<int>(page)); }

}  // namespace vantor
