// Addresses, the style script, the page whose engine comes late, the store, and observers that come and go.

#include <gmock/gmock.h>

#include "base/ObserverList.h"
#include "browser/LazyWebPage.h"
#include "browser/StyleScript.h"
#include "browser/WebAddresses.h"
#include "browser/WebViewStore.h"

namespace vantor {
namespace {

using testing::ElementsAre;

const WebHosts hosts{"https://wiki.example", "https://videos.example", "https://search.example"};

TEST(WebAddressesTest, AreFormedWhateverIsSearchedFor) {
    const std::pair<std::string, const char*> rows[] = {
        {searchAddress(hosts, searchTargets[2], "ice brood"), "https://search.example/search?q=gw2+ice+brood"},
        {searchAddress(hosts, searchTargets[0], "  a"), "https://wiki.example/index.php?search=++a"},
        {searchAddress(hosts, searchTargets[1], "a&b+c"), "https://videos.example/results?search_query=gw2+a&b+c"},
        {searchAddress(hosts, searchTargets[0], "50%25"), "https://wiki.example/index.php?search=50%25"},
        // What would make no address.
        {searchAddress(hosts, searchTargets[0], "50% off"), "https://wiki.example/index.php?search=50%25+off"},
        {searchAddress(hosts, searchTargets[0], "Zhaïtan & \"Mordremoth\""),
         "https://wiki.example/index.php?search=Zha%C3%AFtan+%26+%22Mordremoth%22"},
        {searchAddress(hosts, searchTargets[2], "a#b#c"), "https://search.example/search?q=gw2+a%23b%23c"},
        {searchAddress(hosts, searchTargets[1], "[x]\n"), "https://videos.example/results?search_query=gw2+%5Bx%5D%0A"},
        {lookUpAddress(hosts, "Sons of Svanir & co"),
         "https://wiki.example/index.php?search=Sons%20of%20Svanir%20%26%20co"},
        {wikiPageAddress(hosts, "Ley-Line Anomaly/#x (a, 'b')! ü?&"),
         "https://wiki.example/wiki/Ley-Line_Anomaly/#x_(a,_'b')!_%C3%BC%3F%26"},
    };
    for (const auto& [address, expected] : rows) {
        EXPECT_EQ(address, expected);
        EXPECT_TRUE(isAddress(address)) << address;
    }
    for (const auto* bad : {"", "wiki", "https://", "https:///x", "https://a b/", "https://a/%", "https://a/%2"})
        EXPECT_FALSE(isAddress(bad)) << bad;
}

// An engine that remembers what was asked, and reports what a test says.
struct Engine final : WebEngine {
    struct Record {
        std::vector<std::string> asked;
        Observer observer;
    };
    explicit Engine(Record& kept) : record(kept) {}
    void setObserver(Observer observer) override { record.observer = std::move(observer); }
    void setDrawsBackground(bool draws) override { record.asked.push_back(draws ? "background" : "no background"); }
    void load(const std::string& url, int) override { record.asked.push_back("load " + url); }
    void goBack() override { record.asked.emplace_back("back"); }
    void goForward() override { record.asked.emplace_back("forward"); }
    void addUserScript(const std::string& source) override { record.asked.push_back("script " + source); }
    Record& record;
};

TEST(LazyWebPageTest, MakesTheEngineAtTheFirstLoadAndTellsItWhatCameBefore) {
    Engine::Record record;
    int made = 0;
    LazyWebPage page([&]() -> std::unique_ptr<WebEngine> {
        // Missing at first: the next load asks again.
        return ++made == 1 ? nullptr : std::make_unique<Engine>(record);
    });
    std::vector<LazyWebPage::Engine> states;
    page.onEngine([&] { states.push_back(page.engine()); });
    page.setDrawsBackground(false);
    page.goBack();
    page.goForward();
    EXPECT_EQ(made, 0);

    page.load("https://a", 60);
    page.addUserScript("1");
    EXPECT_TRUE(record.asked.empty());
    page.load("https://b", 60);
    page.addUserScript("2");
    page.goBack();
    EXPECT_EQ(made, 2);
    EXPECT_THAT(record.asked, ElementsAre("no background", "script 1", "load https://b", "script 2", "back"));

    record.observer.gone();
    page.load("https://c", 60);
    page.load("https://d", 60);
    EXPECT_EQ(made, 2);
    using enum LazyWebPage::Engine;
    EXPECT_THAT(states, ElementsAre(missing, running, gone, running));
}

TEST(LazyWebPageTest, AnnouncesEachChangeBeforeItIsMadeToThoseWhoAreStillThere) {
    Engine::Record record;
    LazyWebPage page([&] { return std::make_unique<Engine>(record); });
    std::vector<std::string> seen;
    Subscription progress;
    const auto title = page.observePrior(WebPage::Property::title, [&] {
        seen.push_back("title was " + page.title().value_or("none"));
        if (page.title()) progress.reset();
    });
    const auto back = page.observePrior(WebPage::Property::canGoBack,
                                        [&] { seen.emplace_back(page.canGoBack() ? "could go back" : "no way back"); });
    progress = page.observePrior(WebPage::Property::estimatedProgress, [&] { seen.emplace_back("progress"); });
    page.load("https://a", 60);

    WebState state;
    state.title = "One";
    state.estimatedProgress = 0.5;
    record.observer.changed(state);
    record.observer.changed(state);
    state.title = "Two";
    state.canGoBack = true;
    state.estimatedProgress = 1;
    record.observer.changed(state);
    EXPECT_THAT(seen, ElementsAre("title was none", "progress", "title was One", "no way back"));
    EXPECT_EQ(page.title(), "Two");
    EXPECT_TRUE(page.canGoBack());
    EXPECT_EQ(page.estimatedProgress(), 1);
}

TEST(WebViewStoreTest, EachLoadAddsOneMoreStyleScriptAndEachChangeIsAnnouncedOnce) {
    Engine::Record record;
    std::optional<std::string> sheet = "a {}";
    WebViewStore store(std::make_unique<LazyWebPage>([&] { return std::make_unique<Engine>(record); }),
                       [&] { return sheet; });
    int announced = 0;
    const Subscription watching = store.onWillChange([&] { ++announced; });
    store.load("https://wiki.example/a");
    store.load("https://wiki.example/a");
    sheet.reset();
    store.load("https://wiki.example/c");
    EXPECT_THAT(record.asked, ElementsAre("no background", "load https://wiki.example/a",
                                          "script " + styleScript("a {}"), "load https://wiki.example/a",
                                          "script " + styleScript("a {}"), "load https://wiki.example/c"));
    EXPECT_THAT(styleScript("a {}"), testing::HasSubstr("window.atob('YSB7fQ==');\n"));
    EXPECT_THAT(styleScript(std::string(300, '>')), testing::Not(testing::ContainsRegex("[-_]")));
    record.observer.changed({.title = "One", .url = "https://wiki.example/a", .canGoBack = true});
    EXPECT_EQ(announced, 3);
    EXPECT_DEATH(store.load("no address"), "an address of a page cannot be formed");
}

using List = ObserverList<std::function<void(int)>>;

TEST(ObserverListTest, ObserversComeAndGoWhileTheyAreTold) {
    std::string calls;
    auto list = std::make_unique<List>();
    Subscription first;
    Subscription second;
    Subscription third;
    Subscription late;
    first = list->add([&](int value) {
        calls += "a" + std::to_string(value);
        first.reset();
        second.reset();
        late = list->add([&](int later) { calls += "d" + std::to_string(later); });
    });
    second = list->add([&](int) { calls += "b"; });
    third = list->add([&](int value) {
        calls += "c" + std::to_string(value);
        if (value == 3) list.reset();
    });
    for (const int value : {1, 2, 3}) list->tell(value);  // the list ends in the middle of the last
    EXPECT_EQ(calls, "a1c1c2d2c3");
}

}  // namespace
}  // namespace vantor
