#include "platform/linux/desktop/DesktopEntries.h"

#include <glib.h>

#include <cctype>
#include <cstdlib>
#include <memory>
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

EntryFile parse(const fs::path& file) {
    const std::unique_ptr<GKeyFile, decltype(&g_key_file_unref)> keys(g_key_file_new(), &g_key_file_unref);
    if (!g_key_file_load_from_file(keys.get(), file.c_str(), G_KEY_FILE_NONE, nullptr)) return {};
    // Without the key it gives none.
    const auto text = [](char* given) {
        const std::unique_ptr<char, decltype(&g_free)> owner(given, &g_free);
        return std::string(given ? given : "");
    };
    constexpr const char* group = G_KEY_FILE_DESKTOP_GROUP;
    return {
        text(g_key_file_get_locale_string(keys.get(), group, G_KEY_FILE_DESKTOP_KEY_NAME, nullptr, nullptr)),
        text(g_key_file_get_string(keys.get(), group, G_KEY_FILE_DESKTOP_KEY_STARTUP_WM_CLASS, nullptr)),
        text(g_key_file_get_string(keys.get(), group, G_KEY_FILE_DESKTOP_KEY_TYPE, nullptr)) ==
            G_KEY_FILE_DESKTOP_TYPE_APPLICATION,
    };
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
