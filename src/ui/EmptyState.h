#pragma once
// What an empty place says: a title, one calm sentence, and the one action that helps. Main thread.

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

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    TextBlock* title_;
    TextBlock* sentence_;
    GW2Button* button_;
    std::function<void()> action_;
};

}  // namespace vantor
