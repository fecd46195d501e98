#pragma once
// The heading of a section, with a rule that fades. Main thread.

#include <QtWidgets/QWidget>

#include "ui/AccessibleControl.h"

namespace vantor {

class SectionTitle : public QWidget, public SelfDescribing {
public:
    SectionTitle(const QString& text, QWidget* parent);
    [[nodiscard]] const QString& text() const { return text_; }
    [[nodiscard]] QAccessibleInterface* makeAccessible() override {
        return new QAccessibleWidget(this, QAccessible::Heading);
    }
    [[nodiscard]] QSize sizeHint() const override;
    // Where there is less room, it is cut with an ellipsis.
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString text_;
};

}  // namespace vantor
