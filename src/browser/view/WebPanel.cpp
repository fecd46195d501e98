#include "browser/view/WebPanel.h"

#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QVBoxLayout>
#include <utility>

#include "ui/GW2Button.h"
#include "ui/GW2TextField.h"
#include "ui/ImageButton.h"

namespace vantor {

namespace {

QString toText(std::string_view text) { return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())); }

}  // namespace

WebPanel::WebPanel(PageSource source, WebViewStore& store, WebHosts hosts, QWidget* parent)
    : QWidget(parent),
      store_(store),
      hosts_(std::move(hosts)),
      row_(makeRow()),
      web_(new WebView(std::move(source), this)) {
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(6);
    column->addWidget(row_);
    column->addWidget(web_, 1);
}

QWidget* WebPanel::makeRow() {
    auto* const row = new QWidget(this);
    auto* const layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(2);
    const auto addWay = [&](const QString& sign, const QString& help, void (WebPage::*way)()) {
        auto* const button = new GW2Button(sign, row);
        button->setFootnote(true);
        button->setToolTip(help);
        button->setAccessibleName(help);
        QObject::connect(button, &QAbstractButton::clicked, this, [this, way] { (store_.webView().*way)(); });
        layout->addWidget(button);
    };
    addWay(QStringLiteral("\u2190"), QStringLiteral("Navigate back"), &WebPage::goBack);
    addWay(QStringLiteral("\u2192"), QStringLiteral("Navigate forward"), &WebPage::goForward);
    auto* const field = new GW2TextField(QStringLiteral("Search..."), row);
    layout->addWidget(field, 1);
    for (const SearchTarget& target : searchTargets) {
        const QString image = toText(target.image);
        auto* const button = new ImageButton(image, image, toText(target.help), row);
        QObject::connect(button, &QAbstractButton::clicked, this, [this, field, &target] {
            store_.load(searchAddress(hosts_, target, field->text().toStdString()));
        });
        layout->addWidget(button);
    }
    return row;
}

void WebPanel::show(Tab tab) {
    row_->setVisible(tab == Tab::internet);
    if (std::exchange(shown_, tab) == tab) return;
    // The first time, the window comes before the engine. A tab that has gone before it was seen loads nothing.
    web_->afterPainting(tab == Tab::gameUpdates ? [this] { store_.load(gameUpdatesAddress(hosts_)); }
                                                : std::function<void()>());
}

}  // namespace vantor
