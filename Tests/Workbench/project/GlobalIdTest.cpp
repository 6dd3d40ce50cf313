#include "Workbench/project/GlobalId.hpp"

#include <gtest/gtest.h>

namespace workbench {
namespace {

TEST(GlobalId, IsTheGuidInBase64OfItsOwn) {
    const API_Guid guid = APIGuidFromString("C2E63FBC-194A-4895-A7A8-62C9B0D5CC7B");
    EXPECT_EQ(GlobalIdFromGuid(guid), "32vZ_y6Kf8bQUeOicmrSnx");
    EXPECT_EQ(GuidFromGlobalId("32vZ_y6Kf8bQUeOicmrSnx"), guid);
    EXPECT_EQ(GlobalIdFromGuid(APINULLGuid), "0000000000000000000000");
    EXPECT_EQ(GuidFromGlobalId("3$$$$$$$$$$$$$$$$$$$$$"),
              APIGuidFromString("FFFFFFFF-FFFF-FFFF-FFFF-FFFFFFFFFFFF"));
    for (const char* bad : {"", "32vZ_y6Kf8bQUeOicmrSn", "32vZ_y6Kf8bQUeOicmrSnxx", "42vZ_y6Kf8bQUeOicmrSnx",
                            "32vZ_y6Kf8bQUeOicmr-nx", "32vZ_y6Kf8bQUeOicmr\xC3\xA4x"}) {
        EXPECT_EQ(GuidFromGlobalId(bad), std::nullopt) << bad;
    }
    const API_Guid named = GuidFromName("a");
    EXPECT_EQ(named, GuidFromName("a"));
    EXPECT_NE(named, GuidFromName("b"));
    EXPECT_EQ(GuidFromGlobalId(GlobalIdFromGuid(named)), named);
}

}  // namespace
}  // namespace workbench
