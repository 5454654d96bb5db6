// What the history costs with as many entries as it can hold. Prints a table; --benchmark_filter
// chooses rows. The directory of the database is made in TMPDIR.

#include "bench/Corpus.h"
#include "bench/EmptyHistory.h"
#include "bench/Measuring.h"
#include "foundation/Log.h"
#include "foundation/LoweredQuery.h"
#include "foundation/TextSignature.h"
#include "tests/fakes/FakeWorkspace.h"
#include "window/ApplicationNames.h"
#include "window/HistoryFilter.h"

#include <QCoreApplication>

#include <algorithm>
#include <cmath>

#include <benchmark/benchmark.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int kMostEntries = 10'000;

qint64 writtenBytes()
{
    return procNumber(u"/proc/self/io"_s, "wchar");
}

/// A history of so many entries of the corpus.
class History : public EmptyHistory
{
public:
    explicit History(int count)
    {
        const auto store = openStore();
        const ClipboardItemList entries = Corpus().entries(count);
        // Oldest first, as they would have been copied.
        for (auto item = entries.rbegin(); item != entries.rend(); ++item)
            store->upsertItem(**item);
        m_defaults.set(u"history.limit"_s, 10'000);
    }

    ClipboardItem copiedText()
    {
        ClipboardItem item = makeItem(ClipboardContentType::Text, m_clock.now());
        item.stringValue = Utf8Text::fromUtf8(m_copies.textOf(200));
        item.sourceAppBundleID = u"org.example.Editor"_s;
        return item;
    }

private:
    Corpus m_copies{2};
};

void signLongTexts(const ClipboardItemList &items)
{
    for (const ClipboardItemPointer &item : items) {
        const LazyBytes &text = item->stringValue->longBytes();
        if (!text.isEmpty())
            text.setSignature(TextSignature::of(text.bytes()));
    }
}

void load(benchmark::State &state)
{
    History history(int(state.range(0)));
    Rounds rounds;
    for (auto _ : state) {
        const auto store = history.openStore();
        ClipboardItemList items;
        rounds.time(state, [&] { items = store->loadItems(); });
        if (items.size() != state.range(0))
            state.SkipWithError("the history is not complete");
    }
    rounds.report(state);
}

void start(benchmark::State &state)
{
    History history(int(state.range(0)));
    Rounds rounds;
    for (auto _ : state) {
        std::unique_ptr<ClipboardItemManager> manager;
        rounds.time(state, [&] { manager = history.openManager(); });
    }
    rounds.report(state);
}

void memory(benchmark::State &state)
{
    History history(int(state.range(0)));
    const double before = anonymousMebibytes();
    const auto manager = history.openManager();
    const double after = anonymousMebibytes();
    qint64 textBytes = 0;
    for (const ClipboardItemPointer &item : manager->items())
        textBytes += item->stringValue->byteCount();
    for (auto _ : state)
        benchmark::DoNotOptimize(manager->items());
    state.counters["anonymous_MiB"] = after - before;
    state.counters["texts_MiB"] = double(textBytes) / 1024 / 1024;
}

void addUntilListed(benchmark::State &state)
{
    History history(int(state.range(0)));
    const auto manager = history.openManager();
    const bool isListHeld = state.range(1) != 0;
    Rounds rounds;
    ClipboardItemList held = manager->items();
    for (auto _ : state) {
        const ClipboardItem item = history.copiedText();
        if (!isListHeld)
            held.clear();
        rounds.time(state, [&] {
            manager->addItem(item);
            held = manager->items();
        });
        if (held.first()->id != item.id)
            state.SkipWithError("the entry is not in the list");
        manager->drain();
    }
    rounds.report(state);
}

void addUntilCommitted(benchmark::State &state)
{
    History history(int(state.range(0)));
    const auto manager = history.openManager();
    const qint64 before = writtenBytes();
    Rounds rounds;
    for (auto _ : state) {
        ClipboardItem item = history.copiedText();
        rounds.time(state, [&] {
            manager->addItem(std::move(item));
            manager->drain();
        });
    }
    rounds.report(state);
    state.counters["written_bytes"]
        = double(writtenBytes() - before) / double(state.iterations());
}

void itemsCopy(benchmark::State &state)
{
    History history(int(state.range(0)));
    const auto manager = history.openManager();
    for (auto _ : state)
        benchmark::DoNotOptimize(manager->items());
}

/// A word pasted into the search field of a window that has just been opened on a history on disk.
void search(benchmark::State &state, const QString &text)
{
    History history(kMostEntries);
    const auto manager = history.openManager();
    const ClipboardItemList items = manager->items();
    const bool isPrepared = state.range(0) != 0;
    if (isPrepared)
        signLongTexts(items);
    const FakeWorkspace workspace;
    ApplicationNames names(workspace);
    qsizetype hitCount = 0;
    Rounds rounds;
    for (auto _ : state) {
        HistoryFilter filter(names);
        filter.setSearchText(text);
        rounds.time(state, [&] { hitCount = filter.matchesIn(items).size(); });
    }
    rounds.report(state);
    state.counters["hits"] = double(hitCount);
}

void searchPass(benchmark::State &state, const QString &text)
{
    const ClipboardItemList items = Corpus().entries(int(state.range(0)));
    qsizetype hitCount = 0;
    for (auto _ : state) {
        const LoweredQuery query(text);
        hitCount = std::ranges::count_if(items, [&query](const ClipboardItemPointer &item) {
            return query.isContainedInUtf8(item->stringValue->utf8());
        });
    }
    state.counters["hits"] = double(hitCount);
}

void clearHistory(benchmark::State &state)
{
    Rounds rounds;
    for (auto _ : state) {
        History history(int(state.range(0)));
        const auto manager = history.openManager();
        rounds.time(state, [&] {
            manager->clearHistory(ClipboardItemManager::Favorites::Keep, {});
            manager->drain();
        });
    }
    rounds.report(state);
}

BENCHMARK(load)->Arg(1'000)->Arg(kMostEntries)->UseManualTime()->Iterations(15)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(start)->Arg(1'000)->Arg(kMostEntries)->UseManualTime()->Iterations(15)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(memory)->Arg(1'000)->Arg(kMostEntries)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(addUntilListed)
    ->ArgNames({"", "list_held"})
    ->Args({1'000, 0})
    ->Args({1'000, 1})
    ->Args({kMostEntries, 0})
    ->Args({kMostEntries, 1})
    ->UseManualTime()
    ->Iterations(500)
    ->Unit(benchmark::kMillisecond);
// Below its limit the history only grows; at the limit each copy evicts the oldest entry.
BENCHMARK(addUntilCommitted)
    ->Arg(1'000)
    ->Arg(kMostEntries - 2'000)
    ->Arg(kMostEntries)
    ->UseManualTime()
    ->Iterations(2'000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(itemsCopy)->Arg(1'000)->Arg(kMostEntries);
BENCHMARK_CAPTURE(searchPass, letter, u"e"_s)->Arg(kMostEntries)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(searchPass, rare, u"Zebra"_s)->Arg(kMostEntries)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(searchPass, chinese, u"剪贴板"_s)
    ->Arg(kMostEntries)
    ->Unit(benchmark::kMillisecond);
template <typename Row>
void searchRounds(Row *row)
{
    row->ArgName("prepared")->Arg(0)->Arg(1)->UseManualTime()->Iterations(30)->Unit(
        benchmark::kMillisecond);
}

BENCHMARK_CAPTURE(search, letter, u"x"_s)->Apply(searchRounds);
BENCHMARK_CAPTURE(search, two_letters, u"xw"_s)->Apply(searchRounds);
BENCHMARK_CAPTURE(search, three_letters, u"exw"_s)->Apply(searchRounds);
BENCHMARK_CAPTURE(search, rare, u"Zebra"_s)->Apply(searchRounds);
BENCHMARK_CAPTURE(search, absent, u"mentexwip"_s)->Apply(searchRounds);
BENCHMARK_CAPTURE(search, chinese, u"剪贴板"_s)->Apply(searchRounds);
BENCHMARK(clearHistory)->Arg(1'000)->Arg(kMostEntries)->UseManualTime()->Iterations(15)
    ->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    setPrintSink([](const QString &) {}); // One line for each load would tear the table apart.
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
