#include "JsonConverter.h"

#include <utility>

#include "JsonParser.h"
#include "SK_CountText.h"
#include "SK_FileMapper.h"
#include "Writer_Wrapper.h"

namespace ns_sensor {

using SK_NAMESPACE_INT::SK_FileMapper;
using SK_NAMESPACE_INT::SK_PathInfo;
using SK_PLUGIN::ITdjsonGroup_v1;
using SK_PLUGIN::ITdjsonRoot_v1;
using SK_PLUGIN::Writer_Wrapper;

namespace {

// From the last check to the conversion behind it: one conversion runs at a time.
bool isTopLevelArray = false;

bool IsWhiteSpace(char c) {
  return c == ' ' || c == '\n' || c == '\t' || c == '\r';
}

}  // namespace

bool JSON_CheckFormat(std::string& /*uid*/, SK_PathInfo const& file) {
  SK_FileMapper const mapper(file.filePath);
  char const* next = mapper.GetFilePointer();
  if (next == nullptr) {
    return false;
  }
  char const* const last = next + (mapper.GetFileSize() - 1);
  while (next < last && IsWhiteSpace(*next)) {
    ++next;
  }
  if (next == last || (*next != '[' && *next != '{')) {
    return false;
  }
  isTopLevelArray = *next == '[';
  return true;
}

std::shared_ptr<SK_ConverterHandlerBase> JSONConverter_CTor(std::string& /*uid*/, SK_PathInfo const& file) {
  return std::make_shared<JsonConverter>(file);
}

/// A group whose items are being added. Those that are open form a chain, each the parent of the next.
struct JsonConverter::OpenGroup {
  ITdjsonGroup_v1* parent;  ///< null where the caller keeps the group
  Group group;
  std::shared_ptr<JsonIterator> items;
  std::uint64_t longName = 0;  ///< bytes of its name that are counted
  bool hasAdded = false;
};

JsonConverter::~JsonConverter() {
  Writer_Wrapper::RemoveRoot_Wrapper(this);
}

bool JsonConverter::convertToTDJSON() {
  std::shared_ptr<ITdjsonRoot_v1> const root =
      Writer_Wrapper::CreateRoot_Wrapper(this, mPathInfo.outputPath.c_str(), nullptr);
  root->SetCreator("com.velmo.sensor.json");
  {
    // The document goes before the file is written, so that its memory serves for that.
    JsonParser const parser(mPathInfo.filePath);
    std::shared_ptr<JsonIterator> items = parser.GetDomIterator(isTopLevelArray);
    if (!AppendItems(root, items)) {
      return false;
    }
  }
  root->Commit();
  return true;
}

bool JsonConverter::AppendItems(Group const& group, std::shared_ptr<JsonIterator>& items) {
  std::vector<OpenGroup> chain;
  chain.push_back({nullptr, group, items});
  return WalkChain(chain);
}

bool JsonConverter::AddDoubleData(Group const& group, std::shared_ptr<JsonIterator> const& item) {
  double value;
  item->GetPropertyDoubleValue(value);
  std::string const matchName = GetNewMatchName();
  Writer_Wrapper::AddStaticDataNum_Wrapper(this, *group, matchName, mNames.Counted(item->GetPropertyKey()), value);
  return true;
}

bool JsonConverter::AddStringData(Group const& group, std::shared_ptr<JsonIterator> const& item) {
  std::string value;
  item->GetPropertyStringValue(value);
  std::string const matchName = GetNewMatchName();
  Writer_Wrapper::AddStaticDataString_Wrapper(this, *group, matchName, mNames.Counted(item->GetPropertyKey()), value);
  return true;
}

bool JsonConverter::AddBooleanData(Group const& group, std::shared_ptr<JsonIterator> const& item) {
  bool value;
  item->GetPropertyBoolValue(value);
  std::string const matchName = GetNewMatchName();
  Writer_Wrapper::AddStaticDataBool_Wrapper(this, *group, matchName, mNames.Counted(item->GetPropertyKey()), value);
  return true;
}

bool JsonConverter::AddArrayData(Group const& group, std::shared_ptr<JsonIterator> const& item) {
  return AddContainer(*group, *item, true);
}

bool JsonConverter::AddObjectData(Group const& group, std::shared_ptr<JsonIterator> const& item) {
  return AddContainer(*group, *item, false);
}

std::string JsonConverter::GetNewMatchName() {
  return std::string(SK_CountText("matchName", mMatchNameCounter++).View());
}

bool JsonConverter::OpenContainer(std::vector<OpenGroup>& chain, ITdjsonGroup_v1& parent, JsonIterator const& item,
                                  bool isArray) {
  if (item.GetMemberCount() == 0) {
    return false;
  }
  std::string const matchName = GetNewMatchName();
  std::uint64_t const before = mNames.GetBytes();
  std::string const displayName = mNames.Counted(item.GetPropertyKey());
  chain.push_back({&parent, Writer_Wrapper::CreateGroup_Wrapper(this, matchName, displayName),
                   isArray ? item.GetArrayIterator() : item.GetObjectIterator(), mNames.GetBytes() - before});
  return true;
}

bool JsonConverter::AddContainer(ITdjsonGroup_v1& parent, JsonIterator const& item, bool isArray) {
  std::vector<OpenGroup> chain;
  return OpenContainer(chain, parent, item, isArray) && WalkChain(chain);
}

// Keeps its own chain: the nesting of a file must not take the stack of the thread.
bool JsonConverter::WalkChain(std::vector<OpenGroup>& chain) {
  for (;;) {
    OpenGroup& open = chain.back();
    if (open.items->HasNext()) {
      std::uint8_t const kind = open.items->GetPropertyValueType();
      if (kind == kJsonArray || kind == kJsonObject) {
        if (OpenContainer(chain, *open.group, *open.items, kind == kJsonArray)) {
          continue;
        }
      } else if (AddLeaf(open, kind)) {
        open.hasAdded = true;
      }
      open.items->Increment();
      continue;
    }
    OpenGroup done = std::move(open);
    chain.pop_back();
    if (done.parent != nullptr) {
      if (done.hasAdded) {
        Writer_Wrapper::AddGroup_Wrapper(this, *done.parent, std::move(done.group));
      } else {
        mNames.Forget(done.longName);
      }
    }
    if (chain.empty()) {
      return done.hasAdded;
    }
    chain.back().hasAdded |= done.hasAdded;
    chain.back().items->Increment();
  }
}

bool JsonConverter::AddLeaf(OpenGroup const& open, std::uint8_t kind) {
  switch (kind) {
    case kJsonString:
      return AddStringData(open.group, open.items);
    case kJsonNumber:
      return AddDoubleData(open.group, open.items);
    case kJsonBoolean:
      return AddBooleanData(open.group, open.items);
    default:
      return false;
  }
}

}  // namespace ns_sensor
