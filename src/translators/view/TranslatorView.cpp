#include "translators/view/TranslatorView.h"

#include <QtWidgets/QVBoxLayout>

#include "translators/view/TranslateScriptView.h"
#include "ui/Tabber.h"

namespace vantor {

namespace {

template <typename View>
void addScript(HorizontalTabber& tabs, const Script& script, const TranslatorNeeds& needs) {
    tabs.addTab(QString::fromUtf8(script.title.data(), static_cast<qsizetype>(script.title.size())), QString(),
                [needs](QWidget* place) { return new View(needs, place); });
}

}  // namespace

TranslatorView::TranslatorView(const TranslatorNeeds& needs, QWidget* parent) : QWidget(parent) {
    auto* const whole = new QVBoxLayout(this);
    whole->setContentsMargins(0, 0, 0, 0);
    auto* const tabs = new HorizontalTabber(this);
    addScript<TranslateNewKrytanView>(*tabs, scripts[0], needs);
    addScript<TranslateAsuraScriptView>(*tabs, scripts[1], needs);
    addScript<TranslateAscalonianView>(*tabs, scripts[2], needs);
    whole->addWidget(tabs);
}

}  // namespace vantor
