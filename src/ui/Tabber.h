#pragma once
// Tabs over or beside pages; a page is made when it is first shown. Main thread.

#include <QtGui/QKeyEvent>
#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QStackedWidget>
#include <QtWidgets/QWidget>
#include <functional>
#include <optional>
#include <vector>

#include "ui/TabElement.h"
#include "ui/TabMark.h"

namespace vantor {

// Which tab a key leads to: arrows along the tabs, and their ends with Home and End. Nothing: the key is not theirs, or
// leads nowhere.
[[nodiscard]] inline std::optional<int> nextTab(const QKeyEvent& event, Qt::Orientation tabs, int selected, int count) {
    const bool column = tabs == Qt::Vertical;
    int next = selected;
    if (event.key() == (column ? Qt::Key_Up : Qt::Key_Left)) --next;
    if (event.key() == (column ? Qt::Key_Down : Qt::Key_Right)) ++next;
    if (event.key() == Qt::Key_Home) next = 0;
    if (event.key() == Qt::Key_End) next = count - 1;
    if (next < 0 || next >= count || next == selected) return std::nullopt;
    return next;
}

class Tabber : public QWidget {
public:
    using MakePage = std::function<QWidget*(QWidget* parent)>;

    // Its position, from 0. The first one added is selected.
    int addTab(const QString& text, const QString& image, MakePage makePage);
    void select(int position);
    [[nodiscard]] int selected() const { return selected_; }
    [[nodiscard]] int count() const { return static_cast<int>(tabs_.size()); }
    // After a selection, also by code.
    void onSelected(std::function<void(int)> handler) { handler_ = std::move(handler); }
    [[nodiscard]] TabElement& tab(int position) { return *tabs_.at(static_cast<std::size_t>(position)).element; }
    // Nothing before it was shown.
    [[nodiscard]] QWidget* page(int position) const { return tabs_.at(static_cast<std::size_t>(position)).page; }

protected:
    Tabber(Qt::Orientation tabs, QWidget* parent);
    void keyPressEvent(QKeyEvent* event) override;

private:
    struct Tab {
        TabElement* element;
        MakePage makePage;
        QWidget* page = nullptr;
    };

    Qt::Orientation orientation_;
    QWidget* strip_;
    QBoxLayout* stripLayout_;
    QStackedWidget* pages_;
    TabMark* mark_ = nullptr;  // of a row
    std::vector<Tab> tabs_;
    int selected_ = -1;
    std::function<void(int)> handler_;
};

// Tabs in a row over their pages.
class HorizontalTabber : public Tabber {
public:
    explicit HorizontalTabber(QWidget* parent) : Tabber(Qt::Horizontal, parent) {}
};

// Tabs in a column beside their pages.
class VerticalTabber : public Tabber {
public:
    explicit VerticalTabber(QWidget* parent) : Tabber(Qt::Vertical, parent) {}
};

}  // namespace vantor
