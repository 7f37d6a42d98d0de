#include "metadata/BoundedRawStream.h"

#include <QLoggingCategory>

#include <libraw/libraw.h>

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <exception>
#include <limits>
#include <mutex>

namespace tagmoor {

namespace {

Q_LOGGING_CATEGORY(lcRawStream, "tagmoor.metadata.raw", QtInfoMsg)

// The sample camera files are identified in 13 to about 1,700 calls and a thumbnail adds one
// large read; the loop of a damaged file makes millions of small ones (2 million take about
// 0.1 s).
constexpr qint64 kCallBudget = 2'000'000;
constexpr qint64 kByteAllowance = 64LL << 20;

} // namespace

BoundedRawStream::Budget BoundedRawStream::budgetFor(qint64 fileSize) {
    return {kCallBudget, 2 * std::max<qint64>(fileSize, 0) + kByteAllowance};
}

BoundedRawStream::BoundedRawStream(const QString& path)
    : BoundedRawStream(path, budgetFor(QFile(path).size())) {}

BoundedRawStream::BoundedRawStream(const QString& path, Budget budget)
    : m_file(path), m_budget(budget) {
    if (m_file.open(QIODevice::ReadOnly))
        m_size = m_file.size();
}

void BoundedRawStream::spend(qint64 bytes) {
    ++m_calls;
    m_bytes += bytes;
    if (!m_exhausted && (m_calls > m_budget.calls || m_bytes > m_budget.bytes)) {
        m_exhausted = true;
        qCInfo(lcRawStream) << "gave up parsing" << m_file.fileName() << "after" << m_calls
                            << "calls and" << m_bytes << "bytes";
    }
    // Thrown on every call once spent, so a parser that catches one error and carries on
    // still stops at its next read.
    if (m_exhausted)
        throw LIBRAW_EXCEPTION_IO_EOF;
}

qint64 BoundedRawStream::readAt(char* out, qint64 length) {
    if (m_pos >= m_size || length <= 0)
        return 0;
    length = std::min(length, m_size - m_pos);
    if (m_file.pos() != m_pos && !m_file.seek(m_pos))
        return 0;
    const qint64 got = m_file.read(out, length);
    if (got <= 0)
        return 0;
    m_pos += got;
    return got;
}

int BoundedRawStream::valid() {
    return m_file.isOpen() ? 1 : 0;
}

int BoundedRawStream::read(void* ptr, size_t size, size_t count) {
    if (size == 0 || count == 0) {
        spend(0);
        return 0;
    }
    const qint64 wanted = count > size_t(std::numeric_limits<qint64>::max()) / size
                              ? std::numeric_limits<qint64>::max()
                              : qint64(size * count);
    spend(std::min(wanted, std::max<qint64>(m_size - m_pos, 0)));
    // Like fread: the number of whole items read.
    return int(readAt(static_cast<char*>(ptr), wanted) / qint64(size));
}

int BoundedRawStream::seek(INT64 offset, int whence) {
    spend(0);
    qint64 base = 0;
    switch (whence) {
    case SEEK_SET:
        break;
    case SEEK_CUR:
        base = m_pos;
        break;
    case SEEK_END:
        base = m_size;
        break;
    default:
        return -1;
    }
    if ((offset > 0 && base > std::numeric_limits<qint64>::max() - offset) || base + offset < 0)
        return -1;
    // As with a file, the position may pass the end; reads there find nothing.
    m_pos = base + offset;
    return 0;
}

INT64 BoundedRawStream::tell() {
    spend(0);
    return m_pos;
}

int BoundedRawStream::get_char() {
    spend(1);
    char c = 0;
    return readAt(&c, 1) == 1 ? int(static_cast<unsigned char>(c)) : -1;
}

char* BoundedRawStream::gets(char* str, int size) {
    spend(std::max(size, 0));
    if (size < 1 || m_pos >= m_size)
        return nullptr;
    // Like fgets: up to size - 1 characters, through the first newline.
    int n = 0;
    while (n < size - 1) {
        char c = 0;
        if (readAt(&c, 1) != 1)
            break;
        str[n++] = c;
        if (c == '\n')
            break;
    }
    str[n] = '\0';
    return n > 0 ? str : nullptr;
}

int BoundedRawStream::scanf_one(const char* format, void* value) {
    // LibRaw asks for one "%d" or "%f" at a time.
    spend(32);
    const auto next = [this] {
        char c = 0;
        return readAt(&c, 1) == 1 ? int(static_cast<unsigned char>(c)) : -1;
    };
    const auto inNumber = [](int c) {
        return std::isdigit(c) || c == '+' || c == '-' || c == '.' || c == 'e' || c == 'E';
    };
    int c = next();
    while (c != -1 && std::isspace(c))
        c = next();
    if (c == -1)
        return EOF;
    char text[32] = {};
    int n = 0;
    while (c != -1 && n < int(sizeof text) - 1 && inNumber(c)) {
        text[n++] = char(c);
        c = next();
    }
    if (c != -1)
        --m_pos; // the character after the number is left for the next read
    const char* begin = text + (text[0] == '+' ? 1 : 0);
    const char* end = text + n;
    if (std::strcmp(format, "%d") == 0) {
        int number = 0;
        if (std::from_chars(begin, end, number).ec != std::errc())
            return EOF;
        *static_cast<int*>(value) = number;
    } else {
        float number = 0;
        if (std::from_chars(begin, end, number).ec != std::errc())
            return EOF;
        *static_cast<float*>(value) = number;
    }
    return 1;
}

int BoundedRawStream::eof() {
    spend(0);
    return m_pos >= m_size ? 1 : 0;
}

namespace {

// LibRaw turns most of its failures into return codes, but not all of them.
template <typename Call> int guardLibRaw(Call&& call) {
    try {
        return call();
    } catch (const std::exception& e) {
        qCDebug(lcRawStream) << "LibRaw failed:" << e.what();
    } catch (...) {
        // LibRaw throws its error codes as plain values.
        qCDebug(lcRawStream) << "LibRaw failed with a thrown error code";
    }
    return LIBRAW_UNSPECIFIED_ERROR;
}

} // namespace

RawOpen openBoundedRaw(LibRaw& raw, BoundedRawStream& stream) {
    // LibRaw's identification of the camera writes to storage that all its instances share
    // (the normalisation of maker and model names), so only one thread identifies at a time.
    static std::mutex identifying;
    const int status = guardLibRaw([&] {
        const std::lock_guard lock(identifying);
        return raw.open_datastream(&stream);
    });
    qCDebug(lcRawStream) << "LibRaw status" << status << "after" << stream.callsUsed() << "calls";
    if (stream.exhausted())
        return RawOpen::GaveUp;
    return status == LIBRAW_SUCCESS ? RawOpen::Opened : RawOpen::Rejected;
}

bool unpackBoundedThumb(LibRaw& raw) {
    return guardLibRaw([&] { return raw.unpack_thumb(); }) == LIBRAW_SUCCESS;
}

} // namespace tagmoor
