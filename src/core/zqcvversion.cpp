// The library's one static record: what it is and which build it came from.
#include "core/zqcvcore.h"

namespace {
const ZeqLibraryVersion kVersion = {
    4, 1, 10, 72,
    {'w', '7', '\0', '\0'},
    "libzeqcvw7.so",
    "v4.1",
    "Jul 19 2004",
};
}  // namespace

const ZeqLibraryVersion* zeqcvGetLibVersion(void) { return &kVersion; }
