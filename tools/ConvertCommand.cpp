#include <unistd.h>

#include <filesystem>
#include <iostream>

#include "Command.h"
#include "JsonWriter.h"
#include "NodeCounts.h"
#include "ProgressLine.h"
#include "Utf8.h"

namespace senmark_tool {

namespace {

void RefuseToOverwrite(Request const& request) {
  std::error_code failure;
  if (!std::filesystem::exists(request.output, failure)) {
    return;
  }
  if (std::filesystem::equivalent(request.file, request.output, failure)) {
    throw UsageError("cannot be converted onto itself");
  }
  if (!request.overwrites) {
    throw UsageError("\"" + request.output + "\" exists already; --force replaces it");
  }
}

senmark::File Convert(senmark::Senmark const& manager, Request const& request) {
  ProgressLine const progress(isatty(STDERR_FILENO) != 0 ? &std::cerr : nullptr,
                              "converting " + Printable(request.file));
  return manager.open(request.file, request.output);
}

}  // namespace

int RunConvert(senmark::Senmark const& manager, Request const& request, std::ostream& out) {
  RefuseToOverwrite(request);
  senmark::File const file = Convert(manager, request);
  NodeCounts const counts = CountNodes(file);
  std::uintmax_t const size = std::filesystem::file_size(request.output);
  if (request.asJson) {
    JsonWriter json(out);
    json.BeginObject();
    json.Key("output");
    json.String(request.output);
    json.Key("bytes");
    json.Unsigned(size);
    json.Key("groups");
    json.Unsigned(counts.groups);
    json.Key("staticNodes");
    json.Unsigned(counts.statics);
    json.Key("dynamicNodes");
    json.Unsigned(counts.dynamics);
    json.Key("samples");
    json.Unsigned(counts.samples);
    json.CloseAll();
    return kFine;
  }
  out << "wrote " << Printable(request.output) << ": " << size << " bytes, " << counts.groups << " groups, "
      << counts.statics << " static nodes, " << counts.dynamics << " dynamic nodes, " << counts.samples << " samples\n";
  return kFine;
}

}  // namespace senmark_tool
