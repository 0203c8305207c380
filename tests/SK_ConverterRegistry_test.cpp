#include "SK_ConverterRegistry.h"

#include <gtest/gtest.h>

#include "SK_ConverterHandlerBase.h"

namespace ns_sensor {
namespace {

using SK_NAMESPACE_INT::SK_PathInfo;

bool TakesAll(std::string&, SK_PathInfo const&) {
  return true;
}
bool TakesNone(std::string&, SK_PathInfo const&) {
  return false;
}
bool TakesItsOwn(std::string& uid, SK_PathInfo const& file) {
  return file.filePath == uid;
}
std::shared_ptr<SK_ConverterHandlerBase> MakesNone(std::string&, SK_PathInfo const&) {
  return nullptr;
}

class ConverterRegistry : public testing::Test {
 protected:
  ~ConverterRegistry() override { SK_ConverterRegistry::terminate(); }

  std::string Selected(std::string const& path, std::string const& extension) {
    SK_ConverterHandlerInfo* const info = mRegistry.selectSmartHandler(SK_PathInfo(path, extension));
    return info == nullptr ? "none" : info->uid;
  }

  static SK_ConverterRegistry& NewRegistry() {
    SK_ConverterRegistry::terminate();
    return *SK_ConverterRegistry::getInstance();
  }

  SK_ConverterRegistry& mRegistry = NewRegistry();
};

TEST_F(ConverterRegistry, KnowsSixFormatsWithoutModules) {
  mRegistry.initialize();
  mRegistry.initialize();
  std::map<std::string, std::string> const expected = {
      {"bvh", "Biovision Hierarchy"}, {"csv", "Comma Seperated Value"}, {"json", "JSON"},
      {"tdjson", "Timed Data JSON"},  {"tsv", "Tab Seperated Value"},   {"txt", "Tab Seperated Value"}};
  EXPECT_EQ(*mRegistry.getConvertersInfo(), expected);
}

TEST_F(ConverterRegistry, IsEmptyAfterItsEnd) {
  mRegistry.initialize();
  SK_ConverterRegistry::terminate();
  EXPECT_TRUE(SK_ConverterRegistry::getInstance()->getConvertersInfo()->empty());
}

TEST_F(ConverterRegistry, FirstRegistrationOfAUidStays) {
  EXPECT_TRUE(mRegistry.registerPluginConverter("abc", "first", TakesAll, MakesNone));
  EXPECT_FALSE(mRegistry.registerPluginConverter("abc", "second", TakesNone, MakesNone));
  EXPECT_EQ(mRegistry.getConverterHandlerInfo("abc")->check, &TakesAll);
  EXPECT_EQ(mRegistry.getConvertersInfo()->at("abc"), "first");
  EXPECT_TRUE(mRegistry.registerNativeConverter("abc", "native", TakesAll, MakesNone));
  EXPECT_FALSE(mRegistry.registerNativeConverter("abc", "native", TakesAll, MakesNone));
  EXPECT_EQ(mRegistry.getConvertersInfo()->at("abc"), "first") << "display names are never overwritten";
}

TEST_F(ConverterRegistry, ModuleShadowsNativeConverterOfTheSameUid) {
  mRegistry.registerNativeConverter("abc", "native", TakesNone, MakesNone);
  EXPECT_EQ(mRegistry.getConverterHandlerInfo("abc")->check, &TakesNone);
  mRegistry.registerPluginConverter("abc", "module", TakesAll, MakesNone);
  EXPECT_EQ(mRegistry.getConverterHandlerInfo("abc")->check, &TakesAll);
  EXPECT_EQ(mRegistry.getConverterHandlerInfo("other"), nullptr);
}

TEST_F(ConverterRegistry, OnlyConvertersOfModulesAreRemoved) {
  mRegistry.registerNativeConverter("native", "", TakesAll, MakesNone);
  mRegistry.registerPluginConverter("module", "text", TakesAll, MakesNone);
  EXPECT_FALSE(mRegistry.removeConverterHandler("native"));
  EXPECT_NE(mRegistry.getConverterHandlerInfo("native"), nullptr);
  EXPECT_TRUE(mRegistry.removeConverterHandler("module"));
  EXPECT_FALSE(mRegistry.removeConverterHandler("module"));
  EXPECT_EQ(mRegistry.getConverterHandlerInfo("module"), nullptr);
  EXPECT_EQ(mRegistry.getConvertersInfo()->at("module"), "text") << "the display name stays";
}

TEST_F(ConverterRegistry, SelectsByExtensionThenModulesThenNative) {
  EXPECT_EQ(Selected("file", "x"), "none");
  mRegistry.registerNativeConverter("n1", "", TakesItsOwn, MakesNone);
  mRegistry.registerNativeConverter("n2", "", TakesAll, MakesNone);
  mRegistry.registerNativeConverter("n3", "", TakesAll, MakesNone);
  EXPECT_EQ(Selected("file", "n3"), "n3") << "the extension decides";
  EXPECT_EQ(Selected("file", "n1"), "n2") << "its converter declines: the first that takes it";
  EXPECT_EQ(Selected("n1", "x"), "n1") << "in the order of the uids";
  mRegistry.registerPluginConverter("p1", "", TakesNone, MakesNone);
  mRegistry.registerPluginConverter("p2", "", TakesItsOwn, MakesNone);
  EXPECT_EQ(Selected("file", "x"), "n2");
  EXPECT_EQ(Selected("p2", "x"), "p2") << "modules come first";
  EXPECT_EQ(Selected("p2", "n3"), "n3") << "but behind the extension";
}

}  // namespace
}  // namespace ns_sensor
