#include "SK_RapidJson.h"

#include <gtest/gtest.h>

#include "ExpectError.h"

namespace {

using senmark_test::ExpectError;
using SK_NAMESPACE_INT::JDocument;
using SK_NAMESPACE_INT::JValue;

constexpr char kMessage[] = "Assertion failure:RapidJSON.";

TEST(RapidJson, FailedAssertionIsAnErrorOfCode19) {
  JValue const number(1.5);
  ExpectError([&] { number.GetString(); }, 19, kMessage);
  ExpectError([&] { number["name"]; }, 19, kMessage);
  ExpectError([&] { number.Size(); }, 19, kMessage);
  JDocument document;
  document.SetObject();
  ExpectError([&] { document["absent"]; }, 19, kMessage);
}

TEST(RapidJson, AssertionInAnOperationThatPromisedNotToThrowIsReportedToo) {
  JValue value(1.5);
  JValue& itself = value;
  ExpectError([&] { value = itself; }, 19, kMessage);
}

}  // namespace
