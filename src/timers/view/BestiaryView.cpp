#include "timers/view/BestiaryView.h"

#include <QtWidgets/QVBoxLayout>
#include <algorithm>
#include <utility>

#include "timers/view/BestiarySectionView.h"

namespace vantor {

BestiaryView::BestiaryView(BestiaryNeeds needs, QWidget* parent)
    : QWidget(parent),
      needs_(std::move(needs)),
      search_(new GW2TextField(QStringLiteral("Search"), this)),
      scroller_(new VerticalScroller(this)),
      column_(new QWidget) {
    EmptyListActions actions = needs_.emptyActions;
    actions.clearSearch = [this] {
        search_->clear();
        search_->setFocus(Qt::OtherFocusReason);
    };
    // The button goes, and the keyboard with it.
    for (std::function<void()>* const loads : {&actions.tryAgain, &actions.showWithoutProgress})
        *loads = [this, load = *loads] {
            search_->setFocus(Qt::TabFocusReason);
            load();
        };
    empty_ = new EmptyListView(std::move(actions), this);
    search_->setLeadingImage(QStringLiteral("search"));
    search_->setClearable(true);
    search_->setAccessibleName(QStringLiteral("Search the bestiary"));

    auto* const inner = new QVBoxLayout(column_);
    inner->setContentsMargins(0, 0, 6, 8);
    inner->setSpacing(10);
    inner->addStretch(1);
    scroller_->setContent(column_);
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(6, 4, 0, 0);
    column->setSpacing(8);
    column->addWidget(search_);
    column->addWidget(scroller_, 1);
    column->addWidget(empty_, 1);
    empty_->hide();

    connect(search_, &QLineEdit::textChanged, this, [this] { refresh(); });
    data_ = needs_.observe([this] { refresh(); });
}

void BestiaryView::refresh() {
    if (!isVisible()) return;
    const auto progress = needs_.progress();
    const ProgressById progressOfAll = progress ? progressById(*progress) : ProgressById();
    if (auto categories = needs_.categories(); categories != categories_ || sections_.empty()) {
        categories_ = std::move(categories);
        qDeleteAll(std::exchange(sections_, {}));
    }
    showSections(progressOfAll);
}

void BestiaryView::showSections(const ProgressById& progress) {
    const std::vector<BeastCategory> none;
    const std::vector<BeastCategory>& categories = categories_ ? *categories_ : none;
    auto* const inner = static_cast<QVBoxLayout*>(column_->layout());
    const bool known = needs_.progressKnown();
    const auto all = bestiarySections(categories, progress, WordSearch(), known);
    if (sections_.empty())
        for (const BestiarySection& whole : all) {
            auto* const view = new BestiarySectionView(whole, needs_.lookUp, column_);
            inner->insertWidget(inner->count() - 1, view);
            sections_.push_back(view);
        }
    const auto found = bestiarySections(categories, progress, WordSearch(search_->text().toStdString()), known);
    for (std::size_t place = 0; place < sections_.size(); ++place) {
        const auto section = std::ranges::find(found, all[place].id, &BestiarySection::id);
        sections_[place]->show(all[place], section == found.end() ? nullptr : &*section);
    }
    const bool nothing = found.empty();
    if (nothing) {
        EmptyWords words =
            emptyWords(categories.empty() ? emptyReason(needs_.state()) : EmptyReason::nothingFound, "beasts");
        if (!categories.empty()) words.sentence = "No family has all of these words.";
        empty_->say(words);
    }
    scroller_->setVisible(!nothing);
    empty_->setVisible(nothing);
}

void BestiaryView::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    refresh();
}

}  // namespace vantor
