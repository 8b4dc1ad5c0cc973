#pragma once

#include "db/flow_database.h"
#include "lists/list_host.h"
#include "platform/clock.h"
#include "platform/message_box.h"
#include "platform/text/user_locale.h"

namespace quillan {

/// What every list works with; all of it outlives the list.
struct ListServices {
  FlowDatabase& database;
  ListHost& host;
  MessageBox& messages;
  const Clock& clock;
  const text::UserLocale& locale;
};

}  // namespace quillan
