#include "ElfHead.h"

#include <algorithm>
#include <cstring>
#include <fstream>

namespace senmark_tool {

ElfHead OwnElfHead() {
  ElfHead head = {};
  std::ifstream("/proc/self/exe", std::ios::binary).read(reinterpret_cast<char*>(&head), sizeof head);
  return head;
}

eElfKind ElfKindOf(ElfHead const& head) {
  if (std::memcmp(head.e_ident, ELFMAG, SELFMAG) != 0) {
    return eElfKind::kNoElf;
  }
  ElfHead const own = OwnElfHead();
  if (std::memcmp(head.e_ident, own.e_ident, EI_VERSION) != 0 || head.e_machine != own.e_machine) {
    return eElfKind::kOtherMachine;
  }
  return head.e_type == ET_DYN ? eElfKind::kSharedObject : eElfKind::kNoSharedObject;
}

bool IsElfWhole(std::vector<ElfSegment> const& segments, std::uint64_t fileSize) {
  return std::all_of(segments.begin(), segments.end(), [fileSize](ElfSegment const& segment) {
    return segment.p_type != PT_LOAD ||
           (segment.p_offset <= fileSize && segment.p_filesz <= fileSize - segment.p_offset);
  });
}

}  // namespace senmark_tool
