#pragma once
// The widgets in which the engine draws its page, each with soft fades over its four edges. Main thread.

#include <QtCore/QObject>

class QQuickWidget;
class QWebEngineView;

namespace vantor {

// Watches the engine's view, which gets a new drawing for each process that draws pages. Belongs to the view.
class PageDrawings final : public QObject {
public:
    explicit PageDrawings(QWebEngineView& view);
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void prepare(QQuickWidget& drawing);
};

}  // namespace vantor
