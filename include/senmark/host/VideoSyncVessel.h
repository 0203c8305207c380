/// Inside of the wrapper: the list that `getVideoSyncTime` fills, without Boost.
///
/// The library fills a `std::vector<SK_VideoSyncTime>` whose records hold a `boost::variant`. The entries
/// also come through a client proc, so nothing is read from the list, but it has to be given and its
/// records destroyed. `VideoSyncMirror` has the layout of that record; a test that has Boost compares the
/// two. Whether the list that comes back really has that layout is looked at before anything is
/// destroyed: a library built otherwise costs some memory then, but no crash.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <new>
#include <string>
#include <type_traits>
#include <vector>

#include "senmark/host/Values.h"

namespace ns_sensor {
struct SK_VideoSyncTime;
}

namespace senmark::detail {

/// The layout of a variant of a text (0) and an int (1): the number of the alternative, and room for the
/// larger of them.
struct VideoSyncValueMirror {
  static constexpr int kText = 0;
  static constexpr int kFrame = 1;

  VideoSyncValueMirror() = default;
  VideoSyncValueMirror(VideoSyncValueMirror const&) = delete;
  VideoSyncValueMirror& operator=(VideoSyncValueMirror const&) = delete;
  ~VideoSyncValueMirror() {
    if (which == kText) {
      Text().~basic_string();
    }
  }

  std::string& Text() { return *std::launder(reinterpret_cast<std::string*>(room)); }

  int which = kFrame;
  alignas(std::string) unsigned char room[sizeof(std::string)] = {};
};

/// The layout of `ns_sensor::SK_VideoSyncTime`.
struct VideoSyncMirror {
  std::string fileName;
  std::uint8_t kind = 2;
  VideoSyncValueMirror value;
};

/// Owns the list during one call.
class VideoSyncVessel {
 public:
  VideoSyncVessel() : mList() {}
  VideoSyncVessel(VideoSyncVessel const&) = delete;
  VideoSyncVessel& operator=(VideoSyncVessel const&) = delete;
  /// Records of a layout that `Verify` has not seen are left alone.
  ~VideoSyncVessel() {
    if (mVerified) {
      mList.~vector();
    }
  }

  /// What the library takes. The cast does not pass through any code that knows both types.
  std::vector<ns_sensor::SK_VideoSyncTime>* ForLibrary() {
    mVerified = false;
    return reinterpret_cast<std::vector<ns_sensor::SK_VideoSyncTime>*>(&mList);
  }

  /// Compares the list with what came through the proc. True: its records can be destroyed.
  bool Verify(std::vector<VideoSyncTime> const& received) {
    mVerified = Matches(received);
    return mVerified;
  }

 private:
  bool Matches(std::vector<VideoSyncTime> const& received) {
    if (mList.size() != received.size()) {
      return false;
    }
    for (std::size_t i = 0; i != received.size(); ++i) {
      int const which = std::holds_alternative<std::string>(received[i].at) ? VideoSyncValueMirror::kText
                                                                            : VideoSyncValueMirror::kFrame;
      if (mList[i].value.which != which || mList[i].kind != received[i].kind) {
        return false;
      }
    }
    return true;
  }

  union {  // its end is decided by `mVerified`
    std::vector<VideoSyncMirror> mList;
  };
  bool mVerified = true;
};

}  // namespace senmark::detail
