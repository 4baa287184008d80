// SPDX-License-Identifier: MIT
// Whether there is a user who can see and dismiss a window.
#pragma once

namespace pde {

// True when a QApplication runs on a real display platform (not offscreen or
// minimal), so that a modal window can be shown and answered.
bool hasInteractiveDisplay();

} // namespace pde
