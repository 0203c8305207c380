// One allocation of the library fails, each in its turn: every operation of the border ends in one report,
// leaves nothing behind, and succeeds once there is memory again.

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <functional>

#include "FailingMemory.h"
#include "SmallFiles.h"
#include "TempFolder.h"
#include "senmark/SK_Records.h"
#include "senmark/Senmark.h"

namespace senmark_test {
namespace {

using ns_sensor::ISenmark;
using ns_sensor::ISensorFileHandler;
using ns_sensor::ITdjsonStream;

/// What the library sent. It is kept without any allocation.
struct Received {
  int errors = 0;
  std::int32_t code = 0;
  std::int64_t offset = 0;
  std::int64_t line = 0;
  char message[200] = {};
  int calls = 0;
};

Received gReceived;

void Count(void*) {
  ++gReceived.calls;
}

ns_sensor::SK_ClientProcs* Procs() {
  static ns_sensor::SK_PathProcs path{
      [](void* client, char const*, std::int32_t, std::uint64_t, std::uint8_t) { Count(client); }};
  static ns_sensor::SK_PropertyProcs property{};
  static ns_sensor::SK_ClientProcs procs = [] {
    ns_sensor::SK_ClientProcs table{};
    table.path = &path;
    table.property = &property;
    table.staticDataInfo = [](void* client, char const*, char const*, void*, std::uint8_t, void const*, std::uint64_t) {
      Count(client);
    };
    table.dynamicDataInfo = [](void* client, char const*, char const*, std::uint8_t, void*, char const*, std::uint64_t,
                               std::uint8_t, bool, std::int32_t, std::uint32_t, std::int32_t, std::uint32_t,
                               char const*) { Count(client); };
    table.groupChildInfo = [](void* client, std::uint8_t, char const*, char const*) { Count(client); };
    table.sample = [](void* client, std::int32_t, std::uint32_t, void const*, std::uint64_t, std::uint8_t) {
      Count(client);
    };
    table.fileInfo = [](void* client, std::int32_t, std::uint32_t, char const*, std::uint64_t, char const*,
                        std::uint64_t) { Count(client); };
    table.videoSyncTime = [](void* client, char const*, std::uint8_t, void const*, std::uint64_t, std::uint8_t) {
      Count(client);
    };
    table.supportedFormat = [](void* client, char const*, char const*) { Count(client); };
    table.sampleCount = [](void* client, std::uint64_t*) { Count(client); };
    table.string = [](void* client, char const*, std::uint64_t) { Count(client); };
    table.error = [](void*, std::int32_t code, char const* message, std::int64_t offset, std::int64_t line) {
      ++gReceived.errors;
      gReceived.code = code;
      gReceived.offset = offset;
      gReceived.line = line;
      std::strncpy(gReceived.message, message, sizeof gReceived.message - 1);
    };
    return table;
  }();
  return &procs;
}

std::ptrdiff_t OpenDescriptors() {
  auto const entries = std::filesystem::directory_iterator("/proc/self/fd");
  return std::distance(begin(entries), end(entries));
}

ISenmark* Create() {
  ISenmark* manager = nullptr;
  void* api = nullptr;
  CreateSenmark_1(&manager, nullptr, nullptr, "a locale that is too long for a short string", nullptr, Procs(), &api);
  return manager;
}

class NoMemory : public testing::Test {
 protected:
  NoMemory() : mManager(Create()) {
    mPaths[0] = mFolder.Write("a file with a rather long name, version 2.tdjson", kSmallVersion2);
    mPaths[1] = mFolder.Write("a file with a rather long name, version 1.tdjson", kSmallVersion1);
  }
  ~NoMemory() override {
    DestroySenmark_1(&mManager, nullptr);
    EXPECT_EQ(OpenDescriptors(), mDescriptors);
  }

  ISensorFileHandler* Open(std::string const& path, char const* outputPath = nullptr) {
    ISensorFileHandler* handler = nullptr;
    mManager->openFile(&handler, path.c_str(), outputPath, nullptr);
    return handler;
  }

  /// Lets `operation` run without its first, its second, its third allocation and so on, until it needs no
  /// more, and gives how often it failed. `afterFailure` runs behind each failure.
  ///
  /// codeOfSuccess  what the operation reports with all its memory; 0 for nothing.
  static int RunShortOfMemory(
      std::function<void()> const& operation, std::function<void()> const& afterFailure = [] {},
      std::int32_t codeOfSuccess = 0) {
    for (int failures = 0; failures < 100000; ++failures) {
      gReceived = Received();
      bool hasFailed = false;
      {
        FailingMemory const failing(static_cast<std::uint64_t>(failures) + 1);
        operation();
        hasFailed = failing.HasFailed();
      }
      Received const received = gReceived;
      EXPECT_EQ(received.errors, hasFailed || codeOfSuccess != 0 ? 1 : 0) << "allocation " << failures + 1;
      if (!hasFailed) {
        EXPECT_EQ(received.code, codeOfSuccess);
        return failures;
      }
      EXPECT_EQ(received.code, 34) << "allocation " << failures + 1;
      EXPECT_STREQ(received.message, "Unable to allocate memory.") << "allocation " << failures + 1;
      EXPECT_EQ(received.offset, -1);
      EXPECT_EQ(received.line, -1);
      afterFailure();
      if (HasFailure()) {
        return 0;
      }
    }
    ADD_FAILURE() << "no end of allocations";
    return 0;
  }

  std::ptrdiff_t const mDescriptors = OpenDescriptors();
  TempFolder mFolder;
  ISenmark* mManager;
  std::string mPaths[2];
};

TEST_F(NoMemory, CreationOfTheManager) {
  DestroySenmark_1(&mManager, nullptr);
  void* api = nullptr;
  int const failures = RunShortOfMemory(
      [&] {
        CreateSenmark_1(&mManager, nullptr, nullptr, "a locale that is too long for a short string", nullptr, Procs(),
                        &api);
      },
      [&] {
        EXPECT_EQ(mManager, nullptr);
        EXPECT_EQ(api, nullptr);
      });
  EXPECT_GT(failures, 0);
  EXPECT_NE(mManager, nullptr);
  gReceived = Received();
  GetSupportedFormats_1(nullptr, nullptr, Procs());
  EXPECT_EQ(gReceived.calls, 6) << "what was begun without memory has been finished";
}

TEST_F(NoMemory, ListOfFormats) {
  EXPECT_GT(
      RunShortOfMemory([] { GetSupportedFormats_1(nullptr, nullptr, Procs()); }, [] { EXPECT_EQ(gReceived.calls, 0); }),
      0);
  EXPECT_EQ(gReceived.calls, 6);
}

TEST_F(NoMemory, OpeningAFile) {
  for (std::string const& path : mPaths) {
    std::ptrdiff_t const descriptors = OpenDescriptors();
    ISensorFileHandler* handler = nullptr;
    int const failures = RunShortOfMemory(
        [&] {
          handler = reinterpret_cast<ISensorFileHandler*>(this);
          mManager->openFile(&handler, path.c_str(), nullptr, nullptr);
        },
        [&] {
          EXPECT_EQ(handler, nullptr);
          EXPECT_EQ(mFolder.TempNames(), "");
          EXPECT_EQ(OpenDescriptors(), descriptors);
        });
    EXPECT_GT(failures, 20);
    ASSERT_NE(handler, nullptr);
    mManager->closeFile(&handler, nullptr);
    EXPECT_EQ(handler, nullptr);
  }
}

TEST_F(NoMemory, OpeningAnOpenFile) {
  ISensorFileHandler* const first = Open(mPaths[0]);
  ASSERT_NE(first, nullptr);
  ISensorFileHandler* second = nullptr;
  int const failures = RunShortOfMemory([&] { second = Open(mPaths[0]); }, [&] { EXPECT_EQ(second, nullptr); });
  EXPECT_GT(failures, 0);
  EXPECT_EQ(second, first);
  // Only the openings that succeeded count.
  mManager->closeFile(&second, nullptr);
  EXPECT_EQ(second, first);
  mManager->closeFile(&second, nullptr);
  EXPECT_EQ(second, nullptr);
}

TEST_F(NoMemory, ClosingAFile) {
  ISensorFileHandler* handler = Open(mPaths[0]);
  int const failures = RunShortOfMemory([&] { mManager->closeFile(&handler, nullptr); },
                                        [&] { EXPECT_NE(handler, nullptr) << "still open"; });
  EXPECT_GT(failures, 0);
  EXPECT_EQ(handler, nullptr);
  EXPECT_EQ(mFolder.TempNames(), "");
}

struct Query {
  char const* name;
  int version;
  std::function<void(ISensorFileHandler*)> ask;
  int calls;              ///< of the procs, with all the memory
  std::int32_t code = 0;  ///< of the one error, with all the memory
};

void PrintTo(Query const& query, std::ostream* out) {
  *out << query.name;
}

template <void (ISensorFileHandler::*kOperation)(char const*, std::uint64_t, void*, void*)>
std::function<void(ISensorFileHandler*)> WithPath(std::string const& path) {
  return [path](ISensorFileHandler* file) { (file->*kOperation)(path.c_str(), path.size(), nullptr, nullptr); };
}

std::function<void(ISensorFileHandler*)> Samples(std::string const& id, std::int32_t start, std::int32_t end) {
  return [=](ISensorFileHandler* file) {
    file->getDynamicSamples(id.c_str(), id.size(), start, 1, end, 1, nullptr, nullptr);
  };
}

std::function<void(ISensorFileHandler*)> Adjacent(std::string const& id, std::int32_t time) {
  return [=](ISensorFileHandler* file) { file->getAdjacentSamples(id.c_str(), id.size(), time, 1, nullptr, nullptr); };
}

constexpr auto kChildren = &ISensorFileHandler::getGroupChildren;
constexpr auto kChildInfo = &ISensorFileHandler::getGroupChildInfo;
constexpr auto kStatic = &ISensorFileHandler::getStaticDataInfo;
constexpr auto kDynamic = &ISensorFileHandler::getDynamicDataInfo;
char const kLongId[] = "an id that is too long for a short string";

Query const kQueries[] = {
    {"RootChildren", 2, [](ISensorFileHandler* file) { file->getRootChildren(nullptr, nullptr); }, 2 + 1},
    {"GroupChildren", 2, WithPath<kChildren>(R"(["arm"])"), 8 + 2},
    {"GroupChildInfo", 2, WithPath<kChildInfo>(R"(["arm"]["length"])"), 1},
    {"StaticNumber", 2, WithPath<kStatic>(R"(["arm"]["length"])"), 1},
    {"StaticText", 2, WithPath<kStatic>(R"(["arm"]["label"])"), 1},
    {"StaticArray", 2, WithPath<kStatic>(R"(["arm"]["offset"])"), 1},
    {"StaticFlag", 2, WithPath<kStatic>(R"(["arm"]["present"])"), 1},
    {"StaticNumberOfVersion1", 1, WithPath<kStatic>(R"(["speed"])"), 1},
    {"StaticTextOfVersion1", 1, WithPath<kStatic>(R"(["title"])"), 1},
    {"StaticArrayOfVersion1", 1, WithPath<kStatic>(R"(["axes"])"), 1},
    {"DynamicNumber", 2, WithPath<kDynamic>(R"(["arm"]["angle"])"), 1},
    {"DynamicText", 2, WithPath<kDynamic>(R"(["arm"]["note"])"), 1},
    {"DynamicArray", 1, WithPath<kDynamic>(R"(["track"])"), 1},
    {"NumberSamples", 2, Samples("a1", 0, 1), 1 + 4},
    {"NumberSamplesBackwards", 2, Samples("a1", 1, 0), 1 + 4},
    {"TextSamples", 2, Samples("n1", 2, 3), 1 + 2},
    {"ArraySamples", 2, Samples("p1", 0, 1), 1 + 3},
    {"NumberSamplesOfVersion1", 1, Samples("lv", 0, 4), 1 + 3},
    {"TextSamplesOfVersion1", 1, Samples("ev", 0, 4), 1 + 1},
    {"ArraySamplesOfVersion1", 1, Samples("tr", 0, 4), 1 + 3},
    {"AdjacentSamples", 2, Adjacent("a1", 0), 1 + 2},
    {"AdjacentSamplesBeforeTheFirst", 2, Adjacent("n1", 1), 1 + 1},
    {"AdjacentSamplesOfVersion1", 1, Adjacent("lv", 1), 1 + 2},
    {"FileInfo", 2,
     [](ISensorFileHandler* file) {
       ns_sensor::SK_FileInfo info;
       file->getFileInfo(&info, nullptr, nullptr);
     },
     1},
    {"VideoSyncTime", 2,
     [](ISensorFileHandler* file) {
       std::vector<ns_sensor::SK_VideoSyncTime> list;
       file->getVideoSyncTime(&list, nullptr, nullptr);
     },
     2},
    {"SampleInfo", 2,
     [](ISensorFileHandler* file) {
       ns_sensor::SK_DynamicSampleInfo info;
       file->getSampleInfo("a1", 2, 0, 1, 1, 1, &info, 0, nullptr, nullptr);
     },
     0},
    {"RefusedId", 2, Samples(kLongId, 0, 1), 0, 35},
    {"RefusedTime", 2,
     [](ISensorFileHandler* file) { file->getAdjacentSamples(kLongId, sizeof kLongId - 1, 0, 0, nullptr, nullptr); }, 0,
     1},
    {"RefusedPath", 2, WithPath<kChildren>(R"(["arm"]["there is no child with such a name"])"), 0, 33},
    {"PathThatIsNoNumber", 2, WithPath<kChildren>("[there is no index with such a text]"), 0, 34},
};

class NoMemoryForQuery : public NoMemory, public testing::WithParamInterface<Query> {};

TEST_P(NoMemoryForQuery, IsOneReportAndTheNextAskerIsAnswered) {
  Query const& query = GetParam();
  ISensorFileHandler* handler = Open(mPaths[query.version == 2 ? 0 : 1]);
  ASSERT_NE(handler, nullptr);
  RunShortOfMemory([&] { query.ask(handler); }, [] { EXPECT_EQ(gReceived.calls, 0); }, query.code);
  EXPECT_EQ(gReceived.calls, query.calls);
  mManager->closeFile(&handler, nullptr);
  EXPECT_EQ(handler, nullptr);
}

INSTANTIATE_TEST_SUITE_P(NoMemory, NoMemoryForQuery, testing::ValuesIn(kQueries),
                         [](auto const& row) { return std::string(row.param.name); });

TEST_F(NoMemory, RefusedFiles) {
  ISensorFileHandler* handler = nullptr;
  auto const nothingIsLeft = [&] {
    EXPECT_EQ(handler, nullptr);
    EXPECT_EQ(mFolder.TempNames(), "");
  };
  std::string const missing = "/there is no file with such a name";
  EXPECT_GT(RunShortOfMemory([&] { handler = Open(missing); }, nothingIsLeft, 4), 0);
  nothingIsLeft();
  std::string broken = kSmallVersion2;
  broken.replace(broken.find("+01.5"), 5, "+01.55");
  std::string const path = mFolder.Write("a file with samples that are too wide.tdjson", broken);
  EXPECT_GT(RunShortOfMemory([&] { handler = Open(path); }, nothingIsLeft, 39), 20);
  nothingIsLeft();
}

TEST_F(NoMemory, Streams) {
  std::ptrdiff_t const descriptors = OpenDescriptors();
  ITdjsonStream* stream = nullptr;
  int const failures = RunShortOfMemory([&] { mManager->createTdjsonStream(&stream, mPaths[0].c_str(), 1, nullptr); },
                                        [&] {
                                          EXPECT_EQ(stream, nullptr);
                                          EXPECT_EQ(mFolder.TempNames(), "");
                                          EXPECT_EQ(OpenDescriptors(), descriptors);
                                        });
  EXPECT_GT(failures, 20);
  ASSERT_NE(stream, nullptr);
  EXPECT_GT(RunShortOfMemory([&] { stream->getNativeFilePath(nullptr, nullptr); }), 0);
  EXPECT_EQ(gReceived.calls, 1);
  char buffer[10];
  EXPECT_EQ(RunShortOfMemory([&] { stream->readStream(buffer, 10, nullptr); }), 0);
  std::string const copy = mFolder.Path("a copy with a rather long name.tdjson");
  RunShortOfMemory([&] { stream->saveStream(copy.c_str(), nullptr); },
                   [&] { EXPECT_FALSE(std::filesystem::exists(copy)); });
  EXPECT_EQ(mFolder.Read(copy), kSmallVersion2);
  RunShortOfMemory([&] { mManager->destroyTdjsonStream(&stream, nullptr); }, [&] { EXPECT_NE(stream, nullptr); });
  EXPECT_EQ(stream, nullptr);
  EXPECT_EQ(OpenDescriptors(), descriptors);
}

struct Conversion {
  char const* name;
  char const* file;
  std::string content;
  std::int32_t codeOfReading;  ///< a table that cannot be kept counts as not read, and its result is empty
};

void PrintTo(Conversion const& row, std::ostream* out) {
  *out << row.name;
}

Conversion const kConversions[] = {
    {"Table", "a table with a rather long name.csv", "a column with a rather long name,b\n1,x\n2,\"y\"\"\n\"\n", 54},
    {"WideCharacterTable", "a table with a rather long name.tsv",
     std::string("\xFE\xFF\0a\0,\0b\0\t\0c\0\n\0\"\0x\0\"\0\t\x20\xAC\0\n", 26), 54},
    {"Document", "a document with a rather long name.json",
     R"({"a key that is too long for a short string": [1, 2.5, {"b": "a text that is too long for a short string"}],
         "c": true, "d": [[null], {}]})",
     34},
    {"Motion", "a recording with a rather long name.bvh",
     "HIERARCHY\nROOT AJointWithARatherLongName\n{\nOFFSET 0 1 2\n"
     "CHANNELS 6 Xposition Yposition Zposition Zrotation Xrotation Yrotation\nJOINT Knee\n{\nOFFSET 1 2 3\n"
     "CHANNELS 3 Zrotation Xrotation Yrotation\nEnd Site\n{\nOFFSET 0 1 0\n}\n}\n}\n"
     "MOTION\nFrames: 2\nFrame Time: 0.04\n1 2 3 10 20 30 5 6 7\n4 5 6 11 21 31 8 9 10\n",
     34},
};

class NoMemoryForConversion : public NoMemory, public testing::WithParamInterface<Conversion> {
 protected:
  NoMemoryForConversion() {
    std::filesystem::create_directory(mFolder.Path("out"));
    mFolder.Write("out/result", "old");
  }

  /// Lets `convert`, which gives whether it succeeded, run without each of its allocations in turn, and gives how often
  /// it failed. What can be had with less memory may succeed all the same. `afterSuccess` runs behind each success.
  int RunShortOfMemory(std::function<bool()> const& convert, std::function<void()> const& afterSuccess) {
    std::ptrdiff_t const descriptors = OpenDescriptors();
    int failures = 0;
    for (std::uint64_t allocation = 1; allocation != 100000; ++allocation) {
      gReceived = Received();
      bool hasFailed = false;
      bool hasSucceeded = false;
      {
        FailingMemory const failing(allocation);
        hasSucceeded = convert();
        hasFailed = failing.HasFailed();
      }
      if (hasSucceeded) {
        EXPECT_EQ(gReceived.errors, 0);
        afterSuccess();
      } else {
        EXPECT_EQ(gReceived.errors, 1);
        ++failures;
        EXPECT_TRUE(gReceived.code == 34 || gReceived.code == 1034 || gReceived.code == GetParam().codeOfReading)
            << gReceived.code << ' ' << gReceived.message;
      }
      EXPECT_EQ(mFolder.Read(mOutput), "old");
      EXPECT_EQ(std::distance(std::filesystem::directory_iterator(mFolder.Path("out")), {}), 1);
      EXPECT_EQ(mFolder.TempNames(), "");
      EXPECT_EQ(OpenDescriptors(), descriptors);
      EXPECT_FALSE(HasFailure()) << "allocation " << allocation;
      if (!hasFailed || HasFailure()) {
        return failures;
      }
    }
    ADD_FAILURE() << "no end of allocations";
    return failures;
  }

  std::string const mInput = mFolder.Write(GetParam().file, GetParam().content);
  std::string const mOutput = mFolder.Path("out/result");
};

TEST_P(NoMemoryForConversion, OpeningIsOneReportAndLeavesTheOldOutput) {
  std::string const wanted = mFolder.Path("with all the memory");
  ISensorFileHandler* handler = Open(mInput, wanted.c_str());
  ASSERT_NE(handler, nullptr);
  mManager->closeFile(&handler, nullptr);
  std::string const result = mFolder.Read(wanted);
  int failedMoves = 0;
  int const failures = RunShortOfMemory(
      [&] {
        handler = Open(mInput, mOutput.c_str());
        if (handler != nullptr && gReceived.errors != 0) {
          // The file is open, and only its way to the output failed.
          ++failedMoves;
          mManager->closeFile(&handler, nullptr);
          return false;
        }
        return handler != nullptr;
      },
      [&] {
        mManager->closeFile(&handler, nullptr);
        EXPECT_EQ(mFolder.Read(mOutput), result);
        mFolder.Write("out/result", "old");
      });
  EXPECT_GT(failures, 50);
  EXPECT_GT(failedMoves, 0);
}

TEST_P(NoMemoryForConversion, StreamIsOneReport) {
  ITdjsonStream* stream = nullptr;
  int const failures = RunShortOfMemory(
      [&] {
        mManager->createTdjsonStream(&stream, mInput.c_str(), 1, nullptr);
        return stream != nullptr;
      },
      [&] { mManager->destroyTdjsonStream(&stream, nullptr); });
  EXPECT_GT(failures, 50);
}

INSTANTIATE_TEST_SUITE_P(NoMemory, NoMemoryForConversion, testing::ValuesIn(kConversions),
                         [](auto const& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace senmark_test
