// Writes a seed corpus into the directory given: for each entry of the fuzz
// table (its first two bytes pick one, modulo the table's length, which is
// below 512) one input whose bytes give legal mid-range sizes, steps and
// parameters, so fuzzing starts from calls that succeed.
#include <cstdio>
#include <string>

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s DIR\n", argv[0]);
        return 2;
    }
    for (int entry = 0; entry < 512; ++entry) {
        const std::string path = std::string(argv[1]) + "/seed-" + std::to_string(entry);
        std::FILE* f = std::fopen(path.c_str(), "wb");
        if (!f) {
            std::perror(path.c_str());
            return 1;
        }
        std::fputc(entry & 255, f);
        std::fputc(entry >> 8, f);
        for (int i = 0; i < 4096; ++i) std::fputc(i < 16 ? 7 + 3 * i : (i * 37) & 255, f);
        std::fclose(f);
    }
    return 0;
}
