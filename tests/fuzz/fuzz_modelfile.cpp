// libFuzzer target for the model-file loader. Every input must either load
// and survive a save-and-load round trip or give one positioned error; any
// other outcome aborts, so that libFuzzer keeps the input as a crash file.

#include "ModelFileFuzzTarget.h"

#include <QByteArray>

#include <cstdint>
#include <cstdio>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    // The loader and the model need no QCoreApplication: nothing here uses
    // events, timers or translations, so there is no LLVMFuzzerInitialize.
    const QByteArray input(reinterpret_cast<const char*>(data), static_cast<int>(size));
    const Brennvik::Test::ModelFileFuzzOutcome outcome = Brennvik::Test::checkModelFileInput(input);
    if (!outcome.finding.isEmpty()) {
        std::fprintf(stderr, "model file finding: %s\n", qPrintable(outcome.finding));
        std::abort();
    }
    return 0;
}
