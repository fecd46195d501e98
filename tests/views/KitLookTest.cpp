// Colours that can be read, and motions that follow the spring or do not move at all.

#include <gtest/gtest.h>

#include <QtGui/QFontInfo>
#include <QtGui/QFontMetricsF>
#include <QtWidgets/QApplication>
#include <algorithm>
#include <cmath>
#include <numbers>
#include <tuple>

#include "ui/Fonts.h"
#include "ui/Motion.h"
#include "ui/Palette.h"
#include "ui/TabElement.h"
#include "ui/TabMark.h"

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

struct Named {
    const char* name;
    QColor colour;
};

TEST(KitContrast, EveryTextReadsOverEveryScene) {
    const std::vector<Named> texts{
        {"gold", palette::gold}, {"warm white", palette::warmWhite}, {"sand", palette::sand},
        {"dim", palette::dim},   {"amber", palette::amber},          {"bright amber", palette::brightAmber},
        {"blue", palette::blue}, {"green", palette::green},          {"error", palette::error}};
    for (const QColor scene : {QColor(Qt::white), QColor(Qt::black)})
        for (const double opacity : {0.96, 0.88})
            for (const QColor& ink : {palette::inkTop, palette::inkBottom})
                for (const Named& text : texts)
                    EXPECT_GE(contrast(text.colour, over(ink, opacity, scene)), 4.5)
                        << text.name << " at " << opacity << " over " << scene.name().toStdString();
}

TEST(KitContrast, TextReadsOnTheGroundsOfControls) {
    const QColor panel = over(palette::inkTop, 0.96, Qt::white);
    const QColor hovered = over(palette::gold, 0.07, panel);
    const QColor litRed = over(palette::gold, 0.12, palette::strokeLight);
    struct Pair {
        const char* name;
        QColor text;
        QColor background;
    };
    for (const Pair& pair :
         {Pair{"hint in a field", palette::dim, palette::fieldInk},
          Pair{"text in a field", palette::warmWhite, palette::fieldInk},
          Pair{"a selection", palette::onRed, palette::strokeLight}, Pair{"a primary button", palette::onRed, litRed},
          Pair{"a hovered row", palette::gold, hovered}, Pair{"second text of a hovered row", palette::sand, hovered},
          Pair{"the chosen tab of a column", palette::gold, over(palette::red, 0.4, panel)},
          Pair{"the name on the stroke", palette::gold, palette::strokeLight},
          Pair{"the hotkey on the stroke", over(palette::warmWhite, 0.85, palette::strokeLight), palette::strokeLight}})
        EXPECT_GE(contrast(pair.text, pair.background), 4.5) << pair.name;
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
        EXPECT_EQ(spring.at(0), 0);
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

TEST(KitMotion, TheRedLineLiesBelowTheChosenTabAlsoWhenTheRowMoves) {
    const ReducedMotion reduced(true);
    QWidget row;
    TabElement first(QStringLiteral("First"), QString(), &row);
    TabElement second(QStringLiteral("The second"), QString(), &row);
    TabMark mark(&row);
    row.resize(400, 50);
    row.show();
    first.setGeometry(0, 0, 80, 42);
    second.setGeometry(90, 0, 120, 42);
    mark.moveBelow(&first);
    EXPECT_EQ(mark.geometry(), QRect(0, 39, 80, 3));
    mark.moveBelow(&second);
    EXPECT_EQ(mark.geometry(), QRect(90, 39, 120, 3));
    second.setGeometry(100, 0, 140, 42);
    EXPECT_EQ(mark.geometry(), QRect(100, 39, 140, 3));
    setReducedMotion(false);
    mark.moveBelow(&first);
    EXPECT_EQ(mark.geometry(), QRect(100, 39, 140, 3)) << "it starts where it lay";
}

}  // namespace
}  // namespace vantor
