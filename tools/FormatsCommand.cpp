#include <iomanip>

#include "Command.h"
#include "JsonWriter.h"
#include "Utf8.h"

namespace senmark_tool {

int RunFormats(senmark::Senmark const& manager, Request const& request, std::ostream& out) {
  std::vector<senmark::Format> const formats = manager.formats();
  if (!request.asJson) {
    for (senmark::Format const& format : formats) {
      out << std::left << std::setw(10) << Printable(format.extension) << Printable(format.description) << '\n';
    }
    return kFine;
  }
  JsonWriter json(out);
  json.BeginArray(JsonWriter::eLayout::kLines);
  for (senmark::Format const& format : formats) {
    json.BeginObject();
    json.Key("extension");
    json.String(format.extension);
    json.Key("description");
    json.String(format.description);
    json.EndObject();
  }
  json.CloseAll();
  return kFine;
}

}  // namespace senmark_tool
