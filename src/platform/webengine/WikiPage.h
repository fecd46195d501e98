#pragma once
// What a page may do: show web pages, and hand a link that the player clicked to the desktop. New windows open in the
// same view; files, other schemes, permissions and pages with a wrong certificate are refused. Main thread.

#include <QtWebEngineCore/QWebEnginePage>

namespace vantor {

class WikiPage : public QWebEnginePage {
public:
    WikiPage(QWebEngineProfile* profile, QObject* parent);
    [[nodiscard]] bool certificateRefused() const { return certificateRefused_; }

protected:
    bool acceptNavigationRequest(const QUrl& url, NavigationType type, bool isMainFrame) override;
    QWebEnginePage* createWindow(WebWindowType type) override;
    QStringList chooseFiles(FileSelectionMode mode, const QStringList& old, const QStringList& accepted) override;
    void javaScriptAlert(const QUrl& origin, const QString& message) override;
    bool javaScriptConfirm(const QUrl& origin, const QString& message) override;
    bool javaScriptPrompt(const QUrl& origin, const QString& message, const QString& text, QString* result) override;
    void javaScriptConsoleMessage(JavaScriptConsoleMessageLevel level, const QString& message, int line,
                                  const QString& source) override;

private:
    bool certificateRefused_ = false;
};

}  // namespace vantor
