#include <array>
#include <fstream>

#include "Command.h"
#include "Excerpt.h"
#include "JsonWriter.h"
#include "ScratchFolder.h"
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

/// Where an error is: in the file, or in the text that the file is converted into.
struct ErrorPlace {
  Place place;
  bool isInConvertedText = false;
};

/// Whether two texts begin alike. A converted text and its source do not: what begins like a text of the
/// library's format is not converted.
bool BeginsLike(senmark::Stream& text, std::string const& path) {
  constexpr unsigned kCompared = 4096;
  std::array<char, kCompared> ofText;
  std::array<char, kCompared> ofFile;
  unsigned const count = text.read(ofText.data(), kCompared);
  std::ifstream file(path, std::ios::binary);
  file.read(ofFile.data(), kCompared);
  return std::string_view(ofText.data(), count) ==
         std::string_view(ofFile.data(), static_cast<std::size_t>(file.gcount()));
}

/// Offsets of errors count in the text that is read, which of a converted file is gone by then: it is converted
/// once more. None: no place is known, or nothing can be shown of it.
std::optional<ErrorPlace> FindErrorPlace(senmark::Senmark const& manager, std::string const& path,
                                         senmark::Error const& error) {
  if (error.offset() < 0) {
    return std::nullopt;
  }
  std::uint64_t const offset = static_cast<std::uint64_t>(error.offset());
  ErrorPlace found;
  senmark::Result<senmark::Stream> text = senmark::attempt([&] { return manager.stream(path); });
  ScratchFolder const scratch;
  std::string textPath = path;
  if (text) {
    senmark::Stream stream = std::move(text).value();
    if (!BeginsLike(stream, path)) {
      found.isInConvertedText = true;
      textPath = scratch.Path("text");
      stream.save(textPath);
    }
  } else if (text.error().code() != error.code() || text.error().offset() != error.offset()) {
    return std::nullopt;
  }
  // What fails with a place before there is any other text has it in the file itself.
  std::optional<Place> place = FindPlace(textPath, offset, kExcerptWidth);
  if (!place) {
    return std::nullopt;
  }
  found.place = std::move(*place);
  return found;
}

void WritePlace(JsonWriter& json, senmark::Error const& error, std::optional<ErrorPlace> const& found) {
  json.Key("offset");
  json.Integer(error.offset());
  if (found) {
    json.Key("inConvertedText");
    json.Boolean(found->isInConvertedText);
  }
  json.Key("line");
  if (found) {
    json.Unsigned(found->place.line);
    json.Key("column");
    json.Unsigned(found->place.column);
    json.Key("excerpt");
    json.String(found->place.excerpt);
    json.Key("caret");
    json.Unsigned(found->place.caret);
  } else {
    json.Integer(error.line());
  }
}

void WriteOutcome(std::ostream& out, std::string const& file, senmark::Error const* error,
                  std::optional<ErrorPlace> const& place, std::uint64_t samples) {
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
                std::optional<ErrorPlace> const& found) {
  out << Printable(file) << ": " << Printable(error.message()) << " (code " << error.code() << ")\n";
  if (found) {
    Place const& place = found->place;
    out << "  at byte " << place.offset << (found->isInConvertedText ? " of the converted text, line " : ", line ")
        << place.line << ", column " << place.column << "\n\n    " << place.excerpt << "\n    "
        << std::string(place.caret, ' ') << "^\n";
  } else if (error.line() >= 0) {
    out << "  at line " << error.line() << '\n';
  }
}

}  // namespace

int RunCheck(senmark::Senmark const& manager, Request const& request, std::ostream& out) {
  senmark::Result<std::uint64_t> const samples = senmark::attempt([&] { return ReadAll(manager, request.file); });
  senmark::Error const* const error = samples ? nullptr : &samples.error();
  std::optional<ErrorPlace> place;
  if (error != nullptr) {
    senmark::Result<std::optional<ErrorPlace>> found =
        senmark::attempt([&] { return FindErrorPlace(manager, request.file, *error); });
    place = found ? std::move(found).value() : std::nullopt;
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
