#include "platform/qt/QtDownload.h"

#include <QtCore/QMetaObject>
#include <QtCore/QTimer>
#include <QtNetwork/QNetworkReply>
#include <QtNetwork/QNetworkRequest>
#include <utility>

#include "platform/qt/NetworkAnswer.h"

namespace vantor {

namespace {

QNetworkRequest networkRequest(const DownloadRequest& request) {
    QNetworkRequest result(QUrl(QString::fromStdString(request.url), QUrl::StrictMode));
    // The stack would unpack what is packed, and a little may unpack to very much.
    result.setRawHeader("Accept-Encoding", "identity");
    result.setRawHeader("Accept-Language", "*");
    result.setRawHeader("User-Agent", "Vantor");
    if (!request.etag.empty()) result.setRawHeader("If-None-Match", QByteArray::fromStdString(request.etag));
    result.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::SameOriginRedirectPolicy);
    for (const auto attribute :
         {QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::CookieSaveControlAttribute,
          QNetworkRequest::AuthenticationReuseAttribute})
        result.setAttribute(attribute, QNetworkRequest::Manual);
    return result;
}

std::optional<DownloadAnswer> answerOf(QNetworkReply& reply) {
    const QVariant status = reply.attribute(QNetworkRequest::HttpStatusCodeAttribute);
    if (!wasAnswered(reply) || !status.isValid()) return std::nullopt;
    const auto header = [&](const char* name) { return reply.rawHeader(name).toStdString(); };
    return DownloadAnswer{status.toInt(), header("ETag"), header("Retry-After"), reply.readAll().toStdString()};
}

}  // namespace

void QtDownload::get(DownloadRequest request, Completion completion) {
    QMetaObject::invokeMethod(
        &mainThread_,
        [this, request = std::move(request), completion = std::move(completion)] { start(request, completion); },
        Qt::QueuedConnection);
}

void QtDownload::start(const DownloadRequest& request, const Completion& completion) {
    if (!network_) network_ = std::make_unique<QNetworkAccessManager>();
    QNetworkReply* const reply = network_->get(networkRequest(request));
    auto* const deadline = new QTimer(reply);
    deadline->setSingleShot(true);
    QObject::connect(deadline, &QTimer::timeout, reply, [reply] { reply->abort(); });
    deadline->start(request.deadline);
    QObject::connect(reply, &QNetworkReply::readyRead, reply, [reply, atMost = request.atMost] {
        if (reply->bytesAvailable() > static_cast<qint64>(atMost)) reply->abort();
    });
    QObject::connect(reply, &QNetworkReply::finished, reply, [this, reply, completion] {
        reply->deleteLater();
        queue_.post([completion, answer = answerOf(*reply)] { completion(answer); });
    });
}

}  // namespace vantor
