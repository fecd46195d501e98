#include "catalogue/UpdateFiles.h"

#include <QtCore/QDir>
#include <QtCore/QSaveFile>
#include <utility>

#include "catalogue/LayerCheck.h"
#include "catalogue/MinisignSignature.h"

namespace vantor {

namespace {

QString pathOf(const std::string& folder, const std::string& name) {
    return QString::fromStdString(folder) + QLatin1Char('/') + QString::fromStdString(name);
}

}  // namespace

FolderUpdateFiles::FolderUpdateFiles(std::string folder) : folder_(std::move(folder)) {}

std::optional<std::string> FolderUpdateFiles::read(const std::string& name) const {
    if (folder_.empty()) return std::nullopt;
    QFile file(pathOf(folder_, name));
    if (!file.open(QIODevice::ReadOnly)) return std::nullopt;
    // One byte more than is allowed, so that what is too long is seen to be.
    const QByteArray contents = file.read(static_cast<qint64>(largestLayer + largestSignature) + 1);
    return contents.toStdString();
}

bool FolderUpdateFiles::replace(const std::string& name, const std::string& contents) {
    if (folder_.empty() || !QDir().mkpath(QString::fromStdString(folder_))) return false;
    QSaveFile file(pathOf(folder_, name));
    if (!file.open(QIODevice::WriteOnly)) return false;
    file.write(contents.data(), static_cast<qint64>(contents.size()));
    return file.commit();
}

}  // namespace vantor
