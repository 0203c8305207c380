#include "ElfImage.h"

#include <elf.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstring>

#include "ModuleFolders.h"
#include "ModuleVariants.h"

namespace {

using senmark_tool::ElfImage;
using senmark_tool::ReadElfImage;

bool Contains(std::vector<std::string> const& list, std::string const& text) {
  return std::find(list.begin(), list.end(), text) != list.end();
}

std::string Obstacle(std::string const& bytes) {
  std::string obstacle;
  std::optional<ElfImage> const image = ReadElfImage(bytes, obstacle);
  EXPECT_EQ(image.has_value(), obstacle.empty());
  return obstacle;
}

template <typename Number>
std::string Patched(std::string bytes, std::size_t offset, Number number) {
  std::memcpy(&bytes[offset], &number, sizeof number);
  return bytes;
}

TEST(ElfImage, TellsWhatAModuleExportsAndNeeds) {
  std::string obstacle;
  std::optional<ElfImage> const image = ReadElfImage(senmark_test::CodeBytes(senmark_test::kFaultyModule), obstacle);
  ASSERT_TRUE(image) << obstacle;
  EXPECT_EQ(image->exported, std::vector<std::string>{"InitializePlugin"});
  EXPECT_TRUE(Contains(image->needed, "libstdc++.so.6"));
}

TEST(ElfImage, TellsWhatNobodyNamesAsItsOwn) {
  std::string obstacle;
  std::optional<ElfImage> const needy = ReadElfImage(senmark_test::CodeBytes(senmark_test::kNeedyModule), obstacle);
  ASSERT_TRUE(needy) << obstacle;
  EXPECT_TRUE(Contains(needy->undefined, "NobodyProvidesThis"));
  EXPECT_TRUE(Contains(needy->exported, "InitializePlugin"));
  // What has a version has told its library.
  std::optional<ElfImage> const test = ReadElfImage(senmark_test::CodeBytes(senmark_test::kTestModule), obstacle);
  ASSERT_TRUE(test) << obstacle;
  EXPECT_FALSE(Contains(test->undefined, "getenv"));
}

TEST(ElfImage, OtherMachinesAreNamed) {
  std::string const code = senmark_test::CodeBytes(senmark_test::kBareModule);
  ASSERT_EQ(Obstacle(code), "");
  EXPECT_EQ(Obstacle(""), "this is no ELF file");
  EXPECT_EQ(Obstacle("#!/bin/sh\n"), "this is no ELF file");
  EXPECT_EQ(Obstacle(code.substr(0, 40)), "the file ends within its head");
  EXPECT_EQ(Obstacle(Patched<char>(code, EI_CLASS, ELFCLASS32)), "this is code for 32 bits, and the library is for 64");
  EXPECT_EQ(Obstacle(Patched<char>(code, EI_DATA, ELFDATA2MSB)), "the order of bytes is not that of this machine");
  EXPECT_EQ(Obstacle(Patched<std::uint16_t>(code, offsetof(Elf64_Ehdr, e_machine), EM_S390))
                .rfind("this is code for s390, and the machine is ", 0),
            0u);
  EXPECT_EQ(Obstacle(Patched<std::uint16_t>(code, offsetof(Elf64_Ehdr, e_machine), 9999))
                .rfind("this is code for machine 9999, and", 0),
            0u);
  std::size_t const type = offsetof(Elf64_Ehdr, e_type);
  EXPECT_EQ(Obstacle(Patched<std::uint16_t>(code, type, ET_REL)),
            "this is an object file: it has to be linked, with -shared");
  EXPECT_EQ(Obstacle(Patched<std::uint16_t>(code, type, ET_EXEC)),
            "this is a program: a module is linked with -shared");
  EXPECT_EQ(Obstacle(Patched<std::uint16_t>(code, type, ET_CORE)), "this is no shared object");
}

TEST(ElfImage, CutFilesAreNoModules) {
  std::string const code = senmark_test::CodeBytes(senmark_test::kBareModule);
  std::size_t cut = 0;
  for (senmark_tool::Variant const& variant : senmark_tool::Truncated(code)) {
    std::string const obstacle = Obstacle(variant.bytes);
    // The last part of the file is not loaded.
    if (variant.bytes.size() < code.size() / 3) {
      EXPECT_NE(obstacle, "") << variant.name;
      ++cut;
    }
  }
  EXPECT_GT(cut, 5u);
  std::string const early = Obstacle(code.substr(0, code.size() / 4));
  EXPECT_TRUE(early == "the file ends too early: parts that would be loaded are missing" ||
              early == "its tables lead out of the file: it is cut, or no linker made it")
      << early;
}

// Nothing to be told apart here: it must end, and read no byte that is not there.
TEST(ElfImage, DamagedTablesLeadNowhere) {
  std::string const code = senmark_test::CodeBytes(senmark_test::kBareModule);
  for (senmark_tool::Variant const& variant : senmark_tool::Mutated(code.substr(0, 2048))) {
    Obstacle(variant.bytes + code.substr(2048));
  }
  Elf64_Ehdr head;
  std::memcpy(&head, code.data(), sizeof head);
  std::size_t read = 0;
  // Each number of the program headers in turn, at its limits.
  for (std::size_t at = head.e_phoff; at < head.e_phoff + head.e_phnum * sizeof(Elf64_Phdr); at += 4) {
    for (std::uint32_t const number : {0u, 1u, 0x7fffffffu, 0xffffffffu}) {
      Obstacle(Patched(code, at, number));
      ++read;
    }
  }
  EXPECT_GT(read, 100u);
}

}  // namespace
