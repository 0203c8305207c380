/// The writer as the native converters use it: public records in, shared objects out.
///
/// A failure is an `SK_Exception`, but for what the objects refuse as they are made, which is an
/// `SK_PluginException`: 1505 a root without a path, 2005 and 2028 a dynamic node without a root or without a time
/// base. A half-made node goes away by itself. `key` stands for one run of a converter, which passes its own
/// address; null is code 1.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "senmark/ITdjsonDynamicDataNumArr_v1.h"
#include "senmark/ITdjsonDynamicDataNum_v1.h"
#include "senmark/ITdjsonDynamicDataString_v1.h"
#include "senmark/ITdjsonRoot_v1.h"
#include "senmark/ITdjsonStaticDataBool_v1.h"
#include "senmark/ITdjsonStaticDataNumArr_v1.h"
#include "senmark/ITdjsonStaticDataNum_v1.h"
#include "senmark/ITdjsonStaticDataString_v1.h"
#include "senmark/SK_Records.h"

namespace SK_PLUGIN {

class Writer_Wrapper {
 public:
  /// Gives the root that lives under `key` if there is one. Else makes it, with the time base and the sync
  /// times of `info` unless that is null, and creates the file with its head. A root whose head cannot be written
  /// stays until `RemoveRoot_Wrapper`.
  static std::shared_ptr<ITdjsonRoot_v1> CreateRoot_Wrapper(void* key, char const* path,
                                                            ns_sensor::SK_DynamicFileInfo const* info);
  /// The match name is not looked at.
  static std::shared_ptr<ITdjsonGroup_v1> CreateGroup_Wrapper(void* key, std::string const& matchName,
                                                              std::string const& displayName);
  static std::shared_ptr<ITdjsonDynamicDataNum_v1> CreateDynamicDataNum_Wrapper(
      void* key, ns_sensor::SK_DynamicDataFields const& fields, ns_sensor::SK_NumberProperties const& properties);
  /// Codes 2017 for an array size of 0 or above 3, 2018 for a wrong count of ranges. A wrong count of display
  /// names is an `SK_PluginException` with code 2019.
  static std::shared_ptr<ITdjsonDynamicDataNumArr_v1> CreateDynamicDataNumArr_Wrapper(
      void* key, ns_sensor::SK_DynamicDataFields const& fields, ns_sensor::SK_NumberArrayProperties const& properties);
  static std::shared_ptr<ITdjsonDynamicDataString_v1> CreateDynamicDataString_Wrapper(
      void* key, ns_sensor::SK_DynamicDataFields const& fields, ns_sensor::SK_StringProperties const& properties);
  static std::shared_ptr<ITdjsonStaticDataBool_v1> CreateStaticDataBool_Wrapper(void* key, std::string const& matchName,
                                                                                std::string const& displayName,
                                                                                bool const& value);
  static std::shared_ptr<ITdjsonStaticDataNum_v1> CreateStaticDataNum_Wrapper(
      void* key, std::string const& matchName, std::string const& displayName, double const& value,
      ns_sensor::SK_NumberProperties const& properties);
  /// Codes, in this order: 2017 for an array size other than 0 that is above 3 or not the count of values,
  /// 48 for more than 3 values, 2011 for a wrong count of display names, 2012 for one of ranges.
  static std::shared_ptr<ITdjsonStaticDataNumArr_v1> CreateStaticDataNumArr_Wrapper(
      void* key, std::string const& matchName, std::string const& displayName, std::vector<double> const& values,
      ns_sensor::SK_NumberArrayProperties const& properties);
  static std::shared_ptr<ITdjsonStaticDataString_v1> CreateStaticDataString_Wrapper(
      void* key, std::string const& matchName, std::string const& displayName, std::string const& value,
      ns_sensor::SK_StringProperties const& properties);
  /// Adds a group that is finished, and takes it away from the caller. If nobody else holds it, the group itself may
  /// go, and only what it says stays. Throws what `AddGroup` would.
  static void AddGroup_Wrapper(void* key, ITdjsonGroup_v1& parent, std::shared_ptr<ITdjsonGroup_v1> group);
  /// A node with properties that are taken from its value, made and added in one step, which takes a small part of the
  /// memory of a node that can be held. Throw what the two steps would.
  static void AddStaticDataBool_Wrapper(void* key, ITdjsonGroup_v1& group, std::string_view matchName,
                                        std::string_view displayName, bool value);
  static void AddStaticDataNum_Wrapper(void* key, ITdjsonGroup_v1& group, std::string_view matchName,
                                       std::string_view displayName, double value);
  static void AddStaticDataString_Wrapper(void* key, ITdjsonGroup_v1& group, std::string_view matchName,
                                          std::string_view displayName, std::string_view value);
  /// Lets go of the root, if there is one.
  static void RemoveRoot_Wrapper(void* key);
};

}  // namespace SK_PLUGIN
