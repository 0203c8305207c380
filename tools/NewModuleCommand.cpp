#include "NewModuleCommand.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <vector>

#include "Command.h"
#include "JsonWriter.h"
#include "NewModuleTemplates.h"
#include "Utf8.h"

namespace senmark_tool {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t kLongestName = 64;

bool IsDigit(char character) {
  return character >= '0' && character <= '9';
}

bool IsLetter(char character) {
  return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z');
}

/// Letters, digits, dashes and underscores: good for a target, a file and a folder, and for the list of modules that a
/// host may want.
bool IsPlainName(std::string const& text) {
  return !text.empty() && text.size() <= kLongestName && text.front() != '-' &&
         std::all_of(text.begin(), text.end(), [](char character) {
           return IsLetter(character) || IsDigit(character) || character == '-' || character == '_';
         });
}

/// Names of targets that builds have anyway.
bool IsTakenTarget(std::string const& name) {
  static constexpr char const* kTaken[] = {"all",           "ALL_BUILD", "clean",     "depend",         "edit_cache",
                                           "help",          "install",   "package",   "package_source", "preinstall",
                                           "rebuild_cache", "test",      "RUN_TESTS", "INSTALL",        "PACKAGE"};
  return std::find(std::begin(kTaken), std::end(kTaken), name) != std::end(kTaken);
}

std::string LowerCase(std::string text) {
  for (char& character : text) {
    character = character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
  }
  return text;
}

/// The name of the converter's class: words begin with a capital, so it is no word of the language.
std::string ClassName(std::string const& name) {
  std::string result = IsDigit(name.front()) ? "Format" : "";
  bool startsWord = true;
  for (char const character : name) {
    if (!IsLetter(character) && !IsDigit(character)) {
      startsWord = true;
      continue;
    }
    bool const isSmall = character >= 'a' && character <= 'z';
    result += startsWord && isSmall ? static_cast<char>(character - 'a' + 'A') : character;
    startsWord = false;
  }
  return result + "Converter";
}

std::string ExtensionFor(NewModuleRequest const& request) {
  std::string extension = LowerCase(request.extension.empty() ? request.name : request.extension);
  if (!extension.empty() && extension.front() == '.') {
    extension.erase(0, 1);
  }
  if (!IsPlainName(extension)) {
    throw UsageError("\"" + request.extension + "\" is no extension: give letters, digits, - and _");
  }
  if (extension == "tdjson") {
    throw UsageError("files with the extension \"tdjson\" are never converted");
  }
  return extension;
}

void Replace(std::string& text, std::string const& place, std::string const& value) {
  for (std::size_t at = text.find(place); at != std::string::npos; at = text.find(place, at + value.size())) {
    text.replace(at, place.size(), value);
  }
}

/// Removes what was made, unless all of it was.
class MadeFolder {
 public:
  explicit MadeFolder(fs::path path) : mPath(std::move(path)), mExisted(fs::exists(mPath)) {
    std::error_code failure;
    fs::create_directories(mPath, failure);
    if (failure) {
      throw std::system_error(failure, "cannot make the folder \"" + mPath.string() + "\"");
    }
  }
  ~MadeFolder() {
    std::error_code ignored;
    for (fs::path const& file : mFiles) {
      fs::remove(file, ignored);
    }
    if (!mIsComplete && !mExisted) {
      fs::remove(mPath, ignored);
    }
  }
  MadeFolder(MadeFolder const&) = delete;
  MadeFolder& operator=(MadeFolder const&) = delete;

  void Write(std::string const& name, std::string const& text) {
    mFiles.push_back(mPath / name);
    std::ofstream file(mFiles.back(), std::ios::binary);
    file << text;
    file.close();
    if (!file) {
      throw std::runtime_error("cannot write \"" + mFiles.back().string() + "\"");
    }
  }
  void Complete() {
    mFiles.clear();
    mIsComplete = true;
  }

 private:
  fs::path mPath;
  bool mExisted;
  bool mIsComplete = false;
  std::vector<fs::path> mFiles;
};

}  // namespace

int RunNewModule(NewModuleRequest const& request, std::ostream& out) {
  if (!IsPlainName(request.name) || IsTakenTarget(request.name)) {
    throw UsageError("\"" + request.name + "\" is no name for a module: give up to 64 letters, digits, - and _, " +
                     "and none that a build uses itself, like \"test\"");
  }
  std::string const extension = ExtensionFor(request);
  if (request.folder.empty()) {
    throw UsageError("\"\" is no name of a folder");
  }
  if (fs::exists(request.folder) && (!fs::is_directory(request.folder) || !fs::is_empty(request.folder))) {
    throw UsageError("\"" + request.folder + "\" is there already, and nothing is overwritten");
  }
  auto const fillIn = [&](std::string text) {
    Replace(text, "@NAME@", request.name);
    Replace(text, "@CLASS@", ClassName(request.name));
    Replace(text, "@EXTENSION@", extension);
    return text;
  };
  MadeFolder folder(request.folder);
  std::vector<std::string> names;
  for (NewModuleTemplate const& file : kNewModuleTemplates) {
    names.push_back(fillIn(file.name));
    folder.Write(names.back(), fillIn(file.text));
  }
  folder.Complete();
  if (!request.asJson) {
    out << "wrote " << Printable(request.folder) << ":";
    for (std::string const& name : names) {
      out << ' ' << name;
    }
    out << "\nNext, in that folder:\n  cmake -S . -B build && cmake --build build\n  senmark --modules build tree "
           "sample."
        << extension << '\n';
    return kFine;
  }
  JsonWriter json(out);
  json.BeginObject();
  json.Key("folder");
  json.String(request.folder);
  json.Key("files");
  json.BeginArray();
  for (std::string const& name : names) {
    json.String(name);
  }
  json.CloseAll();
  return kFine;
}

}  // namespace senmark_tool
