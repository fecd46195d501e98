#include "app/view/EditableKeyView.h"

#include <QtWidgets/QApplication>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QScrollArea>
#include <QtWidgets/QVBoxLayout>

namespace vantor {

namespace {

constexpr int messageMargin = 24;  // to the page's fading edge

}  // namespace

EditableKeyView::EditableKeyView(ApiKeyField& field, QWidget* parent)
    : QWidget(parent), field_(field), stack_(new QStackedLayout) {
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins({});
    column->setSpacing(4);
    stack_->addWidget(makeRest());
    stack_->addWidget(makeEditor());
    column->addLayout(stack_);
    message_ = new TextBlock(TextRole::hint, {}, this);
    column->addWidget(message_);
    follow();
    changed_ = field_.observe([this] { follow(); });
}

QWidget* EditableKeyView::makeRest() {
    auto* const rest = new QWidget;
    auto* const row = new QHBoxLayout(rest);
    row->setContentsMargins({});
    row->setSpacing(8);
    stored_ = new TextBlock(TextRole::value, {}, rest);
    edit_ = new GW2Button(QStringLiteral("Edit"), QStringLiteral("square.and.pencil"), GW2ButtonStyle::Kind::standard,
                          rest);
    row->addWidget(stored_, 1);
    row->addWidget(edit_);
    QObject::connect(edit_, &QAbstractButton::clicked, this, [this] {
        field_.edit();
        typed_->setFocus();
        typed_->selectAll();
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
    QObject::connect(typed_, &QLineEdit::textEdited, this,
                     [this](const QString& text) { field_.type(text.toStdString()); });
    QObject::connect(typed_, &QLineEdit::returnPressed, this, [this] { field_.confirm(); });
    QObject::connect(confirm_, &QAbstractButton::clicked, this, [this] { field_.confirm(); });
    QObject::connect(cancel, &QAbstractButton::clicked, this, [this] {
        field_.cancel();
        edit_->setFocus();
    });
    return editor;
}

void EditableKeyView::follow() {
    const QString stored = QString::fromStdString(field_.text());
    stored_->setRole(stored.isEmpty() ? TextRole::hint : TextRole::value);
    stored_->setText(stored.isEmpty() ? QStringLiteral("No key yet") : stored);
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

void EditableKeyView::showMessage() {
    QString text;
    TextRole role = TextRole::hint;
    if (field_.isChecking()) {
        text = QStringLiteral("Asking the game's web API…");
    } else if (field_.trouble() == ApiKeyField::Trouble::noAnswer) {
        text = QStringLiteral("The game's web API does not answer. The stored key is unchanged.");
        role = TextRole::error;
    } else if (field_.trouble() == ApiKeyField::Trouble::notStored) {
        text = QStringLiteral("The key is good, but the settings file cannot be written. The stored key is unchanged.");
        role = TextRole::error;
    }
    message_->setRole(role);
    message_->setText(text);
    message_->setVisible(!text.isEmpty());
    // It stands below the field, which may be the last thing in sight. The page grows first.
    if (!text.isEmpty()) QMetaObject::invokeMethod(this, [this] { bringIntoSight(); }, Qt::QueuedConnection);
}

void EditableKeyView::bringIntoSight() {
    for (QWidget* each = parentWidget(); each; each = each->parentWidget())
        if (auto* const page = qobject_cast<QScrollArea*>(each)) {
            if (QLayout* const column = page->widget()->layout()) column->activate();
            QApplication::sendPostedEvents(page->widget(), QEvent::LayoutRequest);
            return page->ensureWidgetVisible(message_, 0, messageMargin);
        }
}

}  // namespace vantor
