#include "platform/webengine/QtWebEngine.h"

#include <unistd.h>

#include <QtWebEngineCore/qtwebenginecoreglobal.h>
#include <QtWebEngineQuick/qtwebenginequickglobal.h>
#include <QtCore/QLoggingCategory>
#include <QtQuick/QQuickWindow>
#include <QtWebEngineCore/QWebEngineDownloadRequest>
#include <QtWebEngineCore/QWebEngineHistory>
#include <QtWebEngineCore/QWebEngineScript>
#include <QtWebEngineCore/QWebEngineScriptCollection>
#include <QtWebEngineCore/QWebEngineSettings>
#include <utility>

#include "platform/webengine/PageDrawing.h"
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
    settings.setAttribute(ErrorPageEnabled, false);
    // Asks the page about other schemes, and only after a click.
    settings.setUnknownUrlSchemePolicy(QWebEngineSettings::AllowUnknownUrlSchemesFromUserInteraction);
}

// Nothing of a page is seen before the scripts at its end have styled it, for three seconds at most: it would flash in
// its own colours. Its own background comes last, because the engine goes on laying the first that it saw, white as a
// rule, under a page that has none any more.
constexpr const char* veil =
    "(() => {"
    "    const veil = new CSSStyleSheet();"
    "    veil.replaceSync('html, body { background: transparent !important } html { visibility: hidden !important }');"
    "    document.adoptedStyleSheets = [...document.adoptedStyleSheets, veil];"
    "    addEventListener('DOMContentLoaded', () => setTimeout(() => veil.replaceSync('')), { once: true });"
    "    setTimeout(() => veil.cssRules.length > 1 && veil.deleteRule(1), 3000);"
    // Nor does a page ask whether the player may leave it.
    "    addEventListener('beforeunload', event => event.stopImmediatePropagation(), true);"
    "})()";

// The engine reads its flags from the environment when it starts, once.
class EngineFlags {
public:
    explicit EngineFlags(bool root) : before_(qgetenv(name)), wasSet_(qEnvironmentVariableIsSet(name)) {
        // Nothing of the engine's own log belongs on a player's terminal.
        QByteArray flags = before_ + " --disable-logging --log-level=3";
        // Its sandbox cannot be set up by root, whose programs it refuses to run without this word.
        if (root) flags += " --no-sandbox";
        qputenv(name, flags);
    }
    ~EngineFlags() {
        if (wasSet_)
            qputenv(name, before_);
        else
            qunsetenv(name);
    }
    EngineFlags(const EngineFlags&) = delete;
    EngineFlags& operator=(const EngineFlags&) = delete;

private:
    static constexpr const char* name = "QTWEBENGINE_CHROMIUM_FLAGS";
    QByteArray before_;
    bool wasSet_;
};

QWebEngineScript veilScript() {
    QWebEngineScript script;
    script.setSourceCode(QString::fromLatin1(veil));
    script.setInjectionPoint(QWebEngineScript::DocumentCreation);
    script.setWorldId(QWebEngineScript::ApplicationWorld);
    return script;
}

}  // namespace

QtWebEngine::QtWebEngine(const WebEngineFolders& folders)
    // A name makes the profile one that lasts.
    : profile_(std::make_unique<QWebEngineProfile>(QStringLiteral("vantor"))) {
    configure(*profile_, folders);
    page_ = std::make_unique<WikiPage>(profile_.get(), nullptr);
    configure(*page_->settings());
    view_ = new QWebEngineView(page_.get(), nullptr);
    new PageDrawings(*view_);
    // A file that is dropped is no page.
    view_->setAcceptDrops(false);
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
    if (!draws) page_->scripts().insert(veilScript());
}

void QtWebEngine::load(const std::string& url, int timeoutSeconds) {
    patience_.start(timeoutSeconds * 1000);
    page_->load(QUrl(QString::fromStdString(url), QUrl::StrictMode));
}

void QtWebEngine::goBack() { page_->triggerAction(QWebEnginePage::Back); }

void QtWebEngine::goForward() { page_->triggerAction(QWebEnginePage::Forward); }

void QtWebEngine::addUserScript(const std::string& source) {
    QWebEngineScript script;
    // Frames that come later would get only one of several equal scripts; names tell them apart.
    script.setName(QString::number(page_->scripts().count()));
    script.setSourceCode(QString::fromStdString(source));
    script.setInjectionPoint(QWebEngineScript::DocumentReady);
    script.setRunsOnSubFrames(true);
    // Beside the page's own scripts, out of their reach.
    script.setWorldId(QWebEngineScript::ApplicationWorld);
    page_->scripts().insert(script);
}

}  // namespace vantor

extern "C" Q_DECL_EXPORT vantor::WidgetWebEngine* vantorMakeWebEngine(const vantor::WebEngineFolders& folders) {
    const vantor::EngineFlags flags(geteuid() == 0);
    QLoggingCategory::setFilterRules(QStringLiteral("qt.webenginecontext*=false"));
    // Pages are drawn without the graphics card, which the game needs: a page that lends the window a texture makes the
    // toolkit replace the native window, which flickers and loses clicks, and costs 40 MB.
    QQuickWindow::setSceneGraphBackend(QStringLiteral("software"));
    // All the same the engine asks for the card's driver when it starts. Here and not before the application object: a
    // program that may never show a page does without it. The toolkit says that this is unusual, and does it.
    const QtMessageHandler handler =
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    QtWebEngineQuick::initialize();
    qInstallMessageHandler(handler);
    return new vantor::QtWebEngine(folders);
}

extern "C" Q_DECL_EXPORT const char* vantorWebEngineVersion() {
    static const std::string version = std::string(qWebEngineVersion()) + ", Chromium " + qWebEngineChromiumVersion() +
                                       ", security patches up to " + qWebEngineChromiumSecurityPatchVersion();
    return version.c_str();
}
