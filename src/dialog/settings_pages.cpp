#include "dialog/settings_pages.h"

#include <QCoreApplication>

#include "dialog/collapse_page.h"
#include "dialog/list_page.h"
#include "dialog/new_addr_group_form.h"
#include "dialog/new_port_form.h"
#include "dialog/retention_page.h"
#include "dialog/service_page.h"
#include "lists/address_group_list.h"
#include "lists/interfaces_list.h"
#include "lists/port_list.h"

namespace quillan {

std::vector<SettingsPage*> CreateSettingsPages(const PageServices& services, QWidget* window) {
  Settings& settings = services.settings;
  FlowDatabase& database = services.database;
  MessageBox& messages = services.messages;
  const ListServices for_lists{.database = database,
                               .host = services.host,
                               .messages = messages,
                               .clock = services.clock,
                               .locale = services.locale};
  const ListMenu::Services for_menus{
      .exporter = services.exporter, .messages = messages, .locale = services.locale};
  const auto new_port = [&database, &messages, window] {
    return NewPortForm::AddNewPort(database, messages, window);
  };
  const auto new_group = [&database, &messages, window](const Grid& grid) {
    return NewAddrGroupForm::AddNewAddressGroup(&grid, database, messages, window);
  };
  const auto tr = [](const char* text) {
    return QCoreApplication::translate("SettingsForm", text);
  };
  return {
      new ListPage({"PortListFrame", "PortList", tr("Application && Service Ports"), tr("ports")},
                   std::make_unique<PortList>(for_lists, new_port), for_menus, window),
      new ListPage({"IPGroupListFrame", "AddressGroupList", tr("IP Address Groups"), tr("groups")},
                   std::make_unique<AddressGroupList>(for_lists, settings, new_group), for_menus,
                   window),
      new RetentionPage(settings, services.locale, window),
      new CollapsePage(settings, messages, window),
      new ServicePage(settings, messages, window),
      new ListPage({"NetFlowSourceFrame", "InterfacesList", tr("NetFlow Sources"), tr("sources")},
                   std::make_unique<InterfacesList>(for_lists), for_menus, window),
  };
}

}  // namespace quillan
