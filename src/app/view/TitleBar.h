#pragma once
// The main window's title bar: the brush stroke with the name, the tab's title and the hotkey that opens the window,
// and the close control. Main thread.

#include <QtWidgets/QWidget>
#include <functional>

#include "ui/ImageButton.h"

namespace vantor {

class TitleBar : public QWidget {
public:
    TitleBar(std::function<void()> close, QWidget* parent);

    // The hint is shown as it stands; empty for none. Its words are what its signs mean, told on pointing.
    void setTexts(const QString& title, const QString& hint, const QString& hintWords = {});

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    QString title_;
    QString hint_;
    ImageButton* close_;
};

}  // namespace vantor
