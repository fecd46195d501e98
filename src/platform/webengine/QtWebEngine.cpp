#include "platform/webengine/QtWebEngine.h"

#include <unistd.h>

#include <QtWebEngineCore/qtwebenginecoreglobal.h>
#include <QtWebEngineCore/QWebEngineDownloadRequest>
#include <QtWebEngineCore/QWebEngineHistory>
#include <QtWebEngineCore/QWebEngineScript>
#include <QtWebEngineCore/QWebEngineScriptCollection>
#include <QtWebEngineCore/QWebEngineSettings>
#include <utility>

#include "platform/webengine/WikiPage.h"

namespace vantor {

namespace {

void configure(QWebEngineProfile& profile, const WebEngineFolders& folders) {
    profile.setPersistentStoragePath(folders.data);
    profile.setCachePath(folders.cache);
    profile.setPersistentCookiesPolicy(QWebEngineProfile::AllowPersistentCookies);
    QObject::connect(&profile, &QWebEngineProfile::downloadRequested, &profile,
                     [](QWebEngineDownloadRequest* download) { download->cancel(); });
}

void configure(QWebEngineSettings& settings) {
    using enum QWebEngineSettings::WebAttribute;
    settings.setAttribute(LocalContentCanAccessFileUrls, false);
    settings.setAttribute(LocalContentCanAccessRemoteUrls, false);
    settings.setAttribute(JavascriptCanAccessClipboard, false);
    settings.setAttribute(JavascriptCanOpenWindows, false);
    settings.setAttribute(AllowRunningInsecureContent, false);
    settings.setAttribute(AllowGeolocationOnInsecureOrigins, false);
    settings.setAttribute(FullScreenSupportEnabled, false);
    settings.setAttribute(ScreenCaptureEnabled, false);
    settings.setAttribute(PdfViewerEnabled, false);
    settings.setAttribute(PluginsEnabled, false);
    settings.setAttribute(FocusOnNavigationEnabled, false);
    settings.setUnknownUrlSchemePolicy(QWebEngineSettings::DisallowUnknownUrlSchemes);
}

}  // namespace

QtWebEngine::QtWebEngine(const WebEngineFolders& folders)
    // A name makes the profile one that lasts.
    : profile_(std::make_unique<QWebEngineProfile>(QStringLiteral("vantor"))) {
    configure(*profile_, folders);
    page_ = std::make_unique<WikiPage>(profile_.get(), nullptr);
    configure(*page_->settings());
    view_ = new QWebEngineView(page_.get(), nullptr);
    view_->setContextMenuPolicy(Qt::NoContextMenu);
    view_->setAccessibleName(QStringLiteral("Web page"));
    patience_.setSingleShot(true);
    QObject::connect(&patience_, &QTimer::timeout, page_.get(), [this] { page_->triggerAction(QWebEnginePage::Stop); });
    follow();
}

QtWebEngine::~QtWebEngine() {
    delete view_;
    page_.reset();
}

void QtWebEngine::follow() {
    QWebEnginePage* const page = page_.get();
    QObject::connect(page, &QWebEnginePage::titleChanged, page, [this] { report(); });
    QObject::connect(page, &QWebEnginePage::urlChanged, page, [this] { report(); });
    QObject::connect(page, &QWebEnginePage::loadStarted, page, [this] {
        state_.loading = true;
        state_.estimatedProgress = 0;
        report();
    });
    QObject::connect(page, &QWebEnginePage::loadProgress, page, [this](int percent) {
        if (patience_.isActive()) patience_.start();
        state_.estimatedProgress = percent / 100.0;
        report();
    });
    QObject::connect(page, &QWebEnginePage::loadFinished, page, [this] {
        patience_.stop();
        state_.loading = false;
        report();
    });
    QObject::connect(page, &QWebEnginePage::renderProcessTerminated, page,
                     [this](QWebEnginePage::RenderProcessTerminationStatus status, int) {
                         patience_.stop();
                         state_.loading = false;
                         report();
                         if (status != QWebEnginePage::NormalTerminationStatus && observer_.gone) observer_.gone();
                     });
}

void QtWebEngine::report() {
    const QUrl url = page_->url();
    const QString title = page_->title();
    // Without a title of its own the engine takes the address for one.
    state_.title = title.isEmpty() ? std::nullopt : std::optional(title.toStdString());
    state_.url = url.isEmpty() ? std::nullopt : std::optional(url.toString(QUrl::FullyEncoded).toStdString());
    // The engine tells neither: a page is trusted when it came over TLS with a certificate that was not refused.
    state_.hasServerTrust = url.scheme() == QLatin1String("https") && !page_->certificateRefused();
    state_.hasOnlySecureContent = state_.hasServerTrust;
    state_.canGoBack = page_->history()->canGoBack();
    state_.canGoForward = page_->history()->canGoForward();
    if (observer_.changed) observer_.changed(state_);
}

void QtWebEngine::setDrawsBackground(bool draws) {
    page_->setBackgroundColor(draws ? QColor(Qt::white) : QColor(Qt::transparent));
}

void QtWebEngine::load(const std::string& url, int timeoutSeconds) {
    patience_.start(timeoutSeconds * 1000);
    page_->load(QUrl(QString::fromStdString(url), QUrl::StrictMode));
}

void QtWebEngine::goBack() { page_->triggerAction(QWebEnginePage::Back); }

void QtWebEngine::goForward() { page_->triggerAction(QWebEnginePage::Forward); }

void QtWebEngine::addUserScript(const std::string& source) {
    QWebEngineScript script;
    script.setSourceCode(QString::fromStdString(source));
    script.setInjectionPoint(QWebEngineScript::DocumentReady);
    script.setRunsOnSubFrames(true);
    // Beside the page's own scripts, out of their reach.
    script.setWorldId(QWebEngineScript::ApplicationWorld);
    page_->scripts().insert(script);
}

}  // namespace vantor

extern "C" Q_DECL_EXPORT vantor::WidgetWebEngine* vantorMakeWebEngine(const vantor::WebEngineFolders& folders) {
    // The engine's sandbox cannot be set up by root, whose programs it refuses to run without this word.
    if (geteuid() == 0 && !qEnvironmentVariableIsSet("QTWEBENGINE_DISABLE_SANDBOX"))
        qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");
    return new vantor::QtWebEngine(folders);
}

extern "C" Q_DECL_EXPORT const char* vantorWebEngineVersion() {
    static const std::string version = std::string(qWebEngineVersion()) + ", Chromium " + qWebEngineChromiumVersion() +
                                       ", security patches up to " + qWebEngineChromiumSecurityPatchVersion();
    return version.c_str();
}
