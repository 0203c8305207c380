#include "SK_Mutex.h"

namespace ns_sensor {

std::mutex SK_Mutex::mMutex;

}  // namespace ns_sensor
