// The settings file with any bytes in it. Reading is the same every time and leaves the file alone. A write keeps each
// value that could be read, and every foreign one beside it, in the file; a file that is no settings file at all is
// kept whole under another name. What was written is read by the next program.

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QTemporaryDir>
#include <map>

#include "Finding.h"
#include "app/Settings.h"
#include "platform/qt/JsonDefaults.h"

namespace vantor::fuzz {
namespace {

using Readable = std::map<std::string, SettingValue>;

// In memory where the system has such a folder: each run writes to the disk several times.
QTemporaryDir& folder() {
    static QTemporaryDir made(QDir(QStringLiteral("/dev/shm")).exists() ? QStringLiteral("/dev/shm/vantor-fuzz-XXXXXX")
                                                                        : QStringLiteral("vantor-fuzz-XXXXXX"));
    return made;
}

QByteArray contents(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void place(const QString& path, std::string_view bytes) {
    QFile file(path);
    require(file.open(QIODevice::WriteOnly), "the harness can write its file");
    file.write(bytes.data(), static_cast<qsizetype>(bytes.size()));
}

Readable readable(const JsonDefaults& defaults) {
    Readable values;
    for (const Setting& setting : allSettings())
        if (auto value = defaults.value(setting.key)) values.emplace(setting.key, *std::move(value));
    return values;
}

SettingValue sample(SettingType type, bool other) {
    switch (type) {
        case SettingType::boolean:
            return other;
        case SettingType::number:
            return other ? 3.5 : -0.25;
        case SettingType::text:
            return std::string(other ? "⌘ + ⇧ + T" : "");
        case SettingType::texts:
            return std::vector<std::string>{"net.example", other ? "ü" : ""};
    }
    return false;
}

void run(std::uint8_t choice, std::string_view bytes) {
    const QString path = folder().filePath(QStringLiteral("settings.json"));
    const QString aside = path + QStringLiteral(".damaged");
    QFile::remove(aside);
    place(path, bytes);

    const JsonDefaults reader(path, nullptr);
    const Readable before = readable(reader);
    for (const Setting& setting : allSettings()) (void)reader.get<std::string>(setting.key);
    require(readable(reader) == before, "a second reading gives the same");
    require(contents(path) == QByteArray(bytes.data(), static_cast<qsizetype>(bytes.size())) && !QFile::exists(aside),
            "readers leave the file alone");
    const QJsonObject stored = QJsonDocument::fromJson(contents(path)).object();
    // Independent of the store: of a sound file every boolean, number, text and list of texts is read.
    for (const Setting& setting : allSettings()) {
        const QJsonValue value = stored.value(QString::fromUtf8(setting.key.data(), qsizetype(setting.key.size())));
        if (value.isBool() || value.isDouble() || value.isString())
            require(before.contains(std::string(setting.key)), "a sound value is read", std::string(setting.key));
        if (value.isUndefined() || value.isNull() || value.isObject())
            require(!before.contains(std::string(setting.key)), "nothing is read where nothing is",
                    std::string(setting.key));
    }

    const Setting& setting = allSettings()[choice % allSettings().size()];
    const bool removes = (choice & 0x80) != 0;
    const SettingValue written = sample(setting.type, (choice & 0x40) != 0);
    {
        JsonDefaults writer(path, nullptr);
        const auto verdict = removes ? writer.removeValue(setting.key) : writer.setValue(setting.key, written);
        require(verdict == Defaults::Verdict::stored, "a write to a file of the user's own succeeds");
    }

    Readable expected = before;
    expected.erase(std::string(setting.key));
    if (!removes) expected.emplace(setting.key, written);
    require(readable(JsonDefaults(path, nullptr)) == expected, "a write keeps what could be read",
            contents(path).toStdString());
    require(readable(reader) == expected, "an older reader sees the write");

    // Written and read once, since the toolkit reads a text without a byte-order mark at its start.
    QJsonObject foreign = QJsonDocument::fromJson(QJsonDocument(stored).toJson()).object();
    QJsonObject now = QJsonDocument::fromJson(contents(path)).object();
    const QString key = QString::fromUtf8(setting.key.data(), qsizetype(setting.key.size()));
    foreign.remove(key);
    now.remove(key);
    require(foreign == now, "a write keeps what it does not know", contents(path).toStdString());
    if (QFile::exists(aside))
        require(stored.isEmpty() && contents(aside) == QByteArray(bytes.data(), qsizetype(bytes.size())),
                "a damaged file is kept whole");
    else
        require(QJsonDocument::fromJson(QByteArray(bytes.data(), qsizetype(bytes.size()))).isObject() ||
                    QByteArray(bytes.data(), qsizetype(bytes.size())).trimmed().isEmpty(),
                "only a sound or empty file is written over");
}

}  // namespace
}  // namespace vantor::fuzz

extern "C" int LLVMFuzzerInitialize(int*, char***) { return vantor::fuzz::reportDescriptor() < 0 ? 1 : 0; }

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    vantor::fuzz::Input input(data, size);
    const std::uint8_t choice = input.byte();
    vantor::fuzz::run(choice, input.rest());
    return 0;
}
