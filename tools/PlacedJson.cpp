#include "PlacedJson.h"

#include <rapidjson/error/en.h>
#include <rapidjson/reader.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <string_view>

namespace senmark_tool {

namespace {

using eKind = PlacedValue::eKind;

/// A text that ends in a NUL. The reader works on copies of its own streams, whose places are behind then; with this
/// one it does not.
class TextStream {
 public:
  using Ch = char;

  explicit TextStream(char const* text) : mText(text) {}

  char Peek() const { return mText[mPosition]; }
  char Take() { return mText[mPosition++]; }
  std::size_t Tell() const { return mPosition; }

  // For streams that are written to.
  static char* PutBegin() { return nullptr; }
  static void Put(char) {}
  static void Flush() {}
  static std::size_t PutEnd(char*) { return 0; }

 private:
  char const* mText;
  std::size_t mPosition = 0;
};

/// Builds the tree from what the reader meets.
class TreeBuilder {
 public:
  TreeBuilder(char const* text, TextStream const& stream, std::size_t depth)
      : mText(text), mStream(stream), mDepth(depth) {}

  PlacedValue TakeRoot() { return std::move(mRoot); }

  // What the reader calls, by its names.
  bool Null() { return AddScalar(PlacedValue()); }
  bool Bool(bool) { return AddScalar(eKind::kBool); }
  bool Int(int number) { return AddInteger(number); }
  bool Uint(unsigned number) { return AddInteger(number); }
  bool Int64(std::int64_t number) { return AddInteger(number); }
  bool Uint64(std::uint64_t number) {
    return number <= std::uint64_t{std::numeric_limits<std::int64_t>::max()}
               ? AddInteger(static_cast<std::int64_t>(number))
               : AddScalar(eKind::kOtherNumber);
  }
  bool Double(double) { return AddScalar(eKind::kOtherNumber); }
  bool RawNumber(char const*, rapidjson::SizeType, bool) { return AddScalar(eKind::kOtherNumber); }
  bool String(char const* text, rapidjson::SizeType length, bool) {
    PlacedValue value;
    value.kind = eKind::kString;
    value.text.assign(text, length);
    return AddScalar(std::move(value));
  }
  bool Key(char const* text, rapidjson::SizeType length, bool) {
    mKeyOffset = SkipToToken();
    mKey.assign(text, length);
    mEnd = mStream.Tell();
    return true;
  }
  bool StartObject() { return Open(eKind::kObject); }
  bool EndObject(rapidjson::SizeType) { return Close(); }
  bool StartArray() { return Open(eKind::kArray); }
  bool EndArray(rapidjson::SizeType) { return Close(); }

 private:
  /// The reader tells where a token ends. Behind the end of the one before it stand only separators.
  std::size_t SkipToToken() const { return mEnd + std::strspn(mText + mEnd, " \t\r\n,:"); }

  bool AddInteger(std::int64_t number) {
    PlacedValue value;
    value.kind = eKind::kInteger;
    value.integer = number;
    return AddScalar(std::move(value));
  }
  bool AddScalar(eKind kind) {
    PlacedValue value;
    value.kind = kind;
    return AddScalar(std::move(value));
  }
  bool AddScalar(PlacedValue value) {
    value.offset = SkipToToken();
    mEnd = mStream.Tell();
    Store(std::move(value));
    return true;
  }

  bool Open(eKind kind) {
    PlacedValue value;
    value.kind = kind;
    value.offset = SkipToToken();
    mEnd = value.offset + 1;
    Store(std::move(value));
    ++mLevel;
    return true;
  }

  bool Close() {
    mEnd = SkipToToken() + 1;
    --mLevel;
    if (mLevel < mOpen.size()) {
      mOpen.pop_back();
    }
    return true;
  }

  void Store(PlacedValue value) {
    if (mLevel > mDepth) {
      return;
    }
    bool const isOpened = value.kind == eKind::kArray || value.kind == eKind::kObject;
    if (mLevel != 0 && Parent().kind == eKind::kObject) {
      value.key = std::move(mKey);
      value.keyOffset = mKeyOffset;
    }
    std::vector<PlacedValue>* const siblings = mLevel == 0 ? nullptr : &Parent().children;
    if (siblings != nullptr) {
      siblings->push_back(std::move(value));
    } else {
      mRoot = std::move(value);
    }
    if (isOpened && mLevel < mDepth) {
      mOpen.push_back(siblings == nullptr ? 0 : siblings->size() - 1);
    }
  }

  /// The value that is open on the deepest level that is kept.
  PlacedValue& Parent() {
    PlacedValue* value = &mRoot;
    for (std::size_t level = 1; level < mOpen.size(); ++level) {
      value = &value->children[mOpen[level]];
    }
    return *value;
  }

  char const* mText;
  TextStream const& mStream;
  std::size_t mDepth;
  std::size_t mEnd = 0;  ///< of the token read last
  std::size_t mLevel = 0;
  std::vector<std::size_t> mOpen;  ///< positions among their siblings of the values that are open and kept
  std::string mKey;
  std::uint64_t mKeyOffset = 0;
  PlacedValue mRoot;
};

}  // namespace

PlacedValue const* PlacedValue::Find(std::string const& wanted) const {
  if (kind != eKind::kObject) {
    return nullptr;
  }
  auto const found = std::find_if(children.begin(), children.end(),
                                  [&wanted](PlacedValue const& child) { return child.key == wanted; });
  return found == children.end() ? nullptr : &*found;
}

PlacedJson ReadPlacedJson(std::string const& text, std::size_t depth) {
  TextStream stream(text.c_str());
  TreeBuilder builder(text.c_str(), stream, depth);
  rapidjson::Reader reader;
  PlacedJson json;
  // Nesting without end must not exhaust the stack.
  rapidjson::ParseResult const result = reader.Parse<rapidjson::kParseIterativeFlag>(stream, builder);
  if (result.IsError()) {
    json.error = JsonSyntaxError{result.Offset(), rapidjson::GetParseError_En(result.Code())};
  } else {
    json.root = builder.TakeRoot();
  }
  return json;
}

TextPlace PlaceOf(std::string const& text, std::uint64_t offset) {
  std::string_view const before = std::string_view(text).substr(0, offset);
  std::size_t const lineBreak = before.rfind('\n');
  TextPlace place;
  place.offset = offset;
  place.line = 1 + static_cast<std::uint64_t>(std::count(before.begin(), before.end(), '\n'));
  place.column = offset - (lineBreak == std::string_view::npos ? 0 : lineBreak + 1) + 1;
  return place;
}

}  // namespace senmark_tool
