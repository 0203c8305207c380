// Threads at the border: what a host may do at once. Meant for the thread sanitizer as well.

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <thread>

#include "RecordingHost.h"
#include "SmallFiles.h"
#include "TempFolder.h"
#include "senmark/SK_Records.h"

namespace senmark_test {
namespace {

using ns_sensor::ISensorFileHandler;

constexpr int kThreads = 4;

/// Runs `work` in several threads at once, each with a host of its own, and waits for all of them.
void InThreads(std::function<void(RecordingHost& host, int thread)> const& work) {
  std::atomic<int> ready{0};
  std::vector<std::thread> threads;
  for (int i = 0; i != kThreads; ++i) {
    threads.emplace_back([&work, &ready, i] {
      RecordingHost host;
      for (++ready; ready != kThreads;) {
        std::this_thread::yield();
      }
      work(host, i);
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
}

/// Everything that one file can be asked, as text.
std::string AskAll(ISensorFileHandler& file, RecordingHost& host) {
  file.getRootChildren(&host, &host);
  for (std::string const path : {R"(["arm"])"}) {
    file.getGroupChildren(path.c_str(), path.size(), &host, &host);
    file.getGroupChildInfo(path.c_str(), path.size(), &host, &host);
  }
  for (std::string const path : {R"(["arm"]["length"])", R"(["arm"]["label"])", R"(["arm"]["offset"])"}) {
    file.getStaticDataInfo(path.c_str(), path.size(), &host, &host);
  }
  for (std::string const path : {R"(["arm"]["angle"])", R"(["arm"]["position"])", R"(["arm"]["note"])"}) {
    file.getDynamicDataInfo(path.c_str(), path.size(), &host, &host);
  }
  for (std::string const id : {"a1", "p1", "n1"}) {
    file.getDynamicSamples(id.c_str(), id.size(), 0, 1, 10, 1, &host, &host);
    file.getDynamicSamples(id.c_str(), id.size(), 10, 1, 0, 1, &host, &host);
    file.getAdjacentSamples(id.c_str(), id.size(), 1, 2, &host, &host);
    ns_sensor::SK_DynamicSampleInfo info;
    file.getSampleInfo(id.c_str(), id.size(), 0, 1, 10, 1, &info, 0, &host, &host);
    host.AddCall(std::to_string(info.sampleCount));
  }
  ns_sensor::SK_FileInfo info;
  file.getFileInfo(&info, &host, &host);
  std::vector<ns_sensor::SK_VideoSyncTime> list;
  file.getVideoSyncTime(&list, &host, &host);
  return host.TakeCalls();
}

TEST(Threads, MayAskOneHandler) {
  TempFolder const folder;
  RecordingHost owner;
  ISensorFileHandler* const file = owner.Open(folder.Write("a.tdjson", kSmallVersion2));
  ASSERT_NE(file, nullptr);
  std::string const expected = AskAll(*file, owner);
  InThreads([&](RecordingHost& host, int) {
    for (int i = 0; i != 50; ++i) {
      EXPECT_EQ(AskAll(*file, host), expected);
    }
  });
  EXPECT_EQ(owner.Close(file), nullptr);
}

TEST(Threads, MayOpenAndCloseDifferentFiles) {
  TempFolder const folder;
  RecordingHost const owner;
  std::vector<std::string> paths;
  for (int i = 0; i != kThreads; ++i) {
    paths.push_back(folder.Write(std::to_string(i) + ".tdjson", i % 2 == 0 ? kSmallVersion2 : kSmallVersion1));
  }
  InThreads([&](RecordingHost& host, int thread) {
    for (int i = 0; i != 50; ++i) {
      ISensorFileHandler* const file = host.Open(paths[static_cast<std::size_t>(thread)]);
      ASSERT_NE(file, nullptr);
      file->getRootChildren(&host, &host);
      EXPECT_NE(host.TakeCalls(), "");
      EXPECT_EQ(host.Close(file), nullptr);
    }
  });
}

TEST(Threads, ShareTheHandlerOfOnePath) {
  TempFolder const folder;
  RecordingHost owner;
  std::string const path = folder.Write("a.tdjson", kSmallVersion2);
  ISensorFileHandler* const first = owner.Open(path);
  InThreads([&](RecordingHost& host, int) {
    for (int i = 0; i != 50; ++i) {
      EXPECT_EQ(host.Open(path), first);
      EXPECT_EQ(host.Close(first), first);
    }
  });
  EXPECT_EQ(owner.Close(first), nullptr);
}

/// Each thread has its own last error, and a file that is refused disturbs nobody else.
TEST(Threads, MayFailAtOnce) {
  TempFolder const folder;
  RecordingHost const owner;
  std::string const good = folder.Write("good.tdjson", kSmallVersion2);
  InThreads([&](RecordingHost& host, int thread) {
    std::string const missing = "/no/such/file/" + std::to_string(thread);
    ReportedError const expected{4, "File not exist at input path:" + missing + ".", -1, -1};
    for (int i = 0; i != 50; ++i) {
      EXPECT_EQ(host.Open(missing), nullptr);
      EXPECT_EQ(host.TakeError(), expected);
      ISensorFileHandler* const file = host.Open(good);
      EXPECT_EQ(LastError(false), expected);
      host.Close(file);
    }
  });
}

/// The last of several creations is destroyed in whichever thread comes last.
TEST(Threads, MayCreateAndDestroyTheManager) {
  InThreads([](RecordingHost& host, int) {
    for (int i = 0; i != 50; ++i) {
      RecordingHost const another;
      GetSupportedFormats_1(&host, &host, RecordingHost::Procs());
      EXPECT_NE(host.TakeCalls(), "");
    }
  });
}

}  // namespace
}  // namespace senmark_test
