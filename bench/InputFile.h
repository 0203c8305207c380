/// A file that a benchmark makes, in the folder for temporary files.
#pragma once

#include <unistd.h>

#include <fstream>
#include <string>

#include "OpeningHost.h"

/// Gone with the object.
class InputFile {
 public:
  InputFile(std::string const& name, std::string const& content) : mPath(TempFolder() + name) {
    std::ofstream(mPath, std::ios::binary) << content;
  }
  ~InputFile() { ::unlink(mPath.c_str()); }
  InputFile(InputFile const&) = delete;
  InputFile& operator=(InputFile const&) = delete;

  std::string const& Path() const { return mPath; }

 private:
  std::string mPath;
};
