/// Files written through the tables that a module gets, with the kit or without, and read back as a host reads them.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "HostTables.h"
#include "TempFolder.h"
#include "senmark/Host.h"
#include "senmark/ITdjsonDynamicDataNum_v1.h"
#include "senmark/Module.h"

namespace senmark_test {

namespace kit = senmark::kit;

class KitFile : public testing::Test {
 protected:
  KitFile() : mPath(mFolder.Path("file.tdjson")) {}

  /// The file that `fill` writes, finished.
  std::string Write(std::function<void(kit::Output&)> const& fill,
                    std::size_t sortMemory = kit::Output::kSortMemory) const {
    {
      kit::Output output(mTables.Get(), mPath, sortMemory);
      fill(output);
      output.finish();
    }
    return mFolder.Read(mPath);
  }

  /// Code and text of the failure with which `fill` ends.
  std::string FailureOf(std::function<void(kit::Output&)> const& fill) const {
    try {
      Write(fill);
    } catch (kit::Failure const& failure) {
      return std::to_string(failure.code()) + ' ' + failure.what();
    }
    return "none";
  }

  /// The file as a host sees it.
  senmark::File Open() const { return senmark::Senmark(senmark::Library::Linked()).open(mPath); }

  /// Code of the error with which a host opens the file and reads all of it; 0 without one.
  int ReadError() const {
    try {
      senmark::File const file = Open();
      file.walk([&](senmark::Node const& node, int) {
        if (node.dynamic) {
          file.samples(node.dynamic->sampleSetId).all().collect();
        }
      });
    } catch (senmark::Error const& error) {
      return error.code();
    }
    return 0;
  }

  TempFolder mFolder;
  HostTables mTables;
  std::string mPath;
};

}  // namespace senmark_test
