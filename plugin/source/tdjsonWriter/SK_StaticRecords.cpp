#include "SK_StaticRecords.h"

#include <cstddef>
#include <cstring>

#include "SK_NumberAnalysis.h"

namespace SK_PLUGIN {

namespace {

using SK_NAMESPACE_INT::CountLengthBytes;
using SK_NAMESPACE_INT::PutLength;
using SK_NAMESPACE_INT::TakeLength;

// A record: its kind, match name, display name, and as its value the bytes of a double, a text, one byte, or nothing
// for a group. Of the end of a group just the kind.

std::size_t CountTextBytes(std::string_view text) {
  return CountLengthBytes(text.size()) + text.size();
}

char* PutText(char* to, std::string_view text) {
  to = PutLength(to, text.size());
  if (!text.empty()) {
    std::memcpy(to, text.data(), text.size());
  }
  return to + text.size();
}

std::string_view TakeText(char const*& from) {
  std::size_t const length = TakeLength(from);
  std::string_view const text(from, length);
  from += length;
  return text;
}

std::size_t CountValueBytes(SK_StaticRecords::Record const& record) {
  switch (record.kind) {
    case SK_StaticRecords::kNumber:
      return sizeof record.number;
    case SK_StaticRecords::kString:
      return CountTextBytes(record.text);
    default:
      return 1;
  }
}

char* PutHead(char* to, SK_StaticRecords::eKind kind, std::string_view matchName, std::string_view displayName) {
  *to++ = static_cast<char>(kind);
  return PutText(PutText(to, matchName), displayName);
}

constexpr std::size_t kLargestSmallGroup = 4096;

}  // namespace

void SK_StaticRecords::AddNumber(std::string_view matchName, std::string_view displayName, double value) {
  Record record;
  record.kind = kNumber;
  record.matchName = matchName;
  record.displayName = displayName;
  record.number = value;
  Add(record);
}

void SK_StaticRecords::AddString(std::string_view matchName, std::string_view displayName, std::string_view value) {
  std::string escaped;
  Record record;
  record.kind = kString;
  record.matchName = matchName;
  record.displayName = displayName;
  record.text = EscapeInto(value, escaped);
  Add(record);
}

void SK_StaticRecords::AddBool(std::string_view matchName, std::string_view displayName, bool value) {
  Record record;
  record.kind = kBool;
  record.matchName = matchName;
  record.displayName = displayName;
  record.flag = value;
  Add(record);
}

void SK_StaticRecords::Add(Record const& record) {
  std::string escaped;
  std::string_view const displayName = EscapeInto(record.displayName, escaped);
  char* to =
      mPieces.Extend(1 + CountTextBytes(record.matchName) + CountTextBytes(displayName) + CountValueBytes(record));
  to = PutHead(to, record.kind, record.matchName, displayName);
  switch (record.kind) {
    case kNumber:
      std::memcpy(to, &record.number, sizeof record.number);
      break;
    case kString:
      PutText(to, record.text);
      break;
    default:
      *to = record.flag ? 1 : 0;
  }
}

bool SK_StaticRecords::AddSmallGroup(std::string_view matchName, std::string_view displayName,
                                     SK_StaticRecords const& children) {
  std::size_t const size = 1 + CountTextBytes(matchName) + CountTextBytes(displayName) + children.mPieces.GetSize() + 1;
  if (size > kLargestSmallGroup) {
    return false;
  }
  char* const to = mPieces.Extend(size);
  *children.mPieces.CopyTo(PutHead(to, kGroup, matchName, displayName)) = static_cast<char>(kEndOfGroup);
  return true;
}

SK_StaticRecords::Record SK_StaticRecords::Reader::Next() {
  char const* const begin = mRecords->mPieces.At(mPlace);
  char const* from = begin;
  Record record;
  record.kind = static_cast<eKind>(*from++);
  if (record.kind != kEndOfGroup) {
    record.matchName = TakeText(from);
    record.displayName = TakeText(from);
  }
  switch (record.kind) {
    case kNumber:
      std::memcpy(&record.number, from, sizeof record.number);
      from += sizeof record.number;
      break;
    case kString:
      record.text = TakeText(from);
      break;
    case kBool:
      record.flag = *from++ != 0;
      break;
    default:
      break;
  }
  mPlace.offset += static_cast<std::size_t>(from - begin);
  return record;
}

}  // namespace SK_PLUGIN
