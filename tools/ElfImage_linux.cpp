#include "ElfImage.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <set>

#include "ElfHead.h"

namespace senmark_tool {

namespace {

using Entry = ElfW(Dyn);
using Symbol = ElfW(Sym);

/// Raised where a table leads out of the file.
struct LeadsOut {};

/// The bytes of the file. Every read is checked.
class Bytes {
 public:
  explicit Bytes(std::string const& bytes) : mBytes(bytes) {}

  template <typename Record>
  Record At(std::uint64_t offset) const {
    if (offset > mBytes.size() || mBytes.size() - offset < sizeof(Record)) {
      throw LeadsOut();
    }
    Record record;
    std::memcpy(&record, mBytes.data() + offset, sizeof record);
    return record;
  }

  std::string TextAt(std::uint64_t offset) const {
    std::size_t const end = offset < mBytes.size() ? mBytes.find('\0', offset) : std::string::npos;
    if (end == std::string::npos) {
      throw LeadsOut();
    }
    return mBytes.substr(offset, end - offset);
  }

  std::uint64_t Size() const { return mBytes.size(); }

 private:
  std::string const& mBytes;
};

std::string MachineText(ElfHead const& head) {
  std::map<unsigned, char const*> const names = {{EM_X86_64, "x86-64"}, {EM_386, "i386"},     {EM_AARCH64, "aarch64"},
                                                 {EM_ARM, "arm"},       {EM_RISCV, "risc-v"}, {EM_PPC64, "ppc64"},
                                                 {EM_S390, "s390"}};
  auto const found = names.find(head.e_machine);
  return found == names.end() ? "machine " + std::to_string(head.e_machine) : found->second;
}

std::string OtherMachineText(ElfHead const& head) {
  ElfHead const own = OwnElfHead();
  if (head.e_ident[EI_CLASS] != own.e_ident[EI_CLASS]) {
    return head.e_ident[EI_CLASS] == ELFCLASS32 ? "this is code for 32 bits, and the library is for 64"
                                                : "this is code for 64 bits, and the library is for 32";
  }
  if (head.e_ident[EI_DATA] != own.e_ident[EI_DATA]) {
    return "the order of bytes is not that of this machine";
  }
  return "this is code for " + MachineText(head) + ", and the machine is " + MachineText(own);
}

std::string OtherFileText(ElfHead const& head) {
  return head.e_type == ET_REL    ? "this is an object file: it has to be linked, with -shared"
         : head.e_type == ET_EXEC ? "this is a program: a module is linked with -shared"
                                  : "this is no shared object";
}

/// What keeps the library from taking the file for a module; empty if nothing does.
std::string FindObstacle(std::string const& bytes) {
  ElfHead head = {};
  std::memcpy(&head, bytes.data(), std::min(bytes.size(), sizeof head));
  eElfKind const kind = ElfKindOf(head);
  if (kind == eElfKind::kNoElf) {
    return "this is no ELF file";
  }
  if (bytes.size() < sizeof head) {
    return "the file ends within its head";
  }
  return kind == eElfKind::kOtherMachine     ? OtherMachineText(head)
         : kind == eElfKind::kNoSharedObject ? OtherFileText(head)
                                             : std::string();
}

/// The tables that the loader finds through the dynamic section.
class DynamicSection {
 public:
  explicit DynamicSection(Bytes const& bytes) : mBytes(bytes) {
    auto const head = bytes.At<ElfHead>(0);
    for (std::uint64_t i = 0; i < head.e_phnum; ++i) {
      mSegments.push_back(bytes.At<ElfSegment>(head.e_phoff + i * sizeof(ElfSegment)));
    }
    for (ElfSegment const& segment : mSegments) {
      if (segment.p_type == PT_DYNAMIC) {
        ReadEntries(segment);
      }
    }
  }

  bool IsWhole() const { return IsElfWhole(mSegments, mBytes.Size()); }

  std::vector<std::string> Texts(std::int64_t tag) const {
    std::vector<std::string> texts;
    for (Entry const& entry : mEntries) {
      if (entry.d_tag == tag) {
        texts.push_back(Text(entry.d_un.d_val));
      }
    }
    return texts;
  }

  std::vector<Symbol> Symbols() const {
    std::vector<Symbol> symbols;
    std::optional<std::uint64_t> const first = FileOffset(DT_SYMTAB);
    for (std::uint64_t i = 0, count = first ? CountSymbols() : 0; i < count; ++i) {
      symbols.push_back(mBytes.At<Symbol>(*first + i * sizeof(Symbol)));
    }
    return symbols;
  }

  std::string Text(std::uint64_t position) const {
    std::optional<std::uint64_t> const texts = FileOffset(DT_STRTAB);
    return texts ? mBytes.TextAt(*texts + position) : std::string();
  }

  /// Whether a version tells which library defines the symbol.
  bool HasVersion(std::uint64_t symbol) const {
    constexpr unsigned kFirstVersion = 2;  // below: local and global names without any
    std::optional<std::uint64_t> const versions = FileOffset(DT_VERSYM);
    return versions && (mBytes.At<std::uint16_t>(*versions + symbol * 2) & 0x7fffu) >= kFirstVersion;
  }

 private:
  void ReadEntries(ElfSegment const& segment) {
    for (std::uint64_t at = 0; at + sizeof(Entry) <= segment.p_filesz; at += sizeof(Entry)) {
      mEntries.push_back(mBytes.At<Entry>(segment.p_offset + at));
      if (mEntries.back().d_tag == DT_NULL) {
        return;
      }
    }
  }

  /// Where in the file the table of a tag begins; none if there is no such table.
  std::optional<std::uint64_t> FileOffset(std::int64_t tag) const {
    auto const entry = std::find_if(mEntries.begin(), mEntries.end(),
                                    [tag](Entry const& candidate) { return candidate.d_tag == tag; });
    if (entry == mEntries.end()) {
      return std::nullopt;
    }
    std::uint64_t const address = entry->d_un.d_ptr;
    for (ElfSegment const& segment : mSegments) {
      if (segment.p_type == PT_LOAD && address >= segment.p_vaddr && address - segment.p_vaddr < segment.p_filesz) {
        return address - segment.p_vaddr + segment.p_offset;
      }
    }
    throw LeadsOut();
  }

  std::uint64_t CountSymbols() const {
    if (std::optional<std::uint64_t> const table = FileOffset(DT_HASH)) {
      return mBytes.At<std::uint32_t>(*table + 4);
    }
    std::optional<std::uint64_t> const table = FileOffset(DT_GNU_HASH);
    return table ? CountHashedSymbols(*table) : 0;
  }

  /// This table knows only where the chain of each bucket begins: the symbol behind the end of the last one counts.
  std::uint64_t CountHashedSymbols(std::uint64_t table) const {
    std::uint64_t const buckets = mBytes.At<std::uint32_t>(table);
    std::uint64_t const firstHashed = mBytes.At<std::uint32_t>(table + 4);
    std::uint64_t const filterWords = mBytes.At<std::uint32_t>(table + 8);
    std::uint64_t const firstBucket = table + 16 + filterWords * sizeof(ElfW(Addr));
    std::uint64_t last = 0;
    for (std::uint64_t i = 0; i < buckets; ++i) {
      last = std::max<std::uint64_t>(last, mBytes.At<std::uint32_t>(firstBucket + 4 * i));
    }
    if (last < firstHashed) {
      return firstHashed;
    }
    std::uint64_t const firstChain = firstBucket + 4 * buckets;
    while ((mBytes.At<std::uint32_t>(firstChain + 4 * (last - firstHashed)) & 1) == 0) {
      ++last;
    }
    return last + 1;
  }

  Bytes const& mBytes;
  std::vector<ElfSegment> mSegments;
  std::vector<Entry> mEntries;
};

std::vector<std::string> SplitPaths(std::vector<std::string> const& lists) {
  std::vector<std::string> paths;
  for (std::string const& list : lists) {
    for (std::size_t start = 0; start <= list.size();) {
      std::size_t const end = std::min(list.find(':', start), list.size());
      paths.push_back(list.substr(start, end - start));
      start = end + 1;
    }
  }
  return paths;
}

/// Names that linkers put into every shared object.
bool IsOfLinker(std::string const& name) {
  static std::set<std::string> const kNames = {"_init", "_fini", "_edata", "__edata", "_end", "__end__", "__bss_start"};
  return kNames.count(name) != 0;
}

ElfImage ReadImage(DynamicSection const& dynamic) {
  ElfImage image;
  image.needed = dynamic.Texts(DT_NEEDED);
  std::vector<std::string> const newer = dynamic.Texts(DT_RUNPATH);
  image.searchPaths = SplitPaths(newer.empty() ? dynamic.Texts(DT_RPATH) : newer);
  std::vector<Symbol> const symbols = dynamic.Symbols();
  for (std::size_t i = 0; i < symbols.size(); ++i) {
    Symbol const& symbol = symbols[i];
    std::string const name = dynamic.Text(symbol.st_name);
    unsigned const binding = symbol.st_info >> 4;
    if (binding == STB_LOCAL || name.empty()) {
      continue;
    }
    if (symbol.st_shndx == SHN_UNDEF) {
      if (binding != STB_WEAK && !dynamic.HasVersion(i)) {
        image.undefined.push_back(name);
      }
    } else if (!IsOfLinker(name) && symbol.st_shndx != SHN_ABS) {
      image.exported.push_back(name);
    }
  }
  std::sort(image.exported.begin(), image.exported.end());
  std::sort(image.undefined.begin(), image.undefined.end());
  return image;
}

}  // namespace

std::optional<ElfImage> ReadElfImage(std::string const& bytes, std::string& obstacle) {
  obstacle = FindObstacle(bytes);
  if (!obstacle.empty()) {
    return std::nullopt;
  }
  try {
    Bytes const checked(bytes);
    DynamicSection const dynamic(checked);
    if (dynamic.IsWhole()) {
      return ReadImage(dynamic);
    }
    obstacle = "the file ends too early: parts that would be loaded are missing";
  } catch (LeadsOut const&) {
    obstacle = "its tables lead out of the file: it is cut, or no linker made it";
  }
  return std::nullopt;
}

}  // namespace senmark_tool
