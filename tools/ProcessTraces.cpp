#include "ProcessTraces.h"

#include <dirent.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <clocale>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <locale>
#include <sstream>
#include <thread>

namespace senmark_tool {

namespace {

namespace fs = std::filesystem;

/// The numbers of all open descriptors. The one that the folder is read through is not among them.
std::map<int, std::string> OpenDescriptors() {
  std::map<int, std::string> descriptors;
  char const* const folder = "/dev/fd";
  DIR* const entries = opendir(folder);
  if (entries == nullptr) {
    return descriptors;
  }
  while (dirent const* const entry = readdir(entries)) {
    int const number = std::atoi(entry->d_name);
    if (entry->d_name[0] != '.' && number != dirfd(entries)) {
      std::error_code error;
      fs::path const target = fs::read_symlink(std::string(folder) + '/' + entry->d_name, error);
      descriptors.emplace(number, error ? std::string() : target.string());
    }
  }
  closedir(entries);
  return descriptors;
}

/// Whether a thread has ended, though it may still be listed: even one that was waited for is, until the system comes
/// to bury it.
bool HasEnded(fs::path const& task) {
  constexpr unsigned long kExiting = 0x4;  // PF_EXITING among the kernel's flags of a thread, see proc(5)
  constexpr int kFieldsBefore = 6;
  std::ifstream file(task / "stat");
  // Its name stands in brackets, with any characters, ends of lines too.
  std::string const text((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
  std::size_t const nameEnd = text.rfind(')');
  if (nameEnd == std::string::npos) {
    // Of one that is there still, it cannot be told.
    std::error_code error;
    return !fs::exists(task, error);
  }
  std::istringstream fields(text.substr(nameEnd + 1));
  std::string skipped;
  for (int i = 0; i != kFieldsBefore; ++i) {
    fields >> skipped;
  }
  unsigned long flags = 0;
  fields >> flags;
  return (flags & kExiting) != 0;
}

/// 0 where they cannot be counted.
std::size_t CountThreads() {
  std::error_code error;
  fs::directory_iterator const tasks("/proc/self/task", error);
  return error ? 0
               : static_cast<std::size_t>(std::count_if(
                     begin(tasks), end(tasks), [](fs::directory_entry const& task) { return !HasEnded(task.path()); }));
}

std::set<std::string> NamesIn(std::string const& folder) {
  std::set<std::string> names;
  std::error_code error;
  for (fs::directory_entry const& entry : fs::directory_iterator(folder, error)) {
    names.insert(entry.path().filename().string());
  }
  return names;
}

std::size_t CountThreadsLeft(std::size_t before) {
  constexpr int kTurns = 20;
  std::size_t now = CountThreads();
  for (int turn = 0; now > before && turn < kTurns; ++turn) {
    std::this_thread::sleep_for(std::chrono::milliseconds(3));
    now = CountThreads();
  }
  return now > before ? now - before : 0;
}

std::string Of(std::string const& target) {
  return target.empty() ? std::string() : ", of " + target;
}

void CompareDescriptors(ProcessTraces const& before, ProcessTraces const& now, std::vector<Trace>& left) {
  for (auto const& [number, target] : now.descriptors) {
    if (before.descriptors.count(number) == 0) {
      left.push_back({"it leaves a descriptor open", Of(target)});
    }
  }
  for (auto const& [number, target] : before.descriptors) {
    auto const found = now.descriptors.find(number);
    if (found == now.descriptors.end() || found->second != target) {
      left.push_back({"it closes a descriptor that is not its own", Of(target)});
    }
  }
}

}  // namespace

ProcessTraces ProcessTraces::Now(std::vector<std::string> const& folders) {
  ProcessTraces traces;
  traces.descriptors = OpenDescriptors();
  traces.threads = CountThreads();
  std::error_code ignored;
  traces.folder = fs::current_path(ignored).string();
  traces.locale = std::string(std::setlocale(LC_ALL, nullptr)) + ' ' + std::locale().name();
  for (std::string const& folder : folders) {
    traces.files[folder] = NamesIn(folder);
  }
  return traces;
}

std::vector<Trace> WhatIsLeft(ProcessTraces const& before) {
  std::vector<Trace> left;
  std::size_t const threads = CountThreadsLeft(before.threads);
  std::vector<std::string> folders;
  for (auto const& [folder, names] : before.files) {
    folders.push_back(folder);
  }
  ProcessTraces const now = ProcessTraces::Now(folders);
  CompareDescriptors(before, now, left);
  for (auto const& [folder, names] : before.files) {
    for (std::string const& name : now.files.at(folder)) {
      if (names.count(name) == 0) {
        left.push_back(
            {"it leaves a file behind in the " + fs::path(folder).filename().string() + " folder", ", " + name});
      }
    }
  }
  if (threads != 0) {
    left.push_back({"it leaves a thread running", {}});
  }
  if (now.folder != before.folder) {
    left.push_back({"it changes the current folder", ", to " + now.folder});
  }
  if (now.locale != before.locale) {
    left.push_back({"it changes the locale of the process", ", from " + before.locale + " to " + now.locale});
  }
  return left;
}

}  // namespace senmark_tool
