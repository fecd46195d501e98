#pragma once
// The capture popup: the one floating window that takes the keyboard. It shows the combination captured so far and ends
// with Accept or Cancel. Main thread.

#include <QtCore/QString>
#include <QtWidgets/QLabel>
#include <functional>

#include "input/HotkeyCapture.h"
#include "ui/OverlayWindow.h"

namespace vantor {

class HotkeyPopup : public OverlayWindow {
public:
    // `closed`: it is off the screen and captures no more; the owner lets it go, but not within the call.
    HotkeyPopup(const QString& message, Defaults& defaults, std::string_view key, KeyMonitors& monitors,
                Prepare prepare, std::function<void()> closed, bool pcKeyboard = false);

    [[nodiscard]] QString shownText() const;

protected:
    void paintEvent(QPaintEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    void finish();
    void showCaptured();

    std::unique_ptr<HotkeyCapture> capture_;
    QWidget* field_;
    QLabel* words_;  // below the field
    bool pcKeyboard_;
    std::function<void()> closed_;
};

}  // namespace vantor
