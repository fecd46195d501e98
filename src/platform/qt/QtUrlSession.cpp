#include "platform/qt/QtUrlSession.h"

#include <QtCore/QMetaObject>
#include <QtNetwork/QNetworkReply>
#include <QtNetwork/QNetworkRequest>
#include <utility>

#include "platform/qt/NetworkAnswer.h"

namespace vantor {

namespace {

QNetworkRequest networkRequest(const UrlRequest& request) {
    QNetworkRequest result(QUrl(QString::fromStdString(request.url), QUrl::StrictMode));
    bool carriesSecret = false;
    for (const auto& [name, value] : request.headers) {
        const QByteArray header = QByteArray::fromStdString(name);
        result.setRawHeader(header, QByteArray::fromStdString(value));
        carriesSecret = carriesSecret || header.compare("Authorization", Qt::CaseInsensitive) == 0;
    }
    // The stack would send the header along to wherever it is redirected.
    result.setAttribute(QNetworkRequest::RedirectPolicyAttribute, carriesSecret
                                                                      ? QNetworkRequest::SameOriginRedirectPolicy
                                                                      : QNetworkRequest::NoLessSafeRedirectPolicy);
    result.setTransferTimeout(static_cast<int>(std::chrono::milliseconds(request.timeout).count()));
    return result;
}

}  // namespace

void QtUrlSession::dataTask(UrlRequest request, Completion completion) {
    send(std::move(request), [this, completion = std::move(completion)](QNetworkReply& reply) {
        std::optional<std::string> body;
        if (wasAnswered(reply)) body = reply.readAll().toStdString();
        if (body && body->empty()) body.reset();
        queue_.post([completion, body = std::move(body)]() mutable { completion(std::move(body)); });
    });
}

void QtUrlSession::statusTask(UrlRequest request, StatusCompletion completion) {
    send(std::move(request), [this, completion = std::move(completion)](QNetworkReply& reply) {
        std::optional<int> status;
        const QVariant known = reply.attribute(QNetworkRequest::HttpStatusCodeAttribute);
        if (wasAnswered(reply) && known.isValid()) status = known.toInt();
        queue_.post([completion, status] { completion(status); });
    });
}

void QtUrlSession::send(UrlRequest request, std::function<void(QNetworkReply&)> finished) {
    QMetaObject::invokeMethod(
        &mainThread_,
        [this, request = std::move(request), finished = std::move(finished)] {
            if (!network_) network_ = std::make_unique<QNetworkAccessManager>();
            // Only `get` also serves embedded resources.
            QNetworkReply* reply =
                request.method == "GET"
                    ? network_->get(networkRequest(request))
                    : network_->sendCustomRequest(networkRequest(request), QByteArray::fromStdString(request.method),
                                                  QByteArray::fromStdString(request.body));
            QObject::connect(reply, &QNetworkReply::finished, reply, [reply, finished] {
                reply->deleteLater();
                finished(*reply);
            });
        },
        Qt::QueuedConnection);
}

}  // namespace vantor
