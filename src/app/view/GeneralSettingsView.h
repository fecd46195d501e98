#pragma once
// The General page of the settings panel: switches, hotkeys, the API key with its help, and what the machine has. Main
// thread.

#include <QtWidgets/QVBoxLayout>
#include <QtWidgets/QWidget>

#include "app/view/SettingsView.h"
#include "ui/VerticalScroller.h"

namespace vantor {

class GeneralSettingsView : public QWidget {
public:
    GeneralSettingsView(const SettingsView::Needs& needs, QWidget* parent);

    // The key's field, being edited, with the help on how to get a key below it.
    void leadToKey();
    // The window's first hotkey, with its popup.
    void leadToHotkey();

private:
    // Scrolls it to the top, as far as the page goes.
    void bringUp(QWidget* part);
    QWidget* addSection(const QString& title);
    void addSwitch(const QString& text, std::string_view key, bool byDefault);
    QWidget* addHotkey(const HotkeySetting& setting);

    const SettingsView::Needs& needs_;
    QWidget* page_;
    QVBoxLayout* column_;
    VerticalScroller* scroller_;
    QWidget* windowToggle_;
    QWidget* keyTitle_;
    EditableKeyView* key_;
    ApiSettingsView* keyHelp_;
};

}  // namespace vantor
