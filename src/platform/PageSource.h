#pragma once
// The one embedded page and the widget that draws it, for whoever shows it. Main thread.

#include <functional>

#include "platform/WebPage.h"

class QWidget;

namespace vantor {

struct PageSource {
    WebPage& page;
    // Nothing before there is an engine. The caller owns it.
    std::function<QWidget*()> engineWidget;
};

}  // namespace vantor
