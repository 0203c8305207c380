#include "ModuleFolders.h"

#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/utsname.h>

#include <filesystem>
#include <fstream>

namespace senmark_test {

namespace fs = std::filesystem;

namespace {

constexpr char kNotesVariable[] = "SENMARK_TEST_MODULE_NOTES";

void WriteFile(std::string const& path, std::string const& content) {
  fs::create_directories(fs::path(path).parent_path());
  std::ofstream file(path, std::ios::binary);
  file.write(content.data(), static_cast<std::streamsize>(content.size()));
  file.close();
  EXPECT_TRUE(file.good()) << path;
}

}  // namespace

char const* const kTestModule = SENMARK_TEST_MODULE;
char const* const kBareModule = SENMARK_BARE_MODULE;
char const* const kDyingModule = SENMARK_DYING_MODULE;
char const* const kFaultyModule = SENMARK_FAULTY_MODULE;
char const* const kLoudModule = SENMARK_LOUD_MODULE;
char const* const kNeedyModule = SENMARK_NEEDY_MODULE;
char const* const kExplainingModule = SENMARK_EXPLAINING_MODULE;

std::string Machine() {
  utsname system;
  EXPECT_EQ(uname(&system), 0);
  return system.machine;
}

ModuleFolders::ModuleFolders(TempFolder const& folder, std::string const& name)
    : mFolder(folder), mPath(folder.Path(name)), mNotes(folder.Path("notes.txt")) {
  fs::create_directory(mPath);
  setenv(kNotesVariable, mNotes.c_str(), 1);
}

ModuleFolders::~ModuleFolders() {
  unsetenv(kNotesVariable);
}

std::string ModuleFolders::Add(std::string const& name, char const* manifest, char const* identifier,
                               char const* code) const {
  std::string const path = mPath + '/' + name;
  fs::create_directories(path + "/Contents/Resources");
  if (code != nullptr) {
    fs::create_directories(fs::path(CodePath(name)).parent_path());
    fs::copy_file(code, CodePath(name));
  }
  if (manifest != nullptr) {
    WriteFile(ResourcePath(name, "SKPLUGINUIDS"), manifest);
  }
  if (identifier != nullptr) {
    WriteFile(ResourcePath(name, "MODULE_IDENTIFIER"), identifier);
  }
  return path;
}

void ModuleFolders::SetCode(std::string const& name, std::string const& bytes) const {
  WriteFile(CodePath(name), bytes);
}

std::string ModuleFolders::CodePath(std::string const& name) const {
  std::string const contents = mPath + '/' + name + "/Contents/";
  std::string const stem = name.substr(0, name.rfind('.'));
#ifdef SENMARK_TEST_BUNDLES
  return contents + "MacOS/" + stem;
#else
  return contents + Machine() + "-linux/" + stem + ".so";
#endif
}

std::string ModuleFolders::ResourcePath(std::string const& name, std::string const& resource) const {
  return mPath + '/' + name + "/Contents/Resources/" + resource + ".txt";
}

std::string ModuleFolders::TakeNotes() const {
  if (!fs::exists(mNotes)) {
    return std::string();
  }
  std::string notes = mFolder.Read(mNotes);
  fs::remove(mNotes);
  return notes;
}

std::string CodeBytes(char const* code) {
  std::ifstream file(code, std::ios::binary);
  EXPECT_TRUE(file.good()) << code;
  return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

std::string Manifest(std::string const& uid, std::string const& extensions, std::string const& extra) {
  return R"({"converter":[{"identifier":")" + uid + R"(","name":[{"localeID":"en_US","value":"Name of )" + uid +
         R"("}],"version":1,"extensions":[)" + extensions + ']' + extra + "}]}";
}

}  // namespace senmark_test
