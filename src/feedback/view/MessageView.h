#pragma once
// One feedback form: heading, the choice of a severity where there is one, the text, the two lines and "Send". Main
// thread.

#include <QtWidgets/QWidget>

#include "feedback/Message.h"
#include "ui/TextBlock.h"

namespace vantor {

class MessageView : public QWidget {
public:
    MessageView(const MessageForm& form, const Message::Needs& needs, QWidget* parent);

private:
    void showLines();

    Message message_;
    TextBlock* error_;
    TextBlock* success_;
};

}  // namespace vantor
