// Who observes may go at any time, also while it is being told: nobody whose owner is gone may be called.

#include "base/ObserverList.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>

#include "browser/LazyWebPage.h"

namespace vantor {
namespace {

using Calls = std::string;
using List = ObserverList<std::function<void(int)>>;

TEST(ObserverListTest, ObserversComeAndGoWhileTheyAreTold) {
    Calls calls;
    List list;
    Subscription first;
    Subscription second;
    Subscription third;
    Subscription late;
    first = list.add([&](int value) {
        calls += "a" + std::to_string(value);
        first.reset();
        second.reset();
        late = list.add([&](int later) { calls += "d" + std::to_string(later); });
    });
    second = list.add([&](int) { calls += "b"; });
    third = list.add([&](int value) { calls += "c" + std::to_string(value); });
    list.tell(1);
    list.tell(2);
    EXPECT_EQ(calls, "a1c1c2d2");
}

TEST(ObserverListTest, TheListMayEndInTheMiddle) {
    Calls calls;
    auto list = std::make_unique<List>();
    const Subscription first = list->add([&](int) { list.reset(); });
    const Subscription second = list->add([&](int) { calls += "b"; });
    list->tell(1);
    EXPECT_EQ(calls, "");
}

TEST(ObserverListTest, APageCallsNoObserverThatAnotherHasEnded) {
    struct Engine final : WebEngine {
        explicit Engine(Observer& told) : observer(told) {}
        void setObserver(Observer given) override { observer = std::move(given); }
        void setDrawsBackground(bool) override {}
        void addUserScript(const std::string&) override {}
        void load(const std::string&, int) override {}
        void goBack() override {}
        void goForward() override {}
        Observer& observer;
    };
    WebEngine::Observer engine;
    LazyWebPage page([&] { return std::make_unique<Engine>(engine); });
    page.load("http://127.0.0.1/", 60);
    auto owner = std::make_optional<std::string>("alive");
    Subscription second;
    const Subscription first = page.observePrior(WebPage::Property::title, [&] {
        second.reset();
        owner.reset();
    });
    second = page.observePrior(WebPage::Property::title, [&] { ADD_FAILURE() << "called after its end"; });
    WebState next;
    next.title = "Tyria";
    engine.changed(next);
    EXPECT_FALSE(owner);
    EXPECT_EQ(page.title(), "Tyria");
}

}  // namespace
}  // namespace vantor
