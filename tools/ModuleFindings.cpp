#include "ModuleFindings.h"

#include <algorithm>

#include "JsonWriter.h"
#include "Utf8.h"

namespace senmark_tool {

namespace {

char const* Name(eSeverity severity) {
  switch (severity) {
    case eSeverity::kError:
      return "error";
    case eSeverity::kWarning:
      return "warning";
    case eSeverity::kNote:
      break;
  }
  return "note";
}

}  // namespace

std::size_t ModuleFindings::Count(eSeverity severity) const {
  auto const count = std::count_if(mFindings.begin(), mFindings.end(),
                                   [severity](Finding const& finding) { return finding.severity == severity; });
  return static_cast<std::size_t>(count);
}

void ModuleFindings::Print(std::ostream& out, std::string const& module) const {
  for (Finding const& finding : mFindings) {
    out << Printable(finding.where);
    if (finding.place) {
      out << ':' << finding.place->line << ':' << finding.place->column;
    }
    out << ": " << Name(finding.severity) << ": " << Printable(finding.text);
    if (finding.place) {
      out << " (byte " << finding.place->offset << ')';
    }
    out << '\n';
  }
  out << Printable(module) << ": "
      << (mFindings.empty()
              ? std::string("nothing to find fault with")
              : Counted(Count(eSeverity::kError), "error") + ", " + Counted(Count(eSeverity::kWarning), "warning") +
                    ", " + Counted(Count(eSeverity::kNote), "note"))
      << '\n';
}

void ModuleFindings::WriteJson(std::ostream& out, std::string const& module) const {
  JsonWriter json(out);
  json.BeginObject();
  json.Key("module");
  json.String(module);
  json.Key("ok");
  json.Boolean(!HasErrors());
  json.Key("errors");
  json.Unsigned(Count(eSeverity::kError));
  json.Key("warnings");
  json.Unsigned(Count(eSeverity::kWarning));
  json.Key("notes");
  json.Unsigned(Count(eSeverity::kNote));
  json.Key("findings");
  json.BeginArray(JsonWriter::eLayout::kLines);
  for (Finding const& finding : mFindings) {
    json.BeginObject();
    json.Key("severity");
    json.String(Name(finding.severity));
    json.Key("where");
    json.String(finding.where);
    if (finding.place) {
      json.Key("line");
      json.Unsigned(finding.place->line);
      json.Key("column");
      json.Unsigned(finding.place->column);
      json.Key("offset");
      json.Unsigned(finding.place->offset);
    }
    json.Key("text");
    json.String(finding.text);
    json.EndObject();
  }
  json.CloseAll();
}

std::string Counted(std::size_t count, std::string const& what) {
  return std::to_string(count) + ' ' + what + (count == 1 ? "" : "s");
}

}  // namespace senmark_tool
