#include "bglinelabel.h"
#include "fuzzing.h"

#include <QImage>

namespace {

QImage painted(QWidget &widget)
{
    QImage image(61, 31, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    widget.resize(image.size());
    widget.render(&image);
    return image;
}

} // namespace

/// A style sheet with a location somewhere in it, for a label that may have had one before.
extern "C" int LLVMFuzzerTestOneInput(const uchar *bytes, size_t size)
{
    needApplication(Warnings::AreIgnored); // Qt's, of what is no style sheet
    Input input(bytes, size);
    BgLineLabel label(nullptr);
    const auto locate = [](BgLineLabel &which, int location) {
        which.setStyleSheet(QString("location:%1;").arg(location));
    };
    int location = int(input.take()) - 128;
    locate(label, location);
    const QString sheet = QString::fromUtf8(input.left);
    if (sheet.contains("url", Qt::CaseInsensitive))
        return -1; // it would read files of this machine

    label.setStyleSheet(sheet);
    QString left = sheet;
    const QStringList around = sheet.split("location");
    if (around.size() > 1) {
        const QString after = ("on" + sheet.section("location", 1)).left(1000);
        const QString value = after.contains(':') ? after.section(':', 1) : after;
        location = value.section(';', 0, 0).trimmed().toInt();
        left = around[0] + (after.contains(';') ? after.section(';', 1) : after);
    }
    REQUIRE(label.styleSheet() == left);

    // The guide is that of the location, below what the style paints.
    BgLineLabel reference(nullptr);
    if (location >= 0 && location <= 7)
        locate(reference, location);
    static_cast<QWidget &>(reference).setStyleSheet(left);
    REQUIRE(painted(label) == painted(reference));
    return 0;
}
