/// Reads the manifest of a module and makes its converters known to the plug-in manager.
///
/// The first fault ends the reading; converters listed before it stay known.
#pragma once

#include <memory>
#include <set>
#include <string>

#include "CheckFormat.h"
#include "SK_RapidJson.h"

namespace SK_PLUGIN {

class SK_ConverterHandler;
class SK_Module;

class ResourceParser {
 public:
  /// Bracket the use of the manager; there is nothing to set up.
  static void initialize();
  static void terminate();

  explicit ResourceParser(std::shared_ptr<SK_Module> module);
  ~ResourceParser();

  /// `converters` is the array under "converter". Code 1504 for what breaks a rule, 1503 for a converter without
  /// identifier or extensions.
  void parseConverterArray(SK_NAMESPACE_INT::JValue const& converters);
  /// Makes the converter under construction known under each of its extensions, and forgets it. Code 1503.
  void addHandler();

 private:
  void ParseConverter(SK_NAMESPACE_INT::JValue const& converter, std::string const& locale);
  void ParseNames(SK_NAMESPACE_INT::JValue const& names, std::string const& locale);
  void ParseCheckFormats(SK_NAMESPACE_INT::JValue const& checkFormats);
  void ParseExtensions(SK_NAMESPACE_INT::JValue const& extensions);
  void clear();

  std::shared_ptr<SK_Module> mModule;
  std::shared_ptr<SK_ConverterHandler> mHandler;
  std::set<std::string> mExtensions;
  CheckFormat mCheckFormat;
  std::string mFallbackName;  ///< that of the first entry for American English
};

}  // namespace SK_PLUGIN
