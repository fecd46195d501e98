// The kit's controls as a player uses them: with the keyboard alone, with one click, with a screen reader, and over a
// setting that also changes elsewhere; and that each shows what it is.

#include <gmock/gmock.h>

#include <QtCore/QAbstractEventDispatcher>
#include <QtGui/QClipboard>
#include <QtGui/QContextMenuEvent>
#include <algorithm>
#include <map>

#include "KitPlayer.h"
#include "app/view/TabRow.h"
#include "fake/FakeDefaults.h"
#include "ui/Collapse.h"
#include "ui/ControlState.h"
#include "ui/Fonts.h"
#include "ui/GW2Button.h"
#include "ui/GW2Picker.h"
#include "ui/GW2Slider.h"
#include "ui/GW2TextArea.h"
#include "ui/GW2TextField.h"
#include "ui/GW2Toggle.h"
#include "ui/ImageButton.h"
#include "ui/Tabber.h"

namespace vantor {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class KitControls : public testing::Test {
protected:
    static QAccessibleInterface& of(QWidget& widget) { return *QAccessible::queryAccessibleInterface(&widget); }
    static void point(QWidget& widget, bool at) {
        QEnterEvent enter(QPointF(1, 1), QPointF(1, 1), QPointF(1, 1));
        QEvent leave(QEvent::Leave);
        widget.setAttribute(Qt::WA_UnderMouse, at);
        QApplication::sendEvent(&widget, at ? static_cast<QEvent*>(&enter) : &leave);
    }
    FakeDefaults defaults;
    KitWindow window;
};

TEST_F(KitControls, EachHasItsNameItsRoleItsKeysAndAPictureOfEachState) {
    auto& tabber = window.add(new HorizontalTabber(&window));
    tabber.addTab(QStringLiteral("Timers"), QStringLiteral("timer"), [](QWidget* page) { return new QWidget(page); });
    auto& collapse = window.add(new Collapse(QStringLiteral("More"), &window));
    const QString close = QStringLiteral("close");
    // Without letters whose colour would tell of a hover as well.
    auto& blank = window.add(new GW2Button(QStringLiteral(" "), &window));
    blank.setAccessibleName(QStringLiteral("Go"));
    const struct {
        QWidget* control;
        QAccessible::Role role;
        const char* name;
    } rows[] = {
        {&tabber.tab(0), QAccessible::PageTab, "Timers"},
        {collapse.findChild<QAbstractButton*>(), QAccessible::Button, "More"},
        {&blank, QAccessible::Button, "Go"},
        {&window.add(new ImageButton(close, close + QStringLiteral(".selected"), QStringLiteral("Close"), &window)),
         QAccessible::Button, "Close"},
        {&window.add(new ImageButton(close, close, QStringLiteral("The same"), &window)), QAccessible::Button,
         "The same"},
        {&window.add(new GW2Toggle(QStringLiteral("Paste"), &window)), QAccessible::CheckBox, "Paste"},
        {&window.add(new GW2Picker(QStringLiteral("Engine"), &window)), QAccessible::ComboBox, "Engine"},
        {&window.add(new GW2Slider(QStringLiteral("Hours"), 0, 10, 1, {}, {}, &window)), QAccessible::Slider, "Hours"},
        {&window.add(new GW2TextField(QStringLiteral("Search"), &window)), QAccessible::EditableText, "Search"},
        {&window.add(new GW2TextArea(QStringLiteral("Words"), &window)), QAccessible::EditableText, "Words"},
    };
    QWidget& last = *std::rbegin(rows)->control;
    std::map<std::string, QImage> hovered;
    window.open();
    EXPECT_FALSE(ControlState::of(*rows[0].control).focused) << "at opening";
    last.setFocus(Qt::OtherFocusReason);
    for (const auto& [control, role, name] : rows) {
        SCOPED_TRACE(name);
        EXPECT_EQ(heardOf(*control), name);
        EXPECT_EQ(of(*control).role(), role);
        const QImage before = picture(*control);
        window.press(Qt::Key_Tab);
        EXPECT_EQ(QApplication::focusWidget(), control);
        EXPECT_NE(picture(*control), before) << "its ring";
        auto* const button = qobject_cast<QAbstractButton*>(control);
        if (button) {
            EXPECT_TRUE(ControlState::of(*button).focused);
            int clicks = 0;
            QObject::connect(button, &QAbstractButton::clicked, button, [&clicks] { ++clicks; });
            for (const int key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter}) window.press(key);
            of(*button).actionInterface()->doAction(of(*button).actionInterface()->actionNames().value(0));
            EXPECT_EQ(clicks, 4);
            button->setEnabled(false);
            of(*button).actionInterface()->doAction(QAccessibleActionInterface::pressAction());
            button->setEnabled(true);
            window.click(*button);
            EXPECT_EQ(clicks, 5);
            QObject::disconnect(button, &QAbstractButton::clicked, button, nullptr);
        }
        control->clearFocus();
        control->setFocus(Qt::MouseFocusReason);
        EXPECT_FALSE(button && ControlState::of(*control).focused) << "by the mouse";
        (void)picture(window);
        const QImage plain = picture(*control);
        control->setEnabled(false);
        EXPECT_NE(picture(*control), plain) << "disabled";
        EXPECT_TRUE(of(*control).state().disabled);
        control->setEnabled(true);
        control->setFocus(Qt::MouseFocusReason);
        settle();
        Painted painted;
        point(*control, true);
        EXPECT_TRUE(!button || below<Motion>(*control).front()->moving()) << "softly";
        hovered[name] = picture(*control);
        EXPECT_TRUE((hovered[name] != plain) == (role != QAccessible::PageTab)) << "the chosen tab is lit already";
        point(*control, false);
        EXPECT_EQ(picture(*control), plain);
        const QRect place(control->mapTo(&window, QPoint()), control->size());
        EXPECT_TRUE((painted.regions[&window] - place).isEmpty()) << "nothing beside it is painted";
        control->setFocus(Qt::TabFocusReason);
    }
    EXPECT_NE(hovered["Close"], hovered["The same"]) << "another image";
    last.setFocus(Qt::TabFocusReason);
    window.press(Qt::Key_Tab, QStringLiteral("\t"));
    EXPECT_NE(QApplication::focusWidget(), &last) << "Tab goes on, also from a text of many lines";
    GW2Button named(QStringLiteral("Go"), nullptr);
    named.setText(QStringLiteral("Stop"));
    EXPECT_EQ(heardOf(named), "Stop");
}

TEST_F(KitControls, StatesAndValuesFollow) {
    auto& toggle = window.add(new GW2Toggle(QStringLiteral("Paste"), &window));
    auto& tabber = window.add(new HorizontalTabber(&window));
    for (const char* const text : {"One", "Two"})
        tabber.addTab(QString::fromLatin1(text), QString(), [](QWidget* parent) { return new QWidget(parent); });
    tabber.tab(1).setBadge(QStringLiteral("2"));
    auto& slider = window.add(new GW2Slider(QStringLiteral("Hours"), 0.5, 24, 0.5, {}, {}, &window));
    slider.setValueText([](double hours) { return QStringLiteral("%1 h").arg(hours); });
    window.open();
    EXPECT_TRUE(of(toggle).state().checkable && !of(toggle).state().checked);
    // The brightest of the track, without the text.
    const auto knob = [&toggle] {
        const QImage track = picture(toggle).copy(0, 0, 44, toggle.height());
        QPoint brightest;
        for (int x = 0; x < track.width(); ++x)
            for (int y = 0; y < track.height(); ++y)
                if (qGray(track.pixel(x, y)) > qGray(track.pixel(brightest))) brightest = {x, y};
        return brightest.x();
    };
    const int off = knob();
    toggle.setChecked(true);
    EXPECT_TRUE(of(toggle).state().checked);
    EXPECT_GT(knob(), off + 10) << "it moves";
    EXPECT_TRUE(of(tabber.tab(0)).state().selected);
    tabber.select(1);
    EXPECT_TRUE(!of(tabber.tab(0)).state().selected && of(tabber.tab(1)).state().selected);
    EXPECT_EQ(of(tabber.tab(1)).text(QAccessible::Description), QStringLiteral("2"));

    QAccessibleValueInterface& value = *of(slider).valueInterface();
    value.setCurrentValue(7.6);
    EXPECT_EQ(heardOf(slider, QAccessible::Value), "7.5 h");
    EXPECT_EQ(std::pair(value.minimumValue().toDouble(), value.maximumValue().toDouble()), std::pair(0.5, 24.0));
    // The left button drags it, and no other.
    const auto mouse = [&](QEvent::Type type, int x, Qt::MouseButton button) {
        QMouseEvent event(type, QPointF(x, 30), slider.mapToGlobal(QPointF(x, 30)), button, button, Qt::NoModifier);
        QApplication::sendEvent(&slider, &event);
        return slider.shownValue();
    };
    const int end = slider.width();
    EXPECT_EQ(mouse(QEvent::MouseButtonPress, end, Qt::RightButton), 7.5);
    EXPECT_EQ(mouse(QEvent::MouseMove, 0, Qt::RightButton), 7.5);
    EXPECT_EQ(mouse(QEvent::MouseButtonPress, end, Qt::LeftButton), 24);
    EXPECT_EQ(mouse(QEvent::MouseMove, 0, Qt::LeftButton), 0.5);
    mouse(QEvent::MouseButtonRelease, 0, Qt::LeftButton);
    EXPECT_EQ(mouse(QEvent::MouseMove, end, Qt::RightButton), 0.5);
}

TEST_F(KitControls, TabbersFollowTheirArrowsAndMakeAPageWhenItIsFirstShown) {
    for (const auto& [tabber, forth, back] :
         {std::tuple(static_cast<Tabber*>(new HorizontalTabber(&window)), Qt::Key_Right, Qt::Key_Left),
          {new VerticalTabber(&window), Qt::Key_Down, Qt::Key_Up}}) {
        std::vector<int> made;
        std::vector<int> told;
        window.add(tabber);
        for (int tab = 0; tab < 3; ++tab)
            tabber->addTab(QString::number(tab), QString(), [&made, tab](QWidget* parent) {
                made.push_back(tab);
                return new QWidget(parent);
            });
        tabber->onSelected([&told](int tab) { told.push_back(tab); });
        window.open();
        tabber->tab(0).setFocus(Qt::TabFocusReason);
        for (const int key : {back, forth}) window.press(key);
        EXPECT_EQ(QApplication::focusWidget(), &tabber->tab(1));
        for (const int key : {+Qt::Key_End, +forth, +Qt::Key_Home}) window.press(key);
        EXPECT_THAT(told, ElementsAre(1, 2, 0));
        EXPECT_THAT(made, ElementsAre(0, 1, 2));
        window.press(Qt::Key_Tab);
        EXPECT_NE(QApplication::focusWidget(), &tabber->tab(1)) << "Tab leaves the row";
    }
}

TEST_F(KitControls, EveryTabOfTheRowStaysInsideItAndWholeAtAnyTextSize) {
    for (const double scale : {1.0, 1.5, 2.0})
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
                if (element->leastWidth() == element->fullWidth()) continue;
                ++without;
                EXPECT_EQ(element->toolTip(), element->text()) << "what shows no text says it when it is pointed at";
                EXPECT_FALSE(element->isChecked());
            }
            EXPECT_LE(right, width) << scale;
            EXPECT_EQ(without > 0, row.sizeHint().width() - 140 > width) << scale << " " << width;
        }
    setTextScale(1);
    TabElement bare(QStringLiteral("Without image"), QString(), nullptr);
    bare.setCompact(true);
    EXPECT_EQ(bare.leastWidth(), bare.fullWidth()) << "what has no image keeps its text";
}

TEST_F(KitControls, ThoseThatAreBoundShowTheirSettingFollowItAndStoreAtOnce) {
    auto& toggle = window.add(new GW2Toggle(QStringLiteral("Toggle"), &window));
    auto& field = window.add(new GW2TextField(QStringLiteral("Field"), &window));
    auto& picker = window.add(new GW2Picker(QStringLiteral("Engine"), &window));
    picker.setOptions({{"wiki", QStringLiteral("Wiki")}, {"video", {}}, {"web", {}}});
    auto& slider = window.add(new GW2Slider(QStringLiteral("Hours"), 0.5, 24, 0.5, {}, {}, &window));
    auto& on = window.add(new GW2Toggle(QStringLiteral("On"), &window));
    defaults.put("a.toggle", std::string("true"));  // a text is no boolean
    defaults.put("a.slider", true);
    defaults.put("a.on", true);
    GW2Toggle(QStringLiteral("Gone"), nullptr).bind(defaults, "a.toggle", false);
    toggle.bind(defaults, "a.toggle", false);
    field.bind(defaults, "a.field", "unset");
    picker.bind(defaults, "a.picker", "video");
    slider.bind(defaults, "a.slider", 3);
    on.bind(defaults, "a.on", false);
    EXPECT_FALSE(std::ranges::any_of(below<Motion>(on), &Motion::moving)) << "it was on before it was seen";
    window.open();
    using Shown = std::tuple<bool, std::string, std::optional<std::string>, double>;
    const auto shown = [&] {
        return Shown(toggle.isChecked(), field.text().toStdString(), picker.chosen(), slider.shownValue());
    };
    const auto stored = [&] {
        return Shown(*defaults.get<bool>("a.toggle"), *defaults.get<std::string>("a.field"),
                     defaults.get<std::string>("a.picker"), *defaults.get<double>("a.slider"));
    };
    EXPECT_EQ(shown(), Shown(false, "unset", "video", 3));
    EXPECT_EQ(defaults.writes(), 0) << "showing stores nothing";

    window.click(toggle);
    fillIn(field, QStringLiteral("ab"));
    sendKey(picker, Qt::Key_Down);
    sendKey(slider, Qt::Key_Right);
    EXPECT_EQ(stored(), Shown(true, "ab", "web", 3.5));
    EXPECT_EQ(defaults.writes(), 5);

    for (const auto& [key, value] : {std::pair("a.toggle", SettingValue(false)),
                                     {"a.field", std::string("elsewhere")},
                                     {"a.picker", std::string("wiki")},
                                     {"a.slider", 20.0}})
        (void)defaults.setValue(key, value);
    EXPECT_EQ(shown(), Shown(false, "elsewhere", "wiki", 20));
    EXPECT_EQ(defaults.writes(), 9) << "following writes nothing back";

    defaults.failAtWrite(10);
    window.click(toggle);
    EXPECT_FALSE(toggle.isChecked()) << "what was not stored is not shown as if it were";

    // Clearing is an edit like any other, where there is something to clear.
    field.setClearable(true);
    settle();
    press(window, "Clear");
    EXPECT_EQ(defaults.get<std::string>("a.field"), "");
    EXPECT_FALSE(field.findChild<QAbstractButton*>()->isVisible());
    EXPECT_EQ(QApplication::focusWidget(), &field);
    GW2TextField empty(QStringLiteral("Empty"), nullptr);
    empty.setClearable(true);
    EXPECT_TRUE(empty.findChild<QAbstractButton*>()->isHidden());
}

TEST_F(KitControls, ACollapseOpensSoftlyForTheKeyboardTooGrowsAndThenRests) {
    auto& collapse = window.add(new Collapse(QStringLiteral("More"), &window));
    auto& inner = *new GW2Button(QStringLiteral("Inner"), nullptr);
    collapse.setContent(&inner);
    auto& after = window.add(new GW2Button(QStringLiteral("After"), &window));
    window.open();
    QWidget& title = named<QAbstractButton>(window, "More");
    const auto next = [&] {
        title.setFocus(Qt::TabFocusReason);
        window.press(Qt::Key_Tab);
        return QApplication::focusWidget();
    };
    EXPECT_TRUE(of(title).state().collapsed && !of(title).state().expanded);
    EXPECT_EQ(next(), &after);
    collapse.setExpanded(true);
    EXPECT_TRUE(std::ranges::any_of(below<Motion>(collapse), &Motion::moving));
    (void)picture(window);
    EXPECT_TRUE(of(title).state().expanded && !of(title).state().collapsed);
    EXPECT_EQ(next(), &inner);
    const int height = collapse.height();
    setTextScale(2);
    inner.updateGeometry();
    settle();
    EXPECT_GT(collapse.height(), height);
    setTextScale(1);
    for (QObject* const each : window.findChildren<QObject*>())
        EXPECT_THAT(QAbstractEventDispatcher::instance()->registeredTimers(each), IsEmpty())
            << each->metaObject()->className() << " wakes the program";
}

// A picker's list and a field's menu: with arrows, letters and clicks; and how they go.
class KitList : public KitControls {
protected:
    GW2Picker& addPicker() {
        auto& picker = window.add(new GW2Picker(QStringLiteral("Engine"), &window));
        picker.setOptions(
            {{"wiki", QStringLiteral("Wiki")}, {"video", QStringLiteral("Videos")}, {"web", QStringLiteral("Web")}});
        picker.setPlaceholder(QStringLiteral("None"));
        picker.onChosen([this](const GW2PickerOption& option) { chosen.push_back(option.id); });
        return picker;
    }
    [[nodiscard]] ListPopup* openList() const {
        for (ListPopup* const list : below<ListPopup>(window))
            if (list->isVisible()) return list;
        throw std::runtime_error("no list is open");
    }

    std::vector<std::string> chosen;
};

TEST_F(KitList, APickerIsChosenFromByArrowsByItsListByAFirstLetterAndByAScreenReader) {
    GW2Picker& picker = addPicker();
    window.open();
    EXPECT_EQ(of(picker).text(QAccessible::Value), QStringLiteral("None"));
    EXPECT_TRUE(of(picker).state().collapsed && of(picker).state().hasPopup);
    picker.setFocus(Qt::TabFocusReason);
    for (const int key : {Qt::Key_Down, Qt::Key_Down, Qt::Key_Up, Qt::Key_Up}) window.press(key);
    EXPECT_THAT(chosen, ElementsAre("wiki", "video", "wiki")) << "the first one has none above";

    window.press(Qt::Key_Space, QStringLiteral(" "));
    ASSERT_TRUE(picker.isOpen());
    EXPECT_EQ(openList()->window(), &window) << "inside the window";
    window.press(Qt::Key_End);
    window.press(Qt::Key_Return, QStringLiteral("\r"));
    EXPECT_EQ(picker.chosen(), "web");
    EXPECT_FALSE(picker.isOpen());
    EXPECT_TRUE(ControlState::of(picker).focused);

    of(picker).actionInterface()->doAction(QAccessibleActionInterface::showMenuAction());
    EXPECT_TRUE(of(picker).state().expanded);
    window.type(QStringLiteral("v"));  // from the last line on to the second
    QAccessibleInterface& list = of(*openList());
    EXPECT_EQ(list.role(), QAccessible::List);
    EXPECT_EQ(list.text(QAccessible::Name), QStringLiteral("Engine"));
    ASSERT_EQ(list.childCount(), 3);
    EXPECT_EQ(list.child(1)->text(QAccessible::Name), QStringLiteral("Videos"));
    EXPECT_EQ(list.child(1)->parent(), &list);
    EXPECT_EQ(list.focusChild(), list.child(1));
    window.press(Qt::Key_Return, QStringLiteral("\r"));
    EXPECT_EQ(of(picker).text(QAccessible::Value), QStringLiteral("Videos"));

    // Other options keep the choice that is still among them, and no other.
    picker.setOptions({{"new", QStringLiteral("New")}, {"video", QStringLiteral("Films")}});
    EXPECT_EQ(picker.shownText(), QStringLiteral("Films"));
    picker.setOptions({{"new", QStringLiteral("New")}});
    EXPECT_EQ(picker.chosen(), std::nullopt);
}

TEST_F(KitList, EscapeClosesAnOpenListAndIsSeenByNobodyElse) {
    struct Listener : QObject {
        bool eventFilter(QObject* watched, QEvent* event) override {
            if (watched->isWindowType() && event->type() == QEvent::KeyPress) seen += "down ";
            if (watched->isWindowType() && event->type() == QEvent::KeyRelease) seen += "up ";
            return false;
        }
        std::string seen;
    } listener;
    QApplication::instance()->installEventFilter(&listener);
    GW2Picker& picker = addPicker();
    window.open();
    picker.setFocus(Qt::TabFocusReason);
    picker.open();
    window.down(Qt::Key_Escape);
    EXPECT_FALSE(picker.isOpen());
    EXPECT_EQ(QApplication::focusWidget(), &picker);
    window.down(Qt::Key_Escape);  // held
    window.up(Qt::Key_Escape);
    EXPECT_EQ(listener.seen, "");
    EXPECT_THAT(window.notTaken, IsEmpty());
    window.press(Qt::Key_Escape);
    EXPECT_EQ(listener.seen, "down up ") << "the next one is the window's";
    EXPECT_FALSE(picker.chosen());
}

TEST_F(KitList, TheListGoesWithoutAChoiceWhereverThePlayerTurnsTo) {
    auto* picker = &addPicker();
    auto& field = window.add(new GW2TextField(QStringLiteral("Field"), &window));
    static_cast<QBoxLayout*>(window.layout())->addStretch(1);
    window.open();
    const std::vector<std::function<void()>> ways{
        [&] { window.click(*picker); },
        [&] { window.click(window, QPoint(5, 5)); },
        [&] { turnWheel(window, *window.windowHandle()); },
        [&] { field.setFocus(Qt::OtherFocusReason); },
        [&] { picker->hide(); },
    };
    for (std::size_t way = 0; way < ways.size(); ++way) {
        window.click(*picker);
        ASSERT_TRUE(picker->isOpen()) << way;
        ways[way]();
        EXPECT_FALSE(picker->isOpen()) << way;
    }
    EXPECT_THAT(chosen, IsEmpty());
    picker->show();
    settle();
    window.click(*picker);
    window.click(*openList(), openList()->lineAt(1).center());
    EXPECT_THAT(chosen, ElementsAre("video"));
    picker->open();
    delete picker;
    QContextMenuEvent menu(QContextMenuEvent::Mouse, QPoint(10, 10), field.mapToGlobal(QPoint(10, 10)));
    QApplication::sendEvent(&field, &menu);
    delete &field;
    window.press(Qt::Key_Escape);
    settle();
    EXPECT_THAT(below<ListPopup>(window), IsEmpty());
}

TEST_F(KitList, ALongListStaysInsideItsWindowBelowOrAboveAndScrollsToTheCurrentLine) {
    GW2Picker& upper = addPicker();
    static_cast<QBoxLayout*>(window.layout())->addStretch(1);
    GW2Picker& lower = addPicker();
    std::vector<GW2PickerOption> many;
    for (int i = 0; i < 60; ++i) many.push_back({std::to_string(i), QStringLiteral("Option %1").arg(i)});
    for (GW2Picker* const picker : {&upper, &lower}) {
        picker->setOptions(many);
        window.open();
        picker->setFocus(Qt::TabFocusReason);
        picker->open();
        const QRect list = openList()->geometry();
        EXPECT_TRUE(window.rect().contains(list));
        EXPECT_FALSE(list.intersects(picker->geometry().adjusted(4, 4, -4, -4))) << "it leaves its picker in sight";
        EXPECT_EQ(list.top() < picker->y(), picker == &lower);
        window.press(Qt::Key_End);
        EXPECT_TRUE(openList()->rect().contains(openList()->lineAt(59)));
        window.press(Qt::Key_Return, QStringLiteral("\r"));
        EXPECT_EQ(picker->chosen(), "59");
    }
}

TEST_F(KitList, AFieldsMenuOffersWhatCanBeDoneAndDoesIt) {
    auto& field = window.add(new GW2TextField(QStringLiteral("Field"), &window));
    auto& secret = window.add(new GW2TextField(QStringLiteral("Secret"), &window));
    secret.setSecret(true);
    window.open();
    const auto menuOf = [this](QWidget& of) {
        QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(10, 10), of.mapToGlobal(QPoint(10, 10)));
        QApplication::sendEvent(&of, &event);
        settle();
        std::string offered;
        for (const auto& line : openList()->lines())
            if (line.enabled) offered += line.text.toStdString() + " ";
        return offered;
    };
    const auto take = [this](std::size_t line) {
        openList()->take(line);
        settle();
    };
    QGuiApplication::clipboard()->setText(QStringLiteral("pasted"));
    field.setText(QStringLiteral("word"));
    field.setFocus();
    EXPECT_EQ(menuOf(field), "Paste Select all ");
    EXPECT_TRUE(of(*openList()).child(0)->state().disabled);
    take(0);
    EXPECT_TRUE(openList()->isVisible()) << "what is disabled is not taken";
    take(3);
    EXPECT_EQ(menuOf(field), "Cut Copy Paste Select all ");
    take(0);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("word"));
    (void)menuOf(field);
    take(2);
    EXPECT_EQ(field.text(), QStringLiteral("word"));
    secret.setText(QStringLiteral("hidden"));
    secret.selectAll();
    EXPECT_EQ(menuOf(secret), "Paste Select all ") << "a secret is not copied";
    for (QWidget* const top : QApplication::topLevelWidgets())
        EXPECT_TRUE(top == &window || !top->isVisible()) << "a window of the toolkit's own";
}

}  // namespace
}  // namespace vantor
