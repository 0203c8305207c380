#include "SK_SampleJsonReader.h"

#include <algorithm>

#include "SK_Assert.h"
#include "SK_Error.h"
#include "SK_IntegerOf.h"
#include "SK_NumberText.h"
#include "SK_TdjsonParserUtils.h"
#include "SK_Utils.h"

namespace SK_NAMESPACE_INT {
namespace {

/// Keeps the document of a usual sample out of the heap.
constexpr std::size_t kDocumentBytes = 2048;

[[noreturn]] void ThrowMalformed(char const* literal, std::string const& name) {
  ThrowError({ns_sensor::kMalformedSample, literal, -1, -1}, Quoted(name));
}

/// A kind that no set with samples can have.
[[noreturn]] void StopOnUnknownKind() {
  SK_AssertFailed("false", "ParseDynamicSamples", "source/SK_SampleDataProcessor", 321);
}

JValue const& RequiredMember(JValue const& object, char const* key, std::string const& name) {
  auto const member = object.FindMember(key);
  if (member == object.MemberEnd()) {
    ThrowError({ns_sensor::kMalformedSample, SK_Message::kMissingRequiredPropertyAtPath, -1, -1}, Quoted(key),
               Quoted(name));
  }
  return member->value;
}

std::string_view TextOf(JValue const& string) {
  return {string.GetString(), string.GetStringLength()};
}

/// Whether the byte took an escape sequence of two bytes in the file.
bool WasEscaped(char c) {
  return c == '"' || c == '\b' || c == '\f' || c == '\n' || c == '\r' || c == '\t' || c == '\\';
}

}  // namespace

ns_sensor::eDataValueType ValueTypeOf(SK_DynamicSampleInfo const& info) {
  switch (info.mValueKind) {
    case kNumberStringSamples:
      return ns_sensor::kNumberValue;
    case kPaddedStringSamples:
      return ns_sensor::kStringValue;
    case kNumberArraySamples:
      return ns_sensor::kNumberArrayValue;
    default:
      StopOnUnknownKind();
  }
}

std::uint64_t NumbersPerSample(SK_DynamicSampleInfo const& info) {
  switch (info.mValueKind) {
    case kNumberArraySamples:
      return info.mArraySize;
    case kNumberStringSamples:
      return 1;
    default:
      return 0;
  }
}

SK_SampleJsonReader::SK_SampleJsonReader(SK_DynamicSampleInfo const& info, SK_TimeFormat const& timeFormat,
                                         eTDJSONVersion version)
    : mInfo(info), mTimeFormat(timeFormat), mVersion(version) {}

char const* SK_SampleJsonReader::Read(char const* p, char const* end, std::string const& name,
                                      SK_SampleBlock& block) const {
  alignas(std::max_align_t) char memory[kDocumentBytes];
  JAllocator allocator(memory, sizeof(memory));
  JValue sample;
  char const* const next = SK_TdjsonParserUtils::ParseJsonObject(p, end, nullptr, name, sample, allocator, 0);
  SK_Time const time = GetTime(sample, name);
  JValue const& value = RequiredMember(sample, "value", name);
  switch (mInfo.mValueKind) {
    case kNumberStringSamples:
      *block.NextNumbers() = GetNumberStringValue(value, name);
      break;
    case kNumberArraySamples:
      GetNumberArrayValue(value, name, block.NextNumbers());
      break;
    case kPaddedStringSamples:
      block.AddText(time, GetpaddedStringValue(value, name));
      return next;
    default:
      StopOnUnknownKind();
  }
  *block.NextTime() = time;
  block.Advance(1);
  return next;
}

SK_Time SK_SampleJsonReader::GetTime(JValue const& sample, std::string const& name) const {
  JValue const& time = RequiredMember(sample, "time", name);
  if (!time.IsString() || time.GetStringLength() != mTimeFormat.GetTimeStrLength()) {
    ThrowMalformed(SK_Message::kInvalidSampleTime, name);
  }
  SK_Time result;
  SK_Utils::ConvertTimeStrToRelativeSKTime(TextOf(time), result, mTimeFormat);
  return result;
}

double SK_SampleJsonReader::GetNumberStringValue(JValue const& value, std::string const& name) const {
  // The quotes count in the width.
  if (!value.IsString() || value.GetStringLength() + std::uint64_t{2} != mInfo.mNumberLength) {
    ThrowMalformed(SK_Message::kInvalidSampleValue, name);
  }
  return SK_NumberText::ToDouble(std::string(TextOf(value)));
}

void SK_SampleJsonReader::GetNumberArrayValue(JValue const& value, std::string const& name, double* out) const {
  if (!value.IsArray()) {
    ThrowMalformed(SK_Message::kInvalidSampleValue, name);
  }
  if (value.Size() != mInfo.mArraySize) {
    ThrowMalformed(SK_Message::kInvalidNumberArrayInvalidArrayCount, name);
  }
  for (JValue const& element : value.GetArray()) {
    *out++ = GetNumberStringValue(element, name);
  }
}

std::string_view SK_SampleJsonReader::GetpaddedStringValue(JValue const& value, std::string const& name) const {
  if (!value.IsObject()) {
    ThrowMalformed(SK_Message::kInvalidSampleValue, name);
  }
  auto const string = value.FindMember("str");
  if (string == value.MemberEnd() || !string->value.IsString()) {
    ThrowMalformed(SK_Message::kInvalidSampleValue, name);
  }
  std::uint64_t length = GetPaddedLength(value, name);
  if (length > mInfo.mMaxLength) {
    ThrowError({ns_sensor::kMalformedSample, SK_Message::kInvalidPaddedStringLength, -1, -1});
  }
  // The length counts bytes of the file. With more escapes than that it wraps, and takes the text whole.
  std::string_view const text = TextOf(string->value);
  length -= static_cast<std::uint64_t>(std::count_if(text.begin(), text.end(), WasEscaped));
  return text.substr(0, length);
}

/// A negative length comes out as a huge one.
std::uint64_t SK_SampleJsonReader::GetPaddedLength(JValue const& value, std::string const& name) const {
  auto const length = value.FindMember("length");
  if (length == value.MemberEnd()) {
    ThrowMalformed(SK_Message::kInvalidSampleValue, name);
  }
  if (mVersion != kTdjsonVersion2) {
    if (!length->value.IsNumber()) {
      ThrowMalformed(SK_Message::kInvalidSampleValue, name);
    }
    return CountOf(length->value.GetDouble());
  }
  if (!length->value.IsString() || length->value.GetStringLength() != mInfo.mMaxDigits) {
    ThrowMalformed(SK_Message::kInvalidSampleValue, name);
  }
  return static_cast<std::uint64_t>(std::stoi(std::string(TextOf(length->value))));
}

}  // namespace SK_NAMESPACE_INT
