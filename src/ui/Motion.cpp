#include "ui/Motion.h"

#include <QtCore/qglobal.h>
#include <QtCore/QVariant>
#include <QtWidgets/QApplication>
#include <utility>

namespace vantor {

namespace {

constexpr const char* wish = "vantorReducedMotion";

}  // namespace

void setReducedMotion(bool reduced) { qApp->setProperty(wish, reduced); }

bool reducedMotion() {
    if (qEnvironmentVariableIsSet("VANTOR_REDUCED_MOTION"))
        return qEnvironmentVariableIntValue("VANTOR_REDUCED_MOTION") != 0;
    return qApp && qApp->property(wish).toBool();
}

Motion::Motion(QObject* owner, Spring spring, std::function<void(double)> step)
    : QObject(owner), spring_(spring), step_(std::move(step)) {
    const double seconds = spring_.settled();
    animation_.setStartValue(0.0);
    animation_.setEndValue(seconds);
    animation_.setDuration(static_cast<int>(seconds * 1000));
    QObject::connect(&animation_, &QVariantAnimation::valueChanged, this, [this](const QVariant& at) {
        if (animation_.state() == QAbstractAnimation::Running)
            set(from_ + (target_ - from_) * spring_.at(at.toDouble()));
    });
    QObject::connect(&animation_, &QVariantAnimation::finished, this, [this] { set(target_); });
}

void Motion::moveTo(double target) {
    if (target == target_ && (moving() || value_ == target)) return;
    if (reducedMotion()) return jumpTo(target);
    animation_.stop();
    from_ = value_;
    target_ = target;
    animation_.start();
}

void Motion::jumpTo(double target) {
    animation_.stop();
    target_ = target;
    set(target);
}

void Motion::set(double value) {
    if (std::exchange(value_, value) != value) step_(value);
}

}  // namespace vantor
