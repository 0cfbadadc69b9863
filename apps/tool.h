// Shared parts of the zeqcv command-line tool: images read from and written
// to files, grey conversion, scaling of results for viewing, option parsing,
// batches with a progress line, the demo's contact sheet, and the table of
// subcommands. Every subcommand lives in a cmd_<family>.cpp of its own.
#ifndef ZEQCV_TOOL_H
#define ZEQCV_TOOL_H

#include "zeqcv.hpp"

#include <cstdint>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

namespace tool {

// A problem with the user's input or output: the message names the file and
// the reason. Library refusals arrive as zeqcv::Error instead.
struct Failure : std::runtime_error {
    using std::runtime_error::runtime_error;
};
[[noreturn]] void fail(const std::string& message);

// ---- pictures as files hold them ----

// 8- or 16-bit samples (16-bit in host order), 1 (grey), 3 (RGB) or 4 (RGBA)
// interleaved channels, rows packed.
struct Picture {
    int width = 0, height = 0, channels = 0, depth = 8;
    std::vector<uint8_t> bytes;

    size_t rowBytes() const { return size_t(width) * channels * (depth / 8); }
    uint8_t* row8(int y) { return bytes.data() + size_t(y) * rowBytes(); }
    const uint8_t* row8(int y) const { return bytes.data() + size_t(y) * rowBytes(); }
    const uint16_t* row16(int y) const { return reinterpret_cast<const uint16_t*>(row8(y)); }
};

// Reads a PNG (8/16-bit grey, grey+alpha, RGB, RGBA, palette) or a JPEG;
// fails with a message naming the file for anything else, a truncated or
// corrupt file, or a size the library's int steps cannot hold.
Picture readPicture(const std::string& path);

// Why an image of this size cannot be processed (its float rows or planes
// would not fit the library's int steps and sizes), or "" when it can.
std::string sizeProblem(long long width, long long height);

// ---- outputs: written to a temporary name, renamed when complete ----

// Creates the folder if needed and proves it writable, or fails.
void prepareOutputDir(const std::string& dir);
std::string joinPath(const std::string& dir, const std::string& name);
// The file name without folder and extension ("a/b.c.png" -> "b.c").
std::string stem(const std::string& path);

void writePng(const std::string& path, const Picture& picture);
void writePfm(const std::string& path, zeqcv::ImageView<const Zeq32f> image);
void writeText(const std::string& path, const std::string& text);

// --raw: how float results are stored.
enum class Raw { None, Pfm, Png16 };

// Writes an 8-bit grey result.
void saveGrey(const std::string& path, zeqcv::ImageView<const Zeq8u> image);
// Writes a float result: as an 8-bit PNG scaled from its range, or raw. Returns
// the file written and the mapping used, for the user ("8-bit = (v + 4) * 2").
std::string saveFloat(const std::string& pathNoExt, zeqcv::ImageView<const Zeq32f> image, Raw raw);

// ---- pixels ----

// Grey = 0.299 R + 0.587 G + 0.114 B (ITU-R BT.601 luma weights), rounded;
// alpha is ignored. 16-bit input is reduced to 8 bits with rounding.
zeqcv::Image<Zeq8u> grey8(const Picture& picture);
// Grey at the file's depth, as float (0..255 or 0..65535).
zeqcv::Image<Zeq32f> greyFloat(const Picture& picture);
// 8-bit RGB (3 channels) of any picture; alpha dropped, grey repeated.
zeqcv::Image<Zeq8u> rgb8(const Picture& picture);
// Picture views of library images, for writing.
Picture pictureOf(zeqcv::ImageView<const Zeq8u> image, int channels = 1);
// An 8-bit view of a float image mapped linearly from [lo, hi] to [0, 255].
zeqcv::Image<Zeq8u> scaleTo8u(zeqcv::ImageView<const Zeq32f> image, float lo, float hi);
// The smallest and largest value of a float image (zeqiMinMaxIndx_32f_C1R).
void rangeOf(zeqcv::ImageView<const Zeq32f> image, float& lo, float& hi);
zeqcv::Image<Zeq32f> toFloat(zeqcv::ImageView<const Zeq16s> image);
// Owned image or a failure naming what could not be allocated.
template <class T>
zeqcv::Image<T> newImage(int width, int height, int channels = 1) {
    zeqcv::Image<T> image(width, height, channels);
    if (!image) fail("out of memory for a " + std::to_string(width) + " x " + std::to_string(height) + " image");
    return image;
}

// ---- options ----

// A subcommand's own option: long name, whether it takes a value, help text.
struct Option {
    const char* name;
    bool hasValue;
    const char* help;
};

// The command line of one subcommand after parsing: values of the options
// given (by long name), and the remaining arguments.
struct Args {
    std::string command;
    std::vector<std::string> inputs;
    std::string outDir = ".";  // empty: the command writes no files
    bool outGiven = false;
    Raw raw = Raw::None;
    std::vector<std::pair<std::string, std::string>> values;

    bool has(const std::string& name) const;
    std::string text(const std::string& name, const std::string& fallback) const;
    double number(const std::string& name, double fallback) const;
    int integer(const std::string& name, int fallback) const;
    // "X,Y" as a point (whole numbers).
    ZeqiPoint point(const std::string& name, ZeqiPoint fallback) const;
    // One of `choices`, or a failure listing them.
    std::string choice(const std::string& name, const std::vector<std::string>& choices) const;
};

// Parses with getopt_long: --out/-o DIR, --raw[=pfm|png16], --help/-h, and the
// subcommand's own options. Prints usage and exits for --help (status 0) and
// for an unknown option or a missing value (status 2).
Args parseArgs(int argc, char** argv, const char* usage, const std::vector<Option>& own, bool takesOut = true,
               bool takesRaw = false);

// ---- batches ----

// The input arguments expanded: folders give their PNG and JPEG files in name
// order; a folder with none fails.
std::vector<std::string> expandInputs(const std::vector<std::string>& args);

// Prepares the output folder (unless args.outDir is empty), then runs `each`
// on every input with a progress line on standard error,
// "[2/5] name.jpg 3.1 ms" (the time `each` reports), and a summary; a failure
// is reported and the batch goes on. Returns the exit status (1 if any failed).
int runBatch(const Args& args, const std::function<double(const std::string& path)>& each);

// Milliseconds taken by f().
double timeMs(const std::function<void()>& f);

// ---- drawing (the demo's contact sheet and scene) ----

struct Rgb {
    uint8_t r, g, b;
};
// An RGB picture of the given size filled with one colour.
Picture canvas(int width, int height, Rgb fill);
// Text in the built-in 5x7 font, `scale` pixels per font pixel; lower case is
// drawn as upper case. Returns the width drawn.
int drawText(Picture& rgb, int x, int y, const std::string& text, Rgb colour, int scale);
int textWidth(const std::string& text, int scale);
constexpr int kGlyphHeight = 7;
// A grey or RGB picture as RGB, resized (area average or nearest) to fit w x h.
Picture fitRgb(const Picture& picture, int w, int h);

// ---- the demo ----

// What every family's demo step gets: the scene (or the user's photograph),
// its grey form, a second frame moved a few pixels, and the means to time
// library calls, write results and add a labelled tile to the overview.
class Demo {
public:
    Picture colour;                   // 8-bit RGB
    zeqcv::Image<Zeq8u> grey;         // of colour
    std::vector<zeqcv::Image<Zeq8u>> frames;  // grey frames over time; frames[0] is `grey`
    std::string outDir;
    Raw raw = Raw::None;

    // Times f (library calls only, ideally) as one row of the step table; f
    // runs three times (the best time counts), so it must give the same
    // result each time.
    void time(const std::string& step, const std::string& calls, const std::function<void()>& f);
    // Writes a result file into the output folder (name without extension).
    void save(const std::string& name, zeqcv::ImageView<const Zeq8u> image);
    void save(const std::string& name, zeqcv::ImageView<const Zeq32f> image);
    void save(const std::string& name, const Picture& picture);
    // Adds a tile to the overview.
    void tile(const std::string& label, const Picture& picture);
    void tile(const std::string& label, zeqcv::ImageView<const Zeq8u> image);

    struct Row {
        std::string step, calls;
        double ms;
    };
    std::vector<Row> rows;
    std::vector<std::pair<std::string, Picture>> tiles;
    std::vector<std::string> written;
};

// ---- subcommands ----

struct Command {
    const char* name;
    const char* summary;
    const char* example;
    int (*run)(int argc, char** argv);
    void (*demo)(Demo& demo);  // the family's step in `zeqcv demo`, or null
};
const std::vector<Command>& commands();

}  // namespace tool

#endif  // ZEQCV_TOOL_H
