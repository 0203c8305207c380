/// The manifest of a module, and everything that is wrong with it.
#pragma once

#include <string>
#include <vector>

#include "ModuleFindings.h"

namespace senmark_tool {

struct PlacedValue;

/// Judges the text of a manifest. What the library refuses is an error, what it takes without a word but can hardly be
/// meant so is a warning.
class ModuleManifest {
 public:
  /// A converter as far as its manifest is understood.
  struct Converter {
    std::string identifier;
    std::vector<std::string> extensions;  ///< in lower case
    bool hasSignature = false;            ///< then its code is not asked whether it takes a file
  };

  /// where  name of the text in findings.
  ModuleManifest(std::string text, std::string where);

  /// Without errors among them, all of `Converters` come to be used.
  ModuleFindings const& Findings() const { return mFindings; }
  std::vector<Converter> const& Converters() const { return mConverters; }

 private:
  void CheckText();
  void CheckConverters(PlacedValue const& root);
  void CheckConverter(PlacedValue const& value);
  void CheckIdentifier(PlacedValue const& value, Converter& converter);
  void CheckNames(PlacedValue const& value);
  void CheckVersion(PlacedValue const& value);
  void CheckForce(PlacedValue const& value);
  void CheckSignatures(PlacedValue const& value, Converter& converter);
  void CheckSignature(PlacedValue const& value);
  void CheckBytes(PlacedValue const& bytes, std::int64_t length);
  void CheckExtensions(PlacedValue const& value, Converter& converter);
  std::string CheckExtension(PlacedValue const& value);
  void CheckAgainstOthers(PlacedValue const& value, Converter const& converter);

  /// Whether the value is an object; tells what is wrong with its keys.
  bool CheckKeys(PlacedValue const& value, std::string const& what, std::vector<std::string> const& known);
  /// A member that has to be there as a string; null if it is not.
  PlacedValue const* RequireText(PlacedValue const& object, std::string const& key);
  PlacedValue const* RequireInteger(PlacedValue const& object, std::string const& key);

  void Add(eSeverity severity, std::uint64_t offset, std::string text);
  void Add(eSeverity severity, PlacedValue const& value, std::string text);

  std::string mText;
  std::string mWhere;
  ModuleFindings mFindings;
  std::vector<Converter> mConverters;
};

}  // namespace senmark_tool
