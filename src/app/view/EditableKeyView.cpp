#include "app/view/EditableKeyView.h"

#include <QtWidgets/QApplication>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QScrollArea>
#include <QtWidgets/QVBoxLayout>
#include <utility>

namespace vantor {

namespace {

constexpr int messageMargin = 24;  // to the page's fading edge
// As long whatever the key is.
const QString hiddenKey(20, QChar(0x2022));
const QString permissionsNeeded = QStringLiteral("Permissions needed: account, progression");

struct Message {
    QString text;
    TextRole role = TextRole::error;
};

QString missingText(const std::vector<std::string>& missing) {
    if (missing.empty()) return QStringLiteral("This key lacks a permission. ") + permissionsNeeded;
    QStringList names;
    for (const std::string& each : missing) names << QString::fromStdString(each);
    return (names.size() == 1 ? QStringLiteral("This key lacks the permission ")
                              : QStringLiteral("This key lacks the permissions ")) +
           names.join(QStringLiteral(" and ")) + QStringLiteral(". Make a key that has account and progression.");
}

Message messageOf(const ApiKeyField& field) {
    using Trouble = ApiKeyField::Trouble;
    if (field.isChecking()) return {QStringLiteral("Asking the game's web API…"), TextRole::hint};
    switch (field.trouble()) {
        case Trouble::notAKey:
            return {field.modText().empty()
                        ? QStringLiteral("There is no key to confirm yet.")
                        : QStringLiteral("This cannot be an API key: keys have only letters, digits and hyphens.")};
        case Trouble::lacksPermission:
            return {missingText(field.missingPermissions())};
        case Trouble::noAnswer:
            return {QStringLiteral("The game's web API does not answer. The stored key is unchanged.")};
        case Trouble::notStored:
            return {QStringLiteral(
                "The key is good, but the settings file cannot be written. The stored key is unchanged.")};
        case Trouble::none:
            break;
    }
    const bool isEmpty = field.isEditing() ? field.modText().empty() : field.text().empty();
    return {isEmpty ? permissionsNeeded : QString(), TextRole::hint};
}

}  // namespace

EditableKeyView::EditableKeyView(ApiKeyField& field, KeyGain gain, QWidget* parent)
    : QWidget(parent), field_(field), stack_(new QStackedLayout), gain_(std::move(gain)) {
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins({});
    column->setSpacing(4);
    stack_->addWidget(makeRest());
    stack_->addWidget(makeEditor());
    column->addLayout(stack_);
    message_ = new TextBlock(TextRole::hint, {}, this);
    column->addWidget(message_);
    showGain_ =
        new GW2Button(QStringLiteral("Show the events"), QStringLiteral("timer"), GW2ButtonStyle::Kind::primary, this);
    QObject::connect(showGain_, &QAbstractButton::clicked, this, [this] {
        gain_.show();
        // It has been seen.
        field_.cancel();
    });
    column->addWidget(showGain_);
    follow();
    changed_ = field_.observe([this] { follow(); });
    if (gain_.observe) gained_ = gain_.observe([this] { showMessage(); });
}

void EditableKeyView::edit() {
    if (!field_.isEditing()) field_.edit();
    // What is typed or pasted next is meant for the field, also where no click brought the keyboard here.
    window()->activateWindow();
    typed_->setFocus();
    typed_->selectAll();
}

QWidget* EditableKeyView::makeRest() {
    auto* const rest = new QWidget;
    auto* const row = new QHBoxLayout(rest);
    row->setContentsMargins({});
    row->setSpacing(8);
    stored_ = new TextBlock(TextRole::value, {}, rest);
    edit_ = new GW2Button(QStringLiteral("Edit"), QStringLiteral("square.and.pencil"), GW2ButtonStyle::Kind::standard,
                          rest);
    reveal_ = new GW2Button(QString(), QString(), GW2ButtonStyle::Kind::quiet, rest);
    row->addWidget(stored_, 1);
    row->addWidget(reveal_);
    row->addWidget(edit_);
    QObject::connect(edit_, &QAbstractButton::clicked, this, [this] { edit(); });
    QObject::connect(reveal_, &QAbstractButton::clicked, this, [this] {
        revealed_ = !revealed_;
        showStored();
    });
    return rest;
}

QWidget* EditableKeyView::makeEditor() {
    auto* const editor = new QWidget;
    auto* const row = new QHBoxLayout(editor);
    row->setContentsMargins({});
    row->setSpacing(8);
    typed_ = new GW2TextField(QStringLiteral("Insert API Key"), editor);
    confirm_ =
        new GW2Button(QStringLiteral("Confirm"), QStringLiteral("checkmark"), GW2ButtonStyle::Kind::primary, editor);
    auto* const cancel = new GW2Button(QStringLiteral("Cancel"), {}, GW2ButtonStyle::Kind::quiet, editor);
    row->addWidget(typed_, 1);
    row->addWidget(confirm_);
    row->addWidget(cancel);
    QObject::connect(typed_, &QLineEdit::textEdited, this, [this](const QString& text) {
        field_.type(text.toStdString());
        follow();
    });
    QObject::connect(typed_, &QLineEdit::returnPressed, this, [this] { field_.confirm(); });
    QObject::connect(confirm_, &QAbstractButton::clicked, this, [this] { field_.confirm(); });
    QObject::connect(cancel, &QAbstractButton::clicked, this, [this] {
        field_.cancel();
        edit_->setFocus();
    });
    return editor;
}

void EditableKeyView::follow() {
    // Hidden again whenever it has been something else's turn.
    if (field_.isEditing()) revealed_ = false;
    showStored();
    stack_->setCurrentIndex(field_.isEditing() ? 1 : 0);
    if (const QString typed = QString::fromStdString(field_.modText()); typed_->text() != typed) {
        typed_->setText(typed);
        // What stands there is an answer, no key: typing or pasting replaces it.
        if (wasChecking_ && !field_.isChecking()) typed_->selectAll();
    }
    typed_->setReadOnly(field_.isChecking());
    confirm_->setEnabled(!field_.isChecking());
    wasChecking_ = field_.isChecking();
    showMessage();
}

void EditableKeyView::showStored() {
    const QString stored = QString::fromStdString(field_.text());
    const bool isHidden = !stored.isEmpty() && !revealed_;
    stored_->setRole(stored.isEmpty() ? TextRole::hint : TextRole::value);
    stored_->setText(stored.isEmpty() ? QStringLiteral("No key yet") : isHidden ? hiddenKey : stored);
    stored_->setAccessibleName(isHidden ? QStringLiteral("API key, hidden") : QString());
    reveal_->setText(isHidden ? QStringLiteral("Show") : QStringLiteral("Hide"));
    reveal_->setAccessibleName(isHidden ? QStringLiteral("Show the API key") : QStringLiteral("Hide the API key"));
    reveal_->setVisible(!stored.isEmpty());
}

void EditableKeyView::showMessage() {
    const bool gained = field_.isAccepted() && gain_.sentence;
    const auto [text, role] =
        gained ? Message{QStringLiteral("The key is accepted. ") + gain_.sentence(), TextRole::success}
               : messageOf(field_);
    const bool gainIsNew = showGain_->isHidden() && gained && gain_.show;
    showGain_->setVisible(gained && gain_.show);
    // The field in which the key stood is gone.
    if (gainIsNew) showGain_->setFocus(Qt::TabFocusReason);
    if (text == message_->text() && message_->isHidden() == text.isEmpty()) return;
    message_->setRole(role);
    message_->setText(text);
    message_->setVisible(!text.isEmpty());
    // It stands below the field, which may be the last thing in sight. The page grows first.
    if (field_.isChecking() || role == TextRole::error || gained)
        QMetaObject::invokeMethod(this, [this] { bringIntoSight(); }, Qt::QueuedConnection);
}

void EditableKeyView::bringIntoSight() {
    for (QWidget* each = parentWidget(); each; each = each->parentWidget())
        if (auto* const page = qobject_cast<QScrollArea*>(each)) {
            if (QLayout* const column = page->widget()->layout()) column->activate();
            QApplication::sendPostedEvents(page->widget(), QEvent::LayoutRequest);
            return page->ensureWidgetVisible(showGain_->isHidden() ? static_cast<QWidget*>(message_) : showGain_, 0,
                                             messageMargin);
        }
}

}  // namespace vantor
