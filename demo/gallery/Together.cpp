#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QVBoxLayout>

#include "Exhibits.h"
#include "ui/Collapse.h"
#include "ui/EmptyState.h"
#include "ui/GW2Button.h"
#include "ui/GW2Picker.h"
#include "ui/GW2Slider.h"
#include "ui/GW2TextField.h"
#include "ui/GW2Toggle.h"
#include "ui/SectionTitle.h"
#include "ui/ShadowInset.h"
#include "ui/Tabber.h"
#include "ui/TextBlock.h"
#include "ui/VerticalScroller.h"

namespace gallery {

using namespace vantor;  // NOLINT(google-build-using-namespace): the gallery shows nothing else

namespace {

QWidget* makeRoles(QWidget* parent) {
    auto* const whole = new QWidget(parent);
    auto* const column = new QVBoxLayout(whole);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(6);
    column->addWidget(new SectionTitle(QStringLiteral("Texts"), whole));
    struct Line {
        TextRole role;
        const char* text;
    };
    for (const Line& line :
         {Line{TextRole::title, "A title of a page"}, Line{TextRole::heading, "A heading 0123456789"},
          Line{TextRole::body, "What is read. It wraps where its place ends and keeps its measure."},
          Line{TextRole::second, "What is second to that, such as a section's name."},
          Line{TextRole::hint, "A hint in small letters."}, Line{TextRole::value, "A value, 20:45"},
          Line{TextRole::error, "The key was not accepted."}, Line{TextRole::success, "Stored."}})
        column->addWidget(new TextBlock(line.role, QString::fromLatin1(line.text), whole));
    auto* const link = new TextBlock(TextRole::body, QString(), whole);
    link->setRich(QStringLiteral("With a <b>bold word</b> and <a href=\"place\">a link</a>."));
    column->addWidget(link);
    column->addStretch(1);
    return whole;
}

QWidget* makeForm(QWidget* parent) {
    auto* const whole = new QWidget(parent);
    auto* const column = new QVBoxLayout(whole);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(8);
    column->addWidget(new SectionTitle(QStringLiteral("General"), whole));
    auto* const toggle = new GW2Toggle(QStringLiteral("Show the icon while the game is in front"), whole);
    toggle->setChecked(true);
    column->addWidget(toggle);
    column->addWidget(new GW2Toggle(QStringLiteral("Press the action camera's key when the overlay closes, so that the "
                                                   "mouse turns the view again at once"),
                                    whole));
    auto* const picker = new GW2Picker(QStringLiteral("Language"), whole);
    picker->setOptions({{"en", QStringLiteral("English")}, {"de", QStringLiteral("Deutsch")}});
    picker->choose("en");
    column->addWidget(picker);
    auto* const slider =
        new GW2Slider(QStringLiteral("Hours ahead"), 1, 12, 1, QStringLiteral("1 h"), QStringLiteral("12 h"), whole);
    slider->setValue(4);
    slider->setValueText([](double value) { return QStringLiteral("%1 h").arg(value); });
    column->addWidget(slider);
    auto* const line = new QHBoxLayout;
    line->addWidget(new GW2TextField(QStringLiteral("Key of the web API"), whole), 1);
    line->addWidget(new GW2Button(QStringLiteral("Check"), QString(), GW2ButtonStyle::Kind::primary, whole));
    column->addLayout(line);
    auto* const collapse = new Collapse(QStringLiteral("Core Tyria"), whole);
    auto* const inset = new ShadowInset(collapse);
    inset->setContent(new GW2Toggle(QStringLiteral("World bosses"), inset));
    inset->setContent(new GW2Toggle(QStringLiteral("Hard world bosses"), inset));
    collapse->setContent(inset);
    collapse->setExpanded(true);
    column->addWidget(collapse);
    column->addWidget(new Collapse(QStringLiteral("Heart of Thorns"), whole));
    column->addStretch(1);
    return whole;
}

QWidget* makeLong(QWidget* parent) {
    auto* const scroller = new VerticalScroller(parent);
    auto* const lines = new QWidget(scroller);
    auto* const column = new QVBoxLayout(lines);
    for (int line = 1; line <= 24; ++line)
        column->addWidget(new TextBlock(line % 2 == 0 ? TextRole::second : TextRole::body,
                                        QStringLiteral("Line %1 of a column that is taller than its place").arg(line),
                                        lines));
    scroller->setContent(lines);
    scroller->setFixedHeight(320);
    return scroller;
}

QWidget* makeEmpty(QWidget* parent) {
    auto* const empty = new EmptyState(parent);
    empty->setText(QStringLiteral("Nothing is watched"),
                   QStringLiteral("Press the eye beside an event, and it stands here while you play."));
    empty->setAction(QStringLiteral("Show the events"), [] {});
    return empty;
}

}  // namespace

QWidget* makeTogether(QWidget* parent) {
    auto* const whole = new QWidget(parent);
    auto* const column = new QVBoxLayout(whole);
    column->setContentsMargins(0, 8, 0, 0);
    column->setSpacing(16);
    auto* const tabber = new HorizontalTabber(whole);
    tabber->addTab(QStringLiteral("Settings"), QStringLiteral("options"), [](QWidget* pages) {
        auto* const page = new QWidget(pages);
        auto* const row = new QHBoxLayout(page);
        row->setContentsMargins(0, 0, 0, 0);
        row->setSpacing(28);
        row->addWidget(makeForm(page), 5);
        row->addWidget(makeRoles(page), 4);
        return page;
    });
    tabber->addTab(QStringLiteral("Long list"), QStringLiteral("timer"), &makeLong);
    tabber->addTab(QStringLiteral("Empty"), QStringLiteral("globe"), &makeEmpty);
    tabber->tab(1).setBadge(QStringLiteral("24"));
    column->addWidget(tabber);

    auto* const column2 = new VerticalTabber(whole);
    column2->addTab(QStringLiteral("A long list"), QString(), &makeLong);
    column2->addTab(QStringLiteral("Nothing"), QString(), &makeEmpty);
    auto* const sides = new QWidget(whole);
    sides->setFixedHeight(340);
    auto* const row = new QHBoxLayout(sides);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(28);
    row->addWidget(column2, 5);
    row->addWidget(makeEmpty(sides), 4);
    column->addWidget(sides);
    return whole;
}

}  // namespace gallery
