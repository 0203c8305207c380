#include "FuzzHost.h"

#include <cstddef>

namespace senmark_fuzz {

using ns_sensor::ISenmark;
using ns_sensor::ISensorFileHandler;

namespace {

FuzzHost& Of(void* client) {
  return *static_cast<FuzzHost*>(client);
}

/// Reads every byte that a proc was given, so that the sanitizers see a bad pointer.
unsigned char volatile gSink = 0;

void Touch(void const* bytes, std::uint64_t size) {
  auto const* const begin = static_cast<unsigned char const*>(bytes);
  for (std::uint64_t i = 0; i != size; ++i) {
    gSink = static_cast<unsigned char>(gSink ^ begin[i]);
  }
}

void TouchValue(std::uint8_t kind, void const* value, std::uint64_t size) {
  switch (kind) {
    case ns_sensor::kNumberValue:
      Touch(value, sizeof(double));
      break;
    case ns_sensor::kStringValue:
      Require(static_cast<char const*>(value)[size] == '\0');
      Touch(value, size);
      break;
    case ns_sensor::kNumberArrayValue:
      Touch(value, size * sizeof(double));
      break;
    default:
      break;
  }
}

void FetchProperties(FuzzHost& host, std::uint8_t dataType, void* properties) {
  if (dataType == ns_sensor::kNumberValue) {
    host.api->pushNumber(properties, &host);
  } else if (dataType == ns_sensor::kStringValue) {
    host.api->pushString(properties, &host);
  } else if (dataType == ns_sensor::kNumberArrayValue) {
    host.api->pushNumberArray(properties, &host);
  }
}

ns_sensor::SK_ClientProcs* Procs() {
  static ns_sensor::SK_PathProcs path = {
      [](void* client, char const* matchName, std::int32_t, std::uint64_t, std::uint8_t isLast) {
        ++Of(client).answers;
        if (isLast != 0) {
          Of(client).leaves.emplace_back(matchName);
        }
      }};
  static ns_sensor::SK_PropertyProcs property = {
      [](void*, std::uint64_t const*, std::uint64_t const*, bool const*, double const* min, double const*,
         double const*, double const*) { Touch(min, sizeof *min); },
      [](void*, std::uint64_t const* maxLen, std::uint64_t const*, bool const*) { Touch(maxLen, sizeof *maxLen); },
      [](void*, std::uint64_t const* digits, std::uint64_t const*, bool const*, std::uint64_t const*, bool const*) {
        Touch(digits, sizeof *digits);
      },
      [](void*, char const* name, std::uint64_t length) { Touch(name, length); },
      [](void*, double const* min, double const*, double const*, double const*) { Touch(min, sizeof *min); }};
  static ns_sensor::SK_ClientProcs table{};
  table.path = &path;
  table.property = &property;
  table.staticDataInfo = [](void* client, char const*, char const*, void* properties, std::uint8_t dataType,
                            void const* value, std::uint64_t valueSize) {
    ++Of(client).answers;
    TouchValue(dataType, value, valueSize);
    FetchProperties(Of(client), dataType, properties);
  };
  table.dynamicDataInfo = [](void* client, char const*, char const*, std::uint8_t dataType, void* properties,
                             char const* sampleSetID, std::uint64_t, std::uint8_t, bool, std::int32_t, std::uint32_t,
                             std::int32_t, std::uint32_t, char const*) {
    ++Of(client).answers;
    Of(client).sampleSetID = sampleSetID;
    FetchProperties(Of(client), dataType, properties);
  };
  table.groupChildInfo = [](void* client, std::uint8_t childType, char const*, char const*) {
    ++Of(client).answers;
    Of(client).childType = childType;
  };
  table.sample = [](void* client, std::int32_t, std::uint32_t, void const* value, std::uint64_t valueSize,
                    std::uint8_t valueType) {
    ++Of(client).samples;
    TouchValue(valueType, value, valueSize);
  };
  table.fileInfo = [](void* client, std::int32_t, std::uint32_t, char const*, std::uint64_t, char const*,
                      std::uint64_t) { ++Of(client).answers; };
  table.sampleCount = [](void* client, std::uint64_t* count) {
    ++Of(client).answers;
    Of(client).announced = *count;
  };
  table.error = [](void* client, std::int32_t, char const*, std::int64_t, std::int64_t) { ++Of(client).errors; };
  return &table;
}

void AskForSamples(FuzzHost& host, ISensorFileHandler& file, std::string const& id) {
  struct Range {
    std::int32_t start;
    std::uint32_t startScale;
    std::int32_t end;
    std::uint32_t endScale;
  };
  for (Range const& range : {Range{0, 1, 1000000, 1}, Range{1000000, 1, 0, 1}, Range{-1, 3, 7, 5}, Range{1, 2, 1, 2},
                             Range{0, 0, 1, 1}, Range{2147483647, 1, 1, 4294967295U}}) {
    ns_sensor::SK_DynamicSampleInfo info;
    bool const counted = Ask(host, [&] {
      file.getSampleInfo(id.c_str(), id.size(), range.start, range.startScale, range.end, range.endScale, &info, 0,
                         &host, &host);
    });
    bool const read = Ask(host, [&] {
      file.getDynamicSamples(id.c_str(), id.size(), range.start, range.startScale, range.end, range.endScale, &host,
                             &host);
    });
    // Samples may turn out malformed when they are read; what can be read has been counted.
    Require(!read || (counted && info.sampleCount == host.samples));
    Ask(host, [&] { file.getAdjacentSamples(id.c_str(), id.size(), range.start, range.startScale, &host, &host); });
  }
}

void Walk(FuzzHost& host, ISensorFileHandler& file, std::string const& path, int& nodesLeft) {
  bool const listed = Ask(host, [&] {
    if (path.empty()) {
      file.getRootChildren(&host, &host);
    } else {
      file.getGroupChildren(path.c_str(), path.size(), &host, &host);
    }
  });
  if (!listed) {
    return;
  }
  std::vector<std::string> const leaves = host.leaves;
  for (std::size_t i = 0; i != leaves.size() && nodesLeft != 0; ++i, --nodesLeft) {
    std::string const child = path + '[' + std::to_string(i) + ']';
    Require(Ask(host, [&] { file.getGroupChildInfo(child.c_str(), child.size(), &host, &host); }));
    if (host.childType == ns_sensor::kGroupChild) {
      Walk(host, file, child, nodesLeft);
    } else if (host.childType == ns_sensor::kStaticChild) {
      Ask(host, [&] { file.getStaticDataInfo(child.c_str(), child.size(), &host, &host); });
    } else if (Ask(host, [&] { file.getDynamicDataInfo(child.c_str(), child.size(), &host, &host); })) {
      std::string const id = host.sampleSetID;
      AskForSamples(host, file, id);
    }
  }
}

}  // namespace

ISenmark& Manager(FuzzHost& host) {
  static void* api = nullptr;
  static ISenmark* const manager = [&] {
    ISenmark* created = nullptr;
    CreateSenmark_1(&created, nullptr, nullptr, nullptr, &host, Procs(), &api);
    return created;
  }();
  host.api = static_cast<ns_sensor::SK_HostPropertyAPI*>(api);
  return *manager;
}

ISensorFileHandler* Open(FuzzHost& host, std::string const& path, char const* outputPath) {
  ISenmark& manager = Manager(host);
  ISensorFileHandler* file = nullptr;
  bool const opened = Ask(host, [&] { manager.openFile(&file, path.c_str(), outputPath, &host); });
  Require(opened == (file != nullptr));
  return file;
}

void WalkAndClose(FuzzHost& host, ISensorFileHandler* file) {
  ns_sensor::SK_FileInfo info;
  Ask(host, [&] { file->getFileInfo(&info, &host, &host); });
  int nodesLeft = 200;
  Walk(host, *file, "", nodesLeft);
  Require(Ask(host, [&] { Manager(host).closeFile(&file, &host); }) && file == nullptr);
}

}  // namespace senmark_fuzz
