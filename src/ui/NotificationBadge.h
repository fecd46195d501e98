#pragma once
// A short text, such as a count, in a small red seal. Main thread.

#include <QtWidgets/QWidget>

class QPainter;

namespace vantor {

class NotificationBadge : public QWidget {
public:
    explicit NotificationBadge(QWidget* parent);

    // Empty: the badge is absent.
    void setText(const QString& text);
    [[nodiscard]] const QString& text() const { return text_; }

    [[nodiscard]] static QSize sizeOf(const QString& text);
    static void paint(QPainter& painter, QPointF centre, const QString& text);

    [[nodiscard]] QSize sizeHint() const override { return sizeOf(text_); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString text_;
};

}  // namespace vantor
