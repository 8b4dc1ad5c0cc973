#pragma once

#include <vector>

#include "dialog/list_exporter.h"
#include "dialog/settings_page.h"
#include "lists/list_host.h"
#include "platform/clock.h"
#include "platform/message_box.h"
#include "settings/settings.h"

namespace quillan {

/// What the pages work with; all of it outlives them.
struct PageServices {
  Settings& settings;
  FlowDatabase& database;
  ListHost& host;
  ListExporter& exporter;
  MessageBox& messages;
  const Clock& clock;
  const text::UserLocale& locale;
};

/// The pages of the settings dialog, in the order of their tabs, as children of `window`.
std::vector<SettingsPage*> CreateSettingsPages(const PageServices& services, QWidget* window);

}  // namespace quillan
