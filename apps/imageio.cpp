// Image files: PNG and JPEG in, PNG and PFM out. Every output is written under
// a temporary name in its folder and renamed only once complete, so a failure
// never leaves a half-written file behind.
#include "tool.h"

#include <jpeglib.h>
#include <png.h>

#include <cerrno>
#include <climits>
#include <cmath>
#include <csetjmp>
#include <cstdio>
#include <cstring>
#include <sys/stat.h>
#include <unistd.h>

namespace tool {

void fail(const std::string& message) { throw Failure(message); }

namespace {

std::string systemError() { return std::strerror(errno); }

// A FILE under a temporary name that becomes `path` on commit() and vanishes otherwise.
class AtomicFile {
public:
    explicit AtomicFile(std::string path) : path_(std::move(path)) {
        const size_t slash = path_.rfind('/');
        const std::string dir = slash == std::string::npos ? "" : path_.substr(0, slash + 1);
        const std::string name = slash == std::string::npos ? path_ : path_.substr(slash + 1);
        temp_ = dir + "." + name + ".tmp" + std::to_string(getpid());
        file_ = std::fopen(temp_.c_str(), "wb");
        if (!file_) fail(path_ + ": cannot write: " + systemError());
    }
    AtomicFile(const AtomicFile&) = delete;
    AtomicFile& operator=(const AtomicFile&) = delete;
    ~AtomicFile() {
        if (file_) std::fclose(file_);
        if (!committed_) std::remove(temp_.c_str());
    }
    FILE* file() const { return file_; }
    const std::string& path() const { return path_; }
    void commit() {
        const bool written = std::fflush(file_) == 0 && !std::ferror(file_);
        const int closed = std::fclose(file_);
        file_ = nullptr;
        if (!written || closed != 0) fail(path_ + ": cannot write: " + systemError());
        if (std::rename(temp_.c_str(), path_.c_str()) != 0) fail(path_ + ": cannot write: " + systemError());
        committed_ = true;
    }

private:
    std::string path_, temp_;
    FILE* file_ = nullptr;
    bool committed_ = false;
};

class InputFile {
public:
    explicit InputFile(const std::string& path) : file_(std::fopen(path.c_str(), "rb")) {
        struct stat st;
        if (!file_) fail(path + ": cannot open: " + systemError());
        if (fstat(fileno(file_), &st) == 0 && S_ISDIR(st.st_mode)) fail(path + ": is a folder, not an image");
    }
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;
    ~InputFile() {
        if (file_) std::fclose(file_);
    }
    FILE* get() const { return file_; }

private:
    FILE* file_;
};

// ---- PNG ----
// libpng reports errors by longjmp to the setjmp of the function that called
// it; these functions keep no C++ objects with destructors between the two.

struct PngError {
    char message[200] = "";
};

void pngErrorHandler(png_structp png, png_const_charp message) {
    auto* err = static_cast<PngError*>(png_get_error_ptr(png));
    std::snprintf(err->message, sizeof err->message, "corrupt or truncated PNG (%s)", message);
    png_longjmp(png, 1);
}
void pngWarningHandler(png_structp, png_const_charp) {}

// `rows` is the caller's, so nothing here needs unwinding after a longjmp.
bool readPngFile(FILE* file, Picture* out, std::vector<png_bytep>* rows, PngError* err) {
    png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, err, pngErrorHandler, pngWarningHandler);
    if (!png) return std::snprintf(err->message, sizeof err->message, "out of memory"), false;
    png_infop info = png_create_info_struct(png);
    if (!info || setjmp(png_jmpbuf(png))) {
        png_destroy_read_struct(&png, info ? &info : nullptr, nullptr);
        if (!err->message[0]) std::snprintf(err->message, sizeof err->message, "out of memory");
        return false;
    }
    // Sizes are checked against the library's limits below, not libpng's defaults.
    png_set_user_limits(png, 0x7fffffff, 0x7fffffff);
    png_init_io(png, file);
    png_read_info(png, info);
    const png_uint_32 width = png_get_image_width(png, info), height = png_get_image_height(png, info);
    const int depth = png_get_bit_depth(png, info), type = png_get_color_type(png, info);
    if (type != PNG_COLOR_TYPE_PALETTE && depth < 8) {
        std::snprintf(err->message, sizeof err->message,
                      "unsupported bit depth %d (8- and 16-bit images are read)", depth);
        png_destroy_read_struct(&png, &info, nullptr);
        return false;
    }
    {  // scoped: no C++ object may be alive when libpng jumps back
        const std::string tooLarge = sizeProblem(width, height);
        if (!tooLarge.empty()) {
            std::snprintf(err->message, sizeof err->message, "%s", tooLarge.c_str());
            png_destroy_read_struct(&png, &info, nullptr);
            return false;
        }
    }
    if (type == PNG_COLOR_TYPE_PALETTE) png_set_palette_to_rgb(png);
    if (type == PNG_COLOR_TYPE_GRAY_ALPHA) png_set_strip_alpha(png);
    if (depth == 16) png_set_swap(png);  // to host order (little-endian x86)
    png_read_update_info(png, info);
    out->width = int(width);
    out->height = int(height);
    out->channels = png_get_channels(png, info);
    out->depth = png_get_bit_depth(png, info);
    out->bytes.resize(out->rowBytes() * height);
    rows->resize(height);
    for (png_uint_32 y = 0; y < height; ++y) (*rows)[y] = out->row8(int(y));
    png_read_image(png, rows->data());
    png_read_end(png, nullptr);
    png_destroy_read_struct(&png, &info, nullptr);
    return true;
}

bool writePngFile(FILE* file, const Picture* picture, PngError* err) {
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, err, pngErrorHandler, pngWarningHandler);
    if (!png) return false;
    png_infop info = png_create_info_struct(png);
    if (!info || setjmp(png_jmpbuf(png))) {
        png_destroy_write_struct(&png, info ? &info : nullptr);
        return false;
    }
    static const int kTypes[] = {0, PNG_COLOR_TYPE_GRAY, PNG_COLOR_TYPE_GRAY_ALPHA, PNG_COLOR_TYPE_RGB,
                                 PNG_COLOR_TYPE_RGB_ALPHA};
    png_init_io(png, file);
    png_set_IHDR(png, info, png_uint_32(picture->width), png_uint_32(picture->height), picture->depth,
                 kTypes[picture->channels], PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_set_compression_level(png, 3);  // results are many and large; speed over the last percent
    png_write_info(png, info);
    if (picture->depth == 16) png_set_swap(png);
    for (int y = 0; y < picture->height; ++y) png_write_row(png, const_cast<png_bytep>(picture->row8(y)));
    png_write_end(png, nullptr);
    png_destroy_write_struct(&png, &info);
    return true;
}

// ---- JPEG ----

struct JpegError {
    jpeg_error_mgr mgr;
    jmp_buf jump;
    char message[JMSG_LENGTH_MAX + 40] = "";
};

void jpegErrorExit(j_common_ptr cinfo) {
    auto* err = reinterpret_cast<JpegError*>(cinfo->err);
    char text[JMSG_LENGTH_MAX];
    (*cinfo->err->format_message)(cinfo, text);
    std::snprintf(err->message, sizeof err->message, "corrupt or truncated JPEG (%s)", text);
    longjmp(err->jump, 1);
}
// A warning means corrupt or missing data (libjpeg would fill it with grey):
// refuse the image rather than show a made-up part.
void jpegWarning(j_common_ptr cinfo, int level) {
    if (level < 0) jpegErrorExit(cinfo);
}

bool readJpegFile(FILE* file, Picture* out, JpegError* err) {
    jpeg_decompress_struct cinfo;
    cinfo.err = jpeg_std_error(&err->mgr);
    err->mgr.error_exit = jpegErrorExit;
    err->mgr.emit_message = jpegWarning;
    if (setjmp(err->jump)) {
        jpeg_destroy_decompress(&cinfo);
        return false;
    }
    jpeg_create_decompress(&cinfo);
    jpeg_stdio_src(&cinfo, file);
    jpeg_read_header(&cinfo, TRUE);
    if (cinfo.data_precision != 8) {
        std::snprintf(err->message, sizeof err->message, "unsupported bit depth %d (8-bit JPEG is read)",
                      cinfo.data_precision);
        jpeg_destroy_decompress(&cinfo);
        return false;
    }
    if (cinfo.jpeg_color_space == JCS_CMYK || cinfo.jpeg_color_space == JCS_YCCK) {
        std::snprintf(err->message, sizeof err->message, "CMYK JPEG is not supported (grey and colour are)");
        jpeg_destroy_decompress(&cinfo);
        return false;
    }
    {  // scoped: no C++ object may be alive when libjpeg jumps back
        const std::string tooLarge = sizeProblem(cinfo.image_width, cinfo.image_height);
        if (!tooLarge.empty()) {
            std::snprintf(err->message, sizeof err->message, "%s", tooLarge.c_str());
            jpeg_destroy_decompress(&cinfo);
            return false;
        }
    }
    cinfo.out_color_space = cinfo.jpeg_color_space == JCS_GRAYSCALE ? JCS_GRAYSCALE : JCS_RGB;
    jpeg_start_decompress(&cinfo);
    out->width = int(cinfo.output_width);
    out->height = int(cinfo.output_height);
    out->channels = cinfo.output_components;
    out->depth = 8;
    out->bytes.resize(out->rowBytes() * cinfo.output_height);
    while (cinfo.output_scanline < cinfo.output_height) {
        JSAMPROW row = out->row8(int(cinfo.output_scanline));
        jpeg_read_scanlines(&cinfo, &row, 1);
    }
    jpeg_finish_decompress(&cinfo);
    jpeg_destroy_decompress(&cinfo);
    return true;
}

}  // namespace

std::string sizeProblem(long long width, long long height) {
    // Results are held as 32-bit floats, spectra padded to powers of two: the
    // rows and whole planes must fit the int steps and lengths of the library.
    const std::string size = std::to_string(width) + " x " + std::to_string(height);
    if (width < 1 || height < 1) return "the image is empty (" + size + ")";
    if (width * 8 > INT_MAX || width * height * 16 > INT_MAX)
        return size + " is too large: its rows or planes of float pixels would not fit the library's int steps and sizes";
    return "";
}

Picture readPicture(const std::string& path) {
    InputFile file(path);
    unsigned char magic[8] = {0};
    const size_t got = std::fread(magic, 1, sizeof magic, file.get());
    std::rewind(file.get());
    Picture picture;
    if (got == 8 && png_sig_cmp(magic, 0, 8) == 0) {
        PngError err;
        std::vector<png_bytep> rows;
        if (!readPngFile(file.get(), &picture, &rows, &err)) fail(path + ": " + err.message);
    } else if (got >= 3 && magic[0] == 0xFF && magic[1] == 0xD8 && magic[2] == 0xFF) {
        JpegError err;
        if (!readJpegFile(file.get(), &picture, &err)) fail(path + ": " + err.message);
    } else {
        fail(path + (got == 0 ? ": the file is empty" : ": not a PNG or JPEG image"));
    }
    return picture;
}

void writePng(const std::string& path, const Picture& picture) {
    AtomicFile out(path);
    PngError err;
    if (!writePngFile(out.file(), &picture, &err)) fail(path + ": cannot write: " + err.message);
    out.commit();
}

void writePfm(const std::string& path, zeqcv::ImageView<const Zeq32f> image) {
    AtomicFile out(path);
    // Grey PFM: little-endian floats (negative scale), rows from the bottom up.
    std::fprintf(out.file(), "Pf\n%d %d\n-1.0\n", image.width(), image.height());
    for (int y = image.height() - 1; y >= 0; --y)
        std::fwrite(image.row(y), sizeof(Zeq32f), size_t(image.width()), out.file());
    out.commit();
}

void writeText(const std::string& path, const std::string& text) {
    AtomicFile out(path);
    std::fwrite(text.data(), 1, text.size(), out.file());
    out.commit();
}

void prepareOutputDir(const std::string& dir) {
    // mkdir -p, one level at a time.
    for (size_t pos = 1; pos <= dir.size(); ++pos) {
        if (pos != dir.size() && dir[pos] != '/') continue;
        const std::string part = dir.substr(0, pos);
        struct stat st;
        if (stat(part.c_str(), &st) == 0) {
            if (!S_ISDIR(st.st_mode)) fail("output folder " + dir + ": " + part + " is not a folder");
            continue;
        }
        if (mkdir(part.c_str(), 0777) != 0 && errno != EEXIST)
            fail("output folder " + dir + ": cannot create " + part + ": " + systemError());
    }
    const std::string probe = joinPath(dir, ".zeqcv-probe" + std::to_string(getpid()));
    FILE* f = std::fopen(probe.c_str(), "wb");
    if (!f) fail("output folder " + dir + ": cannot write there: " + systemError());
    std::fclose(f);
    std::remove(probe.c_str());
}

std::string joinPath(const std::string& dir, const std::string& name) {
    if (dir.empty() || dir == ".") return name;
    return dir.back() == '/' ? dir + name : dir + "/" + name;
}

std::string stem(const std::string& path) {
    const size_t slash = path.rfind('/');
    std::string name = slash == std::string::npos ? path : path.substr(slash + 1);
    const size_t dot = name.rfind('.');
    return dot == std::string::npos || dot == 0 ? name : name.substr(0, dot);
}

void saveGrey(const std::string& path, zeqcv::ImageView<const Zeq8u> image) { writePng(path, pictureOf(image)); }

std::string saveFloat(const std::string& pathNoExt, zeqcv::ImageView<const Zeq32f> image, Raw raw) {
    if (raw == Raw::Pfm) {
        writePfm(pathNoExt + ".pfm", image);
        return pathNoExt + ".pfm (32-bit floats as computed)";
    }
    float lo, hi;
    rangeOf(image, lo, hi);
    char mapping[160];
    if (raw == Raw::Png16) {
        // Integer results whose range fits 16 bits are stored exactly, offset by lo.
        bool integral = hi - lo <= 65535.0f;
        for (int y = 0; y < image.height() && integral; ++y)
            for (int x = 0; x < image.width() && integral; ++x) integral = image.at(x, y) == std::floor(image.at(x, y));
        const double scale = integral ? 1.0 : (hi > lo ? 65535.0 / (double(hi) - lo) : 0.0);
        Picture p;
        p.width = image.width();
        p.height = image.height();
        p.channels = 1;
        p.depth = 16;
        p.bytes.resize(p.rowBytes() * size_t(p.height));
        for (int y = 0; y < p.height; ++y) {
            uint16_t* row = reinterpret_cast<uint16_t*>(p.row8(y));
            for (int x = 0; x < p.width; ++x) {
                const double v = (double(image.at(x, y)) - lo) * scale + 0.5;
                row[x] = uint16_t(v < 0 ? 0 : v > 65535 ? 65535 : v);
            }
        }
        writePng(pathNoExt + ".png", p);
        std::snprintf(mapping, sizeof mapping, "16-bit = (value - %g) * %g", double(lo), scale);
    } else {
        writePng(pathNoExt + ".png", pictureOf(scaleTo8u(image, lo, hi).view()));
        std::snprintf(mapping, sizeof mapping, "8-bit = (value - %g) * %g", double(lo),
                      hi > lo ? 255.0 / (double(hi) - lo) : 0.0);
    }
    return pathNoExt + ".png (" + mapping + ")";
}

}  // namespace tool
