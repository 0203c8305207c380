// Every step on the output file fails in its turn: the code, what the file holds afterwards, that no descriptor
// stays open, and that the serializer is as good as before.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <functional>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include "DynamicNodes.h"
#include "FailingCalls.h"
#include "FailingMemory.h"
#include "SK_DumpSamplesUtils.h"
#include "Serializer.h"
#include "TdjsonStaticDataBoolImpl.h"
#include "WriterErrors.h"

namespace SK_PLUGIN {
namespace {

using senmark_test::Add;
using senmark_test::CountOpenDescriptors;
using senmark_test::eCall;
using senmark_test::ExpectWriterError;
using senmark_test::FailingCall;
using senmark_test::FailingMemory;

char const kHead[] = R"({"version":"tdjson2.0.0","dynamicSamplesPresentB":true,"dynamicDataInfo":{"useTimecodeB":true,)"
                     R"("timecodeInfo":{"frameRate":{"value":30,"scale":1},"dropFrame":false}})";
char const kFlagOutline[] =
    R"("dataOutline":[{"objectType":"dataStatic","matchName":"f","displayName":"F","dataType":{"type":"boolean"},)"
    R"("value":true}])";

/// A group with a child that is null: the outline finds that out when it comes there.
class GroupWithNull : public TdjsonGroupImpl {
 public:
  GroupWithNull() : TdjsonGroupImpl(nullptr, "G", "g") {}

  std::vector<std::shared_ptr<TdjsonGroupImpl>> const& GetGroupList() const override { return mNothing; }
  std::vector<NodeInfo> const& GetNodeInfoList() const override { return mOrder; }

 private:
  std::vector<std::shared_ptr<TdjsonGroupImpl>> mNothing{nullptr};
  std::vector<NodeInfo> mOrder{{ns_sensor::kGroupChild, 1}};
};

class SerializerFailures : public testing::Test {
 protected:
  SerializerFailures() { mRoot->setSMPTETimeInfo(0, 30, 1, nullptr); }
  ~SerializerFailures() override { EXPECT_EQ(CountOpenDescriptors(), mOpenBefore); }

  std::string File() const { return mFolder.Read(mPath); }

  void AddFlags(int count) {
    for (int i = 0; i != count; ++i) {
      mRoot->AddStaticData(std::make_shared<TdjsonStaticDataBoolImpl>(nullptr, "F", "f", true));
    }
  }

  /// A set of as many numbers as it has samples, each of `digits` digits.
  void WriteSet(std::string const& id, int samples = 1, std::uint64_t digits = 2) {
    SK_DumpSamplesUtils dump;
    dump.SetTimeLength(2);
    for (int i = 0; i != samples; ++i) {
      dump.WriteSample({"T1"}, "7");
    }
    ns_sensor::SK_NumberProperties properties;
    properties.pattern.digitsInteger = digits;
    properties.pattern.digitsDecimal = 0;
    mSerializer.serialize_NumDynamicSamples(id, dump, static_cast<std::uint64_t>(samples), properties);
  }

  static std::string SetText(std::string const& id) {
    return R"({"sampleSetID":")" + id + R"(","samples":[{"time":"T1","value":"07"}]})";
  }

  /// A whole file, as after a reset.
  void ExpectGoodAsNew() {
    AddFlags(1);
    WriteSet("new");
    mSerializer.serializeRootToFile();
    EXPECT_EQ(File(), std::string(kHead) + R"(,"dataDynamicSamples":[)" + SetText("new") + "]," + kFlagOutline + "}");
  }

  std::size_t const mOpenBefore = CountOpenDescriptors();
  senmark_test::TempFolder mFolder;
  std::string const mPath = mFolder.Path("out.tdjson");
  std::shared_ptr<TdjsonRootImpl> const mRoot = std::make_shared<TdjsonRootImpl>(nullptr, mPath.c_str());
  Serializer mSerializer{mRoot};
};

struct Step {
  char const* name;
  eCall call;
  int reason;
  int passed;  ///< calls of this kind before it
  int code;
};

void PrintTo(Step const& row, std::ostream* out) {
  *out << row.name;
}

std::string NameOf(testing::TestParamInfo<Step> const& row) {
  return row.param.name;
}

// The head.

class FailingHead : public SerializerFailures, public testing::WithParamInterface<Step> {};

TEST_P(FailingHead, LeavesAFileThatCanBeginAnew) {
  Step const& row = GetParam();
  {
    FailingCall const call(row.call, row.reason, row.passed);
    ExpectWriterError([&] { mSerializer.serializeVersionToFile(); }, row.code);
  }
  EXPECT_EQ(CountOpenDescriptors(), mOpenBefore);
  mSerializer.clearFile();
  EXPECT_EQ(File(), "");
  ExpectGoodAsNew();
}

TEST_P(FailingHead, FailsTheSetThatBringsItAlong) {
  Step const& row = GetParam();
  {
    FailingCall const call(row.call, row.reason, row.passed);
    ExpectWriterError([&] { WriteSet("a"); }, row.code);
  }
  EXPECT_EQ(CountOpenDescriptors(), mOpenBefore);
  mSerializer.clearDynamicSamples();
  WriteSet("b");
  EXPECT_EQ(File(), std::string(kHead) + R"(,"dataDynamicSamples":[)" + SetText("b"))
      << "the set that failed came to nothing before it counted as the first";
}

Step const kHeadSteps[] = {
    {"Create", senmark_test::kOpen, ENOENT, 0, 1007},
    {"CreateWithoutPermission", senmark_test::kOpen, EACCES, 0, 1007},
    {"CloseAfterCreate", senmark_test::kClose, EIO, 0, 1008},
    {"Open", senmark_test::kOpen, EMFILE, 1, 1006},
    {"OpenWithoutPermission", senmark_test::kOpen, EACCES, 1, 1013},
    {"WriteToFullDisk", senmark_test::kWrite, ENOSPC, 0, 1034},
    {"Write", senmark_test::kWrite, EIO, 0, 1055},
    {"Close", senmark_test::kClose, EIO, 1, 1008},
};

INSTANTIATE_TEST_SUITE_P(Serializer, FailingHead, testing::ValuesIn(kHeadSteps), NameOf);

TEST_F(SerializerFailures, HeadThatIsCutShortFails) {
  {
    senmark_test::FileSizeLimit const limit(20);
    ExpectWriterError([&] { mSerializer.serializeVersionToFile(); }, 1055);
  }
  EXPECT_EQ(File(), "") << "the part that was written goes again";
  ExpectGoodAsNew();
}

TEST_F(SerializerFailures, HeadWithoutAnOwnerWhoMayWriteFails) {
  mSerializer.serializeVersionToFile();
  senmark_test::FailingFstat const fstat(EIO);
  ExpectWriterError([&] { mSerializer.serializeVersionToFile(); }, 1006);
}

TEST(SerializerFailuresPath, FolderThatDoesNotExistIs1007) {
  senmark_test::TempFolder const folder;
  Serializer serializer(std::make_shared<TdjsonRootImpl>(nullptr, folder.Path("none/out.tdjson").c_str()));
  ExpectWriterError([&] { serializer.serializeVersionToFile(); }, 1007);
  ExpectWriterError([&] { serializer.clearFile(); }, 1007);
}

TEST(SerializerFailuresPath, DiskThatIsFullIs1034) {
  if (!std::filesystem::exists("/dev/full")) {
    GTEST_SKIP() << "no such device here";
  }
  std::size_t const openBefore = CountOpenDescriptors();
  Serializer serializer(std::make_shared<TdjsonRootImpl>(nullptr, "/dev/full"));
  ExpectWriterError([&] { serializer.serializeVersionToFile(); }, 1034);
  EXPECT_EQ(CountOpenDescriptors(), openBefore);
}

TEST(SerializerFailuresPath, FileWithoutPositionsTakesHeadAndTail) {
  senmark_test::TempFolder const folder;
  std::string const path = folder.Path("pipe");
  ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
  int const reader = open(path.c_str(), O_RDONLY | O_NONBLOCK);
  ASSERT_NE(reader, -1);
  auto const root = std::make_shared<TdjsonRootImpl>(nullptr, path.c_str());
  root->AddStaticData(std::make_shared<TdjsonStaticDataBoolImpl>(nullptr, "F", "f", true));
  Serializer(root).serializeRootToFile();
  std::string text(4096, '\0');
  ssize_t const size = read(reader, text.data(), text.size());
  ASSERT_GT(size, 0);
  text.resize(static_cast<std::size_t>(size));
  EXPECT_EQ(text, std::string(R"({"version":"tdjson2.0.0","dynamicSamplesPresentB":false,)") + kFlagOutline + "}");
  close(reader);
}

// One set.

class FailingSet : public SerializerFailures, public testing::WithParamInterface<Step> {};

TEST_P(FailingSet, LeavesTheFileAsItWas) {
  Step const& row = GetParam();
  for (bool const isFirst : {true, false}) {
    mSerializer.serializeVersionToFile();
    if (!isFirst) {
      WriteSet("a");
    }
    std::string const before = File();
    {
      FailingCall const call(row.call, row.reason, row.passed);
      ExpectWriterError([&] { WriteSet("b", 3, 600000); }, row.code);
    }
    mSerializer.clearDynamicSamples();
    EXPECT_EQ(File(), before);
    EXPECT_EQ(CountOpenDescriptors(), mOpenBefore);
    WriteSet("c");
    EXPECT_EQ(File(), before + (isFirst ? R"(,"dataDynamicSamples":[,)" : ",") + SetText("c"));
    mSerializer.clearFile();
  }
}

// Three samples of over half a mebibyte: each one takes an append, and so does the end of the set.
Step const kSetSteps[] = {
    {"Open", senmark_test::kOpen, EMFILE, 0, 1006},
    {"OpenWithoutPermission", senmark_test::kOpen, EACCES, 0, 1013},
    {"FindTheEnd", senmark_test::kLseek, EIO, 0, 1010},
    {"WriteToFullDisk", senmark_test::kWrite, ENOSPC, 0, 1034},
    {"Write", senmark_test::kWrite, EIO, 0, 1055},
    {"WriteInTheMiddleToFullDisk", senmark_test::kWrite, ENOSPC, 1, 1034},
    {"WriteInTheMiddle", senmark_test::kWrite, EIO, 1, 1055},
    {"WriteTheLastToFullDisk", senmark_test::kWrite, ENOSPC, 3, 1034},
    {"WriteTheLast", senmark_test::kWrite, EIO, 3, 1055},
    {"Close", senmark_test::kClose, EIO, 0, 1008},
};

INSTANTIATE_TEST_SUITE_P(Serializer, FailingSet, testing::ValuesIn(kSetSteps), NameOf);

TEST_F(SerializerFailures, SetThatIsCutShortGoesAgain) {
  mSerializer.serializeVersionToFile();
  WriteSet("a");
  std::string const before = File();
  for (std::size_t const room : {std::size_t{0}, std::size_t{1}, std::size_t{700000}, std::size_t{1700000}}) {
    {
      senmark_test::FileSizeLimit const limit(before.size() + room);
      ExpectWriterError([&] { WriteSet("b", 3, 600000); }, 1055);
    }
    mSerializer.clearDynamicSamples();
    EXPECT_EQ(File(), before) << room;
  }
}

// The text of an append shows in the length of the file at which the next one fails.
struct Appends {
  char const* name;
  int samples;
  std::uint64_t digits;
  std::vector<std::size_t> sizes;  ///< of all appends
};

void PrintTo(Appends const& row, std::ostream* out) {
  *out << row.name;
}

class SetAppends : public SerializerFailures, public testing::WithParamInterface<Appends> {};

TEST_P(SetAppends, GoOutOnceThereIsEnough) {
  Appends const& row = GetParam();
  mSerializer.serializeVersionToFile();
  std::size_t expected = File().size();
  for (std::size_t i = 0; i != row.sizes.size(); ++i) {
    {
      FailingCall const call(senmark_test::kWrite, EIO, static_cast<int>(i));
      ExpectWriterError([&] { WriteSet("a", row.samples, row.digits); }, 1055);
    }
    EXPECT_EQ(File().size(), expected) << i;
    expected += row.sizes[i];
    mSerializer.clearFile();
    mSerializer.serializeVersionToFile();
  }
  FailingCall const noMore(senmark_test::kWrite, EIO, static_cast<int>(row.sizes.size()));
  WriteSet("a", row.samples, row.digits);
  EXPECT_EQ(File().size(), expected);
}

// A set begins with the 53 bytes of ,"dataDynamicSamples":[{"sampleSetID":"a","samples":[ and ends with ]}. A sample
// is its digits and the 24 bytes of {"time":"T1","value":""}, and a comma if it is not the first.
// Once the end of the file is known, that is from the second append on, all but the last end at a multiple of 262,144
// bytes of the file; the head has 164.
Appends const kAppends[] = {
    {"OneByteBelowTheLimit", 1, 262066, {262145}},
    {"AtTheLimit", 1, 262067, {262144, 2}},
    {"OneByteAboveTheLimit", 1, 262068, {262144, 3}},
    {"FarAboveTheLimit", 2, 3000000, {11 * 262144, 11 * 262144 - 164, 233100}},
    {"TwoBelow", 2, 131020, {262144}},
    {"TwoAtTheLimit", 2, 131021, {262144, 2}},
    {"ThirdBehindTheLimit", 3, 131021, {262144, 131048}},
    {"Small", 3, 2, {53 + 26 + 27 + 27 + 2}},
};

INSTANTIATE_TEST_SUITE_P(Serializer, SetAppends, testing::ValuesIn(kAppends),
                         [](auto const& row) { return std::string(row.param.name); });

// The way back.

class FailingRollBack : public SerializerFailures, public testing::WithParamInterface<Step> {};

TEST_P(FailingRollBack, EmptiesTheFile) {
  Step const& row = GetParam();
  AddFlags(1);
  WriteSet("a");
  {
    FailingCall const write(senmark_test::kWrite, ENOSPC, 1);
    ExpectWriterError([&] { WriteSet("b", 3, 600000); }, 1034);
  }
  {
    FailingCall const call(row.call, row.reason, row.passed, 1);
    ExpectWriterError([&] { mSerializer.clearDynamicSamples(); }, row.code);
    EXPECT_TRUE(call.HasFailed());
  }
  EXPECT_EQ(CountOpenDescriptors(), mOpenBefore);
  EXPECT_EQ(File(), "");
  EXPECT_TRUE(mRoot->GetNodeInfoList().empty());
  // A place in the file that is gone does not matter to the next set that fails.
  mSerializer.serializeVersionToFile();
  {
    FailingCall const write(senmark_test::kWrite, EIO, 0);
    ExpectWriterError([&] { WriteSet("c"); }, 1055);
  }
  mSerializer.clearDynamicSamples();
  EXPECT_EQ(File(), kHead);
  mSerializer.clearFile();
  ExpectGoodAsNew();
}

Step const kRollBackSteps[] = {
    {"CloseTheSet", senmark_test::kClose, EIO, 0, 2004},
    {"Open", senmark_test::kOpen, EMFILE, 0, 2004},
    {"Cut", senmark_test::kFtruncate, EIO, 0, 2004},
    {"Close", senmark_test::kClose, EIO, 1, 2004},
};

INSTANTIATE_TEST_SUITE_P(Serializer, FailingRollBack, testing::ValuesIn(kRollBackSteps), NameOf);

TEST_F(SerializerFailures, RollBackThatCannotEvenEmptyTheFileIs2004) {
  WriteSet("a");
  std::string const before = File();
  {
    FailingCall const write(senmark_test::kWrite, EIO, 1);
    ExpectWriterError([&] { WriteSet("b", 3, 600000); }, 1055);
    FailingCall const open(senmark_test::kOpen, EMFILE);
    ExpectWriterError([&] { mSerializer.clearDynamicSamples(); }, 2004);
  }
  EXPECT_EQ(File().substr(0, before.size()), before);
  EXPECT_EQ(CountOpenDescriptors(), mOpenBefore);
  ExpectGoodAsNew();
}

// The tail.

class FailingTail : public SerializerFailures, public testing::WithParamInterface<Step> {};

TEST_P(FailingTail, IsCutOffAndTheFileEmptiedByTheRoot) {
  Step const& row = GetParam();
  AddFlags(20000);  // two pieces and a rest
  WriteSet("a");
  std::string const before = File();
  {
    FailingCall const call(row.call, row.reason, row.passed);
    ExpectWriterError([&] { mSerializer.serializeRootToFile(); }, row.code);
  }
  EXPECT_EQ(CountOpenDescriptors(), mOpenBefore);
  EXPECT_EQ(File().substr(0, before.size()), before);
  if (row.call != senmark_test::kClose) {
    EXPECT_EQ(File().size(), before.size());
  }
  mSerializer.clearFile();
  EXPECT_EQ(File(), "");
  ExpectGoodAsNew();
}

Step const kTailSteps[] = {
    {"Open", senmark_test::kOpen, EMFILE, 0, 1006},
    {"OpenWithoutPermission", senmark_test::kOpen, EACCES, 0, 1013},
    {"WriteToFullDisk", senmark_test::kWrite, ENOSPC, 0, 1034},
    {"Write", senmark_test::kWrite, EIO, 0, 1055},
    {"WriteInTheMiddleToFullDisk", senmark_test::kWrite, ENOSPC, 1, 1034},
    {"WriteTheLast", senmark_test::kWrite, EIO, 2, 1055},
    {"Close", senmark_test::kClose, EIO, 0, 1008},
};

INSTANTIATE_TEST_SUITE_P(Serializer, FailingTail, testing::ValuesIn(kTailSteps), NameOf);

TEST_F(SerializerFailures, TailGoesOutInThreeAppends) {
  AddFlags(20000);
  WriteSet("a");
  FailingCall const write(senmark_test::kWrite, EIO, 3);
  mSerializer.serializeRootToFile();
  EXPECT_FALSE(write.HasFailed());
}

TEST_F(SerializerFailures, FaultOfTheOutlineIsToldBeforeOneOfTheDisk) {
  AddFlags(20000);
  mRoot->AddGroup(std::make_shared<GroupWithNull>());
  WriteSet("a");
  std::string const before = File();
  for (eCall const call : {senmark_test::kOpen, senmark_test::kWrite, senmark_test::kClose}) {
    {
      FailingCall const failing(call, EIO);
      ExpectWriterError([&] { mSerializer.serializeRootToFile(); }, 2003);
      EXPECT_TRUE(failing.HasFailed());
    }
    EXPECT_EQ(File(), before);
  }
  ExpectWriterError([&] { mSerializer.serializeRootToFile(); }, 2003);
  EXPECT_EQ(File(), before);
}

TEST_F(SerializerFailures, FirstFailureOfATailIsTold) {
  AddFlags(20000);
  WriteSet("a");
  FailingCall const open(senmark_test::kOpen, EMFILE, 0, 1);
  FailingCall const write(senmark_test::kWrite, EIO);
  ExpectWriterError([&] { mSerializer.serializeRootToFile(); }, 1006);
  EXPECT_FALSE(write.HasFailed());
}

class FailingPromise : public SerializerFailures, public testing::WithParamInterface<Step> {};

TEST_P(FailingPromise, OfSamplesCannotBeTakenBack) {
  Step const& row = GetParam();
  mSerializer.serializeVersionToFile();
  {
    FailingCall const call(row.call, row.reason, row.passed);
    // Before the outline is looked at, which has no children.
    ExpectWriterError([&] { mSerializer.serializeRootToFile(); }, row.code);
  }
  EXPECT_EQ(CountOpenDescriptors(), mOpenBefore);
  mSerializer.clearFile();
  ExpectGoodAsNew();
}

Step const kPromiseSteps[] = {
    {"Open", senmark_test::kOpen, EMFILE, 0, 1006},
    {"OpenWithoutPermission", senmark_test::kOpen, EACCES, 0, 1013},
    {"Cut", senmark_test::kFtruncate, EIO, 0, 1010},
    {"Close", senmark_test::kClose, EIO, 0, 1008},
};

INSTANTIATE_TEST_SUITE_P(Serializer, FailingPromise, testing::ValuesIn(kPromiseSteps), NameOf);

TEST_F(SerializerFailures, FileThatCannotBeEmptiedIs1007) {
  WriteSet("a");
  FailingCall const open(senmark_test::kOpen, EMFILE);
  ExpectWriterError([&] { mSerializer.clearFile(); }, 1007);
}

// Memory.

/// Runs `body` once for each of its allocations, which fails alone, and at last with all of them. It succeeds or
/// ends for want of memory; `check` is told which.
void WithEachAllocationFailing(std::function<void()> const& body, std::function<void(bool succeeded)> const& check) {
  bool hasFailed = true;
  for (std::uint64_t first = 1; hasFailed; ++first) {
    bool succeeded = false;
    int code = 1034;
    {
      FailingMemory const memory(first);
      try {
        body();
        succeeded = true;
      } catch (std::bad_alloc const&) {
      } catch (SK_PluginException const& error) {
        code = error.GetErrorCode();
      }
      hasFailed = memory.HasFailed();
    }
    EXPECT_EQ(code, 1034) << first;
    EXPECT_TRUE(succeeded || hasFailed) << first;
    check(succeeded);
  }
}

TEST_F(SerializerFailures, SetWithoutMemoryIsWholeOrGone) {
  WriteSet("a");
  std::string const before = File();
  WriteSet("b", 3, 600000);
  std::string const after = File();
  int failures = 0;
  mSerializer.clearFile();
  WriteSet("a");
  WithEachAllocationFailing([&] { WriteSet("b", 3, 600000); },
                            [&](bool succeeded) {
                              failures += succeeded ? 0 : 1;
                              if (!succeeded) {
                                mSerializer.clearDynamicSamples();
                              }
                              EXPECT_TRUE(File() == (succeeded ? after : before));
                              EXPECT_EQ(CountOpenDescriptors(), mOpenBefore);
                              mSerializer.clearFile();
                              WriteSet("a");
                            });
  EXPECT_GT(failures, 0);
}

TEST_F(SerializerFailures, SampleThatLacksMemoryBesideTheOthersGoesOutAlone) {
  SK_DumpSamplesUtils dump;
  dump.SetTimeLength(2);
  dump.WriteSample({"T1"}, "7");
  dump.WriteSample({"T2"}, "8");
  ns_sensor::SK_NumberProperties properties;
  properties.pattern = {130000, 0, false};
  mSerializer.serializeVersionToFile();
  std::string const expected =
      File() + R"(,"dataDynamicSamples":[{"sampleSetID":"a","samples":[{"time":"T1","value":")" +
      std::string(129999, '0') + R"(7"},{"time":"T2","value":")" + std::string(129999, '0') + R"(8"}]})";
  // The buffer's first memory is enough for the head of the set, the second for one sample; the third fails.
  FailingMemory const memory(3);
  FailingCall const noThirdWrite(senmark_test::kWrite, EIO, 2);
  mSerializer.serialize_NumDynamicSamples("a", dump, 2, properties);
  EXPECT_TRUE(memory.HasFailed());
  EXPECT_TRUE(File() == expected);
}

TEST_F(SerializerFailures, TailWithoutMemoryIsWholeOrGone) {
  AddFlags(100);
  WriteSet("a");
  std::string const before = File();
  mSerializer.serializeRootToFile();
  std::string const after = File();
  int failures = 0;
  WithEachAllocationFailing(
      [&] {
        mSerializer.clearFile();
        AddFlags(100);
        WriteSet("a");
        mSerializer.serializeRootToFile();
      },
      [&](bool succeeded) {
        failures += succeeded ? 0 : 1;
        if (succeeded) {
          EXPECT_EQ(File(), after);
        }
        EXPECT_EQ(CountOpenDescriptors(), mOpenBefore);
      });
  EXPECT_GT(failures, 0);
}

// What a host sees of all this.

class SerializerFailuresBorder : public senmark_test::DynamicNodes {};

TEST_F(SerializerFailuresBorder, AbsurdDigitsAre1034AndLeaveNoTrace) {
  UseTimeCode();
  mRoot->WriteVersionToFile();
  std::string const before = FileText();
  for (unsigned long long const digits : {1000000000000000000ull, 18446744073709551614ull, 2147483647ull}) {
    for (bool const decimals : {false, true}) {
      SK_PluginResult result;
      auto const node = Make<TdjsonDynamicDataNumImpl>();
      node->setNumberPattern(decimals ? 1 : digits, decimals ? digits : 1, 1, &result);
      ASSERT_TRUE(Add(*node, senmark_test::TimeCode(0), result));
      node->commit(&result);
      EXPECT_EQ(result.mErrorCode, 1034) << digits;
      EXPECT_EQ(FileText(), before);
    }
  }
}

TEST_F(SerializerFailuresBorder, FullDiskInACommitOfTheRootLeavesAnEmptyFile) {
  UseTimeCode();
  mRoot->AddStaticData(std::make_shared<TdjsonStaticDataBoolImpl>(nullptr, "F", "f", true));
  mRoot->WriteVersionToFile();
  SK_PluginResult result;
  {
    FailingCall const write(senmark_test::kWrite, ENOSPC);
    mRoot->commit(&result);
  }
  EXPECT_EQ(result.mErrorCode, 1034);
  EXPECT_EQ(FileText(), "");
  EXPECT_TRUE(mRoot->GetNodeInfoList().empty());
}

}  // namespace
}  // namespace SK_PLUGIN
