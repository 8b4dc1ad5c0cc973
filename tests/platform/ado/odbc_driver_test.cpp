#include <arpa/inet.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <future>
#include <new>
#include <sstream>
#include <thread>

#include "platform/ado/connection.h"
#include "platform/ado/drivers.h"
#include "platform/ado/error.h"
#include "support/tds_server.h"
#include "support/temporary_folder.h"

namespace quillan::ado {
namespace {

using test::TdsReply;
using test::TdsServer;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using Type = TdsReply::Type;

// How many allocations of this thread succeed before one fails; less than 0: none fails.
thread_local int allocations_left = -1;

/// The program's own route to a SQL Server, over a real socket, with a server that plays a script.
class OdbcDriverTest : public testing::Test {
 protected:
  OdbcDriverTest() : connection_(InstalledDrivers(folder_.path())) {}

  void Open(const TdsServer& server) {
    connection_.Close();
    connection_.set_connection_timeout(10);
    connection_.set_command_timeout(1);
    connection_.set_connection_string(
        "Provider=SQLOLEDB.1;Data Source=tcp:127.0.0.1," + std::to_string(server.port()) +
        ";Initial Catalog=Größe;User ID=mönitor;Password=\"p;wört}'=\"");
    connection_.Open();
  }

  template <typename Action>
  static Error ErrorOf(Action action) {
    try {
      action();
    } catch (const Error& error) {
      return error;
    }
    ADD_FAILURE() << "no error was thrown";
    return {0, "", ""};
  }

  test::TemporaryFolder folder_;
  Connection connection_;
};

TEST_F(OdbcDriverTest, TheLoginCarriesWhatTheConnectionStringSaysAndTimesComeBackWhole) {
  const TdsServer server([](const std::string& statement) {
    if (statement.starts_with("SET ")) return TdsReply().Done(0);
    return TdsReply()
        .Info(0, "a message is no error")
        .Done(3, true)  // Touched rows before the rows.
        .Columns({{"At", Type::kDateTime2}})
        .Row({std::int64_t{12345678}})
        .Done(1);
  });
  Open(server);
  const auto login = server.logins().at(0);
  EXPECT_THAT((std::array{login.server, login.database, login.user, login.password}),
              ElementsAre("127.0.0.1", "Größe", "mönitor", "p;wört}'="));
  EXPECT_THAT(connection_.Property("Data Source Name"), HasSubstr("127.0.0.1"));
  connection_.ReadUncommitted();
  const char* query = "Select N'日本 😀' From [Größe]";
  const auto rows = connection_.OpenRecordset(query, LockType::kReadOnly);
  EXPECT_THAT(server.statements(),
              ElementsAre("SET TRANSACTION ISOLATION LEVEL READ UNCOMMITTED", query));
  EXPECT_EQ(ToText(rows->Fields("At").Value()), "2007-01-01 00:00:01.2345678");
}

TEST_F(OdbcDriverTest, AnErrorKeepsItsTextAndNumberInWhicheverResultItComes) {
  const TdsServer server([](const std::string& statement) {
    if (statement == "late") {
      return TdsReply().Done(1, true).Error(547, "[dbo] Zürich").End(3, 0).Done(1, true).Done(1);
    }
    return TdsReply().Info(5701, "Changed context").Error(208, "Invalid object 'Größe'.").Done(0);
  });
  Open(server);
  const Error late = ErrorOf([&] { connection_.Execute("late"); });
  EXPECT_STREQ(late.what(), "[dbo] Zürich");
  EXPECT_EQ(late.number(), 547);
  // What the failure left unread keeps no other statement from running.
  const Error early = ErrorOf([&] { connection_.OpenRecordset("early", LockType::kReadOnly); });
  EXPECT_STREQ(early.what(), "Invalid object 'Größe'.");
  EXPECT_EQ(early.number(), 208);
  EXPECT_EQ(early.state(), "42S02");
}

TEST_F(OdbcDriverTest, ATimeOutKeepsTheSessionAndALostConnectionEndsItWithItsCause) {
  const TdsServer server([](const std::string& statement) -> TdsServer::Answer {
    if (statement == "slow") return TdsServer::Silence{};
    if (statement == "drop") return TdsServer::HangUp{};
    if (statement == "reset") return TdsServer::Reset{};
    return TdsReply().Done(0);
  });
  Open(server);
  const Error slow = ErrorOf([&] { connection_.OpenRecordset("slow", LockType::kReadOnly); });
  EXPECT_TRUE(slow.IsTimeout()) << slow.what();
  connection_.Execute("next");
  EXPECT_EQ(server.logins().size(), 1U);
  for (const std::string fatal : {"drop", "reset"}) {
    Open(server);
    const Error lost = ErrorOf([&] { connection_.Execute(fatal); });
    EXPECT_TRUE(lost.IsConnectionLost());
    EXPECT_EQ(connection_.state(), ConnectionState::kClosed);
    const Error again = ErrorOf([&] { connection_.Execute("again"); });
    for (const Error& error : {lost, again}) {
      EXPECT_STREQ(error.what(), "The connection to the server was lost.");
    }
  }
  Open(server);
  connection_.Execute("fresh");
  EXPECT_THAT(server.statements(), ElementsAre("slow", "next", "drop", "reset", "fresh"));
}

TEST_F(OdbcDriverTest, ACallIsCancelledFromAnotherThread) {
  const TdsServer server([](const std::string&) { return TdsServer::Silence{}; });
  Open(server);
  connection_.Close();
  connection_.set_command_timeout(0);
  connection_.Open();
  std::thread canceller([&] {
    while (server.statements().empty()) std::this_thread::yield();
    connection_.Cancel();
  });
  const std::vector<std::string> batch = {"endless", "b"};
  const std::vector<Outcome> outcomes = connection_.ExecuteBatch(batch, BatchMode::kRunAll);
  canceller.join();
  ASSERT_EQ(outcomes.size(), 2U);
  // What may have run is not sent again.
  EXPECT_TRUE(outcomes[0] && outcomes[0]->IsCancelled() && outcomes[1]);
  EXPECT_EQ(server.statements().size(), 1U);
}

// Answers a batch line by line as a server does. A line "fail" fails, "abort" ends the batch,
// "trigger" has two results, "lost" ends the connection, "slow" the patience of the client;
// "syntax" keeps the whole batch from running.
TdsServer::Answer RunLines(const std::string& batch) {
  TdsReply reply;
  if (batch.find("syntax") != std::string::npos) return reply.Error(102, "syntax").End(2, 0);
  std::istringstream lines(batch);
  bool failed = false;
  for (std::string line; std::getline(lines, line);) {
    if (line == "lost") return TdsServer::HangUp{};
    if (line == "slow") return TdsServer::Silence{};
    if (line == "abort") return reply.Error(245, "abort").End(2, 0);
    if (line == "if @@error <> 0 return") {
      if (failed) break;
    } else if (line.starts_with("select 0 as ")) {
      reply.Columns({{line.substr(12), Type::kBigInt}}).Row({std::int64_t{0}}).Done(1, true);
    } else if (line == "fail") {
      reply.Error(547, "fail").End(3, 0);
    } else {
      if (line == "trigger") reply.Done(3, true);
      reply.Done(1, true);
    }
    failed = line == "fail";
  }
  return reply.Done(0);
}

TEST_F(OdbcDriverTest, ABatchIsOneRoundTripWithAnOutcomeForEachStatement) {
  struct Case {
    const char* what;
    std::vector<std::string> statements;
    const char* outcomes;
    size_t round_trips;
    BatchMode mode = BatchMode::kRunAll;
  };
  const auto stop = BatchMode::kStopAtFailure;
  const Case cases[] = {
      {"all others run", {"fail", "trigger", "fail", "b"}, "fail ok fail ok ", 1},
      {"so is one that ends its batch", {"a", "abort", "b", "fail"}, "ok abort ok fail ", 2},
      {"an error of the whole batch", {"a", "syntax", "b"}, "ok syntax ok ", 4},
      {"a NUL is not sent", {"a", std::string("\0", 1), "b"}, "ok The ok ", 2},
      {"the first failure ends it", {"a", "fail", "b"}, "ok fail ", 1, stop},
      {"so does a batch that ends", {"a", "abort", "b"}, "ok abort ", 1, stop},
      {"an outcome that is not known", {"a", "slow", "b"}, "Timeout Timeout Timeout ", 1},
      {"a lost connection", {"a", "lost", "b"}, "The The The ", 1},
  };
  const TdsServer server(RunLines);
  for (const Case& c : cases) {
    Open(server);
    const size_t before = server.statements().size();
    std::string outcomes;
    for (const Outcome& outcome : connection_.ExecuteBatch(c.statements, c.mode)) {
      const std::string text = outcome ? outcome->what() : "ok";
      outcomes += text.substr(0, text.find(' ')) + " ";
    }
    EXPECT_EQ(outcomes, c.outcomes) << c.what;
    EXPECT_EQ(server.statements().size() - before, c.round_trips) << c.what;
  }
}

TEST_F(OdbcDriverTest, ABatchForWhichMemoryRunsOutIsNotSentAgain) {
  const TdsServer server(RunLines);
  Open(server);
  const std::vector<std::string> statements = {"a", "fail", "b"};
  bool failed = true;
  for (int number = 0; failed; ++number) {
    const size_t before = server.statements().size();
    size_t outcomes = 0;
    allocations_left = number;
    try {
      outcomes = connection_.ExecuteBatch(statements, BatchMode::kRunAll).size();
    } catch (const std::bad_alloc&) {
    }
    failed = std::exchange(allocations_left, -1) < 0;
    const size_t sent = server.statements().size() - before;
    EXPECT_LE(sent, 1U) << "allocation " << number;
    EXPECT_TRUE(sent == 0 || outcomes == statements.size()) << "allocation " << number;
  }
}

TEST_F(OdbcDriverTest, ALoginThatFailsSaysWhy) {
  const char* refusal = "Cannot open database \"Größe\" requested by the login.";
  const TdsServer refusing([](const std::string&) { return TdsReply(); },
                           TdsReply().Error(4060, refusal).Done(0));
  const Error error = ErrorOf([&] { Open(refusing); });
  EXPECT_STREQ(error.what(), refusal);
  EXPECT_EQ(error.number(), 4060);
  EXPECT_EQ(connection_.state(), ConnectionState::kClosed);
}

// The instance's port is asked for on a host of the loopback network that no other process uses.
TEST_F(OdbcDriverTest, AnInstanceIsFoundWithinTheTimeOut) {
  sockaddr_in name{};
  name.sin_family = AF_INET;
  name.sin_port = htons(1434);
  name.sin_addr.s_addr = htonl(0x7F800000U | (static_cast<unsigned>(getpid()) & 0x7FFFFFU));
  const std::string address = inet_ntoa(name.sin_addr);
  const int browser = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  ASSERT_EQ(bind(browser, reinterpret_cast<sockaddr*>(&name), sizeof name), 0);
  const TdsServer server([](const std::string&) { return TdsReply().Done(0); }, {}, address);
  connection_.set_connection_timeout(1);
  connection_.set_connection_string("Provider=SQLOLEDB;Data Source=" + address +
                                    "\\SQL;User ID=u;Password=p");
  const Error silent = ErrorOf([&] { connection_.Open(); });
  EXPECT_TRUE(silent.IsTimeout());
  EXPECT_THAT(silent.what(), HasSubstr("no answer on UDP port 1434 within 1 s"));
  std::array<char, 64> request{};
  sockaddr_in from{};
  socklen_t size = sizeof from;
  auto* const client = reinterpret_cast<sockaddr*>(&from);
  while (recv(browser, request.data(), request.size(), MSG_DONTWAIT) > 0) {  // What got no answer.
  }
  const auto answered = std::async(std::launch::async, [&] {
    const ssize_t length = recvfrom(browser, request.data(), request.size(), 0, client, &size);
    EXPECT_EQ(std::string(request.data(), static_cast<size_t>(length)), std::string("\4SQL\0", 5));
    std::string reply = "ServerName;H;InstanceName;SQL;tcp;" + std::to_string(server.port()) + ";;";
    reply = std::string{'\5', static_cast<char>(reply.size()), '\0'} + reply;
    sendto(browser, reply.data(), reply.size(), 0, client, size);
  });
  connection_.Open();
  EXPECT_EQ(server.logins().size(), 1U);
  connection_.Close();
  close(browser);
  EXPECT_THAT(ErrorOf([&] { connection_.Open(); }).what(), HasSubstr("port 1434 is closed"));
}

TEST_F(OdbcDriverTest, WhatCannotBeOpenedNamesTheCauseButNoPassword) {
  const TdsServer server([](const std::string&) { return TdsReply().Done(0); });
  const std::string running = "Provider=SQLOLEDB;Password=secret;Data Source=127.0.0.1," +
                              std::to_string(server.port()) + ";";
  const std::pair<std::string, const char*> refused[] = {
      {running + "Integrated Security=SSPI", "get one with kinit"},
      {running, "Add \"User ID=<name>;Password=<password>\""},
      {running + "User ID=u;Encrypt=yes", "do not ask for encryption"},
      // What OLE DB would take for an open quote is an ordinary character to ODBC.
      {"Driver=No Such Driver;stray;PWD=\"secret", "\"No Such Driver\" is not"},
      {"PWD={a;Provider=secret};UID=u;Driver={No Such Driver}", "\"No Such Driver\" is not"},
      {"Provider=MSOLEDBSQL;Data Source=127.0.0.1,1;Password=secret", "Unable to connect"},
      {"Provider=SQLNCLI11;Data Source=no-such-host.invalid;Password=secret", "nknown host"},
      {"Provider=Elsewhere;Password=secret", "\"Elsewhere\" is unknown. Use SQLite, SQLOLEDB"},
  };
  connection_.set_connection_timeout(5);
  for (const auto& [text, reason] : refused) {
    connection_.set_connection_string(text);
    const Error error = ErrorOf([&] { connection_.Open(); });
    EXPECT_THAT(error.what(), HasSubstr(reason));
    EXPECT_THAT(error.what(), Not(HasSubstr("secret")));
  }
}

}  // namespace
}  // namespace quillan::ado

void* operator new(std::size_t size) {
  int& left = quillan::ado::allocations_left;
  void* memory = left < 0 || left-- > 0 ? std::malloc(size) : nullptr;
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}
void* operator new(std::size_t size, const std::nothrow_t& /*unused*/) noexcept {
  return std::malloc(size);
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t /*size*/) noexcept { std::free(memory); }
