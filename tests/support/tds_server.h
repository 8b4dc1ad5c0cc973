#pragma once

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <cstring>
#include <functional>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>
#include <variant>
#include <vector>

#include "platform/text/ascii.h"
#include "platform/text/encoding.h"

namespace quillan::test {

/// A server's answer as a token stream. Source of the layouts, here and below: the published
/// protocol description [MS-TDS].
class TdsReply {
 public:
  /// Null, a whole number, a floating-point number or a UTF-8 text.
  using Value = std::variant<std::monostate, std::int64_t, double, std::string_view>;
  /// kDateTime2 counts 100 ns and is written as a whole number of them since midnight of 1 January
  /// 2007.
  enum class Type { kBigInt, kFloat, kNVarChar, kNVarCharMax, kDateTime2 };
  struct Column {
    std::string_view name;
    Type type;
    std::uint16_t characters = 100;  // Of a kNVarChar.
  };

  TdsReply& Columns(const std::vector<Column>& columns) {
    Append(std::uint8_t{0x81});
    Append(static_cast<std::uint16_t>(columns.size()));
    types_.clear();
    for (const auto& [name, type, characters] : columns) {
      bytes_ += std::string("\0\0\0\0\1\0", 6);  // No user type; nullable.
      types_.push_back(type);
      if (type == Type::kBigInt) bytes_ += "\x26\x08";
      if (type == Type::kFloat) bytes_ += "\x6D\x08";
      if (type == Type::kDateTime2) bytes_ += "\x2A\x07";
      if (type == Type::kNVarChar || type == Type::kNVarCharMax) {
        Append(std::uint8_t{0xE7});
        const int most_bytes = type == Type::kNVarChar ? 2 * characters : 0xFFFF;
        Append(static_cast<std::uint16_t>(most_bytes));
        bytes_ += std::string("\x09\x04\xD0\0\x34", 5);  // Its collation.
      }
      AppendText<std::uint8_t>(name);
    }
    return *this;
  }

  TdsReply& Row(const std::vector<Value>& values) {
    Append(std::uint8_t{0xD1});
    for (size_t i = 0; i < values.size(); ++i) {
      const Type type = types_.at(i);
      const auto* whole = std::get_if<std::int64_t>(&values[i]);
      const auto* real = std::get_if<double>(&values[i]);
      if (const auto* text = std::get_if<std::string_view>(&values[i]);
          text != nullptr && type == Type::kNVarCharMax) {
        Append(~std::uint64_t{1});  // Of a length that is not told; one piece, and its end.
        if (!text->empty()) AppendText<std::uint32_t>(*text, 2);
        Append(std::uint32_t{0});
      } else if (text != nullptr) {
        AppendText<std::uint16_t>(*text, 2);
      } else if (whole != nullptr && type == Type::kDateTime2) {
        constexpr std::int64_t kDay = 732676;  // 1 January 2007, counted from the year 1.
        Append(std::uint8_t{8});
        bytes_.append(reinterpret_cast<const char*>(whole), 5);
        bytes_.append(reinterpret_cast<const char*>(&kDay), 3);
      } else if (whole != nullptr || real != nullptr) {
        Append(std::uint8_t{8});
        whole != nullptr ? Append(*whole) : Append(*real);
      } else if (type == Type::kNVarChar || type == Type::kNVarCharMax) {
        bytes_.append(type == Type::kNVarChar ? 2 : 8, '\xFF');
      } else {
        Append(std::uint8_t{0});
      }
    }
    return *this;
  }

  /// An error of severity 16; a message without severity.
  TdsReply& Error(std::int32_t number, std::string_view text) {
    return Message(0xAA, number, text);
  }
  TdsReply& Info(std::int32_t number, std::string_view text) { return Message(0xAB, number, text); }
  /// The end of a statement that touched `rows` rows; more statements' results may follow.
  TdsReply& Done(std::uint64_t rows, bool more = false) { return End(more ? 0x11 : 0x10, rows); }
  /// The end of an answer with a status of its own (0x20: to a client that gave up waiting).
  TdsReply& End(std::uint16_t status, std::uint64_t rows) {
    Append(std::uint8_t{0xFD});
    Append(status);
    Append(std::uint16_t{0xC1});
    Append(rows);
    return *this;
  }

  TdsReply& LoginAccepted() {
    TdsReply body;
    body.bytes_ = std::string("\x01\x74\x00\x00\x04", 5);  // Transact-SQL, TDS 7.4.
    body.AppendText<std::uint8_t>("Microsoft SQL Server");
    return Token(0xAD, body.bytes_ + std::string("\x10\x00\x03\xE8", 4)).End(0, 0);
  }

  const std::string& bytes() const { return bytes_; }

 private:
  // Numbers travel in the byte order of the machines that run these tests, lowest byte first.
  template <typename Number>
  void Append(Number value) {
    bytes_.append(reinterpret_cast<const char*>(&value), sizeof value);
  }

  // A UTF-8 text as UTF-16 after its length, in characters or in bytes.
  template <typename Length>
  void AppendText(std::string_view text, size_t unit_bytes = 1) {
    const std::u16string units = text::Utf8ToUtf16(text);
    Append(static_cast<Length>(units.size() * unit_bytes));
    bytes_.append(reinterpret_cast<const char*>(units.data()), 2 * units.size());
  }

  TdsReply& Token(std::uint8_t token, const std::string& body) {
    Append(token);
    Append(static_cast<std::uint16_t>(body.size()));
    bytes_ += body;
    return *this;
  }

  TdsReply& Message(std::uint8_t token, std::int32_t number, std::string_view text) {
    TdsReply body;
    body.Append(number);
    body.bytes_ += token == 0xAA ? "\1\x10" : std::string("\1\0", 2);  // State, severity.
    body.AppendText<std::uint16_t>(text);
    body.AppendText<std::uint8_t>("TESTSERVER");
    body.AppendText<std::uint8_t>("");  // Procedure.
    body.Append(std::uint32_t{1});      // Line.
    return Token(token, body.bytes_);
  }

  std::string bytes_;
  std::vector<Type> types_;  // Of the columns of the result being written.
};

/// A database server of one connection at a time on an ephemeral port of the loopback interface,
/// which speaks just enough TDS 7.4 to play the answers of a script.
class TdsServer {
 public:
  /// What a client says about itself, decoded from its LOGIN7 message.
  struct Login {
    std::string user, password, server, database;
  };
  /// No answer until the client gives up; none to anything any more, as of a network that is down;
  /// in the place of an answer the connection's end, or its reset.
  struct Silence {};
  struct Mute {};
  struct HangUp {};
  struct Reset {};
  using Answer = std::variant<TdsReply, Silence, Mute, HangUp, Reset>;
  /// The answer to a statement, in which the parameters stand as literals; called on the server's
  /// own thread. Transactions come as "begin transaction", "commit transaction" and so on.
  using Script = std::function<Answer(const std::string& statement)>;

  /// `host` is an address of the loopback interface.
  explicit TdsServer(Script script, std::optional<TdsReply> login_refusal = std::nullopt,
                     const std::string& host = "127.0.0.1")
      : script_(std::move(script)), login_refusal_(std::move(login_refusal)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    inet_pton(AF_INET, host.c_str(), &address.sin_addr);
    socklen_t size = sizeof address;
    auto* const name = reinterpret_cast<sockaddr*>(&address);
    if (bind(listener_, name, size) != 0 || listen(listener_, 4) != 0 ||
        getsockname(listener_, name, &size) != 0) {
      close(listener_);
      throw std::runtime_error("no server socket");
    }
    port_ = ntohs(address.sin_port);
    thread_ = std::thread([this] { Serve(); });
  }

  ~TdsServer() {
    stopping_ = true;
    shutdown(listener_, SHUT_RDWR);
    if (const int client = client_; client >= 0) shutdown(client, SHUT_RDWR);
    thread_.join();
    close(listener_);
  }

  int port() const { return port_; }
  /// Ends the connection, if there is one.
  void EndConnection() const { shutdown(client_, SHUT_RDWR); }
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

  static size_t Byte(std::string_view bytes, size_t at) {
    return static_cast<std::uint8_t>(bytes.at(at));
  }
  static size_t Word(std::string_view bytes, size_t at) {
    return Byte(bytes, at) | Byte(bytes, at + 1) << 8;
  }

  static std::string FromUtf16(std::string_view bytes) {
    std::u16string units(bytes.size() / 2, u'\0');
    std::memcpy(units.data(), bytes.data(), 2 * units.size());
    return text::Utf16ToUtf8(units);
  }

  // The statement of a call of sp_executesql, or "exec <procedure> <arguments>".
  static std::string DecodeCall(std::string_view bytes) {
    const auto take = [&](size_t size) {
      const std::string_view taken = bytes.substr(0, size);
      bytes.remove_prefix(size);
      return taken;
    };
    const size_t length = Word(take(2), 0);
    const bool numbered = length == 0xFFFF;  // That of sp_executesql.
    const std::string procedure = FromUtf16(take(numbered ? 2 : 2 * length));
    take(2);  // Flags.
    std::vector<std::string> values;
    std::string arguments;
    while (!bytes.empty()) {
      const std::string name = FromUtf16(take(2 * Byte(take(1), 0)));
      take(1);  // Flags.
      const size_t type = Byte(take(1), 0);
      std::string& value = values.emplace_back("null");
      if (type == 0x26) {  // A whole number.
        take(1);
        const std::string_view number = take(Byte(take(1), 0));
        std::int64_t whole = 0;
        std::memcpy(&whole, number.data(), number.size());
        if (!number.empty()) value = std::to_string(whole);
      } else {
        const bool long_text = type == 0x63;
        take(long_text ? 9 : 7);  // The most bytes and the collation.
        const size_t low = Word(take(2), 0);
        const size_t size = long_text ? low | Word(take(2), 0) << 16 : low;
        if (long_text || size != 0xFFFF) {
          value = "N'" + text::ReplaceAll(FromUtf16(take(size)), "'", "''") + "'";
        }
      }
      arguments += arguments.empty() ? " " : ", ";
      arguments.append(name).append(name.empty() ? "" : "=").append(value);
    }
    if (!numbered && procedure != "sp_executesql") return "exec " + procedure + arguments;
    // The first is the statement, the second one declares the others, @P1 and so on.
    std::string statement = text::ReplaceAll(values[0].substr(2, values[0].size() - 3), "''", "'");
    for (size_t i = values.size(); i-- > 2;) {
      statement = text::ReplaceAll(statement, "@P" + std::to_string(i - 1), values[i]);
    }
    return statement;
  }

  static Login DecodeLogin(std::string_view message) {
    const auto bytes_at = [&](size_t entry) {
      return std::string(message.substr(Word(message, entry), 2 * Word(message, entry + 2)));
    };
    // The password's bytes travel inverted by 0xA5, their halves swapped.
    std::string password = bytes_at(44);
    for (char& c : password) {
      const auto byte = static_cast<std::uint8_t>(static_cast<std::uint8_t>(c) ^ 0xA5U);
      c = static_cast<char>(byte << 4 | byte >> 4);
    }
    return {FromUtf16(bytes_at(40)), FromUtf16(password), FromUtf16(bytes_at(52)),
            FromUtf16(bytes_at(68))};
  }

  void Serve() {
    for (;;) {
      const int client = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
      if (client < 0) return;
      client_ = client;
      if (!stopping_) ServeClient();
      client_ = -1;
      close(client);
    }
  }

  void ServeClient() {
    constexpr std::uint8_t kAttention = 6, kLogin7 = 16, kPreLogin = 18;
    std::uint8_t type = 0;
    std::string message;
    while (Receive(type, message)) {
      if (mute_) continue;
      if (type == kPreLogin) {
        // Version and encryption (2: there is none), each its place and length; then their values.
        Send(std::string("\0\0\x0B\0\x06\1\0\x11\0\1\xFF\x10\0\3\xE8\0\0\2", 18));
      } else if (type == kLogin7) {
        Note(logins_, DecodeLogin(message));
        Send((login_refusal_ ? *login_refusal_ : TdsReply().LoginAccepted()).bytes());
        if (login_refusal_) return;
      } else if (type == kAttention) {
        Send(TdsReply().End(0x20, 0).bytes());
      } else if (!AnswerStatement(DecodeStatement(type, message))) {
        return;
      }
    }
  }

  static std::string DecodeStatement(std::uint8_t type, std::string_view message) {
    constexpr std::uint8_t kCall = 3, kTransaction = 14;
    const std::string_view body = message.substr(Word(message, 0));
    if (type == kCall) return DecodeCall(body);
    if (type != kTransaction) return FromUtf16(body);
    constexpr size_t kBegin = 5, kCommit = 7;
    const size_t request = Word(body, 0);
    return request == kBegin    ? "begin transaction"
           : request == kCommit ? "commit transaction"
                                : "rollback transaction";
  }

  // Whether the connection goes on.
  bool AnswerStatement(const std::string& statement) {
    Note(statements_, statement);
    const Answer answer = script_(statement);
    if (const auto* reply = std::get_if<TdsReply>(&answer)) Send(reply->bytes());
    mute_ = std::holds_alternative<Mute>(answer);
    if (std::holds_alternative<Reset>(answer)) {
      const linger at_once{1, 0};
      setsockopt(client_, SOL_SOCKET, SO_LINGER, &at_once, sizeof at_once);
      return false;
    }
    return !std::holds_alternative<HangUp>(answer);
  }

  bool Receive(std::uint8_t& type, std::string& message) const {
    message.clear();
    for (bool last = false; !last;) {
      std::string header(8, '\0');
      if (recv(client_, header.data(), header.size(), MSG_WAITALL) != 8) return false;
      type = static_cast<std::uint8_t>(header[0]);
      last = (header[1] & 1) != 0;
      std::string body((Byte(header, 2) << 8 | Byte(header, 3)) - header.size(), '\0');
      const auto size = static_cast<ssize_t>(body.size());
      if (size > 0 && recv(client_, body.data(), body.size(), MSG_WAITALL) != size) return false;
      message += body;
    }
    return true;
  }

  void Send(const std::string& message) const {
    constexpr size_t kMostBytes = 4096 - 8;
    std::string packets;
    for (size_t at = 0; at == 0 || at < message.size(); at += kMostBytes) {
      const size_t size = std::min(message.size() - at, kMostBytes) + 8;
      const bool last = at + kMostBytes >= message.size();
      packets +=
          {4, last ? '\1' : '\0', static_cast<char>(size >> 8), static_cast<char>(size & 0xFF)};
      packets += std::string("\0\0\1\0", 4) + message.substr(at, kMostBytes);
    }
    send(client_, packets.data(), packets.size(), MSG_NOSIGNAL);
  }

  Script script_;
  std::optional<TdsReply> login_refusal_;
  int listener_ = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  int port_ = 0;
  bool mute_ = false;
  std::atomic<bool> stopping_ = false;
  std::atomic<int> client_ = -1;
  mutable std::mutex mutex_;
  std::vector<Login> logins_;
  std::vector<std::string> statements_;
  std::thread thread_;
};

}  // namespace quillan::test
