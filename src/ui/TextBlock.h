#pragma once
// Text that wraps, in one of the look's roles; it may hold bold words and links. Main thread.

#include <QtWidgets/QLabel>
#include <functional>

namespace vantor {

enum class TextRole { title, heading, body, second, hint, value, error, success };

class TextBlock : public QLabel {
public:
    TextBlock(TextRole role, const QString& plainText, QWidget* parent);

    void setRole(TextRole role);
    // Marked-up text with <b> and <a href="…">; everything else in it must be escaped.
    void setRich(const QString& markup);
    // A link of it was pressed or chosen by the keyboard.
    void onLink(std::function<void(const QString& href)> handler);

private:
    TextRole role_;
};

}  // namespace vantor
