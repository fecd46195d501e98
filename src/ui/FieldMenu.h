#pragma once
// The menu of a text field: cut, copy, paste, select all. Opens inside the window, since the toolkit's own is a window
// that would take the focus from the overlay. Main thread.

#include <QtCore/QPoint>
#include <functional>

class QLineEdit;
class QPlainTextEdit;

namespace vantor {

void openFieldMenu(QLineEdit& field, QPoint place);
void openFieldMenu(QPlainTextEdit& field, QPoint place);

}  // namespace vantor
