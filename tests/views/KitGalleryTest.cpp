// The gallery's window: every node a player can act on has a name, and larger text is never cut.

#include <gtest/gtest.h>

#include <string>

#include "KitPlayer.h"
#include "Stage.h"
#include "app/view/TitleBar.h"
#include "ui/Collapse.h"
#include "ui/Fonts.h"
#include "ui/GW2Button.h"
#include "ui/GW2Picker.h"
#include "ui/GW2Slider.h"
#include "ui/GW2TextField.h"
#include "ui/GW2Toggle.h"
#include "ui/NotificationBadge.h"
#include "ui/SectionTitle.h"
#include "ui/TabElement.h"
#include "ui/TextBlock.h"

namespace vantor {
namespace {

class ScaledText {
public:
    explicit ScaledText(double scale) { setTextScale(scale); }
    ~ScaledText() { setTextScale(1); }
    ScaledText(const ScaledText&) = delete;
    ScaledText& operator=(const ScaledText&) = delete;
};

TEST(KitGallery, EveryInteractiveNodeHasAName) {
    gallery::Stage stage(game::Scene::bright, gallery::Extent::whole);
    stage.resize(1320, 2000);
    stage.show();
    QApplication::processEvents();
    const AccessibilityWalk walk(stage);
    EXPECT_GT(walk.interactive, 80);  // fifteen rows of controls: the walk does reach them
    for (const std::string& kind : walk.unnamed) ADD_FAILURE() << kind;
}

TEST(KitGallery, TitlesAreHeadingsAndABadgeIsThereForItsText) {
    const auto kindOf = [](QWidget& widget) {
        return std::pair(QAccessible::queryAccessibleInterface(&widget)->role(), heardOf(widget));
    };
    TextBlock heading(TextRole::heading, QStringLiteral("Before"), nullptr);
    heading.setText(QStringLiteral("After"));
    SectionTitle section(QStringLiteral("Section"), nullptr);
    TextBlock body(TextRole::body, QStringLiteral("Body"), nullptr);
    EXPECT_EQ(kindOf(heading), std::pair(QAccessible::Heading, std::string("After")));
    EXPECT_EQ(kindOf(section), std::pair(QAccessible::Heading, std::string("Section")));
    EXPECT_EQ(kindOf(body), std::pair(QAccessible::StaticText, std::string("Body")));
    NotificationBadge badge(nullptr);
    for (const char* const text : {"2", "", "3"}) {
        badge.setText(QString::fromLatin1(text));
        EXPECT_EQ(std::pair(badge.isVisible(), heardOf(badge)), std::pair(*text != 0, std::string(text)));
    }
}

int brightPixels(const QImage& image) {
    int count = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (qGray(image.pixel(x, y)) > 150) ++count;
    return count;
}

// Drawn as high as it asks to be, a control shows as much bright text as with room to spare.
int lostPixels(QWidget& control, int width) {
    control.ensurePolished();
    const int asked = control.minimumHeight() == control.maximumHeight() ? control.minimumHeight()
                      : control.hasHeightForWidth()                      ? control.heightForWidth(width)
                                                                         : control.sizeHint().height();
    const auto drawn = [&](int height) {
        control.setMinimumHeight(0);
        control.setMaximumHeight(QWIDGETSIZE_MAX);
        control.resize(width, height);
        QImage image(width, height, QImage::Format_RGB32);
        image.fill(Qt::black);
        control.render(&image, {}, {}, QWidget::DrawChildren);
        return brightPixels(image);
    };
    const int roomy = drawn(asked + 60);
    EXPECT_GT(roomy, 20) << "it draws its text";
    return roomy - drawn(asked);
}

TEST(KitGallery, LargerTextIsNotCut) {
    const QString text = QStringLiteral("Ägypten (jgpq)");
    for (const double scale : {1.0, 1.5, 2.0}) {
        const ScaledText scaled(scale);
        GW2Button button(text, nullptr);
        GW2Toggle toggle(text, nullptr);
        GW2Toggle wrapped(text + QStringLiteral(" and as much again: ") + text, nullptr);
        GW2TextField field(QStringLiteral("Field"), nullptr);
        field.setText(text);
        GW2Picker picker(QStringLiteral("Picker"), nullptr);
        picker.setOptions({{"one", text}});
        picker.choose("one");
        GW2Slider slider(QStringLiteral("Slider"), 0, 9, 1, QString(), QString(), nullptr);
        slider.setValueText([&](double) { return text; });
        TabElement tab(text, QString(), nullptr);
        Collapse collapse(text, nullptr);
        SectionTitle section(text, nullptr);
        TextBlock body(TextRole::body, text, nullptr);
        TextBlock title(TextRole::title, text + QLatin1Char(' ') + text, nullptr);
        for (QWidget* const each : std::initializer_list<QWidget*>{&button, &toggle, &wrapped, &field, &picker, &slider,
                                                                   &tab, &collapse, &section, &body, &title})
            EXPECT_LE(lostPixels(*each, each == &wrapped ? 260
                                        : each == &title ? 300
                                                         : 400),
                      3)
                << heardOf(*each) << " at " << scale;
    }
    const ScaledText scaled(2);
    TitleBar bar([] {}, nullptr);
    bar.setTexts(QStringLiteral("Settings (jgpq)"), QString());
    EXPECT_LE(lostPixels(bar, 1200), 3);
}

TEST(KitGallery, WrappedTextGetsItsLinesFromALayout) {
    const QString text = QStringLiteral("A sentence that is far too long for the narrow place that it is given here.");
    KitWindow window;
    const std::vector<QWidget*> wrapped{&window.add(new TextBlock(TextRole::body, text, &window)),
                                        &window.add(new GW2Toggle(text, &window))};
    static_cast<QBoxLayout*>(window.layout())->addStretch(1);
    for (const QWidget* const control : wrapped)
        EXPECT_TRUE(control->hasHeightForWidth()) << "what holds it measures it before it is shown";
    window.resize(260, 600);
    window.open();
    for (const QWidget* const control : wrapped) {
        EXPECT_GT(control->height(), 2 * QFontMetrics(sansFont(14)).height());
        EXPECT_EQ(control->height(), control->heightForWidth(control->width())) << "no more and no less";
    }
}

}  // namespace
}  // namespace vantor
