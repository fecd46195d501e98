// The browser's row, and which of its two tabs loads what and when; the page itself is a double.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QtGui/QKeyEvent>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLineEdit>

#include "browser/LazyWebPage.h"
#include "browser/view/WebPanel.h"

namespace vantor {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct Record {
    std::vector<std::string> asked;
    WebEngine::Observer observer;
};

struct Engine final : WebEngine {
    explicit Engine(Record& kept) : record(kept) {}
    void setObserver(Observer observer) override { record.observer = std::move(observer); }
    void setDrawsBackground(bool) override {}
    void load(const std::string& url, int) override { record.asked.push_back(url); }
    void goBack() override { record.asked.emplace_back("back"); }
    void goForward() override { record.asked.emplace_back("forward"); }
    void addUserScript(const std::string&) override {}
    Record& record;
};

class BrowserViewTest : public testing::Test {
protected:
    BrowserViewTest() : store(makePage(), [] { return std::nullopt; }) {
        panel = std::make_unique<WebPanel>(PageSource{*page, [] { return nullptr; }}, store,
                                           WebHosts{"https://wiki", "https://videos", "https://search"}, nullptr);
        panel->resize(600, 400);
    }
    std::unique_ptr<WebPage> makePage() {
        auto made = std::make_unique<LazyWebPage>([this]() -> std::unique_ptr<WebEngine> {
            if (missing) return nullptr;
            return std::make_unique<Engine>(record);
        });
        page = made.get();
        return made;
    }
    // Painting, and what waits for it.
    static void settle() {
        for (int turn = 0; turn < 5; ++turn) QApplication::processEvents();
    }
    std::vector<std::string> taken() {
        settle();
        return std::exchange(record.asked, {});
    }

    Record record;
    LazyWebPage* page = nullptr;
    bool missing = false;
    WebViewStore store;
    std::unique_ptr<WebPanel> panel;
};

TEST_F(BrowserViewTest, RowHasItsButtonsAndOnlyTheImagesSearch) {
    panel->show(WebPanel::Tab::internet);
    panel->QWidget::show();
    settle();
    std::vector<std::string> helps;
    for (const auto* button : panel->findChildren<QAbstractButton*>()) {
        helps.push_back(button->toolTip().toStdString());
        EXPECT_EQ(button->accessibleName(), button->toolTip());
        EXPECT_TRUE(button->isEnabled());
    }
    EXPECT_THAT(helps, ElementsAre("Navigate back", "Navigate forward", "Search on GW2 wiki", "Search on YouTube",
                                   "Search with Google"));
    auto* const field = panel->findChild<QLineEdit*>();
    EXPECT_EQ(field->placeholderText(), QStringLiteral("Search..."));

    const auto press = [&](int index) { panel->findChildren<QAbstractButton*>().at(index)->click(); };
    press(0);
    field->setText(QStringLiteral("  a"));
    QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, QStringLiteral("\r"));
    QApplication::sendEvent(field, &enter);
    EXPECT_THAT(taken(), IsEmpty());
    for (int index = 2; index < 5; ++index) press(index);
    press(0);
    press(1);
    EXPECT_THAT(taken(), ElementsAre("https://wiki/index.php?search=++a", "https://videos/results?search_query=gw2+++a",
                                     "https://search/search?q=gw2+++a", "back", "forward"));
}

TEST_F(BrowserViewTest, GameUpdatesAreLoadedAtEachSelectionOfTheirTabOnceTheyAreSeen) {
    panel->show(WebPanel::Tab::gameUpdates);
    EXPECT_THAT(taken(), IsEmpty());
    panel->QWidget::show();
    EXPECT_THAT(taken(), ElementsAre("https://wiki/wiki/Game_updates"));
    EXPECT_FALSE(panel->findChild<QLineEdit*>()->isVisible());
    panel->hide();
    panel->QWidget::show();
    panel->show(WebPanel::Tab::gameUpdates);
    EXPECT_THAT(taken(), IsEmpty());
    panel->show(WebPanel::Tab::internet);
    EXPECT_TRUE(panel->findChild<QLineEdit*>()->isVisible());
    EXPECT_THAT(taken(), IsEmpty());
    panel->show(WebPanel::Tab::gameUpdates);
    EXPECT_THAT(taken(), ElementsAre("https://wiki/wiki/Game_updates"));
    // Left before it was seen.
    panel->hide();
    panel->show(WebPanel::Tab::internet);
    panel->show(WebPanel::Tab::gameUpdates);
    panel->show(WebPanel::Tab::internet);
    panel->QWidget::show();
    EXPECT_THAT(taken(), IsEmpty());
}

TEST_F(BrowserViewTest, TroubleStandsInThePagesPlace) {
    const auto light = [&] {
        settle();
        const QImage image = panel->grab().toImage();
        int bright = 0;
        for (int x = 100; x < 500; ++x)
            for (int y = 150; y < 300; ++y) bright += qRed(image.pixel(x, y)) > 150 ? 1 : 0;
        return bright;
    };
    panel->setStyleSheet(QStringLiteral("background: black"));
    panel->show(WebPanel::Tab::internet);
    panel->QWidget::show();
    EXPECT_EQ(light(), 0);
    missing = true;
    store.load("https://wiki/a");
    EXPECT_GT(light(), 100);
    missing = false;
    store.load("https://wiki/a");
    EXPECT_EQ(light(), 0);
}

}  // namespace
}  // namespace vantor
