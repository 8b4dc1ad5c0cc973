#include "settings/settings.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <exception>
#include <limits>
#include <stdexcept>

#include "db/sql_text.h"
#include "platform/ado/error.h"
#include "platform/program.h"
#include "platform/text/ascii.h"
#include "platform/text/number.h"

namespace quillan {
namespace {

constexpr std::string_view kSection = "Settings";

constexpr std::string_view kRetainData = "Retain Data";
constexpr std::string_view kMaxEvents = "Max Events";
constexpr std::string_view kGuiStyle = "GUI Style";
constexpr std::string_view kAutoRefreshStatus = "Auto Refresh Status";
constexpr std::string_view kAutoRefreshEvents = "Auto Refresh Events";
constexpr std::string_view kAutoRefreshDetails = "Auto Refresh Details";
constexpr std::string_view kRefreshInterval = "Refresh Interval";
constexpr std::string_view kIncludeDns = "Include DNS";
constexpr std::string_view kCurrentPeriod = "Current Traffic Period";
constexpr std::string_view kTrafficDetailsSplit = "Traffic Details Split";
constexpr std::string_view kCurrentStatusColumns = "Current Status Columns";

constexpr std::int32_t kDefaultRetainDays = 21;
constexpr std::int32_t kDefaultListenPort = 2055;

template <typename Integer>
std::optional<Integer> ReadInteger(std::string_view text, const text::UserLocale& locale) {
  const auto number = locale.ReadNumber(text);
  if (!number) return std::nullopt;
  const double rounded = text::RoundHalfToEven(*number);
  if (!(rounded >= std::numeric_limits<Integer>::min() &&
        rounded <= std::numeric_limits<Integer>::max())) {
    return std::nullopt;
  }
  return static_cast<Integer>(rounded);
}

// An option as the registry's string: True and False, numbers in the user's locale, strings as they
// are.
std::string ToOptionText(bool value, const text::UserLocale& /*locale*/) {
  return value ? "True" : "False";
}

std::string ToOptionText(std::int16_t value, const text::UserLocale& /*locale*/) {
  return std::to_string(value);
}

std::string ToOptionText(std::int32_t value, const text::UserLocale& /*locale*/) {
  return std::to_string(value);
}

std::string ToOptionText(float value, const text::UserLocale& locale) {
  // By way of the shortest text, so that 0.1 does not become 0.100000001490116.
  std::array<char, 40> digits{};
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value);
  double shortest = 0;
  std::from_chars(digits.data(), end.ptr, shortest);
  return locale.FormatNumber(shortest);
}

std::string ToOptionText(const std::string& value, const text::UserLocale& /*locale*/) {
  return value;
}

// The option that `text` holds; nothing if it does not convert. Booleans may also be numbers; a
// fraction is rounded.
template <typename Option>
std::optional<Option> FromOptionText(std::string_view text, const text::UserLocale& locale);

template <>
std::optional<bool> FromOptionText(std::string_view text, const text::UserLocale& locale) {
  const std::string_view word = text::TrimSpaces(text);
  if (text::EqualsIgnoringCase(word, "True")) return true;
  if (text::EqualsIgnoringCase(word, "False")) return false;
  const auto number = locale.ReadNumber(text);
  return number ? std::optional(*number != 0) : std::nullopt;
}

template <>
std::optional<std::int16_t> FromOptionText(std::string_view text, const text::UserLocale& locale) {
  return ReadInteger<std::int16_t>(text, locale);
}

template <>
std::optional<std::int32_t> FromOptionText(std::string_view text, const text::UserLocale& locale) {
  return ReadInteger<std::int32_t>(text, locale);
}

template <>
std::optional<float> FromOptionText(std::string_view text, const text::UserLocale& locale) {
  const auto number = locale.ReadNumber(text);
  if (!number || std::abs(*number) > std::numeric_limits<float>::max()) return std::nullopt;
  return static_cast<float>(*number);
}

template <>
std::optional<std::string> FromOptionText(std::string_view text,
                                          const text::UserLocale& /*locale*/) {
  return std::string(text);
}

}  // namespace

Settings::Settings(Registry& registry, FlowDatabase& database, const Desktop& desktop,
                   const Clock& clock, const text::UserLocale& locale, ChangedHandler changed)
    : registry_(registry),
      database_(database),
      desktop_(desktop),
      clock_(clock),
      locale_(locale),
      changed_(std::move(changed)) {
  Refresh();
}

template <typename Option>
Option Settings::Read(std::string_view name, const Option& default_value) const {
  const OptionValue value = RetrieveOption(name, default_value);
  const auto* text = std::get_if<std::string>(&value);
  if (text == nullptr) return default_value;
  return FromOptionText<Option>(*text, locale_).value_or(default_value);
}

template <typename Option>
void Settings::Store(std::string_view name, Option& option, const Option& value) {
  if (option == value && !unwritten_.contains(name)) return;
  option = value;
  SaveOption(name, value);
}

OptionValue Settings::RetrieveOption(std::string_view name,
                                     const OptionValue& default_value) const {
  const auto text = registry_.ReadRegistryString(kDisplayName, kSection, name);
  return text ? OptionValue(*text) : default_value;
}

void Settings::SaveOption(std::string_view name, const OptionValue& value) {
  const std::string text =
      std::visit([&](const auto& option) { return ToOptionText(option, locale_); }, value);
  if (registry_.SaveRegistryString(kDisplayName, kSection, name, text)) {
    if (const auto found = unwritten_.find(name); found != unwritten_.end())
      unwritten_.erase(found);
  } else {
    unwritten_.emplace(name);
  }
  if (changed_) changed_(name, value);
}

void Settings::Refresh() {
  periods_ = std::make_unique<quillan::Periods>(clock_, locale_);
  current_status_columns_ =
      Read<std::string>(kCurrentStatusColumns, "InterfaceTypeIcon,InterfaceSpeed,OutBps,InBps");
  SetRetainDays(Read(kRetainData, kDefaultRetainDays));
  SetMaxEvents(Read<std::int32_t>(kMaxEvents, 250));
  SetGUIStyle(Read<std::string>(kGuiStyle, "DIALOG"));
  auto_refresh_status_ = Read(kAutoRefreshStatus, false);
  auto_refresh_events_ = Read(kAutoRefreshEvents, false);
  auto_refresh_details_ = Read(kAutoRefreshDetails, false);
  SetRefreshInterval(Read<std::int32_t>(kRefreshInterval, 10));
  include_dns_ = Read(kIncludeDns, true);
  current_period_ = Read<std::int16_t>(kCurrentPeriod, 5);
  traffic_details_split_ = Read<float>(kTrafficDetailsSplit, 6000);
  ReadWebImagesFolder();
  unwritten_.clear();
}

void Settings::ReadWebImagesFolder() {
  const std::string root =
      registry_.ReadRegistryString("Tarrowby 2002", "Zephram", "Web Root Dir").value_or("");
  web_images_folder_ = root.empty() ? "" : root + "\\Kelvora\\Images";
}

bool Settings::WizardCompleted() const {
  const auto text = registry_.ReadRegistryString("TBKelvora", "Wizard", "Completed");
  return text && FromOptionText<bool>(*text, locale_).value_or(false);
}

void Settings::SetRetainDays(std::int32_t days) { retain_days_ = std::clamp(days, 1, 3650); }

void Settings::SetAutoRefreshStatus(bool on) {
  Store(kAutoRefreshStatus, auto_refresh_status_, on);
}

void Settings::SetAutoRefreshEvents(bool on) {
  Store(kAutoRefreshEvents, auto_refresh_events_, on);
}

void Settings::SetAutoRefreshDetails(bool on) {
  Store(kAutoRefreshDetails, auto_refresh_details_, on);
}

void Settings::SetRefreshInterval(std::int32_t seconds) {
  Store(kRefreshInterval, refresh_interval_, std::clamp(seconds, 1, 3600));
}

void Settings::SetIncludeDNS(bool on) { Store(kIncludeDns, include_dns_, on); }

size_t Settings::Slot(int level) { return static_cast<size_t>(std::clamp(level, 1, 3)); }

void Settings::SetCollapseTrigger(int level, std::int32_t age) {
  collapse_trigger_[Slot(level)] = std::max(age, 1);
}

void Settings::SetCollapseInterval(int level, std::int32_t length) {
  collapse_interval_[Slot(level)] = std::max(length, 1);
}

void Settings::SetMaxEvents(std::int32_t count) {
  Store(kMaxEvents, max_events_, std::clamp(count, 10, 10000));
}

void Settings::SetCurrentStatusColumns(std::string_view columns) {
  Store(kCurrentStatusColumns, current_status_columns_, std::string(columns));
}

void Settings::SetListenPort(std::int32_t port) {
  listen_port_ = std::max(port, 1);
  listen_port_known_ = true;
}

void Settings::SetPortList(std::string_view ports) {
  port_list_ = ports.empty() ? "1-1024" : ports;
}

void Settings::SetCurrentPeriod(std::int16_t period) {
  Store(kCurrentPeriod, current_period_, std::clamp<std::int16_t>(period, 1, 60));
}

void Settings::SetTrafficDetailsSplit(float split) {
  // Not a number compares with nothing and becomes 0 as well.
  Store(kTrafficDetailsSplit, traffic_details_split_, split >= 0 ? split : 0);
}

void Settings::SetGUIStyle(std::string_view style) { gui_style_ = text::ToUpperAscii(style); }

bool Settings::HighColorIcons() const { return ScreenColorDepth(desktop_) >= 16; }

std::unique_ptr<ado::Recordset> Settings::OpenEngine(ado::LockType lock_type) {
  auto rows = database_.OpenRecordset(
      "Select * From FlowEngines Where ServerName=" + SqlText(LocalComputerName(desktop_)),
      lock_type);
  if (rows) return rows;
  const std::string& reason = database_.LastError();
  throw ado::Error(ado::kObjectClosed, "",
                   reason.empty() ? "Could not read the table FlowEngines." : reason);
}

std::int32_t Settings::ReadListenPort() {
  const auto rows = OpenEngine(ado::LockType::kReadOnly);
  if (rows->Eof()) return kDefaultListenPort;
  const std::int64_t port = ado::ToWhole(ado::NullToZero(rows->Fields("NetFlowPort").Value()));
  if (port != static_cast<std::int32_t>(port)) {
    throw std::out_of_range("The stored port " + std::to_string(port) +
                            " is not a 32-bit integer.");
  }
  return static_cast<std::int32_t>(port);
}

void Settings::RefreshDatabaseSettings() {
  retain_days_ = kDefaultRetainDays;
  listen_port_ = kDefaultListenPort;
  port_list_ = "1-1024,8080,2055,9100";
  collapse_enable_ = {false, true, true, true};
  collapse_trigger_ = {0, 1, 24, 7};
  collapse_interval_ = {0, 15, 60, 24};

  listen_port_error_.clear();
  try {
    listen_port_ = ReadListenPort();
  } catch (const std::exception& failure) {
    listen_port_error_ = failure.what();
  }
  listen_port_known_ = listen_port_error_.empty();
}

bool Settings::QueryListenPort() {
  try {
    OpenEngine(ado::LockType::kReadOnly);
    return true;
  } catch (const ado::Error&) {
    return false;
  }
}

void Settings::SaveDatabaseSettings() {
  if (!listen_port_known_) return;
  const auto rows = OpenEngine(ado::LockType::kOptimistic);
  if (rows->Eof()) {
    rows->AddNew();
    rows->Fields("ServerName").SetValue(LocalComputerName(desktop_));
  }
  rows->Fields("NetFlowPort").SetValue(std::int64_t{listen_port_});
  rows->Update();
}

}  // namespace quillan
