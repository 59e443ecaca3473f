#pragma once

// The parts of an error report that describe the program and the machine, and
// the archive that carries the report.

#include <string>
#include <vector>

namespace zol {

// "Version.txt": the program, its version, its executable and its build.
std::string GetVersionInfo();

// "System.txt": what a bug report on Linux needs: distribution, kernel,
// processors, memory, the command line, and the display lines the window
// adds (toolkit version, screens).
std::string GetSystemInfo(const std::vector<std::string>& displayInfo);

// Packs the files of `files` that exist into the zip archive `archive`
// (replacing it), each under its own name. False when the archive can't be
// written.
bool ZipFiles(const std::string& archive, const std::vector<std::string>& files);

// The names of the entries of a zip archive; empty when it can't be read.
std::vector<std::string> ZipEntries(const std::string& archive);

// A text as the part of a mailto: link, every byte but the unreserved ones
// percent-encoded.
std::string MailtoEncode(const std::string& text);

}  // namespace zol
