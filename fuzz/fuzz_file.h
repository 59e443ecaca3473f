#pragma once

// The readers under fuzzing take file names, so each input is written to a
// file of its own folder first. The folder is made once per process (in
// $TMPDIR) and removed when the process ends.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace zol::fuzz {

// This process's scratch folder, ending without a separator.
const std::string& ScratchFolder();

// Writes `bytes` to `name` in the scratch folder (replacing what was there)
// and returns the file's path.
std::string WriteInput(const std::string& name, std::string_view bytes);

inline std::string_view Bytes(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

}  // namespace zol::fuzz
