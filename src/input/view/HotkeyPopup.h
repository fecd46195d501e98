#pragma once
// The capture popup: the one floating window that takes the keyboard. It shows the combination captured so far and ends
// with Accept or Cancel, which Escape is too. Main thread.

#include <QtCore/QString>
#include <functional>

#include "input/HotkeyCapture.h"
#include "ui/OverlayWindow.h"

namespace vantor {

class EscapeCatch;
class TextBlock;

class HotkeyPopup : public OverlayWindow {
public:
    // `closed`: it is off the screen and captures no more; the owner lets it go, but not within the call.
    HotkeyPopup(const QString& message, Defaults& defaults, std::string_view key, KeyMonitors& monitors,
                Prepare prepare, std::function<void()> closed, bool pcKeyboard = false);
    ~HotkeyPopup() override;

    [[nodiscard]] QString shownText() const;

protected:
    void paintEvent(QPaintEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    void follow();
    void finish();

    std::unique_ptr<HotkeyCapture> capture_;
    std::unique_ptr<EscapeCatch> escape_;
    QWidget* field_;
    TextBlock* words_;  // below the field
    TextBlock* warning_;
    bool pcKeyboard_;
    std::function<void()> closed_;
};

}  // namespace vantor
