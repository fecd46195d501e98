#include "ui/KitStyle.h"

#include <QtGui/QPainter>
#include <QtWidgets/QApplication>
#include <QtWidgets/QProxyStyle>
#include <QtWidgets/QStyleOption>
#include <QtWidgets/QToolTip>

#include "ui/Fonts.h"
#include "ui/Palette.h"

namespace vantor {

namespace {

class KitStyle final : public QProxyStyle {
public:
    KitStyle() : QProxyStyle(QStringLiteral("fusion")) {}

    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override {
        if (element == PE_PanelTipLabel) {
            // Opaque and square: a tool tip's window has no transparency to tear its edges with.
            painter->fillRect(option->rect, palette::inkTop);
            painter->setPen(palette::withAlpha(palette::gold, 0.5));
            painter->drawRect(option->rect.adjusted(0, 0, -1, -1));
            return;
        }
        // Controls draw their own ring, and for the keyboard only.
        if (element == PE_FrameFocusRect) return;
        QProxyStyle::drawPrimitive(element, option, painter, widget);
    }
    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override {
        if (metric == PM_ToolTipLabelFrameWidth) return 7;
        return QProxyStyle::pixelMetric(metric, option, widget);
    }
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* answer) const override {
        if (hint == SH_ToolTipLabel_Opacity) return 255;
        return QProxyStyle::styleHint(hint, option, widget, answer);
    }
};

}  // namespace

QPalette kitColours() {
    QPalette colours(palette::inkTop, palette::inkBottom);
    colours.setColor(QPalette::Window, palette::inkTop);
    colours.setColor(QPalette::WindowText, palette::warmWhite);
    colours.setColor(QPalette::Base, palette::fieldInk);
    colours.setColor(QPalette::AlternateBase, palette::inkBottom);
    colours.setColor(QPalette::Text, palette::warmWhite);
    colours.setColor(QPalette::BrightText, palette::gold);
    colours.setColor(QPalette::Button, palette::inkTop);
    colours.setColor(QPalette::ButtonText, palette::warmWhite);
    colours.setColor(QPalette::ToolTipBase, palette::inkTop);
    colours.setColor(QPalette::ToolTipText, palette::warmWhite);
    colours.setColor(QPalette::PlaceholderText, palette::dim);
    colours.setColor(QPalette::Highlight, palette::strokeLight);
    colours.setColor(QPalette::HighlightedText, palette::onRed);
    colours.setColor(QPalette::Link, palette::gold);
    colours.setColor(QPalette::LinkVisited, palette::gold);
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        colours.setColor(QPalette::Disabled, role, palette::withAlpha(palette::warmWhite, 0.45));
    return colours;
}

void styleApplication() {
    // Before the look's own font takes the desktop's place.
    setTextScale(textScaleFor(QApplication::font()));
    QApplication::setStyle(new KitStyle);
    QApplication::setPalette(kitColours());
    QApplication::setFont(sansFont(14));
    QToolTip::setPalette(kitColours());
    QToolTip::setFont(sansFont(13));
}

}  // namespace vantor
