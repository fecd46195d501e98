// The gallery's window: every node a player can act on has a name, and larger text is never cut.

#include <gtest/gtest.h>

#include <QtGui/QImage>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QApplication>
#include <QtWidgets/QVBoxLayout>
#include <functional>
#include <memory>
#include <string>

#include "AccessibilityWalk.h"
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
    const AccessibilityWalk walk = walkAccessibility(stage);
    EXPECT_GT(walk.interactive, 80);  // fifteen rows of controls: the walk does reach them
    for (const QString& path : walk.unnamed) ADD_FAILURE() << path.toStdString();
}

TEST(KitGallery, TitlesAreHeadings) {
    const auto roleOf = [](QWidget& widget) { return QAccessible::queryAccessibleInterface(&widget)->role(); };
    TextBlock heading(TextRole::heading, QStringLiteral("Before"), nullptr);
    heading.setText(QStringLiteral("After"));
    EXPECT_EQ(roleOf(heading), QAccessible::Heading);
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&heading)->text(QAccessible::Name), QStringLiteral("After"));
    SectionTitle section(QStringLiteral("Section"), nullptr);
    EXPECT_EQ(roleOf(section), QAccessible::Heading);
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&section)->text(QAccessible::Name), QStringLiteral("Section"));
    TextBlock body(TextRole::body, QStringLiteral("Body"), nullptr);
    EXPECT_EQ(roleOf(body), QAccessible::StaticText);
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&body)->text(QAccessible::Name), QStringLiteral("Body"));
}

TEST(KitGallery, TheWalkFindsWhatHasNoName) {
    QWidget window;
    auto* const button = new GW2Button(QStringLiteral("Named"), &window);
    window.show();
    EXPECT_TRUE(walkAccessibility(window).unnamed.empty());
    button->setText(QString());
    button->setAccessibleName(QString());
    EXPECT_EQ(walkAccessibility(window).unnamed.size(), 1U);
    button->hide();
    EXPECT_TRUE(walkAccessibility(window).unnamed.empty());
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
    struct Case {
        const char* name;
        std::function<QWidget*()> make;
        int width;
    };
    const QString text = QStringLiteral("Ägypten (jgpq)");
    const std::vector<Case> cases{
        {"button", [&] { return new GW2Button(text, nullptr); }, 400},
        {"toggle", [&] { return new GW2Toggle(text, nullptr); }, 400},
        {"toggle of several lines",
         [&] { return new GW2Toggle(text + QStringLiteral(" and as much again: ") + text, nullptr); }, 260},
        {"field",
         [&] {
             auto* const field = new GW2TextField(QStringLiteral("Field"), nullptr);
             field->setText(text);
             return field;
         },
         400},
        {"picker",
         [&] {
             auto* const picker = new GW2Picker(QStringLiteral("Picker"), nullptr);
             picker->setOptions({{"one", text}});
             picker->choose("one");
             return picker;
         },
         400},
        {"slider",
         [&] {
             auto* const slider = new GW2Slider(QStringLiteral("Slider"), 0, 9, 1, QString(), QString(), nullptr);
             slider->setValueText([&](double) { return text; });
             return slider;
         },
         400},
        {"tab", [&] { return new TabElement(text, QString(), nullptr); }, 400},
        {"collapse", [&] { return new Collapse(text, nullptr); }, 400},
        {"section title", [&] { return new SectionTitle(text, nullptr); }, 400},
        {"text", [&] { return new TextBlock(TextRole::body, text, nullptr); }, 400},
        {"title", [&] { return new TextBlock(TextRole::title, text + QLatin1Char(' ') + text, nullptr); }, 300},
    };
    for (const double scale : {1.0, 1.5, 2.0}) {
        const ScaledText scaled(scale);
        for (const Case& each : cases) {
            SCOPED_TRACE(std::string(each.name) + " at " + std::to_string(scale));
            const std::unique_ptr<QWidget> control(each.make());
            EXPECT_LE(lostPixels(*control, each.width), 3);
        }
    }
}

TEST(KitGallery, WrappedTextGetsItsLinesFromALayout) {
    const QString text = QStringLiteral("A sentence that is far too long for the narrow place that it is given here.");
    constexpr int width = 220;
    QWidget window;
    auto* const column = new QVBoxLayout(&window);
    column->setContentsMargins(0, 0, 0, 0);
    const std::vector<QWidget*> wrapped{new TextBlock(TextRole::body, text, &window), new GW2Toggle(text, &window)};
    for (QWidget* const control : wrapped) {
        EXPECT_TRUE(control->hasHeightForWidth()) << "what holds it measures it before it is shown";
        column->addWidget(control);
    }
    column->addStretch(1);
    window.resize(width, 600);
    window.show();
    QApplication::processEvents();
    const int line = QFontMetrics(sansFont(14)).height();
    for (const QWidget* const control : wrapped) {
        EXPECT_GT(control->height(), 2 * line);
        EXPECT_EQ(control->height(), control->heightForWidth(width)) << "no more and no less";
    }
}

TEST(KitGallery, ATitleBarGrowsWithItsText) {
    const ScaledText scaled(2);
    TitleBar bar([] {}, nullptr);
    bar.setTexts(QStringLiteral("Settings (jgpq)"), QString());
    EXPECT_LE(lostPixels(bar, 1200), 3);
}

}  // namespace
}  // namespace vantor
