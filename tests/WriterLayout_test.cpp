// The binary interface of the writer: the slot of every virtual function, and the layout of the record that
// brings errors. Modules that were compiled years ago rely on each number here.
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

#include "TdjsonDynamicDataNumArrImpl.h"
#include "TdjsonDynamicDataNumImpl.h"
#include "TdjsonDynamicDataStringImpl.h"
#include "TdjsonRootImpl.h"
#include "TdjsonStaticDataBoolImpl.h"
#include "TdjsonStaticDataNumArrImpl.h"
#include "TdjsonStaticDataNumImpl.h"
#include "TdjsonStaticDataStringImpl.h"
#include "senmark/SK_PluginResult.h"

namespace SK_PLUGIN {
namespace {

static_assert(sizeof(SK_PluginResult) == 24);
static_assert(offsetof(SK_PluginResult, mErrorCode) == 4 && sizeof(SK_PluginResult::mErrorCode) == 4);
static_assert(offsetof(SK_PluginResult, mFileOffset) == 8);
static_assert(offsetof(SK_PluginResult, mFileLineNo) == 16);

static_assert(offsetof(NodeInfo, index) == 8 && sizeof(NodeInfo) == 16);

/// The number of a virtual function in the table of the class that declares it. A pointer to a member holds
/// its offset in that table, with the lowest bit as a mark on some processors.
template <typename Member>
std::size_t SlotOf(Member member) {
  static_assert(std::is_member_function_pointer_v<Member>);
  std::uintptr_t offset = 0;
  std::memcpy(&offset, &member, sizeof offset);
  return (offset & ~std::uintptr_t{1}) / sizeof(void*);
}

/// The table that the first word of an object leads to, for an object of `Impl` seen as `Interface`, and the
/// one of its own functions.
template <typename Interface, typename Impl>
bool SharesTheTableOf(Impl& object) {
  return static_cast<void*>(static_cast<Interface*>(&object)) == dynamic_cast<void*>(&object);
}

// A virtual destructor takes two slots.
TEST(WriterLayout, SharedObject) {
  EXPECT_EQ(SlotOf(&ISharedObject::Acquire), 0u);
  EXPECT_EQ(SlotOf(&ISharedObject::Release), 1u);
  EXPECT_EQ(SlotOf(&ISharedObject::GetISharedObject_I), 2u);
  EXPECT_EQ(SlotOf(&ISharedObject::AcquireInternal), 5u);
}

TEST(WriterLayout, Group) {
  EXPECT_EQ(SlotOf(&ITdjsonGroup_v1::AddDynamicData), 6u);
  EXPECT_EQ(SlotOf(&ITdjsonGroup_v1::AddStaticData), 7u);
  EXPECT_EQ(SlotOf(&ITdjsonGroup_v1::AddGroup), 8u);
  EXPECT_EQ(SlotOf(&ITdjsonGroup_v1::GetActualITdjsonGroup), 9u);
  EXPECT_EQ(SlotOf(&ITdjsonGroup_v1::addDynamicData), 10u);
  EXPECT_EQ(SlotOf(&ITdjsonGroup_v1::addStaticData), 11u);
  EXPECT_EQ(SlotOf(&ITdjsonGroup_v1::addGroup), 12u);
  EXPECT_EQ(SlotOf(&TdjsonGroupImpl::GetDynamicDataList), 13u);
  EXPECT_EQ(SlotOf(&TdjsonGroupImpl::GetStaticDataList), 14u);
  EXPECT_EQ(SlotOf(&TdjsonGroupImpl::GetGroupList), 15u);
  EXPECT_EQ(SlotOf(&TdjsonGroupImpl::GetNodeInfoList), 16u);
  EXPECT_EQ(SlotOf(&TdjsonGroupImpl::GetDisplayName), 17u);
  EXPECT_EQ(SlotOf(&TdjsonGroupImpl::GetMatchName), 18u);
  EXPECT_EQ(SlotOf(&TdjsonGroupImpl::ResetGroup), 19u);
}

TEST(WriterLayout, Root) {
  EXPECT_EQ(SlotOf(&ITdjsonRoot_v1::Commit), 13u);
  EXPECT_EQ(SlotOf(&ITdjsonRoot_v1::SetCreator), 14u);
  EXPECT_EQ(SlotOf(&ITdjsonRoot_v1::GetActualITdjsonRoot), 15u);
  EXPECT_EQ(SlotOf(&ITdjsonRoot_v1::commit), 16u);
  EXPECT_EQ(SlotOf(&ITdjsonRoot_v1::setCreator), 17u);
  EXPECT_EQ(SlotOf(&ITdjsonRoot_v1::setSMPTETimeInfo), 18u);
  EXPECT_EQ(SlotOf(&ITdjsonRoot_v1::setUTCTimeInfo), 19u);
  EXPECT_EQ(SlotOf(&ITdjsonRoot_v1::addSyncTimeFrameNum), 20u);
  EXPECT_EQ(SlotOf(&ITdjsonRoot_v1::addSyncTimeStr), 21u);
  EXPECT_EQ(SlotOf(&ITdjsonRoot_v1::writeVersionToFile), 22u);
  EXPECT_EQ(SlotOf(&TdjsonRootImpl::GetTDJSONPath), 23u);
  EXPECT_EQ(SlotOf(&TdjsonRootImpl::GetTimeInfo), 24u);
  EXPECT_EQ(SlotOf(&TdjsonRootImpl::GetVideoSyncTimeList), 25u);
  EXPECT_EQ(SlotOf(&TdjsonRootImpl::IsTimeCodeUsed), 26u);
  EXPECT_EQ(SlotOf(&TdjsonRootImpl::IsDynamicSamplesPresent), 27u);
  EXPECT_EQ(SlotOf(&TdjsonRootImpl::GetCreator), 28u);
  EXPECT_EQ(SlotOf(&TdjsonRootImpl::SetHasFirstSetArrived), 29u);
  EXPECT_EQ(SlotOf(&TdjsonRootImpl::ResetRoot), 30u);
  EXPECT_EQ(SlotOf(&TdjsonRootImpl::GetTimeLength), 31u);
  EXPECT_EQ(SlotOf(&TdjsonRootImpl::GetUTCPrecision), 32u);
}

TEST(WriterLayout, StaticData) {
  EXPECT_EQ(SlotOf(&ITdjsonStaticData_v1::GetType), 0u);
  EXPECT_EQ(SlotOf(&ITdjsonStaticData_v1::GetActualITdjsonStaticData), 1u);
  EXPECT_EQ(SlotOf(&ITdjsonStaticDataNum_v1::setNumberPattern), 4u);
  EXPECT_EQ(SlotOf(&ITdjsonStaticDataNum_v1::setNumberRange), 5u);
  EXPECT_EQ(SlotOf(&ITdjsonStaticDataNumArr_v1::addElement), 4u);
  EXPECT_EQ(SlotOf(&ITdjsonStaticDataNumArr_v1::addDisplayName), 5u);
  EXPECT_EQ(SlotOf(&ITdjsonStaticDataNumArr_v1::setNumberPattern), 6u);
  EXPECT_EQ(SlotOf(&ITdjsonStaticDataNumArr_v1::setNumberRange), 7u);
  EXPECT_EQ(SlotOf(&ITdjsonStaticDataNumArr_v1::setArrCount), 8u);
  EXPECT_EQ(SlotOf(&ITdjsonStaticDataNumArr_v1::setIsPoint), 9u);
  EXPECT_EQ(SlotOf(&ITdjsonStaticDataString_v1::setStringProperties), 4u);
}

TEST(WriterLayout, StaticDataOnItsInside) {
  EXPECT_EQ(SlotOf(&TdjsonStaticDataNumImpl::GetNumberProperties), 6u);
  EXPECT_EQ(SlotOf(&TdjsonStaticDataNumImpl::GetDataValue), 7u);
  EXPECT_EQ(SlotOf(&TdjsonStaticDataNumArrImpl::GetNumArrayProperties), 10u);
  EXPECT_EQ(SlotOf(&TdjsonStaticDataNumArrImpl::GetDataValue), 11u);
  EXPECT_EQ(SlotOf(&TdjsonStaticDataStringImpl::GetStringProperties), 5u);
  EXPECT_EQ(SlotOf(&TdjsonStaticDataStringImpl::GetDataValue), 6u);
  EXPECT_EQ(SlotOf(&TdjsonStaticDataStringImpl::SetStringProperties), 7u);
  EXPECT_EQ(SlotOf(&TdjsonStaticDataBoolImpl::GetDataValue), 4u);
  EXPECT_EQ(SlotOf(&TdjsonStaticDataImpl::GetDisplayName), 4u);
  EXPECT_EQ(SlotOf(&TdjsonStaticDataImpl::GetMatchName), 5u);
}

TEST(WriterLayout, DynamicData) {
  EXPECT_EQ(SlotOf(&ITdjsonDynamicData_v1::GetType), 0u);
  EXPECT_EQ(SlotOf(&ITdjsonDynamicData_v1::Commit), 1u);
  EXPECT_EQ(SlotOf(&ITdjsonDynamicData_v1::SetSampleCount), 2u);
  EXPECT_EQ(SlotOf(&ITdjsonDynamicData_v1::GetSampleCount), 3u);
  EXPECT_EQ(SlotOf(&ITdjsonDynamicData_v1::GetActualITdjsonDynamicData), 4u);
  EXPECT_EQ(SlotOf(&ITdjsonDynamicData_v1::commit), 7u);
  EXPECT_EQ(SlotOf(&ITdjsonDynamicData_v1::setDynamicDataInfo), 8u);
  EXPECT_EQ(SlotOf(&ITdjsonDynamicDataNum_v1::AddSample), 9u);
  EXPECT_EQ(SlotOf(&ITdjsonDynamicDataNum_v1::setNumberPattern), 10u);
  EXPECT_EQ(SlotOf(&ITdjsonDynamicDataNum_v1::setNumberRange), 11u);
  EXPECT_EQ(SlotOf(&ITdjsonDynamicDataNum_v1::addSampleSMPTE), 12u);
  EXPECT_EQ(SlotOf(&ITdjsonDynamicDataNum_v1::addSampleUTC), 13u);
  EXPECT_EQ(SlotOf(&ITdjsonDynamicDataNumArr_v1::AddSample), 9u);
  EXPECT_EQ(SlotOf(&ITdjsonDynamicDataNumArr_v1::setNumberPattern), 10u);
  EXPECT_EQ(SlotOf(&ITdjsonDynamicDataNumArr_v1::setNumberRange), 11u);
  EXPECT_EQ(SlotOf(&ITdjsonDynamicDataNumArr_v1::setArrCount), 12u);
  EXPECT_EQ(SlotOf(&ITdjsonDynamicDataNumArr_v1::setIsPoint), 13u);
  EXPECT_EQ(SlotOf(&ITdjsonDynamicDataNumArr_v1::setDisplayName), 14u);
  EXPECT_EQ(SlotOf(&ITdjsonDynamicDataNumArr_v1::addTimeSMPTE), 15u);
  EXPECT_EQ(SlotOf(&ITdjsonDynamicDataNumArr_v1::addTimeUTC), 16u);
  EXPECT_EQ(SlotOf(&ITdjsonDynamicDataNumArr_v1::addElement), 17u);
  EXPECT_EQ(SlotOf(&ITdjsonDynamicDataString_v1::AddSample), 9u);
  EXPECT_EQ(SlotOf(&ITdjsonDynamicDataString_v1::setStringProperties), 10u);
  EXPECT_EQ(SlotOf(&ITdjsonDynamicDataString_v1::addSampleSMPTE), 11u);
  EXPECT_EQ(SlotOf(&ITdjsonDynamicDataString_v1::addSampleUTC), 12u);
}

TEST(WriterLayout, DynamicDataOnItsInside) {
  EXPECT_EQ(SlotOf(&TdjsonDynamicDataNumImpl::GetNumStringProperties), 14u);
  EXPECT_EQ(SlotOf(&TdjsonDynamicDataNumImpl::AddSampleUTC), 15u);
  EXPECT_EQ(SlotOf(&TdjsonDynamicDataNumArrImpl::GetNumArrayProperties), 18u);
  EXPECT_EQ(SlotOf(&TdjsonDynamicDataStringImpl::GetPaddedStringProperties), 13u);
  EXPECT_EQ(SlotOf(&TdjsonDynamicDataImpl::GetDynamicDataFields), 9u);
  EXPECT_EQ(SlotOf(&TdjsonDynamicDataImpl::isDirty), 10u);
}

TEST(WriterLayout, AnObjectBeginsWithTheTableOfItsInterface) {
  TdjsonGroupImpl group(nullptr, "group", "group");
  EXPECT_TRUE(SharesTheTableOf<ITdjsonGroup_v1>(group));
  TdjsonRootImpl root(nullptr, "never written");
  EXPECT_TRUE(SharesTheTableOf<ITdjsonRoot_v1>(root));
  TdjsonStaticDataNumImpl number(nullptr, "n", "n", 1);
  EXPECT_TRUE(SharesTheTableOf<ITdjsonStaticDataNum_v1>(number));
  TdjsonStaticDataNumArrImpl array(nullptr, "a", "a");
  EXPECT_TRUE(SharesTheTableOf<ITdjsonStaticDataNumArr_v1>(array));
  TdjsonStaticDataStringImpl text(nullptr, "t", "t", "text");
  EXPECT_TRUE(SharesTheTableOf<ITdjsonStaticDataString_v1>(text));
  TdjsonStaticDataBoolImpl flag(nullptr, "b", "b", true);
  EXPECT_TRUE(SharesTheTableOf<ITdjsonStaticDataBool_v1>(flag));
}

}  // namespace
}  // namespace SK_PLUGIN
