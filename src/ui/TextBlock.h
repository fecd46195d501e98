#pragma once
// Text that wraps, in one of the look's roles; it may hold bold words and links. Main thread.

#include <QtWidgets/QLabel>
#include <functional>

#include "ui/AccessibleControl.h"

namespace vantor {

enum class TextRole { title, heading, body, second, hint, value, error, success };

class TextBlock : public QLabel, public SelfDescribing {
public:
    TextBlock(TextRole role, const QString& plainText, QWidget* parent);

    void setRole(TextRole role);
    // Titles and headings are such for a screen reader too; the rest is what the toolkit says of a label.
    [[nodiscard]] QAccessibleInterface* makeAccessible() override;
    // Marked-up text with <b> and <a href="…">; everything else in it must be escaped.
    void setRich(const QString& markup);
    // A link of it was pressed or chosen by the keyboard.
    void onLink(std::function<void(const QString& href)> handler);

private:
    TextRole role_;
};

}  // namespace vantor
