// Types what every layout of the machine can type, in every state of the keyboard, and compares what arrives:
//   demo/private_desktop.sh key-sweep --full | --short | --options | --layout NAME[,NAME...] [--state NAME[,...]]
//   [--moments N] [--pace MS]
//   demo/private_desktop.sh key-sweep --stops [--layout NAME[,NAME...]] | --random TIMES
// --options goes over the options of the machine's list instead, such as Caps Lock as Control. A layout is "de",
// "de(neo)" or, with all its variants, "de(*)". --moments is how often a hand that acts in the middle of a text begins,
// one key later each time: by default 11, which is at every one, in the short set, and once otherwise. The pauses
// between keys are left out unless a pace is given. --stops stops a text of 200 characters at every stroke, in the
// short set of layouts; --random stops one at random moments, or takes the focus away. The last line is "N passed, M
// failed".

#include <QtCore/QCoreApplication>
#include <QtCore/QElapsedTimer>
#include <QtCore/QStringList>
#include <cstdio>

#include "sweep/Stops.h"
#include "sweep/Sweep.h"

namespace {

using namespace vantor::sweep;

struct Options {
    std::vector<LayoutName> from;
    std::vector<std::string> layouts;
    std::vector<std::string> states;
    unsigned moments = 1;
    std::chrono::milliseconds pace{0};
    bool stops = false;
    unsigned randomStops = 0;
};

std::vector<std::string> itemsOf(const QString& list) {
    std::vector<std::string> items;
    for (const QString& each : list.split(QLatin1Char(','), Qt::SkipEmptyParts)) items.push_back(each.toStdString());
    return items;
}

std::optional<Options> parse(const QStringList& arguments) {
    Options options;
    for (qsizetype at = 1; at < arguments.size(); ++at) {
        const QString& name = arguments[at];
        const bool isSet = name == QStringLiteral("--full") || name == QStringLiteral("--short") ||
                           name == QStringLiteral("--options");
        if (isSet) {
            options.from = name == QStringLiteral("--full")    ? machinesLayouts()
                           : name == QStringLiteral("--short") ? chosenLayouts()
                                                               : layoutsWithOptions();
            if (name == QStringLiteral("--short")) options.moments = waitsBetweenPresses;
            continue;
        }
        if (name == QStringLiteral("--stops")) {
            options.stops = true;
            options.from = chosenLayouts();
            continue;
        }
        if (at + 1 == arguments.size()) return std::nullopt;
        const QString& value = arguments[++at];
        bool isNumber = true;
        if (name == QStringLiteral("--layout")) {
            options.layouts = itemsOf(value);
        } else if (name == QStringLiteral("--state")) {
            options.states = itemsOf(value);
        } else if (name == QStringLiteral("--moments")) {
            options.moments = value.toUInt(&isNumber);
        } else if (name == QStringLiteral("--random")) {
            options.randomStops = value.toUInt(&isNumber);
        } else if (name == QStringLiteral("--pace")) {
            options.pace = std::chrono::milliseconds(value.toInt(&isNumber));
        } else {
            return std::nullopt;
        }
        if (!isNumber) return std::nullopt;
    }
    const auto known = [](const std::string& name) {
        return std::any_of(states.begin(), states.end(), [&](const State& each) { return each.name == name; });
    };
    if (options.randomStops > 0) return options;
    if (options.from.empty() && !options.layouts.empty()) options.from = machinesLayouts();
    if (options.from.empty() || !std::all_of(options.states.begin(), options.states.end(), known)) return std::nullopt;
    return options;
}

std::vector<LayoutName> layoutsOf(const Options& options) {
    auto layouts = options.from;
    if (!options.layouts.empty())
        std::erase_if(layouts, [&](const LayoutName& each) { return !matches(each, options.layouts); });
    return layouts;
}

}  // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    if (!qEnvironmentVariableIsSet("VANTOR_PRIVATE_DESKTOP")) {
        std::fprintf(stderr, "key-sweep: run it in demo/private_desktop.sh\n");
        return 1;
    }
    const auto options = parse(QCoreApplication::arguments());
    if (!options) {
        std::fprintf(stderr,
                     "usage: key-sweep --full|--short|--options [--layout NAME,...] [--state NAME,...] [--moments N] "
                     "[--pace MS] | --stops [--layout NAME,...] | --random TIMES\n");
        return 2;
    }
    const auto layouts = layoutsOf(*options);

    QElapsedTimer timer;
    timer.start();
    NestedServer nested;
    if (nested.display().isEmpty()) {
        std::fprintf(stderr, "key-sweep: the nested server does not start\n");
        return 1;
    }
    qputenv("DISPLAY", nested.display().toLatin1());
    Receiver receiver;
    PlayersKeyboard keyboard(nested);
    if (options->stops || options->randomStops > 0) {
        Stops stops(keyboard, receiver);
        for (const LayoutName& each : layouts) stops.stopEverywhere(each);
        if (options->randomStops > 0) stops.stopAtRandom(options->randomStops);
        std::printf("%.1f s\n", static_cast<double>(timer.elapsed()) / 1000);
        stops.results().print();
        return stops.results().allExact() ? 0 : 1;
    }
    Sweep sweep(keyboard, receiver, options->pace, options->states, options->moments);
    for (std::size_t at = 0; at < layouts.size(); ++at) {
        if (at % 50 == 0) std::fprintf(stderr, "key-sweep: %zu of %zu layouts\n", at, layouts.size());
        sweep.run(layouts[at]);
    }
    std::printf("%zu layouts and variants in %.1f s, %u times with a hand in mid-text, %lld ms between keys\n",
                layouts.size(), static_cast<double>(timer.elapsed()) / 1000, options->moments,
                static_cast<long long>(options->pace.count()));
    sweep.results().print();
    return sweep.results().allExact() ? 0 : 1;
}
