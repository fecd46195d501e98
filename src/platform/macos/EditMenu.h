#pragma once
// The keys for cutting, copying and pasting in a page. A system's view hears of them from a menu only, and the toolkit
// makes none. Main thread.

namespace vantor {

// Once there is an application object. Nobody sees the menu: an accessory application shows no menu bar.
void addEditMenu();

}  // namespace vantor
