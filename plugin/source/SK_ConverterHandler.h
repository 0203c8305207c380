/// One converter of a module, as its manifest describes it.
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "CheckFormat.h"

namespace SK_PLUGIN {

class SK_Module;

class SK_ConverterHandler {
 public:
  SK_ConverterHandler(std::string uid, bool forceConverter, std::shared_ptr<SK_Module> module)
      : mUID(std::move(uid)), mForceConverter(forceConverter), mModule(std::move(module)) {}

  std::string const& getUID() const { return mUID; }
  std::string const& getName() const { return mName; }
  void setName(std::string name) { mName = std::move(name); }
  double getVersion() const { return mVersion; }
  void setVersion(double version) { mVersion = version; }
  /// Whether it stays where a newer version of the same converter is found.
  bool isForceConverter() const { return mForceConverter; }
  void setForceConverter(bool forceConverter) { mForceConverter = forceConverter; }
  /// A file must have all signatures; without one the module itself is asked.
  void addCheckFormat(CheckFormat const& checkFormat) { mCheckFormats.push_back(checkFormat); }
  CheckFormat const& getCheckFormat(std::size_t index) const { return mCheckFormats[index]; }
  std::size_t getCheckFormatSize() const { return mCheckFormats.size(); }
  std::shared_ptr<SK_Module> const& getModule() const { return mModule; }

  /// What `SK_Module::load` does.
  bool load() const;

 private:
  std::vector<CheckFormat> mCheckFormats;
  double mVersion = 0;
  std::string mUID;
  std::string mName;
  bool mForceConverter;
  std::shared_ptr<SK_Module> mModule;
};

}  // namespace SK_PLUGIN
