#pragma once

#include <QPalette>

namespace kvx::ui {

// A dark desktop theme's palette: light text on dark grounds. The screenshots and tests use it
// to check that every window stays readable where the desktop is dark.
QPalette DarkPalette();

} // namespace kvx::ui
