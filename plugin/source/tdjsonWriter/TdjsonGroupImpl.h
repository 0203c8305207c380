/// A group of nodes: its children by kind, and all of them in the order of their arrival.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "ITdjsonGroup_I.h"
#include "SK_StaticRecords.h"
#include "SharedObjectImpl.h"
#include "senmark/SK_BasicRecords.h"

namespace SK_PLUGIN {

class TdjsonDynamicDataImpl;
class TdjsonStaticDataImpl;

/// One child of a group, whatever its kind.
struct NodeInfo {
  ns_sensor::eGroupChildType type;
  std::uint64_t index;  ///< in the list of its kind, counted from 1; for records their count and `kRecords`

  /// The entry stands for so many nodes in a row, which are the next in the group's records: static nodes, and groups
  /// of them.
  static constexpr std::uint64_t kRecords = std::uint64_t{1} << 63U;

  bool IsOfRecords() const { return (index & kRecords) != 0; }
  std::uint64_t CountRecords() const { return index & ~kRecords; }
};

class TdjsonGroupImpl : public virtual ITdjsonGroup_I, public virtual SharedObjectImpl {
 public:
  /// The match name is not looked at; the display name is escaped here.
  TdjsonGroupImpl(void* key, std::string displayName, std::string matchName);
  /// Groups may be nested deeper than a stack would bear: inner ones are not deleted inside the outer one.
  ~TdjsonGroupImpl() override;

  /// Share the child with the caller. An `SK_PluginException` as the border forms have codes.
  void AddDynamicData(std::shared_ptr<ITdjsonDynamicData_v1> const& child) override;
  void AddStaticData(std::shared_ptr<ITdjsonStaticData_v1> const& child) override;
  void AddGroup(std::shared_ptr<ITdjsonGroup_v1> const& child) override;

  /// Take a reference of their own.
  void addDynamicData(ITdjsonDynamicData_v1* child, void* result) override;
  void addStaticData(ITdjsonStaticData_v1* child, void* result) override;
  void addGroup(ITdjsonGroup_v1* child, void* result) override;

  /// The same as a static node with properties that are taken from its value, which is made and added, when nobody but
  /// the group needs to hold it.
  void AddStaticNumber(std::string_view matchName, std::string_view displayName, double value);
  void AddStaticString(std::string_view matchName, std::string_view displayName, std::string_view value);
  void AddStaticBool(std::string_view matchName, std::string_view displayName, bool value);

  /// The same as `AddGroup` for a group that nobody changes any more. If nobody else holds it either, it may go, and
  /// only what it says stays.
  void AddFinishedGroup(std::shared_ptr<ITdjsonGroup_v1>&& child);

  virtual std::vector<std::shared_ptr<TdjsonDynamicDataImpl>> const& GetDynamicDataList() const;
  virtual std::vector<std::shared_ptr<TdjsonStaticDataImpl>> const& GetStaticDataList() const;
  virtual std::vector<std::shared_ptr<TdjsonGroupImpl>> const& GetGroupList() const;
  virtual std::vector<NodeInfo> const& GetNodeInfoList() const;
  SK_StaticRecords const& GetStaticRecords() const { return mStaticRecords; }
  virtual std::string const& GetDisplayName() const;  ///< escaped
  virtual std::string const& GetMatchName() const;
  /// Lets go of all children; the names stay.
  virtual void ResetGroup();

 private:
  template <typename Add>
  bool AddRecord(Add const& add);

  std::vector<std::shared_ptr<TdjsonDynamicDataImpl>> mDynamicDataList;
  std::vector<std::shared_ptr<TdjsonStaticDataImpl>> mStaticDataList;
  std::vector<std::shared_ptr<TdjsonGroupImpl>> mGroupList;
  std::string mMatchName;
  std::string mDisplayName;
  [[maybe_unused]] void* mConverterKey;
  std::vector<NodeInfo> mNodeInfoList;
  SK_StaticRecords mStaticRecords;
};

}  // namespace SK_PLUGIN
