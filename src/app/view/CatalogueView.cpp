#include "app/view/CatalogueView.h"

#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QVBoxLayout>
#include <utility>

#include "catalogue/CatalogueWords.h"
#include "data/SettingKeys.h"
#include "ui/GW2Button.h"
#include "ui/GW2Toggle.h"
#include "ui/SectionTitle.h"

namespace vantor {

CatalogueView::CatalogueView(CatalogueNeeds needs, QWidget* parent)
    : QWidget(parent),
      needs_(std::move(needs)),
      version_(new TextBlock(TextRole::body, {}, this)),
      files_(new TextBlock(TextRole::second, {}, this)),
      faults_(new TextBlock(TextRole::error, {}, this)) {
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins({});
    column->setSpacing(8);
    column->addWidget(new SectionTitle(QStringLiteral("Catalogue"), this));
    column->addWidget(version_);
    // Without a host there is nothing to switch.
    if (needs_.status()->fetches) {
        auto* const fetch = new GW2Toggle(QStringLiteral("Look for newer event times every few hours"), this);
        fetch->bind(needs_.defaults, settings::fetchCatalogue, true);
        column->addWidget(fetch);
    }
    column->addWidget(files_);
    column->addWidget(faults_);

    auto* const read = new GW2Button(QStringLiteral("Read my files"), this);
    connect(read, &QAbstractButton::clicked, this, [this] { needs_.readPlayerFiles(); });
    auto* const row = new QHBoxLayout;
    row->setSpacing(12);
    row->addWidget(read);
    auto* const back = new GW2Button(QStringLiteral("Back to the one before"), this);
    connect(back, &QAbstractButton::clicked, this, [this] { needs_.rollBack(); });
    row->addWidget(back);
    back_ = back;
    row->addStretch(1);
    column->addLayout(row);

    changed_ = needs_.observe([this] { refresh(); });
    refresh();
}

void CatalogueView::refresh() {
    const auto status = needs_.status();
    version_->setText(QStringLiteral("Event times: ") + QString::fromStdString(catalogueText(*status)));
    back_->setVisible(status->source == CatalogueStatus::Source::update);
    files_->setText(QString::fromStdString(playerFilesText(*status)));
    QStringList faults;
    if (!status->updateFault.empty()) faults.append(QString::fromStdString(status->updateFault));
    for (const std::string& fault : status->playerFaults) faults.append(QString::fromStdString(fault));
    faults_->setText(faults.join(QLatin1Char('\n')));
    faults_->setVisible(!faults.isEmpty());
}

FestivalsHint::FestivalsHint(const CatalogueNeeds& needs, QWidget* parent) : TextBlock(TextRole::hint, {}, parent) {
    const auto refresh = [this, status = needs.status] {
        const QString text = QString::fromStdString(festivalsText(*status()));
        setText(text);
        setVisible(!text.isEmpty());
    };
    changed_ = needs.observe(refresh);
    refresh();
}

}  // namespace vantor
