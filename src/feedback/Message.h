#pragma once
// One feedback form: what the player wrote, and the sending of it to the maker's service. A message is sent once:
// nothing is retried or kept. Main thread; it may be destroyed while a request is under way, whose answer is then
// dropped.

#include <QtCore/QString>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/MainThread.h"
#include "platform/UrlSession.h"

namespace vantor {

// What the two forms differ in.
struct MessageForm {
    std::optional<std::vector<std::string>> options;  // present: one of them must be chosen
    std::string messageObject;                        // the subject that is sent
    std::string heading;
};

[[nodiscard]] const MessageForm& bugReportForm();
[[nodiscard]] const MessageForm& suggestionForm();

class Message {
public:
    struct Needs {
        UrlSession& session;
        MainThread& mainThread;
        std::string endpoint;  // the service's address, up to and including its path
    };

    Message(MessageForm form, Needs needs);
    Message(const Message&) = delete;
    Message& operator=(const Message&) = delete;

    [[nodiscard]] const MessageForm& form() const { return form_; }
    [[nodiscard]] const std::string& error() const { return lines_->error; }
    [[nodiscard]] const std::string& success() const { return lines_->success; }

    // An index of the form's options.
    void setSelected(std::optional<std::size_t> selected) { selected_ = selected; }
    void setMessage(QString message) { message_ = std::move(message); }
    // Returns at once. A second one while the first is under way is a request of its own; the last answer sets the
    // lines.
    void send();
    // After the two lines changed, on the main thread.
    void onChanged(std::function<void()> handler) { lines_->changed = std::move(handler); }

private:
    struct Lines {
        std::string error;
        std::string success;
        std::function<void()> changed;
        void set(std::string newError, std::string newSuccess);
    };

    [[nodiscard]] std::string bodyText() const;

    MessageForm form_;
    Needs needs_;
    std::optional<std::size_t> selected_;
    QString message_;
    std::shared_ptr<Lines> lines_ = std::make_shared<Lines>();
};

}  // namespace vantor
