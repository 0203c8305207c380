/// What the head and the segments of a shared object tell, whichever way their bytes were read.
#pragma once

#include <link.h>

#include <cstdint>
#include <vector>

namespace senmark_tool {

using ElfHead = ElfW(Ehdr);
using ElfSegment = ElfW(Phdr);

/// Whether code can be loaded on this machine; the first thing that keeps it from that.
enum class eElfKind : std::uint8_t {
  kSharedObject,  ///< nothing does
  kNoElf,
  kOtherMachine,  ///< the width of addresses, the order of bytes or the processor is another
  kNoSharedObject,
};

/// The head of this program: what can be loaded into it says the same of the machine.
ElfHead OwnElfHead();

eElfKind ElfKindOf(ElfHead const& head);

/// Whether all that the loader maps is in a file of so many bytes. The loader does not look, and the process would die
/// at the first page that is missing.
bool IsElfWhole(std::vector<ElfSegment> const& segments, std::uint64_t fileSize);

}  // namespace senmark_tool
