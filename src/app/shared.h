#pragma once

#include "db/flow_database.h"
#include "platform/clock.h"
#include "platform/desktop.h"
#include "platform/files.h"
#include "platform/text/user_locale.h"
#include "settings/settings.h"

namespace quillan {

// The objects of which the process has one each. The first use makes them; they live until it ends.
// Only this room names them; every other class is given what it needs.

/// The desktop that the shared objects ask. Without a toolkit it knows no screen, so `main` hands
/// over one that does, before the first use of anything below.
void UseDesktop(Desktop& desktop);

Settings& AppSettings();
FlowDatabase& MainDatabase();
Files& FileSystem();
const Clock& LocalClock();
const text::UserLocale& Locale();

}  // namespace quillan
