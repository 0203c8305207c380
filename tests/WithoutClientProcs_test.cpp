// A host that gives no table. A process of its own: the first table of a process is the one that counts,
// and here it is null.

#include <gtest/gtest.h>

#include "RecordingHost.h"
#include "SmallFiles.h"
#include "TempFolder.h"
#include "senmark/SK_Records.h"
#include "senmark/Senmark.h"

namespace senmark_test {
namespace {

using ns_sensor::ISenmark;

TEST(WithoutClientProcs, EveryAnswerIsAnErrorThatIsTheLastOne) {
  TempFolder const folder;
  std::string const path = folder.Write("small.tdjson", kSmallVersion2);
  ISenmark* manager = nullptr;
  void* api = nullptr;
  CreateSenmark_1(&manager, nullptr, nullptr, nullptr, nullptr, nullptr, &api);
  ns_sensor::ISensorFileHandler* handler = nullptr;
  manager->openFile(&handler, path.c_str(), nullptr, nullptr);
  ASSERT_NE(handler, nullptr);
  ReportedError const expected{21, "Client APIs not set.", -1, -1};
  std::string const leaf = R"(["arm"]["length"])";
  std::string const track = R"(["arm"]["angle"])";
  std::string const group = R"(["arm"])";
  ns_sensor::SK_FileInfo info;
  handler->getRootChildren(nullptr, nullptr);
  EXPECT_EQ(LastError(true), expected);
  handler->getGroupChildren(group.c_str(), group.size(), nullptr, nullptr);
  EXPECT_EQ(LastError(true), expected);
  handler->getGroupChildInfo(leaf.c_str(), leaf.size(), nullptr, nullptr);
  EXPECT_EQ(LastError(true), expected);
  handler->getStaticDataInfo(leaf.c_str(), leaf.size(), nullptr, nullptr);
  EXPECT_EQ(LastError(true), expected);
  handler->getDynamicDataInfo(track.c_str(), track.size(), nullptr, nullptr);
  EXPECT_EQ(LastError(true), expected);
  handler->getDynamicSamples("a1", 2, 0, 1, 1, 1, nullptr, nullptr);
  EXPECT_EQ(LastError(true), expected);
  handler->getAdjacentSamples("a1", 2, 1, 6, nullptr, nullptr);
  EXPECT_EQ(LastError(true), expected);
  handler->getFileInfo(&info, nullptr, nullptr);
  EXPECT_EQ(LastError(true), expected);
  EXPECT_EQ(info.creator, "by hand");
  std::vector<ns_sensor::SK_VideoSyncTime> list;
  handler->getVideoSyncTime(&list, nullptr, nullptr);
  EXPECT_EQ(LastError(true), expected);
  EXPECT_EQ(list.size(), 2u);
  ns_sensor::SK_DynamicSampleInfo sampleInfo;
  handler->getSampleInfo("a1", 2, 0, 1, 1, 1, &sampleInfo, 0, nullptr, nullptr);
  EXPECT_EQ(LastError(true).code, 0) << "what it tells needs no procs";
  EXPECT_EQ(sampleInfo.sampleCount, 4u);
  manager->closeFile(&handler, nullptr);
  DestroySenmark_1(&manager, nullptr);
}

}  // namespace
}  // namespace senmark_test
