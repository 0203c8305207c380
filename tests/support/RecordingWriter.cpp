#include "RecordingWriter.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <map>
#include <string_view>

#include "Writer_Wrapper.h"

namespace senmark_test {

namespace {

using ns_sensor::SK_DynamicDataFields;
using ns_sensor::SK_NumberArrayProperties;
using ns_sensor::SK_NumberProperties;
using ns_sensor::SK_StringProperties;
using namespace SK_PLUGIN;

std::string gCalls;
bool gKeepCalls = true;
bool gCommitResult = true;
int gObjects = 0;

void Record(std::string const& line) {
  if (gKeepCalls) {
    gCalls += line + '\n';
  }
}

std::string Shown(std::string_view text) {
  std::string shown = "\"";
  for (char const c : text) {
    if (static_cast<unsigned char>(c) < ' ') {
      char code[8];
      std::snprintf(code, sizeof code, "\\x%02x", static_cast<unsigned>(c));
      shown += code;
    } else {
      shown += c;
    }
  }
  return shown + '"';
}

std::string Shown(double number) {
  char text[40];
  std::snprintf(text, sizeof text, "%.17g", number);
  return text;
}

/// What no native converter without samples asks for.
void Unexpected() {
  ADD_FAILURE() << "unexpected call of the writer";
}

class Counted : public virtual ISharedObject {
 public:
  Counted() { ++gObjects; }
  ~Counted() override { --gObjects; }

  void Acquire() const override { Unexpected(); }
  void Release() const override { Unexpected(); }
  ISharedObject* GetISharedObject_I() override { return this; }
  void AcquireInternal() const override { Unexpected(); }
};

template <typename Family>
class GroupNode : public virtual Family, public Counted {
 public:
  explicit GroupNode(std::string name) : mName(std::move(name)) {}

  void AddDynamicData(std::shared_ptr<ITdjsonDynamicData_v1> const&) override { Unexpected(); }
  void AddStaticData(std::shared_ptr<ITdjsonStaticData_v1> const&) override { Unexpected(); }
  void AddGroup(std::shared_ptr<ITdjsonGroup_v1> const& child) override {
    Record("add " + dynamic_cast<GroupNode<ITdjsonGroup_v1>&>(*child).mName + " to " + mName);
  }
  ITdjsonGroup_v1* GetActualITdjsonGroup() override { return this; }
  void addDynamicData(ITdjsonDynamicData_v1*, void*) override { Unexpected(); }
  void addStaticData(ITdjsonStaticData_v1*, void*) override { Unexpected(); }
  void addGroup(ITdjsonGroup_v1*, void*) override { Unexpected(); }

  std::string const mName;
};

class RootNode : public GroupNode<ITdjsonRoot_v1> {
 public:
  RootNode() : GroupNode("root") {}

  bool Commit() override {
    Record("commit");
    return gCommitResult;
  }
  void SetCreator(std::string const& creator) override { Record("creator " + Shown(creator)); }
  ITdjsonRoot_v1* GetActualITdjsonRoot() override { return this; }
  void commit(void*) override { Unexpected(); }
  void setCreator(char const*, void*) override { Unexpected(); }
  void setSMPTETimeInfo(unsigned char, unsigned, unsigned, void*) override { Unexpected(); }
  void setUTCTimeInfo(unsigned, unsigned char, void*) override { Unexpected(); }
  void addSyncTimeFrameNum(char const*, int, void*) override { Unexpected(); }
  void addSyncTimeStr(char const*, char const*, unsigned long long, void*) override { Unexpected(); }
  void writeVersionToFile(void*) override { Unexpected(); }
};

/// The roots that live, as the writer keeps them.
std::map<void*, std::shared_ptr<RootNode>> gRoots;

void ExpectRoot(void* key) {
  EXPECT_EQ(gRoots.count(key), 1u) << "the key of another run";
}

std::string const& NameOf(ITdjsonGroup_v1& group) {
  if (auto const* const root = dynamic_cast<RootNode const*>(&group)) {
    return root->mName;
  }
  return dynamic_cast<GroupNode<ITdjsonGroup_v1> const&>(group).mName;
}

template <typename Show>
void RecordNode(void* key, ITdjsonGroup_v1& group, char const* kind, std::string_view matchName, Show const& show) {
  ExpectRoot(key);
  if (gKeepCalls) {
    std::string const name(matchName);
    Record(std::string(kind) + ' ' + name + ' ' + show());
    Record("add " + name + " to " + NameOf(group));
  }
}

}  // namespace

std::string TakeWriterCalls() {
  return std::exchange(gCalls, std::string());
}

int CountWriterObjects() {
  return gObjects;
}

void KeepWriterCalls(bool keep) {
  gKeepCalls = keep;
}

void LetCommitSay(bool result) {
  gCommitResult = result;
}

}  // namespace senmark_test

namespace SK_PLUGIN {

using namespace senmark_test;

std::shared_ptr<ITdjsonRoot_v1> Writer_Wrapper::CreateRoot_Wrapper(void* key, char const* path,
                                                                   ns_sensor::SK_DynamicFileInfo const* info) {
  EXPECT_EQ(info, nullptr);
  Record("root " + Shown(std::string(path)));
  auto& root = gRoots[key];
  EXPECT_EQ(root, nullptr);
  root = std::make_shared<RootNode>();
  return root;
}

std::shared_ptr<ITdjsonGroup_v1> Writer_Wrapper::CreateGroup_Wrapper(void* key, std::string const& matchName,
                                                                     std::string const& displayName) {
  ExpectRoot(key);
  Record("group " + matchName + ' ' + (gKeepCalls ? Shown(displayName) : ""));
  return std::make_shared<GroupNode<ITdjsonGroup_v1>>(matchName);
}

void Writer_Wrapper::AddGroup_Wrapper(void* key, ITdjsonGroup_v1& parent, std::shared_ptr<ITdjsonGroup_v1> group) {
  ExpectRoot(key);
  EXPECT_EQ(group.use_count(), 1) << "the converter keeps what it has given away";
  if (gKeepCalls) {
    Record("add " + NameOf(*group) + " to " + NameOf(parent));
  }
}

void Writer_Wrapper::AddStaticDataBool_Wrapper(void* key, ITdjsonGroup_v1& group, std::string_view matchName,
                                               std::string_view displayName, bool value) {
  RecordNode(key, group, "bool", matchName, [&] { return Shown(displayName) + (value ? " true" : " false"); });
}

void Writer_Wrapper::AddStaticDataNum_Wrapper(void* key, ITdjsonGroup_v1& group, std::string_view matchName,
                                              std::string_view displayName, double value) {
  RecordNode(key, group, "number", matchName, [&] { return Shown(displayName) + ' ' + Shown(value); });
}

void Writer_Wrapper::AddStaticDataString_Wrapper(void* key, ITdjsonGroup_v1& group, std::string_view matchName,
                                                 std::string_view displayName, std::string_view value) {
  RecordNode(key, group, "string", matchName, [&] { return Shown(displayName) + ' ' + Shown(value); });
}

std::shared_ptr<ITdjsonStaticDataBool_v1> Writer_Wrapper::CreateStaticDataBool_Wrapper(void*, std::string const&,
                                                                                       std::string const&,
                                                                                       bool const&) {
  Unexpected();
  return nullptr;
}

std::shared_ptr<ITdjsonStaticDataNum_v1> Writer_Wrapper::CreateStaticDataNum_Wrapper(void*, std::string const&,
                                                                                     std::string const&, double const&,
                                                                                     SK_NumberProperties const&) {
  Unexpected();
  return nullptr;
}

std::shared_ptr<ITdjsonStaticDataString_v1> Writer_Wrapper::CreateStaticDataString_Wrapper(void*, std::string const&,
                                                                                           std::string const&,
                                                                                           std::string const&,
                                                                                           SK_StringProperties const&) {
  Unexpected();
  return nullptr;
}

std::shared_ptr<ITdjsonStaticDataNumArr_v1> Writer_Wrapper::CreateStaticDataNumArr_Wrapper(
    void*, std::string const&, std::string const&, std::vector<double> const&, SK_NumberArrayProperties const&) {
  Unexpected();
  return nullptr;
}

std::shared_ptr<ITdjsonDynamicDataNum_v1> Writer_Wrapper::CreateDynamicDataNum_Wrapper(void*,
                                                                                       SK_DynamicDataFields const&,
                                                                                       SK_NumberProperties const&) {
  Unexpected();
  return nullptr;
}

std::shared_ptr<ITdjsonDynamicDataNumArr_v1> Writer_Wrapper::CreateDynamicDataNumArr_Wrapper(
    void*, SK_DynamicDataFields const&, SK_NumberArrayProperties const&) {
  Unexpected();
  return nullptr;
}

std::shared_ptr<ITdjsonDynamicDataString_v1> Writer_Wrapper::CreateDynamicDataString_Wrapper(
    void*, SK_DynamicDataFields const&, SK_StringProperties const&) {
  Unexpected();
  return nullptr;
}

void Writer_Wrapper::RemoveRoot_Wrapper(void* key) {
  if (gRoots.erase(key) != 0) {
    Record("remove");
  }
}

}  // namespace SK_PLUGIN
