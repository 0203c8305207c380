#include "TdjsonGroupImpl.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <new>
#include <utility>

#include "SK_NumberAnalysis.h"
#include "SK_Utils.h"
#include "SK_WriterCast.h"
#include "SK_WriterCode.h"
#include "SK_WriterFailure.h"
#include "TdjsonDynamicDataNumArrImpl.h"
#include "TdjsonDynamicDataNumImpl.h"
#include "TdjsonDynamicDataStringImpl.h"
#include "TdjsonStaticDataBoolImpl.h"
#include "TdjsonStaticDataNumArrImpl.h"
#include "TdjsonStaticDataNumImpl.h"
#include "TdjsonStaticDataStringImpl.h"

namespace SK_PLUGIN {

namespace {

using GroupList = std::vector<std::shared_ptr<TdjsonGroupImpl>>;

/// Groups that this thread has still to let go of, while it is about to delete one. Else null.
thread_local GroupList* gGroupsToLetGo = nullptr;

/// Lets go of the children of a group that is being deleted. Those of the outermost group go in a loop; the
/// groups that are deleted in it hand their own children over to that loop and need no deeper stack. The first child
/// goes first: that is the order in which nodes are made and lie in memory.
void LetGoOfGroups(GroupList& groups) noexcept {
  if (groups.empty()) {
    return;
  }
  if (gGroupsToLetGo != nullptr) {
    try {
      gGroupsToLetGo->insert(gGroupsToLetGo->end(), std::make_move_iterator(groups.rbegin()),
                             std::make_move_iterator(groups.rend()));
    } catch (std::bad_alloc const&) {
      // They stay where they are and go with their list, one level down the stack.
    }
    return;
  }
  GroupList waiting = std::move(groups);
  std::reverse(waiting.begin(), waiting.end());
  gGroupsToLetGo = &waiting;
  while (!waiting.empty()) {
    std::shared_ptr<TdjsonGroupImpl> const next = std::move(waiting.back());
    waiting.pop_back();
  }
  gGroupsToLetGo = nullptr;
}

/// Hands the node to `use` as the class that its type claims. 2016 if it is not of that class, 2026 for a type
/// that a dynamic node cannot have.
template <typename Use>
void WithDynamicImpl(ITdjsonDynamicData_v1* child, Use&& use) {
  ITdjsonDynamicData_v1* const node = child->GetActualITdjsonDynamicData();
  if (node == nullptr) {
    ThrowWriterError(kForeignObject);
  }
  switch (node->GetType()) {
    case ns_sensor::kNumberValue:
      return use(CastOrThrow<TdjsonDynamicDataNumImpl>(node));
    case ns_sensor::kStringValue:
      return use(CastOrThrow<TdjsonDynamicDataStringImpl>(node));
    case ns_sensor::kNumberArrayValue:
      return use(CastOrThrow<TdjsonDynamicDataNumArrImpl>(node));
    default:
      ThrowWriterError(kNoTextForm);
  }
}

template <typename Use>
void WithStaticImpl(ITdjsonStaticData_v1* child, Use&& use) {
  ITdjsonStaticData_v1* const node = child->GetActualITdjsonStaticData();
  if (node == nullptr) {
    ThrowWriterError(kForeignObject);
  }
  switch (node->GetType()) {
    case ns_sensor::kNumberValue:
      return use(CastOrThrow<TdjsonStaticDataNumImpl>(node));
    case ns_sensor::kStringValue:
      return use(CastOrThrow<TdjsonStaticDataStringImpl>(node));
    case ns_sensor::kNumberArrayValue:
      return use(CastOrThrow<TdjsonStaticDataNumArrImpl>(node));
    case ns_sensor::kBooleanValue:
      return use(CastOrThrow<TdjsonStaticDataBoolImpl>(node));
    default:
      ThrowWriterError(kNoTextForm);
  }
}

/// Most groups have a few children, and lists that begin with one place would grow three times for four of them.
constexpr std::size_t kFirstPlaces = 4;

template <typename Place>
void ReserveFirst(std::vector<Place>& list) {
  if (list.empty()) {
    list.reserve(kFirstPlaces);
  }
}

/// Both lists grow or none does.
template <typename Child>
void AddChild(std::vector<std::shared_ptr<Child>>& children, std::shared_ptr<Child> child, std::vector<NodeInfo>& order,
              ns_sensor::eGroupChildType type) {
  ReserveFirst(order);
  order.push_back({type, children.size() + 1});
  try {
    ReserveFirst(children);
    children.push_back(std::move(child));
  } catch (...) {
    order.pop_back();
    throw;
  }
}

void RequireClean(TdjsonDynamicDataImpl& node) {
  if (node.isDirty()) {
    ThrowWriterError(kDynamicNodeUnusable);
  }
}

}  // namespace

std::shared_ptr<ITdjsonGroup_v1> ITdjsonGroup_v1::CreateGroup(void* key, std::string const& matchName,
                                                              std::string const& displayName) {
  if (!SK_NAMESPACE_INT::SK_Utils::IsValidMatchName(matchName)) {
    ThrowWriterError(kWriterBadMatchName);
  }
  return OwnNewObject(new TdjsonGroupImpl(key, displayName, matchName));
}

TdjsonGroupImpl::TdjsonGroupImpl(void* key, std::string displayName, std::string matchName)
    : mMatchName(std::move(matchName)), mDisplayName(escapeHandling(std::move(displayName))), mConverterKey(key) {}

TdjsonGroupImpl::~TdjsonGroupImpl() {
  LetGoOfGroups(mGroupList);
}

void TdjsonGroupImpl::AddDynamicData(std::shared_ptr<ITdjsonDynamicData_v1> const& child) {
  if (child == nullptr) {
    ThrowWriterError(kDynamicNodeUnusable);
  }
  WithDynamicImpl(child.get(), [&](auto* node) {
    RequireClean(*node);
    AddChild(mDynamicDataList, std::shared_ptr<TdjsonDynamicDataImpl>(child, node), mNodeInfoList,
             ns_sensor::kDynamicChild);
  });
}

void TdjsonGroupImpl::AddStaticData(std::shared_ptr<ITdjsonStaticData_v1> const& child) {
  if (child == nullptr) {
    ThrowWriterError(kStaticNodeMissing);
  }
  WithStaticImpl(child.get(), [&](auto* node) {
    AddChild(mStaticDataList, std::shared_ptr<TdjsonStaticDataImpl>(child, node), mNodeInfoList,
             ns_sensor::kStaticChild);
  });
}

void TdjsonGroupImpl::AddGroup(std::shared_ptr<ITdjsonGroup_v1> const& child) {
  if (child == nullptr) {
    ThrowWriterError(kGroupMissing);
  }
  auto* const group = CastOrThrow<TdjsonGroupImpl>(child->GetActualITdjsonGroup());
  AddChild(mGroupList, std::shared_ptr<TdjsonGroupImpl>(child, group), mNodeInfoList, ns_sensor::kGroupChild);
}

void TdjsonGroupImpl::addDynamicData(ITdjsonDynamicData_v1* child, void* result) {
  RunAtWriterBorder(result, [&] {
    if (child == nullptr) {
      ThrowWriterError(kDynamicNodeUnusable);
    }
    WithDynamicImpl(child, [&](auto* node) {
      // The reference comes first: of a dirty node nobody else owns, this is the end.
      std::shared_ptr<TdjsonDynamicDataImpl> shared = MakeSharedPointer(node);
      RequireClean(*shared);
      AddChild(mDynamicDataList, std::move(shared), mNodeInfoList, ns_sensor::kDynamicChild);
    });
  });
}

void TdjsonGroupImpl::addStaticData(ITdjsonStaticData_v1* child, void* result) {
  RunAtWriterBorder(result, [&] {
    if (child == nullptr) {
      ThrowWriterError(kStaticNodeMissing);
    }
    WithStaticImpl(child, [&](auto* node) {
      AddChild(mStaticDataList, std::shared_ptr<TdjsonStaticDataImpl>(MakeSharedPointer(node)), mNodeInfoList,
               ns_sensor::kStaticChild);
    });
  });
}

void TdjsonGroupImpl::addGroup(ITdjsonGroup_v1* child, void* result) {
  RunAtWriterBorder(result, [&] {
    if (child == nullptr) {
      ThrowWriterError(kGroupMissing);
    }
    auto* const group = CastOrThrow<TdjsonGroupImpl>(child->GetActualITdjsonGroup());
    AddChild(mGroupList, MakeSharedPointer(group), mNodeInfoList, ns_sensor::kGroupChild);
  });
}

void TdjsonGroupImpl::AddStaticNumber(std::string_view matchName, std::string_view displayName, double value) {
  AddRecord([&] {
    mStaticRecords.AddNumber(matchName, displayName, value);
    return true;
  });
}

void TdjsonGroupImpl::AddStaticString(std::string_view matchName, std::string_view displayName,
                                      std::string_view value) {
  AddRecord([&] {
    mStaticRecords.AddString(matchName, displayName, value);
    return true;
  });
}

void TdjsonGroupImpl::AddStaticBool(std::string_view matchName, std::string_view displayName, bool value) {
  AddRecord([&] {
    mStaticRecords.AddBool(matchName, displayName, value);
    return true;
  });
}

void TdjsonGroupImpl::AddFinishedGroup(std::shared_ptr<ITdjsonGroup_v1>&& child) {
  if (child != nullptr && child.use_count() == 1) {
    auto const& group = *CastOrThrow<TdjsonGroupImpl>(child->GetActualITdjsonGroup());
    bool const isOfRecords = group.mNodeInfoList.size() == 1 && group.mNodeInfoList[0].IsOfRecords();
    if (isOfRecords && AddRecord([&] {
          return mStaticRecords.AddSmallGroup(group.mMatchName, group.mDisplayName, group.mStaticRecords);
        })) {
      return;
    }
  }
  AddGroup(child);
}

// Both the order and the records grow or none does.
template <typename Add>
bool TdjsonGroupImpl::AddRecord(Add const& add) {
  bool const isRunning = !mNodeInfoList.empty() && mNodeInfoList.back().IsOfRecords();
  if (!isRunning) {
    ReserveFirst(mNodeInfoList);
    mNodeInfoList.push_back({ns_sensor::kStaticChild, NodeInfo::kRecords});
  }
  bool isAdded = false;
  try {
    isAdded = add();
  } catch (...) {
    if (!isRunning) {
      mNodeInfoList.pop_back();
    }
    throw;
  }
  if (isAdded) {
    ++mNodeInfoList.back().index;
  } else if (!isRunning) {
    mNodeInfoList.pop_back();
  }
  return isAdded;
}

std::vector<std::shared_ptr<TdjsonDynamicDataImpl>> const& TdjsonGroupImpl::GetDynamicDataList() const {
  return mDynamicDataList;
}

std::vector<std::shared_ptr<TdjsonStaticDataImpl>> const& TdjsonGroupImpl::GetStaticDataList() const {
  return mStaticDataList;
}

GroupList const& TdjsonGroupImpl::GetGroupList() const {
  return mGroupList;
}

std::vector<NodeInfo> const& TdjsonGroupImpl::GetNodeInfoList() const {
  return mNodeInfoList;
}

std::string const& TdjsonGroupImpl::GetDisplayName() const {
  return mDisplayName;
}

std::string const& TdjsonGroupImpl::GetMatchName() const {
  return mMatchName;
}

void TdjsonGroupImpl::ResetGroup() {
  // A group may be its own child and go with its list, so nothing of it is touched after these.
  auto const order = std::move(mNodeInfoList);
  auto const dynamicData = std::move(mDynamicDataList);
  auto const staticData = std::move(mStaticDataList);
  auto const groups = std::move(mGroupList);
  auto const records = std::move(mStaticRecords);
}

}  // namespace SK_PLUGIN
