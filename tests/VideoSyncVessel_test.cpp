// The list that the wrapper gives without Boost, against the record that the library has.
#include "senmark/host/VideoSyncVessel.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>

#include "senmark/SK_Records.h"

namespace {

using ns_sensor::SK_VideoSyncTime;
using senmark::detail::VideoSyncMirror;
using senmark::detail::VideoSyncValueMirror;
using senmark::detail::VideoSyncVessel;

SK_VideoSyncTime Record(std::string const& name, std::uint8_t kind, boost::variant<std::string, int> const& value) {
  SK_VideoSyncTime record;
  record.fileName = name;
  record.kind = kind;
  record.value.value = value;
  return record;
}

senmark::VideoSyncTime Received(SK_VideoSyncTime const& record) {
  senmark::VideoSyncTime time{record.fileName, record.kind, {}};
  if (int const* const frame = boost::get<int>(&record.value.value)) {
    time.at = *frame;
  } else {
    time.at = boost::get<std::string>(record.value.value);
  }
  return time;
}

/// Bytes from the begin of `object` to `member`.
template <class Object, class Member>
std::ptrdiff_t OffsetIn(Object const& object, Member const& member) {
  return reinterpret_cast<char const*>(&member) - reinterpret_cast<char const*>(&object);
}

/// The int at an offset of a record.
int IntAt(SK_VideoSyncTime const& record, std::ptrdiff_t offset) {
  int number = 0;
  std::memcpy(&number, reinterpret_cast<char const*>(&record) + offset, sizeof number);
  return number;
}

TEST(VideoSyncVessel, MirrorHasTheLayoutOfTheRecord) {
  EXPECT_EQ(sizeof(VideoSyncMirror), sizeof(SK_VideoSyncTime));
  EXPECT_EQ(alignof(VideoSyncMirror), alignof(SK_VideoSyncTime));
  VideoSyncMirror const mirror;
  std::ptrdiff_t const which = OffsetIn(mirror, mirror.value.which);
  std::ptrdiff_t const room = OffsetIn(mirror, mirror.value.room);
  SK_VideoSyncTime const text = Record("name", 5, std::string("text"));
  EXPECT_EQ(OffsetIn(mirror, mirror.fileName), OffsetIn(text, text.fileName));
  EXPECT_EQ(OffsetIn(mirror, mirror.kind), OffsetIn(text, text.kind));
  EXPECT_EQ(room, OffsetIn(text, boost::get<std::string>(text.value.value)));
  EXPECT_EQ(IntAt(text, which), VideoSyncValueMirror::kText);
  SK_VideoSyncTime const frame = Record("name", 5, 7);
  EXPECT_EQ(room, OffsetIn(frame, boost::get<int>(frame.value.value)));
  EXPECT_EQ(IntAt(frame, which), VideoSyncValueMirror::kFrame);
}

/// What the list holds goes with the vessel: the leak checker would tell.
TEST(VideoSyncVessel, RecordsAreDestroyed) {
  std::string const longText(100, 'x');
  std::vector<SK_VideoSyncTime> const records = {Record(longText, 0, longText), Record("short", 1, std::string("s")),
                                                 Record(longText, 2, 12)};
  std::vector<senmark::VideoSyncTime> received;
  for (SK_VideoSyncTime const& record : records) {
    received.push_back(Received(record));
  }
  VideoSyncVessel vessel;
  *vessel.ForLibrary() = records;
  EXPECT_TRUE(vessel.Verify(received));
  vessel.ForLibrary()->clear();
  *vessel.ForLibrary() = records;
  EXPECT_TRUE(vessel.Verify(received));
}

TEST(VideoSyncVessel, RecordsOfAnotherLayoutAreLeftAlone) {
  std::vector<SK_VideoSyncTime> const records = {Record("name", 0, 12)};
  std::vector<senmark::VideoSyncTime> const right = {Received(records[0])};
  std::vector<senmark::VideoSyncTime> wrongKind = right;
  wrongKind[0].kind = 1;
  std::vector<senmark::VideoSyncTime> wrongValue = right;
  wrongValue[0].at = std::string("text");
  VideoSyncVessel vessel;
  *vessel.ForLibrary() = records;
  EXPECT_FALSE(vessel.Verify({}));
  EXPECT_FALSE(vessel.Verify(wrongKind));
  EXPECT_FALSE(vessel.Verify(wrongValue));
  EXPECT_TRUE(vessel.Verify(right));
}

TEST(VideoSyncVessel, EmptyListIsFine) {
  VideoSyncVessel vessel;
  vessel.ForLibrary();
  EXPECT_TRUE(vessel.Verify({}));
}

}  // namespace
