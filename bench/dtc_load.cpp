// Time to load the shipped trouble-code description file, and the cost of one description lookup.
// Prints the median of several runs. Usage: bench_dtc_load [folder holding the file]
// (by default the folder of this program, where the build puts the file).
#include "data/DtcDescriptions.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace {

// No window to pump; a box means the file did not load as it ships, which makes the figure void.
class CountingShell : public kvx::Shell {
public:
    int boxes = 0;
    void messageBox(const std::string& title, const std::string& text, kvx::MessageIcon) override
    {
        ++boxes;
        std::fprintf(stderr, "%s: %s\n", title.c_str(), text.c_str());
    }
    void processEvents() override {}
};

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

using Clock = std::chrono::steady_clock;

double millisecondsSince(Clock::time_point start)
{
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

} // namespace

int main(int argc, char** argv)
{
    const std::string folder =
        argc > 1 ? argv[1] : std::filesystem::absolute(argv[0]).parent_path().string();
    constexpr int kRuns = 21;

    std::vector<double> loads;
    std::vector<std::string> table;
    int count = 0;
    for (int run = 0; run < kRuns; ++run) {
        CountingShell shell;
        std::ifstream file;
        table.assign(kvx::data::kDtcTableSize, std::string());
        const auto start = Clock::now();
        count = kvx::data::LoadDtcDescriptions(folder, table, shell, file);
        loads.push_back(millisecondsSince(start));
        if (shell.boxes > 0)
            return 1;
    }

    // Every code of the table in turn, as the trouble-code reader asks for them.
    std::vector<std::string> codes;
    for (int number = 0; number < kvx::data::kDtcTableSize; ++number) {
        char code[8];
        std::snprintf(code, sizeof code, "P%04d", number);
        codes.emplace_back(code);
    }
    constexpr int kPasses = 100;
    std::vector<double> lookups;
    std::size_t sink = 0;
    for (int run = 0; run < kRuns; ++run) {
        const auto start = Clock::now();
        for (int pass = 0; pass < kPasses; ++pass)
            for (const auto& code : codes)
                sink += kvx::data::DtcDescription(table, code).size();
        lookups.push_back(millisecondsSince(start) * 1e6 / (static_cast<double>(kPasses) * codes.size()));
    }

    const double load = median(loads);
    std::printf("descriptions loaded: %d\n", count);
    std::printf("load time: median %.2f ms of %d runs (goal under 20 ms: %s)\n", load, kRuns,
                load < 20.0 ? "met" : "MISSED");
    std::printf("lookup: median %.1f ns per code of %d runs (checksum %zu)\n", median(lookups), kRuns, sink);
    return load < 20.0 ? 0 : 2;
}
