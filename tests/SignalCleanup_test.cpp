#include "SignalCleanup.h"

#include <gtest/gtest.h>
#include <pthread.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <future>
#include <memory>
#include <thread>

#include "TempFolder.h"
#include "Witness.h"

namespace senmark_tool {
namespace {

namespace fs = std::filesystem;

class SignalCleanup : public testing::Test {
 protected:
  using Folder = senmark_tool::SignalCleanup::Folder;
  using Group = senmark_tool::SignalCleanup::Group;

  std::string Make(std::string const& name) const {
    std::string const path = mFolder.Path(name);
    fs::create_directory(path);
    std::ofstream(path + "/file") << "text";
    return path;
  }
  bool IsThere(std::string const& name) const { return fs::exists(mFolder.Path(name)); }

  /// Does the work in a process of its own. Result: the signal that has ended it, else 0.
  static int SignalThatEnds(std::function<void()> const& work) {
    pid_t const child = fork();
    if (child == 0) {
      // Whatever started the tests may ignore them.
      for (int const number : kEndingSignals) {
        signal(number, SIG_DFL);
      }
      work();
      _exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFSIGNALED(status) ? WTERMSIG(status) : 0;
  }

  senmark_test::TempFolder mFolder;
};

TEST_F(SignalCleanup, SignalTakesFoldersAlong) {
  for (int const number : kEndingSignals) {
    Make("a");
    Make("b");
    EXPECT_EQ(SignalThatEnds([&] {
                Folder const a(mFolder.Path("a"));
                Folder const b(mFolder.Path("b"));
                std::ofstream(mFolder.Path("a/later")) << "text";
                raise(number);
              }),
              number);
    EXPECT_FALSE(IsThere("a"));
    EXPECT_FALSE(IsThere("b"));
  }
}

TEST_F(SignalCleanup, WhatIsNoLongerNamedStays) {
  for (char const* const name : {"a", "b", "c"}) {
    Make(name);
  }
  EXPECT_EQ(SignalThatEnds([&] {
              auto const a = std::make_unique<Folder>(mFolder.Path("a"));
              auto b = std::make_unique<Folder>(mFolder.Path("b"));
              auto c = std::make_unique<Folder>(mFolder.Path("c"));
              b.reset();
              c.reset();
              raise(SIGTERM);
            }),
            SIGTERM);
  EXPECT_FALSE(IsThere("a"));
  EXPECT_TRUE(IsThere("b"));
  EXPECT_TRUE(IsThere("c"));
}

TEST_F(SignalCleanup, ChildLeavesWhatIsNotItsOwn) {
  Make("a");
  Make("b");
  Folder const a(mFolder.Path("a"));
  EXPECT_EQ(SignalThatEnds([] { raise(SIGTERM); }), SIGTERM);
  EXPECT_EQ(SignalThatEnds([&] {
              Folder const b(mFolder.Path("b"));
              raise(SIGTERM);
            }),
            SIGTERM);
  EXPECT_TRUE(IsThere("a"));
  EXPECT_FALSE(IsThere("b"));
}

TEST_F(SignalCleanup, SignalInAnotherThreadDoesTheSame) {
  Make("a");
  EXPECT_EQ(SignalThatEnds([&] {
              Folder const a(mFolder.Path("a"));
              std::thread([] {
                pthread_kill(pthread_self(), SIGINT);
                while (true) {
                  pause();
                }
              }).join();
            }),
            SIGINT);
  EXPECT_FALSE(IsThere("a"));
}

/// Else it would remove things beside the thread that is just making them.
TEST_F(SignalCleanup, SignalInAnotherThreadIsHeldToo) {
  Make("a");
  EXPECT_EQ(SignalThatEnds([&] {
              Folder const a(mFolder.Path("a"));
              std::promise<void> isHeld;
              std::thread other([&] {
                isHeld.get_future().wait();
                pthread_kill(pthread_self(), SIGINT);
              });
              {
                HeldSignals const held;
                isHeld.set_value();
                other.join();
                std::ofstream(mFolder.Path("reached")) << "text";
              }
              std::ofstream(mFolder.Path("passed")) << "text";
            }),
            SIGINT);
  EXPECT_TRUE(IsThere("reached"));
  EXPECT_FALSE(IsThere("passed"));
  EXPECT_FALSE(IsThere("a"));
}

TEST_F(SignalCleanup, HeldSignalArrivesInTheEnd) {
  Make("a");
  EXPECT_EQ(SignalThatEnds([&] {
              Folder const a(mFolder.Path("a"));
              {
                HeldSignals const held;
                raise(SIGTERM);
                std::ofstream(mFolder.Path("reached")) << "text";
              }
              std::ofstream(mFolder.Path("passed")) << "text";
            }),
            SIGTERM);
  EXPECT_TRUE(IsThere("reached"));
  EXPECT_FALSE(IsThere("passed"));
  EXPECT_FALSE(IsThere("a"));
}

TEST_F(SignalCleanup, IgnoredSignalIsLeftSo) {
  Make("a");
  EXPECT_EQ(SignalThatEnds([&] {
              signal(SIGHUP, SIG_IGN);
              Folder const a(mFolder.Path("a"));
              raise(SIGHUP);
            }),
            0);
  EXPECT_TRUE(IsThere("a"));
}

TEST_F(SignalCleanup, SignalTakesAGroupAlong) {
  senmark_test::Witness witness;
  EXPECT_EQ(SignalThatEnds([&] {
              pid_t const leader = fork();
              if (leader == 0) {
                setpgid(0, 0);
                fork();
                static_cast<void>(!write(witness.WritingEnd(), "x", 1));
                while (true) {
                  pause();
                }
              }
              Group const group(leader);
              char byte = 0;
              if (witness.Read(byte) && witness.Read(byte)) {
                raise(SIGTERM);
              }
            }),
            SIGTERM);
  EXPECT_TRUE(witness.AwaitTheEndOfOthers());
}

}  // namespace
}  // namespace senmark_tool
