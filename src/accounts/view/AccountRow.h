#pragma once
// One stored account in the panel: its user name and what can be done with it. Main thread.

#include <QtWidgets/QWidget>
#include <functional>

namespace vantor {

class AccountRow : public QWidget {
public:
    AccountRow(const QString& username, std::function<void()> fill, std::function<void()> remove, QWidget* parent);

protected:
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace vantor
