#include "browser/LazyWebPage.h"

#include <utility>

namespace vantor {

void LazyWebPage::setDrawsBackground(bool draws) {
    drawsBackground_ = draws;
    if (engine_) engine_->setDrawsBackground(draws);
}

void LazyWebPage::load(const std::string& url, int timeoutSeconds) {
    if (!engine_) {
        engine_ = makeEngine_();
        if (!engine_) return setEngine(Engine::missing);
        engine_->setObserver({[this](const WebState& next) { update(next); }, [this] { setEngine(Engine::gone); }});
        engine_->setDrawsBackground(drawsBackground_);
        for (const std::string& source : std::exchange(scriptsBeforeEngine_, {})) engine_->addUserScript(source);
    }
    setEngine(Engine::running);
    engine_->load(url, timeoutSeconds);
}

void LazyWebPage::goBack() {
    if (engine_) engine_->goBack();
}

void LazyWebPage::goForward() {
    if (engine_) engine_->goForward();
}

void LazyWebPage::addUserScript(const std::string& source) {
    if (engine_)
        engine_->addUserScript(source);
    else
        scriptsBeforeEngine_.push_back(source);
}

Subscription LazyWebPage::observePrior(Property property, std::function<void()> handler) {
    return willChange_.at(static_cast<std::size_t>(property)).observe(std::move(handler));
}

template <typename Value>
void LazyWebPage::change(Property property, Value WebState::* member, const WebState& next) {
    if (state_.*member == next.*member) return;
    willChange_.at(static_cast<std::size_t>(property)).announce();
    state_.*member = next.*member;
}

void LazyWebPage::update(const WebState& next) {
    change(Property::title, &WebState::title, next);
    change(Property::url, &WebState::url, next);
    change(Property::loading, &WebState::loading, next);
    change(Property::estimatedProgress, &WebState::estimatedProgress, next);
    change(Property::hasOnlySecureContent, &WebState::hasOnlySecureContent, next);
    change(Property::serverTrust, &WebState::hasServerTrust, next);
    change(Property::canGoBack, &WebState::canGoBack, next);
    change(Property::canGoForward, &WebState::canGoForward, next);
}

void LazyWebPage::setEngine(Engine state) {
    if (std::exchange(engineState_, state) != state && engineChanged_) engineChanged_();
}

}  // namespace vantor
