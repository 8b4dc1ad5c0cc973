#pragma once

#include "cli/session.h"

namespace quillan {

// The commands, each over an open session.

ExitStatus ShowStatus(Session& session);
ExitStatus GetPort(Session& session);
ExitStatus SetPort(Session& session);

ExitStatus WhichGroup(Session& session);

ExitStatus ListSources(Session& session);
ExitStatus EnableSources(Session& session);
ExitStatus DisableSources(Session& session);

}  // namespace quillan
