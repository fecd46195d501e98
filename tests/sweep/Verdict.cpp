#include "sweep/Verdict.h"

#include <QtCore/QString>
#include <algorithm>
#include <cstdio>

namespace vantor::sweep {
namespace {

constexpr std::size_t namedFailures = 12;

std::string named(const std::u32string& text, std::size_t at) {
    if (at >= text.size()) return "the end";
    const char32_t character = text[at];
    std::string code(12, '\0');
    code.resize(
        static_cast<std::size_t>(std::snprintf(code.data(), code.size(), "U+%04X", static_cast<unsigned>(character))));
    if (character < 0x20 || character == 0x7f) return code;
    return code + " " + QString::fromUcs4(&character, 1).toStdString();
}

}  // namespace

std::string difference(const std::string& expected, const std::string& arrived) {
    if (expected == arrived) return {};
    const auto wanted = QString::fromStdString(expected).toStdU32String();
    const auto got = QString::fromStdString(arrived).toStdU32String();
    std::size_t differing = 0;
    std::string out;
    for (std::size_t at = 0; at < std::max(wanted.size(), got.size()); ++at) {
        if (at < wanted.size() && at < got.size() && wanted[at] == got[at]) continue;
        if (++differing > 4) continue;
        out += (out.empty() ? "" : "; ") + std::to_string(at) + ": " + named(wanted, at) + " came as " + named(got, at);
    }
    return out + "; " + std::to_string(differing) + " of " + std::to_string(wanted.size());
}

void Results::add(std::string_view state, const LayoutName& layout, Verdict verdict) {
    auto row = std::find_if(rows_.begin(), rows_.end(), [&](const Row& each) { return each.state == state; });
    if (row == rows_.end()) row = rows_.insert(rows_.end(), Row{std::string(state), 0, 0, {}});
    switch (verdict.kind) {
        case Verdict::Kind::exact:
            ++row->exact;
            ++passed_;
            break;
        case Verdict::Kind::notApplicable:
            ++row->notApplicable;
            break;
        case Verdict::Kind::failed:
            row->failures.push_back({layout, std::move(verdict.why)});
            ++failed_;
            break;
    }
}

void Results::print() const {
    for (const Row& row : rows_) {
        for (std::size_t at = 0; at < std::min(row.failures.size(), namedFailures); ++at)
            std::printf("%s, %s: %s\n", row.state.c_str(), row.failures[at].layout.text().c_str(),
                        row.failures[at].why.c_str());
        if (row.failures.size() > namedFailures)
            std::printf("%s: %zu more\n", row.state.c_str(), row.failures.size() - namedFailures);
    }
    std::printf("%-16s %8s %8s %16s\n", "state", "exact", "failed", "not applicable");
    for (const Row& row : rows_)
        std::printf("%-16s %8d %8zu %16d\n", row.state.c_str(), row.exact, row.failures.size(), row.notApplicable);
    std::printf("%d passed, %d failed\n", passed_, failed_);
}

}  // namespace vantor::sweep
