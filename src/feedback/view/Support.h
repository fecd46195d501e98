#pragma once
// The Support tab: two feedback forms, how to thank the maker, and the notices on where the content comes from. Main
// thread.

#include <QtWidgets/QWidget>
#include <functional>

#include "base/Scheduler.h"
#include "feedback/Appreciation.h"
#include "feedback/Message.h"

namespace vantor {

struct SupportNeeds {
    Message::Needs message;
    ClipboardManager& clipboardManager;
    Pasteboard& pasteboard;
    SupportData data;
    // In the default browser.
    std::function<void(const std::string& address)> openLink;
};

class Support : public QWidget {
public:
    Support(const SupportNeeds& needs, QWidget* parent);
};

}  // namespace vantor
