#pragma once
// A field of one line. Main thread.

#include <QtGui/QPainter>
#include <QtGui/QPalette>
#include <QtWidgets/QLineEdit>
#include <memory>

#include "ui/ControlState.h"
#include "ui/ImageButton.h"
#include "ui/SettingBinding.h"

namespace vantor {

// The sunken background of fields. Main thread.
class GW2TextFieldStyle {
public:
    void paintBackground(QPainter& painter, const QRectF& frame, const ControlState& state) const;
    // Text, hint, selection.
    [[nodiscard]] static QPalette colours();
};

class GW2TextField : public QLineEdit {
public:
    // The placeholder is also its name for a screen reader, until another is set.
    GW2TextField(const QString& placeholder, QWidget* parent);

    void setLeadingImage(const QString& image);
    // A small control at the right that empties it, shown while there is something.
    void setClearable(bool clearable);
    void setSecret(bool secret);
    // Shows the setting, follows it, and stores what is typed at once.
    void bind(Defaults& defaults, std::string_view key, std::string byDefault);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    void fitMargins();

    GW2TextFieldStyle style_;
    QString leadingImage_;
    ImageButton* clear_ = nullptr;
    std::unique_ptr<SettingBinding<std::string>> binding_;
};

}  // namespace vantor
