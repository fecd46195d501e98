// The kit's controls as a player uses them: with the keyboard alone, with one click, and over a setting that also
// changes elsewhere.

#include <gmock/gmock.h>

#include <QtCore/QAbstractEventDispatcher>

#include "KitPlayer.h"
#include "app/view/TabRow.h"
#include "fake/FakeDefaults.h"
#include "ui/Collapse.h"
#include "ui/ControlState.h"
#include "ui/Fonts.h"
#include "ui/GW2Button.h"
#include "ui/GW2Picker.h"
#include "ui/GW2Slider.h"
#include "ui/GW2TextField.h"
#include "ui/GW2Toggle.h"
#include "ui/ImageButton.h"
#include "ui/Tabber.h"
#include "ui/TextBlock.h"

namespace vantor {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class KitBehaviour : public testing::Test {
protected:
    GW2Picker& addPicker() {
        auto& picker = window.add(new GW2Picker(QStringLiteral("Engine"), &window));
        picker.setOptions(
            {{"wiki", QStringLiteral("Wiki")}, {"video", QStringLiteral("Videos")}, {"web", QStringLiteral("Web")}});
        return picker;
    }

    FakeDefaults defaults;
    KitWindow window;
};

TEST_F(KitBehaviour, EveryButtonAnswersSpaceAndReturnAndShowsItsRingForTheKeyboardOnly) {
    std::vector<QAbstractButton*> buttons{
        &window.add(new GW2Button(QStringLiteral("Go"), &window)),
        &window.add(
            new ImageButton(QStringLiteral("close"), QStringLiteral("close"), QStringLiteral("Close"), &window)),
        &window.add(new GW2Toggle(QStringLiteral("On"), &window)),
        &window.add(new TabElement(QStringLiteral("Tab"), QString(), &window)),
        window.add(new Collapse(QStringLiteral("More"), &window)).findChild<QAbstractButton*>()};
    window.open();
    EXPECT_FALSE(ControlState::of(*buttons[0]).focused) << "at opening";
    buttons.back()->setFocus(Qt::OtherFocusReason);
    for (QAbstractButton* const button : buttons) {
        const std::string name = button->text().toStdString() + button->accessibleName().toStdString();
        int clicks = 0;
        QObject::connect(button, &QAbstractButton::clicked, button, [&clicks] { ++clicks; });
        window.press(Qt::Key_Tab);
        EXPECT_EQ(QApplication::focusWidget(), button) << name;
        EXPECT_TRUE(ControlState::of(*button).focused) << name;
        window.press(Qt::Key_Space, QStringLiteral(" "));
        window.press(Qt::Key_Return, QStringLiteral("\r"));
        window.press(Qt::Key_Enter, QStringLiteral("\r"));
        EXPECT_EQ(clicks, 3) << name;
        window.click(*button);
        EXPECT_EQ(clicks, 4) << name;
        QObject::disconnect(button, &QAbstractButton::clicked, button, nullptr);
    }
    buttons[0]->setFocus(Qt::MouseFocusReason);
    EXPECT_FALSE(ControlState::of(*buttons[0]).focused) << "by the mouse";
}

// The overlay closes when Escape goes up; an open list keeps both halves of the key from it.
TEST_F(KitBehaviour, TabbersFollowTheirArrowsAndMakeAPageWhenItIsFirstShown) {
    std::vector<int> made;
    for (const Qt::Orientation orientation : {Qt::Horizontal, Qt::Vertical}) {
        made.clear();
        Tabber* const tabber = orientation == Qt::Horizontal ? static_cast<Tabber*>(new HorizontalTabber(&window))
                                                             : new VerticalTabber(&window);
        window.add(tabber);
        for (int tab = 0; tab < 3; ++tab)
            tabber->addTab(QString::number(tab), QString(), [&made, tab](QWidget* parent) {
                made.push_back(tab);
                return new QWidget(parent);
            });
        std::vector<int> told;
        tabber->onSelected([&told](int tab) { told.push_back(tab); });
        window.open();
        tabber->tab(0).setFocus(Qt::TabFocusReason);
        const auto [forth, back] = orientation == Qt::Horizontal ? std::pair(Qt::Key_Right, Qt::Key_Left)
                                                                 : std::pair(Qt::Key_Down, Qt::Key_Up);
        window.press(back);
        window.press(forth);
        EXPECT_EQ(QApplication::focusWidget(), &tabber->tab(1));
        window.press(Qt::Key_End);
        window.press(forth);
        window.press(Qt::Key_Home);
        EXPECT_THAT(told, ElementsAre(1, 2, 0));
        EXPECT_THAT(made, ElementsAre(0, 1, 2));
        window.press(Qt::Key_Tab);
        EXPECT_NE(QApplication::focusWidget(), &tabber->tab(1)) << "Tab leaves the row";
    }
}

TEST_F(KitBehaviour, EveryTabOfTheRowStaysInsideItAndWholeAtAnyTextSize) {
    for (const double scale : {1.0, 1.25, 1.5, 2.0})
        for (const int width : {680, 880, 1200}) {
            setTextScale(scale);
            Tabs tabs;
            TabRow row(tabs, nullptr);
            row.resize(width, row.sizeHint().height());
            row.show();
            tabs.select(1);
            row.setBadge(1, QStringLiteral("12"));
            int right = 0;
            int without = 0;
            for (TabElement* const element : below<TabElement>(row)) {
                EXPECT_GE(element->x(), right) << scale << " " << width;
                EXPECT_GE(element->width(), element->leastWidth());
                right = element->geometry().right();
                // What shows no text says it when it is pointed at.
                if (element->leastWidth() < element->fullWidth()) {
                    ++without;
                    EXPECT_EQ(element->toolTip(), element->text());
                    EXPECT_FALSE(element->isChecked());
                }
            }
            EXPECT_LE(right, width) << scale;
            EXPECT_EQ(without > 0, row.sizeHint().width() - 140 > width) << scale << " " << width;
        }
    setTextScale(1);
}

TEST_F(KitBehaviour, BoundControlsShowTheirSettingFollowItAndStoreAtOnce) {
    auto& toggle = window.add(new GW2Toggle(QStringLiteral("Toggle"), &window));
    auto& field = window.add(new GW2TextField(QStringLiteral("Field"), &window));
    GW2Picker& picker = addPicker();
    auto& slider = window.add(new GW2Slider(QStringLiteral("Hours"), 0.5, 24, 0.5, {}, {}, &window));
    defaults.put("a.toggle", std::string("true"));  // a text is no boolean
    defaults.put("a.slider", true);
    toggle.bind(defaults, "a.toggle", false);
    field.bind(defaults, "a.field", "unset");
    picker.bind(defaults, "a.picker", "video");
    slider.bind(defaults, "a.slider", 3);
    window.open();
    EXPECT_FALSE(toggle.isChecked());
    EXPECT_EQ(field.text(), QStringLiteral("unset"));
    EXPECT_EQ(picker.chosen(), "video");
    EXPECT_EQ(slider.shownValue(), 3);
    EXPECT_EQ(defaults.writes(), 0) << "showing stores nothing";

    window.click(toggle);
    field.setFocus(Qt::TabFocusReason);
    field.selectAll();
    window.type(QStringLiteral("ab"));
    picker.setFocus(Qt::TabFocusReason);
    window.press(Qt::Key_Down);
    slider.setFocus(Qt::TabFocusReason);
    window.press(Qt::Key_Right);
    EXPECT_EQ(defaults.get<bool>("a.toggle"), true);
    EXPECT_EQ(defaults.get<std::string>("a.field"), "ab");
    EXPECT_EQ(defaults.get<std::string>("a.picker"), "web");
    EXPECT_EQ(defaults.get<double>("a.slider"), 3.5);
    EXPECT_EQ(defaults.writes(), 5);

    const auto put = [this](std::string_view key, const SettingValue& value) { (void)defaults.setValue(key, value); };
    put("a.toggle", false);
    put("a.field", std::string("elsewhere"));
    put("a.picker", std::string("wiki"));
    put("a.slider", 20.0);
    EXPECT_FALSE(toggle.isChecked());
    EXPECT_EQ(field.text(), QStringLiteral("elsewhere"));
    EXPECT_EQ(picker.chosen(), "wiki");
    EXPECT_EQ(slider.shownValue(), 20);
    EXPECT_EQ(defaults.writes(), 9) << "following writes nothing back";

    defaults.failAtWrite(10);
    window.click(toggle);
    EXPECT_FALSE(toggle.isChecked()) << "what was not stored is not shown as if it were";
}

TEST_F(KitBehaviour, ClearingAFieldIsAnEditLikeAnyOther) {
    auto& field = window.add(new GW2TextField(QStringLiteral("Search"), &window));
    defaults.put("a.field", std::string("fire"));
    field.bind(defaults, "a.field", "");
    field.setClearable(true);
    window.open();
    auto* const clear = field.findChild<QAbstractButton*>();
    ASSERT_TRUE(clear->isVisible());
    window.click(*clear);
    EXPECT_EQ(defaults.get<std::string>("a.field"), "");
    EXPECT_FALSE(clear->isVisible());
    EXPECT_EQ(QApplication::focusWidget(), &field);
}

TEST_F(KitBehaviour, AControlThatIsGoneDoesNotFollowItsSettingAnyMore) {
    auto* const toggle = new GW2Toggle(QStringLiteral("Toggle"), &window);
    toggle->bind(defaults, "a.toggle", false);
    delete toggle;
    EXPECT_EQ(defaults.setValue("a.toggle", true), Defaults::Verdict::stored);
}

TEST_F(KitBehaviour, TheFirstClickOnAnInactiveWindowActs) {
    auto& button = window.add(new GW2Button(QStringLiteral("Go"), &window));
    auto& toggle = window.add(new GW2Toggle(QStringLiteral("On"), &window));
    GW2Picker& picker = addPicker();
    auto& slider = window.add(new GW2Slider(QStringLiteral("Hours"), 0, 10, 1, {}, {}, &window));
    auto& collapse = window.add(new Collapse(QStringLiteral("More"), &window));
    int clicks = 0;
    QObject::connect(&button, &QAbstractButton::clicked, &button, [&clicks] { ++clicks; });
    window.open();
    QWidget other;
    other.show();
    other.activateWindow();
    KitWindow::settle();
    ASSERT_FALSE(window.isActiveWindow());
    window.click(button);
    window.click(toggle);
    window.click(slider);
    window.click(*collapse.findChild<QAbstractButton*>());
    window.click(picker);
    EXPECT_EQ(clicks, 1);
    EXPECT_TRUE(toggle.isChecked());
    EXPECT_EQ(slider.shownValue(), 5);
    EXPECT_TRUE(collapse.expanded());
    EXPECT_TRUE(picker.isOpen());
}

TEST_F(KitBehaviour, AClosedCollapseHoldsNothingForTheKeyboardAndAnOpenOneDoes) {
    auto& collapse = window.add(new Collapse(QStringLiteral("More"), &window));
    auto* const inner = new GW2Button(QStringLiteral("Inner"), &window);
    collapse.setContent(inner);
    auto& after = window.add(new GW2Button(QStringLiteral("After"), &window));
    window.open();
    QWidget* const title = collapse.findChild<QAbstractButton*>(QString(), Qt::FindDirectChildrenOnly);
    title->setFocus(Qt::TabFocusReason);
    window.press(Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), &after);
    collapse.setExpanded(true);
    for (Motion* const motion : below<Motion>(collapse)) motion->jumpTo(1);
    title->setFocus(Qt::TabFocusReason);
    window.press(Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), inner);
}

// Keeps the regions of a window that are painted.
class Painted final : public QObject {
public:
    explicit Painted(QWidget& window) { window.installEventFilter(this); }
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Paint) region += static_cast<QPaintEvent*>(event)->region();
        return false;
    }

    QRegion region;
};

TEST_F(KitBehaviour, AHoverPaintsItsControlSoftlyAndNothingElse) {
    auto& button = window.add(new GW2Button(QStringLiteral("Play"), &window));
    auto& toggle = window.add(new GW2Toggle(QStringLiteral("On"), &window));
    window.open();
    for (QWidget* const control : {static_cast<QWidget*>(&button), static_cast<QWidget*>(&toggle)}) {
        Painted painted(window);
        const auto pointer = [&](QEvent::Type type) {
            QEnterEvent enter(QPointF(1, 1), QPointF(1, 1), QPointF(1, 1));
            QEvent leave(type);
            control->setAttribute(Qt::WA_UnderMouse, type == QEvent::Enter);
            QApplication::sendEvent(control, type == QEvent::Enter ? static_cast<QEvent*>(&enter) : &leave);
        };
        const QImage before = control->grab().toImage();
        pointer(QEvent::Enter);
        Motion& glow = *below<Motion>(*control).front();
        EXPECT_TRUE(glow.moving());
        EXPECT_EQ(control->grab().toImage(), before) << "the hover begins where the control was";
        while (glow.moving()) QApplication::processEvents(QEventLoop::WaitForMoreEvents);
        KitWindow::settle();
        EXPECT_NE(control->grab().toImage(), before);
        pointer(QEvent::Leave);
        while (glow.moving()) QApplication::processEvents(QEventLoop::WaitForMoreEvents);
        KitWindow::settle();
        EXPECT_EQ(control->grab().toImage(), before);
        EXPECT_FALSE(painted.region.isEmpty());
        EXPECT_TRUE((painted.region - control->geometry()).isEmpty()) << control->metaObject()->className();
    }
}

TEST_F(KitBehaviour, NothingWakesTheProgramWhileNothingMoves) {
    auto& toggle = window.add(new GW2Toggle(QStringLiteral("On"), &window));
    addPicker();
    auto& collapse = window.add(new Collapse(QStringLiteral("More"), &window));
    collapse.setContent(new TextBlock(TextRole::body, QStringLiteral("What is below"), &window));
    auto& tabber = window.add(new HorizontalTabber(&window));
    for (int tab = 0; tab < 2; ++tab)
        tabber.addTab(QString::number(tab), QString(), [](QWidget* parent) { return new QWidget(parent); });
    window.open();
    window.click(toggle);
    collapse.setExpanded(true);
    tabber.select(1);
    EXPECT_GE(below<Motion>(window).size(), 2U);
    for (Motion* const motion : below<Motion>(window))
        while (motion->moving()) QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    KitWindow::settle();
    for (QObject* const each : window.findChildren<QObject*>())
        EXPECT_THAT(QAbstractEventDispatcher::instance()->registeredTimers(each), IsEmpty())
            << each->metaObject()->className();
}

}  // namespace
}  // namespace vantor
