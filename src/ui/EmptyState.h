#pragma once
// What an empty place says: a title, one calm sentence, the one action that helps, and at most one other beside it.
// Main thread.

#include <QtWidgets/QWidget>
#include <functional>

#include "ui/GW2Button.h"
#include "ui/TextBlock.h"

namespace vantor {

class EmptyState : public QWidget {
public:
    explicit EmptyState(QWidget* parent);

    void setText(const QString& title, const QString& sentence);
    // An empty text: no action.
    void setAction(const QString& text, std::function<void()> action);
    void setOtherAction(const QString& text, std::function<void()> action);
    void focusAction() { way_.button->setFocus(Qt::TabFocusReason); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    TextBlock* title_;
    TextBlock* sentence_;
    struct Way {
        GW2Button* button;
        std::function<void()> action{};
    };
    static void offer(Way& way, const QString& text, std::function<void()> action);

    Way way_;
    Way otherWay_;
};

}  // namespace vantor
