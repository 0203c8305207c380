#include "SK_Exception.h"

namespace ns_sensor {

SK_Exception::SK_Exception()
    : std::runtime_error(std::string()), mErrorCode(kNoError), mFileOffset(0), mFileLineNo(0) {}

SK_Exception::SK_Exception(eErrorCode code, std::string const& message, long long const& offset, long long const& line)
    : std::runtime_error(message), mErrorCode(code), mFileOffset(offset), mFileLineNo(line) {}

// The base is built anew from the text, so that no copy shares its storage with an exception that
// another thread is handling.
SK_Exception::SK_Exception(SK_Exception const& other)
    : std::runtime_error(other.GetLocalizedErrMsg()),
      mErrorCode(other.GetErrorCode()),
      mFileOffset(other.GetFileOffset()),
      mFileLineNo(other.GetFileLineNo()) {}

SK_Exception& SK_Exception::operator=(SK_Exception const& other) = default;

SK_Exception::~SK_Exception() = default;

char const* SK_Exception::GetLocalizedErrMsg() const {
  return what();
}

eErrorCode SK_Exception::GetErrorCode() const {
  return mErrorCode;
}

long long const& SK_Exception::GetFileOffset() const {
  return mFileOffset;
}

long long const& SK_Exception::GetFileLineNo() const {
  return mFileLineNo;
}

}  // namespace ns_sensor
