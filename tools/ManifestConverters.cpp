#include "ManifestConverters.h"

#include <rapidjson/document.h>
#include <rapidjson/error/en.h>

#include <algorithm>
#include <cctype>
#include <stdexcept>

namespace senmark_tool {

namespace {

using JsonValue = rapidjson::Value;

/// The language of the program.
constexpr char kLocale[] = "en_US";

/// The first fault of a manifest.
class Fault : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

std::string Text(JsonValue const& value) {
  return std::string(value.GetString(), value.GetStringLength());
}

/// Null if there is no such member, or `object` is no object.
JsonValue const* Find(JsonValue const& object, char const* key) {
  if (!object.IsObject()) {
    return nullptr;
  }
  auto const found = object.FindMember(key);
  return found == object.MemberEnd() ? nullptr : &found->value;
}

/// An array that may be missing; what is none counts as missing.
JsonValue::ConstArray FindArray(JsonValue const& object, char const* key) {
  static JsonValue const kNone(rapidjson::kArrayType);
  JsonValue const* const value = Find(object, key);
  return value != nullptr && value->IsArray() ? value->GetArray() : kNone.GetArray();
}

JsonValue const& Required(JsonValue const& object, std::string const& place, char const* key,
                          bool (JsonValue::*isRight)() const, char const* kind) {
  JsonValue const* const value = Find(object, key);
  if (value == nullptr) {
    throw Fault(place + ": \"" + key + "\" is missing");
  }
  if (!(value->*isRight)()) {
    throw Fault(place + ": \"" + key + "\" is no " + kind);
  }
  return *value;
}

std::string RequiredText(JsonValue const& object, std::string const& place, char const* key) {
  return Text(Required(object, place, key, &JsonValue::IsString, "text"));
}

std::string Entry(std::string const& place, char const* key, std::size_t number) {
  return place + ", entry " + std::to_string(number) + " of \"" + key + '"';
}

std::string ReadName(JsonValue const& converter, std::string const& place) {
  std::string fallback;
  std::size_t number = 0;
  for (JsonValue const& name : FindArray(converter, "name")) {
    std::string const entry = Entry(place, "name", ++number);
    std::string const locale = RequiredText(name, entry, "localeID");
    std::string text = RequiredText(name, entry, "value");
    if (locale == kLocale) {
      return text;  // entries behind it are not looked at
    }
    if (fallback.empty() && locale.compare(0, sizeof kLocale - 1, kLocale) == 0) {
      fallback = std::move(text);
    }
  }
  return fallback;
}

std::vector<FileSignature> ReadSignatures(JsonValue const& converter, std::string const& place) {
  std::vector<FileSignature> signatures;
  for (JsonValue const& format : FindArray(converter, "check_format")) {
    std::string const entry = Entry(place, "check_format", signatures.size() + 1);
    FileSignature signature;
    signature.bytes = RequiredText(format, entry, "byte_seq");
    signature.length = Required(format, entry, "length", &JsonValue::IsInt, "integer of 32 bits").GetInt();
    signature.offset = Required(format, entry, "offset", &JsonValue::IsInt64, "integer of 64 bits").GetInt64();
    signatures.push_back(std::move(signature));
  }
  return signatures;
}

std::set<std::string> ReadExtensions(JsonValue const& converter, std::string const& place) {
  std::set<std::string> extensions;
  for (JsonValue const& extension : FindArray(converter, "extensions")) {
    if (!extension.IsString()) {
      throw Fault(place + ": an element of \"extensions\" is no text");
    }
    extensions.insert(LowerCase(Text(extension)));
  }
  return extensions;
}

ManifestConverter ReadConverter(JsonValue const& value, std::string const& place) {
  ManifestConverter converter;
  converter.uid = RequiredText(value, place, "identifier");
  converter.name = ReadName(value, place);
  converter.version = Required(value, place, "version", &JsonValue::IsNumber, "number").GetDouble();
  JsonValue const* const force = Find(value, "force_converter");
  converter.isForced = force != nullptr && force->IsBool() && force->GetBool();
  converter.signatures = ReadSignatures(value, place);
  converter.extensions = ReadExtensions(value, place);
  if (converter.uid.empty()) {
    throw Fault(place + ": \"identifier\" is empty");
  }
  if (converter.extensions.empty()) {
    throw Fault(place + ": \"extensions\" gives none");
  }
  return converter;
}

/// Like "line 3, column 7".
std::string Place(std::string const& text, std::size_t offset) {
  std::string const before = text.substr(0, offset);
  auto const line = 1 + std::count(before.begin(), before.end(), '\n');
  std::size_t const lineBegin = before.rfind('\n') == std::string::npos ? 0 : before.rfind('\n') + 1;
  return "line " + std::to_string(line) + ", column " + std::to_string(before.size() - lineBegin + 1);
}

}  // namespace

ManifestConverters ReadManifest(std::string const& text) {
  ManifestConverters converters;
  rapidjson::Document document;
  // Nesting without end must not exhaust the stack. What stands behind a NUL is not read.
  document.Parse<rapidjson::kParseIterativeFlag>(text.c_str());
  if (document.HasParseError()) {
    converters.fault = std::string("the manifest is no JSON: ") +
                       rapidjson::GetParseError_En(document.GetParseError()) + " (" +
                       Place(text, document.GetErrorOffset()) + ')';
    return converters;
  }
  JsonValue const* const list = Find(document, "converter");
  if (list == nullptr || !list->IsArray()) {
    converters.fault = "the manifest has no array \"converter\"";
    return converters;
  }
  try {
    for (JsonValue const& value : list->GetArray()) {
      converters.list.push_back(
          ReadConverter(value, "converter " + std::to_string(converters.list.size() + 1) + " of the manifest"));
    }
  } catch (Fault const& fault) {
    converters.fault = fault.what();
  }
  return converters;
}

std::string LowerCase(std::string text) {
  for (char& c : text) {
    c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  }
  return text;
}

}  // namespace senmark_tool
