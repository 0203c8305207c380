#include <string>

#include "Command.h"
#include "JsonWriter.h"
#include "ModuleDiscovery.h"
#include "NodeText.h"
#include "Utf8.h"

namespace senmark_tool {

namespace {

void PrintConverter(std::ostream& out, FoundConverter const& converter) {
  ManifestConverter const& manifest = converter.manifest;
  out << "    converter " << Printable(manifest.uid);
  if (!manifest.name.empty()) {
    out << " \"" << Printable(manifest.name) << '"';
  }
  out << ", version " << NumberText(manifest.version) << (manifest.isForced ? ", forced" : "") << ", takes files ";
  if (manifest.signatures.empty()) {
    out << "that its code checks";
  }
  for (FileSignature const& signature : manifest.signatures) {
    out << (&signature == manifest.signatures.data() ? "with " : " and ") << Printable(signature.Text());
  }
  out << '\n';
  for (Claim const& claim : converter.claims) {
    out << "      ." << Printable(claim.extension);
    out << (claim.IsServed() ? "" : ": not served: " + Printable(claim.reason)) << '\n';
  }
}

void PrintModule(std::ostream& out, FoundModule const& module) {
  out << "  " << Printable(module.folder.name);
  if (!module.problem.empty()) {
    out << ": not used: " << Printable(module.problem) << '\n';
    return;
  }
  out << (module.IsServed() ? "" : ": not used: it serves no extension");
  if (!module.folder.identifier.empty()) {
    out << ", identifier " << Printable(module.folder.identifier);
  }
  out << '\n';
  for (FoundConverter const& converter : module.converters) {
    PrintConverter(out, converter);
  }
  if (!module.fault.empty()) {
    out << "    faulty from there on: " << Printable(module.fault) << '\n';
  }
}

void PrintFolder(std::ostream& out, FoundFolder const& folder) {
  out << Printable(folder.path) << " (" << OriginText(folder.origin) << ')';
  if (!folder.problem.empty()) {
    out << ": " << Printable(folder.problem);
  } else if (folder.modules.empty()) {
    out << ": it is empty";
  }
  out << '\n';
  for (FoundModule const& module : folder.modules) {
    PrintModule(out, module);
  }
}

/// A text, or null if it is empty.
void WriteOptional(JsonWriter& json, char const* key, std::string const& text) {
  json.Key(key);
  if (text.empty()) {
    json.Null();
  } else {
    json.String(text);
  }
}

void WriteConverter(JsonWriter& json, FoundConverter const& converter) {
  ManifestConverter const& manifest = converter.manifest;
  json.BeginObject();
  json.Key("uid");
  json.String(manifest.uid);
  json.Key("name");
  json.String(manifest.name);
  json.Key("version");
  json.Number(manifest.version);
  json.Key("forced");
  json.Boolean(manifest.isForced);
  json.Key("signatures");
  json.BeginArray();
  for (FileSignature const& signature : manifest.signatures) {
    json.BeginObject();
    json.Key("bytes");
    json.String(signature.bytes);
    json.Key("length");
    json.Integer(signature.length);
    json.Key("offset");
    json.Integer(signature.offset);
    json.EndObject();
  }
  json.EndArray();
  json.Key("extensions");
  json.BeginArray();
  for (Claim const& claim : converter.claims) {
    json.BeginObject();
    json.Key("extension");
    json.String(claim.extension);
    json.Key("served");
    json.Boolean(claim.IsServed());
    WriteOptional(json, "reason", claim.reason);
    json.EndObject();
  }
  json.EndArray();
  json.EndObject();
}

void WriteModule(JsonWriter& json, FoundModule const& module) {
  json.BeginObject();
  json.Key("name");
  json.String(module.folder.name);
  json.Key("path");
  json.String(module.folder.path);
  json.Key("identifier");
  json.String(module.folder.identifier);
  json.Key("used");
  json.Boolean(module.IsServed());
  WriteOptional(json, "problem", module.problem);
  WriteOptional(json, "fault", module.fault);
  json.Key("converters");
  json.BeginArray();
  for (FoundConverter const& converter : module.converters) {
    WriteConverter(json, converter);
  }
  json.EndArray();
  json.EndObject();
}

void WriteFolder(JsonWriter& json, FoundFolder const& folder) {
  json.BeginObject();
  json.Key("path");
  json.String(folder.path);
  json.Key("origin");
  json.String(OriginText(folder.origin));
  WriteOptional(json, "problem", folder.problem);
  json.Key("modules");
  json.BeginArray(JsonWriter::eLayout::kLines);
  for (FoundModule const& module : folder.modules) {
    WriteModule(json, module);
  }
  json.EndArray();
  json.EndObject();
}

}  // namespace

int RunModules(senmark::Senmark const& manager, Request const& request, std::ostream& out) {
  if (!request.file.empty()) {
    return RunChoice(manager, request, out);
  }
  std::vector<FoundFolder> const& folders = request.modules->Folders();
  if (!request.asJson) {
    for (FoundFolder const& folder : folders) {
      PrintFolder(out, folder);
    }
    return kFine;
  }
  JsonWriter json(out);
  json.BeginArray(JsonWriter::eLayout::kLines);
  for (FoundFolder const& folder : folders) {
    WriteFolder(json, folder);
  }
  json.CloseAll();
  return kFine;
}

}  // namespace senmark_tool
