#pragma once
// A switch with its text, which wraps where it must. Main thread.

#include <memory>

#include "ui/GW2ToggleStyle.h"
#include "ui/Motion.h"
#include "ui/Pressable.h"
#include "ui/SettingBinding.h"

namespace vantor {

class GW2Toggle : public Pressable {
public:
    GW2Toggle(const QString& text, QWidget* parent);

    // Shows the setting, follows it, and stores each change at once.
    void bind(Defaults& defaults, std::string_view key, bool byDefault);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;
    [[nodiscard]] bool hasHeightForWidth() const override { return true; }
    [[nodiscard]] int heightForWidth(int width) const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    GW2ToggleStyle style_;
    Motion position_;
    std::unique_ptr<SettingBinding<bool>> binding_;
};

}  // namespace vantor
