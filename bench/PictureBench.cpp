// What a copied picture costs on its way into the history: a screenshot of 3840 x 2160, as a PNG of
// about 3.5 MB. Prints a table; --benchmark_filter chooses rows. The history is made in TMPDIR.

#include "bench/EmptyHistory.h"
#include "bench/Measuring.h"
#include "foundation/Log.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QImageWriter>

#include <cmath>
#include <cstring>
#include <random>

#include <sys/resource.h>

using namespace Qt::StringLiterals;

namespace {

constexpr QSize kScreen(3840, 2160);

/// A line of letters: most of a screen is flat, and what is not flat is mostly text.
void drawLetters(QImage &image, int y, std::minstd_rand &random)
{
    constexpr int kAdvance = 11;
    for (int x = 520; x + kAdvance < image.width(); x += kAdvance) {
        if (random() % 6 == 0)
            continue;
        // One of a hundred letters, with soft edges.
        std::minstd_rand letter(random() % 100 + 1);
        for (int dy = 0; dy < 16; ++dy) {
            for (int dx = 0; dx < 8; ++dx) {
                const int grey = letter() % 3 == 0 ? int(letter() % 4) * 60 : 250;
                image.setPixel(x + dx, y + dy, qRgb(grey, grey, grey));
            }
        }
    }
}

void drawPhotograph(QImage &image, QRect place, std::minstd_rand &random)
{
    for (int y = place.top(); y <= place.bottom(); ++y) {
        for (int x = place.left(); x <= place.right(); ++x) {
            const int noise = int(random() % 12);
            image.setPixel(x, y,
                           qRgb(int(120 + 100 * std::sin(x / 90.0)) + noise,
                                int(120 + 100 * std::cos(y / 70.0)) + noise,
                                (x + y) % 200 + noise));
        }
    }
}

QByteArray screenshot(unsigned seed)
{
    std::minstd_rand random(seed);
    QImage image(kScreen, QImage::Format_RGB32);
    image.fill(qRgb(250, 250, 250));
    for (int y = 0; y < image.height(); ++y)
        std::fill_n(reinterpret_cast<QRgb *>(image.scanLine(y)), 500, qRgb(236, 239, 241));
    for (int y = 90; y + 30 < image.height(); y += 24)
        drawLetters(image, y, random);
    drawPhotograph(image, QRect(2400, 500, 1100, 800), random);

    QByteArray file;
    QBuffer buffer(&file);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter(&buffer, "png").write(image);
    return file;
}

const QByteArray &anyScreenshot()
{
    static const QByteArray file = screenshot(1);
    return file;
}

double processorMilliseconds()
{
    rusage usage = {};
    getrusage(RUSAGE_SELF, &usage);
    const auto milliseconds = [](const timeval &time) {
        return double(time.tv_sec) * 1000 + double(time.tv_usec) / 1000;
    };
    return milliseconds(usage.ru_utime) + milliseconds(usage.ru_stime);
}

/// Rounds with the processor time of all threads.
class ProcessorRounds : public Rounds
{
public:
    template <typename Work>
    void time(benchmark::State &state, Work &&work)
    {
        const double before = processorMilliseconds();
        Rounds::time(state, std::forward<Work>(work));
        m_processorMilliseconds += processorMilliseconds() - before;
    }

    void report(benchmark::State &state)
    {
        Rounds::report(state);
        state.counters["cpu_ms"] = m_processorMilliseconds / double(state.iterations());
    }

private:
    double m_processorMilliseconds = 0;
};

/// A history that keeps its pictures in one format.
class History : public EmptyHistory
{
public:
    explicit History(const QString &format)
    {
        m_defaults.set(u"image.storage.format"_s, format);
    }

    ClipboardItem itemOf(PasteboardImage image) const
    {
        ClipboardItem item = makeItem(ClipboardContentType::Image, m_clock.now());
        item.imageRepresentation = std::move(image.tiff);
        item.imageDigest = std::move(image.digest);
        return item;
    }
};

void pngToTiff(benchmark::State &state)
{
    const QtImageCodec codec;
    const QByteArray png = anyScreenshot();
    ProcessorRounds rounds;
    std::optional<PasteboardImage> image;
    for (auto _ : state) {
        image.reset();
        rounds.time(state, [&] { image = codec.tiffFromPicture(png); });
    }
    rounds.report(state);
    state.counters["png_MB"] = double(png.size()) / 1e6;
    state.counters["tiff_MB"] = double(image->tiff.size()) / 1e6;
}

void saveImage(benchmark::State &state, const QString &format)
{
    History history(format);
    QDir().mkpath(history.imagesDirectory());
    const ImageStorage storage = history.openStorage();
    const auto image = history.codec().tiffFromPicture(anyScreenshot());
    ProcessorRounds rounds;
    ImageStorage::SavedImage saved;
    for (auto _ : state) {
        storage.deleteImageFiles(saved);
        rounds.time(state, [&] { saved = storage.saveImage(image->tiff); });
    }
    rounds.report(state);
    const QFileInfo file(QDir(history.imagesDirectory()).filePath(saved.fileName.value()));
    state.counters["file_MB"] = double(file.size()) / 1e6;
}

/// From the bytes of the owner to the committed row. blocked_ms is the longest that a reader of the
/// list, as the main thread is one, had to wait meanwhile.
void copyUntilStored(benchmark::State &state, const QString &format)
{
    History history(format);
    const auto manager = history.openManager();
    ProcessorRounds rounds;
    double blocked = 0;
    unsigned seed = 1;
    for (auto _ : state) {
        const QByteArray png = screenshot(++seed);
        rounds.time(state, [&] {
            auto image = history.codec().tiffFromPicture(png);
            const auto begin = std::chrono::steady_clock::now();
            manager->addItem(history.itemOf(std::move(*image)));
            image.reset();
            manager->items();
            const std::chrono::duration<double, std::milli> waited
                = std::chrono::steady_clock::now() - begin;
            blocked = std::max(blocked, waited.count());
            manager->drain();
        });
        if (!manager->items().first()->imageThumbnailFileName)
            state.SkipWithError("the picture is not stored");
    }
    rounds.report(state);
    state.counters["blocked_ms"] = blocked;
}

/// The same with a reader that never rests, which makes it slower.
void readWhileStored(benchmark::State &state)
{
    History history(u"jpeg"_s);
    const auto manager = history.openManager();
    Rounds waits;
    unsigned seed = 100;
    double blocked = 0;
    for (auto _ : state) {
        auto image = history.codec().tiffFromPicture(screenshot(++seed));
        waits.time(state, [&] {
            bool isStored = false;
            manager->addItem(history.itemOf(std::move(*image)), [&isStored] { isStored = true; });
            image.reset();
            while (!isStored) {
                const auto begin = std::chrono::steady_clock::now();
                benchmark::DoNotOptimize(manager->items());
                const std::chrono::duration<double, std::milli> waited
                    = std::chrono::steady_clock::now() - begin;
                blocked = std::max(blocked, waited.count());
                QCoreApplication::processEvents();
            }
        });
    }
    waits.report(state);
    state.counters["blocked_ms"] = blocked;
}

/// What a history of stored pictures keeps in memory, without anything being given back by hand.
void memoryAfterPictures(benchmark::State &state)
{
    History history(u"jpeg"_s);
    const auto manager = history.openManager();
    const auto anonymous = [] {
        return double(procNumber(u"/proc/self/smaps_rollup"_s, "Anonymous")) / 1024;
    };
    const double before = anonymousMebibytes();
    unsigned seed = 200;
    for (auto _ : state) {
        auto image = history.codec().tiffFromPicture(screenshot(++seed));
        manager->addItem(history.itemOf(std::move(*image)));
        image.reset();
        manager->drain();
    }
    state.counters["kept_MiB"] = anonymous() - before;
    state.counters["kept_trimmed_MiB"] = anonymousMebibytes() - before;
}

BENCHMARK(pngToTiff)->UseManualTime()->Iterations(15)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(saveImage, jpeg, u"jpeg"_s)
    ->UseManualTime()->Iterations(15)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(saveImage, png, u"png"_s)
    ->UseManualTime()->Iterations(15)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(saveImage, tiff, u"tiff"_s)
    ->UseManualTime()->Iterations(15)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(copyUntilStored, jpeg, u"jpeg"_s)
    ->UseManualTime()->Iterations(10)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(copyUntilStored, png, u"png"_s)
    ->UseManualTime()->Iterations(5)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(copyUntilStored, tiff, u"tiff"_s)
    ->UseManualTime()->Iterations(5)->Unit(benchmark::kMillisecond);
BENCHMARK(readWhileStored)->UseManualTime()->Iterations(5)->Unit(benchmark::kMillisecond);
BENCHMARK(memoryAfterPictures)->Iterations(5)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    mallopt(M_MMAP_THRESHOLD, 128 << 10); // As the program does it.
    setPrintSink([](const QString &) {}); // One line for each start would tear the table apart.
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
