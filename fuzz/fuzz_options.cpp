#include "fuzzing.h"
#include "options.h"

/// The host's command line: arguments with NUL between them.
extern "C" int LLVMFuzzerTestOneInput(const uchar *bytes, size_t size)
{
    const QString line = QString::fromUtf8(reinterpret_cast<const char *>(bytes), int(size));
    const QStringList arguments = line.split(QChar());
    const Options options = Options::read(QStringList("orvhost") + arguments);
    if (!options.error.isEmpty())
        return 0;

    const auto isGiven = [&](const QString &value) { // alone or behind an equals sign
        return std::any_of(arguments.begin(), arguments.end(), [&](const QString &argument) {
            return argument == value || argument.endsWith("=" + value);
        });
    };
    REQUIRE(options.language == 0 || options.language == 1);
    REQUIRE(options.faults[Fault::Delay] <= 10000);
    const int dotsPerInch = options.dotsPerInch.toInt();
    REQUIRE(options.dotsPerInch.isEmpty() || (dotsPerInch >= 48 && dotsPerInch <= 480));
    const double scale = options.scaleFactor.toDouble();
    REQUIRE(options.scaleFactor.isEmpty() || (scale >= 0.5 && scale <= 4));
    REQUIRE(options.plugin.isEmpty() || arguments.contains(options.plugin));
    REQUIRE(options.picture.isEmpty() || (isGiven(options.picture) && options.gallery));
    REQUIRE(options.screenshot.isEmpty() || isGiven(options.screenshot));
    REQUIRE(!options.gallery || (options.plugin.isEmpty() && !options.tour));
    return 0;
}
