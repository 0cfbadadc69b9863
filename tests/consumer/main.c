/* An installed zeqcv used from C: the version record and one call. */
#include <zeqcv.h>

#include <stdio.h>

#if ZEQCV_VERSION_MAJOR != 4
#error "built against another major version"
#endif

int main(void) {
    Zeq8u a[2][3] = {{0, 10, 20}, {30, 40, 50}};
    Zeq8u b[2][3] = {{5, 5, 5}, {60, 60, 60}};
    Zeq8u d[2][3];
    const ZeqiSize roi = {3, 2};
    const ZeqLibraryVersion* v = zeqcvGetLibVersion();
    ZeqStatus st = zeqiAbsDiff_8u_C1R(&a[0][0], 3, &b[0][0], 3, &d[0][0], 3, roi);
    if (st != zeqStsOk || d[0][0] != 5 || d[1][2] != 10) {
        printf("absolute difference: %s\n", zeqcvStatusString(st));
        return 1;
    }
    st = zeqiAbsDiff_8u_C1R(&a[0][0], 2, &b[0][0], 3, &d[0][0], 3, roi);
    printf("%s %s (C): a short step gives %s\n", v->name, v->version, zeqcvStatusString(st));
    return v->major == ZEQCV_VERSION_MAJOR && st == zeqStsStep ? 0 : 1;
}
