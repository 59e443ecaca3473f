// Arbitrary bytes as a settings file: keys read through every reader of
// settings, then one key written and the file read back. Nothing may escape.

#include <cstddef>
#include <cstdint>
#include <string>

#include "base/ini_file.h"
#include "fuzz/fuzz_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string ini = zol::fuzz::WriteInput("Zolmark.ini", zol::fuzz::Bytes(data, size));
  for (const char* section : {"Profiler", "ProfilerReport", "Profiler Sessions"}) {
    for (const char* key : {"hWnd", "ID", "Socket", "File1"}) {
      zol::VBGetPrivateProfileString(section, key, "", ini);
      zol::ReadSettingFlag(section, key, true, ini);
    }
  }
  zol::VBWritePrivateProfileString("Profiler", "hWnd", "0", ini);
  zol::VBDeletePrivateProfileKey("Profiler", "ID", ini);
  const std::string back = zol::VBGetPrivateProfileString("Profiler", "hWnd", "", ini);
  if (back != "0") __builtin_trap();  // a written key must read back
  return 0;
}
