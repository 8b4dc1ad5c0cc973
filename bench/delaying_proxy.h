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

namespace quillan::bench {

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
      const std::array<int, 2> ends = {accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC),
                                       socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)};
      const int on = 1;
      for (const int end : ends) setsockopt(end, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
      const sockaddr_in address = Loopback(target_);
      if (connect(ends[1], reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) {
        Pass(ends);
      }
      for (const int end : ends) close(end);
    }
  }

  // Until one end closes the connection.
  void Pass(const std::array<int, 2>& ends) const {
    std::array<std::deque<std::pair<Clock::time_point, std::string>>, 2> pieces;  // By origin.
    for (;;) {
      auto next = Clock::now() + std::chrono::milliseconds(500);
      for (const auto& way : pieces) {
        if (!way.empty()) next = std::min(next, way.front().first);
      }
      const timespec wait{0, std::max((next - Clock::now()).count(), Clock::rep{0})};
      std::array<pollfd, 3> ready{
          {{stop_[0], POLLIN, 0}, {ends[0], POLLIN, 0}, {ends[1], POLLIN, 0}}};
      ppoll(ready.data(), ready.size(), &wait, nullptr);
      if (ready[0].revents != 0) return;
      for (const size_t from : {size_t{0}, size_t{1}}) {
        auto& way = pieces.at(from);
        if (ready.at(from + 1).revents != 0) {
          std::string piece(size_t{64} << 10, '\0');
          const ssize_t size = recv(ends.at(from), piece.data(), piece.size(), 0);
          if (size <= 0) return;
          piece.resize(static_cast<size_t>(size));
          way.emplace_back(Clock::now() + delay_, std::move(piece));
        }
        for (; !way.empty() && way.front().first <= Clock::now(); way.pop_front()) {
          const std::string& piece = way.front().second;
          send(ends.at(1 - from), piece.data(), piece.size(), MSG_NOSIGNAL);
        }
      }
    }
  }

  int target_;
  Clock::duration delay_;
  int listener_ = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  std::array<int, 2> stop_{};  // A pipe; its end is closed to stop the thread.
  int port_ = 0;
  std::thread thread_;
};

}  // namespace quillan::bench
