#include "LibraryModules.h"

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <system_error>

namespace senmark_tool {

namespace {

namespace fs = std::filesystem;

constexpr char kManifestFile[] = "SKPLUGINUIDS.txt";

using Writer = rapidjson::Writer<rapidjson::StringBuffer>;

void WriteText(Writer& json, char const* key, std::string const& text) {
  json.Key(key);
  json.String(text.data(), static_cast<rapidjson::SizeType>(text.size()));
}

void WriteConverter(Writer& json, FoundConverter const& converter) {
  ManifestConverter const& manifest = converter.manifest;
  json.StartObject();
  WriteText(json, "identifier", manifest.uid);
  json.Key("name");
  json.StartArray();
  json.StartObject();
  WriteText(json, "localeID", "en_US");
  WriteText(json, "value", manifest.name);
  json.EndObject();
  json.EndArray();
  json.Key("version");
  json.Double(manifest.version);
  json.Key("force_converter");
  json.Bool(manifest.isForced);
  json.Key("check_format");
  json.StartArray();
  for (FileSignature const& signature : manifest.signatures) {
    json.StartObject();
    WriteText(json, "byte_seq", signature.bytes);
    json.Key("length");
    json.Int(signature.length);
    json.Key("offset");
    json.Int64(signature.offset);
    json.EndObject();
  }
  json.EndArray();
  json.Key("extensions");
  json.StartArray();
  for (Claim const& claim : converter.claims) {
    if (claim.IsServed()) {
      json.String(claim.extension.data(), static_cast<rapidjson::SizeType>(claim.extension.size()));
    }
  }
  json.EndArray();
  json.EndObject();
}

bool IsServed(FoundConverter const& converter) {
  for (Claim const& claim : converter.claims) {
    if (claim.IsServed()) {
      return true;
    }
  }
  return false;
}

/// A manifest of what the module serves, and of nothing else.
std::string ServedManifest(FoundModule const& module) {
  rapidjson::StringBuffer text;
  Writer json(text);
  json.StartObject();
  json.Key("converter");
  json.StartArray();
  for (FoundConverter const& converter : module.converters) {
    if (IsServed(converter)) {
      WriteConverter(json, converter);
    }
  }
  json.EndArray();
  json.EndObject();
  return std::string(text.GetString(), text.GetSize());
}

/// Links to the children of `from` in `to`, which is made, except for the one of this name.
void LinkChildren(fs::path const& from, fs::path const& to, char const* except) {
  fs::create_directory(to);
  for (fs::directory_entry const& child : fs::directory_iterator(from)) {
    if (child.path().filename() != except) {
      fs::create_symlink(child.path(), to / child.path().filename());
    }
  }
}

void MakeServedPart(FoundModule const& module, fs::path const& folder) {
  fs::path const original = module.folder.path;
  LinkChildren(original, folder, "Contents");
  LinkChildren(original / "Contents", folder / "Contents", "Resources");
  fs::path const resources = fs::path("Contents") / "Resources";
  LinkChildren(original / resources, folder / resources, kManifestFile);
  fs::path const manifest = folder / resources / kManifestFile;
  std::ofstream file(manifest, std::ios::binary);
  file << ServedManifest(module);
  file.close();
  if (!file) {
    throw fs::filesystem_error("cannot write", manifest, std::error_code(errno, std::generic_category()));
  }
}

}  // namespace

LibraryModules::LibraryModules(ModuleDiscovery const& discovery) {
  mFolder = discovery.OnlyFolder();
  if (discovery.Source() != ModuleDiscovery::eSource::kSeveralFolders) {
    return;
  }
  mScratch = std::make_unique<ScratchFolder>();
  mFolder = mScratch->Path("modules");
  fs::create_directory(mFolder);
  for (FoundFolder const& folder : discovery.Folders()) {
    for (FoundModule const& module : folder.modules) {
      fs::path const place = fs::path(mFolder) / module.folder.name;
      if (module.IsServed() && module.IsServedWhole()) {
        fs::create_symlink(module.folder.path, place);
      } else if (module.IsServed()) {
        MakeServedPart(module, place);
      }
    }
  }
}

}  // namespace senmark_tool
