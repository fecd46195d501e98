// The status menu at the floating icon: the entries of the status bar's, which act once the menu has closed.

#include <gmock/gmock.h>

#include <QtWidgets/QApplication>

#include "app/StatusMenu.h"
#include "app/view/IconMenu.h"

namespace vantor {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> textsOf(const QMenu& menu) {
    std::vector<std::string> texts;
    for (const QAction* action : menu.actions())
        texts.push_back((action->isSeparator() ? "-" : action->text().toStdString()) +
                        (action->isEnabled() ? "" : " (disabled)"));
    return texts;
}

TEST(IconMenu, OffersWhatTheStatusBarDoes) {
    std::vector<std::string> done;
    const StatusMenuActions actions{[&] { done.emplace_back("toggle"); },
                                    [&](const std::string& name) { done.push_back("fill " + name); },
                                    [&] { done.emplace_back("quit"); }};
    IconMenu menu(statusMenu({"Enable on A & B"}, {"amy_z", "R&D"}, actions), nullptr);
    EXPECT_THAT(textsOf(menu), ElementsAre("Enable on A && B", "Fill credentials", "-", "Quit"));
    const QMenu* const accounts = menu.actions().at(1)->menu();
    ASSERT_TRUE(accounts);
    EXPECT_THAT(textsOf(*accounts), ElementsAre("amy_z", "R&&D"));
    accounts->actions().at(1)->trigger();
    EXPECT_THAT(done, IsEmpty());  // the menu still has the keyboard
    QApplication::processEvents();
    menu.actions().at(0)->trigger();
    menu.actions().at(3)->trigger();
    QApplication::processEvents();
    EXPECT_THAT(done, ElementsAre("fill R&D", "toggle", "quit"));

    const IconMenu empty(statusMenu({"Enable on A"}, {}, actions), nullptr);
    EXPECT_THAT(textsOf(*empty.actions().at(1)->menu()),
                ElementsAre("No accounts found, add new in settings (disabled)"));
}

}  // namespace
}  // namespace vantor
