#include "ui/FieldMenu.h"

#include <QtCore/QPointer>
#include <QtGui/QClipboard>
#include <QtGui/QGuiApplication>
#include <QtGui/QTextCursor>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPlainTextEdit>
#include <memory>
#include <vector>

#include "ui/ListPopup.h"

namespace vantor {

namespace {

bool pasteboardHasText() { return !QGuiApplication::clipboard()->text().isEmpty(); }

template <typename Field>
void open(Field& field, QPoint place, bool selection, bool secret, bool anything) {
    const bool writable = field.isEnabled() && !field.isReadOnly();
    auto actions = std::make_shared<std::vector<std::function<void()>>>(
        std::vector<std::function<void()>>{[&field] { field.cut(); }, [&field] { field.copy(); },
                                           [&field] { field.paste(); }, [&field] { field.selectAll(); }});
    const QPointer<Field> alive(&field);
    new ListPopup(field, QRect(place, QSize(1, 1)),
                  {.name = QStringLiteral("Edit"),
                   .lines = {{QStringLiteral("Cut"), {}, selection && writable && !secret},
                             {QStringLiteral("Copy"), {}, selection && !secret},
                             {QStringLiteral("Paste"), {}, writable && pasteboardHasText()},
                             {QStringLiteral("Select all"), {}, anything}},
                   .take =
                       [actions, alive](std::size_t index) {
                           if (alive) actions->at(index)();
                       },
                   .closed =
                       [alive](bool byKeyboard) {
                           if (alive && byKeyboard) alive->setFocus(Qt::PopupFocusReason);
                       }});
}

}  // namespace

void openFieldMenu(QLineEdit& field, QPoint place) {
    open(field, place, field.hasSelectedText(), field.echoMode() != QLineEdit::Normal, !field.text().isEmpty());
}

void openFieldMenu(QPlainTextEdit& field, QPoint place) {
    open(field, place, field.textCursor().hasSelection(), false, !field.toPlainText().isEmpty());
}

}  // namespace vantor
