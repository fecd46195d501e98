#pragma once
// A title that opens and closes what is below it. Main thread.

#include <QtCore/QPointer>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QWidget>
#include <functional>

#include "ui/Motion.h"

namespace vantor {

class Collapse : public QWidget {
public:
    Collapse(const QString& title, QWidget* parent);

    void setTitle(const QString& title);
    // Adopted; closed at first.
    void setContent(QWidget* content);
    void setExpanded(bool expanded);
    [[nodiscard]] bool expanded() const { return expanded_; }
    void onToggled(std::function<void(bool)> handler) { toggled_ = std::move(handler); }

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;
    [[nodiscard]] bool hasHeightForWidth() const override { return true; }
    [[nodiscard]] int heightForWidth(int width) const override;

protected:
    void resizeEvent(QResizeEvent* event) override;
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    [[nodiscard]] int contentHeight(int width) const;
    void arrange();

    QAbstractButton* title_;
    QWidget* clip_;
    QPointer<QWidget> content_;
    Motion opened_;
    bool expanded_ = false;
    std::function<void(bool)> toggled_;
};

}  // namespace vantor
