// The embedded browser in a window of its own, without the rest of the program: reads a command a line and says
// how the page stands then. What the pages themselves see, they tell the test's server.
//   probe HOST FOLDER

#include <QtCore/QFile>
#include <QtCore/QSocketNotifier>
#include <QtGui/QPainter>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QVBoxLayout>
#include <array>
#include <cstdio>
#include <iostream>
#include <string>

#include "browser/LazyWebPage.h"
#include "browser/WebViewStore.h"
#include "browser/view/WebPanel.h"
#include "platform/qt/WebEngineModule.h"
#include "ui/Fonts.h"
#include "ui/OverlayWindow.h"

namespace vantor {
namespace {

constexpr std::array<const char*, 4> engines{"unwanted", "running", "missing", "gone"};

void say(const std::string& line) { std::cout << line << std::endl; }

// The background that the overlay gives its pages.
class Window final : public OverlayWindow {
public:
    Window() : OverlayWindow({.focus = Focus::onClick}, {}) {
        setWindowTitle(QStringLiteral("Probe"));
        setGeometry(0, 0, 900, 600);
    }

protected:
    void paintEvent(QPaintEvent*) override { QPainter(this).fillRect(rect(), QColor(20, 40, 20)); }
};

class Probe {
public:
    Probe(const std::string& host, const QString& folder)
        : store_(makePage(folder),
                 [] {
                     QFile sheet(QStringLiteral(":/pages/wiki.css"));
                     return sheet.open(QIODevice::ReadOnly) ? std::optional(sheet.readAll().toStdString())
                                                            : std::nullopt;
                 }),
          panel_(new WebPanel({*page_, [this] { return engine_ ? engine_->widget() : nullptr; }}, store_,
                              {host, host, host}, &window_)) {
        auto* const layout = new QVBoxLayout(&window_);
        layout->setContentsMargins(20, 20, 20, 20);
        layout->addWidget(panel_);
    }

    void obey(const std::string& line) {
        const std::size_t gap = std::min(line.find(' '), line.size());
        const std::string command = line.substr(0, gap);
        const std::string rest = gap < line.size() ? line.substr(gap + 1) : "";
        if (command == "show") window_.orderFront();
        if (command == "hide") window_.orderOut();
        if (command == "updates") panel_->show(WebPanel::Tab::gameUpdates);
        if (command == "internet") panel_->show(WebPanel::Tab::internet);
        if (command == "away") panel_->show(WebPanel::Tab::none);
        if (command == "load") store_.load(rest);
        if (command == "type") window_.findChild<QLineEdit*>()->setText(QString::fromStdString(rest));
        if (command == "press")
            for (auto* const button : window_.findChildren<QAbstractButton*>())
                if (button->toolTip().toStdString() == rest) button->click();
        say("done " + page_->url().value_or("none") + " " + page_->title().value_or("none") +
            (page_->isLoading() ? " loading" : "") + (page_->hasServerTrust() ? " trusted" : "") +
            (page_->hasOnlySecureContent() ? " secure" : "") + (page_->canGoBack() ? " back" : "") +
            (page_->canGoForward() ? " forward" : "") + " " + engines.at(static_cast<std::size_t>(page_->engine())));
    }

private:
    std::unique_ptr<WebPage> makePage(const QString& folder) {
        auto made = std::make_unique<LazyWebPage>([this, folder] {
            auto engine = loadWebEngine({folder + QStringLiteral("/data"), folder + QStringLiteral("/cache")});
            engine_ = engine.get();
            return engine;
        });
        page_ = made.get();
        return made;
    }

    LazyWebPage* page_ = nullptr;
    WidgetWebEngine* engine_ = nullptr;
    WebViewStore store_;
    Window window_;
    WebPanel* panel_;
};

int run(int count, char** arguments) {
    QApplication::setQuitOnLastWindowClosed(false);
    QApplication::setDesktopFileName(QStringLiteral("vantor"));
    const QApplication application(count, arguments);
    if (count != 3 || registerFonts() != FontsVerdict::embedded) return 2;
    Probe probe(arguments[1], QString::fromLocal8Bit(arguments[2]));
    // The notifier sees the descriptor, not what a stream has read ahead: a line a time.
    QFile input;
    if (!input.open(0, QIODevice::ReadOnly | QIODevice::Unbuffered)) return 2;
    QSocketNotifier commands(0, QSocketNotifier::Read);
    QObject::connect(&commands, &QSocketNotifier::activated, &application, [&] {
        const QByteArray line = input.readLine();
        if (line.isEmpty()) return QApplication::quit();
        probe.obey(line.trimmed().toStdString());
    });
    say("ready");
    return QApplication::exec();
}

}  // namespace
}  // namespace vantor

int main(int count, char** arguments) { return vantor::run(count, arguments); }
