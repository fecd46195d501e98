#pragma once
// The field of a hotkey setting, with a second one where there is a secondary hotkey: shows what is stored, and a press
// opens the capture popup. Main thread.

#include <QtCore/QPointer>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QWidget>
#include <functional>
#include <memory>
#include <string_view>

#include "input/view/HotkeyPopup.h"
#include "platform/OverlayWindows.h"

namespace vantor {

struct HotkeyNeeds {
    Defaults& defaults;
    KeyMonitors& monitors;
    std::function<void(WId, WindowNature)> prepare;
    // Centred there, in the toolkit's points.
    std::function<QRect()> screen;
    // Hotkeys are spelled in words as well.
    bool pcKeyboard = false;
};

class HotkeyButton : public QWidget {
public:
    // `secondaryKey` may be empty: then there is one hotkey.
    HotkeyButton(QString message, std::string_view primaryKey, std::string_view secondaryKey, HotkeyNeeds needs,
                 QWidget* parent);
    ~HotkeyButton() override;

    // The open popup; nothing while none is open.
    [[nodiscard]] HotkeyPopup* window() const { return w_.get(); }

protected:
    // The popup goes with the page that its field is on, and so with the overlay.
    void hideEvent(QHideEvent* event) override;

private:
    void addField(std::string_view key, const QString& name, WindowNature nature);
    void open(std::string_view key, WindowNature nature);

    QString message_;
    HotkeyNeeds needs_;
    std::unique_ptr<HotkeyPopup> w_;
    Subscription settings_;
};

}  // namespace vantor
