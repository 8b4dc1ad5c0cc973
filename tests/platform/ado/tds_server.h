#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <variant>
#include <vector>

namespace quillan::test {

/// A server's answer as a token stream. Source of the layouts, here and below: the published
/// protocol description [MS-TDS].
class TdsReply {
 public:
  /// The Null of a text, a whole number or a UTF-8 text.
  using Value = std::variant<std::monostate, std::int64_t, std::string_view>;
  /// kNVarChar has 100 characters; kDateTime2 counts 100 ns and is written as a whole number of
  /// them since midnight of 1 January 2007.
  enum class Type { kBigInt, kNVarChar, kDateTime2 };

  TdsReply& Columns(const std::vector<std::pair<std::string_view, Type>>& columns);
  TdsReply& Row(const std::vector<Value>& values);
  /// An error of severity 16; a message without severity.
  TdsReply& Error(std::int32_t number, std::string_view text) {
    return Message(0xAA, number, text);
  }
  TdsReply& Info(std::int32_t number, std::string_view text) { return Message(0xAB, number, text); }
  /// The end of a statement that touched `rows` rows; more statements' results may follow.
  TdsReply& Done(std::uint64_t rows, bool more = false) { return End(more ? 0x11 : 0x10, rows); }
  /// The end of an answer with a status of its own (0x20: to a client that gave up waiting).
  TdsReply& End(std::uint16_t status, std::uint64_t rows);
  TdsReply& LoginAccepted();

  const std::string& bytes() const { return bytes_; }

 private:
  TdsReply& Message(std::uint8_t token, std::int32_t number, std::string_view text);

  std::string bytes_;
  std::vector<Type> types_;  // Of the columns of the result being written.
};

/// A database server of one connection at a time on an ephemeral port of the loopback interface,
/// which speaks just enough TDS 7.4 to play the answers of a script.
class TdsServer {
 public:
  /// What a client says about itself, decoded from its LOGIN7 message.
  struct Login {
    std::string workstation, user, password, application, server, database;
  };
  /// No answer until the client gives up; in the place of one the connection's end, or its reset.
  struct Silence {};
  struct HangUp {};
  struct Reset {};
  using Answer = std::variant<TdsReply, Silence, HangUp, Reset>;
  /// The answer to a statement; called on the server's own thread.
  using Script = std::function<Answer(const std::string& statement)>;

  /// `address` is an address of the loopback interface.
  explicit TdsServer(Script script, std::optional<TdsReply> login_refusal = std::nullopt,
                     const std::string& address = "127.0.0.1");
  ~TdsServer();

  int port() const { return port_; }
  /// The logins and the statements that came so far, in their order.
  std::vector<Login> logins() const { return Copy(logins_); }
  std::vector<std::string> statements() const { return Copy(statements_); }

 private:
  template <typename Notes>
  Notes Copy(const Notes& notes) const {
    const std::lock_guard lock(mutex_);
    return notes;
  }
  template <typename Notes>
  void Note(Notes& notes, const typename Notes::value_type& note) {
    const std::lock_guard lock(mutex_);
    notes.push_back(note);
  }
  void Serve();
  void ServeClient();
  bool Receive(std::uint8_t& type, std::string& message) const;
  void Send(const std::string& message) const;
  // Whether the connection goes on.
  bool AnswerBatch(const std::string& message);

  Script script_;
  std::optional<TdsReply> login_refusal_;
  int listener_ = -1;
  int port_ = 0;
  std::atomic<bool> stopping_ = false;
  std::atomic<int> client_ = -1;
  mutable std::mutex mutex_;
  std::vector<Login> logins_;
  std::vector<std::string> statements_;
  std::thread thread_;
};

}  // namespace quillan::test
