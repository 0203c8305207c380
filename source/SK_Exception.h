/// The exception of the library: a code, a finished message and a place in the input file.
#pragma once

#include <stdexcept>
#include <string>

#include "senmark/SK_ErrorCode.h"

namespace ns_sensor {

class SK_Exception : public std::runtime_error {
 public:
  /// No error: code 0, an empty message, and 0 (not -1) for both positions.
  SK_Exception();
  /// offset  bytes from the start of the input file, -1 for none; line: line in it, -1 for none.
  SK_Exception(eErrorCode code, std::string const& message, long long const& offset, long long const& line);
  SK_Exception(SK_Exception const& other);
  SK_Exception& operator=(SK_Exception const& other);
  ~SK_Exception() override;

  char const* GetLocalizedErrMsg() const;  ///< UTF-8, as long as this object lives unchanged
  eErrorCode GetErrorCode() const;
  long long const& GetFileOffset() const;
  long long const& GetFileLineNo() const;

 private:
  eErrorCode mErrorCode;
  long long mFileOffset;
  long long mFileLineNo;
};

}  // namespace ns_sensor
