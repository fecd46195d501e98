// Which application a window belongs to, with desktop entries read from real files.

#include "platform/linux/desktop/ApplicationIdentity.h"

#include <gtest/gtest.h>

#include <QtCore/QTemporaryDir>
#include <filesystem>
#include <fstream>
#include <map>

#include "platform/linux/desktop/DesktopEntries.h"

namespace vantor {
namespace {

class DesktopEntriesTest : public testing::Test {
protected:
    DesktopEntriesTest() {
        write("own/org.example.Notes.desktop", "[Desktop Entry]\nType=Application\nName=My Notes\n");
        write("shared/org.example.Notes.desktop", "[Desktop Entry]\nType=Application\nName=Notes\n");
        write("shared/org.example.Web.desktop",
              "# a comment\n[Desktop Entry]\nName[de]=Netz\nName = Web\nType=Application\nStartupWMClass=web-browser\n"
              "[Desktop Action new]\nName=New window\nStartupWMClass=other\n");
        write("shared/kde/terminal.desktop", "[Desktop Entry]\nType=Application\nName=Terminal\r\n");
        write("shared/link.desktop", "[Desktop Entry]\nType=Link\nName=A page\n");
        write("shared/nameless.desktop", "[Desktop Entry]\nType=Application\n");
    }
    void write(const std::string& file, const std::string& text) const {
        std::filesystem::create_directories((root() / file).parent_path());
        std::ofstream(root() / file) << text;
    }
    [[nodiscard]] std::filesystem::path root() const { return folder_.path().toStdString(); }
    DesktopEntryLookup lookup() {
        return [this](const std::string& key) { return entries_.find(key); };
    }

    QTemporaryDir folder_;
    DesktopEntries entries_{{root() / "own", root() / "absent", root() / "shared"}};
};

TEST_F(DesktopEntriesTest, IdentifiesApplicationsByClassThenByEntryThenByTheClassItself) {
    const std::pair<WindowClass, std::string> rows[] = {
        {{"gw2-64.exe", "gw2-64.exe"}, gameIdentifier},
        {{"Gw2-64.exe", "Wine"}, gameIdentifier},
        {{"gw2.exe", ""}, gameIdentifier},
        {{"steam_app_1284210", "steam_app_1284210"}, gameIdentifier},
        {{"steam_app_12842", "steam_app_12842"}, "steam_app_12842"},
        {{"GeForceNOW", "GeForceNOW"}, streamingIdentifier},
        {{"vantor", "Vantor"}, ownIdentifier},
        {{"orvendel.Vantor", ""}, ownIdentifier},
        {{"x", "web-browser"}, "org.example.Web"},
        {{"org.example.Notes", "web-browser"}, "org.example.Web"},
        {{"Web-Browser", "Navigator"}, "org.example.Web"},
        {{"org.example.notes", "Org.example.Notes"}, "org.example.Notes"},
        {{"Kde-Terminal", "Kde-Terminal"}, "kde-terminal"},
        {{"Link", "Link"}, "Link"},
        {{"other", "Other"}, "Other"},
        {{"xterm", ""}, "xterm"},
        {{"", ""}, ""},
    };
    for (const auto& [window, identifier] : rows)
        EXPECT_EQ(applicationIdentifier(window, lookup()), identifier) << window.instance << '/' << window.name;
}

TEST_F(DesktopEntriesTest, NamesApplicationsAndFollowsNewEntries) {
    EXPECT_EQ(applicationDisplayName("org.example.Notes", lookup()), "My Notes");
    EXPECT_EQ(applicationDisplayName(gameIdentifier, lookup()), "Guild Wars 2");
    EXPECT_EQ(applicationDisplayName(ownIdentifier, lookup()), "Vantor");
    for (const char* unknown : {"nameless", "", "installed.later"})
        EXPECT_EQ(applicationDisplayName(unknown, lookup()), std::nullopt) << unknown;

    write("shared/installed.later.desktop", "[Desktop Entry]\nType=Application\nName=Later\n");
    // The folder's time has the granularity of the system's clock tick; a later one is what an installation leaves.
    std::filesystem::last_write_time(root() / "shared",
                                     std::filesystem::file_time_type::clock::now() + std::chrono::seconds(2));
    EXPECT_EQ(applicationDisplayName("installed.later", lookup()), "Later");
}

TEST(DesktopEntriesFoldersTest, AreTheWholePathsOfTheEnvironment) {
    const std::map<const char*, QByteArray> variables = {
        {"HOME", "/home/amy"}, {"XDG_DATA_HOME", ""}, {"XDG_DATA_DIRS", "/a:b::/c"}};
    std::map<const char*, QByteArray> before;
    for (const auto& [name, value] : variables) {
        before[name] = qgetenv(name);
        qputenv(name, value);
    }
    EXPECT_EQ(DesktopEntries::standardFolders(),
              (std::vector<std::filesystem::path>{"/home/amy/.local/share/applications", "/a/applications",
                                                  "/c/applications"}));
    for (const auto& [name, value] : before) qputenv(name, value);
}

}  // namespace
}  // namespace vantor
