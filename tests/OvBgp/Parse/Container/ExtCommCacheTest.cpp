// Tests of the cache of show commands.
#include "OvBgp/Parse/Container/ExtCommCache.h"

#include <gtest/gtest.h>

namespace {

TEST(ExtCommCache, RenderingsAreIndependent) {
  const auto cache = BgpShowCli::extCommCacheFactory();
  EXPECT_EQ("", cache->lookup(1, false));
  cache->insert(1, "one", false);
  EXPECT_EQ("one", cache->lookup(1, false));
  EXPECT_EQ("", cache->lookup(1, true));
  cache->insert(1, "0.1", true);
  cache->insert(1, "ONE", false);
  EXPECT_EQ("ONE", cache->lookup(1, false)) << "the second text replaces the first";
  EXPECT_EQ("0.1", cache->lookup(1, true));
  EXPECT_EQ("", cache->lookup(U64{1} << 32 | 1, false)) << "all 64 bits tell values apart";
}

TEST(ExtCommCache, DeletesWhereItIsTold) {
  const auto cache = BgpShowCli::extCommCacheFactory();
  for (U64 value = 1; value <= 3; ++value) {
    cache->extCommToStringIs(value, "plain");
    cache->extCommToAsdotStringIs(value, "dotted");
  }
  EXPECT_TRUE(cache->extCommToStringDel(1));
  EXPECT_FALSE(cache->extCommToStringDel(1));
  EXPECT_TRUE(cache->extCommToAsdotStringDel(2));
  EXPECT_EQ("", cache->lookup(1, false));
  EXPECT_EQ("dotted", cache->lookup(1, true));
  EXPECT_EQ("plain", cache->lookup(2, false));
  EXPECT_EQ("", cache->lookup(2, true));
  cache->extCommToStringDelAll();
  EXPECT_EQ("", cache->lookup(3, false));
  EXPECT_EQ("dotted", cache->lookup(3, true));
  cache->extCommToAsdotStringDelAll();
  EXPECT_EQ("", cache->lookup(3, true));
}

}  // namespace
