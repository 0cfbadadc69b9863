// Bad input: a clear message naming the cause, a non-zero exit, and no output
// file (not even a temporary one) left behind.
#include "clitest.h"

#include <zlib.h>

namespace {

using clitest::Cli;

void writeBytes(const std::string& path, const std::string& bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
}

// A PNG built chunk by chunk, for headers the writers would not produce.
std::string pngChunk(const std::string& type, const std::string& data) {
    auto be32 = [](uint32_t v) {
        return std::string{char(v >> 24), char(v >> 16), char(v >> 8), char(v)};
    };
    const std::string body = type + data;
    return be32(uint32_t(data.size())) + body +
           be32(uint32_t(crc32(0, reinterpret_cast<const Bytef*>(body.data()), uInt(body.size()))));
}

std::string rawPng(uint32_t w, uint32_t h, int depth, const std::string& rows) {
    auto be32 = [](uint32_t v) { return std::string{char(v >> 24), char(v >> 16), char(v >> 8), char(v)}; };
    std::string idat(compressBound(uLong(rows.size())), '\0');
    uLongf n = uLongf(idat.size());
    compress(reinterpret_cast<Bytef*>(&idat[0]), &n, reinterpret_cast<const Bytef*>(rows.data()), uLong(rows.size()));
    idat.resize(n);
    const std::string ihdr = be32(w) + be32(h) + std::string{char(depth), 0, 0, 0, 0};
    return std::string("\x89PNG\r\n\x1a\n", 8) + pngChunk("IHDR", ihdr) + pngChunk("IDAT", idat) + pngChunk("IEND", "");
}

struct BadCase {
    const char* what;
    const char* args;      // {dir} stands for the test's folder; results go to {dir}/out
    int status;            // expected exit status
    const char* mentions;  // in the message
    const char* names;     // the file the message names, or null
};

TEST_F(Cli, BadInputIsRefusedCleanly) {
    const tool::Picture good = clitest::scene(12, 9, 3);
    tool::writePng(path("good.png"), good);
    clitest::writeJpeg(path("good.jpg"), good);
    const std::string png = clitest::slurp(path("good.png")), jpg = clitest::slurp(path("good.jpg"));
    writeBytes(path("truncated.png"), png.substr(0, png.size() / 2));
    writeBytes(path("truncated.jpg"), jpg.substr(0, jpg.size() / 2));
    std::string corrupt = jpg;
    for (size_t i = corrupt.size() / 2; i < corrupt.size() / 2 + 40; ++i) corrupt[i] = char(i * 37);
    writeBytes(path("corrupt.jpg"), corrupt);
    writeBytes(path("depth4.png"), rawPng(4, 2, 4, std::string("\0\x12\x34\0\x56\x78", 6)));
    writeBytes(path("huge.png"), rawPng(600000000, 1, 8, std::string(64, '\0')));
    writeBytes(path("text.png"), "not an image\n");
    writeBytes(path("empty.jpg"), "");
    writeBytes(path("file"), "x");
    tool::writePng(path("small.png"), clitest::scene(3, 3, 1));
    ASSERT_EQ(0, std::system(("mkdir '" + path("nothing") + "'").c_str()));

    const BadCase cases[] = {
        {"missing file", "edges {dir}/missing.png -o {dir}/out", 1, "No such file", "missing.png"},
        {"truncated PNG", "edges {dir}/truncated.png -o {dir}/out", 1, "truncated.png: ", nullptr},
        {"truncated JPEG", "gradient {dir}/truncated.jpg -o {dir}/out", 1, "truncated.jpg: ", nullptr},
        {"corrupt JPEG", "spectrum {dir}/corrupt.jpg -o {dir}/out", 1, "corrupt.jpg: ", nullptr},
        {"unsupported bit depth", "edges {dir}/depth4.png -o {dir}/out", 1, "unsupported bit depth 4", "depth4.png"},
        {"size beyond int steps", "edges {dir}/huge.png -o {dir}/out", 1, "600000000 x 1 is too large", "huge.png"},
        {"not an image", "stats {dir}/text.png", 1, "not a PNG or JPEG", "text.png"},
        {"empty file", "demo --input {dir}/empty.jpg -o {dir}/out", 1, "empty", "empty.jpg"},
        {"empty folder", "edges {dir}/nothing -o {dir}/out", 1, "no PNG or JPEG images", "nothing"},
        {"unwritable output folder", "edges {dir}/good.png --out {dir}/file/sub", 1, "file is not a folder", "file/sub"},
        {"unknown option", "edges --bogus {dir}/good.png -o {dir}/out", 2, "unrecognized option '--bogus'", nullptr},
        {"not a number", "edges --low abc {dir}/good.png -o {dir}/out", 1, "--low: 'abc' is not a number", nullptr},
        {"the library refuses", "edges --low 10 --high 5 {dir}/good.png -o {dir}/out", 1, "zeqStsBadArg", "good.png"},
        {"mask of another size", "diff --mask {dir}/small.png {dir}/good.png {dir}/good.jpg -o {dir}/out", 1,
         "the mask is 3 x 3", "small.png"},
        {"no such aperture", "filter --size 4 {dir}/good.png -o {dir}/out", 1, "zeqStsSize", "good.png"},
        {"no pyramid levels", "pyramid --levels 0 {dir}/good.png -o {dir}/out", 1, "--levels: 0 is not between", nullptr},
        {"no such chamfer mask", "distance --mask 4 {dir}/good.png -o {dir}/out", 1, "--mask: 4 is neither", nullptr},
        {"nothing to measure to", "distance --threshold 1 {dir}/good.png -o {dir}/out", 1, "no pixel outside", "good.png"},
        {"fill without a seed", "fill {dir}/good.png -o {dir}/out", 1, "--seed X,Y is required", nullptr},
        {"seed not a point", "fill --seed 1x2 {dir}/good.png -o {dir}/out", 1, "'1x2' is not a point", nullptr},
        {"seed outside", "fill --seed 12,0 {dir}/good.png -o {dir}/out", 1, "zeqStsOutOfRange", "good.png"},
        {"unknown shape", "morph --shape star {dir}/good.png -o {dir}/out", 1, "'star' is not one of rect", nullptr},
        {"min/max of a cross", "morph --minmax --shape cross {dir}/good.png -o {dir}/out", 1, "rect only", nullptr},
        {"frames of two sizes", "motion {dir}/good.png {dir}/small.png -o {dir}/out", 1, "is 3 x 3 but", "small.png"},
        {"one frame", "motion {dir}/good.png -o {dir}/out", 1, "at least two frames", nullptr},
        {"line leaves the image", "sample-line --from 0,0 --to 12,3 --csv {dir}/good.png -o {dir}/out", 1,
         "zeqStsOutOfRange", "good.png"},
        {"template larger", "match --template {dir}/good.png {dir}/small.png -o {dir}/out", 1, "larger than the image",
         "small.png"},
        {"unknown method", "match --method best --template {dir}/small.png {dir}/good.png -o {dir}/out", 1,
         "'best' is not one of", nullptr},
    };
    for (const BadCase& c : cases) {
        std::string args = c.args;
        for (size_t at; (at = args.find("{dir}")) != std::string::npos;) args.replace(at, 5, dir);
        const auto r = run(args);
        EXPECT_EQ(c.status, r.status) << c.what << ": " << r.err;
        EXPECT_NE(std::string::npos, r.err.find(c.mentions)) << c.what << ": " << r.err;
        if (c.names) {
            EXPECT_NE(std::string::npos, r.err.find(c.names)) << c.what << ": " << r.err;
        }
        EXPECT_EQ("", listing(path("out"))) << c.what;
        EXPECT_EQ("", listing(path("file/sub"))) << c.what;
        EXPECT_EQ(std::string::npos, r.err.find("Sanitizer")) << c.what;
    }
}

}  // namespace
