#include "feedback/view/MessageView.h"

#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QVBoxLayout>

#include "ui/GW2Button.h"
#include "ui/GW2Picker.h"
#include "ui/GW2TextArea.h"

namespace vantor {

MessageView::MessageView(const MessageForm& form, const Message::Needs& needs, QWidget* parent)
    : QWidget(parent),
      message_(form, needs),
      error_(new TextBlock(TextRole::error, QString(), this)),
      success_(new TextBlock(TextRole::success, QString(), this)) {
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(4, 8, 4, 4);
    column->setSpacing(8);
    column->addWidget(new TextBlock(TextRole::heading, QString::fromStdString(form.heading), this));
    if (form.options) {
        auto* const picker = new GW2Picker(QStringLiteral("How bad it is"), this);
        picker->setPlaceholder(QStringLiteral("Choose how bad it is"));
        std::vector<GW2PickerOption> options;
        for (const std::string& option : *form.options) options.push_back({option, QString::fromStdString(option)});
        picker->setOptions(std::move(options));
        picker->onChosen([this, picker](const GW2PickerOption&) { message_.setSelected(picker->chosenIndex()); });
        column->addWidget(picker, 0, Qt::AlignLeft);
    }
    auto* const text = new GW2TextArea(QStringLiteral("Describe it here"), this);
    QObject::connect(text, &QPlainTextEdit::textChanged, this,
                     [this, text] { message_.setMessage(text->toPlainText()); });
    column->addWidget(text, 1);
    auto* const foot = new QHBoxLayout;
    foot->addWidget(error_, 1);
    foot->addWidget(success_, 1);
    auto* const send = new GW2Button(QStringLiteral("Send"), QString(), GW2ButtonStyle::Kind::primary, this);
    QObject::connect(send, &QAbstractButton::clicked, this, [this] { message_.send(); });
    foot->addWidget(send, 0, Qt::AlignRight);
    column->addLayout(foot);
    message_.onChanged([this] { showLines(); });
    showLines();
}

void MessageView::showLines() {
    error_->setText(QString::fromStdString(message_.error()));
    success_->setText(QString::fromStdString(message_.success()));
    error_->setVisible(!message_.error().empty());
    // Keeps the button at the right while neither line says anything.
    success_->setVisible(message_.error().empty());
}

}  // namespace vantor
