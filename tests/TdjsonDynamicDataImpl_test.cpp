#include "TdjsonDynamicDataImpl.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <new>
#include <ostream>
#include <type_traits>

#include "DynamicNodes.h"
#include "ExpectError.h"
#include "FailingMemory.h"
#include "WriterErrors.h"

namespace SK_PLUGIN {
namespace {

using senmark_test::Add;
using senmark_test::CodeOf;
using senmark_test::DynamicNodes;
using senmark_test::ExpectError;
using senmark_test::ExpectWriterError;
using senmark_test::FailingCall;
using senmark_test::FailingMemory;
using senmark_test::kConverterFailed;
using senmark_test::kTimeCodeHead;
using senmark_test::SK_DateTimeSMPTE;
using senmark_test::SK_DateTimeUTC;
using senmark_test::TimeCode;

/// What every kind of stream has in common, tried on each.
template <typename Node>
class EveryDynamicNode : public DynamicNodes {
 protected:
  /// How the value of `Add` stands in the file.
  static std::string ValueText() {
    if (std::is_same_v<Node, TdjsonDynamicDataNumImpl>) {
      return R"("5")";
    }
    return std::is_same_v<Node, TdjsonDynamicDataStringImpl> ? R"({"length":"2","str":"ab"})" : R"(["1","2","3"])";
  }
  /// As `Add`, but at the start of the file and without an expectation of its own, which would need memory.
  static bool AddQuietly(TdjsonDynamicDataNumArrImpl& node, SK_PluginResult& result) {
    return node.addElement(1, &result) && node.addElement(2, &result) && node.addElement(3, &result) &&
           node.addTimeSMPTE(0, 0, 0, 0, &result);
  }
  template <typename Other>
  static bool AddQuietly(Other& node, SK_PluginResult& result) {
    return Add(node, TimeCode(0), result);
  }
  static std::string SampleText(std::string const& time) {
    return R"({"time":")" + time + R"(","value":)" + ValueText() + "}";
  }
};

using Kinds = testing::Types<TdjsonDynamicDataNumImpl, TdjsonDynamicDataNumArrImpl, TdjsonDynamicDataStringImpl>;
struct NameOfKind {
  template <typename Node>
  static std::string GetName(int) {
    if (std::is_same_v<Node, TdjsonDynamicDataNumImpl>) {
      return "Num";
    }
    return std::is_same_v<Node, TdjsonDynamicDataStringImpl> ? "String" : "NumArr";
  }
};
TYPED_TEST_SUITE(EveryDynamicNode, Kinds, NameOfKind);

TYPED_TEST(EveryDynamicNode, NeedsARootThatHasATimeBase) {
  int noRootHere = 0;
  ExpectWriterError([&] { TypeParam node(&noRootHere); }, 2005);
  ExpectWriterError([&] { TypeParam node(nullptr); }, 2005);
  ExpectWriterError([&] { TypeParam node(this->Key()); }, 2028);
  this->UseTimeCode();
  TypeParam node(this->Key());
  EXPECT_FALSE(node.isDirty());
}

TYPED_TEST(EveryDynamicNode, IsItselfBehindEachOfItsInterfaces) {
  this->UseTimeCode();
  std::shared_ptr<TypeParam> const node = this->template Make<TypeParam>();
  ITdjsonDynamicData_v1* const base = node.get();
  EXPECT_EQ(dynamic_cast<TypeParam*>(base->GetActualITdjsonDynamicData()), node.get());
  EXPECT_EQ(dynamic_cast<TypeParam*>(node->GetISharedObject_I()), node.get());
  EXPECT_EQ(ITdjsonDynamicData_v1::GetInterfaceVersion(), 1u);
  EXPECT_EQ(ITdjsonDynamicDataNum_v1::GetInterfaceVersion(), 1u);
  EXPECT_EQ(ITdjsonDynamicDataNumArr_v1::GetInterfaceVersion(), 1u);
  EXPECT_EQ(ITdjsonDynamicDataString_v1::GetInterfaceVersion(), 1u);
}

TYPED_TEST(EveryDynamicNode, TakesTheTimeBaseAsItStandsWhenItIsMade) {
  this->UseTimeCode();
  std::shared_ptr<TypeParam> const node = this->template Make<TypeParam>();
  this->UseUTC(3, true);
  SK_PluginResult result;
  EXPECT_TRUE(Add(*node, SK_DateTimeSMPTE{1, 2, 3, 4}, result));
  EXPECT_FALSE(Add(*node, SK_DateTimeUTC{2020, 1, 2, 3, 4, 5, 'Z', 0, 0, 7}, result));
  EXPECT_EQ(result.mErrorCode, 0);
}

TYPED_TEST(EveryDynamicNode, CommitAppendsTheSetInOrderOfArrival) {
  this->UseTimeCode();
  std::shared_ptr<TypeParam> const node = this->template Make<TypeParam>();
  SK_PluginResult result;
  EXPECT_TRUE(Add(*node, SK_DateTimeSMPTE{1, 2, 3, 4}, result));
  EXPECT_TRUE(Add(*node, SK_DateTimeSMPTE{0, 0, 0, 24}, result));
  EXPECT_EQ(node->GetSampleCount(), 0u);
  EXPECT_TRUE(node->Commit());
  EXPECT_EQ(result.mErrorCode, 0);
  EXPECT_EQ(node->GetSampleCount(), 2u);
  EXPECT_EQ(this->FileText(), kTimeCodeHead +
                                  std::string(R"(,"dataDynamicSamples":[{"sampleSetID":"Sarm","samples":[)") +
                                  this->SampleText("01:02:03:04") + ',' + this->SampleText("00:00:00:24") + "]}");
}

TYPED_TEST(EveryDynamicNode, SecondCommitGivesFalseAndWritesNothing) {
  this->UseTimeCode();
  std::shared_ptr<TypeParam> const node = this->template Make<TypeParam>();
  SK_PluginResult result;
  EXPECT_TRUE(Add(*node, TimeCode(0), result));
  EXPECT_TRUE(node->Commit());
  std::string const before = this->FileText();
  EXPECT_FALSE(node->Commit());
  node->commit(&result);
  EXPECT_EQ(result.mErrorCode, 0);
  EXPECT_EQ(this->FileText(), before);
}

TYPED_TEST(EveryDynamicNode, CommitWithoutSamplesWritesNothingAndSucceeds) {
  this->UseTimeCode();
  std::shared_ptr<TypeParam> const node = this->template Make<TypeParam>();
  EXPECT_TRUE(node->Commit());
  EXPECT_FALSE(std::filesystem::exists(this->mPath));
  EXPECT_EQ(node->GetSampleCount(), 0u);
  EXPECT_FALSE(node->Commit());
  EXPECT_FALSE(node->isDirty());
}

TYPED_TEST(EveryDynamicNode, StatedCountStaysAndAllSamplesAreWritten) {
  this->UseTimeCode();
  std::shared_ptr<TypeParam> const node = this->template Make<TypeParam>();
  SK_PluginResult result;
  node->SetSampleCount(5);
  std::string samples;
  for (int index = 0; index < 7; ++index) {
    EXPECT_TRUE(Add(*node, TimeCode(index), result));
    samples += (index == 0 ? "" : ",") + this->SampleText("00:00:00:0" + std::to_string(index));
  }
  EXPECT_TRUE(node->Commit());
  EXPECT_EQ(node->GetSampleCount(), 5u);
  EXPECT_EQ(
      this->FileText(),
      kTimeCodeHead + std::string(R"(,"dataDynamicSamples":[{"sampleSetID":"Sarm","samples":[)") + samples + "]}");
}

TYPED_TEST(EveryDynamicNode, CountIsDroppedAfterTheCommit) {
  this->UseTimeCode();
  std::shared_ptr<TypeParam> const node = this->template Make<TypeParam>();
  SK_PluginResult result;
  EXPECT_TRUE(Add(*node, TimeCode(0), result));
  node->SetSampleCount(9);
  EXPECT_EQ(node->GetSampleCount(), 9u);
  node->SetSampleCount(0);
  EXPECT_TRUE(node->Commit());
  node->SetSampleCount(9);
  EXPECT_EQ(node->GetSampleCount(), 1u);
}

TYPED_TEST(EveryDynamicNode, TimeOfTheOtherKindIsNotTaken) {
  SK_PluginResult result;
  this->UseTimeCode();
  std::shared_ptr<TypeParam> const withTimeCode = this->template Make<TypeParam>();
  EXPECT_FALSE(Add(*withTimeCode, SK_DateTimeUTC{2020, 1, 2, 3, 4, 5, 'Z', 0, 0, 7}, result));
  this->UseUTC(3, true);
  std::shared_ptr<TypeParam> const withUTC = this->template Make<TypeParam>();
  EXPECT_FALSE(Add(*withUTC, SK_DateTimeSMPTE{1, 2, 3, 4}, result));
  EXPECT_EQ(result.mErrorCode, 0);
  EXPECT_FALSE(withTimeCode->isDirty() || withUTC->isDirty());
  // Neither was counted, and both go on.
  EXPECT_TRUE(Add(*withTimeCode, SK_DateTimeSMPTE{1, 2, 3, 4}, result));
  EXPECT_TRUE(Add(*withUTC, SK_DateTimeUTC{2020, 1, 2, 3, 4, 5, 'Z', 0, 0, 7}, result));
  EXPECT_TRUE(withTimeCode->Commit());
  EXPECT_EQ(withTimeCode->GetSampleCount(), 1u);
}

TYPED_TEST(EveryDynamicNode, FrameNumberThatIsTooLongIsNotTaken) {
  this->UseTimeCode();
  std::shared_ptr<TypeParam> const node = this->template Make<TypeParam>();
  SK_PluginResult result;
  EXPECT_FALSE(Add(*node, SK_DateTimeSMPTE{0, 0, 0, 1000}, result));
  EXPECT_FALSE(Add(*node, SK_DateTimeSMPTE{100, 0, 0, 0}, result));
  EXPECT_EQ(result.mErrorCode, 0);
  EXPECT_TRUE(Add(*node, SK_DateTimeSMPTE{99, 0, 0, 0}, result));
  EXPECT_TRUE(node->Commit());
  EXPECT_EQ(node->GetSampleCount(), 1u);
}

/// Fills a node until its samples no longer fit in memory and the disk is asked for.
template <typename Node>
bool FillUntilRefused(Node& node, SK_PluginResult& result) {
  for (int count = 0; count < 200'000; ++count) {
    if (!Add(node, TimeCode(count % 2500), result)) {
      return true;
    }
  }
  return false;
}

TYPED_TEST(EveryDynamicNode, IsDirtyForGoodOnceASampleFailed) {
  this->UseTimeCode();
  std::shared_ptr<TypeParam> const node = this->template Make<TypeParam>();
  {
    senmark_test::FileSizeLimit const noRoom(0);
    SK_PluginResult result;
    EXPECT_TRUE(FillUntilRefused(*node, result));
    EXPECT_EQ(result.mErrorCode, 1055);
    EXPECT_EQ(result.mFileOffset, -1);
    EXPECT_EQ(result.mFileLineNo, -1);
  }
  EXPECT_TRUE(node->isDirty());
  EXPECT_EQ(this->mFolder.TempNames(), "");
  SK_PluginResult refused;
  EXPECT_FALSE(Add(*node, TimeCode(0), refused));
  EXPECT_EQ(refused.mErrorCode, 2001);
  // Also where a clean node would not report anything.
  refused = SK_PluginResult();
  EXPECT_FALSE(Add(*node, SK_DateTimeUTC{2020, 1, 2, 3, 4, 5, 'Z', 0, 0, 7}, refused));
  EXPECT_EQ(refused.mErrorCode, 2001);
  ExpectWriterError([&] { node->Commit(); }, 2001);
  EXPECT_EQ(CodeOf([&](void* record) { node->commit(record); }), 2001);
  EXPECT_FALSE(std::filesystem::exists(this->mPath));
}

TYPED_TEST(EveryDynamicNode, SamplesBeyondOneMebibyteComeBackFromTheDisk) {
  this->UseTimeCode();
  std::shared_ptr<TypeParam> const node = this->template Make<TypeParam>();
  SK_PluginResult result;
  std::string samples;
  for (int index = 0; index < 150'000; ++index) {
    ASSERT_TRUE(Add(*node, TimeCode(index % 1000), result));
    int const second = index % 1000 / 25;
    int const frame = index % 25;
    samples += index == 0 ? "" : ",";
    samples += this->SampleText(std::string("00:00:") + (second < 10 ? "0" : "") + std::to_string(second) +
                                (frame < 10 ? ":0" : ":") + std::to_string(frame));
  }
  EXPECT_NE(this->mFolder.TempNames(), "");
  EXPECT_TRUE(node->Commit());
  EXPECT_EQ(this->mFolder.TempNames(), "");
  // Not EXPECT_EQ, which would print megabytes.
  EXPECT_TRUE(this->FileText() == kTimeCodeHead +
                                      std::string(R"(,"dataDynamicSamples":[{"sampleSetID":"Sarm","samples":[)") +
                                      samples + "]}");
}

TYPED_TEST(EveryDynamicNode, FailedCommitLeavesTheFileAsItWas) {
  this->UseTimeCode();
  SK_PluginResult result;
  std::shared_ptr<TypeParam> const first = this->template Make<TypeParam>("first");
  EXPECT_TRUE(Add(*first, TimeCode(0), result));
  EXPECT_TRUE(first->Commit());
  std::string const before = this->FileText();

  std::shared_ptr<TypeParam> const node = this->template Make<TypeParam>();
  for (int index = 0; index < 60'000; ++index) {
    ASSERT_TRUE(Add(*node, TimeCode(index % 1000), result));
  }
  {
    // The first chunk of the set fits, a later one does not.
    senmark_test::FileSizeLimit const someRoom(1'500'000);
    node->commit(&result);
  }
  EXPECT_EQ(result.mErrorCode, 1055);
  EXPECT_TRUE(this->FileText() == before);
  EXPECT_EQ(this->mFolder.TempNames(), "");
  EXPECT_FALSE(node->isDirty());
  // What it knew of the samples stays, but they are lost.
  EXPECT_EQ(node->GetSampleCount(), 60'000u);
}

TYPED_TEST(EveryDynamicNode, FailedCommitOfTheFirstSetLeavesTheHead) {
  this->UseTimeCode();
  std::shared_ptr<TypeParam> const node = this->template Make<TypeParam>();
  SK_PluginResult result;
  EXPECT_TRUE(Add(*node, TimeCode(0), result));
  this->mRoot->WriteVersionToFile();
  {
    senmark_test::FileSizeLimit const noRoom(std::strlen(kTimeCodeHead) + 10);
    ExpectWriterError([&] { node->Commit(); }, 1055);
  }
  EXPECT_EQ(this->FileText(), kTimeCodeHead);
}

TYPED_TEST(EveryDynamicNode, FailedHeadFailsTheCommitWithItsCode) {
  this->UseTimeCode();
  std::shared_ptr<TypeParam> const node = this->template Make<TypeParam>();
  SK_PluginResult result;
  EXPECT_TRUE(Add(*node, TimeCode(0), result));
  std::filesystem::create_directory(this->mPath);
  ExpectWriterError([&] { node->Commit(); }, 1007);
  EXPECT_TRUE(std::filesystem::is_directory(this->mPath));
}

TYPED_TEST(EveryDynamicNode, FailedRollBackEmptiesTheFileAndIsWhatIsTold) {
  this->UseTimeCode();
  SK_PluginResult result;
  std::shared_ptr<TypeParam> const first = this->template Make<TypeParam>("first");
  EXPECT_TRUE(Add(*first, TimeCode(0), result));
  EXPECT_TRUE(first->Commit());
  std::shared_ptr<TypeParam> const node = this->template Make<TypeParam>();
  EXPECT_TRUE(Add(*node, TimeCode(0), result));
  {
    FailingCall const noWrite(senmark_test::kWrite, ENOSPC);
    FailingCall const noCut(senmark_test::kFtruncate, EIO);
    ExpectWriterError([&] { node->Commit(); }, 2004);
  }
  EXPECT_EQ(this->FileText(), "");
  EXPECT_FALSE(node->isDirty());
}

/// A node has no defined use after a commit that failed; this is what it does.
TYPED_TEST(EveryDynamicNode, LostSamplesStayLost) {
  this->UseTimeCode();
  std::shared_ptr<TypeParam> const node = this->template Make<TypeParam>();
  SK_PluginResult result;
  EXPECT_TRUE(Add(*node, TimeCode(0), result));
  this->mRoot->WriteVersionToFile();
  {
    FailingCall const noWrite(senmark_test::kWrite, ENOSPC);
    ExpectWriterError([&] { node->Commit(); }, 1034);
  }
  EXPECT_TRUE(node->Commit());
  // The root still takes the first set for written, so a comma leads this one.
  EXPECT_EQ(this->FileText(),
            kTimeCodeHead + std::string(R"(,"dataDynamicSamples":[,{"sampleSetID":"Sarm","samples":[]})"));
}

TYPED_TEST(EveryDynamicNode, SamplesBehindTheCommitReachNoFile) {
  this->UseTimeCode();
  std::shared_ptr<TypeParam> node = this->template Make<TypeParam>();
  SK_PluginResult result;
  EXPECT_TRUE(Add(*node, TimeCode(0), result));
  EXPECT_TRUE(node->Commit());
  std::string const before = this->FileText();
  for (int index = 0; index < 150'000; ++index) {
    ASSERT_TRUE(Add(*node, TimeCode(index % 1000), result));
  }
  EXPECT_FALSE(node->Commit());
  EXPECT_EQ(node->GetSampleCount(), 1u);
  EXPECT_EQ(this->FileText(), before);
  node.reset();
  EXPECT_EQ(this->mFolder.TempNames(), "");
}

TYPED_TEST(EveryDynamicNode, CommitNeedsTheRootToBeThereStill) {
  this->UseTimeCode();
  std::shared_ptr<TypeParam> const node = this->template Make<TypeParam>();
  SK_PluginResult result;
  EXPECT_TRUE(Add(*node, TimeCode(0), result));
  TdjsonRootImpl::RemoveInstance(this->Key());
  ExpectWriterError([&] { node->Commit(); }, 2005);
  EXPECT_FALSE(std::filesystem::exists(this->mPath));
}

struct FaultRow {
  char const* name;
  senmark_test::eCall call;
  int reason;
  int code;
};
constexpr FaultRow kDumpFaults[] = {
    {"FullDisk", senmark_test::kWrite, ENOSPC, 1034},
    {"BrokenDisk", senmark_test::kWrite, EIO, 1055},
    {"NoTemporaryFile", senmark_test::kMkostemp, EACCES, 1015},
};

TYPED_TEST(EveryDynamicNode, EveryFaultOfTheTemporaryFileIsToldAndNothingIsLeft) {
  this->UseTimeCode();
  for (FaultRow const& row : kDumpFaults) {
    SCOPED_TRACE(row.name);
    std::shared_ptr<TypeParam> const node = this->template Make<TypeParam>();
    SK_PluginResult result;
    FailingCall const fault(row.call, row.reason);
    EXPECT_TRUE(FillUntilRefused(*node, result));
    EXPECT_EQ(result.mErrorCode, row.code);
    EXPECT_TRUE(node->isDirty());
    EXPECT_EQ(this->mFolder.TempNames(), "");
  }
}

/// Whichever allocation is the one that fails, nothing is thrown, and a sample is taken whole or the node is dirty.
TYPED_TEST(EveryDynamicNode, SampleWithoutMemoryIsTakenOrTheNodeIsDirty) {
  this->UseTimeCode();
  std::uint64_t failures = 0;
  for (bool hasFailed = true; hasFailed; ++failures) {
    ASSERT_LT(failures, 100u);
    std::shared_ptr<TypeParam> const node = this->template Make<TypeParam>();
    SK_PluginResult result;
    bool taken = false;
    {
      FailingMemory const failing(failures + 1, FailingMemory::kAll);
      // More than one, for the first needs none.
      taken = this->AddQuietly(*node, result) && this->AddQuietly(*node, result) && this->AddQuietly(*node, result);
      hasFailed = failing.HasFailed();
    }
    EXPECT_EQ(node->isDirty(), !taken);
    EXPECT_EQ(result.mErrorCode, taken ? 0 : 1034);
  }
  EXPECT_GT(failures, 1u);
}

TYPED_TEST(EveryDynamicNode, CommitWithoutMemoryLeavesTheWholeSetOrNoneOfIt) {
  this->UseTimeCode();
  this->mRoot->WriteVersionToFile();
  std::string const set = R"({"sampleSetID":"Sarm","samples":[)" + this->SampleText("00:00:00:00") + "]}";
  std::uint64_t failures = 0;
  for (bool hasFailed = true; hasFailed; ++failures) {
    ASSERT_LT(failures, 1000u);
    std::shared_ptr<TypeParam> const node = this->template Make<TypeParam>();
    SK_PluginResult result;
    EXPECT_TRUE(Add(*node, TimeCode(0), result));
    std::string const before = this->FileText();
    bool committed = true;
    {
      FailingMemory const failing(failures + 1, FailingMemory::kAll);
      try {
        committed = node->Commit();
      } catch (SK_PluginException const& e) {
        EXPECT_EQ(e.GetErrorCode(), 1034);
        committed = false;
      } catch (std::bad_alloc const&) {
        committed = false;
      }
      hasFailed = failing.HasFailed();
    }
    std::string const after = this->FileText();
    if (committed) {
      EXPECT_EQ(after.substr(after.size() - set.size()), set);
      EXPECT_EQ(after.substr(0, before.size()), before);
    } else {
      EXPECT_EQ(after, before);
    }
  }
  EXPECT_GT(failures, 1u);
}

/// A module that was compiled apart brings its own variant, which may know more kinds of time.
TYPED_TEST(EveryDynamicNode, UnknownKindOfTimeIsAnError) {
  this->UseTimeCode();
  std::shared_ptr<TypeParam> const node = this->template Make<TypeParam>();
  // The variant of a later version, which has one kind more, stands in the same place.
  using LaterTime = boost::variant<SK_DateTimeSMPTE, SK_DateTimeUTC, int>;
  LaterTime const later = 7;
  SampleTime const& time = reinterpret_cast<SampleTime const&>(later);
  ExpectError(
      [&] {
        if constexpr (std::is_same_v<TypeParam, TdjsonDynamicDataNumImpl>) {
          node->AddSample(time, 5.0);
        } else if constexpr (std::is_same_v<TypeParam, TdjsonDynamicDataNumArrImpl>) {
          node->AddSample(time, {1, 2, 3});
        } else {
          node->AddSample(time, "ab");
        }
      },
      2009, kConverterFailed);
  EXPECT_FALSE(node->isDirty());
}

class DynamicInfo : public DynamicNodes {
 protected:
  void SetUp() override {
    DynamicNodes::SetUp();
    UseTimeCode();
    mNode = Make<TdjsonDynamicDataNumImpl>();
  }
  void TearDown() override {
    mNode.reset();
    DynamicNodes::TearDown();
  }

  std::shared_ptr<TdjsonDynamicDataNumImpl> mNode;
};

TEST_F(DynamicInfo, TextsAreEscapedButNotTheMatchName) {
  SK_PluginResult result;
  mNode->setDynamicDataInfo("A\"\n", "b1", "c\\", 7, 2, 3, "\t0", &result);
  EXPECT_EQ(result.mErrorCode, 0);
  ns_sensor::SK_DynamicDataFields const& fields = mNode->GetDynamicDataFields();
  EXPECT_EQ(fields.displayName, R"(A\"\n)");
  EXPECT_EQ(fields.matchName, "b1");
  EXPECT_EQ(fields.sampleSetID, R"(c\\)");
  EXPECT_EQ(fields.sampleCount, 7u);
  EXPECT_EQ(fields.interpolation, ns_sensor::kHoldInterpolation);
  EXPECT_TRUE(fields.hasExpectedFrequencyB);
  EXPECT_EQ(fields.expectedMaxInterSampleDuration, R"(\t0)");
}

struct RefusedName {
  char const* name;
  char const* matchName;
};
class RefusedMatchName : public DynamicInfo, public testing::WithParamInterface<RefusedName> {};

TEST_P(RefusedMatchName, ChangesNothing) {
  SK_PluginResult result;
  mNode->setDynamicDataInfo("other", GetParam().matchName, "other", 7, 2, 1, "other", &result);
  EXPECT_EQ(result.mErrorCode, 2022);
  EXPECT_EQ(result.mFileOffset, -1);
  EXPECT_EQ(result.mFileLineNo, -1);
  ns_sensor::SK_DynamicDataFields const& fields = mNode->GetDynamicDataFields();
  EXPECT_EQ(fields.displayName + fields.matchName + fields.sampleSetID, "ArmarmSarm");
  EXPECT_EQ(fields.sampleCount, 0u);
  EXPECT_EQ(fields.interpolation, ns_sensor::kLinearInterpolation);
}

constexpr RefusedName kRefusedNames[] = {
    {"Null", nullptr}, {"Empty", ""},   {"DigitFirst", "1a"},      {"Underscore", "a_b"},
    {"Hyphen", "a-b"}, {"Space", "a "}, {"NotAscii", "a\xC3\xA4"},
};
INSTANTIATE_TEST_SUITE_P(Names, RefusedMatchName, testing::ValuesIn(kRefusedNames),
                         [](auto const& row) { return std::string(row.param.name); });

struct Interpolation {
  unsigned value;
  int code;
  int stored;
};
void PrintTo(Interpolation const& row, std::ostream* out) {
  *out << row.value;
}
class InterpolationCode : public DynamicInfo, public testing::WithParamInterface<Interpolation> {};

TEST_P(InterpolationCode, IsTheLowByteAndStoredBeforeItIsLookedAt) {
  SK_PluginResult result;
  mNode->setDynamicDataInfo("other", "other", "other", 7, GetParam().value, 1, "other", &result);
  EXPECT_EQ(result.mErrorCode, GetParam().code);
  EXPECT_EQ(mNode->GetDynamicDataFields().interpolation, GetParam().stored);
  EXPECT_EQ(mNode->GetDynamicDataFields().displayName, GetParam().code == 0 ? "other" : "Arm");
}

constexpr Interpolation kInterpolations[] = {{0, 53, 0},     {1, 0, 1},    {2, 0, 2},   {3, 53, 3},
                                             {255, 53, 255}, {256, 53, 0}, {257, 0, 1}, {0xFFFFFF02u, 0, 2}};
INSTANTIATE_TEST_SUITE_P(Values, InterpolationCode, testing::ValuesIn(kInterpolations));

TEST_F(DynamicInfo, MirrorPassesAllFieldsAndThrows) {
  ns_sensor::SK_DynamicDataFields fields;
  fields.displayName = "d";
  fields.matchName = "m";
  fields.sampleSetID = "s";
  fields.sampleCount = 3;
  fields.interpolation = ns_sensor::kHoldInterpolation;
  fields.hasExpectedFrequencyB = true;
  fields.expectedMaxInterSampleDuration = "e";
  mNode->SetDynamicDataInfo(fields);
  ns_sensor::SK_DynamicDataFields const& stored = mNode->GetDynamicDataFields();
  EXPECT_EQ(stored.displayName + stored.matchName + stored.sampleSetID + stored.expectedMaxInterSampleDuration, "dmse");
  EXPECT_EQ(stored.sampleCount, 3u);
  EXPECT_EQ(stored.interpolation, ns_sensor::kHoldInterpolation);
  EXPECT_TRUE(stored.hasExpectedFrequencyB);
  fields.matchName = "9";
  ExpectError([&] { mNode->SetDynamicDataInfo(fields); }, 2022, kConverterFailed);
  fields.matchName = "m";
  fields.interpolation = ns_sensor::kNoInterpolation;
  ExpectError([&] { mNode->SetDynamicDataInfo(fields); }, 53, kConverterFailed);
}

TEST_F(DynamicInfo, DirtyNodeIsNotTakenByAGroup) {
  {
    senmark_test::FileSizeLimit const noRoom(0);
    SK_PluginResult result;
    EXPECT_TRUE(FillUntilRefused(*mNode, result));
  }
  ExpectWriterError([&] { mRoot->AddDynamicData(mNode); }, 2001);
  // A caller of the border form has a reference that counts.
  mNode->Acquire();
  EXPECT_EQ(CodeOf([&](void* result) { mRoot->addDynamicData(mNode.get(), result); }), 2001);
}

}  // namespace
}  // namespace SK_PLUGIN
