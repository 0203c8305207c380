/// A look at the two counts of an object of the writer, which nobody else is to see.
#pragma once

#include <gtest/gtest.h>

#include <atomic>
#include <cstdint>

#include "SharedObjectImpl.h"

namespace senmark_test {

using PrivateCount = std::atomic<std::uint64_t> SK_PLUGIN::SharedObjectImpl::*;

PrivateCount RefCountMember();
PrivateCount InternalRefCountMember();

/// Its instances may name the members: access is not checked where a template is instantiated by hand.
template <PrivateCount RefCount, PrivateCount InternalRefCount>
struct OpenCounts {
  friend PrivateCount RefCountMember() { return RefCount; }
  friend PrivateCount InternalRefCountMember() { return InternalRefCount; }
};
template struct OpenCounts<&SK_PLUGIN::SharedObjectImpl::mRefCount, &SK_PLUGIN::SharedObjectImpl::mInternalRefCount>;

/// Owners, and references taken in advance.
inline void ExpectCounts(SK_PLUGIN::SharedObjectImpl const& object, std::uint64_t owners, std::uint64_t inAdvance) {
  EXPECT_EQ((object.*RefCountMember()).load(), owners);
  EXPECT_EQ((object.*InternalRefCountMember()).load(), inAdvance);
}

}  // namespace senmark_test
