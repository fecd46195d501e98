#pragma once
// The settings in one JSON file of the user's own (0600). A write takes the lock beside the file, reads the file
// afresh, changes its one key and replaces the file atomically: it is on disk when it returns, and two processes lose
// nothing. A damaged file reads as empty; no reader touches it, and the first write sets it aside. Any thread;
// observers on the main thread.

#include <QtCore/QByteArray>
#include <QtCore/QFileSystemWatcher>
#include <QtCore/QJsonObject>
#include <QtCore/QString>
#include <chrono>
#include <functional>
#include <memory>
#include <mutex>

#include "base/MainThread.h"
#include "base/ObserverList.h"
#include "platform/Defaults.h"

namespace vantor {

class JsonDefaults final : public Defaults {
public:
    // Construct and destroy on the main thread. mainThread may be null where nobody observes. A write that does not get
    // the lock in lockPatience fails; another process holds it for one write, some milliseconds.
    JsonDefaults(QString path, MainThread* mainThread,
                 std::chrono::milliseconds lockPatience = std::chrono::seconds(5));
    ~JsonDefaults() override;

    // vantor/settings.json in the user's configuration folder.
    [[nodiscard]] static QString defaultPath();

    [[nodiscard]] std::optional<SettingValue> value(std::string_view key) const override;
    [[nodiscard]] Verdict setValue(std::string_view key, const SettingValue& value) override;
    [[nodiscard]] Verdict removeValue(std::string_view key) override;
    Subscription observe(ChangeHandler handler) override;

private:
    // What tells one state of the file from another without reading it.
    struct Stamp {
        quint64 inode = 0;
        std::chrono::file_clock::time_point written;
        qint64 size = 0;

        [[nodiscard]] bool there() const { return inode != 0; }
        bool operator==(const Stamp&) const = default;
    };
    struct Observers;

    [[nodiscard]] Stamp stampOfFile() const;
    [[nodiscard]] QJsonObject current() const;
    void remember(const Stamp& stamp, const QJsonObject& settings) const;
    [[nodiscard]] Verdict change(std::string_view key, const std::function<void(QJsonObject&, const QString&)>& edit);
    void notice();

    QString path_;
    MainThread* mainThread_;
    std::chrono::milliseconds lockPatience_;

    std::mutex writing_;

    mutable std::mutex mutex_;  // of what follows
    mutable Stamp stamp_;
    mutable QJsonObject cached_;

    std::shared_ptr<Observers> observers_;  // also held by the notices on their way
    std::unique_ptr<QFileSystemWatcher> watcher_;
};

}  // namespace vantor
