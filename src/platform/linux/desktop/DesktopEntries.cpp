#include "platform/linux/desktop/DesktopEntries.h"

#include <cctype>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string_view>

namespace vantor {
namespace {

namespace fs = std::filesystem;

// Window classes are written in any case ("Firefox", "firefox"), so they are compared in small letters.
std::string folded(std::string_view text) {
    std::string small;
    for (const char letter : text) small += static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
    return small;
}

struct EntryFile {
    std::string name;
    std::string windowClass;
    bool application = false;
};

std::optional<std::string_view> valueOf(std::string_view line, std::string_view key) {
    if (!line.starts_with(key)) return std::nullopt;
    line.remove_prefix(key.size());
    while (line.starts_with(' ')) line.remove_prefix(1);
    if (!line.starts_with('=')) return std::nullopt;
    line.remove_prefix(1);
    while (line.starts_with(' ')) line.remove_prefix(1);
    while (line.ends_with(' ') || line.ends_with('\r')) line.remove_suffix(1);
    return line;
}

EntryFile parse(const fs::path& file) {
    EntryFile entry;
    std::ifstream in(file);
    bool inMainGroup = false;
    for (std::string line; std::getline(in, line);) {
        if (line.starts_with('[')) {
            if (inMainGroup) break;
            inMainGroup = line.starts_with("[Desktop Entry]");
        }
        if (!inMainGroup) continue;
        if (const auto name = valueOf(line, "Name")) entry.name = *name;
        if (const auto windowClass = valueOf(line, "StartupWMClass")) entry.windowClass = *windowClass;
        if (const auto type = valueOf(line, "Type")) entry.application = *type == "Application";
    }
    return entry;
}

// A file in a sub-folder has the folders in its id, joined by dashes.
std::string idOf(const fs::path& relative) {
    std::string id;
    for (const auto& part : relative.parent_path()) id += part.string() + "-";
    return id + relative.stem().string();
}

}  // namespace

std::vector<fs::path> DesktopEntries::standardFolders() {
    std::vector<fs::path> folders;
    const auto add = [&](const fs::path& base) {
        if (base.is_absolute()) folders.push_back(base / "applications");
    };
    const char* home = std::getenv("HOME");
    const char* own = std::getenv("XDG_DATA_HOME");
    if (own && *own)
        add(own);
    else if (home)
        add(fs::path(home) / ".local/share");
    const char* shared = std::getenv("XDG_DATA_DIRS");
    std::istringstream list(shared && *shared ? shared : "/usr/local/share:/usr/share");
    for (std::string base; std::getline(list, base, ':');) add(base);
    return folders;
}

std::optional<DesktopEntry> DesktopEntries::find(const std::string& idOrWindowClass) {
    if (auto entry = known(idOrWindowClass)) return entry;
    read();
    return known(idOrWindowClass);
}

std::optional<DesktopEntry> DesktopEntries::known(const std::string& idOrWindowClass) const {
    const auto wanted = folded(idOrWindowClass);
    if (const auto claimed = idByWindowClass_.find(wanted); claimed != idByWindowClass_.end())
        return byId_.at(folded(claimed->second));
    if (const auto entry = byId_.find(wanted); entry != byId_.end()) return entry->second;
    return std::nullopt;
}

void DesktopEntries::read() {
    for (const auto& folder : folders_) {
        std::error_code absent;
        const auto changed = fs::last_write_time(folder, absent);
        if (absent) continue;
        if (const auto before = readAt_.find(folder.string()); before != readAt_.end() && before->second == changed)
            continue;
        readAt_[folder.string()] = changed;
        std::error_code failed;
        for (fs::recursive_directory_iterator at(folder, fs::directory_options::skip_permission_denied, failed), end;
             !failed && at != end; at.increment(failed)) {
            if (at->path().extension() != ".desktop") continue;
            const auto file = parse(at->path());
            const auto id = idOf(at->path().lexically_relative(folder));
            // The first folder that has an id wins.
            if (!file.application || !byId_.emplace(folded(id), DesktopEntry{id, file.name}).second) continue;
            if (!file.windowClass.empty()) idByWindowClass_.emplace(folded(file.windowClass), id);
        }
    }
}

}  // namespace vantor
