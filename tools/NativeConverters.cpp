#include "NativeConverters.h"

#include <filesystem>
#include <fstream>

#include "ManifestConverters.h"

namespace senmark_tool {

namespace {

constexpr int kEnd = std::char_traits<char>::eof();

/// Reads a file byte by byte, and no further than is asked.
class Bytes {
 public:
  explicit Bytes(std::string const& path) : mFile(path, std::ios::binary) {}

  bool IsOpen() const { return mFile.is_open(); }
  int Peek() { return mFile.peek(); }
  int Get() { return mFile.get(); }
  void SkipBlanks() {
    while (Peek() == ' ' || Peek() == '\n' || Peek() == '\t' || Peek() == '\r') {
      Get();
    }
  }

 private:
  std::ifstream mFile;
};

/// A text in quotes with its escapes resolved as the library does it: a backslash before a byte with which it has no
/// meaning is dropped. False if there is none. Of a long text only the begin is kept.
bool ReadJsonText(Bytes& bytes, std::string& text) {
  constexpr std::size_t kEnough = 64;
  text.clear();
  if (bytes.Get() != '"') {
    return false;
  }
  while (true) {
    int byte = bytes.Get();
    if (byte == '"') {
      return true;
    }
    if (byte == '\\') {
      static std::string const kEscapes = "\"\\bfnrt";
      static std::string const kMeanings = "\"\\\b\f\n\r\t";
      std::size_t const found =
          bytes.Peek() == kEnd ? std::string::npos : kEscapes.find(static_cast<char>(bytes.Peek()));
      if (found == std::string::npos) {
        continue;
      }
      bytes.Get();
      byte = kMeanings[found];
    } else if (byte == kEnd || byte < ' ') {
      return false;
    }
    if (text.size() < kEnough) {
      text += static_cast<char>(byte);
    }
  }
}

bool IsWordSpace(int byte) {
  return byte == ' ' || (byte >= '\t' && byte <= '\r');
}

/// Takes the first word of a line if it is this one.
bool TakeWord(Bytes& bytes, std::string const& word) {
  while (bytes.Peek() != '\n' && IsWordSpace(bytes.Peek())) {
    bytes.Get();
  }
  for (char const letter : word) {
    if (bytes.Get() != static_cast<unsigned char>(letter)) {
      return false;
    }
  }
  return bytes.Peek() == kEnd || IsWordSpace(bytes.Peek());
}

Verdict CheckBvh(std::string const& path) {
  Bytes bytes(path);
  if (!TakeWord(bytes, "HIERARCHY")) {
    return {false, "its first line does not begin with HIERARCHY"};
  }
  for (int byte = bytes.Get(); byte != '\n' && byte != kEnd; byte = bytes.Get()) {
  }
  return TakeWord(bytes, "ROOT") ? Verdict{true, "it begins with HIERARCHY and ROOT"}
                                 : Verdict{false, "its second line does not begin with ROOT"};
}

Verdict CheckJson(std::string const& path) {
  Bytes bytes(path);
  bytes.SkipBlanks();
  int const first = bytes.Get();
  // The last byte of a file begins nothing.
  bool const takes = (first == '[' || first == '{') && bytes.Peek() != kEnd;
  return takes ? Verdict{true, "it begins with a bracket or brace"}
               : Verdict{false, "it does not begin with a bracket or brace"};
}

Verdict TakeAnything(std::string const& /*path*/) {
  return {true, "it takes any file"};
}

}  // namespace

std::array<NativeConverter, 5> const kNativeConverters = {{
    {"bvh", "motion capture (BVH)", CheckBvh},
    {"csv", "comma-separated values", TakeAnything},
    {"json", "JSON", CheckJson},
    {"tsv", "tab-separated values", TakeAnything},
    {"txt", "tab-separated values", TakeAnything},
}};

eOwnFormat OwnFormat(std::string const& path, std::string const& extension) {
  std::error_code failure;
  if (!std::filesystem::is_regular_file(path, failure)) {
    return eOwnFormat::kUnreadable;
  }
  Bytes bytes(path);
  if (!bytes.IsOpen() || bytes.Peek() == kEnd) {
    return eOwnFormat::kUnreadable;
  }
  eOwnFormat const byName = extension == "tdjson" ? eOwnFormat::kVersion1 : eOwnFormat::kNo;
  bytes.SkipBlanks();
  if (bytes.Peek() != '{') {
    return byName;
  }
  bytes.Get();
  bytes.SkipBlanks();
  std::string text;
  if (!ReadJsonText(bytes, text)) {
    return eOwnFormat::kUnreadable;
  }
  bytes.SkipBlanks();
  if (bytes.Get() != ':') {
    return eOwnFormat::kUnreadable;
  }
  bytes.SkipBlanks();
  if (text != "version") {
    return byName;
  }
  if (!ReadJsonText(bytes, text)) {
    return eOwnFormat::kUnreadable;
  }
  return LowerCase(text) == "tdjson2.0.0" ? eOwnFormat::kVersion2 : byName;
}

std::string FileExtension(std::string const& fullPath) {
  std::size_t const separator = fullPath.find_last_of("/\\");
  std::size_t const point = fullPath.rfind('.');
  bool const hasExtension = separator != std::string::npos && point != std::string::npos && point > separator;
  return hasExtension ? LowerCase(fullPath.substr(point + 1)) : std::string();
}

}  // namespace senmark_tool
