#include "live/receiver.h"

#include <errno.h>
#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/timerfd.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstring>
#include <filesystem>

#include "base/ini_file.h"
#include "errcapture/trace.h"

namespace zol {

namespace {

constexpr std::size_t kReadChunk = 64 * 1024;
// A connection is read at most this much per turn, so one busy sender can't
// hold the others back.
constexpr std::size_t kReadBudget = 256 * 1024;

std::uint32_t U32At(const unsigned char* p) {
  return static_cast<std::uint32_t>(p[0]) | static_cast<std::uint32_t>(p[1]) << 8 |
         static_cast<std::uint32_t>(p[2]) << 16 | static_cast<std::uint32_t>(p[3]) << 24;
}

std::string SystemText(int error) {
  return std::strerror(error);
}

void CloseFd(int& fd) {
  if (fd >= 0) ::close(fd);
  fd = -1;
}

}  // namespace

struct LiveReceiver::Connection {
  int fd = -1;
  std::uint64_t number = 0;
  std::string name;  // "connection 3 (process 1234)"
  std::vector<unsigned char> in;
  std::size_t inStart = 0;
  std::string out;
  bool watchingWrites = false;
};

std::string DefaultSocketFolder() {
  if (const char* runtime = std::getenv("XDG_RUNTIME_DIR"); runtime && *runtime) {
    std::error_code ec;
    if (std::filesystem::is_directory(runtime, ec)) return runtime;
  }
  const std::string folder =
      (std::filesystem::temp_directory_path() / ("zolmark-" + std::to_string(::getuid()))).string();
  if (::mkdir(folder.c_str(), 0700) != 0 && errno != EEXIST) {
    throw ReceiverError("Cannot make the folder \"" + folder + "\": " + SystemText(errno));
  }
  struct stat st {};
  if (::lstat(folder.c_str(), &st) != 0 || !S_ISDIR(st.st_mode) || st.st_uid != ::getuid() ||
      (st.st_mode & 0077) != 0) {
    throw ReceiverError("The folder \"" + folder +
                        "\" is not a private folder of this user; the live socket can't go there");
  }
  return folder;
}

LiveReceiver::LiveReceiver(EventStore& store, ReceiverOptions options)
    : store_(store), options_(std::move(options)), readBuffer_(kReadChunk) {}

LiveReceiver::~LiveReceiver() {
  Close();
}

void LiveReceiver::Status(const std::string& text) {
  if (onStatus) onStatus(text);
}

void LiveReceiver::Open() {
  ZOL_TRACE("LiveReceiver.Open");
  socketPath_ = options_.socketPath.empty() ? DefaultSocketFolder() + "/zolmark-profiler-" +
                                                  std::to_string(::getpid()) + ".sock"
                                            : options_.socketPath;
  sockaddr_un addr{};
  addr.sun_family = AF_UNIX;
  if (socketPath_.size() >= sizeof addr.sun_path) {
    throw ReceiverError("The socket path \"" + socketPath_ + "\" is too long");
  }
  std::memcpy(addr.sun_path, socketPath_.c_str(), socketPath_.size() + 1);
  listenFd_ = ::socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
  if (listenFd_ < 0) throw ReceiverError("Cannot make a socket: " + SystemText(errno));
  // A socket file left by a receiver that died is taken over; anything else
  // at that path is not touched.
  struct stat st {};
  if (::lstat(socketPath_.c_str(), &st) == 0) {
    if (!S_ISSOCK(st.st_mode)) {
      Close();
      throw ReceiverError("\"" + socketPath_ + "\" exists and is not a socket");
    }
    ::unlink(socketPath_.c_str());
  }
  const mode_t old = ::umask(0177);
  const int bound = ::bind(listenFd_, reinterpret_cast<sockaddr*>(&addr), sizeof addr);
  const int bindError = errno;
  ::umask(old);
  if (bound != 0) {
    const std::string path = socketPath_;
    Close();
    throw ReceiverError("Cannot open the socket \"" + path + "\": " + SystemText(bindError));
  }
  ownsSocketFile_ = true;
  ::chmod(socketPath_.c_str(), 0600);
  if (::listen(listenFd_, 128) != 0) {
    const int e = errno;
    Close();
    throw ReceiverError("Cannot listen on \"" + socketPath_ + "\": " + SystemText(e));
  }
  epollFd_ = ::epoll_create1(EPOLL_CLOEXEC);
  timerFd_ = ::timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC);
  stopFd_ = ::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC);
  if (epollFd_ < 0 || timerFd_ < 0 || stopFd_ < 0) {
    const int e = errno;
    Close();
    throw ReceiverError("Cannot set up the event loop: " + SystemText(e));
  }
  itimerspec tick{};
  tick.it_interval.tv_sec = 1;
  tick.it_value.tv_sec = 1;
  ::timerfd_settime(timerFd_, 0, &tick, nullptr);
  for (int fd : {listenFd_, timerFd_, stopFd_}) {
    epoll_event ev{};
    ev.events = EPOLLIN;
    ev.data.fd = fd;
    ::epoll_ctl(epollFd_, EPOLL_CTL_ADD, fd, &ev);
  }
  if (!options_.settingsFile.empty()) {
    try {
      VBWritePrivateProfileString(kRendezvousSection, "hWnd", std::to_string(::getpid()),
                                  options_.settingsFile);
      VBWritePrivateProfileString(kRendezvousSection, "ID", "1", options_.settingsFile);
      VBWritePrivateProfileString(kRendezvousSection, kRendezvousSocketKey, socketPath_,
                                  options_.settingsFile);
      rendezvousWritten_ = true;
    } catch (const std::exception& e) {
      Close();
      throw ReceiverError(e.what());
    }
  }
}

void LiveReceiver::Close() {
  for (auto& [fd, c] : connections_) ::close(fd);
  connections_.clear();
  threadConnection_.clear();
  if (ownsSocketFile_) ::unlink(socketPath_.c_str());
  ownsSocketFile_ = false;
  CloseFd(listenFd_);
  CloseFd(epollFd_);
  CloseFd(timerFd_);
  CloseFd(stopFd_);
  if (rendezvousWritten_) {
    rendezvousWritten_ = false;
    try {
      VBWritePrivateProfileString(kRendezvousSection, "hWnd", "0", options_.settingsFile);
    } catch (const std::exception&) {
      // The receiver is gone either way; a stale handle only makes a sender
      // fail to connect.
    }
  }
}

void LiveReceiver::Stop() {
  if (stopFd_ < 0) return;
  const std::uint64_t one = 1;
  [[maybe_unused]] const ssize_t n = ::write(stopFd_, &one, sizeof one);
}

void LiveReceiver::Accept() {
  ZOL_TRACE("LiveReceiver.Accept");
  for (;;) {
    const int fd = ::accept4(listenFd_, nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC);
    if (fd < 0) return;  // EAGAIN, or a connection that went away meanwhile
    if (connections_.size() >= options_.maxConnections) {
      ::close(fd);
      Status("A connection was refused: " + std::to_string(options_.maxConnections) +
             " are open already");
      continue;
    }
    auto c = std::make_unique<Connection>();
    c->fd = fd;
    c->number = nextConnectionNumber_++;
    c->name = "connection " + std::to_string(c->number);
    ucred cred{};
    socklen_t len = sizeof cred;
    if (::getsockopt(fd, SOL_SOCKET, SO_PEERCRED, &cred, &len) == 0) {
      c->name += " (process " + std::to_string(cred.pid) + ")";
    }
    epoll_event ev{};
    ev.events = EPOLLIN | EPOLLRDHUP;
    ev.data.fd = fd;
    if (::epoll_ctl(epollFd_, EPOLL_CTL_ADD, fd, &ev) != 0) {
      ::close(fd);
      continue;
    }
    connections_[fd] = std::move(c);
  }
}

void LiveReceiver::Drop(int fd, const std::string& fault) {
  auto it = connections_.find(fd);
  if (it == connections_.end()) return;
  if (!fault.empty()) {
    const std::string text = "Closed " + it->second->name + ": " + fault;
    closedForFaults_.push_back(text);
    Status(text);
  }
  ::epoll_ctl(epollFd_, EPOLL_CTL_DEL, fd, nullptr);
  ::close(fd);
  connections_.erase(it);
}

bool LiveReceiver::Flush(Connection& c) {
  while (!c.out.empty()) {
    const ssize_t n = ::send(c.fd, c.out.data(), c.out.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
    if (n > 0) {
      c.out.erase(0, static_cast<std::size_t>(n));
      continue;
    }
    if (n < 0 && (errno == EAGAIN || errno == EWOULDBLOCK)) break;
    if (n < 0 && errno == EINTR) continue;
    return false;  // the peer is gone
  }
  // Writes are watched only while answers wait: no system call per message.
  const bool watch = !c.out.empty();
  if (watch != c.watchingWrites) {
    epoll_event ev{};
    ev.events = EPOLLIN | EPOLLRDHUP | (watch ? static_cast<std::uint32_t>(EPOLLOUT) : 0u);
    ev.data.fd = c.fd;
    ::epoll_ctl(epollFd_, EPOLL_CTL_MOD, c.fd, &ev);
    c.watchingWrites = watch;
  }
  return true;
}

std::string LiveReceiver::ParseMessages(Connection& c) {
  for (;;) {
    const std::size_t have = c.in.size() - c.inStart;
    if (have < kFrameBytes) break;
    const unsigned char* p = c.in.data() + c.inStart;
    LiveMessage m;
    m.Msg = U32At(p);
    m.wParam = static_cast<std::int32_t>(U32At(p + 4));
    m.lParam = static_cast<std::int32_t>(U32At(p + 8));
    std::size_t length = kFrameBytes;
    if (m.Msg == static_cast<std::uint32_t>(LiveMsg::Register)) {
      length += kPdsBytes;
      if (have < length) break;
      m.pds = DecodePds(p + kFrameBytes);
    }
    c.inStart += length;
    std::int32_t answer = 0;
    try {
      answer = store_.Handle(m);
    } catch (const LiveInputError& e) {
      return e.what();
    }
    if (m.Msg == static_cast<std::uint32_t>(LiveMsg::Register) && m.pds.ProfilerID > 0) {
      threadConnection_[m.pds.ProfilerID] = c.number;
    }
    const auto a = static_cast<std::uint32_t>(answer);
    for (int i = 0; i < 4; ++i) c.out.push_back(static_cast<char>((a >> (8 * i)) & 0xFF));
    if (store_.resultsDue) break;
  }
  if (c.inStart == c.in.size()) {
    c.in.clear();
    c.inStart = 0;
  }
  return {};
}

void LiveReceiver::Serve(int fd) {
  ZOL_TRACE("LiveReceiver.Serve");
  auto it = connections_.find(fd);
  if (it == connections_.end()) return;
  Connection& c = *it->second;
  std::size_t taken = 0;
  bool ended = false;
  while (taken < kReadBudget && !store_.resultsDue) {
    if (c.inStart > 0) {
      c.in.erase(c.in.begin(), c.in.begin() + static_cast<std::ptrdiff_t>(c.inStart));
      c.inStart = 0;
    }
    const ssize_t n = ::recv(fd, readBuffer_.data(), readBuffer_.size(), MSG_DONTWAIT);
    if (n > 0) c.in.insert(c.in.end(), readBuffer_.begin(), readBuffer_.begin() + n);
    if (n == 0) {
      ended = true;
      break;
    }
    if (n < 0) {
      if (errno == EINTR) continue;
      if (errno != EAGAIN && errno != EWOULDBLOCK) ended = true;
      break;
    }
    taken += static_cast<std::size_t>(n);
    const std::string fault = ParseMessages(c);
    if (!fault.empty()) {
      Drop(fd, fault);
      return;
    }
    // A short read took all there was: no need to ask again.
    if (static_cast<std::size_t>(n) < readBuffer_.size()) break;
  }
  if (!Flush(c)) {
    Drop(fd, "");
    return;
  }
  if (c.out.size() > options_.maxPendingAnswerBytes) {
    Drop(fd,
         "it sends without reading its answers (" + std::to_string(c.out.size() / 4) + " unread)");
    return;
  }
  if (ended) {
    const std::size_t left = c.in.size() - c.inStart;
    Drop(fd, left > 0 ? "it went away in the middle of a message (" + std::to_string(left) +
                            " bytes of it came)"
                      : "");
  }
}

bool LiveReceiver::ThreadAlive(std::int32_t i) const {
  const auto owner = threadConnection_.find(i);
  if (owner == threadConnection_.end()) return false;
  bool open = false;
  for (const auto& [fd, c] : connections_) {
    if (c->number == owner->second) open = true;
  }
  if (!open) return false;
  const Pds& pds = store_.Thread(i).Pds;
  if (pds.ProcessID > 0 && pds.ThreadID > 0) {
    std::error_code ec;
    return std::filesystem::exists(
        "/proc/" + std::to_string(pds.ProcessID) + "/task/" + std::to_string(pds.ThreadID), ec);
  }
  return true;
}

void LiveReceiver::TickNow() {
  store_.Tick([this](std::int32_t i) { return ThreadAlive(i); });
}

bool LiveReceiver::EndActiveThreads() {
  store_.Tick([](std::int32_t) { return false; });
  return store_.resultsDue;
}

bool LiveReceiver::Poll(std::chrono::milliseconds wait) {
  if (epollFd_ < 0) throw ReceiverError("The receiver is not open");
  epoll_event events[64];
  const int n = ::epoll_wait(epollFd_, events, 64, static_cast<int>(wait.count()));
  for (int k = 0; k < n && !store_.resultsDue; ++k) {
    const int fd = events[k].data.fd;
    if (fd == listenFd_) {
      Accept();
    } else if (fd == timerFd_) {
      std::uint64_t expirations = 0;
      [[maybe_unused]] const ssize_t r = ::read(timerFd_, &expirations, sizeof expirations);
      TickNow();
    } else if (fd == stopFd_) {
      continue;
    } else if (events[k].events & EPOLLOUT && !(events[k].events & (EPOLLIN | EPOLLRDHUP))) {
      auto it = connections_.find(fd);
      if (it != connections_.end() && !Flush(*it->second)) Drop(fd, "");
    } else {
      Serve(fd);
    }
  }
  if (store_.statusChanged) {
    store_.statusChanged = false;
    Status(store_.status);
  }
  return store_.resultsDue;
}

LiveReceiver::End LiveReceiver::Run(std::chrono::milliseconds timeout) {
  const auto start = std::chrono::steady_clock::now();
  for (;;) {
    auto wait = std::chrono::milliseconds(1000);
    if (timeout.count() > 0) {
      const auto left = timeout - std::chrono::duration_cast<std::chrono::milliseconds>(
                                      std::chrono::steady_clock::now() - start);
      if (left.count() <= 0) return End::TimedOut;
      wait = std::min(wait, left);
    }
    if (Poll(wait)) return End::ResultsDue;
    std::uint64_t stops = 0;
    if (::read(stopFd_, &stops, sizeof stops) == sizeof stops && stops > 0) return End::Stopped;
  }
}

}  // namespace zol
