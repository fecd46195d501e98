#pragma once
// The keys of the settings store. Each reader has its own default, beside its reading. "general.pasteClipoard" is
// spelled so in the stored format, since existing settings sit under it.

#include <string_view>

namespace vantor::settings {

inline constexpr std::string_view apiKey = "api.key";

inline constexpr std::string_view windowToggleEvent = "general.windowToggleEvent";
inline constexpr std::string_view windowToggleSecondaryEvent = "general.windowToggleSecondaryEvent";
inline constexpr std::string_view actionCamToggleEvent = "general.actionCamToggleEvent";
inline constexpr std::string_view pasteClipboard = "general.pasteClipoard";
inline constexpr std::string_view enableEmojiCommands = "general.enableEmojiCommands";
inline constexpr std::string_view enableChatLinkReturnKey = "general.enableChatLinkReturnKey";

inline constexpr std::string_view enabledApplications = "apps.enabled";

inline constexpr std::string_view timerIsTimer = "timer.isTimer";
inline constexpr std::string_view timerIsEvent = "timer.isEvent";
inline constexpr std::string_view timerHasGuaranteedItems = "timer.hasGuaranteedItems";
inline constexpr std::string_view timerDropsItems = "timer.dropsItems";
inline constexpr std::string_view timerHasAchievements = "timer.hasAchievements";
inline constexpr std::string_view timerDropsCollectionsItems = "timer.dropsCollectionsItems";
inline constexpr std::string_view timerIsSpecialEvent = "timer.isSpecialEvent";
inline constexpr std::string_view timerWindowDuration = "timer.windowDuration";
inline constexpr std::string_view timerWatchedWindowDuration = "timer.watchedWindowDuration";

// The times are loaded also while there is no API key, without the player's progress.
inline constexpr std::string_view timerWithoutProgress = "timer.withoutProgress";

inline constexpr std::string_view fetchCatalogue = "catalogue.fetch";

inline constexpr std::string_view watching = "events.watching";

// What has been explained once and is not explained again.
inline constexpr std::string_view explainedIcon = "explained.icon";
inline constexpr std::string_view explainedEnter = "explained.enter";

// Where the windows stood: "x y" or "x y width height", in points from the top left of the main screen.
inline constexpr std::string_view frameMain = "frame.Main";
inline constexpr std::string_view frameWatchedEvents = "frame.WatchedEvents";

}  // namespace vantor::settings
