#pragma once

#include <QFile>
#include <QString>

#include <libraw/libraw_datastream.h>

class LibRaw;

namespace tagmoor {

// LibRaw's input over a file, with a budget. LibRaw's header parsers trust the counts and
// offsets they find, and a damaged file can send one round a loop billions of times. Every
// call LibRaw makes on this stream spends from the budget; once it is spent, every further
// call throws LibRaw's own input error, which ends the parse. So opening a file, or reading
// its thumbnail, takes a bounded amount of work whatever the file holds.
//
// The stream reads only its own file: LibRaw is given no file name, so it never goes looking
// for companion files beside it.
class BoundedRawStream final : public LibRaw_abstract_datastream {
public:
    struct Budget {
        qint64 calls = 0; // reads, seeks and position queries
        qint64 bytes = 0; // bytes handed to LibRaw, counting bytes read again
    };
    // Room for reading headers, makernotes and an embedded thumbnail several times over,
    // far below what the loop of a damaged file asks for.
    static Budget budgetFor(qint64 fileSize);

    explicit BoundedRawStream(const QString& path);
    BoundedRawStream(const QString& path, Budget budget);

    // Whether LibRaw asked for more than the budget, so its parse was cut short.
    bool exhausted() const { return m_exhausted; }
    qint64 callsUsed() const { return m_calls; }

    int valid() override;
    int read(void* ptr, size_t size, size_t count) override;
    int seek(INT64 offset, int whence) override;
    INT64 tell() override;
    INT64 size() override { return m_size; }
    int get_char() override;
    char* gets(char* str, int size) override;
    int scanf_one(const char* format, void* value) override;
    int eof() override;
    void* make_jas_stream() override { return nullptr; }

private:
    void spend(qint64 bytes);
    qint64 readAt(char* out, qint64 length);

    QFile m_file;
    qint64 m_size = 0;
    qint64 m_pos = 0;
    Budget m_budget;
    qint64 m_calls = 0;
    qint64 m_bytes = 0;
    bool m_exhausted = false;
};

// The outcome of opening a file with LibRaw over a bounded stream.
enum class RawOpen {
    Opened,   // LibRaw identified the file
    Rejected, // LibRaw does not know the file or found it broken
    GaveUp,   // the parse was stopped because it used up its budget
};

// Opens `stream` in `raw`; never throws.
RawOpen openBoundedRaw(LibRaw& raw, BoundedRawStream& stream);

// Reads the embedded thumbnail of a file opened with openBoundedRaw; never throws.
bool unpackBoundedThumb(LibRaw& raw);

} // namespace tagmoor
