#include "JsonLines.h"

#include <rapidjson/memorystream.h>
#include <rapidjson/reader.h>

#include <algorithm>

#include "Ascii.h"

namespace senmark_series {

namespace {

constexpr std::size_t kDeepest = 32;        ///< objects and arrays in one another
constexpr std::size_t kLongestName = 1000;  ///< bytes, of all levels together

/// Iterative: nesting costs memory of the reader alone, and ends at `kDeepest`.
constexpr unsigned kFlags =
    rapidjson::kParseIterativeFlag | rapidjson::kParseNumbersAsStringsFlag | rapidjson::kParseValidateEncodingFlag;

}  // namespace

/// Takes the events of one line.
class JsonLines::Handler : public rapidjson::BaseReaderHandler<rapidjson::UTF8<>, Handler> {
 public:
  struct Value {
    std::size_t column;
    std::size_t start;  ///< in the texts
    std::size_t size;
  };

  explicit Handler(JsonLines& rows) : mRows(rows) {}

  void begin() {
    mLevels.clear();
    mName.clear();
    mTexts.clear();
    mValues.clear();
  }
  std::string const& texts() const { return mTexts; }
  std::vector<Value> const& values() const { return mValues; }

  bool Null() { return Take(std::string_view()); }
  bool Bool(bool value) { return Take(value ? "true" : "false"); }
  bool RawNumber(char const* text, rapidjson::SizeType size, bool /*copy*/) { return Take({text, size}); }
  bool String(char const* text, rapidjson::SizeType size, bool /*copy*/) { return Take({text, size}); }
  bool Key(char const* text, rapidjson::SizeType size, bool /*copy*/) {
    mName.resize(mLevels.back().nameSize);
    return AppendName({text, size});
  }
  bool StartObject() { return Enter(false); }
  bool EndObject(rapidjson::SizeType /*count*/) { return Leave(); }
  bool StartArray() { return Enter(true); }
  bool EndArray(rapidjson::SizeType /*count*/) { return Leave(); }

 private:
  struct Level {
    bool isArray;
    std::size_t nameSize;  ///< of what all in it is named after
    std::size_t index;
  };

  bool AppendName(std::string_view name) {
    if (!mName.empty()) {
      mName += '.';
    }
    mName.append(name);
    return mName.size() <= kLongestName;
  }
  /// Names the element that comes now, if it is one.
  bool NameElement() {
    if (mLevels.empty() || !mLevels.back().isArray) {
      return true;
    }
    mName.resize(mLevels.back().nameSize);
    return AppendName(std::to_string(mLevels.back().index++));
  }
  bool Enter(bool isArray) {
    if (mLevels.size() == kDeepest || (mLevels.empty() && isArray) || !NameElement()) {
      return false;
    }
    mLevels.push_back({isArray, mName.size(), 0});
    return true;
  }
  bool Leave() {
    mName.resize(mLevels.back().nameSize);
    mLevels.pop_back();
    return true;
  }
  bool Take(std::string_view text) {
    if (mLevels.empty() || !NameElement()) {
      return false;
    }
    std::size_t const column = mRows.ColumnOf(mName);
    mValues.push_back({column, mTexts.size(), text.size()});
    mTexts.append(text);
    return true;
  }

  JsonLines& mRows;
  std::vector<Level> mLevels;
  std::string mName;
  std::string mTexts;
  std::vector<Value> mValues;
};

JsonLines::JsonLines(TextBuffer& text) : mText(text), mHandler(std::make_unique<Handler>(*this)) {}

JsonLines::~JsonLines() = default;

bool JsonLines::next(Row& row) {
  std::string_view line;
  while (NextLine(line, row)) {
    if (!Trim(line).empty()) {
      Parse(line, row);
      return true;
    }
  }
  return false;
}

bool JsonLines::NextLine(std::string_view& line, Row& row) {
  std::size_t searched = 0;
  for (;;) {
    char* const start = mText.begin();
    char* const end = mText.end();
    char* const lineEnd = std::find_if(start + searched, end, [](char each) { return each == '\n' || each == '\r'; });
    bool const needsNext = lineEnd == end || (*lineEnd == '\r' && lineEnd + 1 == end);
    if (needsNext && !mText.isAtEnd()) {
      if (static_cast<std::size_t>(end - start) > kLongestRow) {
        throw kit::Failure("a line of more than " + std::to_string(kLongestRow) + " bytes", mText.offsetOf(start),
                           mLine);
      }
      searched = static_cast<std::size_t>(lineEnd - start);
      mText.more();
      continue;
    }
    if (lineEnd == end && (start == end || !mText.isWhole())) {
      return false;
    }
    line = std::string_view(start, static_cast<std::size_t>(lineEnd - start));
    row.line = mLine++;
    row.offset = mText.offsetOf(start);
    bool const isPair = lineEnd != end && *lineEnd == '\r' && lineEnd + 1 != end && lineEnd[1] == '\n';
    mText.skipTo(lineEnd == end ? end : lineEnd + (isPair ? 2 : 1));
    return true;
  }
}

void JsonLines::Parse(std::string_view line, Row& row) {
  mHandler->begin();
  rapidjson::MemoryStream stream(line.data(), line.size());
  rapidjson::Reader reader;
  row.isBroken = reader.Parse<kFlags>(stream, *mHandler).IsError();
  row.cells.assign(mNames.size(), std::string_view());
  if (row.isBroken) {
    return;
  }
  for (Handler::Value const& value : mHandler->values()) {
    row.cells[value.column] = Trim(std::string_view(mHandler->texts()).substr(value.start, value.size));
  }
}

std::size_t JsonLines::ColumnOf(std::string const& name) {
  auto const [entry, isNew] = mColumns.try_emplace(name, mNames.size());
  if (isNew) {
    if (mNames.size() == kMostMembers) {
      throw kit::Failure("more than " + std::to_string(kMostMembers) + " names of members", -1, mLine - 1);
    }
    mNames.push_back(name);
  }
  return entry->second;
}

}  // namespace senmark_series
