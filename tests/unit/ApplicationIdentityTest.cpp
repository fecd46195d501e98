// Which application a window belongs to, with desktop entries read from real files.

#include "platform/linux/desktop/ApplicationIdentity.h"

#include <gtest/gtest.h>

#include <QtCore/QTemporaryDir>
#include <filesystem>
#include <fstream>

#include "platform/linux/desktop/DesktopEntries.h"

namespace vantor {
namespace {

class DesktopEntriesTest : public testing::Test {
protected:
    void write(const std::string& file, const std::string& text) {
        const auto path = std::filesystem::path(folder_.path().toStdString()) / file;
        std::filesystem::create_directories(path.parent_path());
        std::ofstream(path) << text;
    }
    [[nodiscard]] std::filesystem::path folder(const char* name) const {
        return std::filesystem::path(folder_.path().toStdString()) / name;
    }
    DesktopEntryLookup lookup() {
        return [this](const std::string& key) { return entries_.find(key); };
    }

    QTemporaryDir folder_;
    DesktopEntries entries_{{folder("own"), folder("absent"), folder("shared")}};
};

TEST_F(DesktopEntriesTest, IdentifiesApplicationsByClassThenByEntryThenByTheClassItself) {
    write("own/org.example.Notes.desktop", "[Desktop Entry]\nType=Application\nName=My Notes\n");
    write("shared/org.example.Notes.desktop", "[Desktop Entry]\nType=Application\nName=Notes\n");
    write("shared/org.example.Web.desktop",
          "# a comment\n[Desktop Entry]\nName[de]=Netz\nName = Web\nType=Application\nStartupWMClass=web-browser\n"
          "[Desktop Action new]\nName=New window\nStartupWMClass=other\n");
    write("shared/kde/terminal.desktop", "[Desktop Entry]\nType=Application\nName=Terminal\r\n");
    write("shared/link.desktop", "[Desktop Entry]\nType=Link\nName=A page\n");

    struct Row {
        WindowClass windowClass;
        std::string identifier;
    };
    for (const auto& row : std::vector<Row>{
             {{"gw2-64.exe", "gw2-64.exe"}, gameIdentifier},
             {{"Gw2-64.exe", "Wine"}, gameIdentifier},
             {{"gw2.exe", ""}, gameIdentifier},
             {{"steam_app_1284210", "steam_app_1284210"}, gameIdentifier},
             {{"steam_app_12842", "steam_app_12842"}, "steam_app_12842"},
             {{"GeForceNOW", "GeForceNOW"}, streamingIdentifier},
             {{"vantor", "Vantor"}, ownIdentifier},
             {{"orvendel.Vantor", ""}, ownIdentifier},
             {{"x", "web-browser"}, "org.example.Web"},
             {{"Web-Browser", "Navigator"}, "org.example.Web"},
             {{"org.example.notes", "Org.example.Notes"}, "org.example.Notes"},
             {{"kde-terminal", "kde-terminal"}, "kde-terminal"},
             {{"link", "link"}, "link"},
             {{"other", "Other"}, "Other"},
             {{"xterm", ""}, "xterm"},
             {{"", ""}, ""},
         })
        EXPECT_EQ(applicationIdentifier(row.windowClass, lookup()), row.identifier)
            << row.windowClass.instance << '/' << row.windowClass.name;
}

TEST_F(DesktopEntriesTest, NamesApplicationsAndFollowsNewEntries) {
    write("own/org.example.Notes.desktop", "[Desktop Entry]\nType=Application\nName=My Notes\n");
    write("shared/org.example.Notes.desktop", "[Desktop Entry]\nType=Application\nName=Notes\n");
    write("shared/nameless.desktop", "[Desktop Entry]\nType=Application\n");

    EXPECT_EQ(applicationDisplayName("org.example.Notes", lookup()), "My Notes");
    EXPECT_EQ(applicationDisplayName(gameIdentifier, lookup()), "Guild Wars 2");
    EXPECT_EQ(applicationDisplayName(ownIdentifier, lookup()), "Vantor");
    EXPECT_EQ(applicationDisplayName("nameless", lookup()), std::nullopt);
    EXPECT_EQ(applicationDisplayName("", lookup()), std::nullopt);
    EXPECT_EQ(applicationDisplayName("installed.later", lookup()), std::nullopt);

    write("shared/installed.later.desktop", "[Desktop Entry]\nType=Application\nName=Later\n");
    // The folder's time has the granularity of the system's clock tick; a later one is what an installation leaves.
    std::filesystem::last_write_time(folder("shared"),
                                     std::filesystem::file_time_type::clock::now() + std::chrono::seconds(2));
    EXPECT_EQ(applicationDisplayName("installed.later", lookup()), "Later");
}

}  // namespace
}  // namespace vantor
