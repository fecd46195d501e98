#pragma once
// How far the text is that is being typed, on one line. It asks ten times a second while it is shown, and never else.
// Main thread.

#include <QtCore/QTimer>
#include <QtGui/QPixmap>
#include <QtWidgets/QWidget>
#include <functional>

#include "input/ClipboardManager.h"

namespace vantor {

class TypingLineView final : public QWidget {
public:
    // `fit` gives it the room that it needs.
    TypingLineView(const ClipboardManager& clipboardManager, std::function<void(QSize)> fit, QWidget* parent);

    void setFollowing(bool following);
    // Of the longest line.
    [[nodiscard]] static QSize longest();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void follow();

    const ClipboardManager& clipboardManager_;
    std::function<void(QSize)> fit_;
    QTimer turns_;
    QString text_;
    QPixmap panel_;
};

}  // namespace vantor
