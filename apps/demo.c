/* zeqcv demo: prints the library's version record and runs a few calls on a
 * generated image, printing what they computed. */
#include "zeqcv.h"

#include <stdio.h>

enum { W = 64, H = 48 };

int main(void) {
    static Zeq8u frame0[H][W], frame1[H][W], diff[H][W];
    const ZeqLibraryVersion* v = zeqcvGetLibVersion();
    ZeqiSize roi = {W, H};
    long total = 0, changed = 0;
    ZeqStatus st;
    int x, y;

    printf("%s %s (%d.%d.%d.%d, target %s, built %s)\n", v->name, v->version, v->major, v->minor,
           v->majorBuild, v->build, v->targetCpu, v->buildDate);

    /* Two frames of a gradient with a bright square that moves 3 pixels right. */
    for (y = 0; y < H; ++y)
        for (x = 0; x < W; ++x) {
            Zeq8u base = (Zeq8u)(2 * x + y);
            frame0[y][x] = (x >= 10 && x < 20 && y >= 10 && y < 20) ? 250 : base;
            frame1[y][x] = (x >= 13 && x < 23 && y >= 10 && y < 20) ? 250 : base;
        }

    st = zeqiAbsDiff_8u_C1R(&frame0[0][0], W, &frame1[0][0], W, &diff[0][0], W, roi);
    for (y = 0; y < H; ++y)
        for (x = 0; x < W; ++x) {
            total += diff[y][x];
            changed += diff[y][x] != 0;
        }
    printf("zeqiAbsDiff_8u_C1R on %dx%d frames: status %d, %ld pixels changed, sum of differences %ld\n",
           W, H, (int)st, changed, total);

    st = zeqiAbsDiffC_8u_C1R(&frame0[0][0], W, &diff[0][0], W, roi, 300);
    printf("zeqiAbsDiffC_8u_C1R with constant 300 (clamped to 255): status %d, first pixel %d\n",
           (int)st, diff[0][0]);

    st = zeqiAbsDiff_8u_C1R(&frame0[0][0], W - 1, &frame1[0][0], W, &diff[0][0], W, roi);
    printf("zeqiAbsDiff_8u_C1R with a step shorter than a row: status %d (zeqStsStep is %d)\n",
           (int)st, zeqStsStep);
    return 0;
}
