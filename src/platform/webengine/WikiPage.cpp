#include "platform/webengine/WikiPage.h"

#include <QtCore/QTimer>
#include <QtGui/QDesktopServices>
#include <QtWebEngineCore/QWebEngineCertificateError>
#include <chrono>

#include "platform/webengine/QtVersions.h"

namespace vantor {

namespace {

bool isWeb(const QUrl& url) { return url.scheme() == QLatin1String("https") || url.scheme() == QLatin1String("http"); }

// What a mail or chat program of the desktop may get from a click.
bool isForDesktop(const QUrl& url) { return url.scheme() == QLatin1String("mailto"); }

// Collects the first address that a new window wants, and opens it in the page that asked.
class NewWindow final : public QWebEnginePage {
public:
    explicit NewWindow(WikiPage* opener) : QWebEnginePage(opener->profile(), opener), opener_(opener) {
        // A script may open a window without ever saying where to.
        QTimer::singleShot(patience, this, &QObject::deleteLater);
    }

protected:
    bool acceptNavigationRequest(const QUrl& url, NavigationType, bool) override {
        if (isWeb(url)) opener_->load(url);
        deleteLater();
        return false;
    }

private:
    static constexpr std::chrono::seconds patience{10};

    WikiPage* opener_;
};

}  // namespace

WikiPage::WikiPage(QWebEngineProfile* profile, QObject* parent) : QWebEnginePage(profile, parent) {
    QObject::connect(this, &QWebEnginePage::certificateError, this, [this](const QWebEngineCertificateError& error) {
        certificateRefused_ = true;
        QWebEngineCertificateError refused(error);
        refused.rejectCertificate();
    });
    qtversions::refusePermissions(*this);
    QObject::connect(this, &QWebEnginePage::loadStarted, this, [this] { certificateRefused_ = false; });
}

bool WikiPage::acceptNavigationRequest(const QUrl& url, NavigationType type, bool isMainFrame) {
    // Frames of a page may also be empty or written by its scripts.
    if (isWeb(url) || (!isMainFrame && url.scheme() == QLatin1String("about"))) return true;
    if (type == NavigationTypeLinkClicked && isForDesktop(url)) QDesktopServices::openUrl(url);
    return false;
}

QWebEnginePage* WikiPage::createWindow(WebWindowType) { return new NewWindow(this); }

// Dialogs would take the focus from the game.
QStringList WikiPage::chooseFiles(FileSelectionMode, const QStringList&, const QStringList&) { return {}; }
void WikiPage::javaScriptAlert(const QUrl&, const QString&) {}
bool WikiPage::javaScriptConfirm(const QUrl&, const QString&) { return false; }
bool WikiPage::javaScriptPrompt(const QUrl&, const QString&, const QString&, QString*) { return false; }
void WikiPage::javaScriptConsoleMessage(JavaScriptConsoleMessageLevel, const QString&, int, const QString&) {}

}  // namespace vantor
