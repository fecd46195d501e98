// Types what every layout of the machine can type, in every state of the keyboard, and compares what arrives; runs in
// demo/private_desktop.sh and says how it is called (--help). The last line is "N passed, M failed".

#include <QtCore/QCommandLineParser>
#include <QtCore/QCoreApplication>
#include <QtCore/QElapsedTimer>
#include <algorithm>
#include <cstdio>

#include "sweep/Sweep.h"

using namespace vantor::sweep;

namespace {

std::vector<std::string> itemsOf(const QString& list) {
    std::vector<std::string> items;
    for (const QString& each : list.split(QLatin1Char(','), Qt::SkipEmptyParts)) items.push_back(each.toStdString());
    return items;
}

}  // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const auto option = [](const char* name, const char* description, const char* value = "") {
        return QCommandLineOption(QString::fromLatin1(name), QString::fromLatin1(description),
                                  QString::fromLatin1(value));
    };
    const auto few = option("short", "a score of layouts that differ in what makes typing hard");
    const auto options = option("options", "a few layouts with each option of the machine, as Caps Lock as Control");
    const auto layout =
        option("layout", "of all or of those, \"de\", \"de(neo)\" or, with its variants, \"de(*)\"", "names");
    const auto state = option("state", "only these states of the keyboard", "names");
    const auto moments =
        option("moments", "how often a hand in mid-text begins; by default 1, with --short 11", "number");
    const auto pace = option("pace", "milliseconds between keys; by default none", "number");
    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addOptions({option("full", "all layouts of the machine"), few, options, layout, state, moments, pace});
    parser.process(application);

    auto layouts = parser.isSet(few)       ? chosenLayouts()
                   : parser.isSet(options) ? layoutsWithOptions()
                                           : machinesLayouts();
    if (parser.isSet(layout))
        std::erase_if(layouts, [wanted = itemsOf(parser.value(layout))](const LayoutName& each) {
            return !each.matches(wanted);
        });
    const auto states = itemsOf(parser.value(state));
    for (const auto known = stateNames(); const std::string& each : states)
        if (std::find(known.begin(), known.end(), each) == known.end()) parser.showHelp(2);
    const unsigned times = parser.isSet(moments) ? parser.value(moments).toUInt()
                           : parser.isSet(few)   ? waitsBetweenPresses
                                                 : 1;
    const std::chrono::milliseconds between(parser.value(pace).toInt());

    if (!qEnvironmentVariableIsSet("VANTOR_PRIVATE_DESKTOP")) {
        std::fprintf(stderr, "key-sweep: run it in demo/private_desktop.sh\n");
        return 1;
    }
    QElapsedTimer timer;
    timer.start();
    NestedServer nested;
    if (!nested.runs()) {
        std::fprintf(stderr, "key-sweep: the nested server does not start\n");
        return 1;
    }
    Sweep sweep(nested, states, times, between);
    for (std::size_t at = 0; at < layouts.size(); ++at) {
        if (at % 50 == 0) std::fprintf(stderr, "key-sweep: %zu of %zu layouts\n", at, layouts.size());
        sweep.run(layouts[at]);
    }
    std::printf("%zu layouts and variants in %.1f s, %u times with a hand in mid-text, %lld ms between keys\n",
                layouts.size(), static_cast<double>(timer.elapsed()) / 1000, times,
                static_cast<long long>(between.count()));
    return sweep.report() ? 0 : 1;
}
