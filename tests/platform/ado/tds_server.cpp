#include "platform/ado/tds_server.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstring>
#include <stdexcept>

#include "platform/text/encoding.h"

namespace quillan::test {
namespace {

// Types of messages.
constexpr std::uint8_t kTabularResult = 4, kAttention = 6, kLogin7 = 16, kPreLogin = 18;

// Numbers travel in the byte order of the machines that run these tests, lowest byte first.
template <typename Number>
void Append(std::string& bytes, Number value) {
  bytes.append(reinterpret_cast<const char*>(&value), sizeof value);
}

// A UTF-8 text as UTF-16 after its length, in characters or in bytes.
template <typename Length>
void AppendText(std::string& bytes, std::string_view text, size_t unit_bytes = 1) {
  const std::u16string units = text::Utf8ToUtf16(text);
  Append(bytes, static_cast<Length>(units.size() * unit_bytes));
  bytes.append(reinterpret_cast<const char*>(units.data()), 2 * units.size());
}

void AppendToken(std::string& bytes, std::uint8_t token, const std::string& body) {
  Append(bytes, token);
  Append(bytes, static_cast<std::uint16_t>(body.size()));
  bytes += body;
}

size_t Byte(std::string_view bytes, size_t at) { return static_cast<std::uint8_t>(bytes.at(at)); }

size_t Word(std::string_view bytes, size_t at) {
  return Byte(bytes, at) | Byte(bytes, at + 1) << 8;
}

std::string FromUtf16(std::string_view bytes) {
  std::u16string units(bytes.size() / 2, u'\0');
  std::memcpy(units.data(), bytes.data(), 2 * units.size());
  return text::Utf16ToUtf8(units);
}

TdsServer::Login DecodeLogin(std::string_view message) {
  const auto bytes_at = [&](size_t entry) {
    return std::string(message.substr(Word(message, entry), 2 * Word(message, entry + 2)));
  };
  // The password's bytes travel inverted by 0xA5, their halves swapped.
  std::string password = bytes_at(44);
  for (char& c : password) {
    const auto byte = static_cast<std::uint8_t>(static_cast<std::uint8_t>(c) ^ 0xA5U);
    c = static_cast<char>(byte << 4 | byte >> 4);
  }
  return {FromUtf16(bytes_at(36)), FromUtf16(bytes_at(40)), FromUtf16(password),
          FromUtf16(bytes_at(48)), FromUtf16(bytes_at(52)), FromUtf16(bytes_at(68))};
}

}  // namespace

TdsReply& TdsReply::Columns(const std::vector<std::pair<std::string_view, Type>>& columns) {
  Append(bytes_, std::uint8_t{0x81});
  Append(bytes_, static_cast<std::uint16_t>(columns.size()));
  types_.clear();
  for (const auto& [name, type] : columns) {
    bytes_ += std::string("\0\0\0\0\1\0", 6);  // No user type; nullable.
    // The type, the most bytes and a text's collation.
    types_.push_back(type);
    bytes_ += type == Type::kBigInt      ? std::string("\x26\x08")
              : type == Type::kDateTime2 ? std::string("\x2A\x07")
                                         : std::string("\xE7\xC8\0\x09\x04\xD0\0\x34", 8);
    AppendText<std::uint8_t>(bytes_, name);
  }
  return *this;
}

TdsReply& TdsReply::Row(const std::vector<Value>& values) {
  Append(bytes_, std::uint8_t{0xD1});
  for (size_t i = 0; i < values.size(); ++i) {
    const Value& value = values[i];
    if (types_.at(i) == Type::kDateTime2) {
      constexpr std::int64_t kDay = 732676;  // 1 January 2007, counted from the year 1.
      const std::int64_t time = std::get<std::int64_t>(value);
      Append(bytes_, std::uint8_t{8});
      bytes_.append(reinterpret_cast<const char*>(&time), 5);
      bytes_.append(reinterpret_cast<const char*>(&kDay), 3);
    } else if (const auto* whole = std::get_if<std::int64_t>(&value)) {
      Append(bytes_, std::uint8_t{sizeof *whole});
      Append(bytes_, *whole);
    } else if (const auto* text = std::get_if<std::string_view>(&value)) {
      AppendText<std::uint16_t>(bytes_, *text, 2);
    } else {  // Of a text.
      Append(bytes_, std::uint16_t{0xFFFF});
    }
  }
  return *this;
}

TdsReply& TdsReply::Message(std::uint8_t token, std::int32_t number, std::string_view text) {
  std::string body;
  Append(body, number);
  body += token == 0xAA ? std::string("\1\x10", 2) : std::string("\1\0", 2);  // State, severity.
  AppendText<std::uint16_t>(body, text);
  AppendText<std::uint8_t>(body, "TESTSERVER");
  AppendText<std::uint8_t>(body, "");  // Procedure.
  Append(body, std::uint32_t{1});      // Line.
  AppendToken(bytes_, token, body);
  return *this;
}

TdsReply& TdsReply::End(std::uint16_t status, std::uint64_t rows) {
  Append(bytes_, std::uint8_t{0xFD});
  Append(bytes_, status);
  Append(bytes_, std::uint16_t{0xC1});
  Append(bytes_, rows);
  return *this;
}

TdsReply& TdsReply::LoginAccepted() {
  std::string body("\x01\x74\x00\x00\x04", 5);  // Transact-SQL, TDS 7.4.
  AppendText<std::uint8_t>(body, "Microsoft SQL Server");
  AppendToken(bytes_, 0xAD, body + std::string("\x10\x00\x03\xE8", 4));
  return End(0, 0);
}

TdsServer::TdsServer(Script script, std::optional<TdsReply> login_refusal,
                     const std::string& address_text)
    : script_(std::move(script)), login_refusal_(std::move(login_refusal)) {
  listener_ = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  inet_pton(AF_INET, address_text.c_str(), &address.sin_addr);
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

TdsServer::~TdsServer() {
  stopping_ = true;
  shutdown(listener_, SHUT_RDWR);
  if (const int client = client_; client >= 0) shutdown(client, SHUT_RDWR);
  thread_.join();
  close(listener_);
}

void TdsServer::Serve() {
  for (;;) {
    const int client = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
    if (client < 0) return;
    client_ = client;
    if (!stopping_) ServeClient();
    client_ = -1;
    close(client);
  }
}

void TdsServer::ServeClient() {
  std::uint8_t type = 0;
  std::string message;
  while (Receive(type, message)) {
    if (type == kPreLogin) {
      // Version and encryption (2: there is none), each its place and length; then their values.
      Send(std::string("\0\0\x0B\0\x06\1\0\x11\0\1\xFF\x10\0\3\xE8\0\0\2", 18));
    } else if (type == kLogin7) {
      Note(logins_, DecodeLogin(message));
      Send((login_refusal_ ? *login_refusal_ : TdsReply().LoginAccepted()).bytes());
      if (login_refusal_) return;
    } else if (type == kAttention) {
      Send(TdsReply().End(0x20, 0).bytes());
    } else if (!AnswerBatch(message)) {
      return;
    }
  }
}

bool TdsServer::AnswerBatch(const std::string& message) {
  const std::string statement = FromUtf16(std::string_view(message).substr(Word(message, 0)));
  Note(statements_, statement);
  const Answer answer = script_(statement);
  if (const auto* reply = std::get_if<TdsReply>(&answer)) Send(reply->bytes());
  if (std::holds_alternative<Reset>(answer)) {
    const linger at_once{1, 0};
    setsockopt(client_, SOL_SOCKET, SO_LINGER, &at_once, sizeof at_once);
    return false;
  }
  return !std::holds_alternative<HangUp>(answer);
}

bool TdsServer::Receive(std::uint8_t& type, std::string& message) const {
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

void TdsServer::Send(const std::string& message) const {
  const size_t size = message.size() + 8;  // In one packet: scripts are short.
  std::string packet{kTabularResult, 1, static_cast<char>(size >> 8),
                     static_cast<char>(size & 0xFF)};
  packet += std::string("\0\0\1\0", 4) + message;
  send(client_, packet.data(), packet.size(), MSG_NOSIGNAL);
}

}  // namespace quillan::test
