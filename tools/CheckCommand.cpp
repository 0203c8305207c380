#include "Command.h"
#include "Excerpt.h"
#include "JsonWriter.h"
#include "Utf8.h"

namespace senmark_tool {

namespace {

constexpr std::size_t kExcerptWidth = 76;

/// Reads everything that the file has: its tree when it is opened, and each of its samples.
std::uint64_t ReadAll(senmark::Senmark const& manager, std::string const& path) {
  senmark::File const file = manager.open(path);
  std::vector<std::string> ids;
  file.walk([&](senmark::Node const& node, int) {
    if (node.dynamic) {
      ids.push_back(node.dynamic->sampleSetId);
    }
  });
  std::uint64_t count = 0;
  for (std::string const& id : ids) {
    for (senmark::Sample const& sample : file.samples(id).all()) {
      static_cast<void>(sample);
      ++count;
    }
  }
  return count;
}

void WritePlace(JsonWriter& json, senmark::Error const& error, std::optional<Place> const& place) {
  json.Key("offset");
  json.Integer(error.offset());
  json.Key("line");
  if (place) {
    json.Unsigned(place->line);
    json.Key("column");
    json.Unsigned(place->column);
    json.Key("excerpt");
    json.String(place->excerpt);
    json.Key("caret");
    json.Unsigned(place->caret);
  } else {
    json.Integer(error.line());
  }
}

void WriteOutcome(std::ostream& out, std::string const& file, senmark::Error const* error,
                  std::optional<Place> const& place, std::uint64_t samples) {
  JsonWriter json(out);
  json.BeginObject();
  json.Key("file");
  json.String(file);
  json.Key("ok");
  json.Boolean(error == nullptr);
  if (error == nullptr) {
    json.Key("samples");
    json.Unsigned(samples);
  } else {
    json.Key("error");
    json.BeginObject();
    json.Key("code");
    json.Integer(error->code());
    json.Key("message");
    json.String(error->message());
    WritePlace(json, *error, place);
    json.EndObject();
  }
  json.CloseAll();
}

void PrintError(std::ostream& out, std::string const& file, senmark::Error const& error,
                std::optional<Place> const& place) {
  out << Printable(file) << ": " << Printable(error.message()) << " (code " << error.code() << ")\n";
  if (place) {
    out << "  at byte " << place->offset << ", line " << place->line << ", column " << place->column << "\n\n    "
        << place->excerpt << "\n    " << std::string(place->caret, ' ') << "^\n";
  } else if (error.line() >= 0) {
    out << "  at line " << error.line() << '\n';
  }
}

}  // namespace

int RunCheck(senmark::Senmark const& manager, Request const& request, std::ostream& out) {
  senmark::Result<std::uint64_t> const samples = senmark::attempt([&] { return ReadAll(manager, request.file); });
  senmark::Error const* const error = samples ? nullptr : &samples.error();
  std::optional<Place> place;
  if (error != nullptr && error->offset() >= 0) {
    place = FindPlace(request.file, static_cast<std::uint64_t>(error->offset()), kExcerptWidth);
  }
  if (request.asJson) {
    WriteOutcome(out, request.file, error, place, samples ? samples.value() : 0);
  } else if (error != nullptr) {
    PrintError(out, request.file, *error, place);
  } else {
    out << Printable(request.file) << ": no error, " << samples.value() << " samples read\n";
  }
  return error == nullptr ? kFine : kFileAtFault;
}

}  // namespace senmark_tool
