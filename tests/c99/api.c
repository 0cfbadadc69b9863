/* The public header compiled as strict C99, and a few calls through it. */
#include "zeqcv.h"

#include <stdio.h>
#include <string.h>

static int failures = 0;

static void expect(int ok, const char* what) {
    if (!ok) {
        printf("FAILED: %s\n", what);
        ++failures;
    }
}

int main(void) {
    const ZeqLibraryVersion* v = zeqcvGetLibVersion();
    ZeqiSize roi = {3, 2};
    Zeq8u a[6] = {0, 10, 255, 7, 8, 9};
    Zeq8u b[6] = {5, 5, 0, 9, 8, 7};
    Zeq8u d[6];

    expect(v == zeqcvGetLibVersion(), "one version record");
    expect(v->major == 4 && v->minor == 1 && v->majorBuild == 10 && v->build == 72, "version numbers");
    expect(memcmp(v->targetCpu, "w7\0\0", 4) == 0, "target code");
    expect(strcmp(v->name, "libzeqcvw7.so") == 0, "library name");
    expect(zeqiAbsDiff_8u_C1R(a, 3, b, 3, d, 3, roi) == zeqStsOk, "absolute difference runs");
    expect(d[0] == 5 && d[1] == 5 && d[2] == 255 && d[3] == 2 && d[4] == 0 && d[5] == 2, "absolute difference");
    expect(zeqiAbsDiff_8u_C1R(a, 3, b, 3, NULL, 3, roi) == zeqStsNullPtr, "null destination");
    printf("%d passed, %d failed\n", 7 - failures, failures);
    return failures != 0;
}
