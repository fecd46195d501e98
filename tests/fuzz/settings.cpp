// The settings file with any bytes in it. Reading leaves the file alone. A write keeps each value that could be read,
// and every foreign one beside it; a file that is no settings file at all is kept whole under another name. What was
// written is read by the next program.

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QJsonDocument>
#include <QtCore/QTemporaryDir>
#include <map>

#include "Fuzz.h"
#include "app/Settings.h"
#include "platform/qt/JsonDefaults.h"

namespace vantor::fuzz {
namespace {

using Readable = std::map<std::string, SettingValue>;

// In memory where the system has such a folder: each run writes to the disk several times.
const QString& folder() {
    static const QTemporaryDir made(QDir(QStringLiteral("/dev/shm")).exists()
                                        ? QStringLiteral("/dev/shm/vantor-fuzz-XXXXXX")
                                        : QStringLiteral("vantor-fuzz-XXXXXX"));
    static const QString path = made.path();
    return path;
}

QByteArray contents(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

Readable readable(const JsonDefaults& defaults) {
    Readable values;
    for (const Setting& setting : allSettings())
        if (auto value = defaults.value(setting.key)) values.emplace(setting.key, *std::move(value));
    return values;
}

SettingValue sample(SettingType type) {
    switch (type) {
        case SettingType::boolean:
            return true;
        case SettingType::number:
            return -0.25;
        case SettingType::text:
            return std::string("⌘ + ⇧ + T");
        case SettingType::texts:
            break;
    }
    return std::vector<std::string>{"net.example", ""};
}

}  // namespace

void run(Input input) {
    const std::uint8_t choice = input.byte();
    const QByteArray bytes(input.rest().data(), static_cast<qsizetype>(input.rest().size()));
    const QString path = folder() + QStringLiteral("/settings.json");
    const QString aside = path + QStringLiteral(".damaged");
    QFile::remove(aside);
    QFile file(path);
    require(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size(), "the harness can write its file");
    file.close();

    const JsonDefaults reader(path, nullptr);
    const Readable before = readable(reader);
    require(contents(path) == bytes && !QFile::exists(aside), "readers leave the file alone");
    QJsonObject stored = QJsonDocument::fromJson(bytes).object();
    // Independent of the store: of a sound file every boolean, number and text is read.
    for (const Setting& setting : allSettings()) {
        const QJsonValue value = stored.value(QString::fromUtf8(setting.key.data(), qsizetype(setting.key.size())));
        if (!value.isArray())
            require(
                before.contains(std::string(setting.key)) == (value.isBool() || value.isDouble() || value.isString()),
                "what is sound is read, and no more", std::string(setting.key));
    }

    const Setting& setting = allSettings()[choice % allSettings().size()];
    const bool removes = (choice & 0x80) != 0;
    JsonDefaults writer(path, nullptr);
    require((removes ? writer.removeValue(setting.key) : writer.setValue(setting.key, sample(setting.type))) ==
                Defaults::Verdict::stored,
            "a write to a file of the user's own succeeds");
    Readable expected = before;
    expected.erase(std::string(setting.key));
    if (!removes) expected.emplace(setting.key, sample(setting.type));
    require(readable(JsonDefaults(path, nullptr)) == expected && readable(reader) == expected,
            "a write keeps what could be read, for the next program and an older reader", contents(path).toStdString());

    // Written and read once, since the toolkit reads a text without a byte-order mark at its start.
    const bool sound = QJsonDocument::fromJson(bytes).isObject() || bytes.trimmed().isEmpty();
    stored = QJsonDocument::fromJson(QJsonDocument(stored).toJson()).object();
    QJsonObject now = QJsonDocument::fromJson(contents(path)).object();
    for (QJsonObject* each : {&stored, &now})
        each->remove(QString::fromUtf8(setting.key.data(), qsizetype(setting.key.size())));
    require(stored == now, "a write keeps what it does not know", contents(path).toStdString());
    require(sound ? !QFile::exists(aside) : contents(aside) == bytes, "a damaged file, and no other, is kept whole");
}

}  // namespace vantor::fuzz
