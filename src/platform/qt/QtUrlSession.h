#pragma once
// Data tasks on the toolkit's network stack, embedded resources (qrc:) among them. The stack lives on the main thread
// and is made at the first task; completions go to the session queue. Construct and destroy on the main thread.

#include <QtCore/QObject>
#include <QtNetwork/QNetworkAccessManager>
#include <QtNetwork/QNetworkReply>
#include <functional>
#include <memory>

#include "base/TaskQueue.h"
#include "platform/UrlSession.h"

namespace vantor {

class QtUrlSession final : public UrlSession {
public:
    explicit QtUrlSession(TaskQueue& queue) : queue_(queue) {}

    void dataTask(UrlRequest request, Completion completion) override;
    void statusTask(UrlRequest request, StatusCompletion completion) override;

private:
    void send(UrlRequest request, std::function<void(QNetworkReply&)> finished);

    TaskQueue& queue_;
    std::unique_ptr<QNetworkAccessManager> network_;
    QObject mainThread_;  // gives the tasks started elsewhere a way here; dropped with the session
};

}  // namespace vantor
