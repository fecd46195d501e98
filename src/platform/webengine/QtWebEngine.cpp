#include "platform/webengine/QtWebEngine.h"

#include <unistd.h>

#include <QtCore/QChildEvent>
#include <QtWebEngineCore/qtwebenginecoreglobal.h>
#include <QtWebEngineCore/QWebEngineDownloadRequest>
#include <QtWebEngineCore/QWebEngineHistory>
#include <QtWebEngineCore/QWebEngineScript>
#include <QtWebEngineCore/QWebEngineScriptCollection>
#include <QtWebEngineCore/QWebEngineSettings>
#include <utility>
#include <QtQuickWidgets/QQuickWidget>
#include <QtQuick/QQuickWindow>

#include "platform/webengine/EdgeFades.h"
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
    settings.setUnknownUrlSchemePolicy(QWebEngineSettings::DisallowUnknownUrlSchemes);
}

// The engine draws in child widgets of its own making, one after the other, each a texture that the toolkit lays under what
// the window paints. Ours is a page without ground, so its texture belongs over that.
class Drawings final : public QObject {
public:
    using QObject::QObject;
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::ChildAdded || event->type() == QEvent::ChildPolished)
            if (QObject* const child = static_cast<QChildEvent*>(event)->child(); child->isWidgetType())
                dress(*static_cast<QWidget*>(child));
        return false;
    }

private:
    static void dress(QWidget& drawing) {
        fprintf(stderr, "dress %s parent %s\n", drawing.metaObject()->className(), drawing.parent()->metaObject()->className());
        if (drawing.testAttribute(Qt::WA_AlwaysStackOnTop)) return;
        drawing.setAttribute(Qt::WA_AlwaysStackOnTop);
        fadeEdges(drawing);
        QTimer::singleShot(3000, &drawing, [d = static_cast<QQuickWidget*>(&drawing)] { const QImage i = d->grabFramebuffer(); fprintf(stderr, "grab %d %dx%d clear %s top %d\n", i.save(QStringLiteral("/tmp/hweb/grab.png")), i.width(), i.height(), qPrintable(d->quickWindow()->color().name(QColor::HexArgb)), d->testAttribute(Qt::WA_AlwaysStackOnTop)); for (int y : {20, 120, 125}) fprintf(stderr, "%08x ", i.pixel(620, y)); d->update(); });
    }
};

}  // namespace

QtWebEngine::QtWebEngine(const WebEngineFolders& folders)
    // A name makes the profile one that lasts.
    : profile_(std::make_unique<QWebEngineProfile>(QStringLiteral("vantor"))) {
    configure(*profile_, folders);
    page_ = std::make_unique<WikiPage>(profile_.get(), nullptr);
    configure(*page_->settings());
    view_ = new QWebEngineView(page_.get(), nullptr);
    view_->installEventFilter(new Drawings(view_));
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
        fprintf(stderr, "started bg %s\n", qPrintable(page_->backgroundColor().name(QColor::HexArgb)));
        if (getenv("TOG")) { page_->setBackgroundColor(Qt::white); page_->setBackgroundColor(Qt::transparent); }
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
    fprintf(stderr, "setDraws %d was %s\n", draws, qPrintable(page_->backgroundColor().name(QColor::HexArgb)));
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
