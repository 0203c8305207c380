#include "SK_Exception.h"

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <type_traits>

namespace {

using ns_sensor::eErrorCode;
using ns_sensor::SK_Exception;

static_assert(std::is_base_of_v<std::runtime_error, SK_Exception>);
static_assert(std::is_reference_v<decltype(std::declval<SK_Exception const&>().GetFileOffset())>);
static_assert(std::is_reference_v<decltype(std::declval<SK_Exception const&>().GetFileLineNo())>);
static_assert(sizeof(eErrorCode) == 4);

void ExpectFields(SK_Exception const& exception, int code, std::string const& message, long long offset,
                  long long line) {
  EXPECT_EQ(exception.GetErrorCode(), code);
  EXPECT_EQ(exception.GetLocalizedErrMsg(), message);
  EXPECT_EQ(exception.what(), message);
  EXPECT_EQ(exception.GetFileOffset(), offset);
  EXPECT_EQ(exception.GetFileLineNo(), line);
}

SK_Exception Sample() {
  return SK_Exception(ns_sensor::kJsonSyntax, "a message", 5000000000, 70);
}

TEST(Exception, DefaultHasZerosAndNoMessage) {
  ExpectFields(SK_Exception(), 0, "", 0, 0);
}

TEST(Exception, KeepsWhatItIsGiven) {
  ExpectFields(Sample(), 32, "a message", 5000000000, 70);
  ExpectFields(SK_Exception(ns_sensor::kNoMemory, "", -1, -1), 34, "", -1, -1);
}

TEST(Exception, CodesOutsideTheTableAreKept) {
  ExpectFields(SK_Exception(static_cast<eErrorCode>(2011), "x", -1, -1), 2011, "x", -1, -1);
}

TEST(Exception, CopyHasATextOfItsOwn) {
  auto original = std::make_unique<SK_Exception>(Sample());
  SK_Exception const copy(*original);
  EXPECT_NE(copy.what(), original->what());
  original.reset();
  ExpectFields(copy, 32, "a message", 5000000000, 70);
}

TEST(Exception, AssignmentTakesEveryField) {
  SK_Exception target(ns_sensor::kNoMemory, "old", 1, 2);
  SK_Exception const source = Sample();
  SK_Exception& result = target = source;
  EXPECT_EQ(&result, &target);
  ExpectFields(target, 32, "a message", 5000000000, 70);
  SK_Exception const& itself = target;
  target = itself;
  ExpectFields(target, 32, "a message", 5000000000, 70);
  target = SK_Exception();
  ExpectFields(target, 0, "", 0, 0);
}

TEST(Exception, PositionsAreReadThroughReferences) {
  SK_Exception exception = Sample();
  long long const& offset = exception.GetFileOffset();
  long long const& line = exception.GetFileLineNo();
  exception = SK_Exception(ns_sensor::kNoError, "", 3, 4);
  EXPECT_EQ(offset, 3);
  EXPECT_EQ(line, 4);
}

TEST(Exception, IsCaughtAsARuntimeError) {
  try {
    throw Sample();
  } catch (std::runtime_error const& error) {
    EXPECT_EQ(error.what(), std::string("a message"));
  }
}

}  // namespace
