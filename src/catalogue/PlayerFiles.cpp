#include "catalogue/PlayerFiles.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <utility>

#include "catalogue/LayerCheck.h"
#include "catalogue/Layers.h"
#include "timers/DataFault.h"

namespace vantor {

namespace {

// Adds the file's sections, or says why not.
std::string take(const QString& path, std::vector<EventsSection>& sections) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) return "cannot be read";
    const QByteArray body = file.read(static_cast<qint64>(largestLayer) + 1);
    auto read = readLayer({body.constData(), static_cast<std::size_t>(body.size())});
    if (!read.value) return read.error;
    auto all = layered(sections, *read.value);
    for (std::size_t index = 0; index < read.value->size(); ++index)
        for (const EventsSection& earlier : sections)
            if (earlier.id == (*read.value)[index].id)
                return "[" + std::to_string(index) + "].id: " + std::to_string(earlier.id) +
                       " is in a file before this one";
    // One by one they may be small enough, and together not.
    if (layerFault(all)) return "too much together with the files before it";
    sections = std::move(all);
    return {};
}

}  // namespace

PlayerFiles readPlayerFiles(const std::string& folder) {
    PlayerFiles all;
    if (folder.empty()) return all;
    const QDir there(QString::fromStdString(folder));
    for (const QString& name : there.entryList({QStringLiteral("*.json")}, QDir::Files, QDir::Name)) {
        const std::string fault = take(there.filePath(name), all.sections);
        if (fault.empty())
            all.files.push_back(name.toStdString());
        else
            all.faults.push_back(oneLine(name.toStdString() + ": " + fault));
    }
    return all;
}

}  // namespace vantor
