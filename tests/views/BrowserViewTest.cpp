// The browser's row, and which of its two tabs loads what and when; the page's engine is a double.

#include "Overlay.h"
#include "browser/view/WebPanel.h"

namespace vantor {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class BrowserViewTest : public Overlay {
protected:
    std::vector<std::string> taken() {
        settle();
        return std::exchange(asked, {});
    }
};

TEST_F(BrowserViewTest, ItsButtonsSearchAndGoBackAndForth) {
    launch();
    const WebPanel& panel = *below<WebPanel>(open(tab_position::internet)).at(0);
    (void)taken();
    auto& field = named<QLineEdit>(panel, "Search...");
    fillIn(field, QStringLiteral("  a"));
    sendKey(field, Qt::Key_Return, QStringLiteral("\r"));
    EXPECT_THAT(taken(), IsEmpty());
    for (const char* const help :
         {"Search on GW2 wiki", "Search on YouTube", "Search with Google", "Navigate back", "Navigate forward"})
        press(panel, help);
    EXPECT_THAT(taken(), ElementsAre("https://wiki/index.php?search=++a", "https://videos/results?search_query=gw2+++a",
                                     "https://search/search?q=gw2+++a", "back", "forward"));
}

TEST_F(BrowserViewTest, GameUpdatesAreLoadedAtEachSelectionOfTheirTabOnceTheyAreSeen) {
    launch();
    EXPECT_THAT(taken(), ElementsAre("https://wiki/wiki/Game_updates"));
    const auto& panel = *below<WebPanel>(mainWindow()).at(0);
    const auto hasRow = [&] { return panel.findChild<QLineEdit*>()->isVisible(); };
    EXPECT_FALSE(hasRow());
    EXPECT_TRUE(enginesWidget->isVisible());
    observer().iconPressed();
    EXPECT_TRUE(enginesWidget->isHidden()) << "else its processes hold up the window's first picture";
    observer().iconPressed();
    open(tab_position::home);
    EXPECT_TRUE(enginesWidget->isVisible());
    EXPECT_THAT(taken(), IsEmpty());
    open(tab_position::internet);
    EXPECT_TRUE(hasRow());
    EXPECT_THAT(taken(), IsEmpty());
    open(tab_position::home);
    EXPECT_THAT(taken(), ElementsAre("https://wiki/wiki/Game_updates"));
    // Left before it was seen.
    open(tab_position::internet);
    observer().iconPressed();
    for (const std::size_t tab : {tab_position::home, tab_position::internet}) observer().tabs().select(tab);
    observer().iconPressed();
    EXPECT_THAT(taken(), IsEmpty());
}

TEST_F(BrowserViewTest, TroubleStandsInThePagesPlace) {
    engineIsMissing = true;
    launch();
    const auto light = [this] {
        const QImage image = picture(open(tab_position::internet));
        int bright = 0;
        for (int x = 200; x < 700; ++x)
            for (int y = 250; y < 400; ++y) bright += qRed(image.pixel(x, y)) > 150 ? 1 : 0;
        return bright;
    };
    EXPECT_GT(light(), 100);
    engineIsMissing = false;
    observer().webViewStore().load("https://wiki/a");
    EXPECT_EQ(light(), 0);
}

}  // namespace
}  // namespace vantor
