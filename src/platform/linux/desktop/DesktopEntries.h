#pragma once
// The desktop entries of the installed applications (freedesktop.org Desktop Entry standard, 1.5). Reads the
// folders at the first question and again when an application is asked for that it does not know. One thread.

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "platform/linux/desktop/ApplicationIdentity.h"

namespace vantor {

class DesktopEntries {
public:
    // The "applications" folders, the most important first.
    explicit DesktopEntries(std::vector<std::filesystem::path> folders) : folders_(std::move(folders)) {}
    // Those of XDG_DATA_HOME and XDG_DATA_DIRS.
    [[nodiscard]] static std::vector<std::filesystem::path> standardFolders();

    [[nodiscard]] std::optional<DesktopEntry> find(const std::string& idOrWindowClass);

private:
    void read();
    [[nodiscard]] std::optional<DesktopEntry> known(const std::string& idOrWindowClass) const;

    std::vector<std::filesystem::path> folders_;
    std::map<std::string, std::filesystem::file_time_type> readAt_;  // by folder: its last change when it was read
    std::map<std::string, DesktopEntry> byId_;
    std::map<std::string, std::string> idByWindowClass_;
};

}  // namespace vantor
