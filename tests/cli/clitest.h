// Support for the tool's tests: a fresh folder per test, the tool run with its
// exit status and both output streams, and images written the way users'
// files would be (PNG through the tool's own writer, JPEG through libjpeg).
#ifndef ZEQCV_CLITEST_H
#define ZEQCV_CLITEST_H

#include "tool.h"

#include <gtest/gtest.h>
#include <jpeglib.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

namespace clitest {

inline std::string slurp(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::stringstream s;
    s << in.rdbuf();
    return s.str();
}

struct Result {
    int status;
    std::string out, err;
};

// A folder of its own for each test, removed afterwards.
class Cli : public ::testing::Test {
protected:
    void SetUp() override {
        char tmpl[] = "/tmp/zeqcv-cli-XXXXXX";
        ASSERT_NE(nullptr, mkdtemp(tmpl));
        dir = tmpl;
    }
    void TearDown() override { std::system(("rm -rf '" + dir + "'").c_str()); }

    std::string path(const std::string& name) const { return dir + "/" + name; }

    // The tool with these arguments, or (tool = false) a shell command.
    Result run(const std::string& args, bool tool = true) const {
        const std::string cmd = "(" + (tool ? std::string(ZEQCV_TOOL) + " " : std::string()) + args + ") >'" +
                                path(".out") + "' 2>'" + path(".err") + "'";
        const int raw = std::system(cmd.c_str());
        Result r{WIFEXITED(raw) ? WEXITSTATUS(raw) : -1, slurp(path(".out")), slurp(path(".err"))};
        std::remove(path(".out").c_str());
        std::remove(path(".err").c_str());
        return r;
    }

    // Names in a folder (hidden ones included: temporary files must not stay).
    std::string listing(const std::string& sub) const {
        std::string all;
        for (const auto& name : names(sub)) all += name + " ";
        return all;
    }
    static std::vector<std::string> names(const std::string& folder);

    std::string dir;
};

inline std::vector<std::string> Cli::names(const std::string& folder) {
    std::vector<std::string> found;
    std::error_code missing;
    for (const auto& e : std::filesystem::directory_iterator(folder, missing)) found.push_back(e.path().filename());
    std::sort(found.begin(), found.end());
    return found;
}

// A test picture with edges, a gradient and some texture.
inline tool::Picture scene(int w, int h, int channels) {
    tool::Picture p;
    p.width = w, p.height = h, p.channels = channels, p.depth = 8;
    p.bytes.resize(p.rowBytes() * size_t(h));
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x)
            for (int c = 0; c < channels; ++c) {
                const bool inside = x > w / 4 && x < 3 * w / 4 && y > h / 3 && y < 2 * h / 3;
                const unsigned v = (inside ? 200u : 30u) + unsigned((x * 7 + y * 3 + c * 40 + (x * y) % 13) % 50);
                p.row8(y)[size_t(x) * channels + c] = uint8_t(v);
            }
    return p;
}

inline void writeJpeg(const std::string& path, const tool::Picture& p) {
    FILE* f = std::fopen(path.c_str(), "wb");
    ASSERT_NE(nullptr, f);
    jpeg_compress_struct c;
    jpeg_error_mgr err;
    c.err = jpeg_std_error(&err);
    jpeg_create_compress(&c);
    jpeg_stdio_dest(&c, f);
    c.image_width = JDIMENSION(p.width);
    c.image_height = JDIMENSION(p.height);
    c.input_components = p.channels;
    c.in_color_space = p.channels == 3 ? JCS_RGB : JCS_GRAYSCALE;
    jpeg_set_defaults(&c);
    jpeg_set_quality(&c, 90, TRUE);
    jpeg_start_compress(&c, TRUE);
    for (int y = 0; y < p.height; ++y) {
        JSAMPROW row = const_cast<JSAMPROW>(p.row8(y));
        jpeg_write_scanlines(&c, &row, 1);
    }
    jpeg_finish_compress(&c);
    jpeg_destroy_compress(&c);
    std::fclose(f);
}

// A grey PFM as the tool writes it (little-endian, bottom row first).
inline zeqcv::Image<Zeq32f> readPfm(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::string magic;
    int w = 0, h = 0;
    double scale = 0;
    in >> magic >> w >> h >> scale;
    in.get();
    zeqcv::Image<Zeq32f> img(w, h);
    EXPECT_TRUE(magic == "Pf" && scale < 0 && img) << path;
    for (int y = h - 1; y >= 0 && img; --y) in.read(reinterpret_cast<char*>(img.row(y)), std::streamsize(4) * w);
    return img;
}

}  // namespace clitest

#endif  // ZEQCV_CLITEST_H
