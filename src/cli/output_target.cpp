#include "cli/output_target.h"

#include <iostream>

#include "base/cp1252.h"
#include "base/files.h"
#include "catalogue/session_file_lookup.h"

namespace zol::cli {

namespace {

bool SameName(const std::string& a, const std::string& b) {
  return EqualsNoCase1252(a, b) || SameFile(a, b);
}

bool OfKind(const std::string& file, const OutputKind& kind) {
  for (std::string_view ext : kind.extensions) {
    if (EndsWithNoCase(file, ext)) return true;
  }
  return false;
}

}  // namespace

std::string OutputRefusal(const std::string& output, const std::vector<std::string>& inputs,
                          const OutputKind& kind, bool force) {
  if (FolderExist(output)) return output + ": a folder is in the way of the output";
  if (force) return "";
  for (const std::string& input : inputs) {
    if (SameName(output, input)) {
      return output + ": the output would replace an input of this command (--force to do so)";
    }
  }
  if (!FileExist(output)) return "";
  if (EndsWithNoCase(output, ".pfl")) {
    return output + ": the output would replace a profile log (--force to do so)";
  }
  if (!OfKind(output, kind)) {
    return output + ": the output would replace a file that is not " + std::string(kind.name) +
           " file (--force to do so)";
  }
  return "";
}

bool MayWriteOutput(const std::string& output, const std::vector<std::string>& inputs,
                    const OutputKind& kind, bool force) {
  const std::string refusal = OutputRefusal(output, inputs, kind, force);
  if (refusal.empty()) return true;
  std::cerr << "zolprof: " << refusal << "\n";
  return false;
}

}  // namespace zol::cli
