#pragma once

namespace quillan {

/// Hides the pages that the user cannot reach, and their tabs, from assistive technology too. Qt
/// would let it press a tab that is not shown.
void InstallPageAccess();

}  // namespace quillan
