#pragma once
// A field of several lines. Main thread.

#include <QtWidgets/QPlainTextEdit>

#include "ui/GW2TextField.h"

namespace vantor {

class GW2TextArea : public QPlainTextEdit {
public:
    GW2TextArea(const QString& placeholder, QWidget* parent);

    // Three lines.
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    bool event(QEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    GW2TextFieldStyle style_;
};

}  // namespace vantor
