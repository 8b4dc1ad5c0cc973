#pragma once

#include "cli/session.h"

namespace quillan {

// The commands, each over an open session.

ExitStatus ShowStatus(Session& session);
ExitStatus GetPort(Session& session);
ExitStatus SetPort(Session& session);

ExitStatus ListPorts(Session& session);
ExitStatus AddPort(Session& session);
ExitStatus EnablePorts(Session& session);
ExitStatus DisablePorts(Session& session);
ExitStatus DeletePorts(Session& session);
ExitStatus RenamePort(Session& session);
ExitStatus ImportPorts(Session& session);
ExitStatus ExportPorts(Session& session);
ExitStatus DiffPorts(Session& session);

ExitStatus ListGroups(Session& session);
ExitStatus AddGroup(Session& session);
ExitStatus EnableGroups(Session& session);
ExitStatus DisableGroups(Session& session);
ExitStatus DeleteGroups(Session& session);
ExitStatus RenameGroup(Session& session);
ExitStatus ImportGroups(Session& session);
ExitStatus ExportGroups(Session& session);
ExitStatus DiffGroups(Session& session);
ExitStatus WhichGroup(Session& session);

ExitStatus ListSources(Session& session);
ExitStatus EnableSources(Session& session);
ExitStatus DisableSources(Session& session);

}  // namespace quillan
