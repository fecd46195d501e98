#pragma once
// A button with a text, and an image if it has one. Main thread.

#include <QtWidgets/QAbstractButton>

#include "ui/AccessibleControl.h"
#include "ui/GW2ButtonStyle.h"

namespace vantor {

class GW2Button : public QAbstractButton, public SelfDescribing {
public:
    GW2Button(const QString& text, QWidget* parent);
    GW2Button(const QString& text, QString image, GW2ButtonStyle::Kind kind, QWidget* parent);

    // Smaller: for what stands beside something more important.
    void setFootnote(bool footnote);

    [[nodiscard]] QAccessibleInterface* makeAccessible() override {
        return new AccessibleButton(this, QAccessible::Button);
    }
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    [[nodiscard]] QFont textFont() const;

    GW2ButtonStyle style_;
    QString image_;
    bool footnote_ = false;
};

}  // namespace vantor
