#include <unistd.h>

#include <iostream>

#include "Command.h"
#include "JsonWriter.h"
#include "NodeCounts.h"
#include "OutputFile.h"
#include "ProgressLine.h"
#include "Utf8.h"

namespace senmark_tool {

namespace {

senmark::File Convert(senmark::Senmark const& manager, std::string const& from, std::string const& to) {
  ProgressLine const progress(isatty(STDERR_FILENO) != 0 ? &std::cerr : nullptr, "converting " + Printable(from));
  return manager.open(from, to);
}

}  // namespace

int RunConvert(senmark::Senmark const& manager, Request const& request, std::ostream& out) {
  OutputFile output(request.output, request.file, request.overwrites);
  NodeCounts const counts = CountNodes(Convert(manager, request.file, output.WorkPath()));
  std::uintmax_t const size = output.Finish();
  if (!request.asJson) {
    out << "wrote " << Printable(request.output) << ": " << size << " bytes, " << counts.groups << " groups, "
        << counts.statics << " static nodes, " << counts.dynamics << " dynamic nodes, " << counts.samples
        << " samples\n";
    return kFine;
  }
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

}  // namespace senmark_tool
