#include "accounts/view/AccountsView.h"

#include <QtWidgets/QHBoxLayout>
#include <utility>

#include "accounts/CredentialFill.h"
#include "accounts/view/AccountRow.h"
#include "ui/Fonts.h"
#include "ui/SectionTitle.h"
#include "ui/TextBlock.h"
#include "ui/VerticalScroller.h"

namespace vantor {

namespace {

const QString noAccounts =
    QStringLiteral("Add your account credentials to autofill login data from here or from system top status bar!");
const QString whereToStand =
    QStringLiteral("To work correctly, select the USERNAME field on GW2 login screen before pressign the FILL button");
const QString statusBarNote = QStringLiteral("For the status bar to update, close and reopen you application");
const QString singleAccountNote = QStringLiteral(
    "** This application is designed for single account management (API key does not change based on account): this "
    "panel serves as secondary accounts login helper only");

constexpr int footnotePixels = 12;

// Lets go of what a layout holds. A row may be the sender of the very click that ends it.
void clear(QVBoxLayout& layout) {
    while (QLayoutItem* const item = layout.takeAt(0)) {
        if (QWidget* const widget = item->widget()) {
            widget->hide();
            widget->deleteLater();
        }
        delete item;
    }
}

}  // namespace

AccountsView::AccountsView(AccountsCredentials& credentials, Fill fill, QWidget* parent)
    : QWidget(parent), credentials_(credentials), fill_(std::move(fill)), rows_(new QVBoxLayout) {
    auto* const scroller = new VerticalScroller(this);
    auto* const page = new QWidget;
    auto* const column = new QVBoxLayout(page);
    column->setContentsMargins(8, 4, 16, 16);
    column->setSpacing(8);
    column->addWidget(new SectionTitle(QStringLiteral("My accounts credentials"), page));
    rows_->setSpacing(0);
    column->addLayout(rows_);
    column->addSpacing(12);
    column->addWidget(new SectionTitle(QStringLiteral("Add new account"), page));
    column->addWidget(makeForm());
    column->addSpacing(12);
    column->addWidget(new TextBlock(TextRole::body, whereToStand, page));
    column->addWidget(new TextBlock(TextRole::hint, statusBarNote, page));
    auto* const single = new TextBlock(TextRole::error, singleAccountNote, page);
    single->setFont(sansFont(footnotePixels));
    column->addWidget(single);
    column->addStretch(1);
    scroller->setContent(page);

    auto* const whole = new QVBoxLayout(this);
    whole->setContentsMargins({});
    whole->addWidget(scroller);

    showAccounts();
    changed_ = credentials_.observe([this] { showAccounts(); });
}

QWidget* AccountsView::makeForm() {
    auto* const form = new QWidget;
    username_ = new GW2TextField(QStringLiteral("Username"), form);
    password_ = new GW2TextField(QStringLiteral("Password"), form);
    password_->setSecret(true);
    auto* const button = new GW2Button(QStringLiteral("Add account"), form);
    auto* const row = new QHBoxLayout(form);
    row->setContentsMargins({});
    row->setSpacing(8);
    row->addWidget(username_, 1);
    row->addWidget(password_, 1);
    row->addWidget(button);
    QObject::connect(button, &QAbstractButton::clicked, this, [this] { add(); });
    QObject::connect(username_, &QLineEdit::returnPressed, password_, [this] { password_->setFocus(); });
    QObject::connect(password_, &QLineEdit::returnPressed, this, [this] { add(); });
    return form;
}

void AccountsView::showAccounts() {
    accounts_ = accountRows(credentials_.accounts());
    clear(*rows_);
    if (accounts_.empty()) return rows_->addWidget(new TextBlock(TextRole::second, noAccounts, this));
    for (const std::string& username : accounts_) showRow(username);
}

void AccountsView::showRow(const std::string& username) {
    rows_->addWidget(new AccountRow(
        QString::fromStdString(username), [this, username] { fill_(username); }, [this, username] { remove(username); },
        this));
}

void AccountsView::add() {
    const std::string username = username_->text().toStdString();
    credentials_.set(username, password_->text().toStdString());
    if (!credentials_.save()) credentials_.remove(username);
    showAccounts();
    username_->clear();
    password_->clear();
    username_->setFocus();
}

void AccountsView::remove(const std::string& username) {
    credentials_.remove(username);
    (void)credentials_.save();
    showAccounts();
}

}  // namespace vantor
