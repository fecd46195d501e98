#include "Recorder.h"

#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QMetaEnum>

namespace game {
namespace {

QString keyName(int key) {
    const char* name = QMetaEnum::fromType<Qt::Key>().valueToKey(key);
    return name ? QString::fromLatin1(name).mid(4) : QString::number(key);  // without "Key_"
}

}  // namespace

bool Recorder::open(const QString& path) {
    file_.setFileName(path);
    return file_.open(QIODevice::WriteOnly | QIODevice::Truncate);
}

void Recorder::key(const QKeyEvent& event, bool down) {
    write({{QStringLiteral("event"), QStringLiteral("key")},
           {QStringLiteral("down"), down},
           {QStringLiteral("key"), keyName(event.key())},
           {QStringLiteral("text"), event.text()},
           {QStringLiteral("code"), static_cast<int>(event.nativeScanCode())},
           {QStringLiteral("modifiers"), static_cast<int>(event.nativeModifiers())},
           {QStringLiteral("repeat"), event.isAutoRepeat()}});
}

void Recorder::focus(bool in) {
    write({{QStringLiteral("event"), QStringLiteral("focus")}, {QStringLiteral("in"), in}});
}

void Recorder::click(int x, int y) {
    write({{QStringLiteral("event"), QStringLiteral("click")}, {QStringLiteral("x"), x}, {QStringLiteral("y"), y}});
}

void Recorder::write(const QJsonObject& line) {
    if (!file_.isOpen()) return;
    file_.write(QJsonDocument(line).toJson(QJsonDocument::Compact) + '\n');
    file_.flush();
}

}  // namespace game
