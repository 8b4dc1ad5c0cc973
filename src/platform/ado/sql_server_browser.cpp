#include "platform/ado/sql_server_browser.h"

#include <netdb.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <future>
#include <memory>
#include <string_view>
#include <thread>
#include <vector>

#include "platform/ado/error.h"

namespace quillan::ado {
namespace {

using SteadyClock = std::chrono::steady_clock;

constexpr int kLongestWait = 15;  // Seconds, where the connection has no time-out.
constexpr auto kAskAgainAfter = std::chrono::seconds(1);

using Addresses = std::unique_ptr<addrinfo, decltype(&freeaddrinfo)>;

Addresses Resolve(const std::string& host) {
  addrinfo hints{};
  hints.ai_socktype = SOCK_DGRAM;
  addrinfo* found = nullptr;
  if (const int failure = getaddrinfo(host.c_str(), "1434", &hints, &found); failure != 0) {
    throw Error(0, "08001",
                "The server \"" + host + "\" was not found: " + gai_strerror(failure) + ".");
  }
  return {found, &freeaddrinfo};
}

// The resolver keeps its own time. A thread that it keeps waiting too long is left behind, with all
// that it uses.
Addresses Resolve(const std::string& host, SteadyClock::time_point deadline) {
  std::packaged_task<Addresses()> task([host] { return Resolve(host); });
  std::future<Addresses> addresses = task.get_future();
  std::thread(std::move(task)).detach();
  if (addresses.wait_until(deadline) == std::future_status::ready) return addresses.get();
  throw Error(kTimeoutExpired, "08001",
              "The address of the server \"" + host +
                  "\" was not found in time: the name service does not answer.");
}

// UDP sockets towards every address of a host.
class BrowserSockets {
 public:
  explicit BrowserSockets(const Addresses& addresses) {
    for (const addrinfo* address = addresses.get(); address != nullptr;
         address = address->ai_next) {
      const int handle = socket(address->ai_family, SOCK_DGRAM | SOCK_CLOEXEC, 0);
      if (handle < 0) continue;
      if (connect(handle, address->ai_addr, address->ai_addrlen) == 0) {
        sockets_.push_back({handle, POLLIN, 0});
      } else {
        close(handle);
      }
    }
  }
  ~BrowserSockets() {
    for (const pollfd& entry : sockets_) close(entry.fd);
  }
  BrowserSockets(const BrowserSockets&) = delete;
  BrowserSockets& operator=(const BrowserSockets&) = delete;

  void Send(const std::string& request) const {
    for (const pollfd& entry : sockets_) send(entry.fd, request.data(), request.size(), 0);
  }

  // The next answer that comes before `deadline`; empty when there is none.
  std::string Receive(SteadyClock::time_point deadline) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - SteadyClock::now());
    if (poll(sockets_.data(), sockets_.size(), std::max(static_cast<int>(left.count()), 0)) <= 0) {
      return {};
    }
    std::array<char, 4096> answer{};
    for (auto entry = sockets_.begin(); entry != sockets_.end();) {
      const ssize_t size =
          entry->revents == 0 ? 0 : recv(entry->fd, answer.data(), answer.size(), 0);
      if (size > 0) return {answer.data(), static_cast<size_t>(size)};
      if (size == 0) {
        ++entry;
      } else {
        close(entry->fd);
        entry = sockets_.erase(entry);
      }
    }
    return {};
  }

  // Whether every address has refused the requests.
  bool Empty() const { return sockets_.empty(); }

 private:
  std::vector<pollfd> sockets_;
};

// The port in "…;InstanceName;SQL;…;tcp;1450;…;;"; 0 when the instance does not accept TCP.
int PortIn(std::string_view answer) {
  constexpr std::string_view kKey = ";tcp;";
  const size_t key = answer.find(kKey);
  if (key == std::string_view::npos) return 0;
  answer.remove_prefix(key + kKey.size());
  int port = 0;
  std::from_chars(answer.data(), answer.data() + answer.size(), port);
  return port;
}

}  // namespace

int FindInstancePort(const std::string& host, const std::string& instance, int timeout) {
  const auto error = [&](std::int32_t number, const std::string& reason) {
    return Error(number, "08001",
                 "The port of the instance \"" + instance + "\" on " + host +
                     " could not be found: " + reason +
                     " Start the SQL Server Browser service there, or name the port, as in \"Data "
                     "Source=" +
                     host + ",1433\".");
  };
  const int seconds = timeout > 0 ? std::min(timeout, kLongestWait) : kLongestWait;
  const auto deadline = SteadyClock::now() + std::chrono::seconds(seconds);
  constexpr char kOneInstance = 4;
  constexpr char kAnswer = 5;
  constexpr size_t kHeader = 3;  // The kind of the message and the size of its text.
  BrowserSockets sockets(Resolve(host, deadline));
  while (SteadyClock::now() < deadline) {
    if (sockets.Empty()) throw error(0, "UDP port 1434 is closed.");
    sockets.Send(kOneInstance + instance + '\0');
    const std::string answer =
        sockets.Receive(std::min(deadline, SteadyClock::now() + kAskAgainAfter));
    if (answer.size() < kHeader || answer.front() != kAnswer) continue;
    const int port = PortIn(std::string_view{answer}.substr(kHeader));
    if (port == 0) throw error(0, "the instance does not accept TCP connections.");
    return port;
  }
  throw error(kTimeoutExpired,
              "no answer on UDP port 1434 within " + std::to_string(seconds) + " s.");
}

}  // namespace quillan::ado
