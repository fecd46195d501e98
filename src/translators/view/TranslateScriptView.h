#pragma once
// One script: a field, and under it the typed characters, each drawn in an ordinary face over the script's. Main
// thread.

#include <QtWidgets/QWidget>

#include "translators/view/TranslatorView.h"

namespace vantor {

class TranslateScriptView : public QWidget {
public:
    TranslateScriptView(const Script& script, const TranslatorNeeds& needs, QWidget* parent);
};

class TranslateNewKrytanView final : public TranslateScriptView {
public:
    TranslateNewKrytanView(const TranslatorNeeds& needs, QWidget* parent)
        : TranslateScriptView(scripts[0], needs, parent) {}
};

class TranslateAsuraScriptView final : public TranslateScriptView {
public:
    TranslateAsuraScriptView(const TranslatorNeeds& needs, QWidget* parent)
        : TranslateScriptView(scripts[1], needs, parent) {}
};

class TranslateAscalonianView final : public TranslateScriptView {
public:
    TranslateAscalonianView(const TranslatorNeeds& needs, QWidget* parent)
        : TranslateScriptView(scripts[2], needs, parent) {}
};

}  // namespace vantor
