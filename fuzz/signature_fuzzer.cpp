// Signatures and a file. The input is a script: how many signatures, each with its offset, its length and its bytes,
// then the file. What the library says of the file, a plain comparison says too, and no code of the module is needed.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "ByteScript.h"
#include "CheckFormat.h"
#include "FuzzCheck.h"
#include "FuzzFolder.h"
#include "SK_ConverterHandler.h"
#include "SK_ConverterHandlerInstance.h"
#include "SK_FileIO.h"
#include "SK_Module.h"
#include "SK_PathInfo.h"
#include "SK_PluginManager.h"

namespace {

using senmark_fuzz::ByteScript;
using senmark_fuzz::FuzzFolder;
using senmark_fuzz::Require;
using SK_PLUGIN::CheckFormat;
using SK_PLUGIN::SK_ConverterHandler;
using SK_PLUGIN::SK_PluginManager;

constexpr std::size_t kLargestInput = 16 * 1024;

std::string Hexadecimal(std::string const& bytes) {
  constexpr char kDigits[] = "0123456789abcdefABCDEF";
  std::string text = "0x";
  for (char const c : bytes) {
    auto const byte = static_cast<unsigned char>(c);
    text += kDigits[byte / 16];
    text += kDigits[byte % 16];
  }
  return text;
}

std::string TakeBytes(ByteScript& script, std::size_t count) {
  std::string bytes;
  for (std::size_t i = 0; i < count && script.HasMore(); ++i) {
    bytes += static_cast<char>(script.Byte());
  }
  return bytes;
}

/// A signature whose bytes are still to be found: of the script, or of the file at its place.
struct Draft {
  CheckFormat format;
  std::size_t kind = 0;
  std::size_t change = 0;
};

Draft TakeDraft(ByteScript& script) {
  Draft draft;
  CheckFormat& format = draft.format;
  switch (script.Below(4)) {
    case 0:
      format.mOffset = script.Byte();
      break;
    case 1:
      format.mOffset = script.Word() % 5000;
      break;
    default:
      format.mOffset = static_cast<std::int64_t>(std::uint64_t{script.Word()} << 32U | script.Word());
      break;
  }
  switch (script.Below(4)) {
    case 0:
      format.mLength = script.Byte();
      break;
    case 1:
      format.mLength = static_cast<std::int32_t>(1000 + script.Word() % 50);
      break;
    default:
      format.mLength = static_cast<std::int32_t>(script.Word());
      break;
  }
  draft.kind = script.Below(5);
  draft.change = script.Below(256);
  std::size_t const own = script.Byte() + (draft.kind == 2 ? std::size_t{1000} : 0);
  format.mByteSequence = TakeBytes(script, own);
  return draft;
}

/// What stands in the file becomes the signature, as text or in digits, as it is or with one character changed.
CheckFormat Finish(Draft const& draft, std::string const& content) {
  CheckFormat format = draft.format;
  auto const offset = static_cast<std::uint64_t>(format.mOffset);
  std::string const there =
      offset < content.size() ? content.substr(offset, static_cast<std::size_t>(std::max(format.mLength, 0))) : "";
  std::string& bytes = format.mByteSequence;
  switch (draft.kind) {
    case 1:
      bytes = Hexadecimal(bytes);
      break;
    case 3:
      bytes = there;
      break;
    case 4:
      bytes = Hexadecimal(there.substr(0, 1024));
      break;
    default:
      break;
  }
  if (draft.kind >= 3 && draft.change % 2 == 1 && !bytes.empty()) {
    bytes[draft.change % bytes.size()] ^= static_cast<char>(1U << draft.change % 8);
  }
  return format;
}

/// -1 for no digit.
int Digit(char c) {
  std::string const digits = "0123456789abcdefABCDEF";
  std::size_t const place = digits.find(c);
  return c == '\0' || place == std::string::npos ? -1 : static_cast<int>(place < 16 ? place : place - 6);
}

/// A number of one digit may have white space or a sign in front, and text behind.
long PairValue(char left, char right) {
  if (Digit(left) >= 0) {
    return Digit(right) >= 0 ? Digit(left) * 16 + Digit(right) : Digit(left);
  }
  if (left == '\0' || std::string(" \t\n\v\f\r+-").find(left) == std::string::npos || Digit(right) < 0) {
    return 0;
  }
  return left == '-' ? -Digit(right) : Digit(right);
}

bool Matches(CheckFormat const& format, std::string const& content) {
  if (format.mLength <= 0 || format.mByteSequence.empty() || format.mOffset < 0) {
    return false;
  }
  auto const offset = static_cast<std::uint64_t>(format.mOffset);
  auto const length = static_cast<std::size_t>(format.mLength > 1024 ? 1024 : format.mLength);
  if (offset > content.size() || content.size() - offset < length) {
    return false;
  }
  std::string const& bytes = format.mByteSequence;
  bool const digits = bytes.size() == 2 + 2 * length && bytes[0] == '0' && bytes[1] == 'x';
  for (std::size_t i = 0; i < length; ++i) {
    char const actual = content[offset + i];
    if (digits) {
      if (PairValue(bytes[2 + 2 * i], bytes[3 + 2 * i]) != static_cast<unsigned char>(actual)) {
        return false;
      }
    } else if (i > bytes.size() || actual != (i == bytes.size() ? '\0' : bytes[i])) {
      return false;
    }
  }
  return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  static FuzzFolder folder;
  folder.StartInput();
  if (size > kLargestInput) {
    return 0;
  }
  ByteScript script(data, size);
  std::vector<Draft> drafts(1 + script.Below(3));
  for (Draft& draft : drafts) {
    draft = TakeDraft(script);
  }
  std::string const content = TakeBytes(script, size);
  std::string const path =
      folder.Write("input.ext", reinterpret_cast<std::uint8_t const*>(content.data()), content.size());

  SK_PluginManager::initialize("", "");
  auto const handler = std::make_shared<SK_ConverterHandler>(
      "uid", false, std::make_shared<SK_PLUGIN::SK_Module>(folder.Path("no module")));
  bool expected = true;
  for (Draft const& draft : drafts) {
    CheckFormat const format = Finish(draft, content);
    bool const matches = Matches(format, content);
    File_IO::Descriptor const file(File_IO::Open(path.c_str(), true, false));
    Require(format.IsIn(file.Get()) == matches);
    expected = expected && matches;
    handler->addCheckFormat(format);
  }
  SK_PluginManager::addConverterHandler("ext", handler);
  std::string uid = "ext";
  SK_NAMESPACE_INT::SK_PathInfo const info(path, "ext");
  // May be asked again.
  Require(SK_PLUGIN::Plugin_CheckFileFormat(uid, info) == expected);
  Require(SK_PLUGIN::Plugin_CheckFileFormat(uid, info) == expected);
  SK_PluginManager::terminate();
  folder.RequireNothingLeft({"input.ext"});
  return 0;
}
