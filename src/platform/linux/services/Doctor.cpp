#include "platform/linux/services/Doctor.h"

#include <unistd.h>

#include <QtCore/QProcess>
#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusConnectionInterface>
#include <QtDBus/QDBusMessage>
#include <algorithm>
#include <cstdlib>
#include <memory>

#include "platform/linux/XWayland.h"
#include "platform/linux/desktop/XcbDesktop.h"
#include "platform/linux/services/PortalShortcuts.h"

namespace vantor {
namespace {

namespace fs = std::filesystem;

using Kind = CapabilityKind;

constexpr int keyringPatience = 2000;  // milliseconds
const QString noReply = QStringLiteral("org.freedesktop.DBus.Error.NoReply");
const QString timeout = QStringLiteral("org.freedesktop.DBus.Error.Timeout");

bool isSet(const char* variable) {
    const char* value = std::getenv(variable);
    return value && *value;
}

std::optional<QDBusConnection> sessionBus() {
    if (!hasSessionBus()) return std::nullopt;
    auto bus = QDBusConnection::sessionBus();
    return bus.isConnected() ? std::optional(bus) : std::nullopt;
}

bool busHas(const std::optional<QDBusConnection>& bus, const char* service) {
    if (!bus) return false;
    const auto name = QString::fromLatin1(service);
    if (bus->interface()->isServiceRegistered(name)) return true;
    const QStringList startable = bus->interface()->activatableServiceNames();
    return startable.contains(name);
}

std::string colourEmojiFont() {
    QProcess list;
    list.start(QStringLiteral("fc-list"), {QStringLiteral(":color=true"), QStringLiteral("family")});
    if (!list.waitForFinished(5000) || list.exitCode() != 0) return {};
    for (const auto& line : list.readAllStandardOutput().split('\n'))
        if (line.toLower().contains("emoji")) return line.trimmed().toStdString();
    return {};
}

// One that has a name on the bus may still never answer. None that is not running is started for the question.
bool answers(const std::optional<QDBusConnection>& bus, const QString& keyring) {
    if (!bus || !bus->interface()->isServiceRegistered(keyring)) return true;
    auto question =
        QDBusMessage::createMethodCall(keyring, QStringLiteral("/org/freedesktop/secrets"),
                                       QStringLiteral("org.freedesktop.Secret.Service"), QStringLiteral("ReadAlias"));
    question << QStringLiteral("default");
    const auto answer = bus->call(question, QDBus::Block, keyringPatience);
    return answer.type() != QDBusMessage::ErrorMessage ||
           (answer.errorName() != noReply && answer.errorName() != timeout);
}

Capability keyringHere(const std::optional<QDBusConnection>& bus, const OwnFiles& files) {
    const std::string& keyring = files.keyring;
    if (!busHas(bus, keyring.c_str()))
        return {Kind::keyring, false,
                bus ? "logins cannot be stored: install a keyring such as gnome-keyring"
                    : "logins cannot be stored: this session has no bus"};
    if (files.asksServices && !answers(bus, QString::fromStdString(keyring)))
        return {Kind::keyring, false, "keyring does not answer: accounts are kept until Vantor ends"};
    return {Kind::keyring, true, keyring};
}

// What the server may ask of the player, only a text can tell.
std::string postingHere(const XcbDesktop& desktop) {
    const auto version = xwaylandVersion(desktop.server());
    if (!version) return "XTEST";
    return "XTEST, into XWayland " + *version +
           "; whether the desktop asks you to allow it shows at the first text only, then allow it";
}

std::string rawKeysHere(const OwnFiles& files) {
    if (!isWaylandSession()) return "XInput 2";
    if (!files.asksServices) return "XInput 2, while a window of X11's has the keyboard";
    return hasSessionBus() && hasShortcutPortal()
               ? "XInput 2, and the desktop's own shortcuts by its portal"
               : "XInput 2, while a window of X11's has the keyboard; this desktop has no portal for "
                 "shortcuts: bind Vantor's commands in its settings";
}

Capability capability(Kind kind, bool present, const std::string& found, const std::string& advice) {
    return {kind, present, present ? found : advice};
}

}  // namespace

bool hasSessionBus() {
    const char* runtime = std::getenv("XDG_RUNTIME_DIR");
    std::error_code none;
    return isSet("DBUS_SESSION_BUS_ADDRESS") || (runtime && fs::exists(fs::path(runtime) / "bus", none));
}

bool isWaylandSession() { return isSet("WAYLAND_DISPLAY"); }

std::vector<Capability> examineCapabilities(const OwnFiles& files) {
    const auto desktop = XcbDesktop::connect();
    const auto bus = sessionBus();
    const auto onDisplay = [&](auto question) { return desktop && question(*desktop); };

    const char* displayAdvice = "no X server answers: set DISPLAY to that of your desktop";
    if (!desktop && isSet("WAYLAND_DISPLAY") && !isSet("DISPLAY"))
        displayAdvice = "this Wayland session has no X server: switch XWayland on";

    std::vector<Capability> capabilities;
    capabilities.push_back(capability(Kind::display, desktop != nullptr, "an X server answers", displayAdvice));
    capabilities.push_back(capability(Kind::rawKeys, onDisplay([](const auto& it) { return it.server().hasRawKeys(); }),
                                      rawKeysHere(files),
                                      "hotkeys work in Vantor's own windows only: needs an X server with XInput 2.1"));
    capabilities.push_back(capability(Kind::posting, onDisplay([](const auto& it) { return it.server().hasTest(); }),
                                      desktop ? postingHere(*desktop) : "",
                                      "nothing can be typed into the game: needs an X server with XTEST"));
    capabilities.push_back(capability(Kind::layout, onDisplay([](const auto& it) { return it.server().hasKeyboard(); }),
                                      "XKB", "the keyboard's layout is unknown: needs an X server with XKB"));
    capabilities.push_back(capability(
        Kind::frontmostApplication,
        onDisplay([](const auto& it) { return it.managerSupports(it.atoms().netActiveWindow); }), "_NET_ACTIVE_WINDOW",
        "the game is not recognised: needs a window manager that keeps _NET_ACTIVE_WINDOW"));
    capabilities.push_back(capability(
        Kind::clicks, onDisplay([](const auto& it) { return it.managerSupports(it.atoms().netActiveWindow); }),
        "while a full-screen game holds the pointer, open the overlay with the hotkey: then they arrive",
        "they do not arrive while a full-screen game holds the pointer: needs a window manager that keeps "
        "_NET_ACTIVE_WINDOW"));
    const bool tray = onDisplay([](const auto& it) {
        const auto name = "_NET_SYSTEM_TRAY_S" + std::to_string(it.screen());
        return it.selectionHasOwner(internAtom(it.connection(), name));
    });
    capabilities.push_back(capability(Kind::tray, tray || busHas(bus, "org.kde.StatusNotifierWatcher"),
                                      "a status bar is there",
                                      "no status item is shown: start a panel with a tray, or use the floating icon"));
    capabilities.push_back(keyringHere(bus, files));
    const auto emoji = colourEmojiFont();
    capabilities.push_back({Kind::fonts, !emoji.empty(),
                            emoji.empty() ? "emotes are drawn without colour: install fonts-noto-color-emoji" : emoji});
    capabilities.push_back(
        capability(Kind::guardian, access(files.guardian.c_str(), X_OK) == 0, "vantor-guardian is installed",
                   "after a crash in the middle of a text a key or lock may stay on: install vantor-guardian "
                   "beside vantor"));
    std::error_code absent;
    const bool installed = fs::is_regular_file(files.webModule, absent);
    const bool engine = installed && files.webModuleTrouble.empty();
    capabilities.push_back(
        capability(Kind::webEngine, engine, "its module is installed",
                   installed ? "web pages stay empty, its module cannot be loaded: " + files.webModuleTrouble
                             : "its module is not installed: web pages stay empty"));
    if (engine)
        capabilities.push_back(capability(Kind::webSandbox, geteuid() != 0, "pages are drawn in a sandbox",
                                          "off, since Vantor runs as root: start it as an ordinary user"));
    return capabilities;
}

std::vector<Capability> withoutKeys(std::vector<Capability> capabilities) {
    for (Capability& each : capabilities)
        if (each.kind == Kind::rawKeys || each.kind == Kind::posting)
            each = {
                each.kind, false,
                "the X server has ended the connection for keys and takes no other: Vantor tries again each second"};
    return capabilities;
}

}  // namespace vantor
