#include "ITdjsonStream_I.h"

#include "SK_ClientTable.h"
#include "SK_Ladder.h"

namespace ns_sensor {

using SK_NAMESPACE_INT::gClientProcs;
using SK_NAMESPACE_INT::RunAtBorder;

unsigned ITdjsonStream_I::readStream(char* buffer, unsigned const& size, void* error) {
  unsigned bytesRead = 0;
  RunAtBorder(error, [&] { bytesRead = ReadStream(buffer, size); });
  return bytesRead;
}

void ITdjsonStream_I::saveStream(char const* path, void* error) const {
  RunAtBorder(error, [&] { SaveStream(path); });
}

void ITdjsonStream_I::getNativeFilePath(void* client, void* error) const {
  RunAtBorder(error, [&] {
    std::string path;
    GetNativeFilePath(path);
    gClientProcs->string(client, path.c_str(), path.size());
  });
}

void ITdjsonStream_I::resetStream(void* error) {
  RunAtBorder(error, [&] { ResetStream(); });
}

}  // namespace ns_sensor
