#include "feedback/Appreciation.h"

namespace vantor {

void pressAccountName(const std::string& name, ClipboardManager& clipboardManager, Pasteboard& pasteboard) {
    if (clipboardManager.shiftPressed())
        clipboardManager.typeString(name);
    else
        pasteboard.setText(name);
}

}  // namespace vantor
