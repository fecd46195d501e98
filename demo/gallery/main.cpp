// vantor-gallery: every control of the kit in every state, to play with or, with --png, as pictures over a bright and a
// dark scene.

#include <QtCore/QCommandLineParser>
#include <QtCore/QDir>
#include <QtCore/QProcess>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLayout>
#include <cstdio>

#include "Stage.h"
#include "ui/Fonts.h"
#include "ui/GW2Picker.h"
#include "ui/KitStyle.h"

namespace gallery {

namespace {

int stageWidth() { return vantor::withText(1320); }

bool writePicture(game::Scene scene, const QString& path) {
    Stage stage(scene, Extent::whole);
    stage.resize(stageWidth(), stage.sizeHint().height());
    stage.show();
    // What wraps knows its height only at its width.
    for (int turn = 0; turn < 3; ++turn) {
        QApplication::processEvents();
        stage.resize(stageWidth(), stage.layout()->totalHeightForWidth(stageWidth()));
    }
    QApplication::processEvents();
    // One list open, as it lies over what is below it.
    for (QWidget* const control : stage.findChildren<QWidget*>())
        if (auto* const picker = dynamic_cast<vantor::GW2Picker*>(control);
            picker && picker->accessibleName() == QStringLiteral("Language"))
            picker->open();
    QApplication::processEvents();
    if (stage.grab().save(path)) return true;
    std::fprintf(stderr, "vantor-gallery: cannot write %s\n", qPrintable(path));
    return false;
}

int writePictures(const QString& folder, double scale) {
    const auto path = [&](const char* scene) {
        return QDir(folder).filePath(QStringLiteral("%1-%2x.png").arg(QString::fromLatin1(scene)).arg(scale));
    };
    const bool bright = writePicture(game::Scene::bright, path("bright"));
    const bool dark = writePicture(game::Scene::dark, path("dark"));
    return bright && dark ? 0 : 1;
}

// A process has one scale.
int runAgainAt(const char* scale, QStringList arguments) {
    QProcess again;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_SCALE_FACTOR"), QString::fromLatin1(scale));
    again.setProcessEnvironment(environment);
    again.setProcessChannelMode(QProcess::ForwardedChannels);
    again.start(QCoreApplication::applicationFilePath(), arguments << QStringLiteral("--this-scale"));
    return again.waitForFinished(-1) && again.exitStatus() == QProcess::NormalExit ? again.exitCode() : 1;
}

int run(int count, char** arguments) {
    QApplication application(count, arguments);
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Shows every control of Vantor's kit in every state."));
    parser.addHelpOption();
    const QCommandLineOption png(QStringLiteral("png"),
                                 QStringLiteral("Write bright-1x.png, dark-1x.png, bright-2x.png and dark-2x.png."),
                                 QStringLiteral("folder"));
    const QCommandLineOption textScale(QStringLiteral("text-scale"), QStringLiteral("Larger text: 1 to 2."),
                                       QStringLiteral("factor"), QStringLiteral("1"));
    QCommandLineOption thisScale(QStringLiteral("this-scale"));
    thisScale.setFlags(QCommandLineOption::HiddenFromHelp);
    parser.addOptions({png, textScale, thisScale});
    parser.process(application);

    if (parser.isSet(png)) {
        if (!QDir().mkpath(parser.value(png))) {
            std::fprintf(stderr, "vantor-gallery: cannot make %s\n", qPrintable(parser.value(png)));
            return 1;
        }
        if (!parser.isSet(thisScale)) {
            const QStringList given = QCoreApplication::arguments().mid(1);
            const int once = runAgainAt("1", given);
            const int twice = runAgainAt("2", given);
            return once == 0 ? twice : once;
        }
    }
    if (vantor::registerFonts() == vantor::FontsVerdict::fallback)
        std::fprintf(stderr, "vantor-gallery: the embedded typefaces cannot be read; the system's stand in\n");
    vantor::dressApplication();
    vantor::setTextScale(parser.value(textScale).toDouble());
    if (parser.isSet(png)) return writePictures(parser.value(png), application.devicePixelRatio());
    Stage bright(game::Scene::bright, Extent::scrolling);
    Stage dark(game::Scene::dark, Extent::scrolling);
    for (Stage* const stage : {&dark, &bright}) {
        stage->resize(stageWidth(), 860);
        stage->show();
    }
    return QApplication::exec();
}

}  // namespace

}  // namespace gallery

int main(int count, char** arguments) { return gallery::run(count, arguments); }
