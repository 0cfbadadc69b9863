// Prints the widest tier the library would use here (configure-time probe).
#include "core/zqcvisa.h"

#include <cstdio>

int main() {
    std::printf("%s", zq::isaName(zq::isa()));
    return 0;
}
