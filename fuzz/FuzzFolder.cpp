#include "FuzzFolder.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "FuzzCheck.h"

namespace senmark_fuzz {
namespace {

namespace fs = std::filesystem;

constexpr char kTemporary[] = "temporary/";

/// The lowest one, which every open descriptor below it keeps where it is.
int LowestFreeDescriptor() {
  int const descriptor = open("/dev/null", O_RDONLY | O_CLOEXEC);
  close(descriptor);
  return descriptor;
}

}  // namespace

FuzzFolder::FuzzFolder() : mRoot((fs::temp_directory_path() / "senmark_fuzz_XXXXXX").string()) {
  Require(mkdtemp(mRoot.data()) != nullptr);
  mRoot += '/';
  fs::create_directory(Path(kTemporary));
  setenv("TEMP", Path(kTemporary).c_str(), 1);
}

FuzzFolder::~FuzzFolder() {
  std::error_code ignored;
  fs::remove_all(mRoot, ignored);
}

std::string FuzzFolder::Write(std::string const& name, std::uint8_t const* data, std::size_t size) const {
  std::string path = Path(name);
  std::ofstream(path, std::ios::binary).write(reinterpret_cast<char const*>(data), static_cast<std::streamsize>(size));
  return path;
}

std::string FuzzFolder::Read(std::string const& name) const {
  std::ifstream file(Path(name), std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

void FuzzFolder::Remove(std::string const& name) const {
  unlink(Path(name).c_str());
}

void FuzzFolder::StartInput() {
  mFreeDescriptor = LowestFreeDescriptor();
}

void FuzzFolder::RequireNothingLeft(std::initializer_list<char const*> names) const {
  for (fs::directory_entry const& entry : fs::directory_iterator(mRoot)) {
    std::string const name = entry.path().filename().string();
    Require(name + '/' == kTemporary || std::find(names.begin(), names.end(), name) != names.end());
  }
  Require(fs::is_empty(Path(kTemporary)));
  Require(LowestFreeDescriptor() == mFreeDescriptor);
}

}  // namespace senmark_fuzz
