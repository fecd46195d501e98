#include "app/view/TabWords.h"

#include <array>

#include "app/Tabs.h"

namespace vantor {

TimersSource::Words wordsFor(GameData::State state) {
    switch (state) {
        case GameData::State::noKey:
            return {QStringLiteral("No API key"),
                    QStringLiteral("The timers are loaded at the start, once an API key of the game is set: "
                                   "vantor --set api.key=-")};
        case GameData::State::keyIsNew:
            return {QStringLiteral("The API key is set"),
                    QStringLiteral("Quit Vantor from the status bar and start it again to load the timers.")};
        case GameData::State::failed:
            return {QStringLiteral("The timers could not be loaded"),
                    QStringLiteral("Check the network and the API key, then start Vantor again.")};
        case GameData::State::loading:
        case GameData::State::ready:
            break;
    }
    return {QStringLiteral("Loading"), QStringLiteral("The timers are being loaded.")};
}

TimersSource::Words wordsForTab(std::size_t position) {
    static constexpr std::array<std::string_view, tabEntries.size()> sentences{
        "The game's update notes are not part of this version yet.",
        "",
        "The script translators are not part of this version yet.",
        "The bestiary is not part of this version yet.",
        "The browser is not part of this version yet.",
        "The support page is not part of this version yet.",
        "There is no settings page in this version yet: vantor --help names the command for each setting."};
    const auto text = [](std::string_view view) {
        return QString::fromUtf8(view.data(), static_cast<qsizetype>(view.size()));
    };
    return {text(tabEntries.at(position).text), text(sentences.at(position))};
}

QString hotkeyHint(const std::optional<std::string>& stored) {
    if (!stored || *stored == " ") return {};
    return QLatin1Char('[') + QString::fromStdString(*stored) + QLatin1Char(']');
}

}  // namespace vantor
