#include "profile/block_stream.h"

#include <algorithm>
#include <condition_variable>
#include <cstring>
#include <exception>
#include <limits>
#include <map>
#include <mutex>
#include <thread>
#include <utility>

#include "profile/log_error.h"
#include "profile/pfl_format.h"

namespace zol {
namespace {

class SerialZlibStream : public BlockStream {
 public:
  explicit SerialZlibStream(BlockReader reader) : reader_(std::move(reader)) {}

  bool Next(InflatedBlock& block) override {
    if (!reader_.Next(compressed_)) return false;
    // The reference path keeps zlib's own code: an inflation that fails leaves
    // the bytes as they were, which would replay as garbage, so it is refused.
    if (DecompressString(compressed_.Bytes) != 0) {
      throw LogError(reader_.File(), BlockNotInflatedFault(compressed_));
    }
    block.Index = compressed_.Index;
    block.FilePos = compressed_.FilePos;
    block.Records.resize(pfl::kBlockBytes);
    std::memcpy(block.Records.data(), compressed_.Bytes.data(), pfl::kBlockBytes);
    return true;
  }

 private:
  BlockReader reader_;
  CompressedBlock compressed_;
};

// Worker threads take the blocks in file order, each reading one under the
// read lock and inflating it outside any lock; finished blocks wait by index
// until the replay takes them in order. Workers stay at most kAhead blocks in
// front of the replay, so memory is a few blocks whatever the log's size.
class PipelinedStream : public BlockStream {
 public:
  explicit PipelinedStream(BlockReader reader) : reader_(std::move(reader)) {
    const unsigned cores = std::thread::hardware_concurrency();
    const unsigned workers = std::clamp(cores, 2u, kMaxWorkers);
    for (unsigned i = 0; i < workers; ++i) workers_.emplace_back([this] { Work(); });
  }

  ~PipelinedStream() override {
    {
      std::lock_guard lock(mutex_);
      stop_ = true;
    }
    changed_.notify_all();
    for (std::thread& t : workers_) t.join();
  }

  bool Next(InflatedBlock& block) override {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return done_.contains(next_) || next_ >= end_; });
    const auto it = done_.find(next_);
    if (it == done_.end()) return false;
    Slot slot = std::move(it->second);
    done_.erase(it);
    if (slot.failure) std::rethrow_exception(slot.failure);
    if (!block.Records.empty()) spare_.push_back(std::move(block.Records));
    block = std::move(slot.block);
    ++next_;
    lock.unlock();
    changed_.notify_all();
    return true;
  }

 private:
  static constexpr unsigned kMaxWorkers = 4;
  static constexpr std::int32_t kAhead = 2 * kMaxWorkers;

  struct Slot {
    InflatedBlock block;
    std::exception_ptr failure;
  };

  void Work() {
    BlockInflater inflater;
    CompressedBlock compressed;
    for (;;) {
      std::int32_t index = 0;
      {
        std::lock_guard read(readMutex_);
        if (!Claim(index)) return;
        if (!Read(index, compressed)) return;
      }
      InflatedBlock block;
      block.Index = compressed.Index;
      block.FilePos = compressed.FilePos;
      block.Records = TakeSpare();
      std::exception_ptr failure;
      if (!inflater.Inflate(compressed.Bytes, block.Records)) {
        failure =
            std::make_exception_ptr(LogError(reader_.File(), BlockNotInflatedFault(compressed)));
      }
      {
        std::lock_guard lock(mutex_);
        if (failure) End(index + 1);
        done_[index] = Slot{std::move(block), failure};
      }
      changed_.notify_all();
    }
  }

  // Waits for room in front of the replay and takes the next block's index;
  // false when there is nothing more to do.
  bool Claim(std::int32_t& index) {
    std::unique_lock lock(mutex_);
    changed_.wait(lock,
                  [this] { return stop_ || claimed_ + 1 >= end_ || claimed_ < next_ + kAhead; });
    if (stop_ || claimed_ + 1 >= end_) return false;
    index = ++claimed_;
    return true;
  }

  // Reads block `index` (under the read lock); false at the end of the blocks
  // or at a framing fault, which then waits in the block's place.
  bool Read(std::int32_t index, CompressedBlock& compressed) {
    try {
      if (reader_.Next(compressed)) return true;
      std::lock_guard lock(mutex_);
      End(index);
    } catch (...) {
      std::lock_guard lock(mutex_);
      End(index + 1);
      done_[index].failure = std::current_exception();
    }
    changed_.notify_all();
    return false;
  }

  // No block from `index` on will be handed out (under the lock).
  void End(std::int32_t index) { end_ = std::min(end_, index); }

  std::vector<unsigned char> TakeSpare() {
    std::lock_guard lock(mutex_);
    if (spare_.empty()) return {};
    std::vector<unsigned char> buffer = std::move(spare_.back());
    spare_.pop_back();
    return buffer;
  }

  BlockReader reader_;  // used under readMutex_
  std::mutex readMutex_;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::map<std::int32_t, Slot> done_;  // inflated blocks and faults, by index
  std::int32_t next_ = 1;              // the block the replay takes next
  std::int32_t claimed_ = 0;           // the last block handed to a worker
  std::int32_t end_ = std::numeric_limits<std::int32_t>::max();  // no blocks from here on
  std::vector<std::vector<unsigned char>> spare_;
  bool stop_ = false;
  std::vector<std::thread> workers_;
};

}  // namespace

std::unique_ptr<BlockStream> MakeSerialZlibStream(BlockReader reader) {
  return std::make_unique<SerialZlibStream>(std::move(reader));
}

std::unique_ptr<BlockStream> MakePipelinedStream(BlockReader reader) {
  return std::make_unique<PipelinedStream>(std::move(reader));
}

}  // namespace zol
