/// The reference counts that every object of the writer has once, however many paths lead to it.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>

#include "ISharedObject_I.h"
#include "SK_NodePool.h"

namespace SK_PLUGIN {

/// The counts may be driven from any thread; a test and the step that follows it are not one step.
class SharedObjectImpl : public virtual ISharedObject_I {
 public:
  void Acquire() const override;
  /// Deletes the object also at a count of 0: an object of a native converter is never acquired, and its
  /// `std::shared_ptr` releases it once.
  void Release() const override;
  ~SharedObjectImpl() override;
  void AcquireInternal() const override;

  static void* operator new(std::size_t size) { return AllocateNode(size); }
  static void operator delete(void* memory) noexcept { FreeNode(memory); }

 private:
  mutable std::atomic<std::uint64_t> mRefCount{0};
  /// References taken in advance and not yet claimed.
  mutable std::atomic<std::uint64_t> mInternalRefCount{0};
};

struct ReleaseObject {
  template <typename T>
  void operator()(T* object) const {
    object->SharedObjectImpl::Release();
  }
};

/// Owns a new object without counting: its last `std::shared_ptr` deletes it.
template <typename T>
std::shared_ptr<T> OwnNewObject(T* object) {
  static_assert(alignof(T) <= SK_NodePool::kAlignment);
  return std::shared_ptr<T>(object, ReleaseObject(), SK_NodeAllocator<T>());
}

/// Takes a reference of its own, which goes back with the last `std::shared_ptr`.
template <typename T>
std::shared_ptr<T> MakeSharedPointer(T* object) {
  object->Acquire();
  return OwnNewObject(object);
}

}  // namespace SK_PLUGIN
