#pragma once

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <deque>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>

namespace quillan::test {

/// Passes TCP connections on to a port of this machine, one at a time. Every byte arrives half of
/// the round trip later; what follows it is not held up by that.
class DelayingProxy {
 public:
  DelayingProxy(int port, std::chrono::milliseconds round_trip)
      : target_(port), delay_(round_trip / 2) {
    sockaddr_in address = Loopback(0);
    socklen_t size = sizeof address;
    auto* const name = reinterpret_cast<sockaddr*>(&address);
    if (bind(listener_, name, size) != 0 || listen(listener_, 4) != 0 ||
        getsockname(listener_, name, &size) != 0 || pipe(stop_.data()) != 0) {
      throw std::runtime_error("no proxy socket");
    }
    port_ = ntohs(address.sin_port);
    thread_ = std::thread([this] { Serve(); });
  }
  ~DelayingProxy() {
    close(stop_[1]);
    thread_.join();
    close(stop_[0]);
    close(listener_);
  }
  DelayingProxy(const DelayingProxy&) = delete;
  DelayingProxy& operator=(const DelayingProxy&) = delete;

  int port() const { return port_; }

 private:
  using Clock = std::chrono::steady_clock;

  // One direction of a connection. An empty piece is its end.
  struct Way {
    int from;
    int to;
    bool open = true;
    std::deque<std::pair<Clock::time_point, std::string>> pieces = {};
  };

  static sockaddr_in Loopback(int port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
  }

  void Serve() {
    for (;;) {
      std::array<pollfd, 2> ready{{{listener_, POLLIN, 0}, {stop_[0], POLLIN, 0}}};
      if (poll(ready.data(), ready.size(), -1) < 0 || ready[1].revents != 0) return;
      const int client = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
      const int server = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
      const sockaddr_in address = Loopback(target_);
      const int on = 1;
      for (const int end : {client, server}) {
        setsockopt(end, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
      }
      if (connect(server, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) {
        Pass(client, server);
      }
      close(client);
      close(server);
    }
  }

  void Pass(int client, int server) {
    std::array<Way, 2> ways{{{client, server}, {server, client}}};
    while (ways[0].open || ways[1].open) {
      std::array<pollfd, 3> ready{{{stop_[0], POLLIN, 0}, {-1, POLLIN, 0}, {-1, POLLIN, 0}}};
      Clock::time_point next = Clock::now() + std::chrono::seconds(1);
      for (size_t i = 0; i < ways.size(); ++i) {
        const auto& pieces = ways[i].pieces;
        if (!pieces.empty()) next = std::min(next, pieces.front().first);
        const bool ends = !pieces.empty() && pieces.back().second.empty();
        if (ways[i].open && !ends) ready[i + 1].fd = ways[i].from;
      }
      const auto wait = std::max(next - Clock::now(), Clock::duration::zero());
      const timespec left{std::chrono::floor<std::chrono::seconds>(wait).count(),
                          (wait % std::chrono::seconds(1)).count()};
      ppoll(ready.data(), ready.size(), &left, nullptr);
      if (ready[0].revents != 0) return;
      for (size_t i = 0; i < ways.size(); ++i) {
        if (ready[i + 1].revents != 0) Take(ways[i]);
        while (!ways[i].pieces.empty() && ways[i].pieces.front().first <= Clock::now()) {
          Give(ways[i]);
        }
      }
    }
  }

  void Take(Way& way) const {
    std::string piece(size_t{64} << 10, '\0');
    const ssize_t size = recv(way.from, piece.data(), piece.size(), 0);
    piece.resize(static_cast<size_t>(std::max(size, ssize_t{0})));
    way.pieces.emplace_back(Clock::now() + delay_, std::move(piece));
  }

  static void Give(Way& way) {
    const std::string& piece = way.pieces.front().second;
    if (piece.empty()) {
      shutdown(way.to, SHUT_WR);
      way.open = false;
    }
    for (size_t sent = 0; sent < piece.size();) {
      const ssize_t size = send(way.to, piece.data() + sent, piece.size() - sent, MSG_NOSIGNAL);
      if (size <= 0) break;
      sent += static_cast<size_t>(size);
    }
    way.pieces.pop_front();
  }

  int target_;
  Clock::duration delay_;
  int listener_ = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  std::array<int, 2> stop_{};  // A pipe; its end is closed to stop the thread.
  int port_ = 0;
  std::thread thread_;
};

}  // namespace quillan::test
