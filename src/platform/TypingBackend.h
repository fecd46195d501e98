#pragma once
// What typing into other applications takes of a system. Main thread, but for what the typing thread uses: layout,
// poster and focus, once the key map is learned.

#include "platform/KeyMonitors.h"
#include "platform/KeyPoster.h"
#include "platform/KeyboardLayout.h"
#include "platform/TypingFocus.h"
#include "platform/Workspace.h"

namespace vantor {

struct TypingServices {
    KeyboardLayout& layout;
    KeyPoster& poster;
    KeyMonitors& monitors;
    Workspace& workspace;
    TypingFocus& focus;
};

// Owns them.
class TypingBackend {
public:
    virtual ~TypingBackend() = default;
    [[nodiscard]] virtual TypingServices typing() = 0;
};

}  // namespace vantor
