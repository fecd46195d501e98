// Colours that can be read, motions that follow the spring or do not move at all, and drawings that keep to their
// place.

#include <gtest/gtest.h>

#include <QtGui/QBitmap>
#include <QtGui/QFontInfo>
#include <QtGui/QFontMetricsF>
#include <QtGui/QPainter>
#include <QtWidgets/QScrollBar>
#include <QtWidgets/QStyle>
#include <QtWidgets/QStyleOptionFocusRect>
#include <algorithm>
#include <cmath>
#include <numbers>
#include <tuple>

#include "KitPlayer.h"
#include "ui/Fonts.h"
#include "ui/InkPanel.h"
#include "ui/NineParts.h"
#include "ui/Palette.h"
#include "ui/VerticalScroller.h"

namespace vantor {
namespace {

// Old-style figures have as many heights and widths as there are figures.
TEST(KitFaces, FiguresOfTheSerifLineUpAndStandInColumns) {
    const QFont font = serifFont(40);
    EXPECT_EQ(QFontInfo(font).family(), QStringLiteral("Vantor Serif")) << "not a face of the system's";
    const QFontMetricsF metrics(font);
    const double top = metrics.tightBoundingRect(QStringLiteral("0")).top();
    for (const QChar figure : QStringLiteral("0123456789")) {
        EXPECT_EQ(metrics.horizontalAdvance(QString(figure)), metrics.horizontalAdvance(QStringLiteral("0")));
        const QRectF box = metrics.tightBoundingRect(QString(figure));
        EXPECT_NEAR(box.top(), top, 2.5) << figure.toLatin1();
        EXPECT_NEAR(box.bottom(), 0, 2.5) << figure.toLatin1();
    }
}

TEST(KitFaces, TextGrowsWithTheDesktopsFontInPointsOrPixels) {
    QFont font;
    for (const auto& [points, pixels, scale] :
         {std::tuple(11.0, 0, 1.0), {22.0, 0, 2.0}, {0.0, 22, 1.5}, {90.0, 0, 2.0}}) {
        points > 0 ? font.setPointSizeF(points) : font.setPixelSize(pixels);
        EXPECT_DOUBLE_EQ(textScaleFor(font), scale) << points << " " << pixels;
    }
}

QColor over(const QColor& top, double alpha, const QColor& below) {
    const auto mix = [alpha](int a, int b) { return static_cast<int>(std::lround(a * alpha + b * (1 - alpha))); };
    return {mix(top.red(), below.red()), mix(top.green(), below.green()), mix(top.blue(), below.blue())};
}

// Relative luminance and contrast as the Web Content Accessibility Guidelines 2.1 define them.
double luminance(const QColor& colour) {
    const auto linear = [](double channel) {
        return channel <= 0.03928 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
}

double contrast(const QColor& a, const QColor& b) {
    const std::pair<double, double> both = std::minmax({luminance(a), luminance(b)});
    const auto [dark, light] = both;
    return (light + 0.05) / (dark + 0.05);
}

TEST(KitContrast, EveryTextReadsOverEveryScene) {
    for (const QColor scene : {QColor(Qt::white), QColor(Qt::black)})
        for (const double opacity : {0.96, 0.88})
            for (const QColor& ink : {palette::inkTop, palette::inkBottom})
                for (const QColor& text :
                     {palette::gold, palette::warmWhite, palette::sand, palette::dim, palette::amber,
                      palette::brightAmber, palette::blue, palette::green, palette::error})
                    EXPECT_GE(contrast(text, over(ink, opacity, scene)), 4.5)
                        << text.name().toStdString() << " at " << opacity << " over " << scene.name().toStdString();
}

TEST(KitContrast, TextReadsOnTheGroundsOfControls) {
    const QColor panel = over(palette::inkTop, 0.96, Qt::white);
    const QColor hovered = over(palette::gold, 0.07, panel);
    for (const auto& [name, text, background] :
         {std::tuple("hint in a field", palette::dim, palette::fieldInk),
          {"text in a field", palette::warmWhite, palette::fieldInk},
          {"a selection", palette::onRed, palette::strokeLight},
          {"a primary button", palette::onRed, over(palette::gold, 0.12, palette::strokeLight)},
          {"a hovered row", palette::gold, hovered},
          {"second text of a hovered row", palette::sand, hovered},
          {"the chosen tab of a column", palette::gold, over(palette::red, 0.4, panel)},
          {"the name on the stroke", palette::gold, palette::strokeLight},
          {"the hotkey on the stroke", over(palette::warmWhite, 0.85, palette::strokeLight), palette::strokeLight}})
        EXPECT_GE(contrast(text, background), 4.5) << name;
}

// The differential equation itself, in small steps.
double integrated(const Spring& spring, double seconds) {
    const double natural = 2 * std::numbers::pi / spring.response;
    double place = 0;
    double speed = 0;
    constexpr double step = 1e-5;
    for (double at = 0; at < seconds; at += step) {
        const double force = natural * natural * (1 - place) - 2 * spring.dampingFraction * natural * speed;
        speed += force * step;
        place += speed * step;
    }
    return place;
}

TEST(KitMotion, ASpringFollowsItsEquation) {
    for (const Spring spring : {Spring{0.55, 0.825}, Spring{0.22, 1.0}, Spring{0.4, 0.3}}) {
        for (const double seconds : {0.02, 0.1, 0.3, 0.7})
            EXPECT_NEAR(spring.at(seconds), integrated(spring, seconds), 2e-3) << spring.response << " " << seconds;
        for (double at = spring.settled(); at < spring.settled() + 1; at += 0.01)
            EXPECT_NEAR(spring.at(at), 1, 0.0101) << spring.dampingFraction;
        EXPECT_EQ(spring.at(-0.1), 0) << "before it begins";
    }
    EXPECT_GT(Spring({0.55, 0.825}).at(0.5), 1) << "it swings over its end a little";
}

class ReducedMotion {
public:
    explicit ReducedMotion(bool reduced) { setReducedMotion(reduced); }
    ~ReducedMotion() { setReducedMotion(false); }
    ReducedMotion(const ReducedMotion&) = delete;
    ReducedMotion& operator=(const ReducedMotion&) = delete;
};

TEST(KitMotion, MovesInStepsOrJumpsWhereLessMotionIsWished) {
    QObject owner;
    std::vector<double> steps;
    Motion motion(&owner, springs::standard, [&](double value) { steps.push_back(value); });
    {
        const ReducedMotion reduced(true);
        motion.moveTo(1);
        EXPECT_FALSE(motion.moving());
        EXPECT_EQ(steps, std::vector<double>{1});
    }
    motion.moveTo(0);
    EXPECT_TRUE(motion.moving());
    EXPECT_EQ(motion.value(), 1) << "it starts where it stood";
    motion.jumpTo(0);
    EXPECT_FALSE(motion.moving());
    EXPECT_EQ(motion.value(), 0);
}

TEST(KitMotion, TheEnvironmentsWishIsAboveTheDesktops) {
    const ReducedMotion desktop(true);
    EXPECT_TRUE(reducedMotion());
    qputenv("VANTOR_REDUCED_MOTION", "0");
    EXPECT_FALSE(reducedMotion());
    qputenv("VANTOR_REDUCED_MOTION", "1");
    setReducedMotion(false);
    EXPECT_TRUE(reducedMotion());
    qunsetenv("VANTOR_REDUCED_MOTION");
    EXPECT_FALSE(reducedMotion());
}

QRegion drawn(const std::function<void(QPainter&)>& draw) {
    QImage image(320, 280, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    draw(painter);
    painter.end();
    return {QBitmap::fromImage(image.createAlphaMask(Qt::ThresholdDither))};
}

TEST(KitDrawing, StaysWhereItBelongs) {
    const int right =
        drawn([](QPainter& painter) { drawFigures(painter, serifFont(20), {100, 30}, QStringLiteral("10:55")); })
            .boundingRect()
            .right();
    EXPECT_TRUE(right >= 96 && right <= 101) << "its last figure ends there: " << right;

    const QRect frame(10, 10, 300, 260);
    const QRegion field =
        drawn([&](QPainter& painter) { paintNineParts(painter, QStringLiteral("keybind.field"), frame); });
    EXPECT_TRUE((field - frame).isEmpty());
    EXPECT_TRUE((QRegion(frame.adjusted(4, 4, -4, -4)) - field).isEmpty()) << "it is filled";

    // The toolkit's own ring; the controls draw theirs for the keyboard only.
    QStyleOptionFocusRect ring;
    ring.rect = frame;
    ring.state = QStyle::State_KeyboardFocusChange | QStyle::State_HasFocus;
    EXPECT_TRUE(drawn([&](QPainter& painter) {
                    QApplication::style()->drawPrimitive(QStyle::PE_FrameFocusRect, &ring, &painter);
                }).isEmpty());

    // The grain of the panel is not seen in its shadow.
    const QImage panel = drawInkPanel({400, 300}, 1, {.margin = 30}).toImage();
    for (int x = 374; x < 400; ++x)
        for (int y = 0; y < 300; ++y) ASSERT_EQ(panel.pixel(x, y) & 0xFFFFFF, 0U) << x << " " << y;
}

TEST(KitDrawing, WhatIsScrolledAwayFadesAtItsEdge) {
    VerticalScroller scroller(nullptr);
    auto* const content = new QWidget;
    content->setMinimumHeight(600);
    content->setStyleSheet(QStringLiteral("background: white"));
    scroller.setContent(content);
    scroller.resize(200, 200);
    scroller.show();
    const auto ends = [&] {
        const QImage image = picture(scroller);
        return std::pair(qGray(image.pixel(60, 1)) < 128, qGray(image.pixel(60, 198)) < 128);
    };
    EXPECT_EQ(ends(), std::pair(false, true));
    scroller.verticalScrollBar()->setValue(100);
    EXPECT_EQ(ends(), std::pair(true, true));
    scroller.verticalScrollBar()->setValue(400);
    EXPECT_EQ(ends(), std::pair(true, false));
}

}  // namespace
}  // namespace vantor
