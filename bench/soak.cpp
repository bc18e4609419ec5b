// The whole program for a long time: the built quellton under a private X server with a tone
// playing into a private PulseAudio and the Mix switching every 15 s. Reports memory growth, CPU
// time per frame and the frame intervals of its own frame log, at the start and at the end.
//
//   bench_soak [--minutes 10] [--warmup 210] [--screen 960x540]
//
// The warm-up covers the shader compilation and one round of the Mix, so every visualization has
// been drawn once (llvmpipe compiles its code at the first draw). Big buffers are always mapped and
// unmapped (a fixed mmap threshold), so the resident set shows the memory in use rather than the
// heap's high-water mark, which rises in steps whenever two large pictures happen to overlap.
// Exits with status 1 when the lowest resident set of the end window lies 2 MB or more above that
// of the start window.
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "BenchArguments.h"
#include "PrivateSession.h"
#include "PulseTestServer.h"

namespace {

using namespace quellton;
using Clock = std::chrono::steady_clock;

constexpr double growthLimitMb = 2.0;
// Long enough that the windows at start and end each hold every visualization of a Mix round
// (the twelve of the default Mix, 15 s each) at least once.
constexpr double windowSeconds = 180;

struct Sample {
    double t;       // seconds since the program started
    double rssMb;   // resident set
    double cpuSec;  // user and system time so far
};

Sample sample(pid_t pid, double t) {
    Sample s{t, 0, 0};
    std::ifstream status("/proc/" + std::to_string(pid) + "/status");
    for (std::string line; std::getline(status, line);)
        if (line.rfind("VmRSS:", 0) == 0) s.rssMb = std::stod(line.substr(6)) / 1024.0;
    std::ifstream stat("/proc/" + std::to_string(pid) + "/stat");
    std::string text((std::istreambuf_iterator<char>(stat)), {});
    // Fields after the command name, which may hold spaces; utime and stime are fields 14 and 15.
    std::istringstream rest(text.substr(text.rfind(')') + 2));
    const std::vector<std::string> fields(std::istream_iterator<std::string>(rest), std::istream_iterator<std::string>{});
    if (fields.size() > 12)
        s.cpuSec = (std::stod(fields[11]) + std::stod(fields[12])) / double(sysconf(_SC_CLK_TCK));
    return s;
}

// One line of the frame log: frames, mean, p99 and longest interval, late frames.
struct FrameWindow {
    double t = 0;
    int frames = 0;
    double meanMs = 0, p99Ms = 0, maxMs = 0;
    int late = 0;
};

std::vector<FrameWindow> readFrameLog(const std::filesystem::path& file, Clock::time_point started,
                                      std::vector<FrameWindow> known, std::size_t& lines) {
    std::ifstream log(file);
    std::size_t n = 0;
    const double now = std::chrono::duration<double>(Clock::now() - started).count();
    for (std::string line; std::getline(log, line); ++n) {
        if (n < lines) continue;
        FrameWindow w;
        w.t = now;  // read every second, so this is the time it was written to within a second
        if (line.find("hintergrund") == std::string::npos) continue;
        std::sscanf(line.c_str() + line.find("bilder="), "bilder=%d mittel=%lfms p99=%lfms max=%lfms ausgelassen=%d",
                    &w.frames, &w.meanMs, &w.p99Ms, &w.maxMs, &w.late);
        known.push_back(w);
    }
    lines = n;
    return known;
}

struct Summary {
    double rssMinMb = 0, rssMaxMb = 0, cpuPerFrameMs = 0, fps = 0, meanMs = 0, p99Ms = 0, worstP99Ms = 0, maxMs = 0;
    int late = 0;
};

Summary summarize(const std::vector<Sample>& samples, const std::vector<FrameWindow>& frames, double from, double to) {
    Summary s;
    std::vector<const Sample*> in;
    for (const Sample& x : samples)
        if (x.t >= from && x.t <= to) in.push_back(&x);
    if (in.size() < 2) return s;
    s.rssMinMb = (*std::min_element(in.begin(), in.end(), [](auto a, auto b) { return a->rssMb < b->rssMb; }))->rssMb;
    s.rssMaxMb = (*std::max_element(in.begin(), in.end(), [](auto a, auto b) { return a->rssMb < b->rssMb; }))->rssMb;
    int count = 0;
    double weighted = 0;
    std::vector<double> p99s;
    for (const FrameWindow& w : frames) {
        if (w.t < from || w.t > to) continue;
        count += w.frames;
        weighted += w.meanMs * w.frames;
        p99s.push_back(w.p99Ms);
        s.maxMs = std::max(s.maxMs, w.maxMs);
        s.late += w.late;
    }
    s.fps = count / std::max(to - from, 1.0);
    s.cpuPerFrameMs = count ? (in.back()->cpuSec - in.front()->cpuSec) * 1000.0 / count : 0;
    s.meanMs = count ? weighted / count : 0;
    if (!p99s.empty()) {
        std::sort(p99s.begin(), p99s.end());
        s.p99Ms = p99s[p99s.size() / 2];
        s.worstP99Ms = p99s.back();
    }
    return s;
}

void printRow(const char* name, const Summary& s) {
    std::printf("| %-6s | %8.1f | %8.1f | %9.2f | %6.1f | %8.2f | %8.2f | %9.2f | %8.1f | %5d |\n", name, s.rssMinMb,
                s.rssMaxMb, s.cpuPerFrameMs, s.fps, s.meanMs, s.p99Ms, s.worstP99Ms, s.maxMs, s.late);
}

}  // namespace

int main(int argc, char** argv) {
    const double minutes = bench::numberArgument(argc, argv, "--minutes", 10);
    const double warmup = bench::numberArgument(argc, argv, "--warmup", 210);
    std::string screen = "960x540";
    for (int i = 1; i + 1 < argc; ++i)
        if (std::string(argv[i]) == "--screen") screen = argv[i + 1];
    const double total = minutes * 60;
    if (total < warmup + 2 * windowSeconds) {
        std::cerr << "bench_soak: --minutes must leave two windows of " << windowSeconds << " s after the warm-up"
                  << std::endl;
        return 2;
    }

    // The sound server first: it clears DISPLAY, which the X session then sets.
    test::PulseTestServer pulse;
    test::PrivateSession session(screen + "x24");
    if (!pulse.ready() || !session.ready()) {
        std::cerr << "bench_soak: the private sound server or X session did not start" << std::endl;
        return 2;
    }
    setenv("MESA_SHADER_CACHE_DISABLE", "true", 1);
    const std::filesystem::path dir = session.dir();
    std::filesystem::create_directories(dir / "config/Quellton");
    std::ofstream(dir / "config/Quellton/Quellton.conf")
        << "[General]\nframeLog=true\nmixEnabled=true\nmixInterval=15\nmixOnBeat=false\nfps=60\n";
    const std::string tone = (dir / "tone.wav").string();
    if (!test::shell("sox -n -r 16000 -c 1 -b 16 " + tone + " synth 60 sine 440 vol 0.5 2>/dev/null")) return 2;

    const Clock::time_point started = Clock::now();
    const pid_t program = test::spawnWith({QUELLTON_BINARY, "--autostart"},
                                          {{"GLIBC_TUNABLES", "glibc.malloc.mmap_threshold=262144"}},
                                          (dir / "quellton.log").string());
    pid_t player = -1;
    std::vector<Sample> samples;
    std::vector<FrameWindow> frames;
    std::size_t logLines = 0;
    const auto frameLog = dir / "state/Quellton/Quellton-Bilder.log";
    std::printf("soak: %.0f min on a %s screen, warm-up %.0f s, windows of %.0f s; the program logs to %s\n",
                minutes, screen.c_str(), warmup, windowSeconds, (dir / "quellton.log").c_str());
    for (;;) {
        std::this_thread::sleep_for(std::chrono::seconds(1));
        const double t = std::chrono::duration<double>(Clock::now() - started).count();
        if (waitpid(program, nullptr, WNOHANG) == program) {
            std::cerr << "bench_soak: the program ended after " << t << " s" << std::endl;
            return 1;
        }
        // The tone is a minute long and starts again when it ends.
        if (player <= 0 || waitpid(player, nullptr, WNOHANG) == player)
            player = test::spawnWith({"paplay", "--latency-msec=20", "-d", "one", tone}, {}, "/dev/null");
        samples.push_back(sample(program, t));
        frames = readFrameLog(frameLog, started, std::move(frames), logLines);
        if (int(t) % 60 == 0)
            std::printf("  %3.0f min: %.1f MB resident, %.0f s CPU\n", t / 60, samples.back().rssMb, samples.back().cpuSec);
        std::fflush(stdout);
        if (t >= total) break;
    }
    kill(program, SIGTERM);
    waitpid(program, nullptr, 0);
    test::terminate(player);

    const Summary start = summarize(samples, frames, warmup, warmup + windowSeconds);
    const Summary end = summarize(samples, frames, total - windowSeconds, total);
    std::printf("\n| window | RSS min  | RSS max  | CPU/frame | frames | mean     | p99      | worst p99 | max      | late  |\n");
    std::printf("|        | MB       | MB       | ms        | per s  | ms       | ms       | ms        | ms       |       |\n");
    std::printf("|--------|----------|----------|-----------|--------|----------|----------|-----------|----------|-------|\n");
    printRow("start", start);
    printRow("end", end);
    const double growth = end.rssMinMb - start.rssMinMb;
    std::printf("\nRSS growth (lowest resident set, end window against start window): %+.2f MB; highest: %+.2f MB\n",
                growth, end.rssMaxMb - start.rssMaxMb);
    std::printf("p99 is the median of the frame log's 5 s windows, worst p99 the largest of them.\n");
    if (growth >= growthLimitMb) {
        std::printf("FAIL: the resident set grew by %.2f MB (limit %.1f MB)\n", growth, growthLimitMb);
        return 1;
    }
    std::printf("PASS: growth under %.1f MB\n", growthLimitMb);
    return 0;
}
