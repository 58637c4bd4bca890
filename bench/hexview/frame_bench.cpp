// What one repaint, a caret step and a copied selection cost in the view's own code.
#include "hexview/frame.h"
#include "hexview/hex_view.h"
#include "hexview/selection_text.h"
#include "tests/hexview/view_stage.h"

#include <benchmark/benchmark.h>

namespace kvx {
namespace {

/// Sixty rows of 16 bytes, all of them selected.
void BuildFrameOfSixtyRows(benchmark::State& run) {
    ViewStage stage(CountingBytes(1U << 20U));
    stage.view.SetClientSize(1000, 16 + 60 * 24 + 1);
    stage.view.SetSelection(0, 1U << 20U);
    for (auto _ : run)
        benchmark::DoNotOptimize(BuildFrame(stage.State()));
}
BENCHMARK(BuildFrameOfSixtyRows)->Unit(benchmark::kMicrosecond);

/// A caret step: clamping, scrolling, scroll bars and messages.
void MoveCaret(benchmark::State& run) {
    ViewStage stage(CountingBytes(1U << 20U));
    std::uint64_t steps = 0;
    for (auto _ : run) {
        stage.view.OnKeyDown(++steps % 2 == 0 ? Key::Up : Key::Down, false);
        stage.host.Forget();
    }
}
BENCHMARK(MoveCaret);

void CopySelectionText(benchmark::State& run) {
    const MemoryDocument document(CountingBytes(static_cast<std::size_t>(run.range(0))));
    for (auto _ : run)
        benchmark::DoNotOptimize(HexText(document, 0, document.GetSize() - 1));
    run.SetBytesProcessed(run.iterations() * run.range(0));
}
BENCHMARK(CopySelectionText)->Arg(1 << 20)->Arg(256 << 20)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace kvx

BENCHMARK_MAIN();
