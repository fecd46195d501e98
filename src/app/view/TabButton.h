#pragma once
// One tab of the tab row: an image and a text. Main thread.

#include <QtCore/QString>
#include <QtWidgets/QAbstractButton>

#include "app/Tabs.h"

namespace vantor {

class TabButton : public QAbstractButton {
public:
    TabButton(const TabEntry& entry, QWidget* parent);
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString image_;
};

}  // namespace vantor
