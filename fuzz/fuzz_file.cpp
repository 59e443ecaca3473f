#include "fuzz/fuzz_file.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <system_error>

namespace zol::fuzz {
namespace {

struct Scratch {
  Scratch() {
    const char* tmp = std::getenv("TMPDIR");
    std::string pattern = std::string(tmp && *tmp ? tmp : "/tmp") + "/zolfuzz-XXXXXX";
    if (::mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no scratch folder");
    path = pattern;
  }
  ~Scratch() {
    std::error_code ec;
    std::filesystem::remove_all(path, ec);
  }
  std::string path;
};

}  // namespace

const std::string& ScratchFolder() {
  static const Scratch scratch;
  return scratch.path;
}

std::string WriteInput(const std::string& name, std::string_view bytes) {
  const std::string path = ScratchFolder() + "/" + name;
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  if (!out) throw std::runtime_error("can't write " + path);
  return path;
}

}  // namespace zol::fuzz
