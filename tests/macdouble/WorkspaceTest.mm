// The workspace: which application is in front, what it is called, and the focus handed back to it.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <optional>
#include <utility>

#include "DesktopDouble.h"
#include "ServiceCalls.h"
#include "platform/macos/ReducedMotion.h"
#include "platform/macos/SharedWorkspace.h"

namespace vantor {
namespace {

using macdouble::serviceCalls;
using macdouble::setFrontmost;
using testing::ElementsAre;
using testing::IsEmpty;

class SharedWorkspaceTest : public testing::Test {
protected:
    SharedWorkspaceTest() {
        setFrontmost(std::nullopt);
        (void)serviceCalls().take();
    }
    Subscription watch() {
        return workspace.observeFrontmostApplication(
            [this](const std::string& identifier) { seen.push_back(identifier); });
    }

    SharedWorkspace workspace;
    std::vector<std::string> seen;
};

TEST_F(SharedWorkspaceTest, TellsAtOnceAndAtEachChangeUntilItEnds) {
    setFrontmost("org.example.Game");
    auto watching = watch();
    EXPECT_THAT(serviceCalls().take(), ElementsAre("observe frontmostApplication 5"));
    EXPECT_THAT(seen, ElementsAre("org.example.Game")) << "before it returned";
    setFrontmost("orvendel.Vantor");
    setFrontmost("");  // one without an identifier
    setFrontmost("org.example.Game");
    setFrontmost(std::nullopt);
    EXPECT_THAT(seen, ElementsAre("org.example.Game", "orvendel.Vantor", "", "org.example.Game", ""));

    watching.reset();
    EXPECT_THAT(serviceCalls().take(), ElementsAre("stop observing frontmostApplication"));
    setFrontmost("org.example.Game");
    EXPECT_EQ(seen.size(), 5U);
}

TEST_F(SharedWorkspaceTest, BeginsWithoutAnApplicationAndMayEndWhileItTells) {
    Subscription ending;
    ending = workspace.observeFrontmostApplication([&](const std::string& identifier) {
        ending.reset();
        seen.push_back("ending " + identifier);
    });
    const auto other = watch();
    EXPECT_THAT(seen, ElementsAre("ending ", "")) << "not yet handed out while it tells first";
    seen.clear();
    setFrontmost("last");
    setFrontmost("later");
    EXPECT_THAT(seen, testing::UnorderedElementsAre("ending last", "last", "later"));
}

TEST_F(SharedWorkspaceTest, LetsItsHandlerGoWhenItEnds) {
    auto held = std::make_shared<int>(0);
    const std::weak_ptr<int> alive = held;
    @autoreleasepool {
        auto watching = workspace.observeFrontmostApplication([held = std::move(held)](const std::string&) {});
        setFrontmost("org.example.Game");
        EXPECT_FALSE(alive.expired());
        watching.reset();
    }
    EXPECT_TRUE(alive.expired());
}

TEST_F(SharedWorkspaceTest, NamesAnApplicationByItsBundle) {
    macdouble::setBundle("org.example.Game", @"The Gäme");
    EXPECT_EQ(workspace.displayName("org.example.Game"), "The Gäme");
    EXPECT_EQ(workspace.displayName("org.example.Other"), std::nullopt) << "no bundle";
    EXPECT_EQ(workspace.displayName(""), std::nullopt);
    EXPECT_EQ(workspace.displayName("\xff"), std::nullopt) << "no text at all";
    macdouble::setBundle("org.example.Game", nil);
    EXPECT_EQ(workspace.displayName("org.example.Game"), std::nullopt) << "a bundle without a name";
    macdouble::setBundle("org.example.Game", [NSNumber numberWithInt:1]);
    EXPECT_EQ(workspace.displayName("org.example.Game"), std::nullopt) << "a name that is no text";
}

TEST_F(SharedWorkspaceTest, HandsTheFocusBackByHiding) {
    workspace.hideAndUnhideWithoutActivation();
    EXPECT_THAT(serviceCalls().take(), ElementsAre("hide", "unhide without activation"));
    EXPECT_TRUE(workspace.awaitFocusReturned(std::chrono::milliseconds(0)));
    EXPECT_THAT(serviceCalls().take(), IsEmpty());
}

TEST(ReducedMotionTest, IsToldAtOnceAndAtEachChangeUntilItEnds) {
    std::vector<bool> told;
    macdouble::setReducesMotion(true);
    Subscription following;
    following = observeReducedMotion([&](bool reduced) {
        told.push_back(reduced);
        if (told.size() == 3) following.reset();
    });
    EXPECT_THAT(told, ElementsAre(true));
    macdouble::setReducesMotion(false);
    macdouble::setReducesMotion(true);
    macdouble::setReducesMotion(false);
    EXPECT_THAT(told, ElementsAre(true, false, true));
}

}  // namespace
}  // namespace vantor
