// Arbitrary bytes sent down one connection of the live receiver's socket, as
// a sender would send them, then the connection closed. The receiver serves
// it on its own loop (in this thread, through Poll) until it has dropped the
// connection or the results are due. The receiver must survive anything.

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "fuzz/fuzz_file.h"
#include "live/live_clock.h"
#include "live/receiver.h"

namespace {

int Connect(const std::string& path) {
  const int fd = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
  sockaddr_un addr{};
  addr.sun_family = AF_UNIX;
  std::strncpy(addr.sun_path, path.c_str(), sizeof addr.sun_path - 1);
  if (::connect(fd, reinterpret_cast<sockaddr*>(&addr), sizeof addr) != 0) {
    ::close(fd);
    return -1;
  }
  return fd;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace std::chrono_literals;
  zol::MonotonicClock clock;
  zol::EventStore store{clock, 0};
  zol::ReceiverOptions options;
  options.socketPath = zol::fuzz::ScratchFolder() + "/live.sock";
  zol::LiveReceiver receiver(store, options);
  receiver.Open();
  const int fd = Connect(options.socketPath);
  if (fd < 0) __builtin_trap();
  std::size_t sent = 0;
  char answers[4096];
  // Sends what the socket takes, reads the answers so that the sender never
  // counts as flooding, and lets the receiver serve, until all is sent and
  // the receiver has closed its end.
  for (int round = 0; round < 10000; ++round) {
    if (sent < size) {
      const ssize_t n = ::send(fd, data + sent, size - sent, MSG_NOSIGNAL);
      if (n > 0) sent += static_cast<std::size_t>(n);
      if (sent == size) ::shutdown(fd, SHUT_WR);
    } else if (size == 0 && round == 0) {
      ::shutdown(fd, SHUT_WR);
    }
    if (receiver.Poll(0ms)) break;
    const ssize_t got = ::recv(fd, answers, sizeof answers, 0);
    if (got == 0) break;  // the receiver dropped the connection
    if (got < 0 && sent == size && round > 100) break;
  }
  ::close(fd);
  receiver.Close();
  return 0;
}
