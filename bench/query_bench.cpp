/// Fetching samples by time from a set of three-number samples: through the exported library, from SQLite
/// with the time as row key, as it comes and without its locks, and from a flat memory-mapped array of doubles.
///
/// Every reader hands each sample to the same kind of callback. All of them answer the same queries in
/// turn, and the best round of each counts: what disturbs a shared machine only makes a round slower. The sums of
/// all that was delivered must be the same to the last bit.
#include <fcntl.h>
#include <sqlite3.h>
#include <stdlib.h>
#include <sys/mman.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <functional>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "senmark/Senmark.h"

namespace {

namespace fs = std::filesystem;

constexpr std::uint32_t kFramesPerSecond = 120;
constexpr std::uint64_t kMostSamples = std::uint64_t{24} * 3600 * kFramesPerSecond;  // time codes count one day
constexpr int kRounds = 7;
constexpr std::size_t kNumbers = 3;
constexpr std::size_t kNumberLength = 12;  // "+023.1089517"

[[noreturn]] void Fail(char const* what, char const* why) {
  std::fprintf(stderr, "query_bench: %s: %s\n", what, why);
  std::exit(1);
}

void Check(bool succeeded, char const* what) {
  if (!succeeded) {
    Fail(what, std::strerror(errno));
  }
}

/// What the callback of each reader fills.
struct Receiver {
  std::uint64_t samples = 0;
  std::uint64_t bits = 0;  ///< of all numbers and times, so that none can be skipped
};

std::uint64_t BitsOf(double number) {
  std::uint64_t bits = 0;
  std::memcpy(&bits, &number, sizeof(bits));
  return bits;
}

using SampleProc = void (*)(void*, std::int32_t, std::uint32_t, void const*, std::uint64_t, std::uint8_t);

void ReceiveSample(void* client, std::int32_t timeValue, std::uint32_t timeScale, void const* value,
                   std::uint64_t valueSize, std::uint8_t) {
  auto* const receiver = static_cast<Receiver*>(client);
  auto const* const numbers = static_cast<double const*>(value);
  // Frames, whatever the terms that the time came in.
  std::uint64_t bits = static_cast<std::uint64_t>(timeValue) * (kFramesPerSecond / timeScale);
  for (std::uint64_t i = 0; i < valueSize; ++i) {
    bits += BitsOf(numbers[i]);
  }
  receiver->bits += bits;
  ++receiver->samples;
}

/// Read through a volatile pointer, so that no reader gets the callback inlined.
SampleProc volatile gSampleProc = ReceiveSample;

void ReceiveCount(void*, std::uint64_t*) {}

void ReceiveError(void*, std::int32_t code, char const* message, std::int64_t offset, std::int64_t) {
  std::fprintf(stderr, "error %d at %lld: %s\n", code, static_cast<long long>(offset), message);
  std::exit(1);
}

/// A folder for all files of the run, gone at its end.
class RunFolder {
 public:
  RunFolder() {
    std::string pattern = (fs::temp_directory_path() / "senmark_bench_XXXXXX").string();
    Check(mkdtemp(pattern.data()) != nullptr, pattern.c_str());
    mPath = pattern;
    setenv("TEMP", (mPath + "/").c_str(), 1);
  }
  ~RunFolder() {
    std::error_code ignored;
    fs::remove_all(mPath, ignored);
  }
  RunFolder(RunFolder const&) = delete;
  RunFolder& operator=(RunFolder const&) = delete;

  std::string File(char const* name) const { return mPath + "/" + name; }

 private:
  std::string mPath;
};

/// The numbers of all samples: three angles that wander, with seven decimals, from -359 to 359.
class Signal {
 public:
  struct Sample {
    std::int64_t units[kNumbers];  ///< ten-millionths
  };
  Sample Next() {
    Sample sample = {};
    for (std::size_t i = 0; i < kNumbers; ++i) {
      mUnits[i] += static_cast<std::int64_t>(mRandom() % 20000001) - 10000000;
      if (mUnits[i] > kLimit || mUnits[i] < -kLimit) {
        mUnits[i] /= 2;
      }
      sample.units[i] = mUnits[i];
    }
    return sample;
  }

 private:
  static constexpr std::int64_t kLimit = 3590000000;
  std::mt19937_64 mRandom{20};
  std::int64_t mUnits[kNumbers] = {};
};

void AppendNumber(std::int64_t units, std::string& text) {
  constexpr std::int64_t kUnit = 10000000;
  std::int64_t const magnitude = units < 0 ? -units : units;
  char number[64];
  std::snprintf(number, sizeof(number), "%c%03lld.%07lld", units < 0 ? '-' : '+',
                static_cast<long long>(magnitude / kUnit), static_cast<long long>(magnitude % kUnit));
  text.append(number, kNumberLength);
}

void AppendSample(std::uint64_t frame, Signal::Sample const& sample, std::string& text) {
  std::uint64_t const second = frame / kFramesPerSecond;
  char time[96];
  std::snprintf(time, sizeof(time), R"({"time":"%02u:%02u:%02u:%03u","value":[)", static_cast<unsigned>(second / 3600),
                static_cast<unsigned>(second / 60 % 60), static_cast<unsigned>(second % 60),
                static_cast<unsigned>(frame % kFramesPerSecond));
  text += time;
  for (std::size_t i = 0; i < kNumbers; ++i) {
    text += i == 0 ? "\"" : ",\"";
    AppendNumber(sample.units[i], text);
    text += '"';
  }
  text += "]}";
}

std::string Head(std::uint64_t samples) {
  std::string const range = R"({"occurring":{"min":-359,"max":359},"legal":{"min":-360,"max":360}})";
  return R"({"version":"tdjson2.0.0","dynamicSamplesPresentB":true,"dynamicDataInfo":{"useTimecodeB":true,)"
         R"("timecodeInfo":{"frameRate":{"value":120,"scale":1},"dropFrame":false}},"dataOutline":[)"
         R"({"objectType":"dataDynamic","displayName":"Track","matchName":"track","dataType":{)"
         R"("type":"numberStringArray","numberArrayProperties":{"pattern":{"isSigned":true,"digitsInteger":3,)"
         R"("digitsDecimal":7},"arraySize":3,"arrayDisplayNames":["x","y","z"],"arrayRanges":{"ranges":[)" +
         range + "," + range + "," + range +
         R"(]}}},"sampleSetID":"track","interpolation":"linear","hasExpectedFrequencyB":true,"sampleCount":)" +
         std::to_string(samples) + R"(}],"dataDynamicSamples":[{"sampleSetID":"track","samples":[)";
}

class BufferedFile {
 public:
  explicit BufferedFile(std::string const& path) : mFile(std::fopen(path.c_str(), "wb")) {
    Check(mFile != nullptr, path.c_str());
  }
  ~BufferedFile() { std::fclose(mFile); }
  BufferedFile(BufferedFile const&) = delete;
  BufferedFile& operator=(BufferedFile const&) = delete;

  void Write(void const* data, std::size_t size) { Check(std::fwrite(data, 1, size, mFile) == size, "write"); }
  void Flush() { Check(std::fflush(mFile) == 0, "write"); }

 private:
  std::FILE* mFile;
};

/// A connection with a cache for the whole file.
class Database {
 public:
  Database(std::string const& path, int flags) {
    if (sqlite3_open_v2(path.c_str(), &mHandle, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | flags, nullptr) !=
        SQLITE_OK) {
      Fail("SQLite", sqlite3_errmsg(mHandle));
    }
    Run("PRAGMA cache_size=-4000000");
  }
  ~Database() { sqlite3_close(mHandle); }
  Database(Database const&) = delete;
  Database& operator=(Database const&) = delete;

  void Run(char const* text) {
    if (sqlite3_exec(mHandle, text, nullptr, nullptr, nullptr) != SQLITE_OK) {
      Fail("SQLite", sqlite3_errmsg(mHandle));
    }
  }
  sqlite3_stmt* Prepare(char const* text) {
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v3(mHandle, text, -1, SQLITE_PREPARE_PERSISTENT, &statement, nullptr) != SQLITE_OK) {
      Fail("SQLite", sqlite3_errmsg(mHandle));
    }
    return statement;
  }

 private:
  sqlite3* mHandle = nullptr;
};

/// Writes the same samples in all three forms.
void WriteFiles(RunFolder const& folder, std::uint64_t samples) {
  BufferedFile text(folder.File("samples.tdjson"));
  BufferedFile flat(folder.File("samples.doubles"));
  Database database(folder.File("samples.sqlite"), SQLITE_OPEN_NOMUTEX);
  database.Run(
      "PRAGMA journal_mode=OFF; PRAGMA synchronous=OFF;"
      "CREATE TABLE samples(time INTEGER PRIMARY KEY, x REAL, y REAL, z REAL); BEGIN");
  sqlite3_stmt* const insert = database.Prepare("INSERT INTO samples VALUES(?,?,?,?)");
  Signal signal;
  std::string buffer = Head(samples);
  for (std::uint64_t frame = 0; frame < samples; ++frame) {
    Signal::Sample const sample = signal.Next();
    buffer += frame == 0 ? "" : ",";
    AppendSample(frame, sample, buffer);
    double numbers[kNumbers];
    sqlite3_bind_int64(insert, 1, static_cast<sqlite3_int64>(frame));
    for (std::size_t i = 0; i < kNumbers; ++i) {
      std::string number;
      AppendNumber(sample.units[i], number);
      numbers[i] = std::strtod(number.c_str(), nullptr);
      sqlite3_bind_double(insert, static_cast<int>(i) + 2, numbers[i]);
    }
    if (sqlite3_step(insert) != SQLITE_DONE) {
      Fail("SQLite", "a row cannot be written");
    }
    sqlite3_reset(insert);
    flat.Write(numbers, sizeof(numbers));
    if (buffer.size() > (1U << 20U)) {
      text.Write(buffer.data(), buffer.size());
      buffer.clear();
    }
  }
  buffer += "]}]}";
  text.Write(buffer.data(), buffer.size());
  text.Flush();
  flat.Flush();
  sqlite3_finalize(insert);
  database.Run("COMMIT");
}

/// One way to answer "the `count` samples from frame `first` on".
using Reader = std::function<void(std::uint64_t first, std::uint64_t count, Receiver& receiver)>;

class LibraryReader {
 public:
  explicit LibraryReader(std::string const& path) {
    mProcs.sampleCount = ReceiveCount;
    mProcs.sample = gSampleProc;
    mProcs.error = ReceiveError;
    void* hostAPI = nullptr;
    CreateSenmark_1(&mManager, nullptr, nullptr, nullptr, nullptr, &mProcs, &hostAPI);
    mManager->openFile(&mHandler, path.c_str(), nullptr, nullptr);
  }
  ~LibraryReader() {
    mManager->closeFile(&mHandler, nullptr);
    DestroySenmark_1(&mManager, nullptr);
  }
  LibraryReader(LibraryReader const&) = delete;
  LibraryReader& operator=(LibraryReader const&) = delete;

  void Read(std::uint64_t first, std::uint64_t count, Receiver& receiver) {
    mHandler->getDynamicSamples("track", 5, static_cast<std::int32_t>(first), kFramesPerSecond,
                                static_cast<std::int32_t>(first + count - 1), kFramesPerSecond, &receiver, nullptr);
  }

 private:
  ns_sensor::SK_ClientProcs mProcs = {};
  ns_sensor::ISenmark* mManager = nullptr;
  ns_sensor::ISensorFileHandler* mHandler = nullptr;
};

class DatabaseReader {
 public:
  DatabaseReader(std::string const& path, int flags) : mDatabase(path, flags) {
    // One transaction for the whole run, so that no query pays for locks on the file.
    mDatabase.Run("BEGIN");
    mOne = mDatabase.Prepare("SELECT time, x, y, z FROM samples WHERE time = ?");
    mRange = mDatabase.Prepare("SELECT time, x, y, z FROM samples WHERE time BETWEEN ? AND ?");
  }
  ~DatabaseReader() {
    sqlite3_finalize(mOne);
    sqlite3_finalize(mRange);
  }
  DatabaseReader(DatabaseReader const&) = delete;
  DatabaseReader& operator=(DatabaseReader const&) = delete;

  void Read(std::uint64_t first, std::uint64_t count, Receiver& receiver) {
    sqlite3_stmt* const statement = count == 1 ? mOne : mRange;
    sqlite3_bind_int64(statement, 1, static_cast<sqlite3_int64>(first));
    if (count != 1) {
      sqlite3_bind_int64(statement, 2, static_cast<sqlite3_int64>(first + count - 1));
    }
    int result = sqlite3_step(statement);
    for (; result == SQLITE_ROW; result = sqlite3_step(statement)) {
      double const numbers[kNumbers] = {sqlite3_column_double(statement, 1), sqlite3_column_double(statement, 2),
                                        sqlite3_column_double(statement, 3)};
      gSampleProc(&receiver, static_cast<std::int32_t>(sqlite3_column_int64(statement, 0)), kFramesPerSecond, numbers,
                  kNumbers, ns_sensor::kNumberArrayValue);
    }
    if (result != SQLITE_DONE) {
      Fail("SQLite", "a row cannot be read");
    }
    sqlite3_reset(statement);
  }

 private:
  Database mDatabase;
  sqlite3_stmt* mOne;
  sqlite3_stmt* mRange;
};

class FlatReader {
 public:
  FlatReader(std::string const& path, std::uint64_t samples) : mSize(samples * kNumbers * sizeof(double)) {
    int const descriptor = open(path.c_str(), O_RDONLY);
    Check(descriptor != -1, path.c_str());
    mMapping = mmap(nullptr, mSize, PROT_READ, MAP_SHARED, descriptor, 0);
    Check(mMapping != MAP_FAILED, "mmap");
    close(descriptor);
  }
  ~FlatReader() { munmap(mMapping, mSize); }
  FlatReader(FlatReader const&) = delete;
  FlatReader& operator=(FlatReader const&) = delete;

  void Read(std::uint64_t first, std::uint64_t count, Receiver& receiver) const {
    auto const* const numbers = static_cast<double const*>(mMapping);
    for (std::uint64_t frame = first; frame < first + count; ++frame) {
      gSampleProc(&receiver, static_cast<std::int32_t>(frame), kFramesPerSecond, numbers + frame * kNumbers, kNumbers,
                  ns_sensor::kNumberArrayValue);
    }
  }

 private:
  void* mMapping;
  std::uint64_t mSize;
};

/// Time that this thread has run, the kernel's part included. Nothing here waits, so on a machine of its own this
/// is the time on the clock.
double ThreadNanoseconds() {
  timespec time = {};
  Check(clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time) == 0, "clock_gettime");
  return static_cast<double>(time.tv_sec) * 1e9 + static_cast<double>(time.tv_nsec);
}

double NanosecondsOf(Reader const& reader, std::vector<std::uint64_t> const& queries, std::uint64_t count,
                     Receiver& receiver) {
  double const begin = ThreadNanoseconds();
  for (std::uint64_t const first : queries) {
    reader(first, count, receiver);
  }
  return (ThreadNanoseconds() - begin) / static_cast<double>(queries.size());
}

/// Best times per query, in the order of the readers.
std::vector<double> Compare(std::vector<Reader> const& readers, std::uint64_t samples, std::uint64_t count) {
  constexpr std::uint64_t kSamplesPerRound = 2000000;
  constexpr std::uint64_t kMostQueries = 100000;
  std::mt19937_64 random(count);
  std::vector<std::uint64_t> queries(std::clamp<std::uint64_t>(kSamplesPerRound / count, 1, kMostQueries));
  for (std::uint64_t& first : queries) {
    first = random() % (samples - count + 1);
  }
  std::vector<double> best(readers.size(), std::numeric_limits<double>::infinity());
  for (int round = 0; round < kRounds; ++round) {
    std::vector<Receiver> receivers(readers.size());
    for (std::size_t i = 0; i < readers.size(); ++i) {
      best[i] = std::min(best[i], NanosecondsOf(readers[i], queries, count, receivers[i]));
      if (receivers[i].bits != receivers[0].bits || receivers[i].samples != queries.size() * count) {
        Fail("readers", "they delivered different samples");
      }
    }
  }
  return best;
}

}  // namespace

int main(int argc, char** argv) {
  std::uint64_t samples = 10000000;
  if (argc == 3 && std::string(argv[1]) == "--samples") {
    samples = std::strtoull(argv[2], nullptr, 10);
  } else if (argc != 1) {
    Fail("usage", "query_bench [--samples N]");
  }
  constexpr std::uint64_t kLongest = 10000;
  if (samples < kLongest || samples > kMostSamples) {
    Fail("--samples", "from 10000 to 10368000");
  }

  RunFolder const folder;
  std::printf("writing %llu samples of three numbers\n", static_cast<unsigned long long>(samples));
  WriteFiles(folder, samples);
  LibraryReader library(folder.File("samples.tdjson"));
  DatabaseReader rows(folder.File("samples.sqlite"), SQLITE_OPEN_FULLMUTEX);
  DatabaseReader rowsWithoutLocks(folder.File("samples.sqlite"), SQLITE_OPEN_NOMUTEX);
  FlatReader const flat(folder.File("samples.doubles"), samples);
  using First = std::uint64_t;
  using Count = std::uint64_t;
  std::vector<Reader> const readers = {
      [&](First first, Count count, Receiver& receiver) { library.Read(first, count, receiver); },
      [&](First first, Count count, Receiver& receiver) { rows.Read(first, count, receiver); },
      [&](First first, Count count, Receiver& receiver) { rowsWithoutLocks.Read(first, count, receiver); },
      [&](First first, Count count, Receiver& receiver) { flat.Read(first, count, receiver); }};
  for (Reader const& reader : readers) {
    Receiver receiver;  // all of it once, so that every page is in memory and mapped
    reader(0, samples, receiver);
  }
  std::printf("nanoseconds per query, and the library's in relation to each of the others\n");
  std::printf("%8s %10s %18s %18s %18s\n", "samples", "senmark", "SQLite", "without locks", "flat array");
  std::vector<double> best;
  for (std::uint64_t const count : {std::uint64_t{1}, std::uint64_t{100}, kLongest}) {
    best = Compare(readers, samples, count);
    std::printf("%8llu %10.0f", static_cast<unsigned long long>(count), best[0]);
    for (std::size_t i = 1; i < best.size(); ++i) {
      std::printf(" %10.0f %7.3f", best[i], best[0] / best[i]);
    }
    std::printf("\n");
  }
  std::printf("nanoseconds per sample of the longest: senmark %.2f, flat array %.2f, ratio %.2f\n", best[0] / kLongest,
              best.back() / kLongest, best[0] / best.back());
  return 0;
}
