#pragma once
// The Translator tab: typed text in each of the game's scripts, letter beside letter. Main thread.

#include <QtWidgets/QWidget>
#include <functional>

#include "translators/ScriptGrid.h"

namespace vantor {

struct TranslatorNeeds {
    // Whether the script's font is there to draw with.
    std::function<bool(const Script& script)> hasFont;
    // The folder that the player puts the fonts into.
    QString fontFolder;
};

class TranslatorView : public QWidget {
public:
    TranslatorView(const TranslatorNeeds& needs, QWidget* parent);
};

}  // namespace vantor
