// Scale benchmarks of the debug-menu library, each scenario next to its floor:
// the same work done with a bare QTreeWidget and the host calls alone.
//
//   brennvik_bench [--max-n=N] [--large-repetitions=R] [Google Benchmark options]
//
// --max-n limits the display-item counts (10,000, 100,000, 1,000,000) to
// those up to N; the default runs all three.
// --large-repetitions runs every case of 1,000,000 items R times (default 1);
// with --benchmark_enable_random_interleaving=true the repetitions of all
// cases are shuffled, so that library and floor meet the machine alike.

#include "BenchSupport.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QByteArray>
#include <QtGlobal>

#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iostream>
#include <string>

namespace Brennvik::Bench {
void registerTreeBuild(const Config& config);
void registerFind(const Config& config);
void registerSubtreeInvisible(const Config& config);
void registerChildren(const Config& config);
void registerClone(const Config& config);
void registerListing2D(const Config& config);
#ifdef BRENNVIK_WITH_SCENE_IMPORT
void registerScene(const Config& config);
#endif
} // namespace Brennvik::Bench

namespace {

// The row handlers log each context-menu use; a million-row run must not
// spend its time on that.
void quietMessages(QtMsgType type, const QMessageLogContext& context, const QString& message)
{
    if (type == QtDebugMsg || type == QtInfoMsg)
        return;
    std::cerr << qPrintable(qFormatLogMessage(type, context, message)) << std::endl;
}

// Takes --<name>=N out of the arguments; \a fallback when absent.
long takeNumberOption(int& argc, char** argv, const char* name, long fallback)
{
    const std::string prefix = std::string("--") + name + "=";
    long value = fallback;
    int kept = 1;
    for (int i = 1; i < argc; ++i) {
        const char* arg = argv[i];
        if (std::strncmp(arg, prefix.c_str(), prefix.size()) == 0) {
            value = std::strtol(arg + prefix.size(), nullptr, 10);
            continue;
        }
        argv[kept++] = argv[i];
    }
    argc = kept;
    argv[argc] = nullptr;
    return value;
}

// Which pages the heap was given: glibc's huge-page tunable, and the
// kernel's transparent huge page mode that decides whether it takes effect.
std::string heapPages()
{
    const QByteArray tunables = qgetenv("GLIBC_TUNABLES");
    const bool asked = tunables.contains("glibc.malloc.hugetlb=1");
    std::ifstream modeFile("/sys/kernel/mm/transparent_hugepage/enabled");
    std::string mode;
    std::getline(modeFile, mode);
    return std::string(asked ? "huge pages asked for" : "small")
        + " (transparent huge pages: " + (mode.empty() ? "unknown" : mode) + ")";
}

} // namespace

int main(int argc, char** argv)
{
    // Without a display the widgets still lay out and paint, off screen.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") && qEnvironmentVariableIsEmpty("DISPLAY")
        && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    // The offscreen platform warns about every popup it cannot raise or grab for.
    if (qEnvironmentVariableIsEmpty("QT_LOGGING_RULES"))
        qputenv("QT_LOGGING_RULES", "qt.qpa.*=false");
    qInstallMessageHandler(quietMessages);

    const long maxN = takeNumberOption(argc, argv, "max-n", 0);
    const long largeRepetitions = takeNumberOption(argc, argv, "large-repetitions", 1);
    QApplication app(argc, argv);

    benchmark::Initialize(&argc, argv);
    // The results of the two Qt builds sit side by side: each says which it is.
    benchmark::AddCustomContext("qt_version", qVersion());
    benchmark::AddCustomContext("heap_pages", heapPages());
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;

    Brennvik::Bench::Config config;
    for (long n : {10000L, 100000L, 1000000L}) {
        if (maxN <= 0 || n <= maxN)
            config.sizes.push_back(n);
    }
    Brennvik::Bench::setLargeRepetitions(static_cast<int>(largeRepetitions));
    Brennvik::Bench::registerTreeBuild(config);
    Brennvik::Bench::registerFind(config);
    Brennvik::Bench::registerSubtreeInvisible(config);
    Brennvik::Bench::registerChildren(config);
    Brennvik::Bench::registerClone(config);
    Brennvik::Bench::registerListing2D(config);
#ifdef BRENNVIK_WITH_SCENE_IMPORT
    Brennvik::Bench::registerScene(config);
#endif

    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
