#pragma once
// Vantor has no place in the Dock and no menu bar of its own. Main thread.

namespace vantor {

// Once there is an application object. The bundle says the same before that; a program started from outside a bundle
// has only this.
void becomeAccessoryApplication();

}  // namespace vantor
