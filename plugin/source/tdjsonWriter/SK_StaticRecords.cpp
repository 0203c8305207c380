#include "SK_StaticRecords.h"

#include <cstddef>
#include <cstring>

#include "SK_NumberAnalysis.h"

namespace SK_PLUGIN {

namespace {

using SK_NAMESPACE_INT::CountLengthBytes;
using SK_NAMESPACE_INT::PutLength;
using SK_NAMESPACE_INT::TakeLength;

// A record: its kind, match name, display name, and as its value the bytes of a double, a text, or one byte.

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
    case ns_sensor::kNumberValue:
      return sizeof record.number;
    case ns_sensor::kStringValue:
      return CountTextBytes(record.text);
    default:
      return 1;
  }
}

}  // namespace

void SK_StaticRecords::AddNumber(std::string_view matchName, std::string_view displayName, double value) {
  Record record;
  record.kind = ns_sensor::kNumberValue;
  record.matchName = matchName;
  record.displayName = displayName;
  record.number = value;
  Add(record);
}

void SK_StaticRecords::AddString(std::string_view matchName, std::string_view displayName, std::string_view value) {
  std::string escaped;
  Record record;
  record.kind = ns_sensor::kStringValue;
  record.matchName = matchName;
  record.displayName = displayName;
  record.text = EscapeInto(value, escaped);
  Add(record);
}

void SK_StaticRecords::AddBool(std::string_view matchName, std::string_view displayName, bool value) {
  Record record;
  record.kind = ns_sensor::kBooleanValue;
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
  *to++ = static_cast<char>(record.kind);
  to = PutText(to, record.matchName);
  to = PutText(to, displayName);
  switch (record.kind) {
    case ns_sensor::kNumberValue:
      std::memcpy(to, &record.number, sizeof record.number);
      break;
    case ns_sensor::kStringValue:
      PutText(to, record.text);
      break;
    default:
      *to = record.flag ? 1 : 0;
  }
}

SK_StaticRecords::Record SK_StaticRecords::Reader::Next() {
  char const* const begin = mRecords->mPieces.At(mPlace);
  char const* from = begin;
  Record record;
  record.kind = static_cast<ns_sensor::eDataValueType>(*from++);
  record.matchName = TakeText(from);
  record.displayName = TakeText(from);
  switch (record.kind) {
    case ns_sensor::kNumberValue:
      std::memcpy(&record.number, from, sizeof record.number);
      from += sizeof record.number;
      break;
    case ns_sensor::kStringValue:
      record.text = TakeText(from);
      break;
    default:
      record.flag = *from++ != 0;
  }
  mPlace.offset += static_cast<std::size_t>(from - begin);
  return record;
}

}  // namespace SK_PLUGIN
