// The two permissions: as they are at each look, the system's own questions, and a change without a restart.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "PrivacyDouble.h"
#include "ServiceCalls.h"
#include "fake/FakeScheduler.h"
#include "platform/macos/PrivacyPermissions.h"
#include "platform/macos/SystemCapabilities.h"

namespace vantor {
namespace {

using macdouble::privacyDouble;
using macdouble::serviceCalls;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

using Kind = Permissions::Kind;

class PermissionsTest : public testing::Test {
protected:
    PermissionsTest() {
        privacyDouble() = {};
        serviceCalls().take();
    }
    void look() { scheduler.advance(PrivacyPermissions::between); }
    Capability capability(CapabilityKind kind) const {
        for (const Capability& each : examineCapabilities(permissions))
            if (each.kind == kind) return each;
        return {kind};
    }

    FakeScheduler scheduler;
    PrivacyPermissions permissions{scheduler};
};

TEST_F(PermissionsTest, LooksWithoutAskingAndAsksOnlyWhenTold) {
    EXPECT_FALSE(permissions.granted(Kind::hearKeys));
    EXPECT_FALSE(permissions.granted(Kind::pressKeys));
    privacyDouble() = {true, kIOHIDAccessTypeDenied};
    EXPECT_FALSE(permissions.granted(Kind::hearKeys));
    EXPECT_TRUE(permissions.granted(Kind::pressKeys));
    privacyDouble().listening = kIOHIDAccessTypeGranted;
    EXPECT_TRUE(permissions.granted(Kind::hearKeys));
    EXPECT_THAT(serviceCalls().take(), IsEmpty());
    permissions.ask(Kind::pressKeys);
    permissions.ask(Kind::hearKeys);
    EXPECT_THAT(serviceCalls().take(), ElementsAre("ask for accessibility", "ask for listening"));
}

TEST_F(PermissionsTest, TellsOfAChangeWhileSomebodyListens) {
    int changes = 0;
    auto listening = permissions.observe([&] { ++changes; });
    look();
    EXPECT_EQ(changes, 0);
    privacyDouble().trusted = true;
    look();
    look();
    EXPECT_EQ(changes, 1);
    privacyDouble() = {};
    look();
    EXPECT_EQ(changes, 2);
    listening.reset();
    look();
    EXPECT_EQ(scheduler.waiting(), 0U) << "nobody listens, and still it looks";

    // Missed while nobody listened: a change of then is none now.
    privacyDouble().trusted = true;
    listening = permissions.observe([&] { ++changes; });
    look();
    EXPECT_EQ(changes, 2);
    EXPECT_EQ(scheduler.waiting(), 1U);
}

TEST_F(PermissionsTest, ExplainsWhatIsMissingAndWhere) {
    EXPECT_FALSE(capability(CapabilityKind::rawKeys).present);
    EXPECT_THAT(capability(CapabilityKind::rawKeys).advice, HasSubstr("Input Monitoring and Accessibility"));
    EXPECT_THAT(capability(CapabilityKind::posting).advice, HasSubstr("Accessibility"));
    privacyDouble().listening = kIOHIDAccessTypeGranted;
    EXPECT_FALSE(capability(CapabilityKind::rawKeys).present);
    EXPECT_THAT(capability(CapabilityKind::rawKeys).advice, Not(HasSubstr("Input Monitoring")));
    EXPECT_FALSE(capability(CapabilityKind::posting).present);
    privacyDouble() = {true, kIOHIDAccessTypeDenied};
    EXPECT_THAT(capability(CapabilityKind::rawKeys).advice, HasSubstr("may work in Vantor's own windows only"));
    EXPECT_THAT(capability(CapabilityKind::rawKeys).advice, Not(HasSubstr("Accessibility")));
    EXPECT_TRUE(capability(CapabilityKind::posting).present);
    privacyDouble().listening = kIOHIDAccessTypeGranted;
    EXPECT_TRUE(capability(CapabilityKind::rawKeys).present);
    EXPECT_TRUE(capability(CapabilityKind::keyring).present);
}

}  // namespace
}  // namespace vantor
