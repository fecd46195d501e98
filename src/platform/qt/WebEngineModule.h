#pragma once
// The browser engine as a module that is loaded when the first page is wanted: it costs ten times the rest of the
// program. Main thread; what it makes must go before the application object does.

#include <QtCore/QString>
#include <memory>
#include <string>

#include "platform/WebEngine.h"

class QWidget;

namespace vantor {

// An engine whose page is a widget, which whoever shows it adopts.
class WidgetWebEngine : public WebEngine {
public:
    [[nodiscard]] virtual QWidget* widget() = 0;
};

struct WebEngineFolders {
    QString data;
    QString cache;
};

// What the module exports under the name "vantorMakeWebEngine".
using MakeWidgetWebEngine = WidgetWebEngine* (*)(const WebEngineFolders& folders);
// Under the name "vantorWebEngineVersion": the engine's version and the security patches that it holds.
using WebEngineVersion = const char* (*)();

// Where the module lies: beside the program, or below the library folder of an installation.
[[nodiscard]] QString webEngineModulePath();
// Nothing when the module is missing or cannot be loaded; one line on standard error then says why.
[[nodiscard]] std::unique_ptr<WidgetWebEngine> loadWebEngine(const WebEngineFolders& folders);
[[nodiscard]] std::string webEngineVersion();  // empty without the module
// Why the module cannot be loaded, in the system's words; empty where it can. Loads it.
[[nodiscard]] std::string webEngineTrouble();

}  // namespace vantor
