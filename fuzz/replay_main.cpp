// Replays saved inputs through a fuzz target's entry point, for the normal
// builds: every file named, and every file of every folder named (a missing
// folder holds none). A finding kept under fuzz/regressions/<target>/ so
// stays fixed, under the sanitizers too.

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

void Replay(const std::filesystem::path& file) {
  std::ifstream in(file, std::ios::binary);
  const std::vector<char> bytes((std::istreambuf_iterator<char>(in)), {});
  std::printf("%s (%zu bytes)\n", file.c_str(), bytes.size());
  std::fflush(stdout);
  LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
}

}  // namespace

int main(int argc, char** argv) {
  namespace fs = std::filesystem;
  int count = 0;
  for (int i = 1; i < argc; ++i) {
    const fs::path arg = argv[i];
    if (fs::is_directory(arg)) {
      std::vector<fs::path> files;
      for (const auto& entry : fs::recursive_directory_iterator(arg)) {
        if (entry.is_regular_file()) files.push_back(entry.path());
      }
      std::sort(files.begin(), files.end());
      for (const auto& f : files) Replay(f), ++count;
    } else if (fs::is_regular_file(arg)) {
      Replay(arg), ++count;
    }
  }
  std::printf("%d inputs replayed\n", count);
  return 0;
}
