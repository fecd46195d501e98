#pragma once
// The user's own folders for the catalogue. After the application object; any thread.

#include <QtCore/QString>

namespace vantor {

// Below the user's data folder: what the player puts there.
[[nodiscard]] QString playerCatalogueFolder();
// Below the user's cache folder: what was fetched.
[[nodiscard]] QString catalogueUpdateFolder();

}  // namespace vantor
