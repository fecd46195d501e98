#pragma once
// What Vantor needs on this machine and whether it has it, one line each; what is missing stands out. Asked for anew
// whenever the view is shown, and each second while something is missing that the player may allow. Main thread.

#include <QtCore/QTimer>
#include <QtWidgets/QVBoxLayout>
#include <QtWidgets/QWidget>
#include <functional>
#include <vector>

#include "app/SystemCapability.h"

namespace vantor {

class SystemCapabilitiesView : public QWidget {
public:
    using Examine = std::function<std::vector<SystemCapability>()>;

    SystemCapabilitiesView(Examine examine, QWidget* parent);

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void refresh();

    Examine examine_;
    std::vector<SystemCapability> shown_;
    QVBoxLayout* column_;
    QWidget* list_ = nullptr;
    QTimer again_;
};

}  // namespace vantor
