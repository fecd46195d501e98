#include <QtWidgets/QGridLayout>
#include <array>
#include <functional>

#include "Exhibits.h"
#include "ui/Collapse.h"
#include "ui/Fonts.h"
#include "ui/GW2Button.h"
#include "ui/GW2Picker.h"
#include "ui/GW2Slider.h"
#include "ui/GW2TextArea.h"
#include "ui/GW2TextField.h"
#include "ui/GW2Toggle.h"
#include "ui/ImageButton.h"
#include "ui/NotificationBadge.h"
#include "ui/TabElement.h"
#include "ui/TextBlock.h"

namespace gallery {

using namespace vantor;  // NOLINT(google-build-using-namespace): the gallery shows nothing else

namespace {

struct State {
    const char* name;
    QStringList forced;
    bool enabled = true;
    bool checked = false;
    bool longText = false;
};

const std::array<State, 7>& states() {
    static const std::array<State, 7> all{{{"Rest", {}},
                                           {"Hover", {QStringLiteral("hovered")}},
                                           {"Pressed", {QStringLiteral("hovered"), QStringLiteral("pressed")}},
                                           {"Focused", {QStringLiteral("focused")}},
                                           {"Disabled", {}, false},
                                           {"Checked", {}, true, true},
                                           {"Long text", {}, true, false, true}}};
    return all;
}

QString words(const State& state) {
    return state.longText ? QStringLiteral("A text that is longer than its place, and goes on")
                          : QStringLiteral("Try again");
}

using Make = std::function<QWidget*(const State&, QWidget*)>;

struct Row {
    const char* name;
    Make make;
    bool checkable = false;
};

QWidget* button(GW2ButtonStyle::Kind kind, const QString& image, const State& state, QWidget* parent) {
    return new GW2Button(words(state), image, kind, parent);
}

QWidget* checkedIf(QAbstractButton* made, const State& state) {
    made->setCheckable(made->isCheckable() || state.checked);
    // Each stands alone: no row of tabs unchecks the others.
    made->setAutoExclusive(false);
    made->setChecked(state.checked);
    return made;
}

std::vector<GW2PickerOption> options(const State& state) {
    return {{"one", words(state), QStringLiteral("globe")}, {"two", QStringLiteral("Second choice")}};
}

std::vector<Row> rows() {
    using Kind = GW2ButtonStyle::Kind;
    return {
        {"Button", [](const State& s, QWidget* p) { return button(Kind::standard, {}, s, p); }},
        {"Primary", [](const State& s, QWidget* p) { return button(Kind::primary, {}, s, p); }},
        {"Quiet", [](const State& s, QWidget* p) { return button(Kind::quiet, {}, s, p); }},
        {"With image",
         [](const State& s, QWidget* p) { return button(Kind::standard, QStringLiteral("reload"), s, p); }},
        {"Footnote",
         [](const State& s, QWidget* p) {
             auto* const made = new GW2Button(words(s), p);
             made->setFootnote(true);
             return made;
         }},
        {"Image button",
         [](const State& s, QWidget* p) {
             const auto image = s.checked ? QStringLiteral("watch.active") : QStringLiteral("watch");
             return checkedIf(new ImageButton(image, image, QStringLiteral("Watch"), p), s);
         },
         true},
        {"Toggle", [](const State& s, QWidget* p) { return checkedIf(new GW2Toggle(words(s), p), s); }, true},
        {"Text field",
         [](const State& s, QWidget* p) {
             auto* const made = new GW2TextField(QStringLiteral("Search"), p);
             made->setLeadingImage(QStringLiteral("search"));
             made->setClearable(true);
             if (s.longText) made->setText(words(s));
             return made;
         }},
        {"Filled field",
         [](const State& s, QWidget* p) {
             auto* const made = new GW2TextField(QStringLiteral("Key"), p);
             made->setText(words(s));
             made->setCursorPosition(0);
             return made;
         }},
        {"Picker",
         [](const State& s, QWidget* p) {
             auto* const made = new GW2Picker(QStringLiteral("Choice"), p);
             made->setOptions(options(s));
             made->setPlaceholder(QStringLiteral("Choose"));
             if (s.forced.isEmpty() && s.enabled && !s.checked && !s.longText) return made;
             made->choose("one");
             return made;
         }},
        {"Slider",
         [](const State& s, QWidget* p) {
             auto* const made =
                 new GW2Slider(QStringLiteral("Size"), 1, 4, 1, QStringLiteral("1"), QStringLiteral("4"), p);
             made->setValue(s.checked ? 3 : 1);
             return made;
         }},
        {"Tab",
         [](const State& s, QWidget* p) {
             auto* const made =
                 new TabElement(s.longText ? words(s) : QStringLiteral("Timers"), QStringLiteral("timer"), p);
             if (s.checked) made->setBadge(QStringLiteral("2"));
             return checkedIf(made, s);
         },
         true},
        {"Tab of a column",
         [](const State& s, QWidget* p) {
             auto* const made = new TabElement(s.longText ? words(s) : QStringLiteral("General"), QString(), p);
             made->setColumn(true);
             return checkedIf(made, s);
         },
         true},
        {"Collapse",
         [](const State& s, QWidget* p) {
             auto* const made = new Collapse(words(s), p);
             made->setContent(new TextBlock(TextRole::second, QStringLiteral("What lay below."), made));
             made->setExpanded(s.checked);
             return made;
         },
         true},
        {"Text area",
         [](const State& s, QWidget* p) {
             auto* const made = new GW2TextArea(QStringLiteral("Your message"), p);
             made->setFixedHeight(withText(72));
             if (s.longText) made->setPlainText(words(s) + QStringLiteral(", over several lines, and then some more."));
             return made;
         }},
    };
}

void force(QWidget* control, const State& state) {
    control->setEnabled(state.enabled);
    if (state.forced.isEmpty()) return;
    control->setProperty("controlState", state.forced);
    for (QAbstractButton* const inner : control->findChildren<QAbstractButton*>())
        inner->setProperty("controlState", state.forced);
}

}  // namespace

QWidget* makeStates(QWidget* parent) {
    auto* const table = new QWidget(parent);
    auto* const grid = new QGridLayout(table);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setHorizontalSpacing(8);
    grid->setVerticalSpacing(4);
    int column = 1;
    for (const State& state : states()) {
        grid->addWidget(new TextBlock(TextRole::hint, QString::fromLatin1(state.name), table), 0, column);
        grid->setColumnStretch(column++, 1);
    }
    int line = 1;
    for (const Row& row : rows()) {
        auto* const name = new TextBlock(TextRole::second, QString::fromLatin1(row.name), table);
        name->setWordWrap(false);
        grid->addWidget(name, line, 0);
        column = 1;
        for (const State& state : states()) {
            if (!state.checked || row.checkable) {
                QWidget* const control = row.make(state, table);
                force(control, state);
                const bool fixed = control->minimumWidth() == control->maximumWidth();
                if (!fixed) control->setMaximumWidth(withText(170));
                grid->addWidget(control, line, column, fixed ? Qt::AlignLeft : Qt::Alignment());
            }
            ++column;
        }
        ++line;
    }
    return table;
}

}  // namespace gallery
