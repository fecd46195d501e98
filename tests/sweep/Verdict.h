#pragma once
// How one layout fared in one state. Plain values, any thread.

#include <string>
#include <vector>

#include "sweep/LayoutList.h"

namespace vantor::sweep {

struct Verdict {
    enum class Kind { exact, failed, notApplicable };

    Kind kind = Kind::exact;
    std::string why;  // empty when exact
};

// Where two texts part, with the character and its code point on each side. Empty for equal ones.
[[nodiscard]] std::string difference(const std::string& expected, const std::string& arrived);

class Results {
public:
    void add(std::string_view state, const LayoutName& layout, Verdict verdict);
    // The table, then the first failures of every state by name, then "N passed, M failed".
    void print() const;
    [[nodiscard]] bool allExact() const { return failed_ == 0 && passed_ > 0; }

private:
    struct Failure {
        LayoutName layout;
        std::string why;
    };
    struct Row {
        std::string state;
        int exact = 0;
        int notApplicable = 0;
        std::vector<Failure> failures;
    };

    std::vector<Row> rows_;
    int passed_ = 0;
    int failed_ = 0;
};

}  // namespace vantor::sweep
