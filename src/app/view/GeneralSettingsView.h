#pragma once
// The General page of the settings panel: switches, hotkeys, the API key with its help, and what the machine has. Main
// thread.

#include <QtWidgets/QVBoxLayout>
#include <QtWidgets/QWidget>

#include "app/view/SettingsView.h"

namespace vantor {

class GeneralSettingsView : public QWidget {
public:
    GeneralSettingsView(const SettingsView::Needs& needs, QWidget* parent);

private:
    void addSection(const QString& title);
    void addSwitch(const QString& text, std::string_view key, bool byDefault);
    void addHotkey(const HotkeySetting& setting);

    const SettingsView::Needs& needs_;
    QWidget* page_;
    QVBoxLayout* column_;
};

}  // namespace vantor
