// Option parsing shared by every subcommand, inputs given as files or
// folders, and the batch loop with its progress line and summary.
#include "tool.h"

#include <getopt.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <climits>
#include <cstring>
#include <dirent.h>
#include <sys/stat.h>

namespace tool {

bool Args::has(const std::string& name) const {
    return std::any_of(values.begin(), values.end(), [&](const auto& v) { return v.first == name; });
}

std::string Args::text(const std::string& name, const std::string& fallback) const {
    for (auto it = values.rbegin(); it != values.rend(); ++it)
        if (it->first == name) return it->second;
    return fallback;
}

double Args::number(const std::string& name, double fallback) const {
    if (!has(name)) return fallback;
    const std::string t = text(name, "");
    char* end = nullptr;
    errno = 0;
    const double v = std::strtod(t.c_str(), &end);
    if (t.empty() || *end != '\0' || errno != 0 || !std::isfinite(v))
        fail("--" + name + ": '" + t + "' is not a number");
    return v;
}

int Args::integer(const std::string& name, int fallback) const {
    const double v = number(name, fallback);
    if (v != double(int(v))) fail("--" + name + ": '" + text(name, "") + "' is not a whole number");
    return int(v);
}

ZeqiPoint Args::point(const std::string& name, ZeqiPoint fallback) const {
    if (!has(name)) return fallback;
    const std::string t = text(name, "");
    long x = 0, y = 0;
    int used = 0;
    if (std::sscanf(t.c_str(), "%ld,%ld%n", &x, &y, &used) != 2 || size_t(used) != t.size() || x < INT_MIN ||
        x > INT_MAX || y < INT_MIN || y > INT_MAX)
        fail("--" + name + ": '" + t + "' is not a point X,Y");
    return {int(x), int(y)};
}

std::string Args::choice(const std::string& name, const std::vector<std::string>& choices) const {
    const std::string t = text(name, choices.front());
    if (std::find(choices.begin(), choices.end(), t) != choices.end()) return t;
    std::string all;
    for (const std::string& c : choices) all += (all.empty() ? "" : ", ") + c;
    fail("--" + name + ": '" + t + "' is not one of " + all);
}

Args parseArgs(int argc, char** argv, const char* usage, const std::vector<Option>& own, bool takesOut,
               bool takesRaw) {
    Args args;
    args.command = std::string("zeqcv ") + argv[0];
    std::vector<option> table;
    table.push_back({"help", no_argument, nullptr, 'h'});
    if (takesOut) table.push_back({"out", required_argument, nullptr, 'o'});
    if (takesRaw) table.push_back({"raw", optional_argument, nullptr, 'r'});
    for (size_t i = 0; i < own.size(); ++i)
        table.push_back({own[i].name, own[i].hasValue ? required_argument : no_argument, nullptr, int(1000 + i)});
    table.push_back({nullptr, 0, nullptr, 0});

    auto printUsage = [&](FILE* to) {
        std::fprintf(to, "usage: %s %s\n", args.command.c_str(), usage);
        if (takesOut) std::fprintf(to, "  -o, --out DIR       write results into DIR (created if missing)\n");
        if (takesRaw)
            std::fprintf(to, "      --raw[=pfm|png16] float results as PFM (exact) or 16-bit PNG, not 8-bit views\n");
        for (const Option& o : own) {
            std::string lhs = std::string("--") + o.name + (o.hasValue ? " VALUE" : "");
            std::fprintf(to, "      %-18s %s\n", lhs.c_str(), o.help);
        }
        std::fprintf(to, "  -h, --help          this text\n");
    };

    // getopt names the program in its messages: "zeqcv edges: unrecognized option".
    std::string name = args.command;
    argv[0] = name.data();
    optind = 1;
    opterr = 1;
    const std::string shortOpts = takesOut ? "ho:" : "h";
    for (;;) {
        int index = 0;
        const int c = getopt_long(argc, argv, shortOpts.c_str(), table.data(), &index);
        if (c == -1) break;
        if (c == 'h') {
            printUsage(stdout);
            std::exit(0);
        } else if (c == 'o') {
            args.outDir = optarg;
            args.outGiven = true;
        } else if (c == 'r') {
            const std::string mode = optarg ? optarg : "pfm";
            if (mode == "pfm") args.raw = Raw::Pfm;
            else if (mode == "png16") args.raw = Raw::Png16;
            else {
                std::fprintf(stderr, "%s: --raw takes pfm or png16, not '%s'\n", args.command.c_str(), mode.c_str());
                std::exit(2);
            }
        } else if (c >= 1000) {
            const Option& o = own[size_t(c - 1000)];
            args.values.emplace_back(o.name, optarg ? optarg : "");
        } else {  // getopt has printed what was wrong
            std::fprintf(stderr, "Try '%s --help'.\n", args.command.c_str());
            std::exit(2);
        }
    }
    for (int i = optind; i < argc; ++i) args.inputs.emplace_back(argv[i]);
    return args;
}

namespace {

bool isImageName(const std::string& name) {
    const size_t dot = name.rfind('.');
    if (dot == std::string::npos || name[0] == '.') return false;
    std::string ext = name.substr(dot + 1);
    std::transform(ext.begin(), ext.end(), ext.begin(), [](unsigned char c) { return char(std::tolower(c)); });
    return ext == "png" || ext == "jpg" || ext == "jpeg";
}

}  // namespace

std::vector<std::string> expandInputs(const std::vector<std::string>& args) {
    std::vector<std::string> files;
    for (const std::string& arg : args) {
        struct stat st;
        if (stat(arg.c_str(), &st) != 0 || !S_ISDIR(st.st_mode)) {
            files.push_back(arg);  // a missing file is reported when it is read
            continue;
        }
        DIR* dir = opendir(arg.c_str());
        if (!dir) fail(arg + ": cannot open the folder: " + std::strerror(errno));
        std::vector<std::string> found;
        while (const dirent* e = readdir(dir))
            if (isImageName(e->d_name)) found.push_back(joinPath(arg, e->d_name));
        closedir(dir);
        if (found.empty()) fail(arg + ": no PNG or JPEG images in this folder");
        std::sort(found.begin(), found.end());
        files.insert(files.end(), found.begin(), found.end());
    }
    return files;
}

double timeMs(const std::function<void()>& f) {
    const auto t0 = std::chrono::steady_clock::now();
    f();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - t0).count();
}

int runBatch(const Args& args, const std::function<double(const std::string& path)>& each) {
    const std::vector<std::string> inputs = expandInputs(args.inputs);
    if (inputs.empty()) fail("no input images given (try --help)");
    if (!args.outDir.empty()) prepareOutputDir(args.outDir);
    int failed = 0;
    double total = 0;
    for (size_t i = 0; i < inputs.size(); ++i) {
        const std::string& path = inputs[i];
        try {
            const double ms = each(path);
            total += ms;
            std::fprintf(stderr, "[%zu/%zu] %s %.1f ms\n", i + 1, inputs.size(), path.c_str(), ms);
        } catch (const zeqcv::Error& e) {
            std::fprintf(stderr, "[%zu/%zu] %s: the library refused: %s\n", i + 1, inputs.size(), path.c_str(), e.what());
            ++failed;
        } catch (const Failure& e) {
            std::fprintf(stderr, "[%zu/%zu] %s\n", i + 1, inputs.size(), e.what());
            ++failed;
        }
    }
    std::fprintf(stderr, "%s: %zu image%s, %zu done in %.1f ms of library time", args.command.c_str(), inputs.size(),
                 inputs.size() == 1 ? "" : "s", inputs.size() - size_t(failed), total);
    if (failed) std::fprintf(stderr, ", %d failed", failed);
    std::fprintf(stderr, "\n");
    return failed ? 1 : 0;
}

}  // namespace tool
