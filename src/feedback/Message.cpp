#include "feedback/Message.h"

#include <utility>

#include "data/Graphemes.h"
#include "feedback/FormEncoding.h"

namespace vantor {

namespace {

constexpr std::string_view installationKey = "q4m7c2x9v5k8r3tz";  // the same in every copy
constexpr std::size_t shortestMessage = 20;
constexpr int received = 200;

}  // namespace

const MessageForm& bugReportForm() {
    static const MessageForm form{
        std::vector<std::string>{"BLOCKER: something ceased working", "MAJOR: can be used, but there's errors",
                                 "TRIVIAL: not ruining user experience, but should be fixed"},
        "BUG REPORT", "Something's not working in Vantor? Tell me!"};
    return form;
}

const MessageForm& suggestionForm() {
    static const MessageForm form{std::nullopt, "SUGGESTION",
                                  "Write your suggestions and ideas! Let's improve Vantor!"};
    return form;
}

Message::Message(MessageForm form, Needs needs) : form_(std::move(form)), needs_(std::move(needs)) {}

void Message::Lines::set(std::string newError, std::string newSuccess) {
    error = std::move(newError);
    success = std::move(newSuccess);
    if (changed) changed();
}

std::string Message::bodyText() const {
    const std::string typed = message_.toStdString();
    return form_.options && selected_ ? form_.options->at(*selected_) + "\n\n" + typed : typed;
}

void Message::send() {
    if (form_.options && !selected_) return lines_->set("An option must be selected.", {});
    if (graphemeCount(message_) < shortestMessage)
        return lines_->set("Please describe thoroughly, the description is too short.", {});
    lines_->set({}, "Sending feedback...");

    UrlRequest request;
    request.method = "POST";
    request.url = needs_.endpoint;
    request.body = encodeQueryItems(
        {{"id", std::string(installationKey)}, {"subject", form_.messageObject}, {"message", bodyText()}});
    needs_.session.statusTask(
        std::move(request), [&mainThread = needs_.mainThread, form = std::weak_ptr(lines_)](std::optional<int> status) {
            mainThread.post([form, status] {
                const auto lines = form.lock();
                if (!lines) return;
                if (status == received)
                    lines->set({}, "Feedback sent successfully!");
                else
                    lines->set("Task failed...retry later...", {});
            });
        });
}

}  // namespace vantor
