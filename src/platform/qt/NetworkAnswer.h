#pragma once
// What counts as an answer of a server, for everybody who asks on the toolkit's network stack. Main thread.

#include <QtCore/QVariant>
#include <QtNetwork/QNetworkReply>
#include <QtNetwork/QNetworkRequest>

namespace vantor {

// An HTTP status of whatever kind is an answer, and so is an embedded resource; anything else that went wrong is none.
[[nodiscard]] inline bool wasAnswered(const QNetworkReply& reply) {
    if (reply.error() == QNetworkReply::NoError) return true;
    // Below are the errors of connection and proxy; a breakdown of the protocol may come after the status line.
    const bool aborted =
        reply.error() < QNetworkReply::ContentAccessDenied || reply.error() == QNetworkReply::ProtocolFailure;
    return !aborted && reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).isValid();
}

}  // namespace vantor
