#include "platform/qt/JsonDefaults.h"

#include <sys/stat.h>

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QLockFile>
#include <QtCore/QSaveFile>
#include <QtCore/QStandardPaths>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <set>
#include <utility>

namespace vantor {

namespace {

// File times tick slowly (4 ms on Linux), and an inode is soon used again: a file written a moment ago may change once
// more and look the same.
constexpr std::chrono::milliseconds settlingTime{50};

QString textOf(std::string_view text) { return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())); }

std::optional<SettingValue> settingOf(const QJsonValue& value) {
    std::optional<SettingValue> setting;
    if (value.isBool()) {
        setting.emplace(value.toBool());
    } else if (value.isDouble()) {
        setting.emplace(value.toDouble());
    } else if (value.isString()) {
        setting.emplace(value.toString().toStdString());
    } else if (value.isArray()) {
        std::vector<std::string> texts;
        for (const QJsonValue element : value.toArray()) {
            if (!element.isString()) return std::nullopt;
            texts.push_back(element.toString().toStdString());
        }
        setting.emplace(std::move(texts));
    }
    return setting;
}

QJsonValue jsonOf(const SettingValue& value) {
    if (const auto* boolean = std::get_if<bool>(&value)) return {*boolean};
    if (const auto* number = std::get_if<double>(&value)) return {*number};
    if (const auto* text = std::get_if<std::string>(&value)) return {QString::fromStdString(*text)};
    QJsonArray array;
    for (const std::string& text : std::get<std::vector<std::string>>(value))
        array.append(QString::fromStdString(text));
    return array;
}

enum class Condition { sound, damaged, unreadable };

struct Store {
    Condition condition = Condition::sound;
    QJsonObject settings;
};

// An absent or empty file is an empty store.
Store readStore(const QString& path) {
    QFile file(path);
    if (!file.exists()) return {};
    if (!file.open(QIODevice::ReadOnly)) return {Condition::unreadable, {}};
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError) return {Condition::unreadable, {}};
    if (bytes.trimmed().isEmpty()) return {};
    const auto document = QJsonDocument::fromJson(bytes);
    if (!document.isObject()) return {Condition::damaged, {}};
    return {Condition::sound, document.object()};
}

bool setAside(const QString& path) {
    QString aside = path + QStringLiteral(".damaged");
    for (int number = 2; QFile::exists(aside); ++number) aside = path + QStringLiteral(".damaged.%1").arg(number);
    if (!QFile::rename(path, aside)) return false;
    std::fprintf(stderr, "%s was damaged and is now %s\n", qPrintable(path), qPrintable(aside));
    return true;
}

bool replaceStore(const QString& path, const QJsonObject& store) {
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) return false;
    // Before the first byte: the file holds the player's API key.
    if (!file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner)) return false;
    const QByteArray bytes = QJsonDocument(store).toJson();
    // The flush is asked for, since the commit does not look whether its own one failed.
    return file.write(bytes) == bytes.size() && file.flush() && file.commit();
}

bool makeFolder(const QString& folder) {
    if (QFileInfo::exists(folder)) return true;
    return QDir().mkpath(folder) &&
           QFile::setPermissions(folder, QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
}

Defaults::Verdict refuse(const QString& path, const char* why) {
    std::fprintf(stderr, "settings not stored in %s: %s\n", qPrintable(path), why);
    return Defaults::Verdict::failed;
}

}  // namespace

struct JsonDefaults::Observers {
    ObserverList<ChangeHandler> list;
    QJsonObject known;  // main thread: what the observers were last told
    bool watching = false;
};

JsonDefaults::JsonDefaults(QString path, MainThread* mainThread, std::chrono::milliseconds lockPatience)
    : path_(std::move(path)),
      mainThread_(mainThread),
      lockPatience_(lockPatience),
      observers_(std::make_shared<Observers>()) {}

JsonDefaults::~JsonDefaults() = default;

QString JsonDefaults::defaultPath() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QStringLiteral("/vantor/settings.json");
}

JsonDefaults::Stamp JsonDefaults::stampOfFile() const {
    struct stat status = {};
    if (stat(QFile::encodeName(path_).constData(), &status) != 0) return {};
    std::error_code absent;
    const auto written = std::filesystem::last_write_time(path_.toStdString(), absent);
    if (absent) return {};
    return {status.st_ino, written, status.st_size};
}

void JsonDefaults::remember(const Stamp& stamp, const QJsonObject& settings) const {
    cached_ = settings;
    const bool settled = std::chrono::file_clock::now() - stamp.written > settlingTime;
    stamp_ = settled ? stamp : Stamp();
}

QJsonObject JsonDefaults::current() const {
    const std::lock_guard lock(mutex_);
    const Stamp stamp = stampOfFile();
    if (!stamp.there()) return {};
    if (stamp != stamp_) remember(stamp, readStore(path_).settings);
    return cached_;
}

std::optional<SettingValue> JsonDefaults::value(std::string_view key) const {
    return settingOf(current().value(textOf(key)));
}

Defaults::Verdict JsonDefaults::setValue(std::string_view key, const SettingValue& value) {
    const auto* number = std::get_if<double>(&value);
    if (number && !std::isfinite(*number)) return refuse(path_, "no finite number");
    return change(key, [&](QJsonObject& store, const QString& name) { store.insert(name, jsonOf(value)); });
}

Defaults::Verdict JsonDefaults::removeValue(std::string_view key) {
    return change(key, [](QJsonObject& store, const QString& name) { store.remove(name); });
}

Defaults::Verdict JsonDefaults::change(std::string_view key,
                                       const std::function<void(QJsonObject&, const QString&)>& edit) {
    {
        // Apart from the readers' mutex: a reader does not wait for the disk or for another process.
        const std::lock_guard oneWriter(writing_);
        if (!makeFolder(QFileInfo(path_).absolutePath())) return refuse(path_, "its folder cannot be made");
        QLockFile lock(path_ + QStringLiteral(".lock"));
        if (!lock.tryLock(static_cast<int>(lockPatience_.count()))) {
            const bool taken = lock.error() == QLockFile::LockFailedError;
            return refuse(path_, taken ? "another program keeps it locked" : "its lock cannot be made");
        }
        Store store = readStore(path_);
        if (store.condition == Condition::unreadable) return refuse(path_, "it cannot be read");
        if (store.condition == Condition::damaged && !setAside(path_))
            return refuse(path_, "it is damaged and cannot be set aside");
        edit(store.settings, textOf(key));
        if (!replaceStore(path_, store.settings)) return refuse(path_, "the disk refused");
        const std::lock_guard guard(mutex_);
        remember(stampOfFile(), store.settings);
    }
    if (mainThread_) {
        mainThread_->post([this, alive = std::weak_ptr(observers_)] {
            if (alive.lock()) notice();
        });
    }
    return Verdict::stored;
}

Subscription JsonDefaults::observe(ChangeHandler handler) {
    if (!observers_->watching && mainThread_) {
        observers_->watching = true;
        observers_->known = current();
        const QString folder = QFileInfo(path_).absolutePath();
        (void)makeFolder(folder);
        // The folder, since each write puts a new file in the old one's place.
        watcher_ = std::make_unique<QFileSystemWatcher>(QStringList{folder});
        QObject::connect(watcher_.get(), &QFileSystemWatcher::directoryChanged, watcher_.get(), [this] { notice(); });
    }
    return observers_->list.add(std::move(handler));
}

void JsonDefaults::notice() {
    const QJsonObject now = current();
    const QJsonObject before = std::exchange(observers_->known, now);
    if (now == before) return;
    std::set<QString> keys;
    for (auto entry = now.begin(); entry != now.end(); ++entry)
        if (before.value(entry.key()) != entry.value()) keys.insert(entry.key());
    for (const QString& key : before.keys())
        if (!now.contains(key)) keys.insert(key);

    const auto observers = observers_;  // a handler may end the store
    for (const QString& key : keys) observers->list.tell(key.toStdString());
}

}  // namespace vantor
