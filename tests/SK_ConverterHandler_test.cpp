#include "SK_ConverterHandler.h"

#include <gtest/gtest.h>

#include "ModuleFolders.h"
#include "SK_Module.h"
#include "SK_PluginManager.h"

namespace SK_PLUGIN {
namespace {

TEST(ConverterHandler, BeginsWithDefaults) {
  auto const module = std::make_shared<SK_Module>("/path");
  SK_ConverterHandler const handler("uid", true, module);
  EXPECT_EQ(handler.getUID(), "uid");
  EXPECT_EQ(handler.getName(), "");
  EXPECT_EQ(handler.getVersion(), 0);
  EXPECT_TRUE(handler.isForceConverter());
  EXPECT_EQ(handler.getCheckFormatSize(), 0u);
  EXPECT_EQ(handler.getModule(), module);
}

TEST(ConverterHandler, KeepsWhatIsSet) {
  SK_ConverterHandler handler("uid", false, nullptr);
  handler.setName("name");
  handler.setVersion(1.5);
  handler.setForceConverter(true);
  handler.addCheckFormat({1, 2, "ab"});
  handler.addCheckFormat({3, 4, "cdef"});
  EXPECT_EQ(handler.getName(), "name");
  EXPECT_EQ(handler.getVersion(), 1.5);
  EXPECT_TRUE(handler.isForceConverter());
  ASSERT_EQ(handler.getCheckFormatSize(), 2u);
  EXPECT_EQ(handler.getCheckFormat(0).mOffset, 1);
  EXPECT_EQ(handler.getCheckFormat(1).mLength, 4);
  EXPECT_EQ(handler.getCheckFormat(1).mByteSequence, "cdef");
}

TEST(ConverterHandler, LoadsItsModule) {
  senmark_test::TempFolder const folder;
  senmark_test::ModuleFolders const modules(folder);
  SK_PluginManager::initialize("", "");
  {
    SK_ConverterHandler const handler("uid", false, std::make_shared<SK_Module>(modules.Add("Good.tdx", nullptr)));
    EXPECT_EQ(modules.TakeNotes(), "");
    EXPECT_TRUE(handler.load());
    EXPECT_EQ(modules.TakeNotes(), "loaded\ninitialize good\n");
  }
  SK_PluginManager::terminate();
}

}  // namespace
}  // namespace SK_PLUGIN
