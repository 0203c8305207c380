/// A node that holds other nodes.
#pragma once

#include <memory>
#include <string>

#include "senmark/ISharedObject.h"
#include "senmark/ITdjsonDynamicData_v1.h"
#include "senmark/ITdjsonStaticData_v1.h"

namespace SK_PLUGIN {

/// Children come out in the order in which they were added, whatever their kind. A group in which nothing is
/// to be written stays out of the file, and so does a dynamic node without samples. The first child must be one
/// that is written: behind one that stays out, the next one follows a comma that belongs to nothing, and no reader
/// takes the file. Nobody looks for match names that come twice or for a node that was added twice: such a file is
/// refused when it is read.
///
/// Binary interface: the order of the virtual functions is fixed.
class ITdjsonGroup_v1 : public virtual ISharedObject {
 public:
  static unsigned GetInterfaceVersion() { return 1; }

  /// A group for a converter inside the library; a module asks the host's table. Throws an
  /// `SK_PluginException` with code 2022 for a match name that is not valid.
  static std::shared_ptr<ITdjsonGroup_v1> CreateGroup(void* key, std::string const& matchName,
                                                      std::string const& displayName);

  virtual void AddDynamicData(std::shared_ptr<ITdjsonDynamicData_v1> const& child) = 0;
  virtual void AddStaticData(std::shared_ptr<ITdjsonStaticData_v1> const& child) = 0;
  virtual void AddGroup(std::shared_ptr<ITdjsonGroup_v1> const& child) = 0;
  /// The object itself, as the interface that it was made for.
  virtual ITdjsonGroup_v1* GetActualITdjsonGroup() = 0;
  /// Errors: 2001 null, or a node of which a sample failed; 2016 or 2026 an object that is not the writer's.
  virtual void addDynamicData(ITdjsonDynamicData_v1* child, void* result) = 0;
  /// Errors: 2002 null; 2016 or 2026 an object that is not the writer's.
  virtual void addStaticData(ITdjsonStaticData_v1* child, void* result) = 0;
  /// Errors: 2003 null; 2016 an object that is not the writer's.
  virtual void addGroup(ITdjsonGroup_v1* child, void* result) = 0;
};

}  // namespace SK_PLUGIN
