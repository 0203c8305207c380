#include "SK_Utils.h"

#include <cctype>
#include <cstring>
#include <locale>
#include <utility>

#include "SK_Error.h"
#include "SK_FileMapper.h"
#include "SK_TdjsonParserUtils.h"

namespace SK_NAMESPACE_INT {

namespace {

/// A path of this many bytes is too long.
constexpr std::size_t kPathLengthLimit = 65535;
constexpr char kRootMatchName[] = "dataOutline";
constexpr char kVersion2[] = "tdjson2.0.0";

/// Where the file name begins: behind the last "/", or else behind the last backslash; `npos` without
/// either. A backslash is an ordinary byte in a path that has a "/".
std::string::size_type FileNameBegin(std::string const& path) {
  std::string::size_type at = path.rfind('/');
  if (at == std::string::npos) {
    at = path.rfind('\\');
  }
  return at == std::string::npos ? std::string::npos : at + 1;
}

/// The next `bracket` at or behind `from`. `segmentBegin` is the position that the message shows.
std::string::size_type FindBracket(std::string const& text, char bracket, std::string::size_type from,
                                   std::string::size_type segmentBegin, eErrorCode code) {
  std::string::size_type const at = text.find(bracket, from);
  if (at == std::string::npos) {
    ThrowError({code, SK_Message::kMissingOpeningOrClosingBracket, -1, -1}, Quoted(std::string(1, bracket)),
               static_cast<unsigned long long>(segmentBegin));
  }
  return at;
}

/// The segment between the brackets at `open` and `close`. A quoted name ends at its quote wherever that
/// stands, also behind `close`; a name without one is all the rest of the text.
ns_sensor::SK_PathSegment ReadSegment(std::string const& text, std::string::size_type open,
                                      std::string::size_type close) {
  ns_sensor::SK_PathSegment segment;
  std::string::size_type const begin = open + 1;
  if (text[begin] == '"') {
    std::string::size_type const nameBegin = begin + 1;
    segment.matchName = text.substr(nameBegin, text.find('"', nameBegin) - nameBegin);
  } else {
    segment.index = std::stoi(text.substr(begin, close - begin));
  }
  return segment;
}

}  // namespace

void SK_Utils::CheckFilePathValidity(char const* path) {
  if (path == nullptr || *path == '\0') {
    ThrowError({ns_sensor::kPathIsNull, SK_Message::kInvalidFilePath, -1, -1});
  }
  if (strnlen(path, kPathLengthLimit) == kPathLengthLimit) {
    ThrowError({ns_sensor::kPathTooLong, SK_Message::kFilePathTooLarge, -1, -1});
  }
}

std::string SK_Utils::GetFileName(char const* path) {
  std::string const text(path);
  std::string::size_type const begin = FileNameBegin(text);
  return begin == std::string::npos ? std::string() : text.substr(begin);
}

std::string SK_Utils::GetDirName(std::string const& path) {
  std::string::size_type const end = FileNameBegin(path);
  return end == std::string::npos ? std::string() : path.substr(0, end);
}

// Unlike in the file name above, the nearer of the two separators counts.
void SK_Utils::GetFileExtension(std::string const& path, std::string& out) {
  std::string::size_type const separator = path.find_last_of("/\\");
  std::string::size_type const point = path.rfind('.');
  bool const hasExtension = separator != std::string::npos && point != std::string::npos && point > separator;
  std::string extension = hasExtension ? path.substr(point + 1) : std::string();
  MakeLowerCase(extension);
  out = std::move(extension);
}

void SK_Utils::MakeLowerCase(std::string& text) {
  for (char& c : text) {
    c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  }
}

// What stands between a "]" and the next "[" is skipped. A number that cannot be read is no error of its
// own: the exception of the conversion passes to the caller.
bool SK_Utils::IsValidMatchName(std::string_view name) {
  std::locale const locale;
  return IsValidMatchName(name, std::use_facet<std::ctype<char>>(locale));
}

bool SK_Utils::IsValidMatchName(std::string_view name, std::ctype<char> const& characters) {
  if (name.empty() || (name.front() >= '0' && name.front() <= '9')) {
    return false;
  }
  char const* const end = name.data() + name.size();
  return characters.scan_not(std::ctype_base::alnum, name.data(), end) == end;
}

bool SK_Utils::IsValidMatchName(char const* name) {
  return name != nullptr && IsValidMatchName(std::string_view(name));
}

void SK_Utils::DeSerialize(std::string const& text, SK_DataPath& path) {
  path.clear();
  path.push_back({kRootMatchName, -1});
  if (text.empty()) {
    ThrowError({ns_sensor::kInvalidArgument, SK_Message::kEmptyDataPathString, -1, -1});
  }
  std::string::size_type position = 0;
  while (position < text.size()) {
    std::string::size_type const open = FindBracket(text, '[', position, position, ns_sensor::kPathMismatch);
    std::string::size_type const close = FindBracket(text, ']', open, position, ns_sensor::kPathBracketMissing);
    path.push_back(ReadSegment(text, open, close));
    position = close + 1;
  }
}

bool SK_Utils::IsTDJSONVersion2(char const* path) {
  SK_FileMapper const file(path);
  char const* const base = file.GetFilePointer();
  char const* const end = base + file.GetFileSize();
  char const* p = SK_TdjsonParserUtils::SkipSpecialCharacters(base, end);
  if (p == end || *p != '{') {
    return false;
  }
  std::string key;
  p = SK_TdjsonParserUtils::SkipSpecialCharacters(p + 1, end);
  p = SK_TdjsonParserUtils::ParseJsonString(p, end, base, key, true, "");
  p = SK_TdjsonParserUtils::ConsumeColon(p, end, base, key);
  if (key != "version") {
    return false;
  }
  std::string version;
  SK_TdjsonParserUtils::ParseJsonString(p, end, base, version, false, key.c_str());
  MakeLowerCase(version);
  return version == kVersion2;
}

}  // namespace SK_NAMESPACE_INT
