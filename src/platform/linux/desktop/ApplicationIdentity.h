#pragma once
// Which application a window belongs to. Pure functions of the window's class and of the desktop's entries, any thread.

#include <functional>
#include <optional>
#include <string>

namespace vantor {

// The two parts of WM_CLASS (ICCCM 4.1.2.5).
struct WindowClass {
    std::string instance;
    std::string name;

    bool operator==(const WindowClass&) const = default;
};

struct DesktopEntry {
    std::string id;    // the file's name without ".desktop"
    std::string name;  // its Name= in the user's language, empty when it has none

    bool operator==(const DesktopEntry&) const = default;
};

// Finds an entry by its id or by the window class that it claims (StartupWMClass).
using DesktopEntryLookup = std::function<std::optional<DesktopEntry>(const std::string& idOrWindowClass)>;

inline constexpr const char* gameIdentifier = "net.arena.Guild-Wars-2";
inline constexpr const char* streamingIdentifier = "com.nvidia.gfnpc.mall";
inline constexpr const char* ownIdentifier = "orvendel.Vantor";

// Empty when the window says nothing about itself.
[[nodiscard]] std::string applicationIdentifier(const WindowClass& windowClass, const DesktopEntryLookup& entries);
[[nodiscard]] std::optional<std::string> applicationDisplayName(const std::string& identifier,
                                                                const DesktopEntryLookup& entries);

}  // namespace vantor
