/// What the writer and the converters throw among themselves: a code and a place, no message. The
/// ladder that catches it adds the message.
#pragma once

#include "senmark/SK_ErrorCode.h"

namespace SK_PLUGIN {

using ns_sensor::eErrorCode;

class SK_PluginException {
 public:
  SK_PluginException(eErrorCode code, long long const& offset, long long const& line)
      : mErrorCode(code), mFileOffset(offset), mFileLineNo(line) {}

  eErrorCode GetErrorCode() const { return mErrorCode; }
  long long const& GetFileOffset() const { return mFileOffset; }  ///< -1 for none
  long long const& GetFileLineNo() const { return mFileLineNo; }  ///< -1 for none

 private:
  eErrorCode mErrorCode;
  long long mFileOffset;
  long long mFileLineNo;
};

}  // namespace SK_PLUGIN
