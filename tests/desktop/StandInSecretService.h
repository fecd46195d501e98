#pragma once
// A Secret Service for the tests, on a bus name of its own: one collection that a test locks, with a prompt that it
// accepts, refuses or leaves unanswered; and one that takes calls and never answers. Main thread.

#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusVirtualObject>
#include <map>
#include <optional>

namespace vantor {

class StandInSecretService final : public QDBusVirtualObject {
public:
    // Ignored, a prompt ends when whoever asked for it gives up; abandoned, never.
    enum class Prompts { accept, dismiss, ignore, abandon };

    explicit StandInSecretService(const QString& busName);
    ~StandInSecretService() override;

    bool isLocked = false;
    bool answers = true;
    Prompts prompts = Prompts::accept;
    int prompted = 0;
    QStringList calls;                    // members, in order
    std::map<QString, QByteArray> items;  // secret by object path
    QMap<QString, QString> attributes;    // of the last item that was made
    QString label;

    [[nodiscard]] QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

private:
    [[nodiscard]] QVariantMap propertiesOf(const QString& path, const QString& interface) const;
    [[nodiscard]] QDBusMessage answerTo(const QDBusMessage& message);
    void finishPrompt(const QString& path);

    QDBusConnection bus_;
    QString busName_;
    int nextItem_ = 0;
};

}  // namespace vantor
