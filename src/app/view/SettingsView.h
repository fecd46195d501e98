#pragma once
// The settings panel: General, Timers and Accounts. Every change is stored at once. Main thread.

#include <QtWidgets/QWidget>
#include <functional>
#include <string_view>

#include "app/ApiKeyField.h"
#include "app/view/ApiSettingsView.h"
#include "app/view/EditableKeyView.h"
#include "app/view/SystemCapabilitiesView.h"
#include "platform/Defaults.h"
#include "ui/Tabber.h"

namespace vantor {

class GeneralSettingsView;

// What a hotkey field records, and under which keys it is stored.
struct HotkeySetting {
    QString message;
    std::string_view primaryKey;
    std::string_view secondaryKey;  // empty: only one hotkey
};

class SettingsView : public QWidget {
public:
    using MakePage = std::function<QWidget*(QWidget* parent)>;

    // All of it outlives the view; pages are made when they are first shown.
    struct Needs {
        Defaults& defaults;
        ApiKeyField& apiKey;
        std::function<QWidget*(const HotkeySetting& setting, QWidget* parent)> makeHotkeyField;
        MakePage makeTimersPage;
        MakePage makeAccountsPage;
        SystemCapabilitiesView::Examine examineSystem;
        OpenLink openLink;
        HelpHosts helpHosts;
        KeyGain keyGain = {};
    };

    enum class Page { general, timers, accounts };

    SettingsView(Needs needs, QWidget* parent);

    void select(Page page);
    // To the field itself, in sight, focused and open.
    void leadToKey();
    void leadToHotkey();

private:
    [[nodiscard]] GeneralSettingsView& general();

    Needs needs_;
    Tabber* tabs_;
};

}  // namespace vantor
