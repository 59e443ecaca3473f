#pragma once

// A fresh folder for one test, removed with everything in it at the end.

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

namespace zol::testing {

class ScopedTempDir {
 public:
  ScopedTempDir() {
    std::string pattern = (std::filesystem::temp_directory_path() / "zoltest-XXXXXX").string();
    if (::mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("mkdtemp failed");
    path_ = pattern;
  }
  ScopedTempDir(const ScopedTempDir&) = delete;
  ScopedTempDir& operator=(const ScopedTempDir&) = delete;
  ~ScopedTempDir() {
    std::error_code ec;
    std::filesystem::remove_all(path_, ec);
  }

  const std::string& path() const { return path_; }
  // The path of `relative` (written with "/") inside the folder.
  std::string operator/(const std::string& relative) const { return path_ + "/" + relative; }

  // Writes a file, making its folders.
  std::string Put(const std::string& relative, const std::string& content = "") const {
    const std::string full = *this / relative;
    std::filesystem::create_directories(std::filesystem::path(full).parent_path());
    std::ofstream(full, std::ios::binary) << content;
    return full;
  }

 private:
  std::string path_;
};

}  // namespace zol::testing
