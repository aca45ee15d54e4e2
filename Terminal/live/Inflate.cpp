#include "Inflate_p.h"

#include <zlib.h>

namespace rivo::live
{

namespace
{

constexpr int gzipOnly = 16; // added to the size of the window
constexpr int pieceSize = 65536;

class Stream
{
public:
    Stream() { m_isOpen = inflateInit2(&m_stream, MAX_WBITS + gzipOnly) == Z_OK; }
    ~Stream() { inflateEnd(&m_stream); }
    Stream(const Stream&) = delete;
    Stream& operator=(const Stream&) = delete;

    bool isOpen() const { return m_isOpen; }
    z_stream& operator*() { return m_stream; }

private:
    z_stream m_stream{};
    bool m_isOpen;
};

} // namespace

std::optional<QByteArray> inflated(const QByteArray& data, int most)
{
    Stream owner;
    if (!owner.isOpen())
        return std::nullopt;
    z_stream& stream = *owner;
    QByteArray input = data;
    stream.next_in = reinterpret_cast<Bytef*>(input.data());
    stream.avail_in = static_cast<uInt>(input.size());
    QByteArray content;
    QByteArray piece(pieceSize, Qt::Uninitialized);
    int state = Z_OK;
    while (state == Z_OK) {
        stream.next_out = reinterpret_cast<Bytef*>(piece.data());
        stream.avail_out = pieceSize;
        state = inflate(&stream, Z_NO_FLUSH);
        content.append(piece.constData(), pieceSize - static_cast<int>(stream.avail_out));
        if (content.size() > most)
            return std::nullopt;
    }
    return state == Z_STREAM_END ? std::make_optional(content) : std::nullopt;
}

} // namespace rivo::live
