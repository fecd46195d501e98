#include "catalogue/CatalogueWords.h"

#include "catalogue/Days.h"

namespace vantor {

std::string catalogueText(const CatalogueStatus& status) {
    std::string text = "version " + std::to_string(status.facts.version);
    if (!status.facts.date.empty()) text += " of " + dayText(status.facts.date);
    return text + (status.source == CatalogueStatus::Source::update ? ", a signed update" : ", built in");
}

std::string agedText(const CatalogueFacts& facts, Clock::Seconds now) {
    const auto lastDay = dayNumber(facts.validUntil);
    if (!lastDay || dayNumber(now) <= *lastDay) return {};
    const std::string& day = facts.date.empty() ? facts.validUntil : facts.date;
    // The year is worth a word only where it is another one.
    const auto newYear = dayNumber(day.substr(0, 4) + "-12-31");
    return "times of " + dayText(day, newYear && dayNumber(now) > *newYear);
}

std::string playerFilesText(const CatalogueStatus& status) {
    if (status.playerFiles.empty()) return "Your own files: none is used";
    std::string text = "Your own files:";
    for (const std::string& name : status.playerFiles)
        text += (&name == &status.playerFiles.front() ? " " : ", ") + name;
    return text;
}

std::string festivalsText(const CatalogueStatus& status) {
    if (status.festivals.value_or(true)) return {};
    return "No festival has dates in this catalogue, so none is shown";
}

}  // namespace vantor
