#include "timers/view/BestiarySectionView.h"

#include <QtCore/QCoreApplication>
#include <QtWidgets/QVBoxLayout>
#include <algorithm>

#include "ui/Collapse.h"

namespace vantor {

namespace {

constexpr int narrowest = 380;  // of a column
constexpr int gap = 4;

QString titleOf(const BestiarySection& section) {
    QString title = bestiaryTitle(section.id);
    if (section.tracked > 0) title += QStringLiteral("  ·  %1 of %2 done").arg(section.done).arg(section.tracked);
    return title;
}

}  // namespace

// Columns of one width, rows as high as their highest family.
class BestiarySectionView::Grid : public QWidget {
public:
    explicit Grid(QWidget* parent) : QWidget(parent) {
        QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Preferred);
        policy.setHeightForWidth(true);
        setSizePolicy(policy);
    }

    std::vector<BestiaryFamilyView*> families;

    void arrange() {
        (void)place(width(), [](BestiaryFamilyView& family, const QRect& frame) { family.setGeometry(frame); });
        updateGeometry();
    }
    [[nodiscard]] bool hasHeightForWidth() const override { return true; }
    [[nodiscard]] int heightForWidth(int width) const override {
        return place(width, [](BestiaryFamilyView&, const QRect&) {});
    }
    [[nodiscard]] QSize sizeHint() const override { return {narrowest, heightForWidth(narrowest)}; }

protected:
    void resizeEvent(QResizeEvent*) override { arrange(); }

private:
    // The height of all rows.
    template <typename Put>
    int place(int width, const Put& put) const {
        const int columns = std::max(1, width / narrowest);
        const int columnWidth = (width - gap * (columns - 1)) / columns;
        std::vector<BestiaryFamilyView*> row;
        int top = 0;
        const auto endRow = [&] {
            int height = 0;
            for (const BestiaryFamilyView* const family : row)
                height = std::max(height, family->heightForWidth(columnWidth));
            for (int column = 0; BestiaryFamilyView* const family : row)
                put(*family, QRect(column++ * (columnWidth + gap), top, columnWidth, height));
            row.clear();
            top += height + gap;
        };
        for (BestiaryFamilyView* const family : families) {
            if (family->isHidden()) continue;
            row.push_back(family);
            if (static_cast<int>(row.size()) == columns) endRow();
        }
        if (!row.empty()) endRow();
        return std::max(0, top - gap);
    }
};

BestiarySectionView::BestiarySectionView(const BestiarySection& whole,
                                         const std::function<void(const std::string& family)>& lookUp, QWidget* parent)
    : QWidget(parent) {
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    collapse_ = new Collapse(titleOf(whole), this);
    column->addWidget(collapse_);
    grid_ = new Grid(collapse_);
    for (const BestiaryFamily& family : whole.families) {
        auto* const view = new BestiaryFamilyView(family, grid_);
        connect(view, &QAbstractButton::clicked, this, [lookUp, id = family.id] { lookUp(id); });
        grid_->families.push_back(view);
    }
    collapse_->setContent(grid_);
    collapse_->setExpanded(true);
}

void BestiarySectionView::show(const BestiarySection& whole, const BestiarySection* found) {
    collapse_->setTitle(titleOf(whole));
    setVisible(found != nullptr);
    if (!found) return;
    for (BestiaryFamilyView* const view : grid_->families) {
        const auto family = std::ranges::find(found->families, view->family().id, &BestiaryFamily::id);
        view->setVisible(family != found->families.end());
        if (family != found->families.end()) view->setFamily(*family);
    }
    grid_->arrange();
    // The grid's own wish for another height ends at what clips it.
    QEvent request(QEvent::LayoutRequest);
    QCoreApplication::sendEvent(collapse_, &request);
}

}  // namespace vantor
