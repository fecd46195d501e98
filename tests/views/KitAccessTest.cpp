// What a screen reader hears of the kit's controls: names, roles, states, values, and what it may press.

#include <gmock/gmock.h>

#include <QtGui/QAccessible>

#include "KitPlayer.h"
#include "ui/Collapse.h"
#include "ui/GW2Button.h"
#include "ui/GW2Picker.h"
#include "ui/GW2Slider.h"
#include "ui/GW2TextField.h"
#include "ui/GW2Toggle.h"
#include "ui/ImageButton.h"
#include "ui/Tabber.h"

namespace vantor {
namespace {

class KitAccess : public testing::Test {
protected:
    static QAccessibleInterface& of(QWidget& widget) { return *QAccessible::queryAccessibleInterface(&widget); }
    static std::string nameOf(QWidget& widget) { return of(widget).text(QAccessible::Name).toStdString(); }

    KitWindow window;
};

TEST_F(KitAccess, EveryControlHasItsNameAndItsRole) {
    struct Row {
        QWidget* control;
        QAccessible::Role role;
        const char* name;
    };
    auto& tabber = window.add(new HorizontalTabber(&window));
    tabber.addTab(QStringLiteral("Timers"), QStringLiteral("timer"),
                  [](QWidget* parent) { return new QWidget(parent); });
    auto& collapse = window.add(new Collapse(QStringLiteral("More"), &window));
    auto& field = window.add(new GW2TextField(QStringLiteral("Search"), &window));
    field.setClearable(true);
    field.setText(QStringLiteral("x"));
    const std::vector<Row> rows{
        {&window.add(new GW2Button(QStringLiteral("Go"), &window)), QAccessible::Button, "Go"},
        {&window.add(
             new ImageButton(QStringLiteral("close"), QStringLiteral("close"), QStringLiteral("Close"), &window)),
         QAccessible::Button, "Close"},
        {&window.add(new GW2Toggle(QStringLiteral("Paste"), &window)), QAccessible::CheckBox, "Paste"},
        {&window.add(new GW2Picker(QStringLiteral("Engine"), &window)), QAccessible::ComboBox, "Engine"},
        {&window.add(new GW2Slider(QStringLiteral("Hours"), 0, 10, 1, {}, {}, &window)), QAccessible::Slider, "Hours"},
        {&tabber.tab(0), QAccessible::PageTab, "Timers"},
        {collapse.findChild<QAbstractButton*>(), QAccessible::Button, "More"},
        {&field, QAccessible::EditableText, "Search"},
        {field.findChild<QAbstractButton*>(), QAccessible::Button, "Clear"}};
    window.open();
    for (const Row& row : rows) {
        EXPECT_EQ(nameOf(*row.control), row.name);
        EXPECT_EQ(of(*row.control).role(), row.role) << row.name;
    }
    auto* const button = qobject_cast<QAbstractButton*>(rows[0].control);
    button->setText(QStringLiteral("Stop"));
    EXPECT_EQ(nameOf(*button), "Stop") << "a button that changes its text changes its name";
}

TEST_F(KitAccess, StatesFollowTheControls) {
    auto& toggle = window.add(new GW2Toggle(QStringLiteral("Paste"), &window));
    auto& collapse = window.add(new Collapse(QStringLiteral("More"), &window));
    auto& tabber = window.add(new HorizontalTabber(&window));
    for (const char* const text : {"One", "Two"})
        tabber.addTab(QString::fromLatin1(text), QString(), [](QWidget* parent) { return new QWidget(parent); });
    tabber.tab(1).setBadge(QStringLiteral("2"));
    window.open();
    EXPECT_TRUE(of(toggle).state().checkable);
    EXPECT_FALSE(of(toggle).state().checked);
    toggle.setChecked(true);
    EXPECT_TRUE(of(toggle).state().checked);
    toggle.setEnabled(false);
    EXPECT_TRUE(of(toggle).state().disabled);

    QWidget& title = *collapse.findChild<QAbstractButton*>();
    EXPECT_TRUE(of(title).state().collapsed);
    collapse.setExpanded(true);
    EXPECT_TRUE(of(title).state().expanded);

    EXPECT_TRUE(of(tabber.tab(0)).state().selected);
    tabber.select(1);
    EXPECT_FALSE(of(tabber.tab(0)).state().selected);
    EXPECT_TRUE(of(tabber.tab(1)).state().selected);
    EXPECT_EQ(of(tabber.tab(1)).text(QAccessible::Description), QStringLiteral("2"));
}

TEST_F(KitAccess, APickerTellsItsChoiceAndItsOpenListTellsItsLines) {
    auto& picker = window.add(new GW2Picker(QStringLiteral("Engine"), &window));
    picker.setOptions({{"wiki", QStringLiteral("Wiki")}, {"web", QStringLiteral("Web")}});
    picker.setPlaceholder(QStringLiteral("None"));
    window.open();
    EXPECT_EQ(of(picker).text(QAccessible::Value), QStringLiteral("None"));
    EXPECT_TRUE(of(picker).state().collapsed);
    of(picker).actionInterface()->doAction(QAccessibleActionInterface::showMenuAction());
    ASSERT_TRUE(picker.isOpen());
    EXPECT_TRUE(of(picker).state().expanded);
    window.press(Qt::Key_Down);
    QAccessibleInterface& list = of(*below<ListPopup>(window).at(0));
    EXPECT_EQ(list.role(), QAccessible::List);
    EXPECT_EQ(list.text(QAccessible::Name), QStringLiteral("Engine"));
    ASSERT_EQ(list.childCount(), 2);
    EXPECT_EQ(list.child(1)->text(QAccessible::Name), QStringLiteral("Web"));
    EXPECT_EQ(list.child(1)->parent(), &list);
    EXPECT_EQ(list.focusChild(), list.child(1));
    window.press(Qt::Key_Return);
    EXPECT_EQ(of(picker).text(QAccessible::Value), QStringLiteral("Web"));
}

TEST_F(KitAccess, AScreenReaderPressesTogglesAndMovesWhatAPlayerCan) {
    auto& button = window.add(new GW2Button(QStringLiteral("Go"), &window));
    auto& toggle = window.add(new GW2Toggle(QStringLiteral("Paste"), &window));
    auto& slider = window.add(new GW2Slider(QStringLiteral("Hours"), 0.5, 24, 0.5, {}, {}, &window));
    slider.setValueText([](double hours) { return QStringLiteral("%1 h").arg(hours); });
    int clicks = 0;
    QObject::connect(&button, &QAbstractButton::clicked, &button, [&clicks] { ++clicks; });
    window.open();
    of(button).actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    of(toggle).actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
    QAccessibleValueInterface& value = *of(slider).valueInterface();
    value.setCurrentValue(7.6);
    EXPECT_EQ(clicks, 1);
    EXPECT_TRUE(toggle.isChecked());
    EXPECT_EQ(value.currentValue().toDouble(), 7.5);
    EXPECT_EQ(value.minimumValue().toDouble(), 0.5);
    EXPECT_EQ(value.maximumValue().toDouble(), 24);
    EXPECT_EQ(of(slider).text(QAccessible::Value), QStringLiteral("7.5 h"));
    button.setEnabled(false);
    of(button).actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(clicks, 1) << "what is disabled cannot be pressed";
}

}  // namespace
}  // namespace vantor
