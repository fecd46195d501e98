#pragma once
// Makes what the tabs show, each from the parts of the application's state that it needs. The pages belong to their
// parent. Main thread.

#include <functional>
#include <string>

#include "app/ApiKeyField.h"
#include "app/AppParts.h"
#include "app/view/SettingsView.h"
#include "app/view/ViewNeeds.h"
#include "timers/view/EmptyListView.h"
#include "timers/view/TimelineSource.h"
#include "timers/view/TimersView.h"

namespace vantor {

// Ways from one tab to another.
struct TabLinks {
    std::function<void(const std::string& address)> openPage;  // in the shared page, on the Internet tab
    EmptyListActions emptyActions;
    std::function<void()> openTimers;
};

[[nodiscard]] TimelineSource timelineOf(DataPart& data, SettingsPart& settings);

[[nodiscard]] TimersView* makeTimersTab(DataPart& data, TypingPart& typing, SettingsPart& settings,
                                        const ViewNeeds& needs, const TabLinks& links, QWidget* parent);
[[nodiscard]] QWidget* makeBestiaryTab(DataPart& data, const ViewNeeds& needs, const TabLinks& links, QWidget* parent);
[[nodiscard]] QWidget* makeSupportTab(NetworkPart& network, TypingPart& typing, const ViewNeeds& needs,
                                      QWidget* parent);
[[nodiscard]] SettingsView* makeSettingsTab(SettingsPart& settings, TypingPart& typing, AccountsPart& accounts,
                                            DataPart& data, ApiKeyField& apiKey, const ViewNeeds& needs,
                                            const TabLinks& links, QWidget* parent);

}  // namespace vantor
