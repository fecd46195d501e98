#pragma once
// What typing into other applications takes of a system. Main thread.

#include "platform/KeyMonitors.h"
#include "platform/KeyPoster.h"
#include "platform/KeyboardLayout.h"
#include "platform/Workspace.h"

namespace vantor {

struct TypingServices {
    KeyboardLayout& layout;
    KeyPoster& poster;
    KeyMonitors& monitors;
    Workspace& workspace;
};

// Owns them.
class TypingBackend {
public:
    virtual ~TypingBackend() = default;
    [[nodiscard]] virtual TypingServices typing() = 0;
};

}  // namespace vantor
