#include "input/PastedText.h"

#include <QtCore/QString>

namespace vantor {

std::string pastedText(const std::string& clipboard) {
    QString text = QString::fromStdString(clipboard);
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    text.removeIf([](QChar each) {
        return each.category() == QChar::Other_Control && each != u'\t' && each != u'\n' && each != u'\r';
    });
    // A lone carriage return and a line end behind it are two.
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\r\r"));
    return text.toStdString();
}

}  // namespace vantor
