/* zeqcv demo: prints the library's version record, then runs a few calls of
 * each family on two generated frames and prints what they computed. */
#include "zeqcv.h"

#include <stdio.h>
#include <stdlib.h>

enum { W = 64, H = 48 };

static void report(const char* what, ZeqStatus st) {
    if (st != zeqStsOk) printf("  %s returned status %d\n", what, (int)st);
}

int main(void) {
    static Zeq8u frame0[H][W], frame1[H][W], diff[H][W], mask[H][W], edges[H][W];
    static Zeq16s dx[H][W], dy[H][W];
    static Zeq32f acc[H][W], image[H][W], spectrum[H][W];
    const ZeqLibraryVersion* v = zeqcvGetLibVersion();
    const ZeqiSize roi = {W, H};
    Zeq64f mean, stdDev, norm;
    Zeq32f minVal, maxVal;
    ZeqiPoint minAt, maxAt;
    long changed = 0, edgeCount = 0;
    int x, y, bufSize;

    printf("%s %s (%d.%d.%d.%d, target %s, built %s)\n", v->name, v->version, v->major, v->minor,
           v->majorBuild, v->build, v->targetCpu, v->buildDate);

    /* A gradient with a bright square that moves 3 pixels to the right. */
    for (y = 0; y < H; ++y)
        for (x = 0; x < W; ++x) {
            Zeq8u base = (Zeq8u)(2 * x + y);
            frame0[y][x] = (x >= 10 && x < 20 && y >= 10 && y < 20) ? 250 : base;
            frame1[y][x] = (x >= 13 && x < 23 && y >= 10 && y < 20) ? 250 : base;
        }
    printf("two %dx%d frames, a 10x10 square moving 3 pixels right over a gradient\n", W, H);

    report("zeqiAbsDiff_8u_C1R", zeqiAbsDiff_8u_C1R(&frame0[0][0], W, &frame1[0][0], W, &diff[0][0], W, roi));
    for (y = 0; y < H; ++y)
        for (x = 0; x < W; ++x) {
            changed += diff[y][x] != 0;
            mask[y][x] = (Zeq8u)(diff[y][x] > 20 ? 255 : 0);
        }
    printf("absolute difference: %ld pixels changed\n", changed);

    report("zeqiMean_StdDev_8u_C1R", zeqiMean_StdDev_8u_C1R(&frame1[0][0], W, roi, &mean, &stdDev));
    printf("second frame: mean %.4f, standard deviation %.4f\n", mean, stdDev);
    report("zeqiMinMaxIndx_8u_C1MR", zeqiMinMaxIndx_8u_C1MR(&frame0[0][0], W, &mask[0][0], W, roi, &minVal,
                                                          &maxVal, &minAt, &maxAt));
    printf("first frame where it changed: min %.0f at (%d, %d), max %.0f at (%d, %d)\n", minVal, minAt.x, minAt.y,
           maxVal, maxAt.x, maxAt.y);
    report("zeqiNormDiff_L1_8u_C1MR", zeqiNormDiff_L1_8u_C1MR(&frame0[0][0], W, &frame1[0][0], W, &mask[0][0], W,
                                                            roi, &norm));
    printf("L1 norm of the difference where it changed: %.0f\n", norm);

    for (y = 0; y < H; ++y)
        for (x = 0; x < W; ++x) acc[y][x] = 0.0f;
    report("zeqiAddWeighted_8u32f_C1IR", zeqiAddWeighted_8u32f_C1IR(&frame0[0][0], W, &acc[0][0], 4 * W, roi, 0.5f));
    report("zeqiAddWeighted_8u32f_C1IR", zeqiAddWeighted_8u32f_C1IR(&frame1[0][0], W, &acc[0][0], 4 * W, roi, 0.5f));
    printf("running average (alpha 0.5) at the square's left edge (11, 15): %.2f\n", acc[15][11]);

    report("zeqiSobel3x3_Dx_8u16s_C1R", zeqiSobel3x3_Dx_8u16s_C1R(&frame1[0][0], W, &dx[0][0], 2 * W, roi));
    report("zeqiSobel3x3_Dy_8u16s_C1R", zeqiSobel3x3_Dy_8u16s_C1R(&frame1[0][0], W, &dy[0][0], 2 * W, 0, roi));
    printf("Sobel at the square's left edge (13, 15): dx %d, dy %d\n", dx[15][13], dy[15][13]);
    report("zeqiCannyGetSize", zeqiCannyGetSize(roi, &bufSize));
    {
        Zeq8u* buffer = zeqsMalloc_8u(bufSize);
        report("zeqiCanny_16s8u_C1R", zeqiCanny_16s8u_C1R(&dx[0][0], 2 * W, &dy[0][0], 2 * W, &edges[0][0], W, roi,
                                                          100.0f, 400.0f, buffer));
        zeqsFree(buffer);
    }
    for (y = 0; y < H; ++y)
        for (x = 0; x < W; ++x) edgeCount += edges[y][x] == 255;
    printf("Canny (thresholds 100, 400): %ld edge pixels, the square's outline\n", edgeCount);

    report("zeqiConvert_8u32f_C1R", zeqiConvert_8u32f_C1R(&frame1[0][0], W, &image[0][0], 4 * W, roi));
    {
        ZeqiFFTSpec_R_32f* spec = NULL;
        /* The 2-D transform needs power-of-two sides: the top-left 64x32 block. */
        report("zeqiFFTInitAlloc_R_32f", zeqiFFTInitAlloc_R_32f(&spec, 6, 5, zeqFftScaleInvByN, 0));
        report("zeqiFFTFwd_RToPack_32f_C1R",
               zeqiFFTFwd_RToPack_32f_C1R(&image[0][0], 4 * W, &spectrum[0][0], 4 * W, spec, NULL));
        printf("2-D spectrum of the top 64x32 block: DC %.0f (sum of the pixels), first horizontal harmonic "
               "%.1f%+.1fi\n", spectrum[0][0], spectrum[0][1], spectrum[0][2]);
        report("zeqiFFTFree_R_32f", zeqiFFTFree_R_32f(spec));
    }

    printf("a step shorter than the row is refused: status %d (zeqStsStep)\n",
           (int)zeqiAbsDiff_8u_C1R(&frame0[0][0], W - 1, &frame1[0][0], W, &diff[0][0], W, roi));
    return EXIT_SUCCESS;
}
