/// The lock of the process: one open, close, start or end at a time, whatever the manager.
#pragma once

#include <mutex>

namespace ns_sensor {

/// Holds the lock for as long as it lives. Every guard is one of the same lock, which a thread must not
/// take twice.
class SK_Mutex {
 public:
  SK_Mutex() { mMutex.lock(); }
  ~SK_Mutex() { mMutex.unlock(); }
  SK_Mutex(SK_Mutex const&) = delete;
  SK_Mutex& operator=(SK_Mutex const&) = delete;

 private:
  static std::mutex mMutex;
};

}  // namespace ns_sensor
