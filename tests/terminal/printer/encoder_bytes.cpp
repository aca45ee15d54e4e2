#include <EscPosEncoder.h>

#include <QGuiApplication>

#include <cstdio>

using namespace rivo::printer;
using rivo::ticket::PaperBlock;
using Kind = PaperBlock::Kind;

namespace
{

void print(const char* name, const QByteArray& bytes)
{
    std::printf("%s %s\n", name, bytes.toHex().constData());
}

} // namespace

/// Prints what the encoder makes of some blocks, a line for each: name and bytes.
/// other_encoder.cjs has the same names.
int main(int argc, char* argv[])
{
    const QGuiApplication application(argc, argv);
    const auto text = [](const char* codePage, const char* letters) {
        EscPosFormat format;
        format.codePage = CodePage(codePage);
        print(codePage, encode({{Kind::Text, QString::fromUtf8(letters), {}}}, format));
    };
    text("PC437", "Größe ½");
    text("PC850", "ÄÁ×");
    text("PC852", "żŁő");
    text("PC858", "Größe €");
    text("PC860", "ãÓ");
    text("PC863", "ÂÊ");
    text("PC865", "åØ");
    text("PC866", "Ая");
    text("WPC1250", "żŁő");
    text("WPC1251", "Ая№");
    text("WPC1252", "€–ß");
    text("WPC1253", "Αω");
    text("WPC1254", "ğİ");
    text("WPC1257", "ąŠ");
    print("title", encode({{Kind::Title, "x", {}}}, {}));
    print("sum", encode({{Kind::Sum, "x", "y"}}, {}));
    print("mark", encode({{Kind::Mark, "x", {}}}, {}));
    print("code", encode({{Kind::Code, "R1|000042|20260329T100005Z|190", {}}}, {}));
    print("drawer", drawerPulse());
    QImage picture(16, 8, QImage::Format_RGB32);
    picture.fill(Qt::white);
    picture.setPixelColor(0, 0, Qt::black);
    picture.setPixelColor(9, 7, Qt::black);
    print("picture", encodePicture(picture, 16));
    return 0;
}
