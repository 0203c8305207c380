// Manifests of one module or of two, which a zero byte parts. Whatever they say, no code of a module is looked for, and
// what the registry and the manager know afterwards is what a plain reading of the same text gives.
#include <link.h>
#include <sys/utsname.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "FuzzCheck.h"
#include "FuzzFolder.h"
#include "SK_ConverterHandler.h"
#include "SK_ConverterRegistry.h"
#include "SK_Error.h"
#include "SK_Module.h"
#include "SK_OSUtils.h"
#include "SK_PluginManager.h"
#include "SK_RapidJson.h"

namespace {

namespace fs = std::filesystem;
using ns_sensor::SK_ConverterRegistry;
using senmark_fuzz::FuzzFolder;
using senmark_fuzz::Require;
using SK_NAMESPACE_INT::gLastException;
using SK_PLUGIN::SK_ConverterHandler;
using SK_PLUGIN::SK_PluginManager;
using Value = rapidjson::Value;

constexpr std::size_t kLargestInput = 64 * 1024;
constexpr int kUnreadable = 1503;
constexpr int kSchema = 1504;

/// One converter as a plain reading of a manifest gives it.
struct Converter {
  std::string module;
  std::string uid;
  std::string name;
  double version = 0;
  bool force = false;
  std::size_t signatures = 0;
};
using Converters = std::map<std::string, Converter>;

std::string Text(Value const& value) {
  return {value.GetString(), value.GetStringLength()};
}

bool HasText(Value const& object, char const* key) {
  return object.IsObject() && object.HasMember(key) && object[key].IsString();
}

bool HasArray(Value const& object, char const* key) {
  return object.HasMember(key) && object[key].IsArray();
}

/// Empty for a fault.
std::optional<std::string> NameOf(Value const& names) {
  std::string american;
  for (Value const& entry : names.GetArray()) {
    if (!HasText(entry, "localeID") || !HasText(entry, "value")) {
      return std::nullopt;
    }
    if (Text(entry["localeID"]) == "en_US") {
      return Text(entry["value"]);
    }
    if (american.empty() && Text(entry["localeID"]).rfind("en_US", 0) == 0) {
      american = Text(entry["value"]);
    }
  }
  return american;
}

bool IsSignature(Value const& entry) {
  return HasText(entry, "byte_seq") && entry.HasMember("length") && entry["length"].IsInt() &&
         entry.HasMember("offset") && entry["offset"].IsInt64();
}

/// 0, or the code of the fault. The extensions of the converter go to `extensions`, in lower case.
int Read(Value const& element, Converter& converter, std::map<std::string, int>& extensions) {
  if (!HasText(element, "identifier")) {
    return kSchema;
  }
  converter.uid = Text(element["identifier"]);
  if (HasArray(element, "name")) {
    std::optional<std::string> const name = NameOf(element["name"]);
    if (!name) {
      return kSchema;
    }
    converter.name = *name;
  }
  if (!element.HasMember("version") || !element["version"].IsNumber()) {
    return kSchema;
  }
  converter.version = element["version"].GetDouble();
  converter.force = element.HasMember("force_converter") && element["force_converter"].IsTrue();
  if (HasArray(element, "check_format")) {
    for (Value const& entry : element["check_format"].GetArray()) {
      if (!IsSignature(entry)) {
        return kSchema;
      }
      ++converter.signatures;
    }
  }
  if (HasArray(element, "extensions")) {
    for (Value const& entry : element["extensions"].GetArray()) {
      if (!entry.IsString()) {
        return kSchema;
      }
      std::string extension = Text(entry);
      for (char& c : extension) {
        c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
      }
      extensions[extension] = 0;
    }
  }
  return converter.uid.empty() || extensions.empty() ? kUnreadable : 0;
}

/// Who keeps an extension that two converters claim.
void Claim(Converter& stored, Converter const& added) {
  if (stored.uid == added.uid && !stored.force && (added.force || added.version > stored.version)) {
    stored = added;
  }
}

/// 0, or the code of the fault that ends the reading.
int Read(std::string const& manifest, std::string const& module, Converters& converters) {
  rapidjson::Document document;
  if (document.Parse<rapidjson::kParseIterativeFlag>(manifest.c_str()).HasParseError()) {
    return kUnreadable;
  }
  if (!document.IsObject() || !HasArray(document, "converter")) {
    return kSchema;
  }
  for (Value const& element : document["converter"].GetArray()) {
    Converter converter;
    converter.module = module;
    std::map<std::string, int> extensions;
    if (int const code = Read(element, converter, extensions)) {
      return code;
    }
    for (auto const& [extension, unused] : extensions) {
      Claim(converters.emplace(extension, converter).first->second, converter);
    }
  }
  return 0;
}

/// The folder of a module, with just so much code that it counts as one.
std::string MakeModule(FuzzFolder const& folder, std::string const& name) {
  utsname system;
  Require(uname(&system) == 0);
  std::string const path = folder.Path("modules/" + name + ".tdx");
  fs::create_directories(path + "/Contents/Resources");
  fs::create_directory(path + "/Contents/" + system.machine + "-linux");
  ElfW(Ehdr) head;
  std::memcpy(&head, SK_OSUtils::GetImage(reinterpret_cast<void const*>(&MakeModule)), sizeof head);
  head.e_type = ET_DYN;
  folder.Write("modules/" + name + ".tdx/Contents/" + system.machine + "-linux/" + name + ".so",
               reinterpret_cast<std::uint8_t const*>(&head), sizeof head);
  return path;
}

void WriteManifest(FuzzFolder const& folder, std::string const& name, std::string const& manifest) {
  folder.Write("modules/" + name + ".tdx/Contents/Resources/SKPLUGINUIDS.txt",
               reinterpret_cast<std::uint8_t const*>(manifest.data()), manifest.size());
}

void RequireSame(std::string const& extension, Converter const& expected) {
  std::shared_ptr<SK_ConverterHandler> const handler = SK_PluginManager::getConverterHandler(extension);
  Require(handler != nullptr && SK_ConverterRegistry::getInstance()->getConverterHandlerInfo(extension) != nullptr);
  Require(handler->getUID() == expected.uid && handler->getName() == expected.name);
  Require(std::isfinite(handler->getVersion()) && handler->getVersion() == expected.version);
  Require(handler->isForceConverter() == expected.force && handler->getCheckFormatSize() == expected.signatures);
  Require(handler->getModule()->getPath() == expected.module);
  auto const& names = *SK_ConverterRegistry::getInstance()->getConvertersInfo();
  auto const name = names.find(extension);
  Require(name != names.end() && name->second == expected.name);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  static FuzzFolder folder;
  static std::string const first = MakeModule(folder, "First");
  static std::string const second = MakeModule(folder, "Second");
  folder.StartInput();
  if (size > kLargestInput) {
    return 0;
  }
  std::string const input(data, data + size);
  std::size_t const end = std::min(input.find('\0'), size);
  std::map<std::string, std::string> manifests;
  manifests[first] = input.substr(0, end);
  WriteManifest(folder, "First", manifests[first]);
  folder.Remove("modules/Second.tdx/Contents/Resources/SKPLUGINUIDS.txt");
  if (end != size) {
    manifests[second] = input.substr(end + 1);
    WriteManifest(folder, "Second", manifests[second]);
  }

  // The library takes the modules in the order of the folder, and the first fault ends the search.
  int code = 0;
  Converters expected;
  for (fs::directory_entry const& module : fs::directory_iterator(folder.Path("modules"))) {
    auto const manifest = manifests.find(module.path().string());
    if (code == 0 && manifest != manifests.end()) {
      code = Read(manifest->second, manifest->first, expected);
    }
  }

  gLastException = ns_sensor::SK_Exception();
  SK_PluginManager::initialize(folder.Path("modules"), "");
  Require(gLastException.GetErrorCode() == code);
  for (auto const& [extension, converter] : expected) {
    RequireSame(extension, converter);
  }
  Require(SK_ConverterRegistry::getInstance()->getConvertersInfo()->size() == expected.size());
  SK_PluginManager::terminate();
  SK_ConverterRegistry::terminate();
  folder.RequireNothingLeft({"modules"});
  return 0;
}
