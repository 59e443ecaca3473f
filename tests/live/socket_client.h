#pragma once

// A plain blocking client of the live socket for the tests: frames written
// by hand, answers read back, and the raw socket for sending garbage.

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstdint>
#include <cstring>
#include <optional>
#include <string>

#include "live/event_store.h"

namespace zol::testing {

class SocketClient {
 public:
  explicit SocketClient(const std::string& path) {
    fd_ = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_un addr{};
    addr.sun_family = AF_UNIX;
    std::strncpy(addr.sun_path, path.c_str(), sizeof addr.sun_path - 1);
    if (::connect(fd_, reinterpret_cast<sockaddr*>(&addr), sizeof addr) != 0) Close();
    timeval tv{5, 0};  // a test never hangs on a receiver that went quiet
    ::setsockopt(fd_, SOL_SOCKET, SO_RCVTIMEO, &tv, sizeof tv);
  }
  ~SocketClient() { Close(); }
  SocketClient(const SocketClient&) = delete;
  SocketClient& operator=(const SocketClient&) = delete;

  bool connected() const { return fd_ >= 0; }
  int fd() const { return fd_; }
  void Close() {
    if (fd_ >= 0) ::close(fd_);
    fd_ = -1;
  }

  bool SendRaw(const std::string& bytes) {
    return fd_ >= 0 && ::send(fd_, bytes.data(), bytes.size(), MSG_NOSIGNAL) ==
                           static_cast<ssize_t>(bytes.size());
  }
  static std::string Frame(std::uint32_t msg, std::int32_t w, std::int32_t l) {
    std::string f(12, '\0');
    for (int i = 0; i < 4; ++i) {
      f[static_cast<std::size_t>(i)] = static_cast<char>(msg >> (8 * i));
      f[static_cast<std::size_t>(4 + i)] =
          static_cast<char>(static_cast<std::uint32_t>(w) >> (8 * i));
      f[static_cast<std::size_t>(8 + i)] =
          static_cast<char>(static_cast<std::uint32_t>(l) >> (8 * i));
    }
    return f;
  }
  // Sends one message and waits for its answer; nothing when the receiver
  // closed the connection.
  std::optional<std::int32_t> Call(LiveMsg msg, std::int32_t w, std::int32_t l) {
    if (!SendRaw(Frame(static_cast<std::uint32_t>(msg), w, l))) return std::nullopt;
    return Answer();
  }
  std::optional<std::int32_t> Register(const Pds& pds) {
    const PdsImage image = EncodePds(pds);
    if (!SendRaw(Frame(0x401, ::getpid(), 0) +
                 std::string(reinterpret_cast<const char*>(image.data()), image.size()))) {
      return std::nullopt;
    }
    return Answer();
  }
  std::optional<std::int32_t> Answer() {
    unsigned char a[4];
    std::size_t got = 0;
    while (got < 4) {
      const ssize_t n = ::recv(fd_, a + got, 4 - got, 0);
      if (n <= 0) return std::nullopt;
      got += static_cast<std::size_t>(n);
    }
    return static_cast<std::int32_t>(a[0] | a[1] << 8 | a[2] << 16 |
                                     static_cast<std::uint32_t>(a[3]) << 24);
  }

 private:
  int fd_ = -1;
};

}  // namespace zol::testing
