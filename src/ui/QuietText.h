#pragma once
// What an empty place says: a title and one calm sentence, centred. Main thread.

#include <QtWidgets/QWidget>

namespace vantor {

class QuietText : public QWidget {
public:
    explicit QuietText(QWidget* parent);
    void setText(const QString& title, const QString& sentence);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString title_;
    QString sentence_;
};

}  // namespace vantor
