#include "platform/qt/SingleInstance.h"

#include <QDir>
#include <QLocalSocket>
#include <QLockFile>
#include <QStandardPaths>

namespace vantor {
namespace {

constexpr int answerTimeout = 2000;  // milliseconds
constexpr int lockTimeout = 5000;
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
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    if (folder.isEmpty()) return Role::unavailable;
    const QString path = QDir(folder).filePath(name);
    // Two starts at the same moment: one of them asks and listens before the other does.
    QLockFile lock(path + QStringLiteral(".lock"));
    if (!lock.tryLock(lockTimeout)) return Role::unavailable;
    if (askTheFirst(path)) return Role::second;
    // Nobody listens: what lies there is the socket of a process that was killed.
    QLocalServer::removeServer(path);
    return server_.listen(path) ? Role::first : Role::unavailable;
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
        const auto read = [this, socket] {
            while (socket->canReadLine())
                if (socket->readLine() == openRequest) onOpen_();
        };
        QObject::connect(socket, &QLocalSocket::readyRead, socket, read);
        read();
    }
}

}  // namespace vantor
