#include "platform/qt/SingleInstance.h"

#include <QtCore/QDir>
#include <QtCore/QElapsedTimer>
#include <QtCore/QLockFile>
#include <QtCore/QPointer>
#include <QtCore/QStandardPaths>
#include <algorithm>

namespace vantor {
namespace {

constexpr int answerTimeout = 2000;    // milliseconds
constexpr int requestTimeout = 15000;  // a long name takes seconds to type
constexpr int lockTimeout = 5000;
constexpr qint64 longestLine = 4096;
const char* const openRequest = "open\n";

}  // namespace

SingleInstance::SingleInstance(std::function<void()> onOpen) : onOpen_(std::move(onOpen)) {
    server_.setSocketOptions(QLocalServer::UserAccessOption);
    QObject::connect(&server_, &QLocalServer::newConnection, [this] { answerRequests(); });
}

QString SingleInstance::nameFor(const QByteArray& display) {
    QByteArray session = display;
    const auto colon = session.lastIndexOf(':');
    if (const auto dot = session.indexOf('.', colon < 0 ? 0 : colon); colon >= 0 && dot > 0) session.truncate(dot);
    session.replace('/', '_');
    return QStringLiteral("vantor-") + QString::fromLocal8Bit(session) + QStringLiteral(".socket");
}

SingleInstance::Role SingleInstance::claim(const QString& name) {
    const QString path = pathOf(name);
    if (path.isEmpty()) return Role::unavailable;
    // Two starts at the same moment: one of them asks and listens before the other does.
    QLockFile lock(path + QStringLiteral(".lock"));
    if (!lock.tryLock(lockTimeout)) return Role::unavailable;
    if (askTheFirst(path)) return Role::second;
    // Nobody listens: what lies there is the socket of a process that was killed.
    QLocalServer::removeServer(path);
    return server_.listen(path) ? Role::first : Role::unavailable;
}

QString SingleInstance::pathOf(const QString& name) {
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    return folder.isEmpty() ? QString() : QDir(folder).filePath(name);
}

SingleInstance::Reply SingleInstance::request(const QString& name, const std::string& line) {
    const QString path = pathOf(name);
    QLocalSocket socket;
    if (path.isEmpty()) return {};
    socket.connectToServer(path);
    if (!socket.waitForConnected(answerTimeout)) return {};
    socket.write(QByteArray::fromStdString(line) + '\n');
    QElapsedTimer waited;
    waited.start();
    while (!socket.canReadLine())
        if (!socket.waitForReadyRead(std::max(0, requestTimeout - static_cast<int>(waited.elapsed())))) break;
    if (!socket.canReadLine()) return {.running = true};
    return {.running = true, .line = socket.readLine().chopped(1).toStdString()};
}

bool SingleInstance::askTheFirst(const QString& path) {
    QLocalSocket socket;
    socket.connectToServer(path);
    if (!socket.waitForConnected(answerTimeout)) return false;
    socket.write(openRequest);
    socket.waitForBytesWritten(answerTimeout);
    // A first one that is busy reads it later; it runs all the same.
    return true;
}

void SingleInstance::answerRequests() {
    while (auto* socket = server_.nextPendingConnection()) {
        QObject::connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
        const auto read = [this, socket = QPointer(socket)] {
            while (socket && socket->canReadLine()) {
                const QByteArray line = socket->readLine();
                if (line == openRequest)
                    onOpen_();
                else
                    answerLine(*socket, line.chopped(1));
            }
            if (socket && socket->bytesAvailable() > longestLine) socket->abort();
        };
        QObject::connect(socket, &QLocalSocket::readyRead, socket, read);
        read();
    }
}

void SingleInstance::answerLine(QLocalSocket& socket, const QByteArray& line) {
    if (!onRequest_) return socket.disconnectFromServer();
    const QPointer<QLocalSocket> asking(&socket);
    const Answer answer = onRequest_(line.toStdString());
    if (asking) {
        asking->write(QByteArray::fromStdString(answer.line) + '\n');
        asking->waitForBytesWritten(answerTimeout);
    }
    if (answer.afterwards) answer.afterwards();
}

}  // namespace vantor
