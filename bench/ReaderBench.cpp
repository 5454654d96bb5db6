// How long it takes to read the text of a styled copy. Prints a table; --benchmark_filter chooses
// rows.

#include "capture/HtmlReader.h"
#include "capture/RtfReader.h"

#include <QByteArray>

#include <benchmark/benchmark.h>

namespace {

/// \a start, and then \a paragraph again and again until it is so many bytes.
QByteArray document(const QByteArray &start, const QByteArray &paragraph, std::int64_t size)
{
    return start + paragraph.repeated(qsizetype(size) / paragraph.size());
}

void html(benchmark::State &state)
{
    const QByteArray bytes = document(
        "<meta charset=\"utf-8\">",
        "<p style=\"color: rgb(0, 0, 0); white-space: normal;\">Running text with a <a "
        "href=\"https://example.com/some/page?a=b&amp;c=d\">link</a>, a <b>bold</b> word&nbsp;and"
        " <span style=\"font-size: 12px\">some more</span>.</p>\n<table><tr><td>1</td><td>2</td>"
        "</tr></table>\n",
        state.range(0));
    for (auto _ : state)
        benchmark::DoNotOptimize(plainTextFromHtml(bytes));
    state.SetBytesProcessed(state.iterations() * bytes.size());
}

void htmlOfTags(benchmark::State &state)
{
    const QByteArray bytes = document({}, "<p><b><i>", state.range(0));
    for (auto _ : state)
        benchmark::DoNotOptimize(plainTextFromHtml(bytes));
    state.SetBytesProcessed(state.iterations() * bytes.size());
}

void rtf(benchmark::State &state)
{
    const QByteArray bytes = document(
        "{\\rtf1\\ansi\\ansicpg1252{\\fonttbl{\\f0\\fswiss\\fcharset0 Helvetica;}}",
        "\\pard\\plain\\f0\\fs24 Running text with a {\\b bold} word, caf\\'e9 and \\u8212 ?."
        "{\\field{\\*\\fldinst HYPERLINK \"https://example.com\"}{\\fldrslt link}}\\par\n",
        state.range(0));
    for (auto _ : state)
        benchmark::DoNotOptimize(plainTextFromRtf(bytes));
    state.SetBytesProcessed(state.iterations() * bytes.size());
}

void rtfOfGroups(benchmark::State &state)
{
    const QByteArray bytes = document("{\\rtf1", "{\\v", state.range(0));
    for (auto _ : state)
        benchmark::DoNotOptimize(plainTextFromRtf(bytes));
    state.SetBytesProcessed(state.iterations() * bytes.size());
}

void sizes(benchmark::internal::Benchmark *row)
{
    row->Arg(20 << 10)->Arg(512 << 10)->Arg(10 << 20)->Unit(benchmark::kMillisecond);
}

BENCHMARK(html)->Apply(sizes);
BENCHMARK(htmlOfTags)->Apply(sizes);
BENCHMARK(rtf)->Apply(sizes);
BENCHMARK(rtfOfGroups)->Apply(sizes);

} // namespace

BENCHMARK_MAIN();
