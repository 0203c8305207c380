#include "SharedObjectImpl.h"

#include "SK_Assert.h"

namespace SK_PLUGIN {

void SharedObjectImpl::Acquire() const {
  if (mInternalRefCount.load() != 0) {
    mInternalRefCount.fetch_sub(1);
  } else {
    mRefCount.fetch_add(1);
  }
}

void SharedObjectImpl::Release() const {
  if (mRefCount.load() != 0 && mRefCount.fetch_sub(1) != 1) {
    return;
  }
  delete this;
}

SharedObjectImpl::~SharedObjectImpl() {
  if (mRefCount.load() != 0) {
    SK_NAMESPACE_INT::SK_AssertFailed("mRefCount == 0", "~SharedObjectImpl",
                                      "plugin/source/tdjsonWriter/SK_SharedObjectImpl", 20);
  }
}

void SharedObjectImpl::AcquireInternal() const {
  mInternalRefCount.fetch_add(1);
  mRefCount.fetch_add(1);
}

}  // namespace SK_PLUGIN
