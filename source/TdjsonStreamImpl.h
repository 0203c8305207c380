/// One file as a stream of bytes: the input itself, or what it was converted to.
#pragma once

#include <memory>
#include <string>

#include "ITdjsonStream_I.h"
#include "SK_ConversionInfo.h"

namespace ns_sensor {

class TdjsonStreamImpl : public ITdjsonStream_I {
 public:
  /// Opens the file of `info`, which stays alive, and with it a temporary file, as long as the stream.
  TdjsonStreamImpl(std::shared_ptr<SK_NAMESPACE_INT::SK_ConversionInfo> const& info, std::string nativePath);
  ~TdjsonStreamImpl() override;
  TdjsonStreamImpl(TdjsonStreamImpl const&) = delete;
  TdjsonStreamImpl& operator=(TdjsonStreamImpl const&) = delete;

  unsigned ReadStream(char* buffer, unsigned const& size) override;
  void SaveStream(char const* path) const override;
  /// Appends to `path`.
  void GetNativeFilePath(std::string& path) const override;
  unsigned GetStreamSize() const override;
  unsigned GetRemainingStreamSize() const override;
  void ResetStream() override;

 private:
  std::string mNativeFilePath;  // as the client gave it
  unsigned mStreamSize;         // bytes, cut to 32 bits
  unsigned mRemainingSize;      // bytes not read yet; a reset does not restore it
  std::shared_ptr<SK_NAMESPACE_INT::SK_ConversionInfo> mConversionInfo;
  int mFile;  // descriptor, -1: closed
};

}  // namespace ns_sensor
