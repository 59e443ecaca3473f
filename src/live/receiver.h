#pragma once

// The receiving end of a live run on this platform: a Unix domain stream
// socket (mode 0600, in the per-user runtime folder) to which every sending
// thread opens a connection of its own. A message is 12 bytes little-endian
// (uint32 code, int32 wParam, int32 lParam); a registration (0x401) is
// followed by the 3,360-byte registration record, since another process's
// memory can't be read here. Every message is answered with an int32 result,
// and the sender waits for it, so stamps are taken on arrival.
//
// One event loop serves all connections and stamps each message as it reads
// it: that is the one total order of the run. Input the store can't take
// (short frames, unknown codes, IDs beyond the run, a sender that stops
// reading its answers, one that vanishes mid-message) closes only the
// offending connection, with a status line naming it; the run goes on. No
// read or write ever blocks the loop.

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "live/event_store.h"

namespace zol {

inline constexpr std::size_t kFrameBytes = 12;
// Keys of section "Profiler" of the settings file where senders find us.
inline constexpr const char* kRendezvousSection = "Profiler";
inline constexpr const char* kRendezvousSocketKey = "Socket";

class ReceiverError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// The folder for the socket: $XDG_RUNTIME_DIR when it is a folder, else a
// folder of this user's own (mode 0700) in the temporary folder.
std::string DefaultSocketFolder();

struct ReceiverOptions {
  std::string socketPath;    // empty: DefaultSocketFolder() and a name with the pid
  std::string settingsFile;  // the rendezvous; empty: none written
  // Most connections at once; more are refused.
  std::size_t maxConnections = 1024;
  // Answers a sender may leave unread before it counts as flooding.
  std::size_t maxPendingAnswerBytes = 256 * 1024;
};

class LiveReceiver {
 public:
  enum class End { ResultsDue, TimedOut, Stopped };

  LiveReceiver(EventStore& store, ReceiverOptions options);
  ~LiveReceiver();
  LiveReceiver(const LiveReceiver&) = delete;
  LiveReceiver& operator=(const LiveReceiver&) = delete;

  // Makes the socket and writes the rendezvous ("hWnd" non-zero, "ID" "1",
  // the socket's path). Throws ReceiverError.
  void Open();
  // Closes every connection and the socket, removes the socket file and
  // writes "hWnd" "0". Done by the destructor too.
  void Close();

  // Serves messages until the run's results are due, `timeout` has passed
  // (zero: no limit) or Stop() is called.
  End Run(std::chrono::milliseconds timeout = std::chrono::milliseconds(0));
  // Serves what is there and returns within `wait`; true when the results
  // are due. For a window that runs its own event loop.
  bool Poll(std::chrono::milliseconds wait);
  // Safe from any thread and from a signal handler.
  void Stop();

  // Ends every thread still active as if it had died (the run is given up
  // waiting for); true when that made the results due.
  bool EndActiveThreads();

  const std::string& socketPath() const { return socketPath_; }
  // A descriptor that becomes readable whenever Poll() has work: for a
  // window's own event loop to watch. -1 while closed.
  int pollFd() const { return epollFd_; }
  // Status lines of connections closed for bad input, in order.
  const std::vector<std::string>& closedForFaults() const { return closedForFaults_; }
  // Called with every status line (the store's and the receiver's own).
  std::function<void(const std::string&)> onStatus;

 private:
  struct Connection;
  void Accept();
  void Serve(int fd);
  void Drop(int fd, const std::string& fault);
  bool Flush(Connection& c);
  // Handles the whole messages that have come; the fault of the first one
  // the store refused, or nothing.
  std::string ParseMessages(Connection& c);
  void TickNow();
  bool ThreadAlive(std::int32_t i) const;
  void Status(const std::string& text);

  EventStore& store_;
  ReceiverOptions options_;
  std::string socketPath_;
  int listenFd_ = -1;
  int epollFd_ = -1;
  int timerFd_ = -1;
  int stopFd_ = -1;
  bool ownsSocketFile_ = false;
  bool rendezvousWritten_ = false;
  std::map<int, std::unique_ptr<Connection>> connections_;
  std::uint64_t nextConnectionNumber_ = 1;
  // The connection each thread registered through (by ProfilerID).
  std::map<std::int32_t, std::uint64_t> threadConnection_;
  std::vector<std::string> closedForFaults_;
  std::vector<unsigned char> readBuffer_;
};

}  // namespace zol
