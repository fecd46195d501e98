#pragma once
// Places the store's one page in the window; while there is no page to show, one line stands in its place. The fades
// over the page's edges are the engine's widget's own. Main thread.

#include <QtCore/QPointer>
#include <QtWidgets/QWidget>
#include <functional>

#include "platform/PageSource.h"

namespace vantor {

class WebView : public QWidget {
public:
    // Adopts the engine's widget.
    WebView(PageSource source, QWidget* parent);

    // Runs it once this view has been painted on the screen, so that the player sees the window before the engine
    // starts; soon, when it has been already. A later call replaces one that has not run; an empty one takes it back.
    void afterPainting(std::function<void()> action);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void follow();
    void showPage();
    void place();

    PageSource source_;
    QPointer<QWidget> page_;
    std::function<void()> afterPainting_;
    bool painted_ = false;
};

}  // namespace vantor
