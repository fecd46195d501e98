#include "browser/view/WebView.h"

#include <QtCore/QTimer>
#include <QtGui/QPainter>
#include <utility>

#include "ui/Fonts.h"
#include "ui/Palette.h"

namespace vantor {

namespace {

// Why there is no page to see, when there should be one.
QString troubleOf(WebPage::Engine engine) {
    switch (engine) {
        case WebPage::Engine::missing:
            return QStringLiteral("Pages need the web engine, which is not installed with Vantor.");
        case WebPage::Engine::gone:
            return QStringLiteral("The page has stopped. Open another, or select the tab again.");
        case WebPage::Engine::notWanted:
        case WebPage::Engine::running:
            break;
    }
    return {};
}

}  // namespace

WebView::WebView(PageSource source, QWidget* parent) : QWidget(parent), source_(std::move(source)) {
    source_.page.onEngine([this] { follow(); });
    follow();
}

void WebView::follow() {
    const bool running = source_.page.engine() == WebPage::Engine::running;
    if (running && !page_) {
        page_ = source_.engineWidget();
        if (page_) page_->setParent(this);
    }
    showPage();
    place();
    update();
}

// The page is drawn by processes of its own: shown with the window, it would delay the window's mapping. So it comes
// after the window's first picture, and goes with the window.
void WebView::showPage() {
    if (page_) page_->setVisible(painted_ && source_.page.engine() == WebPage::Engine::running);
}

void WebView::place() {
    if (page_) page_->setGeometry(rect().adjusted(1, 1, -1, -1));
}

void WebView::resizeEvent(QResizeEvent*) { place(); }

// The engine may take a second to come; until then the background is shown, and never a white page.
void WebView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), palette::withAlpha(Qt::black, 0.22));
    painter.setPen(QPen(palette::line, 1));
    painter.drawRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5));
    if (const QString trouble = troubleOf(source_.page.engine()); !trouble.isEmpty()) {
        painter.setFont(sansFont(15));
        painter.setPen(palette::sand);
        painter.drawText(rect().adjusted(24, 0, -24, 0), static_cast<int>(Qt::AlignCenter) | Qt::TextWordWrap, trouble);
    }
    if (!std::exchange(painted_, true)) QTimer::singleShot(0, this, [this] { showPage(); });
    if (afterPainting_) QTimer::singleShot(0, this, std::exchange(afterPainting_, {}));
}

void WebView::hideEvent(QHideEvent*) {
    painted_ = false;
    showPage();
}

void WebView::afterPainting(std::function<void()> action) {
    afterPainting_ = std::move(action);
    if (!afterPainting_) return;
    if (painted_ && isVisible())
        QTimer::singleShot(0, this, std::exchange(afterPainting_, {}));
    else
        update();
}

}  // namespace vantor
