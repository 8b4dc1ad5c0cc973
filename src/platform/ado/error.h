#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

namespace quillan::ado {

/// The number of an error that reports an expired statement time-out, whatever the driver.
/// Source: DB_E_ABORTLIMITREACHED of OLE DB.
inline constexpr std::int32_t kTimeoutExpired = static_cast<std::int32_t>(0x80040E31);

/// The state of an error that reports a cancelled statement, whatever the driver. Source: ODBC.
inline constexpr std::string_view kCancelled = "HY008";

/// The only exception that leaves the data-access layer.
class Error : public std::runtime_error {
 public:
  /// `number`: the server's or engine's own error number, or `kTimeoutExpired`. `state`: the
  /// SQLSTATE, or the engine's name of the code; may be empty. `text`: the description as the
  /// driver gave it (UTF-8).
  Error(std::int32_t number, std::string state, const std::string& text)
      : std::runtime_error(text), number_(number), state_(std::move(state)) {}

  std::int32_t number() const { return number_; }
  const std::string& state() const { return state_; }
  /// Whether a statement ran into its time-out.
  bool IsTimeout() const { return number_ == kTimeoutExpired; }
  /// Whether the statement was cancelled by `Driver::Cancel`.
  bool IsCancelled() const { return state_ == kCancelled; }
  /// Whether the connection to the server is lost: the session can only be opened again.
  bool IsConnectionLost() const { return state_.starts_with("08"); }

 private:
  std::int32_t number_;
  std::string state_;
};

// Errors of the layer itself. Source of the numbers: ADO's ErrorValueEnum.
inline constexpr std::int32_t kNoCurrentRow = 3021;
inline constexpr std::int32_t kUnknownField = 3265;
inline constexpr std::int32_t kObjectClosed = 3704;
inline constexpr std::int32_t kObjectOpen = 3705;
inline constexpr std::int32_t kReadOnlyRows = 3251;
inline constexpr std::int32_t kRowNotFound = 3219;

}  // namespace quillan::ado
