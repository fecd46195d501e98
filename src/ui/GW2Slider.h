#pragma once
// A slider in steps, with a label at each end and its value above the knob's line. Main thread.

#include <QtWidgets/QAbstractSlider>
#include <functional>
#include <memory>

#include "ui/AccessibleControl.h"
#include "ui/SettingBinding.h"

namespace vantor {

class GW2Slider : public QAbstractSlider, public SelfDescribing {
public:
    GW2Slider(const QString& name, double from, double to, double step, QString startLabel, QString endLabel,
              QWidget* parent);

    // Shows the setting, follows it, and stores each change at once.
    void bind(Defaults& defaults, std::string_view key, double byDefault);
    [[nodiscard]] double shownValue() const;
    void onChanged(std::function<void(double)> handler) { changed_ = std::move(handler); }
    // How the value reads; as a plain number at first.
    void setValueText(std::function<QString(double)> text);

    [[nodiscard]] QString shownText() const { return text_(shownValue()); }
    // As a screen reader may ask for it: to the nearest step.
    void setShownValue(double value);
    [[nodiscard]] double from() const { return from_; }
    [[nodiscard]] double step() const { return step_; }

    [[nodiscard]] QAccessibleInterface* makeAccessible() override;
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void sliderChange(SliderChange change) override;

private:
    [[nodiscard]] QRectF groove() const;
    [[nodiscard]] int stepOf(double shown) const;
    void showStored(double stored);
    void moveTo(double x);
    void tell();

    double from_;
    double step_;
    QString startLabel_;
    QString endLabel_;
    std::function<QString(double)> text_;
    std::function<void(double)> changed_;
    std::unique_ptr<SettingBinding<double>> binding_;
    bool showing_ = false;  // a value that came from elsewhere
};

}  // namespace vantor
