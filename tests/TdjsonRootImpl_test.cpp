// The root of an output file: its time base, its place in the registry, and its one commit.
#include "TdjsonRootImpl.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <initializer_list>
#include <memory>
#include <string>

#include "ExpectError.h"
#include "FailingCalls.h"
#include "FailingMemory.h"
#include "TdjsonStaticDataBoolImpl.h"
#include "TempFolder.h"
#include "WriterErrors.h"

namespace SK_PLUGIN {
namespace {

using ns_sensor::SK_TimeCodeInfo;
using ns_sensor::SK_UTCInfo;
using ns_sensor::SK_VideoSyncTime;
using senmark_test::CodeOf;
using senmark_test::CountOpenDescriptors;
using senmark_test::ExpectError;
using senmark_test::ExpectWriterError;
using senmark_test::FailingMemory;
using senmark_test::kConverterFailed;
using senmark_test::TempFolder;

constexpr char kHead[] = R"({"version":"tdjson2.0.0","dynamicSamplesPresentB":false)";
constexpr char kWholeFile[] = R"({"version":"tdjson2.0.0","dynamicSamplesPresentB":false,"creator":"a \"creator\"",)"
                              R"("dataOutline":[{"objectType":"dataStatic","matchName":"flag","displayName":"a flag",)"
                              R"("dataType":{"type":"boolean"},"value":true}]})";

class Root : public testing::Test {
 protected:
  Root() : mOpenBefore(CountOpenDescriptors()) { TdjsonRootImpl::RegisterInstance(this, mRoot); }
  ~Root() override {
    TdjsonRootImpl::RemoveInstance(this);
    mRoot.reset();
    EXPECT_EQ(CountOpenDescriptors(), mOpenBefore);
  }

  void AddFlag() { mRoot->AddStaticData(OwnNewObject(new TdjsonStaticDataBoolImpl(this, "a flag", "flag", true))); }
  void ExpectNoChildren() const {
    EXPECT_TRUE(mRoot->GetStaticDataList().empty());
    EXPECT_TRUE(mRoot->GetGroupList().empty());
    EXPECT_TRUE(mRoot->GetNodeInfoList().empty());
  }
  std::string FileText() const { return mFolder.Read(mPath); }

  std::size_t mOpenBefore;
  TempFolder mFolder;
  std::string const mPath = mFolder.Path("out.tdjson");
  std::shared_ptr<TdjsonRootImpl> mRoot = OwnNewObject(new TdjsonRootImpl(this, mPath.c_str()));
};

TEST_F(Root, BeginsAsAGroupOfItsOwnNameWithNothingInIt) {
  EXPECT_EQ(mRoot->GetMatchName(), "root");
  EXPECT_EQ(mRoot->GetDisplayName(), "root");
  EXPECT_EQ(mRoot->GetTDJSONPath(), mPath);
  EXPECT_EQ(mRoot->GetCreator(), "");
  EXPECT_FALSE(mRoot->IsDynamicSamplesPresent());
  EXPECT_FALSE(mRoot->IsTimeCodeUsed());
  EXPECT_EQ(mRoot->GetTimeLength(), 0);
  EXPECT_EQ(mRoot->GetUTCPrecision(), 0);
  EXPECT_EQ(mRoot->GetTimeInfo().which(), 0);
  EXPECT_TRUE(mRoot->GetVideoSyncTimeList().empty());
  ExpectNoChildren();
}

TEST_F(Root, NeedsAPath) {
  ExpectWriterError([&] { TdjsonRootImpl(this, nullptr); }, 1505);
  ExpectWriterError([&] { TdjsonRootImpl(this, ""); }, 1505);
  int other = 0;
  ExpectWriterError([&] { ITdjsonRoot_v1::CreateRoot(&other, nullptr, nullptr); }, 1505);
  ExpectWriterError([&] { ITdjsonRoot_v1::CreateRoot(&other, "", nullptr); }, 1505);
  EXPECT_EQ(TdjsonRootImpl::GetRoot(&other), nullptr);
}

TEST_F(Root, CreateRootMakesItOnceForItsKey) {
  int key = 0;
  // Its time base is not looked at here.
  ns_sensor::SK_DynamicFileInfo info;
  info.timeInfo = SK_TimeCodeInfo({25, 1}, 0);
  auto const made = std::dynamic_pointer_cast<TdjsonRootImpl>(ITdjsonRoot_v1::CreateRoot(&key, "first", &info));
  ASSERT_NE(made, nullptr);
  EXPECT_EQ(TdjsonRootImpl::GetRoot(&key), made);
  EXPECT_EQ(made->GetTDJSONPath(), "first");
  EXPECT_FALSE(made->IsDynamicSamplesPresent());
  EXPECT_EQ(ITdjsonRoot_v1::CreateRoot(&key, "second", nullptr), made);
  EXPECT_EQ(made->GetTDJSONPath(), "first");
  ExpectWriterError([&] { ITdjsonRoot_v1::CreateRoot(&key, "", nullptr); }, 1505);
  ExpectWriterError([&] { ITdjsonRoot_v1::CreateRoot(&key, nullptr, nullptr); }, 1505);
  EXPECT_FALSE(std::filesystem::exists("first"));
  TdjsonRootImpl::RemoveInstance(&key);
}

TEST_F(Root, FrameRatesUpTo99HaveTimesOf11Characters) {
  struct {
    unsigned value;
    unsigned scale;
    unsigned short length;
  } const rows[] = {
      {25, 1, 11},          {99, 1, 11},  {100, 1, 12},      {101, 1, 12},         {99999, 1000, 11},
      {100000, 1000, 12},   {199, 2, 11}, {200, 2, 12},      {100, 0, 11},         {4294967295u, 0, 11},
      {4294967295u, 1, 12}, {0, 1, 11},   {30000, 1001, 11}, {2147483648u, 1, 12}, {1, 4294967295u, 11},
  };
  for (auto const& row : rows) {
    SCOPED_TRACE(std::to_string(row.value) + '/' + std::to_string(row.scale));
    for (unsigned char const dropFrame : std::initializer_list<unsigned char>{0, 1}) {
      EXPECT_EQ(CodeOf([&](void* result) { mRoot->setSMPTETimeInfo(dropFrame, row.value, row.scale, result); }), 0);
      EXPECT_TRUE(mRoot->IsDynamicSamplesPresent());
      EXPECT_TRUE(mRoot->IsTimeCodeUsed());
      EXPECT_EQ(mRoot->GetTimeLength(), row.length);
      auto const& info = boost::get<SK_TimeCodeInfo>(mRoot->GetTimeInfo());
      EXPECT_EQ(info.frameRate.value, static_cast<std::int32_t>(row.value));
      EXPECT_EQ(info.frameRate.scale, row.scale);
      EXPECT_EQ(info.dropFrame, dropFrame);
    }
  }
}

TEST_F(Root, CalendarTimesAreAsLongAsTheirFractionAndZone) {
  struct {
    unsigned precision;
    bool isGMT;
    std::uint16_t stored;
    unsigned short length;
  } const rows[] = {
      {0, true, 0, 20},
      {0, false, 0, 25},
      {1, true, 1, 22},
      {1, false, 1, 27},
      {3, true, 3, 24},
      {3, false, 3, 29},
      {9, true, 9, 30},
      {9, false, 9, 35},
      {65536 + 3, true, 3, 24},
      {65536, true, 0, 20},
      {65514, true, 65514, 65535},
      {65515, true, 65515, 0},
  };
  for (auto const& row : rows) {
    SCOPED_TRACE(row.precision);
    unsigned char const isGMT = row.isGMT ? 1 : 0;
    EXPECT_EQ(CodeOf([&](void* result) { mRoot->setUTCTimeInfo(row.precision, isGMT, result); }), 0);
    EXPECT_TRUE(mRoot->IsDynamicSamplesPresent());
    EXPECT_FALSE(mRoot->IsTimeCodeUsed());
    EXPECT_EQ(mRoot->GetUTCPrecision(), row.stored);
    EXPECT_EQ(mRoot->GetTimeLength(), row.length);
    auto const& info = boost::get<SK_UTCInfo>(mRoot->GetTimeInfo());
    EXPECT_EQ(info.precisionLength, row.stored);
    EXPECT_EQ(info.isGMT, row.isGMT);
  }
}

TEST_F(Root, TheLastTimeBaseHolds) {
  mRoot->SetSMPTETimeInfo(true, 30000, 1001);
  EXPECT_TRUE(mRoot->IsTimeCodeUsed());
  EXPECT_EQ(boost::get<SK_TimeCodeInfo>(mRoot->GetTimeInfo()).dropFrame, 1);
  mRoot->SetUTCTimeInfo(6, false);
  EXPECT_FALSE(mRoot->IsTimeCodeUsed());
  EXPECT_EQ(mRoot->GetTimeLength(), 32);
  EXPECT_FALSE(boost::get<SK_UTCInfo>(mRoot->GetTimeInfo()).isGMT);
  mRoot->SetSMPTETimeInfo(false, 120, 1);
  EXPECT_TRUE(mRoot->IsTimeCodeUsed());
  EXPECT_EQ(mRoot->GetTimeLength(), 12);
  EXPECT_EQ(boost::get<SK_TimeCodeInfo>(mRoot->GetTimeInfo()).dropFrame, 0);
}

TEST_F(Root, SyncTimesKeepTheirOrderAndKind) {
  EXPECT_EQ(CodeOf([&](void* result) { mRoot->addSyncTimeFrameNum("a.mov", -7, result); }), 0);
  EXPECT_EQ(CodeOf([&](void* result) { mRoot->addSyncTimeStr("b.mov", "10:00:00:00 and more", 11, result); }), 0);
  mRoot->AddSyncTimeFrameNum("", 0);
  std::string const whole("1\0\"2", 4);
  mRoot->AddSyncTimeStr("c \"quoted\".mov", whole);
  std::vector<SK_VideoSyncTime> const& list = mRoot->GetVideoSyncTimeList();
  ASSERT_EQ(list.size(), 4u);
  EXPECT_EQ(list[0].fileName, "a.mov");
  EXPECT_EQ(boost::get<int>(list[0].value.value), -7);
  EXPECT_EQ(list[1].fileName, "b.mov");
  EXPECT_EQ(boost::get<std::string>(list[1].value.value), "10:00:00:00");
  EXPECT_EQ(list[2].fileName, "");
  EXPECT_EQ(boost::get<int>(list[2].value.value), 0);
  EXPECT_EQ(list[3].fileName, "c \"quoted\".mov");
  EXPECT_EQ(boost::get<std::string>(list[3].value.value), whole);
  for (SK_VideoSyncTime const& entry : list) {
    EXPECT_EQ(entry.kind, 2);
  }
}

TEST_F(Root, TheCreatorIsEscapedAsItComesIn) {
  EXPECT_EQ(CodeOf([&](void* result) { mRoot->setCreator("a \"creator\"\n", result); }), 0);
  EXPECT_EQ(mRoot->GetCreator(), R"(a \"creator\"\n)");
  mRoot->SetCreator(std::string("C:\\\0x", 5));
  EXPECT_EQ(mRoot->GetCreator(), std::string("C:\\\\\0x", 6));
  mRoot->SetCreator("");
  EXPECT_EQ(mRoot->GetCreator(), "");
}

TEST_F(Root, OnlyTheFirstSetIsTheFirst) {
  EXPECT_TRUE(mRoot->SetHasFirstSetArrived());
  EXPECT_FALSE(mRoot->SetHasFirstSetArrived());
  EXPECT_FALSE(mRoot->SetHasFirstSetArrived());
  mRoot->ResetRoot();
  EXPECT_TRUE(mRoot->SetHasFirstSetArrived());
  EXPECT_FALSE(mRoot->SetHasFirstSetArrived());
}

TEST_F(Root, AResetKeepsWhatIsNotOfTheOutline) {
  mRoot->SetSMPTETimeInfo(true, 120, 1);
  mRoot->SetCreator("creator");
  mRoot->AddSyncTimeFrameNum("a.mov", 3);
  AddFlag();
  mRoot->AddGroup(OwnNewObject(new TdjsonGroupImpl(this, "g", "g")));
  mRoot->ResetRoot();
  ExpectNoChildren();
  EXPECT_EQ(mRoot->GetMatchName(), "root");
  EXPECT_EQ(mRoot->GetDisplayName(), "root");
  EXPECT_EQ(mRoot->GetCreator(), "creator");
  EXPECT_EQ(mRoot->GetTDJSONPath(), mPath);
  EXPECT_EQ(mRoot->GetVideoSyncTimeList().size(), 1u);
  EXPECT_TRUE(mRoot->IsDynamicSamplesPresent());
  EXPECT_TRUE(mRoot->IsTimeCodeUsed());
  EXPECT_EQ(mRoot->GetTimeLength(), 12);
  EXPECT_EQ(mRoot->GetTimeInfo().which(), 1);
}

TEST_F(Root, AResetOfTheGroupLeavesItsName) {
  AddFlag();
  mRoot->ResetGroup();
  ExpectNoChildren();
  EXPECT_EQ(mRoot->GetMatchName(), "root");
}

TEST_F(Root, WriteVersionToFileCreatesTheFile) {
  EXPECT_FALSE(std::filesystem::exists(mPath));
  EXPECT_EQ(CodeOf([&](void* result) { mRoot->writeVersionToFile(result); }), 0);
  EXPECT_EQ(FileText(), kHead);
  mFolder.Write("out.tdjson", "something else");
  mRoot->WriteVersionToFile();
  EXPECT_EQ(FileText(), kHead);
}

TEST_F(Root, ItsCommitFinishesTheFileOnce) {
  mRoot->WriteVersionToFile();
  mRoot->SetCreator("a \"creator\"");
  AddFlag();
  EXPECT_TRUE(mRoot->Commit());
  EXPECT_EQ(FileText(), kWholeFile);
  AddFlag();
  EXPECT_FALSE(mRoot->Commit());
  EXPECT_EQ(CodeOf([&](void* result) { mRoot->commit(result); }), 0);
  EXPECT_EQ(FileText(), kWholeFile);
  EXPECT_EQ(mRoot->GetStaticDataList().size(), 2u);
}

TEST_F(Root, ACommitThroughTheBorderDoesTheSame) {
  mRoot->WriteVersionToFile();
  EXPECT_EQ(CodeOf([&](void* result) { mRoot->setCreator("a \"creator\"", result); }), 0);
  AddFlag();
  EXPECT_EQ(CodeOf([&](void* result) { mRoot->commit(result); }), 0);
  EXPECT_EQ(FileText(), kWholeFile);
  EXPECT_FALSE(mRoot->Commit());
}

TEST_F(Root, AGroupThatWasAddedTwiceIsWrittenTwice) {
  auto const group = OwnNewObject(new TdjsonGroupImpl(this, "a group", "group"));
  group->AddStaticData(OwnNewObject(new TdjsonStaticDataBoolImpl(this, "a flag", "flag", true)));
  mRoot->AddGroup(group);
  mRoot->AddGroup(group);
  EXPECT_TRUE(mRoot->Commit());
  std::string const once = R"({"objectType":"dataGroup","matchName":"group","displayName":"a group","children":[)"
                           R"({"objectType":"dataStatic","matchName":"flag","displayName":"a flag",)"
                           R"("dataType":{"type":"boolean"},"value":true}]})";
  EXPECT_EQ(FileText(), kHead + std::string(R"(,"dataOutline":[)") + once + ',' + once + "]}");
}

TEST_F(Root, AfterAResetItCommitsAnew) {
  mRoot->WriteVersionToFile();
  AddFlag();
  EXPECT_TRUE(mRoot->Commit());
  mRoot->ResetRoot();
  ExpectWriterError([&] { mRoot->Commit(); }, 2021);
}

TEST_F(Root, AFailedCommitLeavesAnEmptyFileAndNoChildren) {
  mRoot->WriteVersionToFile();
  EXPECT_TRUE(mRoot->SetHasFirstSetArrived());
  // A group without anything in it is all there would be.
  mRoot->AddGroup(OwnNewObject(new TdjsonGroupImpl(this, "g", "g")));
  ExpectWriterError([&] { mRoot->Commit(); }, 2000);
  EXPECT_EQ(FileText(), "");
  ExpectNoChildren();
  EXPECT_TRUE(mRoot->SetHasFirstSetArrived());
  EXPECT_EQ(CodeOf([&](void* result) { mRoot->commit(result); }), 2021);
  EXPECT_EQ(FileText(), "");

  mRoot->SetCreator("a \"creator\"");
  AddFlag();
  EXPECT_TRUE(mRoot->Commit());
  EXPECT_EQ(FileText(), kWholeFile);
}

// Neither the outline can be written nor the file be emptied: the first of the two failures is told.
TEST_F(Root, ACleanUpThatFailsTooSaysNothing) {
  mRoot->WriteVersionToFile();
  std::filesystem::remove(mPath);
  std::filesystem::create_directory(mPath);
  AddFlag();
  ExpectWriterError([&] { mRoot->Commit(); }, 1006);
  ExpectNoChildren();
  // From here on it begins with the head again, which needs a new file.
  AddFlag();
  EXPECT_EQ(CodeOf([&](void* result) { mRoot->commit(result); }), 1007);
  EXPECT_EQ(CodeOf([&](void* result) { mRoot->writeVersionToFile(result); }), 1007);
  std::filesystem::remove(mPath);
}

TEST_F(Root, AHeadThatCannotBeWrittenLosesTheChildren) {
  int key = 0;
  std::string const path = mFolder.Path("no such folder") + "/out.tdjson";
  auto const root = OwnNewObject(new TdjsonRootImpl(&key, path.c_str()));
  TdjsonRootImpl::RegisterInstance(&key, root);
  root->AddGroup(OwnNewObject(new TdjsonGroupImpl(this, "g", "g")));
  EXPECT_EQ(CodeOf([&](void* result) { root->writeVersionToFile(result); }), 1007);
  EXPECT_TRUE(root->GetGroupList().empty());
  ExpectError([&] { root->WriteVersionToFile(); }, 1007, kConverterFailed);
  TdjsonRootImpl::RemoveInstance(&key);
}

TEST_F(Root, AFullDiskEmptiesTheFile) {
  AddFlag();
  {
    senmark_test::FileSizeLimit const limit(10);
    EXPECT_EQ(CodeOf([&](void* result) { mRoot->writeVersionToFile(result); }), 1055);
  }
  EXPECT_EQ(FileText(), "");
  ExpectNoChildren();
}

TEST_F(Root, WithoutMemoryEachOfItsCallsIsReported) {
  struct {
    char const* name;
    std::function<void(void*)> call;
  } const calls[] = {
      {"setCreator", [&](void* r) { mRoot->setCreator("a creator that is too long for a short string", r); }},
      {"setSMPTETimeInfo", [&](void* r) { mRoot->setSMPTETimeInfo(0, 25, 1, r); }},
      {"setUTCTimeInfo", [&](void* r) { mRoot->setUTCTimeInfo(3, 1, r); }},
      {"addSyncTimeFrameNum",
       [&](void* r) { mRoot->addSyncTimeFrameNum("a file name that is too long for a short string", 1, r); }},
      {"addSyncTimeStr",
       [&](void* r) {
         mRoot->addSyncTimeStr("a file name that is too long for a short string", "2020-01-02T03:04:05.007Z", 24, r);
       }},
      {"writeVersionToFile", [&](void* r) { mRoot->writeVersionToFile(r); }},
      {"commit", [&](void* r) { mRoot->commit(r); }},
  };
  for (auto const& row : calls) {
    SCOPED_TRACE(row.name);
    std::uint64_t first = 1;
    for (bool failed = true; failed; ++first) {
      std::size_t const syncTimes = mRoot->GetVideoSyncTimeList().size();
      mRoot->ResetRoot();
      AddFlag();
      SK_PluginResult result;
      {
        FailingMemory const failing(first);
        row.call(&result);
        failed = failing.HasFailed();
      }
      ASSERT_EQ(result.mErrorCode, failed ? 1034 : 0) << first;
      if (failed) {
        EXPECT_EQ(mRoot->GetVideoSyncTimeList().size(), syncTimes);
      }
    }
  }
}

TEST(RootRegistry, AnUnknownKeyHasNoRoot) {
  int key = 0;
  EXPECT_EQ(TdjsonRootImpl::GetRoot(&key), nullptr);
  TdjsonRootImpl::RemoveInstance(&key);
  EXPECT_EQ(TdjsonRootImpl::GetRoot(&key), nullptr);
  EXPECT_EQ(TdjsonRootImpl::GetRoot(nullptr), nullptr);
}

/// A root that is counted while it lives.
class CountedRoot : public TdjsonRootImpl {
 public:
  static int gLiving;

  explicit CountedRoot(void* key) : TdjsonGroupImpl(key, "root", "root"), TdjsonRootImpl(key, "never written") {
    ++gLiving;
  }
  ~CountedRoot() override { --gLiving; }
};
int CountedRoot::gLiving = 0;

TEST(RootRegistry, OwnsItsRoots) {
  int key = 0;
  TdjsonRootImpl::RegisterInstance(&key, OwnNewObject(new CountedRoot(&key)));
  EXPECT_EQ(CountedRoot::gLiving, 1);
  EXPECT_NE(TdjsonRootImpl::GetRoot(&key), nullptr);
  TdjsonRootImpl::RemoveInstance(&key);
  EXPECT_EQ(CountedRoot::gLiving, 0);
  EXPECT_EQ(TdjsonRootImpl::GetRoot(&key), nullptr);
}

TEST(RootRegistry, ARootThatIsRemovedLivesOnWithItsOtherOwners) {
  int key = 0;
  std::shared_ptr<TdjsonRootImpl> root = OwnNewObject(new CountedRoot(&key));
  TdjsonRootImpl::RegisterInstance(&key, root);
  TdjsonRootImpl::RemoveInstance(&key);
  EXPECT_EQ(CountedRoot::gLiving, 1);
  root.reset();
  EXPECT_EQ(CountedRoot::gLiving, 0);
}

TEST(RootRegistry, AnEntryThatIsThereStays) {
  int key = 0;
  auto const first = OwnNewObject(new CountedRoot(&key));
  TdjsonRootImpl::RegisterInstance(&key, first);
  TdjsonRootImpl::RegisterInstance(&key, OwnNewObject(new CountedRoot(&key)));
  EXPECT_EQ(TdjsonRootImpl::GetRoot(&key), first);
  EXPECT_EQ(CountedRoot::gLiving, 1);
  TdjsonRootImpl::RemoveInstance(&key);
}

TEST(RootRegistry, TheKeysAreApart) {
  int keys[2] = {};
  auto const first = OwnNewObject(new CountedRoot(&keys[0]));
  auto const second = OwnNewObject(new CountedRoot(&keys[1]));
  TdjsonRootImpl::RegisterInstance(&keys[0], first);
  TdjsonRootImpl::RegisterInstance(&keys[1], second);
  EXPECT_EQ(TdjsonRootImpl::GetRoot(&keys[0]), first);
  EXPECT_EQ(TdjsonRootImpl::GetRoot(&keys[1]), second);
  EXPECT_NE(&TdjsonRootImpl::GetSerializer(&keys[0]), &TdjsonRootImpl::GetSerializer(&keys[1]));
  TdjsonRootImpl::RemoveInstance(&keys[0]);
  EXPECT_EQ(TdjsonRootImpl::GetRoot(&keys[1]), second);
  TdjsonRootImpl::RemoveInstance(&keys[1]);
}

// The entry that such a question leaves behind has no root, and stays like any other.
TEST(RootRegistry, AskingForASerializerMakesAnEntry) {
  int key = 0;
  Serializer* const serializer = &TdjsonRootImpl::GetSerializer(&key);
  EXPECT_EQ(&TdjsonRootImpl::GetSerializer(&key), serializer);
  EXPECT_EQ(TdjsonRootImpl::GetRoot(&key), nullptr);
  TdjsonRootImpl::RegisterInstance(&key, OwnNewObject(new CountedRoot(&key)));
  EXPECT_EQ(TdjsonRootImpl::GetRoot(&key), nullptr);
  EXPECT_EQ(CountedRoot::gLiving, 0);
  TdjsonRootImpl::RemoveInstance(&key);
}

TEST(RootRegistry, LetsGoOfTheRootsOfOneFile) {
  int keys[4] = {};
  auto const add = [&](int index, char const* path) {
    TdjsonRootImpl::RegisterInstance(&keys[index], OwnNewObject(new TdjsonRootImpl(&keys[index], path)));
  };
  add(0, "/a");
  add(1, "/b");
  add(2, "/a");
  TdjsonRootImpl::GetSerializer(&keys[3]);
  TdjsonRootImpl::RemoveInstancesOf("/a");
  EXPECT_EQ(TdjsonRootImpl::GetRoot(&keys[0]), nullptr);
  EXPECT_NE(TdjsonRootImpl::GetRoot(&keys[1]), nullptr);
  EXPECT_EQ(TdjsonRootImpl::GetRoot(&keys[2]), nullptr);
  // Nobody's entry is in nobody's way any more.
  add(3, "/d");
  EXPECT_NE(TdjsonRootImpl::GetRoot(&keys[3]), nullptr);
  TdjsonRootImpl::RemoveInstance(&keys[1]);
  TdjsonRootImpl::RemoveInstance(&keys[3]);
}

TEST(RootRegistry, ARootBehindItsRemovalWritesNothing) {
  int key = 0;
  TempFolder const folder;
  std::string const path = folder.Path("out.tdjson");
  auto const root = OwnNewObject(new TdjsonRootImpl(&key, path.c_str()));
  EXPECT_EQ(CodeOf([&](void* result) { root->writeVersionToFile(result); }), 2005);
  EXPECT_EQ(CodeOf([&](void* result) { root->commit(result); }), 2005);
  EXPECT_FALSE(std::filesystem::exists(path));
  TdjsonRootImpl::RemoveInstance(&key);
}

}  // namespace
}  // namespace SK_PLUGIN
