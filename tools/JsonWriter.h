/// Writes one JSON text as it goes, without keeping any of it.
#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace senmark_tool {

/// The caller opens and closes objects and arrays in pairs and gives a key before each member's value.
/// Whatever is open at the end can be closed by `CloseAll`, so that also a text that had to stop early is
/// valid JSON.
class JsonWriter {
 public:
  /// How the elements of an array, or the members of an object, follow each other.
  enum class eLayout : std::uint8_t {
    kCompact,  ///< on one line
    kLines,    ///< each on a line of its own
  };

  /// out  must live as long as the writer.
  explicit JsonWriter(std::ostream& out) : mOut(out) {}

  void BeginObject(eLayout layout = eLayout::kCompact) { Open('{', '}', layout); }
  void EndObject() { Close(); }
  void BeginArray(eLayout layout = eLayout::kCompact) { Open('[', ']', layout); }
  void EndArray() { Close(); }
  void Key(std::string_view key);

  /// Bytes that are no valid UTF-8 become U+FFFD, one for each byte.
  void String(std::string_view text);
  /// The shortest text that reads back as the same double; null for what JSON has no number for.
  void Number(double number);
  void Integer(std::int64_t number);
  void Unsigned(std::uint64_t number);
  void Boolean(bool flag);
  void Null();

  /// Closes all that is open and ends the last line.
  void CloseAll();

 private:
  struct Level {
    char closing;
    eLayout layout;
    bool isEmpty;
  };

  void Open(char opening, char closing, eLayout layout);
  void Close();
  /// Writes what stands before a value or a key.
  void Separate();
  void WriteQuoted(std::string_view text);

  std::ostream& mOut;
  std::vector<Level> mLevels;
  bool mAfterKey = false;
};

}  // namespace senmark_tool
