/// The converter of a module as the registry knows it: it forwards one conversion to the module.
#pragma once

#include <memory>
#include <string>

#include "SK_ConverterHandlerBase.h"
#include "senmark/PluginAPI.h"

namespace SK_PLUGIN {

class SK_ConverterHandler;

class SK_ConverterHandlerInstance : public ns_sensor::SK_ConverterHandlerBase {
 public:
  /// `session` is one that the handler's module has opened; it is closed with this object.
  SK_ConverterHandlerInstance(void* session, std::shared_ptr<SK_ConverterHandler> handler,
                              SK_NAMESPACE_INT::SK_PathInfo const& pathInfo);
  ~SK_ConverterHandlerInstance() override;
  SK_ConverterHandlerInstance(SK_ConverterHandlerInstance const&) = delete;
  SK_ConverterHandlerInstance& operator=(SK_ConverterHandlerInstance const&) = delete;

  /// Always true. Raises the module's own code and place; 1506 if it failed without a code.
  bool convertToTDJSON() override;

 private:
  void* mSession;
  std::shared_ptr<SK_ConverterHandler> mHandler;
};

/// Whether the handler under the extension `uid` takes the file: by its signatures, without the module's code, or,
/// if it has none, by the module. Codes 6, 10, 11, 13 (the file), 1021, 1500, and the module's own.
bool Plugin_CheckFileFormat(std::string& uid, SK_NAMESPACE_INT::SK_PathInfo const& file);

/// Opens a session for the file with the handler under the extension `uid`. Codes 1021, 1500, and the module's own.
std::shared_ptr<ns_sensor::SK_ConverterHandlerBase> Plugin_ConverterHandlerCTor(
    std::string& uid, SK_NAMESPACE_INT::SK_PathInfo const& file);

}  // namespace SK_PLUGIN
