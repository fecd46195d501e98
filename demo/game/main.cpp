// The stand-in game: a program of its own with the game's window class, which records every key that it is given.

#include <QtCore/QCommandLineParser>
#include <QtWidgets/QApplication>
#include <cstdio>
#include <vector>

#include "GameWindow.h"

namespace {

// The toolkit takes the window class's first part from this argument and the second from the application's name.
std::vector<char*> withWindowClass(int argc, char** argv, std::string& option, std::string& windowClass) {
    for (int at = 1; at + 1 < argc; ++at)
        if (std::string_view(argv[at]) == "--class") windowClass = argv[at + 1];
    std::vector<char*> arguments(argv, argv + argc);
    arguments.insert(arguments.begin() + 1, {option.data(), windowClass.data()});
    return arguments;
}

}  // namespace

int main(int argc, char** argv) {
    std::string option = "-name";
    std::string windowClass = "gw2-64.exe";
    auto arguments = withWindowClass(argc, argv, option, windowClass);
    int count = static_cast<int>(arguments.size());
    arguments.push_back(nullptr);
    // As the game is in every session; its class is told in X11's way.
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "xcb");
    QApplication application(count, arguments.data());
    QApplication::setApplicationName(QString::fromStdString(windowClass));

    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addOption(
        {QStringLiteral("scene"), QStringLiteral("bright or dark"), QStringLiteral("scene"), QStringLiteral("dark")});
    parser.addOption({QStringLiteral("record"), QStringLiteral("File for the events"), QStringLiteral("file")});
    parser.addOption({QStringLiteral("class"), QStringLiteral("Window class"), QStringLiteral("name")});
    parser.addOption({QStringLiteral("title"), QStringLiteral("Window title"), QStringLiteral("title"),
                      QStringLiteral("Stand-in game")});
    parser.addOption(
        {QStringLiteral("size"), QStringLiteral("WIDTHxHEIGHT; full-screen without it"), QStringLiteral("size")});
    parser.addOption({QStringLiteral("hold-pointer"), QStringLiteral("Full-screen, keep every click, as Wine does")});
    parser.process(application);

    const auto sceneName = parser.value(QStringLiteral("scene"));
    if (sceneName != QLatin1String("bright") && sceneName != QLatin1String("dark")) {
        std::fprintf(stderr, "standin-game: no scene '%s' (bright, dark)\n", qPrintable(sceneName));
        return 2;
    }
    game::Recorder recorder;
    if (parser.isSet(QStringLiteral("record")) && !recorder.open(parser.value(QStringLiteral("record")))) {
        std::fprintf(stderr, "standin-game: the record cannot be written\n");
        return 1;
    }
    game::GameWindow window(sceneName == QLatin1String("bright") ? game::Scene::bright : game::Scene::dark, recorder);
    window.setWindowTitle(parser.value(QStringLiteral("title")));
    if (parser.isSet(QStringLiteral("hold-pointer"))) window.holdPointer();
    const auto size = parser.value(QStringLiteral("size")).split(QLatin1Char('x'));
    if (size.size() == 2) {
        window.resize(size[0].toInt(), size[1].toInt());
        window.show();
    } else {
        window.showFullScreen();
    }
    return QApplication::exec();
}
