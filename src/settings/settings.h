#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <variant>

#include "db/flow_database.h"
#include "platform/clock.h"
#include "platform/desktop.h"
#include "platform/text/user_locale.h"
#include "registry/registry.h"
#include "settings/periods.h"

namespace quillan {

/// The value of an option, or the registry string that it is read from.
using OptionValue = std::variant<bool, std::int16_t, std::int32_t, float, std::string>;

/// The program's options. Most are kept in the registry, as strings in the key
/// Software\Tarrowby.Net\Quillan\Settings of HKEY_LOCAL_MACHINE, the listening port in this
/// computer's row of the table FlowEngines, the others in memory. The setter of a registry option
/// clamps its value and stores it if it differs.
class Settings {
 public:
  /// Called after every `SaveOption` with the option's registry value name and new value.
  using ChangedHandler = std::function<void(std::string_view name, const OptionValue& value)>;

  /// Loads the registry options. "Max Events" and "Refresh Interval" are clamped and written back,
  /// and `changed` is called for both.
  Settings(Registry& registry, FlowDatabase& database, const Desktop& desktop, const Clock& clock,
           const text::UserLocale& locale, ChangedHandler changed = {});
  Settings(const Settings&) = delete;
  Settings& operator=(const Settings&) = delete;

  /// Whether the suite's configuration wizard has completed; read from the registry at every call.
  /// A string that is neither True nor False nor a number means that it has not.
  bool WizardCompleted() const;

  const std::string& ServiceExec() const { return service_exec_; }
  void SetServiceExec(std::string_view text) { service_exec_ = text; }

  /// Days, 1..3650; not stored.
  std::int32_t RetainDays() const { return retain_days_; }
  void SetRetainDays(std::int32_t days);

  bool AutoRefreshStatus() const { return auto_refresh_status_; }
  void SetAutoRefreshStatus(bool on);
  bool AutoRefreshEvents() const { return auto_refresh_events_; }
  void SetAutoRefreshEvents(bool on);
  bool AutoRefreshDetails() const { return auto_refresh_details_; }
  void SetAutoRefreshDetails(bool on);

  /// Seconds, 1..3600.
  std::int32_t RefreshInterval() const { return refresh_interval_; }
  void SetRefreshInterval(std::int32_t seconds);

  bool IncludeDNS() const { return include_dns_; }
  void SetIncludeDNS(bool on);

  // Collapse options, by level: any level below 1 means 1, any above 3 means 3. Zero and false
  // until `RefreshDatabaseSettings` has run.

  /// The age at which statistics are collapsed: hours at levels 1 and 2, days at level 3; at
  /// least 1.
  std::int32_t CollapseTrigger(int level) const { return collapse_trigger_[Slot(level)]; }
  void SetCollapseTrigger(int level, std::int32_t age);
  /// The length of the intervals collapsed into: minutes at levels 1 and 2, hours at level 3; at
  /// least 1.
  std::int32_t CollapseInterval(int level) const { return collapse_interval_[Slot(level)]; }
  void SetCollapseInterval(int level, std::int32_t length);
  bool CollapseEnable(int level) const { return collapse_enable_[Slot(level)]; }
  void SetCollapseEnable(int level, bool on) { collapse_enable_[Slot(level)] = on; }

  /// 10..10000.
  std::int32_t MaxEvents() const { return max_events_; }
  void SetMaxEvents(std::int32_t count);

  const std::string& CurrentStatusColumns() const { return current_status_columns_; }
  void SetCurrentStatusColumns(std::string_view columns);

  /// The UDP port of this computer's NetFlow receiver, set to at least 1; stored by
  /// `SaveDatabaseSettings`.
  std::int32_t ListenPort() const { return listen_port_; }
  void SetListenPort(std::int32_t port);
  /// Forgets a port that was set in the place of one that could not be read.
  void DropListenPort() { listen_port_known_ = listen_port_error_.empty(); }
  /// Why the last `RefreshDatabaseSettings` could not read the listening port; empty if it could.
  /// Until a caller sets the port, it is then unknown and is not stored.
  const std::string& ListenPortError() const { return listen_port_error_; }

  /// Ports and port ranges, comma-separated; an empty string becomes "1-1024". Not stored.
  const std::string& PortList() const { return port_list_; }
  void SetPortList(std::string_view ports);

  /// Clamped to 1..60 when it is set, but not when it is loaded.
  std::int16_t CurrentPeriod() const { return current_period_; }
  void SetCurrentPeriod(std::int16_t period);

  /// Clamped to 0 or more when it is set, but not when it is loaded.
  float TrafficDetailsSplit() const { return traffic_details_split_; }
  void SetTrafficDetailsSplit(float split);

  /// The reporting periods; every `Refresh` makes a new collection.
  quillan::Periods& Periods() { return *periods_; }

  /// "DIALOG", "MINIMAL" or "ADVANCED", or another registry string in upper case; not stored.
  const std::string& GUIStyle() const { return gui_style_; }
  void SetGUIStyle(std::string_view style);

  /// 1 when the address columns of the group list are sorted descending, else 0.
  std::int16_t SortToggle() const { return sort_toggle_; }
  void SetSortToggle(std::int16_t toggle) { sort_toggle_ = toggle; }

  /// Whether the screen shows 16 bits per pixel or more.
  bool HighColorIcons() const;

  /// The images folder under the suite web server's root folder; empty if that is not set.
  const std::string& WebImagesFolder() const { return web_images_folder_; }

  /// Loads the registry options.
  void Refresh();

  /// The registry string of an option, or `default_value` unchanged if there is none.
  OptionValue RetrieveOption(std::string_view name, const OptionValue& default_value) const;

  /// Writes an option to the registry as a string and reports the change, even if writing fails.
  void SaveOption(std::string_view name, const OptionValue& value);
  /// The names of the options that were set and could not be written. Setting one again, also to
  /// the same value, tries again. What a load writes back does not count.
  const std::set<std::string, std::less<>>& UnwrittenOptions() const { return unwritten_; }

  /// Resets the memory options to their defaults and reads the listening port of this computer:
  /// 2055 if the table has no row for it, 0 if the row holds Null. If the port cannot be read, it
  /// is 2055 and `ListenPortError` gives the reason. Raises nothing.
  void RefreshDatabaseSettings();

  /// Runs the query for the stored listening port, which opens a lost session again. False, with
  /// the reason in the session's `LastError`, when it fails.
  bool QueryListenPort();

  /// Stores the listening port in this computer's row of FlowEngines and creates the row if it does
  /// not exist. Does nothing while the port is unknown. Throws `ado::Error` if the port cannot be
  /// stored; the database is then unchanged.
  void SaveDatabaseSettings();

 private:
  static constexpr size_t kSlots = 4;  // Levels 1..3; slot 0 is not used.
  static size_t Slot(int level);
  std::unique_ptr<ado::Recordset> OpenEngine(ado::LockType lock_type);
  std::int32_t ReadListenPort();

  template <typename Option>
  Option Read(std::string_view name, const Option& default_value) const;
  template <typename Option>
  void Store(std::string_view name, Option& option, const Option& value);
  void ReadWebImagesFolder();

  Registry& registry_;
  FlowDatabase& database_;
  const Desktop& desktop_;
  const Clock& clock_;
  const text::UserLocale& locale_;
  ChangedHandler changed_;

  std::string service_exec_;
  std::int32_t retain_days_ = 0;
  bool auto_refresh_status_ = false;
  bool auto_refresh_events_ = false;
  bool auto_refresh_details_ = false;
  std::int32_t refresh_interval_ = 0;
  bool include_dns_ = false;
  std::array<std::int32_t, kSlots> collapse_trigger_{};
  std::array<std::int32_t, kSlots> collapse_interval_{};
  std::array<bool, kSlots> collapse_enable_{};
  std::int32_t max_events_ = 0;
  std::string current_status_columns_;
  std::int32_t listen_port_ = 0;
  bool listen_port_known_ = false;  // Read from the database, or set since.
  std::string listen_port_error_;
  std::string port_list_;
  std::int16_t current_period_ = 0;
  float traffic_details_split_ = 0;
  std::unique_ptr<quillan::Periods> periods_;
  std::string gui_style_;
  std::set<std::string, std::less<>> unwritten_;
  std::int16_t sort_toggle_ = 0;
  std::string web_images_folder_;
};

}  // namespace quillan
