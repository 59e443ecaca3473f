#include "profile/block_stream.h"

#include <condition_variable>
#include <cstring>
#include <deque>
#include <exception>
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

class PipelinedStream : public BlockStream {
 public:
  explicit PipelinedStream(BlockReader reader) : reader_(std::move(reader)) {
    worker_ = std::thread([this] { Work(); });
  }

  ~PipelinedStream() override {
    {
      std::lock_guard lock(mutex_);
      stop_ = true;
    }
    changed_.notify_all();
    worker_.join();
  }

  bool Next(InflatedBlock& block) override {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return !ready_.empty() || finished_; });
    if (ready_.empty()) {
      if (failure_) std::rethrow_exception(failure_);
      return false;
    }
    if (!block.Records.empty()) spare_.push_back(std::move(block.Records));
    block = std::move(ready_.front());
    ready_.pop_front();
    lock.unlock();
    changed_.notify_all();
    return true;
  }

 private:
  // Blocks inflated and waiting for the replay, besides the one being inflated.
  static constexpr std::size_t kAhead = 2;

  void Work() {
    try {
      CompressedBlock compressed;
      BlockInflater inflater;
      while (WaitForRoom()) {
        if (!reader_.Next(compressed)) break;
        InflatedBlock block;
        block.Index = compressed.Index;
        block.FilePos = compressed.FilePos;
        block.Records = TakeSpare();
        if (!inflater.Inflate(compressed.Bytes, block.Records)) {
          throw LogError(reader_.File(), BlockNotInflatedFault(compressed));
        }
        {
          std::lock_guard lock(mutex_);
          ready_.push_back(std::move(block));
        }
        changed_.notify_all();
      }
    } catch (...) {
      std::lock_guard lock(mutex_);
      failure_ = std::current_exception();
    }
    {
      std::lock_guard lock(mutex_);
      finished_ = true;
    }
    changed_.notify_all();
  }

  // Waits until fewer than kAhead blocks wait; false when the reader is gone.
  bool WaitForRoom() {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return stop_ || ready_.size() < kAhead; });
    return !stop_;
  }

  std::vector<unsigned char> TakeSpare() {
    std::lock_guard lock(mutex_);
    if (spare_.empty()) return {};
    std::vector<unsigned char> buffer = std::move(spare_.back());
    spare_.pop_back();
    return buffer;
  }

  BlockReader reader_;
  std::thread worker_;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<InflatedBlock> ready_;
  std::vector<std::vector<unsigned char>> spare_;
  std::exception_ptr failure_;
  bool finished_ = false;
  bool stop_ = false;
};

}  // namespace

std::unique_ptr<BlockStream> MakeSerialZlibStream(BlockReader reader) {
  return std::make_unique<SerialZlibStream>(std::move(reader));
}

std::unique_ptr<BlockStream> MakePipelinedStream(BlockReader reader) {
  return std::make_unique<PipelinedStream>(std::move(reader));
}

}  // namespace zol
