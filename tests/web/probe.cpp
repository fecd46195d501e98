// The embedded browser in a window of its own, without the rest of the program: reads a command a line, says each
// change that the store announces, and its answers. What the pages themselves see, they tell the test's server.
//   probe WIKI VIDEOS SEARCH FOLDER [no-sheet]

#include <QtCore/QFile>
#include <QtCore/QSocketNotifier>
#include <QtGui/QKeyEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QVBoxLayout>
#include <algorithm>
#include <array>
#include <cstdio>
#include <functional>
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

constexpr std::array<const char*, WebPage::propertyCount> propertyNames = {
    "title", "url", "loading", "estimatedProgress", "hasOnlySecureContent", "serverTrust", "canGoBack", "canGoForward"};

void say(const std::string& line) { std::cout << line << std::endl; }

// The background that the overlay gives its pages.
class Window final : public OverlayWindow {
public:
    Window()
        : OverlayWindow({.focus = Focus::onClick}, [this](WId native) {
              say("native " + std::to_string(native) + (isVisible() ? " again" : ""));
          }) {
        setWindowTitle(QStringLiteral("Probe"));
        resize(900, 600);
        move(0, 0);
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter(this).fillRect(rect(), QColor(20, 40, 20));
        if (!std::exchange(painted_, true)) say("painted");
    }

private:
    bool painted_ = false;
};

class Probe {
public:
    Probe(WebHosts hosts, const QString& folder, bool withSheet)
        : store_(makePage(folder),
                 [withSheet]() -> std::optional<std::string> {
                     QFile sheet(QStringLiteral(":/pages/wiki.css"));
                     if (!withSheet || !sheet.open(QIODevice::ReadOnly)) return std::nullopt;
                     return sheet.readAll().toStdString();
                 }),
          panel_(new WebPanel({*page_, [this] { return engine_ ? engine_->widget() : nullptr; }}, store_,
                              std::move(hosts), &window_)) {
        auto* const layout = new QVBoxLayout(&window_);
        layout->setContentsMargins(20, 20, 20, 20);
        layout->addWidget(panel_);
        for (std::size_t index = 0; index < propertyNames.size(); ++index)
            watching_.push_back(page_->observePrior(static_cast<WebPage::Property>(index),
                                                    [this, index] { say("prior " + valueOf(index)); }));
        announcements_ = store_.onWillChange([] { say("will change"); });
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
        if (command == "return") pressReturn();
        if (command == "press") press(QString::fromStdString(rest));
        if (command == "values") {
            for (std::size_t index = 0; index < propertyNames.size(); ++index) say("value " + valueOf(index));
            say("engine " + std::to_string(static_cast<int>(page_->engine())));
        }
        if (command == "quit") QApplication::quit();
        say("done " + line);
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

    void press(const QString& help) {
        for (auto* button : window_.findChildren<QAbstractButton*>())
            if (button->toolTip() == help && button->isVisible() && button->isEnabled()) return button->click();
        say("no such button");
    }

    void pressReturn() {
        auto* const field = window_.findChild<QLineEdit*>();
        for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
            QKeyEvent event(type, Qt::Key_Return, Qt::NoModifier, QStringLiteral("\r"));
            QApplication::sendEvent(field, &event);
        }
    }

    [[nodiscard]] std::string valueOf(std::size_t index) const {
        const auto flag = [](bool value) { return std::string(value ? "true" : "false"); };
        const std::array<std::string, WebPage::propertyCount> values = {page_->title().value_or("none"),
                                                                        page_->url().value_or("none"),
                                                                        flag(page_->isLoading()),
                                                                        std::to_string(page_->estimatedProgress()),
                                                                        flag(page_->hasOnlySecureContent()),
                                                                        flag(page_->hasServerTrust()),
                                                                        flag(page_->canGoBack()),
                                                                        flag(page_->canGoForward())};
        return propertyNames.at(index) + std::string(" ") + values.at(index);
    }

    LazyWebPage* page_ = nullptr;
    WidgetWebEngine* engine_ = nullptr;
    WebViewStore store_;
    Window window_;
    WebPanel* panel_;
    std::vector<Subscription> watching_;
    Subscription announcements_;
};

int run(int count, char** arguments) {
    QApplication::setQuitOnLastWindowClosed(false);
    QApplication::setDesktopFileName(QStringLiteral("vantor"));
    const QApplication application(count, arguments);
    if (count < 5 || registerFonts() != FontsVerdict::embedded) return 2;
    Probe probe({arguments[1], arguments[2], arguments[3]}, QString::fromLocal8Bit(arguments[4]), count == 5);
    // The notifier sees the descriptor, not what a buffer has read ahead.
    std::setvbuf(stdin, nullptr, _IONBF, 0);
    QSocketNotifier commands(0, QSocketNotifier::Read);
    QObject::connect(&commands, &QSocketNotifier::activated, &application, [&] {
        std::string line;
        int letter = 0;
        while ((letter = std::getchar()) != EOF && letter != '\n') line.push_back(static_cast<char>(letter));
        if (letter == EOF) return QApplication::quit();
        probe.obey(line);
    });
    say("ready");
    return QApplication::exec();
}

}  // namespace
}  // namespace vantor

int main(int count, char** arguments) { return vantor::run(count, arguments); }
