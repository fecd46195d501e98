#include "feedback/view/Support.h"

#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QVBoxLayout>

#include "feedback/view/MessageView.h"
#include "ui/GW2Button.h"
#include "ui/SectionTitle.h"
#include "ui/ShadowInset.h"
#include "ui/Tabber.h"
#include "ui/TextBlock.h"
#include "ui/VerticalScroller.h"

namespace vantor {

namespace {

QString toText(const std::string& text) { return QString::fromStdString(text); }

QVBoxLayout* makeColumn(QWidget* page) {
    auto* const column = new QVBoxLayout(page);
    column->setContentsMargins(4, 8, 4, 4);
    column->setSpacing(10);
    return column;
}

QWidget* scrolled(QWidget* page, QWidget* parent) {
    auto* const scroller = new VerticalScroller(parent);
    scroller->setContent(page);
    return scroller;
}

// Beside a button: what happened after it was pressed.
void addCopyButton(QHBoxLayout& row, const QString& label, const std::string& text, const QString& done,
                   Pasteboard& pasteboard, QWidget* parent) {
    auto* const button = new GW2Button(label, parent);
    auto* const said = new TextBlock(TextRole::success, QString(), parent);
    said->setWordWrap(false);
    QObject::connect(button, &QAbstractButton::clicked, said, [&pasteboard, text, done, said] {
        pasteboard.setText(text);
        said->setText(done);
    });
    row.addWidget(button);
    row.addWidget(said);
}

QWidget* makeInGamePage(const SupportNeeds& needs, QWidget* parent) {
    auto* const page = new QWidget(parent);
    auto* const column = makeColumn(page);
    column->addWidget(new TextBlock(
        TextRole::body, QStringLiteral("Do you want to contanct me in-game? Here is my account name!"), page));
    if (!needs.data.accountName) {
        column->addWidget(new TextBlock(
            TextRole::second, QStringLiteral("This build of Vantor knows no account name of its maker."), page));
    } else {
        const std::string name = *needs.data.accountName;
        auto* const row = new QHBoxLayout;
        auto* const button = new GW2Button(toText(name), page);
        auto* const said = new TextBlock(TextRole::success, QString(), page);
        QObject::connect(button, &QAbstractButton::clicked, said,
                         [name, &clipboardManager = needs.clipboardManager, &pasteboard = needs.pasteboard, said] {
                             pressAccountName(name, clipboardManager, pasteboard);
                             said->setText(QStringLiteral("Copied to clipboard"));
                         });
        row->addWidget(button);
        row->addWidget(said, 1);
        column->addLayout(row);
    }
    column->addStretch(1);
    return page;
}

QWidget* makeTipPage(const SupportNeeds& needs, QWidget* parent) {
    auto* const page = new QWidget(parent);
    auto* const column = makeColumn(page);
    column->addWidget(new TextBlock(
        TextRole::body, QStringLiteral("Want to support me? Tip something! Get me a beer...or whatever!"), page));
    for (const Crypto& crypto : needs.data.cryptos) {
        auto* const entry = new ShadowInset(page);
        auto* const lines = new QWidget(entry);
        auto* const rows = new QVBoxLayout(lines);
        rows->setContentsMargins(0, 0, 0, 0);
        rows->addWidget(new TextBlock(
            TextRole::value, toText(crypto.name) + QStringLiteral(" (") + toText(crypto.id) + QLatin1Char(')'), lines));
        auto* const buttons = new QHBoxLayout;
        addCopyButton(*buttons, QStringLiteral("Copy wallet ID"), crypto.wallet,
                      QStringLiteral("wallet copied to clipboard"), needs.pasteboard, lines);
        if (crypto.memo)
            addCopyButton(*buttons, QStringLiteral("Copy memo ID"), *crypto.memo,
                          QStringLiteral("memo copied to clipboard"), needs.pasteboard, lines);
        buttons->addStretch(1);
        rows->addLayout(buttons);
        entry->setContent(lines);
        column->addWidget(entry);
    }
    if (needs.data.cryptos.empty())
        column->addWidget(new TextBlock(
            TextRole::second, QStringLiteral("This build of Vantor names no wallet. A kind word is as good."), page));
    column->addStretch(1);
    return scrolled(page, parent);
}

QWidget* makeAppreciationPage(const SupportNeeds& needs, QWidget* parent) {
    auto* const page = new QWidget(parent);
    auto* const column = makeColumn(page);
    column->addWidget(new TextBlock(TextRole::heading, QStringLiteral("Do you like Vantor? Let me know!"), page));
    auto* const tabs = new HorizontalTabber(page);
    tabs->addTab(QStringLiteral("In Game"), QString(),
                 [needs](QWidget* place) { return makeInGamePage(needs, place); });
    tabs->addTab(QStringLiteral("Tip"), QString(), [needs](QWidget* place) { return makeTipPage(needs, place); });
    column->addWidget(tabs, 1);
    return page;
}

QWidget* makeCopyrightPage(const SupportNeeds& needs, QWidget* parent) {
    auto* const page = new QWidget(parent);
    auto* const column = makeColumn(page);
    const auto add = [&](const QString& heading, const QString& notice, bool underLicence) {
        column->addWidget(new SectionTitle(heading, page));
        auto* const text = new TextBlock(TextRole::body, QString(), page);
        text->setRich(underLicence ? notice.toHtmlEscaped() +
                                         QStringLiteral(" <a href=\"%1\">GNU Free Documentation License 1.3 (GFDL)</a>")
                                             .arg(toText(needs.data.licence).toHtmlEscaped())
                                   : notice.toHtmlEscaped());
        text->onLink([openLink = needs.openLink](const QString& address) { openLink(address.toStdString()); });
        column->addWidget(text);
    };
    add(QStringLiteral("Made for Vantor"),
        QStringLiteral("Texts, images and sounds that were made for this application may be copied, shared and changed "
                       "under the terms of the"),
        true);
    add(QStringLiteral("From the official wiki"),
        QStringLiteral(
            "Event times, names, chat codes and descriptions were taken from the game's official wiki, whose "
            "contributors share them under the terms of the"),
        true);
    add(QStringLiteral("From the game and its maker"),
        QStringLiteral(
            "Guild Wars 2, its world, names and images, and what the game's web API tells are ArenaNet's: all "
            "rights reserved by their owner. Vantor is made by players and is neither affiliated with nor "
            "endorsed by ArenaNet."),
        false);
    column->addStretch(1);
    return scrolled(page, parent);
}

}  // namespace

Support::Support(const SupportNeeds& needs, QWidget* parent) : QWidget(parent) {
    auto* const whole = new QVBoxLayout(this);
    whole->setContentsMargins(0, 0, 0, 0);
    auto* const tabs = new HorizontalTabber(this);
    tabs->addTab(QStringLiteral("Bug"), QString(),
                 [needs](QWidget* place) { return new MessageView(bugReportForm(), needs.message, place); });
    tabs->addTab(QStringLiteral("Suggestion"), QString(),
                 [needs](QWidget* place) { return new MessageView(suggestionForm(), needs.message, place); });
    tabs->addTab(QStringLiteral("Appreciation"), QString(),
                 [needs](QWidget* place) { return makeAppreciationPage(needs, place); });
    tabs->addTab(QStringLiteral("Copyright"), QString(),
                 [needs](QWidget* place) { return makeCopyrightPage(needs, place); });
    whole->addWidget(tabs);
}

}  // namespace vantor
