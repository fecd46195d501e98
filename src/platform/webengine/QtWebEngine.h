#pragma once
// The embedded page on Qt WebEngine: its own profile, nothing but web pages, no bridge from scripts to the program.
// Main thread.

#include <QtCore/QPointer>
#include <QtCore/QTimer>
#include <QtWebEngineCore/QWebEngineProfile>
#include <QtWebEngineWidgets/QWebEngineView>
#include <memory>

#include "platform/qt/WebEngineModule.h"

namespace vantor {

class WikiPage;

class QtWebEngine final : public WidgetWebEngine {
public:
    explicit QtWebEngine(const WebEngineFolders& folders);
    ~QtWebEngine() override;

    void setObserver(Observer observer) override { observer_ = std::move(observer); }
    void setDrawsBackground(bool draws) override;
    void load(const std::string& url, int timeoutSeconds) override;
    void goBack() override;
    void goForward() override;
    void addUserScript(const std::string& source) override;
    [[nodiscard]] QWidget* widget() override { return view_; }

private:
    void follow();
    void report();

    std::unique_ptr<QWebEngineProfile> profile_;
    std::unique_ptr<WikiPage> page_;
    QPointer<QWebEngineView> view_;  // belongs to the widget that shows it
    QTimer patience_;                // runs while a page loads and nothing arrives
    WebState state_;
    Observer observer_;
};

}  // namespace vantor
