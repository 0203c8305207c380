#include "ResourceParser.h"

#include <utility>

#include "SK_ConverterHandler.h"
#include "SK_Error.h"
#include "SK_Localizer.h"
#include "SK_PluginManager.h"
#include "SK_Utils.h"

namespace SK_PLUGIN {

using SK_NAMESPACE_INT::JValue;
using SK_NAMESPACE_INT::Quoted;
using SK_NAMESPACE_INT::ThrowError;

namespace {

[[noreturn]] void ThrowSchemaViolation(char const* key) {
  ThrowError({ns_sensor::kManifestSchema, SK_Message::kManifestSchemaViolation, -1, -1}, Quoted(key));
}

/// Null if there is no such member, or `object` is no object.
JValue const* Find(JValue const& object, char const* key) {
  if (!object.IsObject()) {
    return nullptr;
  }
  auto const found = object.FindMember(key);
  return found == object.MemberEnd() ? nullptr : &found->value;
}

/// Null unless it is an array.
JValue const* FindArray(JValue const& object, char const* key) {
  JValue const* const value = Find(object, key);
  return value != nullptr && value->IsArray() ? value : nullptr;
}

JValue const& Required(JValue const& object, char const* key, bool (JValue::*isRight)() const) {
  JValue const* const value = Find(object, key);
  if (value == nullptr || !(value->*isRight)()) {
    ThrowSchemaViolation(key);
  }
  return *value;
}

std::string Text(JValue const& value) {
  return std::string(value.GetString(), value.GetStringLength());
}

std::string RequiredText(JValue const& object, char const* key) {
  return Text(Required(object, key, &JValue::IsString));
}

bool IsAmericanEnglish(std::string const& locale) {
  return locale.compare(0, 5, ns_sensor::SKEnglishUSCode) == 0;
}

}  // namespace

void ResourceParser::initialize() {}

void ResourceParser::terminate() {}

ResourceParser::ResourceParser(std::shared_ptr<SK_Module> module) : mModule(std::move(module)) {}

ResourceParser::~ResourceParser() = default;

void ResourceParser::parseConverterArray(JValue const& converters) {
  if (!converters.IsArray()) {
    ThrowError({ns_sensor::kManifestSchema, SK_Message::kInvalidManifestPropertyType, -1, -1}, Quoted("converter"),
               Quoted("JSON Array"));
  }
  std::string const locale = SK_NAMESPACE_INT::SK_Localizer::GetInstance()->GetLocaleId();
  for (JValue const& converter : converters.GetArray()) {
    ParseConverter(converter, locale);
    addHandler();
  }
}

void ResourceParser::addHandler() {
  if (!mHandler || mHandler->getUID().empty() || mExtensions.empty()) {
    ThrowError({ns_sensor::kManifestUnreadable, SK_Message::kMandatoryPropertyNotPresent, -1, -1});
  }
  for (std::string const& extension : mExtensions) {
    SK_PluginManager::addConverterHandler(extension, mHandler);
  }
  clear();
}

void ResourceParser::ParseConverter(JValue const& converter, std::string const& locale) {
  mHandler = std::make_shared<SK_ConverterHandler>(RequiredText(converter, "identifier"), false, mModule);
  if (JValue const* const names = FindArray(converter, "name")) {
    ParseNames(*names, locale);
  }
  mHandler->setVersion(Required(converter, "version", &JValue::IsNumber).GetDouble());
  JValue const* const force = Find(converter, "force_converter");
  if (force != nullptr && force->IsBool()) {
    mHandler->setForceConverter(force->GetBool());
  }
  if (JValue const* const checkFormats = FindArray(converter, "check_format")) {
    ParseCheckFormats(*checkFormats);
  }
  if (JValue const* const extensions = FindArray(converter, "extensions")) {
    ParseExtensions(*extensions);
  }
}

void ResourceParser::ParseNames(JValue const& names, std::string const& locale) {
  for (JValue const& name : names.GetArray()) {
    std::string const id = RequiredText(name, "localeID");
    std::string text = RequiredText(name, "value");
    if (id == locale) {
      mHandler->setName(std::move(text));
      return;
    }
    if (mFallbackName.empty() && IsAmericanEnglish(id)) {
      mFallbackName = std::move(text);
    }
  }
  mHandler->setName(mFallbackName);
}

void ResourceParser::ParseCheckFormats(JValue const& checkFormats) {
  for (JValue const& checkFormat : checkFormats.GetArray()) {
    mCheckFormat.mByteSequence = RequiredText(checkFormat, "byte_seq");
    mCheckFormat.mLength = Required(checkFormat, "length", &JValue::IsInt).GetInt();
    mCheckFormat.mOffset = Required(checkFormat, "offset", &JValue::IsInt64).GetInt64();
    mHandler->addCheckFormat(mCheckFormat);
    mCheckFormat.clear();
  }
}

void ResourceParser::ParseExtensions(JValue const& extensions) {
  for (JValue const& element : extensions.GetArray()) {
    if (!element.IsString()) {
      ThrowSchemaViolation("extensions");
    }
    std::string extension = Text(element);
    SK_NAMESPACE_INT::SK_Utils::MakeLowerCase(extension);
    mExtensions.insert(std::move(extension));
  }
}

void ResourceParser::clear() {
  // The module stays: the next converter is one of it, too.
  mHandler.reset();
  mExtensions.clear();
  mCheckFormat.clear();
  mFallbackName.clear();
}

}  // namespace SK_PLUGIN
