// Types what every layout of the machine can type, in every state of the keyboard, and compares what arrives; runs in
// demo/private_desktop.sh. The last line is "N passed, M failed".
//   key-sweep --short     a score of layouts that differ in what makes typing hard
//   key-sweep --full      all layouts
//   key-sweep --options   a few layouts with each option of the machine, as Caps Lock as Control
//   key-sweep NAME...     of all layouts "de", "de(neo)" or, with its variants, "de(*)"
//   key-sweep --stops     a text of 200 characters stopped at every stroke, in the layouts of --short
//   key-sweep --random N  a text stopped N times at a random moment, or its focus taken

#include <QtCore/QCoreApplication>
#include <QtCore/QElapsedTimer>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "sweep/Stops.h"
#include "sweep/Sweep.h"

using namespace vantor::sweep;

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const std::vector<std::string> asked(argv + 1, argv + argc);
    const std::string_view set = asked.empty() ? "" : asked.front();
    const bool few = set == "--short" || set == "--stops";
    const unsigned stops = set == "--random" && asked.size() == 2 ? static_cast<unsigned>(std::atoi(argv[2])) : 0;
    auto layouts = few ? chosenLayouts() : set == "--options" ? layoutsWithOptions() : machinesLayouts();
    if (!few && stops == 0 && set != "--full" && set != "--options")
        std::erase_if(layouts, [&](const LayoutName& each) { return !each.matches(asked); });
    if (layouts.empty() || !qEnvironmentVariableIsSet("VANTOR_PRIVATE_DESKTOP")) {
        std::fprintf(stderr,
                     "usage: demo/private_desktop.sh key-sweep --short|--full|--options|--stops|--random N|NAME...\n");
        return 2;
    }
    QElapsedTimer timer;
    timer.start();
    NestedServer nested;
    if (!nested.runs()) {
        std::fprintf(stderr, "key-sweep: the nested server does not start\n");
        return 1;
    }
    if (stops > 0 || set == "--stops") {
        Stops stopped;
        if (stops > 0)
            stopped.stopAtRandom(stops);
        else
            for (const LayoutName& each : layouts) stopped.stopEverywhere(each);
        std::printf("%.1f s\n", static_cast<double>(timer.elapsed()) / 1000);
        return stopped.report() ? 0 : 1;
    }
    // In the short set a hand in mid-text begins at every moment.
    Sweep sweep(nested, few ? waitsBetweenPresses : 1);
    for (std::size_t at = 0; at < layouts.size(); ++at) {
        if (at % 50 == 0) std::fprintf(stderr, "key-sweep: %zu of %zu layouts\n", at, layouts.size());
        sweep.run(layouts[at]);
    }
    std::printf("%zu layouts and variants in %.1f s\n", layouts.size(), static_cast<double>(timer.elapsed()) / 1000);
    return sweep.report() ? 0 : 1;
}
