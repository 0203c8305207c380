/// The border of a stream: runs each operation and turns what it throws into a call of the host's error
/// proc.
#pragma once

#include "senmark/ITdjsonStream.h"

namespace ns_sensor {

class ITdjsonStream_I : public virtual ITdjsonStream {
 public:
  unsigned readStream(char* buffer, unsigned const& size, void* error) override;
  void saveStream(char const* path, void* error) const override;
  void getNativeFilePath(void* client, void* error) const override;
  void resetStream(void* error) override;
};

}  // namespace ns_sensor
