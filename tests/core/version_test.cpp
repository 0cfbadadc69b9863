#include "zqtest.h"

#include <cstring>

namespace {

TEST(Version, OneConstantRecord) {
    const ZeqLibraryVersion* v = zeqcvGetLibVersion();
    ASSERT_NE(nullptr, v);
    EXPECT_EQ(v, zeqcvGetLibVersion());
    EXPECT_EQ(4, v->major);
    EXPECT_EQ(1, v->minor);
    EXPECT_EQ(10, v->majorBuild);
    EXPECT_EQ(72, v->build);
    EXPECT_EQ(0, std::memcmp(v->targetCpu, "w7\0\0", 4));
    EXPECT_STREQ("libzeqcvw7.so", v->name);
    EXPECT_STREQ("v4.1", v->version);
    EXPECT_STREQ("Jul 19 2004", v->buildDate);
}

// The record's layout is part of the interface: 32-bit words, then three pointers.
TEST(Version, RecordLayout) {
    EXPECT_EQ(16u, offsetof(ZeqLibraryVersion, targetCpu));
    EXPECT_EQ(20u + (sizeof(void*) == 8 ? 4u : 0u), offsetof(ZeqLibraryVersion, name));
    EXPECT_EQ(sizeof(int), sizeof(ZeqStatus));
}

}  // namespace
