#include "app/view/ApiSettingsView.h"

#include <QtWidgets/QVBoxLayout>
#include <utility>

#include "ui/Palette.h"
#include "ui/TextBlock.h"

namespace vantor {

namespace {

// One paragraph each; a blank joins their pieces.
const QString whatIsIt =
    QStringLiteral("An <b>API key</b> is a alphanumeric string that represent your GW2 account unambiguously.");
const QString whatIsItFor = QStringLiteral(
    "It must be used for requesting Guild Wars 2 server information about your account, items, guild, world, etc.");
const QString moreAboutIt = QStringLiteral("Form more information about <b>API keys</b> you can browse the %1");
const QString whyUseIt =
    QStringLiteral("To get personalized information on achivements, collections, timers and TODOs.");
const QString creation =
    QStringLiteral("During the creation of the key, the player will need to give it a name and a set of permissions.");
const QString itsName =
    QStringLiteral("The name is purely for the player's reference, although any third-party app can access it.");
const QString whereToGetIt = QStringLiteral("The <b>API key</b> can be generated in your %1");

// The toolkit takes a link's colour from the application's palette, which is not the panel's.
QString link(const QString& text, const QString& address) {
    return QStringLiteral("<a style=\"color:%1\" href=\"%2\">%3</a>")
        .arg(palette::gold.name(), address.toHtmlEscaped(), text);
}

}  // namespace

ApiSettingsView::ApiSettingsView(const HelpHosts& hosts, OpenLink openLink, QWidget* parent) : QWidget(parent) {
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins({});
    column->setSpacing(4);
    const auto section = [&](const QString& title, const QStringList& paragraphs) {
        auto* const collapse = new Collapse(title, this);
        auto* const content = new QWidget;
        auto* const lines = new QVBoxLayout(content);
        lines->setContentsMargins(28, 4, 4, 8);
        lines->setSpacing(4);
        for (const QString& paragraph : paragraphs) {
            auto* const text = new TextBlock(TextRole::body, {}, content);
            text->setRich(paragraph);
            text->onLink([openLink](const QString& address) { openLink(address); });
            lines->addWidget(text);
        }
        collapse->setContent(content);
        column->addWidget(collapse);
        return collapse;
    };
    section(QStringLiteral("What is an API key?"),
            {whatIsIt, whatIsItFor,
             moreAboutIt.arg(
                 link(QStringLiteral("official wiki page"), hosts.wiki + QStringLiteral("/wiki/API:API_key")))});
    section(QStringLiteral("Why should I use it?"), {whyUseIt});
    howToGetOne_ = section(QStringLiteral("How do I get my API key?"),
                           {creation, itsName,
                            whereToGetIt.arg(link(QStringLiteral("ArenaNet account"),
                                                  hosts.accountSite + QStringLiteral("/applications")))});
}

}  // namespace vantor
