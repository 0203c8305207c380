/// Knows every converter and decides which one takes a file.
///
/// Filled once at the start and only read afterwards; takes no lock.
#pragma once

#include <map>
#include <memory>
#include <string>

#include "SK_PathInfo.h"

namespace ns_sensor {

class SK_ConverterHandlerBase;

/// One converter, by functions that get its own uid and the file.
struct SK_ConverterHandlerInfo {
  using CheckFunction = bool (*)(std::string& uid, SK_NAMESPACE_INT::SK_PathInfo const& file);
  using ConstructorFunction = std::shared_ptr<SK_ConverterHandlerBase> (*)(std::string& uid,
                                                                           SK_NAMESPACE_INT::SK_PathInfo const& file);

  std::string uid;      ///< the key of its registration; for a native converter the file extension
  CheckFunction check;  ///< whether it takes the file; may be asked twice
  ConstructorFunction construct;
};

class SK_ConverterRegistry {
 public:
  static SK_ConverterRegistry* getInstance();
  static void terminate();

  /// Makes the system's own formats known. A second call changes nothing.
  void initialize();

  /// False, without a change, for a uid that is registered already.
  bool registerNativeConverter(std::string uid, std::string displayName, SK_ConverterHandlerInfo::CheckFunction check,
                               SK_ConverterHandlerInfo::ConstructorFunction construct);
  bool registerPluginConverter(std::string uid, std::string displayName, SK_ConverterHandlerInfo::CheckFunction check,
                               SK_ConverterHandlerInfo::ConstructorFunction construct);
  /// Of the converters of modules only; whether it was there. Its display name stays.
  bool removeConverterHandler(std::string const& uid);

  /// Display names by uid.
  std::map<std::string, std::string>* getConvertersInfo() { return &mConvertersInfo; }
  /// The module's converter before a native one of the same uid; null without either.
  SK_ConverterHandlerInfo* getConverterHandlerInfo(std::string const& uid);
  /// The converter for a file: the one of its extension if that takes it, else the first that does, those
  /// of modules before native ones, each in the order of their uids. Null if none does.
  SK_ConverterHandlerInfo* selectSmartHandler(SK_NAMESPACE_INT::SK_PathInfo const& file);

 private:
  using HandlerMap = std::map<std::string, SK_ConverterHandlerInfo>;

  SK_ConverterRegistry() = default;

  bool Register(HandlerMap& handlers, SK_ConverterHandlerInfo&& info, std::string&& displayName);

  HandlerMap mNativeHandlers;
  HandlerMap mPluginHandlers;
  std::map<std::string, std::string> mConvertersInfo;

  static std::unique_ptr<SK_ConverterRegistry> mInstance;
};

}  // namespace ns_sensor
