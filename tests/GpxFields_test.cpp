// What points have beside their place and time.
#include "GpxFields.h"

#include <gtest/gtest.h>

#include "senmark/module/Failure.h"

namespace senmark_gpx {
namespace {

TEST(GpxFields, KnownNumbersHaveNamesAndUnits) {
  struct Row {
    char const* element;
    char const* name;
    char const* unit;
    bool holds;
  };
  Row const rows[] = {
      {"speed", "Speed", "m/s", false},
      {"course", "Course", "deg", true},
      {"bearing", "Bearing", "deg", true},
      {"magvar", "Magnetic variation", "deg", false},
      {"geoidheight", "Geoid height", "m", false},
      {"sat", "Satellites", "", true},
      {"hdop", "HDOP", "", false},
      {"vdop", "VDOP", "", false},
      {"pdop", "PDOP", "", false},
      {"ageofdgpsdata", "DGPS age", "s", false},
      {"dgpsid", "DGPS station", "", true},
      {"hr", "Heart rate", "bpm", false},
      {"heartrate", "Heart rate", "bpm", false},
      {"HeartRate", "Heart rate", "bpm", false},
      {"cad", "Cadence", "rpm", false},
      {"cadence", "Cadence", "rpm", false},
      {"power", "Power", "W", false},
      {"PowerInWatts", "Power", "W", false},
      {"watts", "Power", "W", false},
      {"atemp", "Temperature", "\u00B0C", false},
      {"temp", "Temperature", "\u00B0C", false},
      {"temperature", "Temperature", "\u00B0C", false},
      {"wtemp", "Water temperature", "\u00B0C", false},
      {"depth", "Depth", "m", false},
      {"distance", "Distance", "m", false},
      {"hAcc", "Horizontal accuracy", "m", false},
      {"vAcc", "Vertical accuracy", "m", false},
      {"gear", "gear", "", false},
      {"Gear", "Gear", "", false},
  };
  GpxFields fields;
  for (Row const& row : rows) {
    Field const field = fields[fields.ofNumber(row.element)];
    EXPECT_EQ(field.name, row.name) << row.element;
    EXPECT_EQ(field.unit, row.unit) << row.element;
    EXPECT_EQ(field.holds, row.holds) << row.element;
    EXPECT_FALSE(field.isText) << row.element;
  }
}

TEST(GpxFields, NamesOfOneFieldAreOne) {
  GpxFields fields;
  EXPECT_EQ(fields.ofNumber("hr"), fields.ofNumber("heartrate"));
  EXPECT_EQ(fields.ofNumber("hr"), fields.ofNumber("HR"));
  EXPECT_EQ(fields.ofNumber("gear"), fields.ofNumber("gear"));
  EXPECT_NE(fields.ofNumber("gear"), fields.ofNumber("Gear"));
  EXPECT_NE(fields.ofNumber("name"), fields.ofText("name"));
}

TEST(GpxFields, TextsAreThoseOfTheStandard) {
  struct Row {
    char const* element;
    char const* name;
    bool marksEvents;
  };
  Row const rows[] = {
      {"name", "Name", true},  {"cmt", "Comment", true}, {"desc", "Description", true}, {"src", "Source", false},
      {"sym", "Symbol", true}, {"type", "Type", true},   {"fix", "Fix", false},
  };
  GpxFields const fields;
  for (Row const& row : rows) {
    Field const& field = fields[fields.ofText(row.element)];
    EXPECT_EQ(field.name, row.name);
    EXPECT_EQ(field.marksEvents, row.marksEvents) << row.element;
    EXPECT_TRUE(field.isText && field.holds) << row.element;
  }
  EXPECT_EQ(fields.ofText("Name"), GpxFields::kNone);
  EXPECT_EQ(fields.ofText("hr"), GpxFields::kNone);
}

TEST(GpxFields, StandardNumbersAreKnown) {
  for (char const* const name :
       {"ele", "speed", "course", "magvar", "geoidheight", "sat", "hdop", "vdop", "pdop", "ageofdgpsdata", "dgpsid"}) {
    EXPECT_TRUE(GpxFields::IsStandardNumber(name)) << name;
  }
  EXPECT_FALSE(GpxFields::IsStandardNumber("hr"));
  EXPECT_FALSE(GpxFields::IsStandardNumber("Speed"));
}

TEST(GpxFields, UnknownNamesHaveALimit) {
  GpxFields fields;
  std::size_t const known = fields.size();
  for (std::size_t i = 0; i != GpxFields::kMostNames; ++i) {
    EXPECT_EQ(fields.ofNumber("name" + std::to_string(i)), known + i);
  }
  EXPECT_EQ(fields.ofNumber("name0"), known);
  EXPECT_THROW(fields.ofNumber("another"), senmark::kit::Failure);
  // Another spelling of a known name takes room too.
  EXPECT_THROW(fields.ofNumber("hR"), senmark::kit::Failure);
}

}  // namespace
}  // namespace senmark_gpx
