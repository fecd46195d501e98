#pragma once
// One creature family of the bestiary: icon, name, description, how it is unlocked and how far the player is. Pressing
// it looks the family up. Main thread.

#include <QtWidgets/QAbstractButton>

#include "timers/Bestiary.h"

namespace vantor {

class BestiaryFamilyView : public QAbstractButton {
public:
    BestiaryFamilyView(BestiaryFamily family, QWidget* parent);

    [[nodiscard]] const BestiaryFamily& family() const { return family_; }
    // Same family, other progress.
    void setFamily(BestiaryFamily family);

    [[nodiscard]] int heightForWidth(int width) const override;
    [[nodiscard]] QSize sizeHint() const override { return {320, heightForWidth(320)}; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void paintProgress(QPainter& painter, const QRect& frame) const;
    void paintIcon(QPainter& painter, const QRect& frame) const;

    BestiaryFamily family_;
};

// The id as a title: the catalogue has it in small letters, with underscores for spaces.
[[nodiscard]] QString bestiaryTitle(const std::string& id);

}  // namespace vantor
