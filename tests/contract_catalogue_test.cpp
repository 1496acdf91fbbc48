// Catalogue contract: the sandbox's category catalogue and templates, read through the
// client's own classes, are the records the client ships and merges into its home.
#include "core/session/search_types_reader.h"
#include "features/discovery/built_in_search_types.h"
#include "features/discovery/search_type_net_api.h"
#include "features/discovery/templates_net_api.h"
#include "tests/discovery_sandbox_fixture.h"

namespace qmv {
namespace {

using CatalogueContractTest = testsupport::DiscoverySandboxTest;

TEST_F(CatalogueContractTest, CatalogueAndTemplatesReadAsTheClientsOwnRecords) {
  auto catalogue = std::make_shared<SearchTypeNetApi>();
  ASSERT_TRUE(sendCorrect(catalogue));
  const auto served = SearchTypeNetApi::getSearchTypeWithJsonStr(catalogue->responseString());
  const auto builtIn = searchTypesFromEnvelope(builtInSearchTypesText());
  ASSERT_FALSE(served.empty());
  ASSERT_EQ(served.size(), builtIn.size());
  for (std::size_t i = 0; i < served.size(); ++i) {
    EXPECT_EQ(served[i].typeId, builtIn[i].typeId);
    EXPECT_EQ(served[i].name, builtIn[i].name);
    EXPECT_EQ(served[i].list.size(), builtIn[i].list.size()) << served[i].name;
  }

  auto templates = std::make_shared<TemplatesNetApi>();
  ASSERT_TRUE(sendCorrect(templates));
  const auto read = templates->templatesFromResponse();
  ASSERT_FALSE(read.empty());
  EXPECT_EQ(home_.settings().stringForKey("templates"), templates->responseString());
  TemplatesNetApi::resetTemplates(read);
  int merged = 0;
  for (const auto& home : GlobalData::sharedInstance().defaultTypeList()) {
    const auto* served = TemplatesNetApi::getInfoWithName(home.name, read);
    if (served == nullptr) continue;
    ++merged;
    EXPECT_EQ(home.typeId, served->typeId) << home.name;
    EXPECT_EQ(home.list.size(), served->list.size()) << home.name;
  }
  EXPECT_EQ(merged, static_cast<int>(GlobalData::sharedInstance().defaultTypeList().size()))
      << "every home category has its template";
}

}  // namespace
}  // namespace qmv
