#pragma once

namespace quillan {

/// Gives the application its one font, style and colours, the same on every desktop. To be called
/// once, before the first window.
void InstallAppearance();

}  // namespace quillan
