// Each subcommand's files and printed numbers next to the library functions
// it calls, on the same pixels.
#include "clitest.h"

#include <cmath>
#include <complex>
#include <cstring>
#include <set>

namespace {

using clitest::Cli;

// The grey image the tool works on, from the file it read.
zeqcv::Image<Zeq8u> greyOf(const std::string& path) { return tool::grey8(tool::readPicture(path)); }

TEST_F(Cli, EdgesOfAJpegPhotographAreCannyOfSobel) {
    clitest::writeJpeg(path("photo.jpg"), clitest::scene(67, 45, 3));
    const auto r = run("edges '" + path("photo.jpg") + "' --low 30 --high 90 --out '" + path("out") + "'");
    ASSERT_EQ(0, r.status) << r.err;
    EXPECT_NE(std::string::npos, r.err.find("[1/1] " + path("photo.jpg")));

    const auto grey = greyOf(path("photo.jpg"));
    zeqcv::Image<Zeq16s> dx(67, 45), dy(67, 45);
    zeqcv::Image<Zeq8u> expected(67, 45);
    zeqcv::Buffer<Zeq8u> buf;
    ASSERT_EQ(zeqStsOk, zeqcv::call(zeqiSobel3x3_Dx_8u16s_C1R, grey, dx, zeqcv::roi));
    ASSERT_EQ(zeqStsOk, zeqcv::call(zeqiSobel3x3_Dy_8u16s_C1R, grey, dy, 0, zeqcv::roi));
    ASSERT_EQ(zeqStsOk, buf.sized(zeqiCannyGetSize, grey.size()));
    ASSERT_EQ(zeqStsOk, zeqcv::call(zeqiCanny_16s8u_C1R, dx, dy, expected, zeqcv::roi, 30.0f, 90.0f, buf.data()));
    const auto got = greyOf(path("out/photo-edges.png"));
    int edges = 0;
    for (int y = 0; y < 45; ++y)
        for (int x = 0; x < 67; ++x) {
            ASSERT_EQ(expected.row(y)[x], got.row(y)[x]) << x << "," << y;
            edges += got.row(y)[x] == 255;
        }
    EXPECT_GT(edges, 50);
}

TEST_F(Cli, GradientRawIsTheFloatSobelAndArctangent) {
    tool::writePng(path("g.png"), clitest::scene(31, 20, 1));
    const auto r = run("gradient --raw '" + path("g.png") + "' -o '" + path("o") + "'");
    ASSERT_EQ(0, r.status) << r.err;
    const auto grey = greyOf(path("g.png"));
    zeqcv::Image<Zeq32f> f(31, 20), dx(31, 20), dy(31, 20), angle(31, 20);
    ASSERT_EQ(zeqStsOk, zeqcv::call(zeqiConvert_8u32f_C1R, grey, f, zeqcv::roi));
    ASSERT_EQ(zeqStsOk, zeqcv::call(zeqiSobel3x3_Dx_32f_C1R, f, dx, zeqcv::roi));
    ASSERT_EQ(zeqStsOk, zeqcv::call(zeqiSobel3x3_Dy_32f_C1R, f, dy, 0, zeqcv::roi));
    for (int y = 0; y < 20; ++y) ASSERT_EQ(zeqStsOk, zeqibFastArctan_32f(dy.row(y), dx.row(y), angle.row(y), 31));
    const auto gx = clitest::readPfm(path("o/g-dx.pfm")), ga = clitest::readPfm(path("o/g-direction.pfm"));
    const auto gm = clitest::readPfm(path("o/g-magnitude.pfm"));
    ASSERT_TRUE(gx && ga && gm);
    for (int y = 0; y < 20; ++y)
        for (int x = 0; x < 31; ++x) {
            EXPECT_EQ(dx.row(y)[x], gx.row(y)[x]);
            EXPECT_EQ(angle.row(y)[x], ga.row(y)[x]);
            EXPECT_NEAR(std::hypot(dx.row(y)[x], dy.row(y)[x]), gm.row(y)[x], 1e-3);
        }
}

// The row of `name` in the stats table: mean, std dev, min, (x, y), max, (x, y), L1, L2, Inf.
std::vector<double> statsRow(const std::string& out, const std::string& name) {
    std::istringstream lines(out);
    std::string line;
    while (std::getline(lines, line)) {
        std::istringstream words(line);
        std::string first;
        words >> first;
        if (first != name) continue;
        std::vector<double> v;
        for (std::string w; words >> w;) v.push_back(std::atof(w.c_str() + (w[0] == '(' ? 1 : 0)));
        return v;
    }
    return {};
}

TEST_F(Cli, StatsPrintTheLibrarysMeanMinMaxAndNorms) {
    tool::writePng(path("s.png"), clitest::scene(23, 17, 1));
    tool::Picture mask = clitest::scene(23, 17, 1);
    for (size_t i = 0; i < mask.bytes.size(); ++i) mask.bytes[i] = i % 3 ? 255 : 0;
    tool::writePng(path("mask.png"), mask);
    const auto grey = greyOf(path("s.png"));
    for (bool masked : {false, true}) {
        const auto r = run("cd '" + dir + "' && " ZEQCV_TOOL " stats s.png" + (masked ? " --mask mask.png" : ""), false);
        ASSERT_EQ(0, r.status) << r.err;
        EXPECT_EQ("mask.png s.png ", listing(dir)) << "stats writes nothing";
        const auto row = statsRow(r.out, "grey");
        ASSERT_EQ(11u, row.size()) << r.out;
        zeqcv::Image<Zeq8u> m(23, 17);
        for (int y = 0; y < 17; ++y)
            for (int x = 0; x < 23; ++x) m.row(y)[x] = masked ? mask.row8(y)[x] : 255;
        double mean, dev, l2;
        Zeq32f lo, hi;
        ZeqiPoint at0, at1;
        if (masked) ASSERT_EQ(zeqStsOk, zeqcv::call(zeqiMean_StdDev_8u_C1MR, grey, m, zeqcv::roi, &mean, &dev));
        else ASSERT_EQ(zeqStsOk, zeqcv::call(zeqiMean_StdDev_8u_C1R, grey, zeqcv::roi, &mean, &dev));
        ASSERT_EQ(zeqStsOk, zeqcv::call(zeqiMinMaxIndx_8u_C1MR, grey, m, zeqcv::roi, &lo, &hi, &at0, &at1));
        ASSERT_EQ(zeqStsOk, zeqcv::call(zeqiNorm_L2_8u_C1MR, grey, m, zeqcv::roi, &l2));
        EXPECT_NEAR(mean, row[0], 5e-7);
        EXPECT_NEAR(dev, row[1], 5e-7);
        EXPECT_EQ(std::vector<double>({lo, double(at0.x), double(at0.y), hi, double(at1.x), double(at1.y)}),
                  std::vector<double>(row.begin() + 2, row.begin() + 8));
        EXPECT_NEAR(l2, row[9], 1e-4);
    }
}

TEST_F(Cli, SpectrumIsTheCentredLogMagnitudeOfTheDft) {
    const tool::Picture p = clitest::scene(8, 4, 1);
    tool::writePng(path("f.png"), p);
    const auto r = run("spectrum --raw=pfm '" + path("f.png") + "' -o '" + path("o") + "'");
    ASSERT_EQ(0, r.status) << r.err;
    const auto s = clitest::readPfm(path("o/f-spectrum.pfm"));
    ASSERT_TRUE(s && s.width() == 8 && s.height() == 4);
    const double pi = std::acos(-1.0);
    for (int v = 0; v < 4; ++v)
        for (int u = 0; u < 8; ++u) {
            std::complex<double> F = 0;
            for (int y = 0; y < 4; ++y)
                for (int x = 0; x < 8; ++x)
                    F += double(p.row8(y)[x]) * std::polar(1.0, -2 * pi * (double(u * x) / 8 + double(v * y) / 4));
            EXPECT_NEAR(std::log1p(std::abs(F)), s.row((v + 2) % 4)[(u + 4) % 8], 1e-4) << u << "," << v;
        }
}

TEST_F(Cli, DiffWritesTheAbsoluteDifferenceAndPrintsNorms) {
    tool::Picture a = clitest::scene(13, 11, 1), b = a;
    for (size_t i = 0; i < b.bytes.size(); i += 5) b.bytes[i] = uint8_t(255 - b.bytes[i]);
    tool::writePng(path("a.png"), a);
    tool::writePng(path("b.png"), b);
    const auto r = run("diff '" + path("a.png") + "' '" + path("b.png") + "' -o '" + path("o") + "'");
    ASSERT_EQ(0, r.status) << r.err;
    const auto ga = greyOf(path("a.png")), gb = greyOf(path("b.png")), d = greyOf(path("o/a-b-diff.png"));
    zeqcv::Image<Zeq8u> expected(13, 11), mask(13, 11);
    for (int y = 0; y < 11; ++y) std::fill(mask.row(y), mask.row(y) + 13, Zeq8u(1));
    double l1;
    ASSERT_EQ(zeqStsOk, zeqcv::call(zeqiAbsDiff_8u_C1R, ga, gb, expected, zeqcv::roi));
    ASSERT_EQ(zeqStsOk, zeqcv::call(zeqiNormDiff_L1_8u_C1MR, ga, gb, mask, zeqcv::roi, &l1));
    for (int y = 0; y < 11; ++y)
        for (int x = 0; x < 13; ++x) ASSERT_EQ(expected.row(y)[x], d.row(y)[x]);
    EXPECT_EQ(l1, statsRow(r.out, "diff").at(1)) << r.out;
}

TEST_F(Cli, AccumulateAFolderOfFrames) {
    ASSERT_EQ(0, std::system(("mkdir '" + path("frames") + "'").c_str()));
    std::vector<tool::Picture> frames;
    for (int i = 0; i < 3; ++i) {
        frames.push_back(clitest::scene(10 + 0 * i, 6, 1));
        for (auto& b : frames.back().bytes) b = uint8_t(b + 20 * i);
        tool::writePng(path("frames/f" + std::to_string(i) + ".png"), frames.back());
    }
    const auto r = run("accumulate '" + path("frames") + "' --alpha 0.5 --raw -o '" + path("o") + "'");
    ASSERT_EQ(0, r.status) << r.err;
    EXPECT_NE(std::string::npos, r.err.find("[3/3]")) << r.err;
    const auto mean = clitest::readPfm(path("o/accumulate-mean.pfm"));
    const auto running = clitest::readPfm(path("o/accumulate-running.pfm"));
    ASSERT_TRUE(mean && running);
    for (int y = 0; y < 6; ++y)
        for (int x = 0; x < 10; ++x) {
            const float f0 = frames[0].row8(y)[x], f1 = frames[1].row8(y)[x], f2 = frames[2].row8(y)[x];
            EXPECT_NEAR((f0 + f1 + f2) / 3, mean.row(y)[x], 1e-4);
            float acc = f0;
            acc = acc + (f1 - acc) * 0.5f;
            acc = acc + (f2 - acc) * 0.5f;
            EXPECT_EQ(acc, running.row(y)[x]);
        }
}

// An 8-bit image as the tool reads it back: grey, or RGB when `channels` is 3.
zeqcv::Image<Zeq8u> imageOf(const std::string& file, int channels) {
    const tool::Picture p = tool::readPicture(file);
    return channels == 3 ? tool::rgb8(p) : tool::grey8(p);
}

void expectSame(const zeqcv::Image<Zeq8u>& expected, const zeqcv::Image<Zeq8u>& got, const std::string& what) {
    ASSERT_TRUE(expected.width() == got.width() && expected.height() == got.height()) << what;
    for (int y = 0; y < got.height(); ++y)
        for (int x = 0; x < got.width() * got.channels(); ++x)
            ASSERT_EQ(expected.row(y)[x], got.row(y)[x]) << what << " at " << x << "," << y;
}

TEST_F(Cli, CornersAreTheLibrarysEigenvalues) {
    tool::writePng(path("c.png"), clitest::scene(33, 21, 1));
    const auto grey = greyOf(path("c.png"));
    for (const auto& size : {std::pair<int, int>{3, 5}, {7, 3}}) {
        const std::string o = path("o" + std::to_string(size.first));
        const auto r = run("corners --raw --vectors --best 3 --aperture " + std::to_string(size.first) + " --window " +
                           std::to_string(size.second) + " '" + path("c.png") + "' -o '" + o + "'");
        ASSERT_EQ(0, r.status) << r.err;
        zeqcv::Image<Zeq32f> minimum(33, 21), vv(33, 21, 6);
        zeqcv::Buffer<Zeq8u> b1, b2;
        ASSERT_EQ(zeqStsOk, b1.sized(zeqiMinEigenValGetSize, 33, size.first, size.second));
        ASSERT_EQ(zeqStsOk, b2.sized(zeqiEigenValsVecsGetSize, 33, size.first, size.second));
        ASSERT_EQ(zeqStsOk, zeqcv::call(zeqiMinEigenVal_8u32f_C1R, grey, minimum, zeqcv::roi, size.first, size.second,
                                        b1.data()));
        ASSERT_EQ(zeqStsOk, zeqcv::call(zeqiEigenValsVecs_8u32f_C1R, grey, vv, zeqcv::roi, size.first, size.second,
                                        b2.data()));
        const auto m = clitest::readPfm(o + "/c-corners.pfm"), l1 = clitest::readPfm(o + "/c-l1.pfm"),
                   l2 = clitest::readPfm(o + "/c-l2.pfm");
        ASSERT_TRUE(m && l1 && l2);
        ZeqiPoint best = {0, 0};
        for (int y = 0; y < 21; ++y)
            for (int x = 0; x < 33; ++x) {
                ASSERT_EQ(minimum.row(y)[x], m.row(y)[x]) << x << "," << y;
                ASSERT_EQ(vv.row(y)[x * 6], l1.row(y)[x]) << x << "," << y;
                ASSERT_EQ(vv.row(y)[x * 6 + 1], l2.row(y)[x]) << x << "," << y;
                if (minimum.row(y)[x] > minimum.row(best.y)[best.x]) best = {x, y};
            }
        char line[96];
        std::snprintf(line, sizeof line, "corner 1 at %d,%d strength %.9g l1 %.9g", best.x, best.y,
                      double(minimum.row(best.y)[best.x]), double(vv.row(best.y)[best.x * 6]));
        EXPECT_NE(std::string::npos, r.out.find(line)) << r.out << " lacks " << line;
        EXPECT_NE(std::string::npos, r.out.find("corner 3 at")) << r.out;
    }
}

TEST_F(Cli, FilterIsTheLibrarysStateFilter) {
    tool::writePng(path("f.png"), clitest::scene(25, 16, 3));
    const auto grey = greyOf(path("f.png"));
    struct Case {
        const char* options;
        const char* kind;
        bool floats;
        int size, dx, dy;
    };
    const Case cases[] = {{"--kind sobel --size 5 --dx 1 --dy 1", "sobel", false, 5, 1, 1},
                          {"--kind laplace --size 7", "laplace", false, 7, 0, 0},
                          {"--kind blur --size 3 --float", "blur", true, 3, 0, 0},
                          {"--kind sobel --dx 0 --dy 2 --float", "sobel", true, 3, 0, 2}};
    for (const Case& c : cases) {
        const auto r = run(std::string("filter --raw ") + c.options + " '" + path("f.png") + "' -o '" + path("o") + "'");
        ASSERT_EQ(0, r.status) << r.err;
        const ZeqDataType type = c.floats ? zeq32f : zeq8u;
        zeqcv::ConvState state;
        const std::string kind = c.kind;
        const ZeqStatus made = kind == "sobel"     ? state.init(zeqiSobelInitAlloc, 25, type, c.size, 0, c.dx, c.dy)
                               : kind == "laplace" ? state.init(zeqiLaplaceInitAlloc, 25, type, c.size)
                                                   : state.init(zeqiBlurInitAlloc, 25, type, c.size);
        ASSERT_EQ(zeqStsOk, made);
        zeqcv::Image<Zeq32f> expected(25, 16), src(25, 16);
        zeqcv::Image<Zeq16s> sums(25, 16);
        ZeqiSize rows = {25, 16};
        if (c.floats) {
            ASSERT_EQ(zeqStsOk, zeqcv::call(zeqiConvert_8u32f_C1R, grey, src, zeqcv::roi));
            ASSERT_EQ(zeqStsOk, zeqcv::call(kind == "sobel" ? zeqiSobel_32f_C1R : zeqiBlur_32f_C1R, src, expected, &rows,
                                            state.get(), 0));
        } else {
            ASSERT_EQ(zeqStsOk, zeqcv::call(kind == "sobel" ? zeqiSobel_8u16s_C1R : zeqiLaplace_8u16s_C1R, grey, sums,
                                            &rows, state.get(), 0));
            for (int y = 0; y < 16; ++y)
                for (int x = 0; x < 25; ++x) expected.row(y)[x] = sums.row(y)[x];
        }
        const auto got = clitest::readPfm(path("o/f-") + c.kind + ".pfm");
        ASSERT_TRUE(got) << c.options;
        for (int y = 0; y < 16; ++y)
            for (int x = 0; x < 25; ++x) ASSERT_EQ(expected.row(y)[x], got.row(y)[x]) << c.options << " at " << x << "," << y;
    }
}

TEST_F(Cli, PyramidLevelsAreTheLibrarysGaussianSteps) {
    for (int channels : {1, 3}) {
        tool::writePng(path("p.png"), clitest::scene(37, 23, channels));
        const auto r = run("pyramid --levels 2 '" + path("p.png") + "' -o '" + path("o") + "'");
        ASSERT_EQ(0, r.status) << r.err;
        auto level = imageOf(path("p.png"), channels);
        for (int k = 1; k <= 2; ++k) {
            const int c = channels;
            zeqcv::Image<Zeq8u> down((level.width() + 1) / 2, (level.height() + 1) / 2, c),
                up(2 * down.width(), 2 * down.height(), c);
            zeqcv::Buffer<Zeq8u> bd, bu;
            ASSERT_EQ(zeqStsOk, bd.sized(zeqiPyrDownGetBufSize_Gauss5x5, level.width(), zeq8u, c));
            ASSERT_EQ(zeqStsOk, bu.sized(zeqiPyrUpGetBufSize_Gauss5x5, down.width(), zeq8u, c));
            ASSERT_EQ(zeqStsOk, zeqcv::call(c == 3 ? zeqiPyrDown_Gauss5x5_8u_C3R : zeqiPyrDown_Gauss5x5_8u_C1R, level,
                                            down, zeqcv::roi, bd.data()));
            ASSERT_EQ(zeqStsOk, zeqcv::call(c == 3 ? zeqiPyrUp_Gauss5x5_8u_C3R : zeqiPyrUp_Gauss5x5_8u_C1R, down, up,
                                            zeqcv::roi, bu.data()));
            const std::string k1 = std::to_string(k);
            expectSame(down, imageOf(path("o/p-down" + k1 + ".png"), c), "down" + k1);
            expectSame(up, imageOf(path("o/p-up" + k1 + ".png"), c), "up" + k1);
            level = std::move(down);
        }
        EXPECT_EQ("p-down1.png p-down2.png p-up1.png p-up2.png ", listing(path("o")));
        ASSERT_EQ(0, std::system(("rm -r '" + path("o") + "'").c_str()));
    }
}

TEST_F(Cli, DistanceIsTheChamferTransformOfTheThresholdedImage) {
    tool::writePng(path("d.png"), clitest::scene(29, 19, 1));
    const auto grey = greyOf(path("d.png"));
    struct Case {
        int mask;
        const char* norm;
        bool invert;
    };
    for (const Case c : {Case{3, "chess", false}, Case{3, "euclid", true}, Case{5, "city", false}, Case{5, "euclid", false}}) {
        const std::string o = path(std::string("o") + char('0' + c.mask) + c.norm);
        const auto r = run("distance --raw --threshold 150 --mask " + std::to_string(c.mask) + " --norm " + c.norm +
                           (c.invert ? " --invert '" : " '") + path("d.png") + "' -o '" + o + "'");
        ASSERT_EQ(0, r.status) << r.err;
        zeqcv::Image<Zeq8u> binary(29, 19);
        for (int y = 0; y < 19; ++y)
            for (int x = 0; x < 29; ++x) binary.row(y)[x] = ((grey.row(y)[x] >= 150) != c.invert) ? 255 : 0;
        const int norm = c.norm[1] == 'u' ? 2 : c.norm[1] == 'i' ? 1 : 0;
        Zeq32f m[4] = {0, 0, 0, 0};
        ASSERT_EQ(zeqStsOk, zeqiGetDistanceTransformMask_32f(c.mask, norm, m));
        if (c.mask == 5 && norm == 1) m[2] = m[3];
        zeqcv::Image<Zeq32f> expected(29, 19);
        ASSERT_EQ(zeqStsOk, zeqcv::call(c.mask == 3 ? zeqiDistanceTransform_3x3_8u32f_C1R
                                                    : zeqiDistanceTransform_5x5_8u32f_C1R,
                                        binary, expected, zeqcv::roi, m));
        const auto got = clitest::readPfm(o + "/d-distance.pfm");
        ASSERT_TRUE(got) << c.norm;
        float top = 0;
        for (int y = 0; y < 19; ++y)
            for (int x = 0; x < 29; ++x) {
                ASSERT_EQ(expected.row(y)[x], got.row(y)[x]) << c.mask << c.norm << " at " << x << "," << y;
                top = std::max(top, got.row(y)[x]);
            }
        EXPECT_GT(top, 1.5f) << "the objects have an inside";
        const auto objects = greyOf(o + "/d-objects.png");
        for (int y = 0; y < 19; ++y) ASSERT_EQ(0, std::memcmp(binary.row(y), objects.row(y), 29));
    }
}

TEST_F(Cli, FillPrintsAndWritesTheLibrarysRegion) {
    // Blocks of equal values for the plain fill; a ramp with a wall at x = 12 for the gradient fill.
    tool::Picture blocks = clitest::scene(21, 14, 1), ramp = blocks, row = clitest::scene(17, 1, 1);
    for (int y = 0; y < 14; ++y)
        for (int x = 0; x < 21; ++x) {
            blocks.row8(y)[x] = uint8_t(40 * ((x / 5 + y / 4) % 3));
            ramp.row8(y)[x] = uint8_t(x == 12 ? 255 : 3 * x + 2 * y);
        }
    for (int x = 0; x < 17; ++x) row.row8(0)[x] = uint8_t(x < 5 ? 9 : 70);  // one row: a plain fill reads above it
    tool::writePng(path("blocks.png"), blocks);
    tool::writePng(path("ramp.png"), ramp);
    tool::writePng(path("row.png"), row);
    struct Case {
        const char* image;
        const char* options;
        bool gradient;
        int connectivity, lo, hi;
        ZeqiPoint seed;
    };
    const Case cases[] = {
        {"ramp.png", "--seed 10,7 --lo 3 --hi 2 --connectivity 8", true, 8, 3, 2, {10, 7}},
        {"ramp.png", "--seed 20,13 --lo 9 --value 7", true, 4, 9, 0, {20, 13}},
        {"blocks.png", "--seed 3,2 --value 250", false, 4, 0, 0, {3, 2}},
        {"row.png", "--seed 16,0 --connectivity 8", false, 8, 0, 0, {16, 0}},
    };
    for (const Case& c : cases) {
        const auto r = run(std::string("fill ") + c.options + " '" + path(c.image) + "' -o '" + path("o") + "'");
        ASSERT_EQ(0, r.status) << r.err;
        auto expected = greyOf(path(c.image));
        const int value = std::strstr(c.options, "--value") ? std::atoi(std::strstr(c.options, "--value") + 8) : 255;
        zeqcv::Buffer<Zeq8u> buf;
        ZeqiConnectedComp region;
        if (c.gradient) {
            ASSERT_EQ(zeqStsOk, buf.sized(zeqiFloodFillGetSize_Grad, expected.size()));
            ASSERT_EQ(zeqStsOk, zeqcv::call(c.connectivity == 8 ? zeqiFloodFill_Grad8Con_8u_C1IR
                                                                : zeqiFloodFill_Grad4Con_8u_C1IR,
                                            expected, zeqcv::roi, c.seed, value, c.lo, c.hi, &region, buf.data()));
        } else {
            // With one row above (never the seed's value) so that a one-row image reads it safely.
            zeqcv::Image<Zeq8u> framed(expected.width(), expected.height() + 1);
            const auto inside = framed.view().sub({0, 1, expected.width(), expected.height()});
            std::fill(framed.row(0), framed.row(0) + expected.width(), Zeq8u(expected.row(c.seed.y)[c.seed.x] + 1));
            ASSERT_EQ(zeqStsOk, zeqcv::call(zeqiCopy_8u_C1R, expected, inside, zeqcv::roi));
            ASSERT_EQ(zeqStsOk, buf.sized(zeqiFloodFillGetSize, expected.size()));
            ASSERT_EQ(zeqStsOk, zeqcv::call(c.connectivity == 8 ? zeqiFloodFill_8Con_8u_C1IR : zeqiFloodFill_4Con_8u_C1IR,
                                            inside, zeqcv::roi, c.seed, value, &region, buf.data()));
            ASSERT_EQ(zeqStsOk, zeqcv::call(zeqiCopy_8u_C1R, inside, expected, zeqcv::roi));
        }
        expectSame(expected, greyOf(path("o/") + tool::stem(c.image) + "-fill.png"), c.options);
        char line[160];
        std::snprintf(line, sizeof line, "area %.0f, bounding box x %d, y %d, %d x %d", region.area, region.rect.x,
                      region.rect.y, region.rect.width, region.rect.height);
        EXPECT_NE(std::string::npos, r.out.find(line)) << c.options << ": " << r.out << " vs " << line;
        EXPECT_GT(region.area, 1) << c.options;
    }
}

TEST_F(Cli, MorphIsTheStripMorphologyOfTheState) {
    using Strip = ZeqStatus (*)(const Zeq8u*, int, Zeq8u*, int, ZeqiSize*, ZeqiMorphState*, int);
    struct Case {
        const char* options;
        int channels, kind;
        ZeqiSize mask;
        Strip first, second;  // second: null for one step
    };
    const Case cases[] = {
        {"--op dilate --size 3x5", 1, 0, {3, 5}, zeqiDilateStrip_Rect_8u_C1R, nullptr},
        {"--op dilate --size 3x5 --minmax", 1, 0, {3, 5}, zeqiDilateStrip_Rect_8u_C1R, nullptr},
        {"--op erode --shape rect --size 4 --minmax", 3, 0, {4, 4}, zeqiErodeStrip_Rect_8u_C3R, nullptr},
        {"--op open --shape cross --size 5", 3, 1, {5, 5}, zeqiErodeStrip_Cross_8u_C3R, zeqiDilateStrip_Cross_8u_C3R},
        {"--op close --shape ellipse --size 7x5", 1, 2, {7, 5}, zeqiDilateStrip_Ellipse_8u_C1R,
         zeqiErodeStrip_Ellipse_8u_C1R},
    };
    for (const Case& c : cases) {
        tool::writePng(path("m.png"), clitest::scene(26, 17, c.channels));
        const auto r = run(std::string("morph ") + c.options + " '" + path("m.png") + "' -o '" + path("o") + "'");
        ASSERT_EQ(0, r.status) << r.err;
        auto expected = imageOf(path("m.png"), c.channels);
        for (Strip f : {c.first, c.second}) {
            if (!f) continue;
            zeqcv::MorphState state;
            ASSERT_EQ(zeqStsOk, state.init(zeqiMorphologyInitAlloc, 26, int(zeq8u), c.channels, c.mask,
                                           ZeqiPoint{c.mask.width / 2, c.mask.height / 2}, c.kind, nullptr));
            zeqcv::Image<Zeq8u> out(26, 17, c.channels);
            ZeqiSize rows = {26, 17};
            ASSERT_EQ(zeqStsOk, zeqcv::call(f, expected, out, &rows, state.get(), 0));
            expected = std::move(out);
        }
        const std::string op = std::strstr(c.options, "--op ") + 5;
        expectSame(expected, imageOf(path("o/m-") + op.substr(0, op.find(' ')) + ".png", c.channels), c.options);
    }
}

TEST_F(Cli, MotionHistoryOfFramesIsTheLibrarysUpdate) {
    std::vector<tool::Picture> frames;
    std::string names;
    for (int i = 0; i < 5; ++i) {
        frames.push_back(clitest::scene(19, 12, 1));
        for (int y = 2; y < 7; ++y)  // a bright bar moving right, 3 pixels a frame
            for (int x = 3 * i; x < 3 * i + 4; ++x) frames.back().row8(y)[x] = 255;
        tool::writePng(path("f" + std::to_string(i) + ".png"), frames.back());
        names += " '" + path("f" + std::to_string(i) + ".png") + "'";
    }
    const auto r = run("motion --raw --threshold 40 --duration 2.5" + names + " -o '" + path("o") + "'");
    ASSERT_EQ(0, r.status) << r.err;
    zeqcv::Image<Zeq32f> mhi(19, 12);
    zeqcv::Image<Zeq8u> silhouette(19, 12);
    ASSERT_EQ(zeqStsOk, zeqcv::call(zeqiSet_32f_C1R, 0.0f, mhi, zeqcv::roi));
    for (int i = 1; i < 5; ++i) {
        const auto a = greyOf(path("f" + std::to_string(i - 1) + ".png")), b = greyOf(path("f" + std::to_string(i) + ".png"));
        for (int y = 0; y < 12; ++y)
            for (int x = 0; x < 19; ++x) silhouette.row(y)[x] = std::abs(a.row(y)[x] - b.row(y)[x]) > 40 ? 1 : 0;
        ASSERT_EQ(zeqStsOk, zeqcv::call(zeqiUpdateMotionHistory_8u32f_C1IR, silhouette, mhi, zeqcv::roi, float(i), 2.5f));
    }
    const auto got = clitest::readPfm(path("o/motion-mhi.pfm"));
    ASSERT_TRUE(got);
    std::set<float> seen;
    for (int y = 0; y < 12; ++y)
        for (int x = 0; x < 19; ++x) {
            ASSERT_EQ(mhi.row(y)[x], got.row(y)[x]) << x << "," << y;
            seen.insert(got.row(y)[x]);
        }
    EXPECT_EQ(std::set<float>({0, 2, 3, 4}), seen) << "the mark of frame 1 is older than 4 - 2.5";
}

TEST_F(Cli, SampleLinePrintsTheLibrarysSamples) {
    tool::writePng(path("s.png"), clitest::scene(23, 15, 3));
    struct Case {
        ZeqiPoint from, to;
        bool rgb, csv;
    };
    for (const Case c : {Case{{1, 13}, {21, 2}, false, false}, Case{{22, 0}, {0, 14}, true, true},
                         Case{{5, 5}, {5, 5}, false, true}, Case{{7, 14}, {7, 0}, true, false}}) {
        const std::string pts = "--from " + std::to_string(c.from.x) + "," + std::to_string(c.from.y) + " --to " +
                                std::to_string(c.to.x) + "," + std::to_string(c.to.y);
        const auto r = run("sample-line " + pts + (c.rgb ? " --rgb" : "") + (c.csv ? " --csv" : "") + " '" +
                           path("s.png") + "' -o '" + path("o") + "'");
        ASSERT_EQ(0, r.status) << r.err;
        const int ch = c.rgb ? 3 : 1;
        const auto image = imageOf(path("s.png"), ch);
        const int n = std::max(std::abs(c.to.x - c.from.x), std::abs(c.to.y - c.from.y)) + 1;
        std::vector<Zeq8u> values(size_t(n * ch));
        ASSERT_EQ(zeqStsOk, zeqcv::call(ch == 3 ? zeqiSampleLine_8u_C3R : zeqiSampleLine_8u_C1R, image, zeqcv::roi,
                                        values.data(), c.from, c.to));
        // The rows after the header: x y and the values; the positions hold those values.
        std::istringstream in(c.csv ? clitest::slurp(path("o/s-line.csv")) : r.out.substr(r.out.find('\n') + 1));
        std::string header;
        std::getline(in, header);
        std::replace(header.begin(), header.end(), ',', ' ');
        EXPECT_EQ(c.rgb ? "x y r g b" : "x y value", header);
        for (int i = 0; i < n; ++i) {
            std::string line;
            ASSERT_TRUE(std::getline(in, line)) << pts << ": " << i;
            std::replace(line.begin(), line.end(), ',', ' ');
            std::istringstream words(line);
            int x, y, v[3];
            words >> x >> y;
            for (int k = 0; k < ch; ++k) words >> v[k];
            for (int k = 0; k < ch; ++k) {
                EXPECT_EQ(values[size_t(i * ch + k)], v[k]) << pts << ": " << line;
                EXPECT_EQ(image.row(y)[x * ch + k], v[k]) << pts << ": " << line;
            }
        }
        EXPECT_EQ(c.csv ? "s-line.csv " : "", listing(path("o")));
        ASSERT_EQ(0, std::system(("rm -rf '" + path("o") + "'").c_str()));
    }
}

TEST_F(Cli, MatchWritesTheScoreMapAndPrintsItsBestWindows) {
    using Match = ZeqStatus (*)(const Zeq8u*, int, ZeqiSize, const Zeq8u*, int, ZeqiSize, Zeq32f*, int);
    tool::Picture image = clitest::scene(40, 27, 1), tpl = clitest::scene(7, 5, 1);
    for (int y = 0; y < 5; ++y)
        for (int x = 0; x < 7; ++x) tpl.row8(y)[x] = image.row8(15 + y)[22 + x];  // the best window is at 22,15
    tool::writePng(path("i.png"), image);
    tool::writePng(path("t.png"), tpl);
    const struct {
        const char* method;
        Match function;
        bool low;
    } cases[] = {{"coeff-normed", zeqiMatchTemplate_CoeffNormed_8u32f_C1R, false},
                 {"sqdiff", zeqiMatchTemplate_SqDiff_8u32f_C1R, true},
                 {"corr", zeqiMatchTemplate_Corr_8u32f_C1R, false}};
    for (const auto& c : cases) {
        const auto r = run(std::string("match --raw --best 2 --method ") + c.method + " --template '" + path("t.png") +
                           "' '" + path("i.png") + "' -o '" + path(c.method) + "'");
        ASSERT_EQ(0, r.status) << r.err;
        const auto gi = greyOf(path("i.png")), gt = greyOf(path("t.png"));
        zeqcv::Image<Zeq32f> expected(34, 23);
        ASSERT_EQ(zeqStsOk, zeqcv::call(c.function, gi, gi.size(), gt, gt.size(), expected));
        const auto got = clitest::readPfm(path(c.method) + "/i-match.pfm");
        ASSERT_TRUE(got && got.width() == 34 && got.height() == 23) << c.method;
        Zeq32f best = expected.row(0)[0];
        ZeqiPoint at = {0, 0};
        for (int y = 0; y < 23; ++y)
            for (int x = 0; x < 34; ++x) {
                ASSERT_EQ(expected.row(y)[x], got.row(y)[x]) << c.method << " at " << x << "," << y;
                if (c.low ? expected.row(y)[x] < best : expected.row(y)[x] > best) best = expected.row(y)[x], at = {x, y};
            }
        char line[96];
        std::snprintf(line, sizeof line, "best 1 at %d,%d (centre %d,%d) score %.9g", at.x, at.y, at.x + 3, at.y + 2,
                      double(best));
        EXPECT_NE(std::string::npos, r.out.find(line)) << r.out << " lacks " << line;
        EXPECT_NE(std::string::npos, r.out.find("best 2 at")) << r.out;
        if (c.function != zeqiMatchTemplate_Corr_8u32f_C1R) {
            EXPECT_TRUE(at.x == 22 && at.y == 15) << c.method;
        }
    }
}

TEST_F(Cli, DemoWritesEveryResultAndTheOverview) {
    clitest::writeJpeg(path("photo.jpg"), clitest::scene(90, 70, 3));
    for (const std::string& input : {std::string(), " --input '" + path("photo.jpg") + "'"}) {
        const auto r = run("demo --out '" + path("demo") + "'" + input);
        ASSERT_EQ(0, r.status) << r.err;
        EXPECT_NE(std::string::npos, r.out.find("overview.png")) << r.out;
        for (const char* f : {"overview.png", "edges.png", "spectrum.png", "absdiff.png", "minmax.png", "direction.png",
                              "corners-marked.png", "laplace5.png", "pyramid-down4.png", "fill.png", "close-ellipse9.png", "line.png", "motion-mhi.png"})
            EXPECT_NO_THROW(tool::readPicture(path("demo/") + f)) << f;
        for (const auto& name : names(path("demo"))) EXPECT_NE('.', name[0]) << "a temporary file stayed: " << name;
    }
    for (int side : {1, 2}) {  // steps that need more pixels are skipped
        tool::writePng(path("tiny.png"), clitest::scene(side, side, 3));
        const auto r = run("demo --input '" + path("tiny.png") + "' --out '" + path("tiny") + "'");
        EXPECT_EQ(0, r.status) << side << ": " << r.err;
    }
}

TEST_F(Cli, VersionAndHelp) {
    const auto v = run("version");
    EXPECT_EQ(0, v.status);
    EXPECT_NE(std::string::npos, v.out.find("libzeqcvw7.so v4.1")) << v.out;
    const auto h = run("--help");
    EXPECT_EQ(0, h.status);
    for (const char* c : {"demo", "diff", "accumulate", "stats", "gradient", "edges", "spectrum", "corners", "filter", "pyramid", "distance",
                          "fill", "morph", "motion", "sample-line", "match", "version"})
        EXPECT_NE(std::string::npos, h.out.find(std::string("\n  zeqcv ") + c)) << c << " has no example";
}

}  // namespace
