#pragma once
// The emote menu beside the floating icon: one control that opens the row, and while it is open one button for each
// command. It asks for the room that it fills and no more. Main thread.

#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QWidget>
#include <functional>

#include "base/Subscription.h"
#include "input/EmojiCommands.h"

namespace vantor {

class EmojiCommandsView : public QWidget {
public:
    // `resized`: with the room that it needs from now on; the host gives it that. Runs once before this returns.
    EmojiCommandsView(EmojiCommands commands, Defaults& defaults, std::function<void(QSize)> resized, QWidget* parent);

    [[nodiscard]] bool isOpen() const { return isOpen_; }
    // Empty while the menu is not enabled.
    [[nodiscard]] QSize sizeHint() const override;

private:
    void setOpen(bool open);
    void rebuild();

    EmojiCommands commands_;
    std::function<void(QSize)> resized_;
    QHBoxLayout* row_;
    QAbstractButton* toggle_;
    std::vector<QAbstractButton*> buttons_;
    bool isOpen_ = false;
    Subscription setting_;
};

}  // namespace vantor
