// Reference counts, with their two ways to an owner: by a count, and by a reference taken in advance.
#include "SharedObjectImpl.h"

#include <gtest/gtest.h>

#include <memory>
#include <new>
#include <thread>
#include <vector>

#include "FailingMemory.h"

namespace SK_PLUGIN {
namespace {

using senmark_test::FailingMemory;

class Counted : public virtual SharedObjectImpl {
 public:
  explicit Counted(int& deleted) : mDeleted(deleted) {}
  ~Counted() override { ++mDeleted; }

 private:
  int& mDeleted;
};

class SharedObject : public testing::Test {
 protected:
  int mDeleted = 0;
  Counted* const mObject = new Counted(mDeleted);
};

TEST_F(SharedObject, ReleaseWithoutOwnersDeletes) {
  mObject->Release();
  EXPECT_EQ(mDeleted, 1);
}

TEST_F(SharedObject, EachAcquireTakesOneReleaseToUndo) {
  mObject->Acquire();
  mObject->Acquire();
  mObject->Release();
  EXPECT_EQ(mDeleted, 0);
  mObject->Release();
  EXPECT_EQ(mDeleted, 1);
}

TEST_F(SharedObject, TheFirstAcquireClaimsTheReferenceInAdvance) {
  mObject->AcquireInternal();
  mObject->Acquire();
  mObject->Release();
  EXPECT_EQ(mDeleted, 1);
}

TEST_F(SharedObject, TheSecondAcquireCounts) {
  mObject->AcquireInternal();
  mObject->Acquire();
  mObject->Acquire();
  mObject->Release();
  EXPECT_EQ(mDeleted, 0);
  mObject->Release();
  EXPECT_EQ(mDeleted, 1);
}

TEST_F(SharedObject, EveryReferenceInAdvanceIsClaimedOnce) {
  mObject->AcquireInternal();
  mObject->AcquireInternal();
  for (int claimed = 0; claimed < 2; ++claimed) {
    mObject->Acquire();
  }
  mObject->Release();
  EXPECT_EQ(mDeleted, 0);
  mObject->Release();
  EXPECT_EQ(mDeleted, 1);
}

TEST_F(SharedObject, AnUnclaimedReferenceInAdvanceIsNotLookedAtInTheEnd) {
  mObject->AcquireInternal();
  mObject->Release();
  EXPECT_EQ(mDeleted, 1);
}

// The way in which a module gets its objects: owned by it alone, with the reference in advance to claim.
TEST_F(SharedObject, AnObjectForAModuleGoesWithTheReleaseBehindItsFirstAcquire) {
  {
    std::shared_ptr<Counted> const shared = MakeSharedPointer(mObject);
    shared->GetISharedObject_I()->AcquireInternal();
  }
  ASSERT_EQ(mDeleted, 0);
  ISharedObject const* const object = mObject;
  object->Acquire();
  EXPECT_EQ(mDeleted, 0);
  object->Release();
  EXPECT_EQ(mDeleted, 1);
}

TEST_F(SharedObject, OwnNewObjectDoesNotCount) {
  {
    std::shared_ptr<Counted> const owner = OwnNewObject(mObject);
    std::shared_ptr<Counted> const second = owner;
  }
  EXPECT_EQ(mDeleted, 1);
}

TEST_F(SharedObject, MakeSharedPointerTakesAReferenceAndGivesItBack) {
  mObject->Acquire();
  { std::shared_ptr<Counted> const shared = MakeSharedPointer(mObject); }
  EXPECT_EQ(mDeleted, 0);
  mObject->Release();
  EXPECT_EQ(mDeleted, 1);
}

TEST_F(SharedObject, WithoutMemoryForItsOwnerAnObjectGoes) {
  {
    FailingMemory const failing(1);
    EXPECT_THROW(OwnNewObject(mObject), std::bad_alloc);
  }
  EXPECT_EQ(mDeleted, 1);
}

TEST_F(SharedObject, WithoutMemoryForAFurtherOwnerTheOthersKeepTheObject) {
  mObject->Acquire();
  {
    FailingMemory const failing(1);
    EXPECT_THROW(MakeSharedPointer(mObject), std::bad_alloc);
  }
  EXPECT_EQ(mDeleted, 0);
  mObject->Release();
  EXPECT_EQ(mDeleted, 1);
}

TEST_F(SharedObject, ItsInterfaceIsTheObjectItself) {
  EXPECT_EQ(mObject->GetISharedObject_I(), static_cast<ISharedObject*>(mObject));
  mObject->Release();
}

TEST_F(SharedObject, CountsFromManyThreadsAddUp) {
  mObject->Acquire();
  std::vector<std::thread> threads;
  for (int thread = 0; thread < 4; ++thread) {
    threads.emplace_back([this] {
      for (int round = 0; round < 10000; ++round) {
        mObject->Acquire();
        mObject->Release();
      }
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  EXPECT_EQ(mDeleted, 0);
  mObject->Release();
  EXPECT_EQ(mDeleted, 1);
}

TEST(SharedObjectDeathTest, AnObjectThatIsDeletedWithOwnersStopsTheProcess) {
  testing::FLAGS_gtest_death_test_style = "threadsafe";
  EXPECT_DEATH(
      {
        int deleted = 0;
        Counted const object(deleted);
        object.Acquire();
      },
      "plugin/source/tdjsonWriter/SK_SharedObjectImpl:20: ~SharedObjectImpl: Assertion `mRefCount == 0' failed");
}

}  // namespace
}  // namespace SK_PLUGIN
