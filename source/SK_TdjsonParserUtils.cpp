#include "SK_TdjsonParserUtils.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <limits>
#include <new>
#include <string_view>
#include <utility>

#include "SK_JsonBytes.h"
#include "SK_JsonError.h"
#include "SK_JsonName.h"
#include "SK_JsonNumber.h"
#include "SK_JsonText.h"
#include "SK_PackedDataType.h"

namespace SK_NAMESPACE_INT {

namespace {

using rapidjson::SizeType;

[[noreturn]] void ThrowMissingKeyQuotes(char const* p, char const* base) {
  ThrowJsonError(SK_Message::kInvalidKeyMissingQuotes, p, base);
}

[[noreturn]] void ThrowMissingValueQuotes(char const* p, char const* base, std::string const& name) {
  ThrowJsonError(SK_Message::kInvalidPropertyValueMissingQuotes, p, base, Quoted(name));
}

[[noreturn]] void ThrowMissingColon(char const* p, char const* base, std::string const& key) {
  ThrowJsonError(SK_Message::kInvalidPropertyMissingColon, p, base, Quoted(key));
}

[[noreturn]] void ThrowMissingCommaOrBracket(char const* p, char const* base, SK_JsonName const& name) {
  ThrowJsonError(SK_Message::kInvalidPropertyMissingCommaOrClosingBracket, p, base, Quoted(name.GetText()));
}

[[noreturn]] void ThrowTooDeep() {
  ThrowError({ns_sensor::kJsonSyntax, SK_Message::kTooDeepNesting, -1, -1},
             static_cast<int>(SK_TdjsonParserUtils::kMaxNestingDepth));
}

/// True if `word` stands at `p` and is not the last of the range.
template <std::size_t size>
bool IsWordBeforeEnd(char const* p, char const* end, char const (&word)[size]) {
  constexpr std::size_t kLength = size - 1;
  return end - p > static_cast<std::ptrdiff_t>(kLength) && std::memcmp(p, word, kLength) == 0;
}

bool ScanBool(char const*& p, char const* end, char const* base, SK_JsonName const& name) {
  if (IsWordBeforeEnd(p, end, "false")) {
    p += 5;
    return false;
  }
  if (IsWordBeforeEnd(p, end, "true")) {
    p += 4;
    return true;
  }
  ThrowJsonTypeError(p, base, name, "JSON Boolean");
}

/// The format's own keys that are too long to stand inside a value. Each node of an outline repeats some of them, so
/// the documents share these instead of holding copies.
constexpr std::string_view kSharedKeys[] = {
    "numberStringProperties", "numberArrayProperties", "paddedStringProperties", "arrayDisplayNames",
    "hasExpectedFrequencyB",  "hasExpectedFrequecyB",  "maxDigitsInStrLength",   "expectedMaxInterSampleDuration",
};
constexpr std::size_t kShortestSharedKey = 17;

/// Null for a key that is not shared.
char const* FindSharedKey(SK_JsonText const& key) {
  if (key.GetSize() < kShortestSharedKey) {
    return nullptr;
  }
  std::string_view const text(key.begin, key.GetSize());
  auto const* const found = std::find(std::begin(kSharedKeys), std::end(kSharedKeys), text);
  return found == std::end(kSharedKeys) ? nullptr : found->data();
}

/// A size as rapidjson takes it. Larger ones, which only a container or string of more than 4 GiB has, are more
/// than the document model can hold.
SizeType CheckSize(std::size_t size) {
  if (size >= std::numeric_limits<SizeType>::max()) {
    throw std::bad_alloc();
  }
  return static_cast<SizeType>(size);
}

/// Texts up to this length stand inside a value.
constexpr SizeType kLongestInlineText = 13;

template <SizeType kLength>
void AddTextOfLength(JDocument& document, char const* text) {
  document.String(text, kLength, true);
}

/// One function for each length, which copies with a move or two: a call that copies a few bytes takes longer.
template <SizeType... kLengths>
void AddInlineText(JDocument& document, char const* text, SizeType length,
                   std::integer_sequence<SizeType, kLengths...>) {
  using Add = void (*)(JDocument&, char const*);
  static constexpr Add kAdd[] = {&AddTextOfLength<kLengths>...};
  kAdd[length](document, text);
}

/// Reads one container with all that is in it and hands the values to a document, which keeps them on a stack of
/// its own until their number is known: so each container takes exactly the memory that its items need.
class ContainerScanner {
 public:
  /// packer  for the data types of static nodes; null leaves them values like all others.
  ContainerScanner(char const* end, char const* base, JDocument& document, SK_DataTypePacker* packer = nullptr)
      : mEnd(end), mBase(base), mDocument(document), mPacker(packer) {}

  /// Each gives the position behind the closing byte.
  char const* ScanObject(char const* p, SK_JsonName const& name, unsigned depth) {
    p = Open(p, '{', "JSON Object", name, depth);
    mDocument.StartObject();
    std::size_t count = 0;
    bool isStaticNode = false;
    for (bool isClosed = false; !isClosed; ++count) {
      SK_JsonText key;
      if (!FindJsonText(p, mEnd, key)) {
        ThrowMissingKeyQuotes(key.end, mBase);
      }
      AddKey(key);
      SK_JsonName const memberName(name, key);
      p = SkipColon(key);
      if (count == 0) {
        // Where a key comes twice, the first one counts.
        isStaticNode = mPacker != nullptr && IsKey(key, "objectType") && IsWordBeforeEnd(p, mEnd, R"("dataStatic")");
      }
      if (!isStaticNode || !PackDataType(key, p, depth)) {
        p = ScanValue(p, memberName, depth);
      }
      p = SkipSeparator(p, '}', memberName, isClosed);
    }
    mDocument.EndObject(CheckSize(count));
    return p;
  }

  char const* ScanArray(char const* p, SK_JsonName const& name, unsigned depth) {
    p = Open(p, '[', "JSON Array", name, depth);
    mDocument.StartArray();
    std::size_t count = 0;
    for (bool isClosed = false; !isClosed; ++count) {
      SK_JsonName const elementName(name, CheckSize(count));
      p = ScanValue(p, elementName, depth);
      p = SkipSeparator(p, ']', elementName, isClosed);
    }
    mDocument.EndArray(CheckSize(count));
    return p;
  }

 private:
  /// Steps over the opening byte, to the first item.
  char const* Open(char const* p, char opening, char const* type, SK_JsonName const& name, unsigned depth) const {
    if (depth > SK_TdjsonParserUtils::kMaxNestingDepth) {
      ThrowTooDeep();
    }
    if (!PeekIs(p, mEnd, opening)) {
      ThrowJsonTypeError(p, mBase, name, type);
    }
    p = SkipJsonBlanks(p + 1, mEnd);
    if (p == mEnd) {
      ThrowJsonTypeError(p, mBase, name, type);
    }
    return p;
  }

  template <std::size_t kSize>
  static bool IsKey(SK_JsonText const& key, char const (&literal)[kSize]) {
    return key.GetSize() == kSize - 1 && std::memcmp(key.begin, literal, kSize - 1) == 0;
  }

  /// False, with nothing done, if the value at `p` is no data type or one for which there is no short form.
  bool PackDataType(SK_JsonText const& key, char const*& p, unsigned depth) {
    if (!IsKey(key, "dataType") || depth + SK_PackedDataType::kDepth > SK_TdjsonParserUtils::kMaxNestingDepth) {
      return false;
    }
    SK_PackedDataType const* const packed = mPacker->Pack(p, mEnd);
    if (packed != nullptr) {
      packed->AddTo(mDocument);
    }
    return packed != nullptr;
  }

  char const* SkipColon(SK_JsonText const& key) const {
    char const* const colon = SkipJsonBlanks(key.end + 1, mEnd);
    if (!PeekIs(colon, mEnd, ':')) {
      std::string text;
      AppendDecoded(key, text);
      ThrowMissingColon(colon, mBase, text);
    }
    return SkipJsonBlanks(colon + 1, mEnd);
  }

  /// From behind an item to the next one, or behind the container.
  char const* SkipSeparator(char const* p, char closing, SK_JsonName const& name, bool& isClosed) const {
    p = SkipJsonBlanks(p, mEnd);
    if (PeekIs(p, mEnd, ',')) {
      return SkipJsonBlanks(p + 1, mEnd);
    }
    if (!PeekIs(p, mEnd, closing)) {
      ThrowMissingCommaOrBracket(p, mBase, name);
    }
    isClosed = true;
    return p + 1;
  }

  /// depth  of the container that holds the value
  char const* ScanValue(char const* p, SK_JsonName const& name, unsigned depth) {
    switch (p < mEnd ? *p : '\0') {
      case '"':
        return ScanText(p, name);
      case '[':
        return ScanArray(p, name, depth + 1);
      case '{':
        return ScanObject(p, name, depth + 1);
      case 'f':
      case 't':
        mDocument.Bool(ScanBool(p, mEnd, mBase, name));
        return p;
      default:
        mDocument.Double(ScanJsonNumber(p, mEnd, mBase, name));
        return p;
    }
  }

  char const* ScanText(char const* p, SK_JsonName const& name) {
    SK_JsonText text;
    if (!FindJsonText(p, mEnd, text)) {
      ThrowMissingValueQuotes(text.end, mBase, name.GetText());
    }
    AddText(text);
    return text.end + 1;
  }

  void AddKey(SK_JsonText const& key) {
    if (char const* const shared = FindSharedKey(key); shared != nullptr) {
      mDocument.Key(shared, CheckSize(key.GetSize()), false);
      return;
    }
    AddText(key);
  }

  void AddText(SK_JsonText const& text) {
    if (!text.hasEscapes && text.GetSize() <= kLongestInlineText) {
      AddInlineText(mDocument, text.begin, static_cast<SizeType>(text.GetSize()),
                    std::make_integer_sequence<SizeType, kLongestInlineText + 1>());
      return;
    }
    if (!text.hasEscapes) {
      mDocument.String(text.begin, CheckSize(text.GetSize()), true);
      return;
    }
    std::string decoded;
    AppendDecoded(text, decoded);
    mDocument.String(decoded.data(), CheckSize(decoded.size()), true);
  }

  char const* mEnd;
  char const* mBase;
  JDocument& mDocument;
  SK_DataTypePacker* mPacker;
};

/// Moves what `scan` builds to `out`; after an error `out` is as before.
template <typename Scan>
char const* Build(JValue& out, JAllocator& allocator, Scan scan) {
  JDocument document(&allocator);
  char const* next = nullptr;
  auto generator = [&](JDocument& handler) {
    next = scan(handler);
    return true;
  };
  document.Populate(generator);
  out = static_cast<JValue&>(document);
  return next;
}

}  // namespace

char const* SK_TdjsonParserUtils::SkipSpecialCharacters(char const* p, char const* end) {
  return p == nullptr ? p : SkipJsonBlanks(p, end);
}

long long SK_TdjsonParserUtils::GetOffset(char const* p, char const* base) {
  return base == nullptr ? -1 : p - base;
}

char const* SK_TdjsonParserUtils::ConsumeColon(char const* p, char const* end, char const* base,
                                               std::string const& key) {
  char const* const colon = SkipJsonBlanks(p, end);
  if (!PeekIs(colon, end, ':')) {
    ThrowMissingColon(colon, base, key);
  }
  return SkipJsonBlanks(colon + 1, end);
}

char const* SK_TdjsonParserUtils::ParseJsonString(char const* p, char const* end, char const* base, std::string& out,
                                                  bool isKey, char const* name) {
  SK_JsonText text;
  if (!FindJsonText(p, end, text)) {
    if (isKey) {
      ThrowMissingKeyQuotes(text.end, base);
    }
    ThrowMissingValueQuotes(text.end, base, name == nullptr ? std::string() : name);
  }
  out.clear();
  AppendDecoded(text, out);
  return text.end + 1;
}

bool SK_TdjsonParserUtils::ParseJsonBool(char const*& p, char const* end, char const* base, std::string const& name) {
  return ScanBool(p, end, base, SK_JsonName(name));
}

char const* SK_TdjsonParserUtils::ParseJsonNumber(char const*& p, char const* end, char const* base,
                                                  std::string const& name, double& out) {
  out = ScanJsonNumber(p, end, base, SK_JsonName(name));
  return p;
}

char const* SK_TdjsonParserUtils::ParseJsonObject(char const* p, char const* end, char const* base,
                                                  std::string const& name, JValue& out, JAllocator& allocator,
                                                  unsigned short depth) {
  return Build(out, allocator, [&](JDocument& document) {
    return ContainerScanner(end, base, document).ScanObject(p, SK_JsonName(name), depth);
  });
}

char const* SK_TdjsonParserUtils::ParseJsonArray(char const* p, char const* end, char const* base,
                                                 std::string const& name, JValue& out, JAllocator& allocator,
                                                 unsigned short depth) {
  return Build(out, allocator, [&](JDocument& document) {
    return ContainerScanner(end, base, document).ScanArray(p, SK_JsonName(name), depth);
  });
}

char const* SK_TdjsonParserUtils::ParseOutline(char const* p, char const* end, char const* base,
                                               std::string const& name, JValue& out, JAllocator& allocator) {
  SK_DataTypePacker packer(allocator);
  return Build(out, allocator, [&](JDocument& document) {
    return ContainerScanner(end, base, document, &packer).ScanArray(p, SK_JsonName(name), 0);
  });
}

}  // namespace SK_NAMESPACE_INT
