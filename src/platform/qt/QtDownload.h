#pragma once
// Downloads on the toolkit's network stack, one of their own so that nothing of other requests is with them. It lives
// on the main thread and is made at the first task. Construct and destroy on the main thread.

#include <QtCore/QObject>
#include <QtNetwork/QNetworkAccessManager>
#include <memory>

#include "base/TaskQueue.h"
#include "platform/Download.h"

namespace vantor {

class QtDownload final : public Download {
public:
    explicit QtDownload(TaskQueue& queue) : queue_(queue) {}

    void get(DownloadRequest request, Completion completion) override;

private:
    void start(const DownloadRequest& request, const Completion& completion);

    TaskQueue& queue_;
    std::unique_ptr<QNetworkAccessManager> network_;
    QObject mainThread_;  // gives the tasks started elsewhere a way here; dropped with it
};

}  // namespace vantor
