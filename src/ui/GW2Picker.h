#pragma once
// One choice of several. Its list opens inside the window, since another window would take the focus. Main thread.

#include <QtWidgets/QWidget>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "ui/AccessibleControl.h"
#include "ui/GW2PickerOption.h"
#include "ui/ListPopup.h"
#include "ui/SettingBinding.h"

namespace vantor {

class GW2Picker : public QWidget, public SelfDescribing {
public:
    // `name` is what a screen reader says.
    GW2Picker(const QString& name, QWidget* parent);
    ~GW2Picker() override;

    void setOptions(std::vector<GW2PickerOption> options);
    [[nodiscard]] const std::vector<GW2PickerOption>& options() const { return options_; }
    // An id that is none of the options chooses nothing.
    void choose(const std::string& id);
    [[nodiscard]] std::optional<std::string> chosen() const;
    [[nodiscard]] std::optional<std::size_t> chosenIndex() const { return chosen_; }
    // After the player chose; not after choose().
    void onChosen(std::function<void(const GW2PickerOption&)> handler) { handler_ = std::move(handler); }
    // Shown while nothing is chosen.
    void setPlaceholder(const QString& text);
    void bind(Defaults& defaults, std::string_view key, std::string byDefault);

    void open();
    void close();
    [[nodiscard]] bool isOpen() const { return list_ != nullptr; }

    // What it shows: the choice, or the placeholder.
    [[nodiscard]] QString shownText() const;

    [[nodiscard]] QAccessibleInterface* makeAccessible() override;
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void take(std::size_t index);
    void showChoice(std::optional<std::size_t> index);

    std::vector<GW2PickerOption> options_;
    std::optional<std::size_t> chosen_;
    QString placeholder_;
    bool ringBefore_ = false;  // it was opened by a key
    QPointer<ListPopup> list_;
    std::function<void(const GW2PickerOption&)> handler_;
    std::unique_ptr<SettingBinding<std::string>> binding_;
};

}  // namespace vantor
