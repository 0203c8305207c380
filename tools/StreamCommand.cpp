#include <fstream>
#include <stdexcept>
#include <vector>

#include "Command.h"
#include "ScratchFolder.h"

namespace senmark_tool {

int RunStream(senmark::Senmark const& manager, Request const& request, std::ostream& out) {
  constexpr std::size_t kPiece = 1 << 20;
  ScratchFolder const scratch;
  std::string const path = scratch.Path("stream");
  // By way of a file, because reading a stream ends at 4 GiB and saving it does not.
  manager.stream(request.file, true).save(path);
  std::ifstream file(path, std::ios::binary);
  std::vector<char> piece(kPiece);
  while (file) {
    file.read(piece.data(), static_cast<std::streamsize>(piece.size()));
    out.write(piece.data(), file.gcount());
  }
  if (!file.eof()) {
    throw std::runtime_error("cannot read its text");
  }
  return kFine;
}

}  // namespace senmark_tool
