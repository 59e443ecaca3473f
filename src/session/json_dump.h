#pragma once

// The machine-readable form of a scanned project and of a session's values,
// as `zolprof scan --json` and `zolprof dump --json` print them: field names
// of the records, arrays in ID order from 1, booleans as true/false, texts by
// a Latin-1 reading of their bytes, doubles in shortest round-trip form.

#include <string>

#include "base/json_writer.h"
#include "session/records.h"

namespace zol {

void WriteProjectJson(JsonWriter& w, const Project& p);
void WriteSessionJson(JsonWriter& w, const Session& s);

// {"Project": {...}}
std::string ProjectToJson(const Project& p);
// {"Project": {...}, "Session": {...}}
std::string SessionToJson(const Project& p, const Session& s);

}  // namespace zol
