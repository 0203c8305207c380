/// Outlines in both format versions, changes to them, and what the validator says about the result.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "SK_RapidJson.h"

namespace senmark_test {

/// One change to a document: the value at `pointer` (a JSON pointer) becomes `json`, or goes if that is
/// null. A pointer that ends in "/-" appends to an array.
struct Edit {
  char const* pointer;
  char const* json;
};

struct AcceptedOutline {
  char const* name;
  std::vector<Edit> edits;
};

struct RefusedOutline {
  char const* name;
  std::vector<Edit> edits;
  int code;
  char const* message;
};

/// Names a row by its own name in the output of the tests.
struct NameOfRow {
  template <typename Row>
  std::string operator()(testing::TestParamInfo<Row> const& info) const {
    return info.param.name;
  }
};

/// A valid outline of version 1 or 2, with a node of every kind. In both versions the same kinds stand in
/// the same places under the same names:
///
///   0 Speed, 1 Note, 2 Point   static: number, text, two numbers
///   3 Track, 4 Marks, 5 Hand   dynamic: number, text, two numbers
///   6 Body                     a group: 0 Arm (a group with 0 Bone, static number), 1 Leg (static number)
///
/// Version 2 also has, at 7, Flag, a static boolean.
std::string ValidOutline(int version);

SK_NAMESPACE_INT::JDocument Parsed(std::string const& json);
SK_NAMESPACE_INT::JDocument Edited(std::string const& json, std::vector<Edit> const& edits);

/// Runs `ValidateOutline` of the version's validator.
void ValidateOutline(int version, SK_NAMESPACE_INT::JValue const& outline);

}  // namespace senmark_test
