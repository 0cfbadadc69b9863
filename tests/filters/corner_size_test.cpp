// Work-buffer size queries of the corner measures.
#include "zqtest.h"

#include <climits>

namespace {

using Query = ZeqStatus (*)(int, int, int, int*);
const Query kQueries[] = {zeqiMinEigenValGetSize, zeqiEigenValsVecsGetSize};

TEST(CornerSize, TwelveBytesPerPixelForEachOfEightRows) {
    for (Query q : kQueries)
        for (int ap : {3, 5, 7})
            for (int win : {3, 5, 7})
                for (int w : {1, 2, 17, 1920}) {
                    int size = -1;
                    ASSERT_EQ(q(w, ap, win, &size), zeqStsOk);
                    EXPECT_EQ(size, 12 * w + 12 * w * 7);
                }
}

TEST(CornerSize, StatusesInOrderAndNothingWrittenOnFailure) {
    struct Case {
        int w, ap, win;
        bool nullOut;
        ZeqStatus want;
    };
    const Case cases[] = {
        {0, 4, 4, true, zeqStsNullPtr},  {0, 3, 3, false, zeqStsSize},   {-5, 3, 3, false, zeqStsSize},
        {8, 1, 3, false, zeqStsSize},    {8, 4, 3, false, zeqStsSize},   {8, 9, 3, false, zeqStsSize},
        {8, 3, 2, false, zeqStsSize},    {8, 3, 0, false, zeqStsSize},   {8, 5, 11, false, zeqStsSize},
        {INT_MAX / 96 + 1, 3, 3, false, zeqStsSize},  // 96 bytes per pixel no longer fit an int
        {INT_MAX, 7, 7, false, zeqStsSize},
    };
    for (Query q : kQueries)
        for (const Case& c : cases) {
            int size = 12345;
            EXPECT_EQ(q(c.w, c.ap, c.win, c.nullOut ? nullptr : &size), c.want) << c.w << " " << c.ap << " " << c.win;
            EXPECT_EQ(size, 12345);
        }
    int size = 0;
    EXPECT_EQ(zeqiMinEigenValGetSize(INT_MAX / 96, 3, 3, &size), zeqStsOk);
    EXPECT_EQ(size, INT_MAX / 96 * 96);
}

}  // namespace
